#pragma once

#include "host/Constants.h"

#include <QAbstractListModel>
#include <QDateTime>
#include <QVector>

// What the user must know, in one list: the module's user messages, the
// events its coordinator triggers and the window's own notices, each with
// its type, time, text and details, until the user clears them.
class MessageLog : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(int errorCount READ errorCount NOTIFY countChanged)
public:
    enum Role { TypeRole = Qt::UserRole + 1, TypeNameRole, TextRole, DetailsRole, TimeRole, SourceRole };

    explicit MessageLog(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return int(m_entries.size()); }
    int errorCount() const;

    // Listens to the module's coordinator ("triggerEvent") and a view
    // ("enqueueUserMessage"); false when the object lacks the signal.
    bool watchEvents(QObject* coordinator);
    bool watchMessages(QObject* view);

    Q_INVOKABLE void add(int type, const QString& text, const QString& details = QString(),
                         const QString& source = QStringLiteral("Workbench"));
    Q_INVOKABLE void clear();
    // The entry's text and details, for the clipboard or a test.
    Q_INVOKABLE QString textAt(int row) const;

    static QString typeName(int type);

public slots:
    void onUserMessage(Constants::UserMessageType type, QString message, QString details);
    // The event code arrives as the module's 4-byte enumeration; see
    // watchEvents().
    void onEvent(int code, QString message, QString details);

signals:
    void countChanged();
    void added(int type, const QString& text, const QString& details);

private:
    struct Entry {
        int type;
        QString text;
        QString details;
        QDateTime time;
        QString source;
        int eventCode; // -1 for a message that was no event
    };
    void append(Entry entry);

    QVector<Entry> m_entries;
    // The events of the current dispatch, which the active mode may turn
    // into a user message with the same text right away.
    int m_lastEventRow = -1;
};
