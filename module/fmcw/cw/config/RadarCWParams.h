#pragma once

#include "sdk/vrn.h"

#include <QObject>
#include <QString>

#include <memory>

class JSONConfigurationObject;
class RadarCWParamsLimits;

// The CW mode's parameters ("cw_scene"): carrier, DAC and duty cycle of the
// transmitter, the test-signal generator, the receivers' sampling, the
// baseband filters and the ADC. Values are kept as the user sees them (dB,
// kHz, ns, the choice texts); the copy functions translate them to the
// SDK's indexes and back through RadarCWValueTables.
class RadarCWParams : public QObject
{
    Q_OBJECT
    Q_PROPERTY(float rfCenterFrequency READ rfCenterFrequency WRITE setRfCenterFrequency NOTIFY rfCenterFrequencyChanged)
    Q_PROPERTY(quint32 dac READ dac WRITE setDac NOTIFY dacChanged)
    Q_PROPERTY(quint32 dutyCycle READ dutyCycle WRITE setDutyCycle NOTIFY dutyCycleChanged)
    Q_PROPERTY(QString testSignalMode READ testSignalMode WRITE setTestSignalMode NOTIFY testSignalModeChanged)
    Q_PROPERTY(float testSignalFrequency READ testSignalFrequency WRITE setTestSignalFrequency NOTIFY testSignalFrequencyChanged)
    Q_PROPERTY(quint32 rxNumSamples READ rxNumSamples WRITE setRxNumSamples NOTIFY rxNumSamplesChanged)
    Q_PROPERTY(quint32 samplingRate READ samplingRate WRITE setSamplingRate NOTIFY samplingRateChanged)
    Q_PROPERTY(quint32 basebandGainHighPass READ basebandGainHighPass WRITE setBasebandGainHighPass NOTIFY basebandGainHighPassChanged)
    Q_PROPERTY(quint32 basebandHpCutoffFreq READ basebandHpCutoffFreq WRITE setBasebandHpCutoffFreq NOTIFY basebandHpCutoffFreqChanged)
    Q_PROPERTY(quint32 basebandAafCutoffFreq READ basebandAafCutoffFreq WRITE setBasebandAafCutoffFreq NOTIFY basebandAafCutoffFreqChanged)
    Q_PROPERTY(quint32 basebandGainAmplifier READ basebandGainAmplifier WRITE setBasebandGainAmplifier NOTIFY basebandGainAmplifierChanged)
    Q_PROPERTY(quint32 adcSamplingTime READ adcSamplingTime WRITE setAdcSamplingTime NOTIFY adcSamplingTimeChanged)
    Q_PROPERTY(QString adcNumOfConversions READ adcNumOfConversions WRITE setAdcNumOfConversions NOTIFY adcNumOfConversionsChanged)
    Q_PROPERTY(QString adcOversamplingFactor READ adcOversamplingFactor WRITE setAdcOversamplingFactor NOTIFY adcOversamplingFactorChanged)
    Q_PROPERTY(bool adcDoubleMSB READ adcDoubleMSB WRITE setAdcDoubleMSB NOTIFY adcDoubleMSBChanged)
public:
    explicit RadarCWParams(QObject* parent = nullptr);

