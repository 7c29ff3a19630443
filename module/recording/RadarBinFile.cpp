#include "recording/RadarBinFile.h"
#include "recording/RecordingFileAccess.h"

#include "recording/WordSwap.h"

#include <QDebug>

#include <cerrno>
#include <cstring>

RadarBinFile::~RadarBinFile()
{
    close();
}

bool RadarBinFile::open(const QString& fileName, QIODevice::OpenMode mode)
{
    close();
    m_errorString.clear();
    m_file = std::make_unique<QFile>(fileName);
    // Written unbuffered: a record that only reached the file's buffer
    // could still fail on the disk after the write reported success, and
    // then nobody could tell where the last whole record ends. Records are
    // large, so little is lost by going to the system with each.
    if (mode & QIODevice::WriteOnly)
        mode |= QIODevice::Unbuffered;
    if (!m_file->open(mode)) {
        m_errorString = m_file->errorString();
        qWarning() << "Cannot open recording file" << fileName << ":" << m_errorString;
        m_file.reset();
        return false;
    }
    m_stream.setDevice(m_file.get());
    m_stream.setByteOrder(QDataStream::BigEndian);
    m_stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
    m_stream.resetStatus();
    return true;
}

bool RadarBinFile::checkFile(const QString& fileName)
{
    bool accepted = false;
    if (open(fileName, QIODevice::ReadOnly)) {
        qint32 magic = 0;
        float version = 0.0f;
        m_stream >> magic;
        if (m_stream.status() == QDataStream::Ok && magic == RadarRecordingHeader::kBinaryMagic) {
            m_stream >> version;
            accepted = m_stream.status() == QDataStream::Ok && version == 1.0f;
        }
    }
    close();
    return accepted;
}

bool RadarBinFile::readHeader(RadarRecordingHeader& header)
{
    RadarRecordingHeader read;
    int fieldsRead = 0;
    if (isOpenFor(QIODevice::ReadOnly)) {
        // Each field is read only while the stream is still good, so the
        // count says how far a damaged header got.
        auto field = [&](auto& value) {
            if (m_stream.status() != QDataStream::Ok)
                return;
            m_stream >> value;
            if (m_stream.status() == QDataStream::Ok)
                ++fieldsRead;
        };
        field(read.magic);
        field(read.version);
        field(read.headerSize);
        field(read.numTxAntennas);
        field(read.numRxAntennas);
        field(read.maskTxAntennas);
        field(read.maskRxAntennas);
        field(read.areRxAntennasInterleaved);
        field(read.modulationTypeEnum);
        field(read.chirpShapeEnum);
        field(read.lowerRfFrequencyKHz);
        field(read.upperRfFrequencyKHz);
        field(read.samplingFrequencyKHz);
        field(read.adcResolutionBits);
        field(read.areAdcSamplesNormalized);
        field(read.dataFormatEnum);
        field(read.chirpsPerFrame);
        field(read.samplesPerChirp);
        field(read.samplesPerFrame);
        field(read.chirpTimeSec);
        field(read.pulseRepetitionTimeSec);
        field(read.framePeriodSec);
    }
    header = read;
    return fieldsRead == RadarRecordingHeader::kFieldCount;
}

bool RadarBinFile::readFrames(quint32 rowCount, quint32 samplesPerRow, std::vector<RadarFrameRecord>& rows)
{
    if (!isOpenFor(QIODevice::ReadOnly))
        return false;
    skipHeaderIfAtStart();
    if (rows.size() < rowCount)
        rows.resize(rowCount);
    const qint64 rowBytes = 4 * qint64(samplesPerRow);
    qint64 bytesRead = 0;
    for (quint32 i = 0; i < rowCount; ++i) {
        RadarFrameRecord& row = rows[i];
        row.samples.resize(samplesPerRow);
        m_stream >> row.frameNumber;
        const int got = m_stream.readRawData(reinterpret_cast<char*>(row.samples.data()), int(rowBytes));
        if (got <= 0)
            break;
        bytesRead += got;
        WordSwap::toFromBigEndian(row.samples.data(), size_t(got) / 4);
        if (got != rowBytes)
            break;
    }
    return m_stream.status() == QDataStream::Ok && bytesRead == qint64(rowCount) * rowBytes;
}

