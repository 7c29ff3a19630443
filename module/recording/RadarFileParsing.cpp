#include "recording/RadarFileParsing.h"

#include "core/CyclicTaskWorker.h"

#include <QDebug>
#include <QFileInfo>

namespace {
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
    // A terminated thread skips its finish hook; the files must be closed
    // all the same.
    m_source.close();
    m_destination.close();
    m_converting.store(false);
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
        emit errorDetected(QStringLiteral("Cannot parse from source file!"), m_binPath);
        return false;
    }
    if (!m_destination.open(m_txtPath, QIODevice::WriteOnly | QIODevice::Truncate)
        || !m_destination.writeHeader(header)) {
        m_source.close();
        m_destination.close();
        emit errorDetected(QStringLiteral("Cannot parse to destination file!"), m_txtPath);
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
    if (!m_source.readFrames(quint32(batch), m_samplesPerFrame, m_rows)
        || !m_destination.writeFrames(quint32(batch), m_samplesPerFrame, m_rows)) {
        emit errorDetected(QStringLiteral("Cannot parse file!"),
                           QStringLiteral("Stopped after %1 of %2 frames of %3.")
                               .arg(m_convertedFrames)
                               .arg(m_totalFrames)
                               .arg(m_binPath));
        return false;
    }
    m_convertedFrames += batch;
    reportProgress();
    return m_convertedFrames < m_totalFrames;
}

void RadarFileParsing::finish()
{
    if (!m_opened) {
        m_converting.store(false);
        emit finished();
        return;
    }
    m_source.close();
    const bool closed = m_destination.close();
    if (!closed) {
        emit errorDetected(QStringLiteral("Cannot parse to destination file!"), m_txtPath);
    } else if (m_convertedFrames == m_totalFrames && m_truncated) {
        // Whole frames are converted; the user still has to learn that the
        // recording itself ends in a broken record.
        emit errorDetected(QStringLiteral("Cannot parse file!"),
                           QStringLiteral("The last frame of %1 is truncated; %2 whole frames were converted.")
                               .arg(m_binPath)
                               .arg(m_totalFrames));
    }
    m_converting.store(false);
    emit finished();
}

void RadarFileParsing::reportProgress()
{
    const int progress = m_totalFrames == 0 ? 100 : int(m_convertedFrames * 100 / m_totalFrames);
    if (progress == m_lastProgress)
        return;
    m_lastProgress = progress;
    emit convertingToTxt(progress);
}
