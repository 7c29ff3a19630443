#include "recording/RadarTxtFile.h"
#include "recording/RecordingFileAccess.h"

#include <QDebug>

#include <charconv>
#include <cmath>
#include <cstdio>

namespace {

constexpr int kMaxLineLength = 128;
const QByteArray kLineEnd = QByteArrayLiteral("\r\n");

const char* const kComments[] = {
    "### Header must not be changed. Following Enum definitions used for parameters.",
    "## Modulation_Type_Enum_Def = {DOPPLER = 0, FMCW = 1}",
    "## Data_Format_Enum_Def = {DATA_REAL = 0, DATA_COMPLEX = 1, DATA_COMPLEX_INTERLEAVED = 2}",
    "## Chirp_Shape_Enum_Def = {UP_CHIRP = 0, DOWN_CHIRP = 1, UP_DOWN_CHIRP = 2, DOWN_UP_CHIRP = 3}",
    "## ADC_Samples_Normalized = [0 , 1.0]",
    "## ADC_Samples_NonNormalized = [0, 2^ADC_Res_Bits - 1]",
};

const char kFrameNumberKey[] = "# Frame_Number = ";

// Appends a value as printf's "%f" prints it (six decimals), without
// depending on the process locale, which the application sets from the
// environment and which could turn the point into a comma.
void appendFixed(QByteArray& out, float value)
{
    const double v = value;
    if (std::isfinite(v)) {
        char text[64];
        const auto result = std::to_chars(text, text + sizeof text, v, std::chars_format::fixed, 6);
        if (result.ec == std::errc()) {
            out.append(text, int(result.ptr - text));
            return;
        }
    }
    // Infinities, NaN and the odd giant: the C library spells these the
    // same in every locale.
    char text[400];
    const int length = std::snprintf(text, sizeof text, "%f", v);
    out.append(text, length);
}

QByteArray fixed(float value)
{
    QByteArray out;
    appendFixed(out, value);
    return out;
}

// Decimal conversion of a whole value text; an empty text or one that
// starts with white space is refused before conversion.
bool startsCleanly(const QByteArray& text)
{
    return !text.isEmpty() && !std::isspace(static_cast<unsigned char>(text.at(0)));
}

bool parse(const QByteArray& text, quint32& value)
{
    bool ok = false;
    const quint32 parsed = startsCleanly(text) ? text.toUInt(&ok, 10) : 0;
    if (ok)
        value = parsed;
    return ok;
}

bool parse(const QByteArray& text, qint32& value)
{
    bool ok = false;
    const qint32 parsed = startsCleanly(text) ? text.toInt(&ok, 10) : 0;
    if (ok)
        value = parsed;
    return ok;
}

bool parse(const QByteArray& text, float& value)
{
    bool ok = false;
    const float parsed = startsCleanly(text) ? text.toFloat(&ok) : 0.0f;
    if (ok)
        value = parsed;
    return ok;
}

}

RadarTxtFile::~RadarTxtFile()
{
    close();
}

bool RadarTxtFile::open(const QString& fileName, QIODevice::OpenMode mode)
{
    close();
    m_file = std::make_unique<QFile>(fileName);
    // Line ends are part of the format: never let the device translate them.
    if (!m_file->open(mode & ~QIODevice::OpenMode(QIODevice::Text))) {
        qWarning() << "Cannot open text recording" << fileName << ":" << m_file->errorString();
        m_file.reset();
        return false;
    }
    return true;
}

bool RadarTxtFile::checkFile(const QString& fileName)
{
    RadarRecordingHeader header;
    const bool accepted = open(fileName, QIODevice::ReadOnly) && readHeader(header);
    close();
    return accepted;
}