bool RadarBinFile::writeHeader(const RadarRecordingHeader& header)
{
    if (!isOpenFor(QIODevice::WriteOnly))
        return false;
    if (m_file->pos() != 0 && !m_file->seek(0))
        return false;
    m_stream.resetStatus();
    m_stream << header.magic << header.version << header.headerSize << header.numTxAntennas
             << header.numRxAntennas << header.maskTxAntennas << header.maskRxAntennas
             << header.areRxAntennasInterleaved << header.modulationTypeEnum << header.chirpShapeEnum
             << header.lowerRfFrequencyKHz << header.upperRfFrequencyKHz << header.samplingFrequencyKHz
             << header.adcResolutionBits << header.areAdcSamplesNormalized << header.dataFormatEnum
             << header.chirpsPerFrame << header.samplesPerChirp << header.samplesPerFrame << header.chirpTimeSec
             << header.pulseRepetitionTimeSec << header.framePeriodSec;
    if (m_stream.status() == QDataStream::Ok)
        return true;
    m_errorString = m_file->errorString();
    return false;
}

bool RadarBinFile::writeFrames(quint32 rowCount, quint32 samplesPerRow, const std::vector<RadarFrameRecord>& rows)
{
    if (!isOpenFor(QIODevice::WriteOnly) || rows.size() < rowCount)
        return false;
    skipHeaderIfAtStart();
    for (quint32 i = 0; i < rowCount; ++i) {
        if (!writeFrame(samplesPerRow, rows[i]))
            return false;
    }
    return true;
}

bool RadarBinFile::writeFrame(quint32 samplesPerRow, const RadarFrameRecord& row)
{
    if (!isOpenFor(QIODevice::WriteOnly) || row.samples.size() < samplesPerRow)
        return false;
    const int rowBytes = int(4 * qint64(samplesPerRow));
    const qint64 recordStart = m_file->pos();
    // The stream's status sticks; one failed record must not fail the rest.
    m_stream.resetStatus();
    errno = 0;
    m_stream << row.frameNumber;
    const int written = m_stream.writeRawData(reinterpret_cast<const char*>(row.samples.data()), rowBytes);
    if (m_stream.status() == QDataStream::Ok && written == rowBytes)
        return true;
    rollBack(recordStart, errno);
    return false;
}

void RadarBinFile::rollBack(qint64 recordStart, int savedErrno)
{
    // A short write sets no error on the file; the system's reason is then
    // only in errno, taken right after the write.
    if (m_file->error() != QFileDevice::NoError)
        m_errorString = m_file->errorString();
    else if (savedErrno != 0)
        m_errorString = QString::fromLocal8Bit(std::strerror(savedErrno));
    else
        m_errorString = QStringLiteral("the disk took only part of the frame");
    m_file->unsetError();
    // Shrinking needs no space, so this works on a full disk too.
    if (!m_file->resize(recordStart) || !m_file->seek(recordStart))
        qCritical() << "Cannot cut the broken last record off" << m_file->fileName() << ":" << m_file->errorString();
    m_stream.resetStatus();
}

bool RadarBinFile::close()
{
    m_stream.setDevice(nullptr);
    return RecordingFileAccess::flushAndClose(m_file);
}

bool RadarBinFile::isOpenFor(QIODevice::OpenModeFlag mode) const
{
    return RecordingFileAccess::isOpenFor(m_file.get(), mode);
}

void RadarBinFile::skipHeaderIfAtStart()
{
    if (m_file->pos() < RadarRecordingHeader::kHeaderSize)
        m_file->seek(RadarRecordingHeader::kHeaderSize);
}
