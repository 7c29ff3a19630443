#include "fmcw/cw/config/RadarCWParams.h"

#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationValue.h"
#include "fmcw/common/SettingsValidation.h"
#include "fmcw/cw/config/RadarCWParamsLimits.h"
#include "fmcw/cw/config/RadarCWValueTables.h"

#include <functional>
#include <limits>

namespace {

using RadarCWValueTables::NumericTable;
using RadarCWValueTables::TextTable;

const QString kNegative = QStringLiteral("Value must be greater or equal 0");

template<typename T>
bool store(T& member, const T& value)
{
    if (member == value)
        return false;
    member = value;
    return true;
}

using P = RadarCWParams;

// The whole numbers are unsigned, but a file may hold a negative number,
// which an unsigned leaf would wrap into a large one. They are therefore
// read through a signed leaf, so the validator sees the sign.
void bindWhole(JSONConfigurationObject& node, const QString& key, P* params, quint32 (P::*getter)() const,
               void (P::*setter)(quint32), std::function<QString(quint32)> check = {})
{
    node.addChild(std::make_unique<JSONConfigurationValue<qint32>>(
        key,
        [params, getter] {
            constexpr quint32 kLargest = quint32(std::numeric_limits<qint32>::max());
            return qint32(qMin((params->*getter)(), kLargest));
        },
        [params, setter](const qint32& value) { (params->*setter)(quint32(qMax(value, 0))); },
        [check](const qint32& value) -> QString {
            if (value < 0)
                return kNegative;
            return check ? check(quint32(value)) : QString();
        }));
}

void bindFloat(JSONConfigurationObject& node, const QString& key, P* params, float (P::*getter)() const,
               void (P::*setter)(float), std::function<QString(float)> check = {})
{
    node.addChild(std::make_unique<JSONConfigurationValue<float>>(
        key, [params, getter] { return (params->*getter)(); },
        [params, setter](const float& value) { (params->*setter)(value); },
        [check](const float& value) -> QString {
            if (value < 0.0f)
                return kNegative;
            return check ? check(value) : QString();
        }));
}

void bindText(JSONConfigurationObject& node, const QString& key, P* params, QString (P::*getter)() const,
              void (P::*setter)(const QString&))
{
    node.addChild(std::make_unique<JSONConfigurationValue<QString>>(
        key, [params, getter] { return (params->*getter)(); },
        [params, setter](const QString& value) { (params->*setter)(value); }, nullptr));
}

}

RadarCWParams::RadarCWParams(QObject* parent)
    : QObject(parent)
{
}

void RadarCWParams::setRfCenterFrequency(float value)
{
    if (!store(m_rfCenterFrequency, value))
        return;
    emit rfCenterFrequencyChanged();
    emit guiParamChanged();
}

void RadarCWParams::setDac(quint32 value)
{
    if (!store(m_dac, value))
        return;
    emit dacChanged();
    emit guiParamChanged();
}

void RadarCWParams::setDutyCycle(quint32 value)
{
    if (!store(m_dutyCycle, value))
        return;
    emit dutyCycleChanged();
    emit guiParamChanged();
}

void RadarCWParams::setTestSignalMode(const QString& value)
{
    if (!store(m_testSignalMode, value))
        return;
    emit testSignalModeChanged();
    emit guiParamChanged();
}

void RadarCWParams::setTestSignalFrequency(float value)
{
    if (!store(m_testSignalFrequency, value))
        return;
    emit testSignalFrequencyChanged();
    emit guiParamChanged();
}

void RadarCWParams::setRxNumSamples(quint32 value)
{
    if (!store(m_rxNumSamples, value))
        return;
    emit rxNumSamplesChanged();
    emit guiParamChanged();
}

void RadarCWParams::setSamplingRate(quint32 value)
{
    if (!store(m_samplingRate, value))
        return;
    emit samplingRateChanged();
    emit guiParamChanged();
}

void RadarCWParams::setBasebandGainHighPass(quint32 value)
{
    if (!store(m_basebandGainHighPass, value))
        return;
    emit basebandGainHighPassChanged();
    emit guiParamChanged();
}

void RadarCWParams::setBasebandHpCutoffFreq(quint32 value)
{
    if (!store(m_basebandHpCutoffFreq, value))
        return;
    emit basebandHpCutoffFreqChanged();
    emit guiParamChanged();
}

void RadarCWParams::setBasebandAafCutoffFreq(quint32 value)
{
    if (!store(m_basebandAafCutoffFreq, value))
        return;
    emit basebandAafCutoffFreqChanged();
    emit guiParamChanged();
}

void RadarCWParams::setBasebandGainAmplifier(quint32 value)
{
    if (!store(m_basebandGainAmplifier, value))
        return;
    emit basebandGainAmplifierChanged();
    emit guiParamChanged();
}

void RadarCWParams::setAdcSamplingTime(quint32 value)
{
    if (!store(m_adcSamplingTime, value))
        return;
    emit adcSamplingTimeChanged();
    emit guiParamChanged();
    emit adcParamsChanged();
}

