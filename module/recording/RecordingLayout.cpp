#include "recording/RecordingLayout.h"

#include "recording/RecordingFiles.h"
#include "recording/RecordingReplay.h"

namespace RecordingLayout {

namespace {
QString modulationName(qint32 modulation)
{
    switch (modulation) {
    case RadarRecordingHeader::kModulationDoppler:
        return QStringLiteral("Doppler");
    case RadarRecordingHeader::kModulationFmcw:
        return QStringLiteral("FMCW");
    default:
        return QStringLiteral("unknown modulation %1").arg(modulation);
    }
}

QString formatName(qint32 format)
{
    switch (format) {
    case RadarRecordingHeader::kDataReal:
        return QStringLiteral("real samples");
    case RadarRecordingHeader::kDataComplex:
        return QStringLiteral("complex I/Q in separate blocks");
    case RadarRecordingHeader::kDataComplexInterleaved:
        return QStringLiteral("complex interleaved I/Q");
    default:
        return QStringLiteral("unknown data format %1").arg(format);
    }
}
} // namespace

Kind kindOf(const RadarRecordingHeader& header)
{
    if (header.isFmcwReal())
        return Kind::Fmcw;
    if (header.isDopplerComplexInterleaved() && header.chirpsPerFrame == 1)
        return Kind::Doppler;
    return Kind::Other;
}

Kind kindOfRecording(const QString& basePath)
{
    RadarRecordingHeader header;
    if (!RecordingReplay::readHeader(RecordingFiles::binPath(basePath), header))
        return Kind::Unreadable;
    return kindOf(header);
}

QString describe(const RadarRecordingHeader& header)
{
    const QString chirps = header.chirpsPerFrame == 1 ? QStringLiteral("one chirp per frame")
                                                      : QStringLiteral("%1 chirps per frame").arg(header.chirpsPerFrame);
    return QStringLiteral("%1, %2, %3").arg(modulationName(header.modulationTypeEnum),
                                            formatName(header.dataFormatEnum), chirps);
}

QString refusal(const QString& binPath, Kind found, const QString& playbackName)
{
    switch (found) {
    case Kind::Fmcw:
        return QStringLiteral("%1 holds FMCW chirps (real samples), which the %2 playback does not play")
            .arg(binPath, playbackName);
    case Kind::Doppler:
        return QStringLiteral("%1 holds pulsed-Doppler frames (complex interleaved I/Q, one chirp per frame), which "
                              "the %2 playback does not play")
            .arg(binPath, playbackName);
    case Kind::Other:
        return QStringLiteral("%1 holds frames of a modulation or data format the %2 playback does not play")
            .arg(binPath, playbackName);
    case Kind::Unreadable:
        break;
    }
    return QStringLiteral("%1 is not a readable binary recording").arg(binPath);
}

} // namespace RecordingLayout
