#pragma once

#include <QtAlgorithms>
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

    // Modulation_Type_Enum, Data_Format_Enum.
    static constexpr qint32 kModulationDoppler = 0;
    static constexpr qint32 kModulationFmcw = 1;
    static constexpr qint32 kDataReal = 0;
    static constexpr qint32 kDataComplex = 1;
    static constexpr qint32 kDataComplexInterleaved = 2;

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

    // Floats per sample: a complex sample is stored as its real and its
    // imaginary part (interleaved: I0, Q0, I1, Q1, ...).
    quint32 valuesPerSample() const
    {
        return dataFormatEnum == kDataComplex || dataFormatEnum == kDataComplexInterleaved ? 2u : 1u;
    }
    // The floats a frame of this header holds: every sample of every chirp
    // of every enabled transmit/receive pair.
    quint32 expectedSamplesPerFrame() const
    {
        return valuesPerSample() * samplesPerChirp * chirpsPerFrame * quint32(qPopulationCount(maskTxAntennas))
            * quint32(qPopulationCount(maskRxAntennas));
    }
    bool isFmcwReal() const { return modulationTypeEnum == kModulationFmcw && dataFormatEnum == kDataReal; }
    // What the pulsed-Doppler mode records: one chirp of complex
    // interleaved I/Q samples per frame.
    bool isDopplerComplexInterleaved() const
    {
        return modulationTypeEnum == kModulationDoppler && dataFormatEnum == kDataComplexInterleaved;
    }
};