void RadarCWParams::setAdcNumOfConversions(const QString& value)
{
    if (!store(m_adcNumOfConversions, value))
        return;
    emit adcNumOfConversionsChanged();
    emit guiParamChanged();
    emit adcParamsChanged();
}

void RadarCWParams::setAdcOversamplingFactor(const QString& value)
{
    if (!store(m_adcOversamplingFactor, value))
        return;
    emit adcOversamplingFactorChanged();
    emit guiParamChanged();
    emit adcParamsChanged();
}

void RadarCWParams::setAdcDoubleMSB(bool value)
{
    if (!store(m_adcDoubleMSB, value))
        return;
    emit adcDoubleMSBChanged();
    emit guiParamChanged();
    emit adcParamsChanged();
}

void RadarCWParams::copyToBasebandConfig(vrn_Device_Baseband_Config_t& config) const
{
    using RadarCWValueTables::toIndex;
    config.gain_amplifier_index = toIndex(NumericTable::GainAmplifier, m_basebandGainAmplifier);
    config.gain_high_pass_index = toIndex(NumericTable::GainHighPass, m_basebandGainHighPass);
    config.hp_cutoff_index = toIndex(NumericTable::HpCutoff, m_basebandHpCutoffFreq);
    config.aaf_cutoff_index = toIndex(NumericTable::AafCutoff, m_basebandAafCutoffFreq);
}

void RadarCWParams::copyToTestSignalGenerator(vrn_Device_Test_Signal_Generator_t& config) const
{
    config.mode_index = RadarCWValueTables::toIndex(TextTable::TestSignalMode, m_testSignalMode);
    config.frequency_Hz = m_testSignalFrequency;
}

void RadarCWParams::copyToAdcConfig(vrn_Device_ADC_Config_t& config) const
{
    using RadarCWValueTables::toIndex;
    config.sample_rate_Hz = m_samplingRate;
    config.tracking_conversions_index = toIndex(TextTable::AdcTracking, m_adcNumOfConversions);
    config.sample_time_index = toIndex(NumericTable::SamplingTime, m_adcSamplingTime);
    config.double_msb_time = m_adcDoubleMSB ? 1u : 0u;
    config.oversampling_index = toIndex(TextTable::Oversampling, m_adcOversamplingFactor);
}

void RadarCWParams::copyFromBasebandConfig(const vrn_Device_Baseband_Config_t& config)
{
    using RadarCWValueTables::fromIndex;
    setBasebandGainHighPass(fromIndex(NumericTable::GainHighPass, config.gain_high_pass_index));
    setBasebandHpCutoffFreq(fromIndex(NumericTable::HpCutoff, config.hp_cutoff_index));
    setBasebandAafCutoffFreq(fromIndex(NumericTable::AafCutoff, config.aaf_cutoff_index));
    setBasebandGainAmplifier(fromIndex(NumericTable::GainAmplifier, config.gain_amplifier_index));
}

void RadarCWParams::copyFromTestSignalGenerator(const vrn_Device_Test_Signal_Generator_t& config)
{
    setTestSignalMode(RadarCWValueTables::fromIndex(TextTable::TestSignalMode, config.mode_index));
    setTestSignalFrequency(config.frequency_Hz);
}

void RadarCWParams::copyFromAdcConfig(const vrn_Device_ADC_Config_t& config)
{
    using RadarCWValueTables::fromIndex;
    // The ADC values first: changing them may pull the sampling rate into
    // their bounds, and the record's own rate must be what stays.
    setAdcSamplingTime(fromIndex(NumericTable::SamplingTime, config.sample_time_index));
    setAdcNumOfConversions(fromIndex(TextTable::AdcTracking, config.tracking_conversions_index));
    setAdcOversamplingFactor(fromIndex(TextTable::Oversampling, config.oversampling_index));
    setAdcDoubleMSB(config.double_msb_time != 0);
    setSamplingRate(config.sample_rate_Hz);
}

void RadarCWParams::copyFromSdkConfig(const vrn_CW_Config_t& config)
{
    setRfCenterFrequency(config.rf_center_frequency_Hz);
    setDac(config.dac_value);
    copyFromTestSignalGenerator(config.test_signal);
    setRxNumSamples(config.num_samples);
    copyFromBasebandConfig(config.baseband);
    copyFromAdcConfig(config.adc);
}

void RadarCWParams::assign(const RadarCWParams& other)
{
    setRfCenterFrequency(other.m_rfCenterFrequency);
    setDac(other.m_dac);
    setDutyCycle(other.m_dutyCycle);
    setTestSignalMode(other.m_testSignalMode);
    setTestSignalFrequency(other.m_testSignalFrequency);
    setRxNumSamples(other.m_rxNumSamples);
    setBasebandGainHighPass(other.m_basebandGainHighPass);
    setBasebandHpCutoffFreq(other.m_basebandHpCutoffFreq);
    setBasebandAafCutoffFreq(other.m_basebandAafCutoffFreq);
    setBasebandGainAmplifier(other.m_basebandGainAmplifier);
    // As in copyFromAdcConfig(): the rate after the values that bound it.
    setAdcSamplingTime(other.m_adcSamplingTime);
    setAdcNumOfConversions(other.m_adcNumOfConversions);
    setAdcOversamplingFactor(other.m_adcOversamplingFactor);
    setAdcDoubleMSB(other.m_adcDoubleMSB);
    setSamplingRate(other.m_samplingRate);
}

