#pragma once

#include "CWSessionOptions.h"

#include "host/Constants.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTextStream>
#include <memory>

class IDevice;
class ModuleHost;
class QEventLoop;

// A scripted CW test without a window: connect a board and switch it to the
// CW mode, apply its defaults or a file and the duty cycle, emit for a time
// under the overheating protector while printing temperature and Tx power
// once a second, capture frames (each logged to its own CSV file), save the
// last frame's charts and the applied configuration, stop, and report. It
// drives the module only through what the CW pages use: the coordinator's
// user mode and the CW view object.
class CWSession : public QObject
{
    Q_OBJECT
public:
    CWSession(ModuleHost& host, CWSessionOptions options, QTextStream& out, QTextStream& err);
    ~CWSession() override;

    // Runs the whole session; returns the process exit code.
    int run();

public slots:
    void onUserMessage(Constants::UserMessageType type, QString message, QString details);
    void onConnectedChanged();
    void onEmissionActiveChanged();
    // SIGINT or SIGTERM: emission stops at once, the session finishes.
    void onInterrupted(int signalNumber);

private:
    QString prepareView();
    QString connectBoard();
    QString configure();
    QString prepareOutputs();
    QString saveConfiguration();
    QString emitAndCapture();
    QString captureNext();
    QString stopEmission();
    QString saveSnapshot();
    void printConfiguration();
    void printReadings();
    void printSummary();
    void disconnectBoard();
    bool call(const char* method);
    bool call(const char* method, const QString& argument);
    // The module's latest message if it said something since `mark`,
    // otherwise `fallback`.
    QString reason(const QString& fallback) const;
    QObject* params(const char* configuration) const;
    int failWith(const QString& reason);

    ModuleHost& m_host;
    CWSessionOptions m_options;
    QTextStream& m_out;
    QTextStream& m_err;
    QObject* m_view = nullptr;
    std::shared_ptr<IDevice> m_device;
    QEventLoop* m_loop = nullptr;
    QElapsedTimer m_emissionClock;
    qint64 m_emittedMs = 0;
    bool m_inCW = false;       // the board runs in the CW mode
    bool m_emitting = false;   // this session started emission and has not stopped it
    bool m_boardLost = false;
    quint32 m_captured = 0;
    QStringList m_written;     // files the session wrote, in order
    QString m_lastMessage;     // the module's latest error or warning
    QString m_failure;         // the module's error that ended emission early
    QString m_captureError;    // the capture or log that failed
    bool m_emissionEnded = false; // the module ended emission itself
    int m_signal = 0;
};
