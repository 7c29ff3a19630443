#pragma once

#include "recording/RecordingFrame.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <mutex>

class IRadarRecordingSource;
class RadarFileParsing;
class RadarFileRecording;
class RadarRecorder;
class RecordingUserSettings;

// Runs one recording at a time for a mode: the recorder beside the
// acquisition loop, the file writing on its own thread and, when the user
// asked for it, the text copy made once the binary file is complete. Every
// mode records through one of these, so a recording is refused, written,
// ended and converted the same way whatever frames it holds.
//
// record() runs on the acquisition thread (or the owner's); everything else
// belongs to the owner's thread. The recorder pointer is guarded by a mutex
// held only to copy or swap it, never while the recorder works or a signal
// goes out.
class RadarRecordingSession : public QObject
{
    Q_OBJECT
public:
    // The parts of the chain, replaceable so that tests can hold or break
    // them; the defaults build the real ones.
    struct Parts {
        std::function<std::shared_ptr<RadarRecorder>(quint32 frameLimit, int bufferFrames)> recorder;
        std::function<std::unique_ptr<RadarFileRecording>(const IRadarRecordingSource* source,
                                                          const QString& jsonPath, const QString& binPath)>
            fileRecording;
        std::function<std::unique_ptr<RadarFileParsing>()> converter;
    };

    explicit RadarRecordingSession(QObject* parent = nullptr);
    ~RadarRecordingSession() override;

    // Where and how to record: base path, frame limit and text copy. Not
    // owned; must outlive the session.
    void setRecordingSettings(RecordingUserSettings* settings) { m_settings = settings; }
    void setParts(Parts parts);
    // Runs in start() once the recording's files exist and before its first
    // frame is taken, with the base path: a mode starts the files of its
    // own beside the frames there, so that they begin with the same frame.
    void setStartHook(std::function<void(const QString& basePath)> hook) { m_startHook = std::move(hook); }

    // Starts recording under the settings' base path: refused (false, with
    // errorDetected) while the previous recording is still being written,
    // when files of that base exist already, when a text copy is asked for
    // while another is being written, or when the files cannot be made.
    bool start(std::shared_ptr<const IRadarRecordingSource> source, quint32 frameLimit);
    // Offers one numbered frame; a no-op while nothing is recorded.
    void record(const SharedFrame& frame, int frameNumber);
    // Ends the recording: every frame already offered reaches the file,
    // then the text copy, if asked for, begins.
    void stop();
    // Takes down a recording and a conversion without telling anyone:
    // for the owner's destructor.
    void shutdown();

    bool isRecordingActive() const;
    bool isParsingActive() const { return m_parsingActive; }
    QString basePath() const { return m_basePath; }

    // Converts a finished binary recording on request; false while another
    // conversion runs or when it cannot start.
    bool convertToText(const QString& binPath, const QString& txtPath);
    void stopConvertingToText();

    // The number of frames a recording under `settings` takes: the frame
    // count, or the time limit at the given frame period, rounded up.
    static quint32 recordingFrameLimit(const RecordingUserSettings& settings, float frameRepetitionTimeS);

signals:
    void isRecordingActiveChanged(bool active);
    // A text copy is scheduled or being written: true at the latest when
    // the recording it belongs to ends (before isRecordingActiveChanged
    // (false)), false once the conversion has ended, after its errors.
    void isParsingActiveChanged(bool active);
    void convertingToTxt(int progress);
    void errorDetected(QString message, QString details);

private:
    void setUpFileParsing();
    void onRecorderFinished();
    void onFileRecordingFinished();
    void setParsingActive(bool active);

    RecordingUserSettings* m_settings = nullptr;
    Parts m_parts;
    std::function<void(const QString&)> m_startHook;

    mutable std::mutex m_recorderMutex; // guards the recorder pointer
    std::shared_ptr<RadarRecorder> m_recorder;

    std::shared_ptr<const IRadarRecordingSource> m_source;
    std::unique_ptr<RadarFileRecording> m_fileRecording;
    std::unique_ptr<RadarFileParsing> m_fileParsing;
    QString m_basePath;
    bool m_parsingActive = false;
};
