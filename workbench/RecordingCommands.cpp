#include "RecordingCommands.h"

#include "recording/RadarBinFile.h"
#include "recording/RadarFileParsing.h"

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
        << "Frame_Period_sec = " << fixed(h.framePeriodSec) << '\n';
}

void drawProgress(QTextStream& out, int percent)
{
    constexpr int kWidth = 40;
    const int done = percent * kWidth / 100;
    out << "\r[" << QString(done, u'#') << QString(kWidth - done, u' ') << "] " << qSetFieldWidth(3) << percent
        << qSetFieldWidth(0) << '%';
    out.flush();
}

}

int inspectRecording(const QString& rawBinPath, QTextStream& out, QTextStream& err)
{
    RadarBinFile file;
    if (!file.checkFile(rawBinPath)) {
        err << rawBinPath << ": not a binary recording (expected \"VNRB\" and version 1.0)" << Qt::endl;
        return 1;
    }
    RadarRecordingHeader header;
    if (!file.open(rawBinPath, QIODevice::ReadOnly) || !file.readHeader(header)) {
        err << rawBinPath << ": the header is incomplete" << Qt::endl;
        return 1;
    }
    file.close();
    out << "File = " << rawBinPath << '\n';
    printHeader(header, out);
    if (header.samplesPerFrame == 0) {
        out.flush();
        err << rawBinPath << ": Samples_per_Frame is 0, frames cannot be counted" << Qt::endl;
        return 1;
    }
    const qint64 recordSize = RadarBinFile::recordSize(header.samplesPerFrame);
    const qint64 payload = qMax<qint64>(0, QFileInfo(rawBinPath).size() - RadarRecordingHeader::kHeaderSize);
    out << "Frames = " << payload / recordSize << '\n';
    if (payload % recordSize != 0)
        out << "Last frame truncated: " << payload % recordSize << " of " << recordSize << " bytes present\n";
    out.flush();
    return 0;
}

int convertRecording(const QString& basePath, QTextStream& out, QTextStream& err)
{
    const QString binPath = basePath + QStringLiteral(".raw.bin");
    const QString txtPath = basePath + QStringLiteral(".raw.txt");
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
        return 1;
    }
    loop.exec();
    if (barDrawn)
        out << Qt::endl;
    if (errors == 0)
        out << "Written " << txtPath << Qt::endl;
    return errors == 0 ? 0 : 1;
}
