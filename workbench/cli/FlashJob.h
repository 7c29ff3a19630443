#pragma once

#include "host/FlasherStatus.h"

#include <QObject>
#include <QString>
#include <memory>

class IFlasher;
class QTextStream;

// Follows one flashing job on the console: a progress bar with the phase,
// redrawn in place, and each message of the flasher on a line of its own.
class FlashJob : public QObject
{
    Q_OBJECT
public:
    FlashJob(std::shared_ptr<IFlasher> flasher, QTextStream& out);

    // Starts the job and returns once it has ended (a final status) or was
    // interrupted; the flasher's own time limit bounds the wait.
    FlasherStatus::Status run(const QString& image);
    bool wasInterrupted() const { return m_interrupted; }
    // What went wrong, as the flasher's last "ERROR: ..." message put it;
    // its final message otherwise.
    QString failure() const;

    static bool isFinal(FlasherStatus::Status status);
    static QString statusName(FlasherStatus::Status status);

public slots:
    void onInterrupted(int signalNumber);

signals:
    void ended();

private:
    void onProgress();
    void onMessage();
    void onStatus();
    void drawBar();
    void endBar();

    std::shared_ptr<IFlasher> m_flasher;
    QTextStream& m_out;
    QString m_phase;
    QString m_lastError;
    bool m_barShown = false;
    bool m_interrupted = false;
};