    float rfCenterFrequency() const { return m_rfCenterFrequency; } // Hz
    void setRfCenterFrequency(float value);
    quint32 dac() const { return m_dac; }
    void setDac(quint32 value);
    quint32 dutyCycle() const { return m_dutyCycle; } // percent
    void setDutyCycle(quint32 value);
    QString testSignalMode() const { return m_testSignalMode; }
    void setTestSignalMode(const QString& value);
    float testSignalFrequency() const { return m_testSignalFrequency; } // Hz
    void setTestSignalFrequency(float value);
    quint32 rxNumSamples() const { return m_rxNumSamples; }
    void setRxNumSamples(quint32 value);
    quint32 samplingRate() const { return m_samplingRate; } // Hz
    void setSamplingRate(quint32 value);
    quint32 basebandGainHighPass() const { return m_basebandGainHighPass; } // dB
    void setBasebandGainHighPass(quint32 value);
    quint32 basebandHpCutoffFreq() const { return m_basebandHpCutoffFreq; } // kHz
    void setBasebandHpCutoffFreq(quint32 value);
    quint32 basebandAafCutoffFreq() const { return m_basebandAafCutoffFreq; } // kHz
    void setBasebandAafCutoffFreq(quint32 value);
    quint32 basebandGainAmplifier() const { return m_basebandGainAmplifier; } // dB
    void setBasebandGainAmplifier(quint32 value);
    quint32 adcSamplingTime() const { return m_adcSamplingTime; } // ns
    void setAdcSamplingTime(quint32 value);
    QString adcNumOfConversions() const { return m_adcNumOfConversions; }
    void setAdcNumOfConversions(const QString& value);
    QString adcOversamplingFactor() const { return m_adcOversamplingFactor; }
    void setAdcOversamplingFactor(const QString& value);
    bool adcDoubleMSB() const { return m_adcDoubleMSB; }
    void setAdcDoubleMSB(bool value);

    // To the SDK's records; a value outside its table is sent as index 0
    // with the table's warning.
    void copyToBasebandConfig(vrn_Device_Baseband_Config_t& config) const;
    void copyToTestSignalGenerator(vrn_Device_Test_Signal_Generator_t& config) const;
    void copyToAdcConfig(vrn_Device_ADC_Config_t& config) const;

    // From the SDK's records, through the setters (the pages hear it).
    void copyFromBasebandConfig(const vrn_Device_Baseband_Config_t& config);
    void copyFromTestSignalGenerator(const vrn_Device_Test_Signal_Generator_t& config);
    void copyFromAdcConfig(const vrn_Device_ADC_Config_t& config);
    // Every parameter of a whole CW record; the antenna masks are not
    // parameters (RadarDeviceCWConfig takes those). The duty cycle is no
    // SDK value and stays as it is.
    void copyFromSdkConfig(const vrn_CW_Config_t& config);

    // Copies every value through the setters.
    void assign(const RadarCWParams& other);

    // Floats match within 0.001, everything else exactly.
    bool operator==(const RadarCWParams& other) const;
    bool operator!=(const RadarCWParams& other) const;

    // The "cw_scene" parameter node. Numbers must not be negative; those
    // with device bounds are held to `limits` (not owned, may be null) when
    // a document is validated. Table values are not checked: a value
    // outside its table is the conversion's business.
    std::unique_ptr<JSONConfigurationObject> configurationNode(const RadarCWParamsLimits* limits);

signals:
    void rfCenterFrequencyChanged();
    void dacChanged();
    void dutyCycleChanged();
    void testSignalModeChanged();
    void testSignalFrequencyChanged();
    void rxNumSamplesChanged();
    void samplingRateChanged();
    void basebandGainHighPassChanged();
    void basebandHpCutoffFreqChanged();
    void basebandAafCutoffFreqChanged();
    void basebandGainAmplifierChanged();
    void adcSamplingTimeChanged();
    void adcNumOfConversionsChanged();
    void adcOversamplingFactorChanged();
    void adcDoubleMSBChanged();
    // After any writer's own signal.
    void guiParamChanged();
    // After the writers of the four ADC values, which bound the sampling rate.
    void adcParamsChanged();

private:
    // Until the device's defaults arrive, every choice holds its table's
    // first entry: what an all-zero SDK record stands for.
    float m_rfCenterFrequency = 0.0f;
    quint32 m_dac = 0;
    quint32 m_dutyCycle = 100;
    QString m_testSignalMode = QStringLiteral("Off");
    float m_testSignalFrequency = 0.0f;
    quint32 m_rxNumSamples = 0;
    quint32 m_samplingRate = 0;
    quint32 m_basebandGainHighPass = 18;
    quint32 m_basebandHpCutoffFreq = 20;
    quint32 m_basebandAafCutoffFreq = 600;
    quint32 m_basebandGainAmplifier = 0;
    quint32 m_adcSamplingTime = 50;
    QString m_adcNumOfConversions = QStringLiteral("No tracking");
    QString m_adcOversamplingFactor = QStringLiteral("Off");
    bool m_adcDoubleMSB = false;
};
