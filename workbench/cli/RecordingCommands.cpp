#include "RecordingCommands.h"

#include "ConsoleProgress.h"
#include "ExitCodes.h"
#include "RecordingCheck.h"

#include "recording/RadarBinFile.h"
#include "recording/RadarFileParsing.h"
#include "recording/RecordingFiles.h"
#include "recording/RecordingLayout.h"
#include "recording/RecordingReplay.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QTextStream>

namespace {

QString fixed(float value)
{
    return QString::number(double(value), 'f', 6);
}

QString magicText(qint32 magic)
{
    QString text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const char c = char((quint32(magic) >> shift) & 0xff);
        text += (c >= 0x20 && c < 0x7f) ? QChar::fromLatin1(c) : QChar(u'?');
    }
    return text;
}

void printHeader(const RadarRecordingHeader& h, QTextStream& out)
{
    out << "Magic = " << magicText(h.magic) << '\n'
        << "Version = " << fixed(h.version) << '\n'
        << "Header_Size = " << h.headerSize << '\n'
        << "Num_Tx_Antennas = " << h.numTxAntennas << '\n'
        << "Num_Rx_Antennas = " << h.numRxAntennas << '\n'
        << "Mask_Tx_Antennas = " << h.maskTxAntennas << '\n'
        << "Mask_Rx_Antennas = " << h.maskRxAntennas << '\n'
        << "Are_Rx_Antennas_Interleaved = " << h.areRxAntennasInterleaved << '\n'
        << "Modulation_Type_Enum = " << h.modulationTypeEnum << '\n'
        << "Chirp_Shape_Enum = " << h.chirpShapeEnum << '\n'
        << "Lower_RF_Frequency_kHz = " << fixed(h.lowerRfFrequencyKHz) << '\n'
        << "Upper_RF_Frequency_kHz = " << fixed(h.upperRfFrequencyKHz) << '\n'
        << "Sampling_Frequency_kHz = " << fixed(h.samplingFrequencyKHz) << '\n'
        << "ADC_Resolution_Bits = " << h.adcResolutionBits << '\n'
        << "Are_ADC_Samples_Normalized = " << h.areAdcSamplesNormalized << '\n'
        << "Data_Format_Enum = " << h.dataFormatEnum << '\n'
        << "Chirps_per_Frame = " << h.chirpsPerFrame << '\n'
        << "Samples_per_Chirp = " << h.samplesPerChirp << '\n'
        << "Samples_per_Frame = " << h.samplesPerFrame << '\n'
        << "Chirp_Time_sec = " << fixed(h.chirpTimeSec) << '\n'
        << "Pulse_Repetition_Time_sec = " << fixed(h.pulseRepetitionTimeSec) << '\n'
        << "Frame_Period_sec = " << fixed(h.framePeriodSec) << '\n'
        << "Layout = " << RecordingLayout::describe(h) << '\n';
    // A pulsed-Doppler frame is N complex samples per channel, stored as
    // I, Q pairs: say so, so that nobody reads the floats as chirps.
    if (RecordingLayout::kindOf(h) == RecordingLayout::Kind::Doppler && h.samplesPerChirp != 0)
        out << "IQ_Samples_per_Channel = " << h.samplesPerChirp << '\n'
            << "Channels = " << h.samplesPerFrame / (2 * h.samplesPerChirp) << '\n';
}

}

int inspectRecording(const QString& path, QTextStream& out, QTextStream& err)
{
    const QString binPath = RecordingFiles::binPath(RecordingFiles::baseOf(path));
    const RecordingCheck::BinaryFrames frames = RecordingCheck::binaryFrames(binPath);
    if (frames.headerRead) {
        out << "File = " << binPath << '\n';
        printHeader(frames.header, out);
        out.flush();
    }
    if (!frames.error.isEmpty()) {
        err << frames.error << Qt::endl;
        return ExitCode::UsageError;
    }
    out << "Frames = " << frames.wholeFrames << '\n';
    if (frames.tornBytes != 0)
        out << "Last frame truncated: " << frames.tornBytes << " of "
            << RadarBinFile::recordSize(frames.header.samplesPerFrame) << " bytes present\n";
    out.flush();
    return ExitCode::Success;
}

int convertRecording(const QString& path, QTextStream& out, QTextStream& err)
{
    const QString base = RecordingFiles::baseOf(path);
    const QString binPath = RecordingFiles::binPath(base);
    const QString txtPath = RecordingFiles::txtPath(base);
    if (!QFileInfo::exists(binPath)) {
        err << binPath << " is missing (no such file)" << Qt::endl;
        return ExitCode::UsageError;
    }
    RadarRecordingHeader header;
    if (RecordingReplay::readHeader(binPath, header))
        out << "Layout = " << RecordingLayout::describe(header) << Qt::endl;
    RadarFileParsing parsing;
    QEventLoop loop;
    int errors = 0;
    bool barDrawn = false;
    // The converter emits on its own thread; with the loop as context every
    // signal is queued to this thread and handled inside loop.exec().
    QObject::connect(&parsing, &RadarFileParsing::convertingToTxt, &loop, [&](int progress) {
        drawProgress(out, progress);
        barDrawn = true;
    });
    QObject::connect(&parsing, &RadarFileParsing::errorDetected, &loop, [&](const QString& message, const QString& details) {
        if (barDrawn) {
            out << Qt::endl;
            barDrawn = false;
        }
        err << message << (details.isEmpty() ? QString() : QStringLiteral(" ") + details) << Qt::endl;
        ++errors;
    });
    QObject::connect(&parsing, &RadarFileParsing::finished, &loop, &QEventLoop::quit);
    if (!parsing.start(binPath, txtPath)) {
        err << "Cannot start the conversion of " << binPath << Qt::endl;
        return ExitCode::UsageError;
    }
    loop.exec();
    if (barDrawn)
        out << Qt::endl;
    if (errors == 0) {
        const QString incomplete = RecordingCheck::checkTextCopy(binPath, txtPath);
        if (!incomplete.isEmpty()) {
            err << incomplete << Qt::endl;
            ++errors;
        }
    }
    if (errors == 0)
        out << "Written " << txtPath << Qt::endl;
    return errors == 0 ? ExitCode::Success : ExitCode::UsageError;
}
