#include "recording/RadarRecordingSession.h"

#include "host/RecordingUserSettings.h"
#include "recording/IRadarRecordingSource.h"
#include "recording/RadarFileParsing.h"
#include "recording/RadarFileRecording.h"
#include "recording/RadarRecorder.h"
#include "recording/RecordingFiles.h"

#include <QDebug>
#include <cmath>

namespace {
constexpr int kRecorderBufferFrames = 32;

// Durations and frame times are decimal values the user typed, held as
// floats: 30 s / 0.3 s comes out as 99.9999..., 7 s / 0.7 s as 10.0000002.
// A quotient within a millionth of a whole number is that number, so the
// ceiling taken of it counts the periods the user meant.
double periodsIn(double seconds, float periodS)
{
    const double quotient = seconds / double(periodS);
    const double whole = std::round(quotient);
    return std::abs(quotient - whole) <= 1.0e-6 * whole ? whole : quotient;
}

RadarRecordingSession::Parts defaultParts()
{
    RadarRecordingSession::Parts parts;
    parts.recorder = [](quint32 frameLimit, int bufferFrames) {
        // Its signals are connected to the owner's thread: it dies there,
        // even when the acquisition thread held the last reference.
        return std::shared_ptr<RadarRecorder>(new RadarRecorder(frameLimit, bufferFrames),
                                              [](RadarRecorder* recorder) { recorder->deleteLater(); });
    };
    parts.fileRecording = [](const IRadarRecordingSource* source, const QString& jsonPath, const QString& binPath) {
        return std::make_unique<RadarFileRecording>(source, jsonPath, binPath);
    };
    parts.converter = [] { return std::make_unique<RadarFileParsing>(); };
    return parts;
}
} // namespace

RadarRecordingSession::RadarRecordingSession(QObject* parent)
    : QObject(parent)
    , m_parts(defaultParts())
{
}

RadarRecordingSession::~RadarRecordingSession()
{
    shutdown();
}

void RadarRecordingSession::setParts(Parts parts)
{
    const Parts defaults = defaultParts();
    m_parts.recorder = parts.recorder ? std::move(parts.recorder) : defaults.recorder;
    m_parts.fileRecording = parts.fileRecording ? std::move(parts.fileRecording) : defaults.fileRecording;
    m_parts.converter = parts.converter ? std::move(parts.converter) : defaults.converter;
}

quint32 RadarRecordingSession::recordingFrameLimit(const RecordingUserSettings& settings, float frameRepetitionTimeS)
{
    if (!settings.timeLimitOnRecording() || frameRepetitionTimeS <= 0.0f)
        return settings.numOfFrames();
    const double seconds = settings.milliseconds() * 0.001 + settings.seconds() + settings.minutes() * 60.0
        + settings.hours() * 3600.0;
    return quint32(std::ceil(periodsIn(seconds, frameRepetitionTimeS)));
}

bool RadarRecordingSession::isRecordingActive() const
{
    std::lock_guard<std::mutex> lock(m_recorderMutex);
    return m_recorder != nullptr;
}

bool RadarRecordingSession::start(std::shared_ptr<const IRadarRecordingSource> source, quint32 frameLimit)
{
    if (isRecordingActive() || !m_settings || !source)
        return false;
    if (m_fileRecording) {
        qWarning() << "The previous recording is still being written";
        emit errorDetected(QStringLiteral("The previous recording is still being written"),
                           QStringLiteral("Wait until its files are complete before recording again."));
        return false;
    }
    const QString base = m_settings->basePath();
    // Files of two recordings under one base would be out of step (a text
    // copy of other frames, another configuration): never mix them.
    const QStringList existing = RecordingFiles::existingSiblings(base);
    if (!existing.isEmpty()) {
        emit errorDetected(QStringLiteral("Recording files already exist: %1").arg(existing.join(QStringLiteral(", "))),
                           QStringLiteral("Choose another file name or remove these files before recording."));
        return false;
    }
    const bool textCopy = m_settings->txtFile();
    if (textCopy && m_fileParsing) {
        emit errorDetected(QStringLiteral("A text copy is still being written"),
                           QStringLiteral("Wait until the text copy of the previous recording is finished or stop "
                                          "it before recording with a text copy."));
        return false;
    }
    m_basePath = base;
    m_source = std::move(source);
    std::shared_ptr<RadarRecorder> recorder = m_parts.recorder(frameLimit, kRecorderBufferFrames);
    m_fileRecording
        = m_parts.fileRecording(m_source.get(), RecordingFiles::jsonPath(base), RecordingFiles::binPath(base));
    if (!recorder || !m_fileRecording) {
        m_fileRecording.reset();
        m_source.reset();
        return false;
    }
    if (textCopy)
        setUpFileParsing();

    // Direct: the file recording queues under its own lock, and a buffer
    // handed over on the acquisition thread must be queued before a stop()
    // on this thread can close the file.
    connect(recorder.get(), &RadarRecorder::bufferReady, m_fileRecording.get(),
            &RadarFileRecording::collectRadarBuffer, Qt::DirectConnection);
    connect(recorder.get(), &RadarRecorder::finished, m_fileRecording.get(), &RadarFileRecording::stop);
    connect(recorder.get(), &RadarRecorder::finished, this, &RadarRecordingSession::onRecorderFinished);
    connect(m_fileRecording.get(), &RadarFileRecording::finished, this,
            &RadarRecordingSession::onFileRecordingFinished);
    connect(m_fileRecording.get(), &RadarFileRecording::errorDetected, this, &RadarRecordingSession::errorDetected);
    // Queued even when the write failed on this thread, inside the file
    // recording's stop(): the recording ends after the error is out, and
    // not from within the chain that is being taken down.
    connect(m_fileRecording.get(), &RadarFileRecording::writeFailed, this, &RadarRecordingSession::stop,
            Qt::QueuedConnection);

    if (!m_fileRecording->start()) {
        m_fileRecording.reset();
        m_fileParsing.reset();
        m_source.reset();
        return false;
    }
    if (m_startHook)
        m_startHook(base);
    recorder->start();
    {
        std::lock_guard<std::mutex> lock(m_recorderMutex);
        m_recorder = std::move(recorder);
    }
    qInfo() << "Recording to" << RecordingFiles::binPath(base) << "for" << frameLimit << "frames";
    emit isRecordingActiveChanged(true);
    return true;
}

