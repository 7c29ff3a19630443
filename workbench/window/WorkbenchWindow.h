#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <QString>
#include <QVariantList>
#include <memory>

class BoardList;
class FlasherControl;
class LogCleanup;
class LogFile;
class MessageLog;
class ModuleHost;
class ModulePages;
class PlaybackControl;
class SessionStatus;
class SettingsAutosave;

// The desktop window of the host: the module's pages in the engine the
// module set up, around them the boards, the mode, the playback, the
// messages, the status line, the baseboards' flashers and the host's
// settings. It drives the module
// through the same host services as a headless session. Published to its
// QML as the context property "workbench".
class WorkbenchWindow : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QObject* boards READ boards CONSTANT)
    Q_PROPERTY(QObject* messages READ messages CONSTANT)
    Q_PROPERTY(QObject* status READ status CONSTANT)
    Q_PROPERTY(QObject* playback READ playback CONSTANT)
    Q_PROPERTY(QObject* pages READ pages CONSTANT)
    Q_PROPERTY(QObject* flashers READ flashers CONSTANT)
    Q_PROPERTY(QObject* logs READ logs CONSTANT)
    Q_PROPERTY(QObject* coreSettings READ coreSettings CONSTANT)
    Q_PROPERTY(QObject* recordingSettings READ recordingSettings CONSTANT)
    Q_PROPERTY(int minRefreshMs READ minRefreshMs CONSTANT)
    Q_PROPERTY(int maxRefreshMs READ maxRefreshMs CONSTANT)
    Q_PROPERTY(QString settingsPath READ settingsPath CONSTANT)
    Q_PROPERTY(QString closingReason READ closingReason NOTIFY closingReasonChanged)
    // The window waits for a flashing job rather than for a text copy.
    Q_PROPERTY(bool closingWaitsForFlashing READ closingWaitsForFlashing NOTIFY closingReasonChanged)
    Q_PROPERTY(QObject* activeView READ activeView NOTIFY activeViewChanged)
public:
    // `logFile` may be null (no log file of the host's own).
    WorkbenchWindow(ModuleHost& host, LogFile* logFile, QObject* parent = nullptr);
    ~WorkbenchWindow() override;

    // Loads the window into the module's engine. Empty text on success,
    // otherwise why there is no window.
    QString open();
    QQuickWindow* window() const { return m_window; }

    QObject* boards() const;
    QObject* messages() const;
    QObject* status() const;
    QObject* playback() const;
    QObject* pages() const;
    QObject* flashers() const;
    QObject* logs() const;
    QObject* coreSettings() const;
    QObject* recordingSettings() const;
    int minRefreshMs() const;
    int maxRefreshMs() const;
    QString settingsPath() const;
    // Set while the window waits for work to finish before it can close.
    QString closingReason() const { return m_closingReason; }
    bool closingWaitsForFlashing() const { return m_closeWhenDone && m_waitsForFlashing; }

    // The view of the source that runs or ran last: the connected board's
    // mode ("zp7sView" for a pulsed-Doppler board, else "radarView"), or
    // the opened recording's. The status line follows it.
    QObject* activeView() const;

    BoardList& boardList() { return *m_boards; }
    MessageLog& messageLog() { return *m_messages; }
    SessionStatus& sessionStatus() { return *m_status; }
    PlaybackControl& playbackControl() { return *m_playback; }
    FlasherControl& flasherControl() { return *m_flashers; }

    // Called when the user closes the window: ends a recording (every frame
    // taken goes into the file), a playback and the board's acquisition,
    // and saves the settings. False while a baseboard is being flashed or a
    // text copy is still being written; the window then closes by itself
    // once that is done.
    Q_INVOKABLE bool finishSession();
    // Gives up the text copy the window waits for.
    Q_INVOKABLE void abandonTextCopy();
    // Closes without waiting for the flashing job (its board may stay in its
    // bootloader, where it can be flashed again), or stays open.
    Q_INVOKABLE void closeWithoutFlashing();
    Q_INVOKABLE void cancelClosing();
    // The recording duration limit as [hours, minutes, seconds]; the host's
    // settings hold it as one value, not as properties.
    Q_INVOKABLE QVariantList recordingDuration() const;
    Q_INVOKABLE void setRecordingDuration(int hours, int minutes, int seconds);

signals:
    void closingReasonChanged();
    void activeViewChanged();

public slots:
    void onParsingActiveChanged();

private:
    QObject* view(const QString& name) const;
    // Every view of the module's modes that the window knows.
    QList<QObject*> views() const;
    // Whether any mode still writes a text copy.
    bool isParsing() const;
    bool isFlashing() const;
    // Closes the window once nothing it waits for runs any more.
    void closeWhenDone();
    // The status line turns to the view of the source that just started.
    void followSource(QObject* view, const QString& uuid);
    QObject* coordinator() const;
    void setClosingReason(const QString& reason);

    ModuleHost& m_host;
    LogFile* m_logFile;
    std::unique_ptr<MessageLog> m_messages;
    std::unique_ptr<BoardList> m_boards;
    std::unique_ptr<SessionStatus> m_status;
    std::unique_ptr<PlaybackControl> m_playback;
    std::unique_ptr<ModulePages> m_pages;
    std::unique_ptr<FlasherControl> m_flashers;
    std::unique_ptr<LogCleanup> m_logs;
    std::unique_ptr<SettingsAutosave> m_autosave;
    QPointer<QQuickWindow> m_window;
    QString m_closingReason;
    bool m_closeWhenDone = false;
    bool m_waitsForFlashing = false;
    bool m_leaveFlashing = false;
};