bool RadarTxtFile::readHeader(RadarRecordingHeader& header)
{
    if (!isOpenFor(QIODevice::ReadOnly))
        return false;
    QByteArray line;
    // Only the first four characters of the first line are compared.
    if (!readLine(line) || !line.startsWith("VNRT"))
        return false;
    for (const char* comment : kComments) {
        if (!readLine(line) || line != comment)
            return false;
    }
    RadarRecordingHeader read;
    read.magic = RadarRecordingHeader::kTextMagic;
    QByteArray value;
    auto field = [&](const char* key, auto& target) { return readKey(key, value) && parse(value, target); };
    const bool complete = field("# Version = ", read.version)
        && field("# Num_Tx_Antennas = ", read.numTxAntennas)
        && field("# Num_Rx_Antennas = ", read.numRxAntennas)
        && field("# Mask_Tx_Antennas = ", read.maskTxAntennas)
        && field("# Mask_Rx_Antennas = ", read.maskRxAntennas)
        && field("# Are_Rx_Antennas_Interleaved = ", read.areRxAntennasInterleaved)
        && field("# Modulation_Type_Enum = ", read.modulationTypeEnum)
        && field("# Chirp_Shape_Enum = ", read.chirpShapeEnum)
        && field("# Lower_RF_Frequency_kHz = ", read.lowerRfFrequencyKHz)
        && field("# Upper_RF_Frequency_kHz = ", read.upperRfFrequencyKHz)
        && field("# Sampling_Frequency_kHz = ", read.samplingFrequencyKHz)
        && field("# ADC_Resolution_Bits = ", read.adcResolutionBits)
        && field("# Are_ADC_Samples_Normalized = ", read.areAdcSamplesNormalized)
        && field("# Data_Format_Enum = ", read.dataFormatEnum)
        && field("# Chirps_per_Frame = ", read.chirpsPerFrame)
        && field("# Samples_per_Chirp = ", read.samplesPerChirp)
        && field("# Samples_per_Frame = ", read.samplesPerFrame)
        && field("# Chirp_Time_sec = ", read.chirpTimeSec)
        && field("# Pulse_Repetition_Time_sec = ", read.pulseRepetitionTimeSec)
        && field("# Frame_Period_sec = ", read.framePeriodSec);
    if (complete)
        header = read;
    return complete;
}

bool RadarTxtFile::readFrames(quint32 rowCount, quint32 samplesPerRow, std::vector<RadarFrameRecord>& rows)
{
    if (!isOpenFor(QIODevice::ReadOnly))
        return false;
    if (rows.size() < rowCount)
        rows.resize(rowCount);
    QByteArray line;
    for (quint32 i = 0; i < rowCount; ++i) {
        RadarFrameRecord& row = rows[i];
        row.samples.resize(samplesPerRow);
        // Blank lines (the one after the header) separate nothing.
        do {
            if (!readLine(line))
                return false;
        } while (line.isEmpty());
        quint32 number = 0;
        if (!line.startsWith(kFrameNumberKey) || !parse(line.mid(int(sizeof kFrameNumberKey) - 1), number))
            return false;
        row.frameNumber = qint32(number);
        for (float& sample : row.samples) {
            if (!readLine(line) || !parse(line, sample))
                return false;
        }
    }
    return true;
}