void RadarRecordingSession::record(const SharedFrame& frame, int frameNumber)
{
    std::shared_ptr<RadarRecorder> recorder;
    {
        std::lock_guard<std::mutex> lock(m_recorderMutex);
        recorder = m_recorder;
    }
    // Outside the lock: the frame that reaches the limit ends the recording
    // from within record(), and on the owner's thread that end comes
    // straight back here. A recorder stopped meanwhile drops the frame.
    if (recorder)
        recorder->record(frame, frameNumber);
}

void RadarRecordingSession::onRecorderFinished()
{
    std::shared_ptr<RadarRecorder> recorder;
    {
        std::lock_guard<std::mutex> lock(m_recorderMutex);
        recorder = std::move(m_recorder);
    }
    if (!recorder)
        return;
    // A host waiting for the text copy must see it scheduled before it sees
    // the recording end.
    if (m_fileParsing)
        setParsingActive(true);
    emit isRecordingActiveChanged(false);
}

void RadarRecordingSession::stop()
{
    std::shared_ptr<RadarRecorder> recorder;
    {
        std::lock_guard<std::mutex> lock(m_recorderMutex);
        recorder = m_recorder;
    }
    if (!recorder)
        return;
    // Hands over the last buffer and emits finished(): the file is completed
    // and onRecorderFinished() drops the chain.
    recorder->stop();
    onRecorderFinished();
}

void RadarRecordingSession::onFileRecordingFinished()
{
    if (!m_fileRecording)
        return;
    const QString binPath = m_fileRecording->binPath();
    // We are inside its stop(): it goes once that has returned.
    m_fileRecording.release()->deleteLater();
    m_source.reset();
    if (!m_fileParsing)
        return;
    setParsingActive(true);
    if (!m_fileParsing->start(binPath, RecordingFiles::txtPath(m_basePath))) {
        m_fileParsing.reset();
        setParsingActive(false);
    }
}

bool RadarRecordingSession::convertToText(const QString& binPath, const QString& txtPath)
{
    if (m_fileParsing)
        return false;
    setUpFileParsing();
    if (!m_fileParsing || !m_fileParsing->start(binPath, txtPath)) {
        m_fileParsing.reset();
        return false;
    }
    setParsingActive(true);
    return true;
}

void RadarRecordingSession::setUpFileParsing()
{
    m_fileParsing = m_parts.converter();
    RadarFileParsing* parsing = m_fileParsing.get();
    if (!parsing)
        return;
    connect(parsing, &RadarFileParsing::convertingToTxt, this, &RadarRecordingSession::convertingToTxt);
    connect(parsing, &RadarFileParsing::errorDetected, this, &RadarRecordingSession::errorDetected);
    // finished() follows the run's errors on the same path, so the user has
    // the message before the conversion shows as over.
    connect(parsing, &RadarFileParsing::finished, this, [this, parsing] {
        if (m_fileParsing.get() != parsing)
            return;
        m_fileParsing.release()->deleteLater();
        setParsingActive(false);
    });
}

void RadarRecordingSession::setParsingActive(bool active)
{
    if (active == m_parsingActive)
        return;
    m_parsingActive = active;
    emit isParsingActiveChanged(active);
}

void RadarRecordingSession::stopConvertingToText()
{
    if (m_fileParsing)
        m_fileParsing->stop();
}

void RadarRecordingSession::shutdown()
{
    stop();
    if (m_fileRecording)
        m_fileRecording->stop();
    if (m_fileParsing) {
        // Nobody is left to tell: the converter's stop only removes the
        // unfinished text copy.
        m_fileParsing->disconnect(this);
        m_fileParsing->stop();
        m_fileParsing.reset();
    }
}
