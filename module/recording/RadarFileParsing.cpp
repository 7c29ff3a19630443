#include "recording/RadarFileParsing.h"

#include "core/CyclicTaskWorker.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

namespace {
const QString kCannotParse = QStringLiteral("Cannot parse file!");
const QString kCannotParseTo = QStringLiteral("Cannot parse to destination file!");
// About a megabyte of samples per worker cycle: large enough to keep the
// disk busy, small enough that stop() never waits long.
constexpr quint64 kBatchSamples = 256 * 1024;
}

RadarFileParsing::RadarFileParsing(QObject* parent)
    : QObject(parent)
{
}

RadarFileParsing::~RadarFileParsing()
{
    stop();
}

bool RadarFileParsing::start(const QString& binPath, const QString& txtPath)
{
    if (m_converting.load())
        return false;
    // The previous run's thread idles until stopped; end it first.
    stop();
    m_binPath = binPath;
    m_txtPath = txtPath;
    m_partPath = txtPath + QStringLiteral(".part");
    m_failure.clear();
    m_reported = false;
    m_finishRan.store(false);
    m_samplesPerFrame = 0;
    m_totalFrames = 0;
    m_convertedFrames = 0;
    m_truncated = false;
    m_opened = false;
    m_lastProgress = -1;
    m_converting.store(true);
    m_worker = std::make_unique<CyclicTaskWorker>([this] { return step(); }, CyclicTaskWorker::Hook(),
                                                  [this] { finish(); });
    m_worker->start();
    return true;
}

void RadarFileParsing::stop()
{
    if (!m_worker)
        return;
    m_worker->stop();
    m_worker.reset();
    // A terminated thread skips its finish hook; the run must end all the
    // same, files closed and its listeners told.
    if (!m_finishRan.load())
        finish();
}

bool RadarFileParsing::isRunning() const
{
    return m_converting.load();
}

bool RadarFileParsing::step()
{
    if (!m_opened) {
        if (!openFiles())
            return false;
        m_opened = true;
        reportProgress();
        return m_convertedFrames < m_totalFrames;
    }
    return convertBatch();
}

bool RadarFileParsing::openFiles()
{
    RadarRecordingHeader header;
    if (!m_source.checkFile(m_binPath) || !m_source.open(m_binPath, QIODevice::ReadOnly)
        || !m_source.readHeader(header) || header.samplesPerFrame == 0) {
        m_source.close();
        m_reported = true;
        emit errorDetected(QStringLiteral("Cannot parse from source file!"), m_binPath);
        return false;
    }
    if (!m_destination.open(m_partPath, QIODevice::WriteOnly | QIODevice::Truncate)
        || !m_destination.writeHeader(header)) {
        m_source.close();
        m_destination.close();
        QFile::remove(m_partPath);
        m_reported = true;
        emit errorDetected(kCannotParseTo, m_txtPath);
        return false;
    }
    m_samplesPerFrame = header.samplesPerFrame;
    const qint64 recordSize = RadarBinFile::recordSize(m_samplesPerFrame);
    const qint64 payload = qMax<qint64>(0, QFileInfo(m_binPath).size() - RadarRecordingHeader::kHeaderSize);
    m_totalFrames = quint64(payload / recordSize);
    m_truncated = payload % recordSize != 0;
    return true;
}

bool RadarFileParsing::convertBatch()
{
    const quint64 batch = qMin(m_totalFrames - m_convertedFrames, qMax<quint64>(1, kBatchSamples / m_samplesPerFrame));
    if (!m_source.readFrames(quint32(batch), m_samplesPerFrame, m_rows)) {
        m_failure = QStringLiteral("the binary file could not be read");
        return false;
    }
    if (!m_destination.writeFrames(quint32(batch), m_samplesPerFrame, m_rows)) {
        m_failure = QStringLiteral("writing the text failed: %1").arg(m_destination.errorString());
        return false;
    }
    m_convertedFrames += batch;
    reportProgress();
    return m_convertedFrames < m_totalFrames;
}

void RadarFileParsing::finish()
{
    m_finishRan.store(true);
    m_source.close();
    bool published = false;
    if (m_opened) {
        const QString writeError = m_destination.errorString();
        if (!m_destination.close() && m_failure.isEmpty())
            m_failure = QStringLiteral("the end of the text could not be written: %1").arg(writeError);
        // Counted against the whole frames of the binary file: the copy is
        // complete only if it holds every one of them.
        if (m_failure.isEmpty() && m_convertedFrames == m_totalFrames)
            published = publishText();
        else
            QFile::remove(m_partPath);
    }
    if (published && m_truncated) {
        // Whole frames are converted; the user still has to learn that the
        // recording itself ends in a broken record.
        emit errorDetected(kCannotParse, QStringLiteral("The last frame of %1 is truncated; %2 whole frames were converted.")
                                             .arg(m_binPath)
                                             .arg(m_totalFrames));
    } else if (!published && !m_reported) {
        if (!m_opened) {
            emit errorDetected(kCannotParse,
                               QStringLiteral("The conversion of %1 was stopped before it began; no text copy was written.")
                                   .arg(m_binPath));
        } else {
            const QString reason = m_failure.isEmpty() ? QStringLiteral("the conversion was stopped") : m_failure;
            emit errorDetected(kCannotParse,
                               QStringLiteral("Only %1 of %2 frames of %3 reached the text copy (%4); no text copy "
                                              "was kept.")
                                   .arg(m_convertedFrames)
                                   .arg(m_totalFrames)
                                   .arg(m_binPath, reason));
        }
    }
    m_converting.store(false);
    emit finished();
}

bool RadarFileParsing::publishText()
{
    if ((QFile::exists(m_txtPath) && !QFile::remove(m_txtPath)) || !QFile::rename(m_partPath, m_txtPath)) {
        qCritical() << "Cannot move the text copy" << m_partPath << "to" << m_txtPath;
        QFile::remove(m_partPath);
        m_reported = true;
        emit errorDetected(kCannotParseTo, m_txtPath);
        return false;
    }
    return true;
}

void RadarFileParsing::reportProgress()
{
    const int progress = m_totalFrames == 0 ? 100 : int(m_convertedFrames * 100 / m_totalFrames);
    if (progress == m_lastProgress)
        return;
    m_lastProgress = progress;
    emit convertingToTxt(progress);
}