bool RadarTxtFile::writeHeader(const RadarRecordingHeader& header)
{
    if (!isOpenFor(QIODevice::WriteOnly))
        return false;
    if (!writeLine(QByteArrayLiteral("VNRT")))
        return false;
    for (const char* comment : kComments) {
        if (!writeLine(comment))
            return false;
    }
    const auto u = [](quint32 v) { return QByteArray::number(v); };
    const auto i = [](qint32 v) { return QByteArray::number(v); };
    return writeKey("# Version = ", fixed(header.version))
        && writeKey("# Num_Tx_Antennas = ", u(header.numTxAntennas))
        && writeKey("# Num_Rx_Antennas = ", u(header.numRxAntennas))
        && writeKey("# Mask_Tx_Antennas = ", u(header.maskTxAntennas))
        && writeKey("# Mask_Rx_Antennas = ", u(header.maskRxAntennas))
        && writeKey("# Are_Rx_Antennas_Interleaved = ", u(header.areRxAntennasInterleaved))
        && writeKey("# Modulation_Type_Enum = ", i(header.modulationTypeEnum))
        && writeKey("# Chirp_Shape_Enum = ", i(header.chirpShapeEnum))
        && writeKey("# Lower_RF_Frequency_kHz = ", fixed(header.lowerRfFrequencyKHz))
        && writeKey("# Upper_RF_Frequency_kHz = ", fixed(header.upperRfFrequencyKHz))
        && writeKey("# Sampling_Frequency_kHz = ", fixed(header.samplingFrequencyKHz))
        && writeKey("# ADC_Resolution_Bits = ", u(header.adcResolutionBits))
        && writeKey("# Are_ADC_Samples_Normalized = ", u(header.areAdcSamplesNormalized))
        && writeKey("# Data_Format_Enum = ", i(header.dataFormatEnum))
        && writeKey("# Chirps_per_Frame = ", u(header.chirpsPerFrame))
        && writeKey("# Samples_per_Chirp = ", u(header.samplesPerChirp))
        && writeKey("# Samples_per_Frame = ", u(header.samplesPerFrame))
        && writeKey("# Chirp_Time_sec = ", fixed(header.chirpTimeSec))
        && writeKey("# Pulse_Repetition_Time_sec = ", fixed(header.pulseRepetitionTimeSec))
        && writeKey("# Frame_Period_sec = ", fixed(header.framePeriodSec))
        && writeLine(QByteArray());
}

bool RadarTxtFile::writeFrames(quint32 rowCount, quint32 samplesPerRow, const std::vector<RadarFrameRecord>& rows)
{
    if (!isOpenFor(QIODevice::WriteOnly) || rows.size() < rowCount)
        return false;
    for (quint32 i = 0; i < rowCount; ++i) {
        if (!writeFrame(samplesPerRow, rows[i]))
            return false;
    }
    return true;
}

bool RadarTxtFile::writeFrame(quint32 samplesPerRow, const RadarFrameRecord& row)
{
    if (!isOpenFor(QIODevice::WriteOnly) || row.samples.size() < samplesPerRow)
        return false;
    // The frame-number key line and one value line per sample, handed to
    // the file in one piece; a short write of any of it fails the frame.
    m_rowText.clear();
    m_rowText.append(kFrameNumberKey);
    m_rowText.append(QByteArray::number(quint32(row.frameNumber)));
    m_rowText.append(kLineEnd);
    for (quint32 i = 0; i < samplesPerRow; ++i) {
        appendFixed(m_rowText, row.samples[i]);
        m_rowText.append(kLineEnd);
    }
    return m_file->write(m_rowText) == m_rowText.size();
}

bool RadarTxtFile::close()
{
    return RecordingFileAccess::flushAndClose(m_file);
}

QString RadarTxtFile::errorString() const
{
    return m_file ? m_file->errorString() : QString();
}

bool RadarTxtFile::isOpenFor(QIODevice::OpenModeFlag mode) const
{
    return RecordingFileAccess::isOpenFor(m_file.get(), mode);
}

bool RadarTxtFile::writeLine(const QByteArray& text)
{
    const QByteArray bytes = kLineEnd + text;
    return m_file->write(bytes) == bytes.size();
}

bool RadarTxtFile::writeKey(const char* key, const QByteArray& value)
{
    const QByteArray bytes = key + value + kLineEnd;
    return m_file->write(bytes) == bytes.size();
}

bool RadarTxtFile::readLine(QByteArray& line)
{
    // Room for 128 characters, CR LF and one more character, which tells a
    // line that is too long from one that just fits.
    char buffer[kMaxLineLength + 4];
    const qint64 length = m_file->readLine(buffer, sizeof buffer);
    if (length <= 0)
        return false;
    qint64 end = length;
    if (end > 0 && buffer[end - 1] == '\n')
        --end;
    if (end > 0 && buffer[end - 1] == '\r')
        --end;
    if (end > kMaxLineLength)
        return false;
    line = QByteArray(buffer, int(end));
    return true;
}

bool RadarTxtFile::readKey(const char* key, QByteArray& value)
{
    QByteArray line;
    if (!readLine(line) || !line.startsWith(key))
        return false;
    value = line.mid(int(qstrlen(key)));
    return true;
}
