#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

class QEventLoop;
class QTextStream;
class RecordingUserSettings;

// The recording of a headless session, driven through the module's view as
// the pages drive it: points the host's recording settings at the base,
// clears an earlier recording there when asked to, starts and stops the
// module's recorder, and at the end waits for the text copy and counts what
// the files really hold, so the session reports the files, not its hopes.
class SessionRecording : public QObject
{
    Q_OBJECT
public:
    struct Options {
        QString base;           // absolute base path of the files
        bool txt = false;       // also the text copy
        bool overwrite = false; // remove an earlier recording under base first
    };

    SessionRecording(QObject* view, RecordingUserSettings& settings, Options options, QTextStream& out);
    ~SessionRecording() override;

    // Starts recording for this many frames or, when frames is 0, for this
    // many milliseconds. Empty text on success, otherwise why not; the
    // module's own message has then come through the view as well.
    QString start(quint32 frames, quint64 milliseconds);
    bool isActive() const { return m_active; }
    // The start was refused while files of an earlier recording exist.
    bool refusedForEarlierRecording() const { return m_refusedForEarlierRecording; }
    // Ends the recording now; the module writes what it has buffered.
    void stop();
    // After the end: waits until the text copy is complete, then checks the
    // files. Empty text when they hold every recorded frame whole.
    QString finish();
    // Asks a text conversion that finish() waits for to stop early.
    void abandonTextCopy();
    // Whole frame records in the binary file, known after finish().
    qint64 recordedFrames() const { return m_recordedFrames; }
    QString binPath() const;
    QString txtPath() const;
    // Ends the line of a progress bar being drawn, so other output does not
    // run into it.
    void endProgressLine();

signals:
    // The module ended the recording: limit reached, stopped, or failed.
    void ended();

public slots:
    // Connected by name to the view's signals.
    void onRecordingActiveChanged(bool active);
    void onParsingActiveChanged();
    void onConvertingToTxt(int progress);

private:
    QString removeEarlierRecording();
    QString waitForTextCopy();

    QObject* m_view;
    RecordingUserSettings& m_settings;
    Options m_options;
    QTextStream& m_out;
    bool m_active = false;
    bool m_refusedForEarlierRecording = false;
    bool m_progressDrawn = false;
    int m_lastProgress = -1;
    qint64 m_recordedFrames = 0;
    QEventLoop* m_textCopyLoop = nullptr;
    QTimer m_textCopyStall;
    bool m_textCopyStalled = false;
};
