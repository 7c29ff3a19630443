#pragma once

#include "SessionLimits.h"

#include "host/Constants.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTextStream>
#include <memory>

class IDevice;
class IPlayback;
class ModuleHost;
class QEventLoop;
class SessionRecording;

// A scripted session without a window: connect a board (or play a
// recording), apply a configuration, acquire for a number of frames or
// seconds, record, save the charts, and report. It drives the module only
// through what the pages use: the device list and the mode's view object.
class HeadlessSession : public QObject
{
    Q_OBJECT
public:
    struct Options {
        QString device;       // display name or uuid; empty: the first board
        QString config;       // configuration file to apply
        QString application;  // None, PresenceSensing or Segmentation
        SessionLimits limits; // neither set: 5 s of a board, all of a playback
        QString record;       // recording base path
        bool txt = false;     // also convert the recording to text
        bool overwrite = false; // replace an earlier recording under the base
        QString play;         // recording base path to play back
        QString snapshot;     // directory for the last chart data
    };

    HeadlessSession(ModuleHost& host, Options options, QTextStream& out, QTextStream& err);
    ~HeadlessSession() override;

    // Runs the whole session; returns the process exit code.
    int run();

public slots:
    void onFrameNumberChanged(int frameNumber);
    void onUserMessage(Constants::UserMessageType type, QString message, QString details);
    void onChartsDataUpdated();
    // SIGINT or SIGTERM: the first ends the session cleanly, a second one
    // also gives up the text copy.
    void onInterrupted(int signalNumber);

private:
    // Listens to the named view of the module.
    QString prepareView(const QString& name);
    QString connectBoard();
    QString applyConfiguration();
    QString openPlayback();
    QString startRecording();
    void acquire();
    void printProgress();
    void checkStalled();
    void awaitChartRefresh();
    QString saveSnapshot();
    void stopSource();
    void printSummary(quint32 overflows);
    void quitLoops();
    int fail(const QString& reason);

    ModuleHost& m_host;
    Options m_options;
    QTextStream& m_out;
    QTextStream& m_err;
    QObject* m_view = nullptr;
    QString m_viewName;
    std::shared_ptr<IDevice> m_device;
    std::shared_ptr<IPlayback> m_playback;
    std::unique_ptr<SessionRecording> m_recording;
    QEventLoop* m_loop = nullptr;
    QEventLoop* m_refreshLoop = nullptr;
    QElapsedTimer m_clock;
    qint64 m_acquiredMs = 0;
    quint64 m_frames = 0;          // frames the source delivered while acquiring
    quint64 m_chartRefreshes = 0;  // times the charts were redrawn meanwhile
    quint64 m_framesAtLastProgress = 0;
    qint64 m_msAtLastProgress = 0;
    quint64 m_framesAtLastCheck = 0;
    int m_lastFrameNumber = -1;
    QString m_failure;   // first error the module reported, ends the session
    bool m_sourceEnded = false;
    bool m_timeUp = false;   // the duration has passed
    int m_signal = 0;    // the signal that interrupted the session, if any
};
