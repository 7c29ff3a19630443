#pragma once

#include <QtGlobal>

// The 88-byte header at the start of a binary recording, also written as the
// key lines of a text recording. Field order is the file order; every field
// is four bytes. The defaults are the constants every recording carries: a
// real, normalised, 12-bit, up-chirp FMCW frame; the device-dependent fields
// are filled from the configuration running when recording starts.
struct RadarRecordingHeader
{
    // "VNRB" with the first character in the most significant byte.
    static constexpr qint32 kBinaryMagic = 0x564E5242;
    // "VNRT", the first line of a text recording.
    static constexpr qint32 kTextMagic = 0x564E5254;
    static constexpr qint32 kHeaderSize = 88;
    static constexpr int kFieldCount = 22;

    qint32 magic = kBinaryMagic;
    float version = 1.0f;
    qint32 headerSize = kHeaderSize;
    quint32 numTxAntennas = 0;
    quint32 numRxAntennas = 0;
    quint32 maskTxAntennas = 0;
    quint32 maskRxAntennas = 0;
    quint32 areRxAntennasInterleaved = 1;
    qint32 modulationTypeEnum = 1; // FMCW
    qint32 chirpShapeEnum = 0;     // UP_CHIRP
    float lowerRfFrequencyKHz = 0.0f;
    float upperRfFrequencyKHz = 0.0f;
    float samplingFrequencyKHz = 0.0f;
    quint32 adcResolutionBits = 12;
    quint32 areAdcSamplesNormalized = 1;
    qint32 dataFormatEnum = 0; // DATA_REAL
    quint32 chirpsPerFrame = 0;
    quint32 samplesPerChirp = 0;
    quint32 samplesPerFrame = 0;
    float chirpTimeSec = 0.0f;
    float pulseRepetitionTimeSec = 0.0f;
    float framePeriodSec = 0.0f;
};
