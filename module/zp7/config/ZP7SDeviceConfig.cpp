#include "zp7/config/ZP7SDeviceConfig.h"

#include "common/MathAxis.h"
#include "fmcw/common/DeviceInfo.h"
#include "zp7/config/ZP7SFrameParams.h"
#include "zp7/config/ZP7SLimits.h"
#include "zp7/config/ZP7SPulseConfigParams.h"

namespace {

void copyDeviceInfo(const DeviceInfo& from, DeviceInfo& to)
{
    to.setDeviceName(from.deviceName());
    to.setDeviceFirmwareName(from.deviceFirmwareName());
    to.setDeviceFirmwareNumber(from.deviceFirmwareNumber());
    to.setNumRxAntennas(from.numRxAntennas());
    to.setNumTxAntennas(from.numTxAntennas());
    to.setMinRfFrequencyHz(from.minRfFrequencyHz());
    to.setMaxRfFrequencyHz(from.maxRfFrequencyHz());
    to.setDeviceTemperature(from.deviceTemperature());
    to.setDeviceTxPower(from.deviceTxPower());
    to.setDeviceType(from.deviceType());
}

bool outside(const QString& found, const QString& name, QString& message, QString& details)
{
    if (found.isEmpty())
        return false;
    message = QStringLiteral("%1 outside the device's limits").arg(name);
    details = found;
    return true;
}

}

ZP7SDeviceConfig::ZP7SDeviceConfig(DeviceInfo* deviceInfo, QObject* parent)
    : QObject(parent)
    , m_deviceInfo(deviceInfo ? deviceInfo : new DeviceInfo(this))
    , m_frequencyDomainAxis(new MathAxis(this))
    , m_frameParams(new ZP7SFrameParams(this))
    , m_pulseConfigParams(new ZP7SPulseConfigParams(this))
    , m_limits(new ZP7SLimits(this))
{
}

ZP7SDeviceConfig::~ZP7SDeviceConfig() = default;

void ZP7SDeviceConfig::copyFrom(const ZP7SDeviceConfig& other)
{
    if (&other == this)
        return;
    // The bounds first, so that anything clamping to them sees the new ones.
    m_limits->assign(*other.m_limits);
    m_frameParams->assign(*other.m_frameParams);
    m_pulseConfigParams->assign(*other.m_pulseConfigParams);
    m_frequencyDomainAxis->setMin(other.m_frequencyDomainAxis->min());
    m_frequencyDomainAxis->setMax(other.m_frequencyDomainAxis->max());
    m_frequencyDomainAxis->setStep(other.m_frequencyDomainAxis->step());
    if (m_deviceInfo != other.m_deviceInfo)
        copyDeviceInfo(*other.m_deviceInfo, *m_deviceInfo);
}

bool ZP7SDeviceConfig::sameSettings(const ZP7SDeviceConfig& other) const
{
    return *m_frameParams == *other.m_frameParams && *m_pulseConfigParams == *other.m_pulseConfigParams;
}

bool ZP7SDeviceConfig::toSdk(vrn_Corvix_Frame_Config_t& frame, vrn_Corvix_Pulse_Config_t& pulse) const
{
    // The pulse record first: when it is refused, neither record changes.
    if (!m_pulseConfigParams->copyTo(pulse))
        return false;
    m_frameParams->copyTo(frame);
    return true;
}

void ZP7SDeviceConfig::fromSdk(const vrn_Corvix_Frame_Config_t& frame, const vrn_Corvix_Pulse_Config_t& pulse)
{
    m_frameParams->copyFrom(frame);
    m_pulseConfigParams->copyFrom(pulse);
}

void ZP7SDeviceConfig::setLimits(const vrn_Corvix_Limits_t& limits)
{
    m_limits->setFromSdk(limits);
}

int ZP7SDeviceConfig::channel() const
{
    return m_pulseConfigParams->channel();
}

double ZP7SDeviceConfig::pulseRepetitionFrequency() const
{
    const double prt = m_frameParams->pulseRepetitionTime();
    return prt > 0.0 ? 1.0 / prt : 0.0;
}

void ZP7SDeviceConfig::updateFrequencyDomainAxis(quint32 bins)
{
    // The pulses sample the Doppler signal at the PRF, so the spectrum
    // spans one PRF centred on zero.
    const double prf = pulseRepetitionFrequency();
    m_frequencyDomainAxis->setMin(-prf / 2.0);
    m_frequencyDomainAxis->setMax(prf / 2.0);
    m_frequencyDomainAxis->setStep(bins > 0 ? prf / bins : 0.0);
}

bool ZP7SDeviceConfig::checkWithinLimits(QString& message, QString& details) const
{
    const ZP7SFrameParams& frame = *m_frameParams;
    const ZP7SPulseConfigParams& pulse = *m_pulseConfigParams;
    if (outside(m_limits->checkNumOfSamples(frame.numOfSamples()), QStringLiteral("Number of samples"), message,
                details)
        || outside(m_limits->checkPulseRepetitionTime(frame.pulseRepetitionTime()),
                   QStringLiteral("Pulse repetition time"), message, details)
        || outside(m_limits->checkFrameRepetitionRate(frame.frameRepetitionRate()),
                   QStringLiteral("Frame repetition rate"), message, details)
        || outside(m_limits->checkTxPowerLevel(pulse.txPowerLevel()), QStringLiteral("Tx power level"), message,
                   details)
        || outside(m_limits->checkAbbGain(pulse.abbGain()), QStringLiteral("Analog baseband gain"), message,
                   details))
        return false;
    // The pulses of one frame are sent back to back within the frame.
    const double burst = double(frame.numOfSamples()) * frame.pulseRepetitionTime();
    const double frameTime = frame.frameRepetitionRate() > 0.0f ? 1.0 / frame.frameRepetitionRate() : 0.0;
    if (burst > frameTime * 1.0001) {
        message = QStringLiteral("Frame repetition rate outside the device's limits");
        details = QStringLiteral("The %1 pulses of a frame take %2 s, longer than one frame (%3 s)")
                      .arg(frame.numOfSamples())
                      .arg(burst, 0, 'g', 6)
                      .arg(frameTime, 0, 'g', 6);
        return false;
    }
    return true;
}
