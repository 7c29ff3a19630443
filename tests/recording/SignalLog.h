#pragma once

#include <QCoreApplication>
#include <QList>
#include <QObject>
#include <QVariant>

// Records one signal on the test's thread, whatever thread emits it: when
// the sender runs elsewhere the connection is queued, so the log is only
// ever touched here. (QSignalSpy appends on the emitting thread, which
// races with the test reading it.) Reads look like QSignalSpy's.
class SignalLog : public QObject
{
public:
    template <typename Sender, typename Owner, typename... Args>
    SignalLog(Sender* sender, void (Owner::*signal)(Args...))
    {
        connect(sender, signal, this,
                [this](Args... args) { m_calls.append(QVariantList { QVariant::fromValue(args)... }); });
    }

    // Delivers what other threads have already emitted.
    static void settle() { QCoreApplication::sendPostedEvents(); }

    int count() const { return m_calls.size(); }
    const QVariantList& at(int i) const { return m_calls.at(i); }
    const QVariantList& first() const { return m_calls.first(); }
    const QVariantList& last() const { return m_calls.last(); }
    const QList<QVariantList>& calls() const { return m_calls; }

private:
    QList<QVariantList> m_calls;
};
