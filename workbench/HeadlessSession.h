#pragma once

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

// A scripted session without a window: connect a board (or play a
// recording), apply a configuration, acquire for a number of frames or
// seconds, record, save the charts, and report. It drives the module only
// through what the pages use: the device list and the mode's view object.
class HeadlessSession : public QObject
{
    Q_OBJECT
public:
    struct Options {
        QString device;       // display name; empty: the first board
        QString config;       // configuration file to apply
        QString application;  // None, PresenceSensing or Segmentation
        quint32 frames = 0;   // stop after this many frames (0: use seconds)
        double seconds = 0;   // stop after this long (0 with no frames: 5 s)
        QString record;       // recording base path
        bool txt = false;     // also convert the recording to text
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
    void onRecordingActiveChanged(bool active);
    void onChartsDataUpdated();

private:
    QString prepareView();
    QString connectBoard();
    QString applyConfiguration();
    QString startRecording();
    QString startPlayback();
    void acquire();
    void printProgress();
    void checkStalled();
    void awaitChartRefresh();
    void finishRecording();
    int fail(const QString& reason);

    ModuleHost& m_host;
    Options m_options;
    QTextStream& m_out;
    QTextStream& m_err;
    QObject* m_view = nullptr;
    std::shared_ptr<IDevice> m_device;
    std::shared_ptr<IPlayback> m_playback;
    QEventLoop* m_loop = nullptr;
    QElapsedTimer m_clock;
    quint64 m_frames = 0;
    quint64 m_framesAtLastProgress = 0;
    qint64 m_msAtLastProgress = 0;
    int m_lastFrameNumber = -1;
    QString m_failure;   // first error the module reported, ends the session
    bool m_sourceEnded = false;
    bool m_recording = false;
    quint64 m_framesAtLastCheck = 0;
    QEventLoop* m_refreshLoop = nullptr;
};
