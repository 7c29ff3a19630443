#pragma once

#include "recording/RadarBinFile.h"
#include "recording/RadarFrameRecord.h"
#include "recording/RadarRecordingHeader.h"
#include "recording/RecordingFrame.h"
#include "recording/WordSwap.h"

#include <QFile>
#include <QString>

#include <cstring>
#include <memory>
#include <vector>

// Frames built by hand the way the SDK lays them out: one row-major matrix
// per antenna, chirps x samples, with an optional row padding (stride).
namespace TestFrames {

struct OwnedFrame
{
    std::vector<std::vector<float>> data;
    std::vector<vrn_Matrix_R_s> matrices;
    std::vector<vrn_Matrix_R_s*> pointers;
    vrn_Frame_R_t frame {};
};

// A sample value that differs per frame, antenna, chirp and sample and
// covers signs, tiny and large magnitudes.
inline float sampleValue(int seed, size_t index)
{
    const float base = float((seed * 7919 + int(index) * 104729) % 20011) / 20011.0f;
    switch (index % 4) {
    case 0: return base;
    case 1: return -base * 1e-6f;
    case 2: return base * 3.0e7f;
    default: return -base;
    }
}

// missingAntenna >= 0 leaves that antenna's matrix out, as a broken
// delivery would.
inline SharedFrame make(int antennas, int chirps, int samples, int seed, int padding = 0, int missingAntenna = -1)
{
    auto owner = std::make_shared<OwnedFrame>();
    owner->data.resize(size_t(antennas));
    owner->matrices.resize(size_t(antennas));
    size_t index = 0;
    for (int a = 0; a < antennas; ++a) {
        const int stride = samples + padding;
        owner->data[a].assign(size_t(chirps * stride), -999.0f);
        for (int c = 0; c < chirps; ++c)
            for (int s = 0; s < samples; ++s)
                owner->data[a][size_t(c * stride + s)] = sampleValue(seed, index++);
        owner->matrices[a] = { uint32_t(chirps), uint32_t(samples), uint32_t(stride), owner->data[a].data() };
        owner->pointers.push_back(a == missingAntenna ? nullptr : &owner->matrices[a]);
    }
    owner->frame.num_rx = uint32_t(antennas);
    owner->frame.rx_data = owner->pointers.data();
    return SharedFrame(owner, &owner->frame);
}

// The samples of make() in file order, host byte order.
inline std::vector<float> expectedSamples(int antennas, int chirps, int samples, int seed)
{
    std::vector<float> out(size_t(antennas * chirps * samples));
    for (size_t i = 0; i < out.size(); ++i)
        out[i] = sampleValue(seed, i);
    return out;
}

inline QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool bitIdentical(const std::vector<float>& a, const std::vector<float>& b)
{
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

// A header as a device with the given antennas would fill it.
inline RadarRecordingHeader header(quint32 txMask, quint32 rxMask, quint32 chirps, quint32 samples)
{
    RadarRecordingHeader h;
    h.numTxAntennas = 1;
    h.numRxAntennas = 3;
    h.maskTxAntennas = txMask;
    h.maskRxAntennas = rxMask;
    h.lowerRfFrequencyKHz = 58000000.0f;
    h.upperRfFrequencyKHz = 63500000.0f;
    h.samplingFrequencyKHz = 2000.0f;
    h.chirpsPerFrame = chirps;
    h.samplesPerChirp = samples;
    h.samplesPerFrame = quint32(qPopulationCount(txMask) * qPopulationCount(rxMask)) * chirps * samples;
    h.chirpTimeSec = 0.000064f;
    h.pulseRepetitionTimeSec = 0.0003f;
    h.framePeriodSec = 0.1f;
    return h;
}

// A pulsed-Doppler header: one channel of `samples` complex samples per
// frame, stored as interleaved I/Q pairs.
inline RadarRecordingHeader dopplerHeader(quint32 samples)
{
    RadarRecordingHeader h = header(1, 1, 1, samples);
    h.modulationTypeEnum = RadarRecordingHeader::kModulationDoppler;
    h.dataFormatEnum = RadarRecordingHeader::kDataComplexInterleaved;
    h.numRxAntennas = 1;
    h.lowerRfFrequencyKHz = h.upperRfFrequencyKHz = 24125000.0f;
    h.samplingFrequencyKHz = 2.0f;
    h.chirpTimeSec = 0.0f;
    h.pulseRepetitionTimeSec = 0.0005f;
    h.samplesPerFrame = 2 * samples;
    return h;
}

// The frames of data/small.raw.txt (one antenna, two chirps of two samples),
// in host byte order.
inline std::vector<RadarFrameRecord> smallRows()
{
    return { { 0, { 0.0f, 0.5f, 1.0f, -0.25f } },
             { 7, { 0.125f, 0.000001f, 100.5f, 3.14159274f } },
             { -1, { -0.0f, 2.5e-7f, 12345.678f, -1e-7f } } };
}

// `rows` (host byte order) behind `header` as a binary recording at `path`.
inline bool writeRecording(const QString& path, const RadarRecordingHeader& header, std::vector<RadarFrameRecord> rows)
{
    for (RadarFrameRecord& row : rows)
        WordSwap::toFromBigEndian(row.samples.data(), row.samples.size());
    RadarBinFile file;
    return file.open(path, QIODevice::WriteOnly | QIODevice::Truncate) && file.writeHeader(header)
        && file.writeFrames(quint32(rows.size()), header.samplesPerFrame, rows) && file.close();
}

// The binary recording whose text form is data/small.raw.txt.
inline bool writeSmallRecording(const QString& path)
{
    return writeRecording(path, header(1, 1, 2, 2), smallRows());
}

// `count` frames of expectedSamples() numbered from 0, for long recordings.
inline std::vector<RadarFrameRecord> numberedRows(int count, int antennas, int chirps, int samples)
{
    std::vector<RadarFrameRecord> rows;
    for (int i = 0; i < count; ++i)
        rows.push_back({ i, expectedSamples(antennas, chirps, samples, i) });
    return rows;
}

// Checks a binary recording byte by byte, without the project's reader:
// the magic, Samples_per_Frame at byte 72, then nothing but whole records
// (big-endian frame number, samples) numbered up by one from firstNumber,
// or from whatever the first record holds when it is negative. Empty when
// the layout holds; `frames` gets the number of records.
inline QString layoutProblem(const QString& path, qint64& frames, qint32 firstNumber = 0)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("cannot open %1").arg(path);
    const QByteArray bytes = file.readAll();
    const auto be32 = [&bytes](qint64 at) {
        const auto* p = reinterpret_cast<const uchar*>(bytes.constData() + at);
        return quint32(p[0]) << 24 | quint32(p[1]) << 16 | quint32(p[2]) << 8 | quint32(p[3]);
    };
    if (bytes.size() < 88)
        return QStringLiteral("only %1 bytes").arg(bytes.size());
    if (be32(0) != 0x564E5242u) // "VNRB"
        return QStringLiteral("no magic");
    const qint64 record = 4 + 4 * qint64(be32(72));
    if ((bytes.size() - 88) % record != 0)
        return QStringLiteral("%1 bytes are not 88 plus whole records of %2").arg(bytes.size()).arg(record);
    frames = (bytes.size() - 88) / record;
    if (firstNumber < 0 && frames > 0)
        firstNumber = qint32(be32(88));
    for (qint64 i = 0; i < frames; ++i) {
        const qint32 number = qint32(be32(88 + i * record));
        if (number != firstNumber + i)
            return QStringLiteral("record %1 holds frame %2").arg(i).arg(number);
    }
    return QString();
}

}