bool RadarCWParams::operator==(const RadarCWParams& other) const
{
    using SettingsValidation::fuzzyEqual;
    return fuzzyEqual(m_rfCenterFrequency, other.m_rfCenterFrequency) && m_dac == other.m_dac
        && m_dutyCycle == other.m_dutyCycle && m_testSignalMode == other.m_testSignalMode
        && fuzzyEqual(m_testSignalFrequency, other.m_testSignalFrequency) && m_rxNumSamples == other.m_rxNumSamples
        && m_samplingRate == other.m_samplingRate && m_basebandGainHighPass == other.m_basebandGainHighPass
        && m_basebandHpCutoffFreq == other.m_basebandHpCutoffFreq
        && m_basebandAafCutoffFreq == other.m_basebandAafCutoffFreq
        && m_basebandGainAmplifier == other.m_basebandGainAmplifier && m_adcSamplingTime == other.m_adcSamplingTime
        && m_adcNumOfConversions == other.m_adcNumOfConversions
        && m_adcOversamplingFactor == other.m_adcOversamplingFactor && m_adcDoubleMSB == other.m_adcDoubleMSB;
}

bool RadarCWParams::operator!=(const RadarCWParams& other) const
{
    return !(*this == other);
}

std::unique_ptr<JSONConfigurationObject> RadarCWParams::configurationNode(const RadarCWParamsLimits* limits)
{
    const auto withinLimits = [limits](const char* property) {
        return [limits, property](auto value) {
            return limits ? limits->checkValue(QLatin1String(property), double(value)) : QString();
        };
    };

    auto scene = std::make_unique<JSONConfigurationObject>(QStringLiteral("cw_scene"));
    bindFloat(*scene, QStringLiteral("center_frequency_Hz"), this, &P::rfCenterFrequency, &P::setRfCenterFrequency,
              withinLimits("rfCenterFrequency"));
    bindWhole(*scene, QStringLiteral("dac"), this, &P::dac, &P::setDac, withinLimits("dac"));
    bindWhole(*scene, QStringLiteral("duty_cycle"), this, &P::dutyCycle, &P::setDutyCycle,
              [](quint32 value) { return SettingsValidation::checkRange(quint64(value), 0, 100); });
    bindWhole(*scene, QStringLiteral("rx_num_samples"), this, &P::rxNumSamples, &P::setRxNumSamples,
              withinLimits("rxNumSamples"));

    auto testSignal = std::make_unique<JSONConfigurationObject>(QStringLiteral("test_signal"));
    bindText(*testSignal, QStringLiteral("mode"), this, &P::testSignalMode, &P::setTestSignalMode);
    bindFloat(*testSignal, QStringLiteral("frequency"), this, &P::testSignalFrequency, &P::setTestSignalFrequency,
              withinLimits("testSignalFrequency"));
    scene->addChild(std::move(testSignal));

    auto baseband = std::make_unique<JSONConfigurationObject>(QStringLiteral("baseband"));
    bindWhole(*baseband, QStringLiteral("gain_hp"), this, &P::basebandGainHighPass, &P::setBasebandGainHighPass);
    bindWhole(*baseband, QStringLiteral("cutoff_frequency"), this, &P::basebandHpCutoffFreq,
              &P::setBasebandHpCutoffFreq);
    bindWhole(*baseband, QStringLiteral("aaf_cutoff_frequency"), this, &P::basebandAafCutoffFreq,
              &P::setBasebandAafCutoffFreq);
    bindWhole(*baseband, QStringLiteral("gain_amplifier"), this, &P::basebandGainAmplifier,
              &P::setBasebandGainAmplifier);
    scene->addChild(std::move(baseband));

    auto adc = std::make_unique<JSONConfigurationObject>(QStringLiteral("adc"));
    bindWhole(*adc, QStringLiteral("sampling_time"), this, &P::adcSamplingTime, &P::setAdcSamplingTime);
    bindText(*adc, QStringLiteral("num_of_conversions"), this, &P::adcNumOfConversions, &P::setAdcNumOfConversions);
    bindText(*adc, QStringLiteral("oversampling_factor"), this, &P::adcOversamplingFactor,
             &P::setAdcOversamplingFactor);
    adc->addChild(std::make_unique<JSONConfigurationValue<bool>>(
        QStringLiteral("double_msb"), [this] { return m_adcDoubleMSB; },
        [this](const bool& value) { setAdcDoubleMSB(value); }, nullptr));
    scene->addChild(std::move(adc));

    // Its bounds follow the ADC setting of the same document; the
    // configuration pulls it inside them once the document is read.
    bindWhole(*scene, QStringLiteral("sampling_rate"), this, &P::samplingRate, &P::setSamplingRate);
    return scene;
}
