#include "fmcw/common/DeviceInfo.h"

#include "core/JSONConfigurationBinding.h"

namespace {

template<typename T, typename Signal>
void store(DeviceInfo* info, T& member, const T& value, Signal signal)
{
    if (member == value)
        return;
    member = value;
    emit(info->*signal)();
}

}

DeviceInfo::DeviceInfo(QObject* parent)
    : QObject(parent)
{
}

void DeviceInfo::setNumRxAntennas(quint8 value)
{
    store(this, m_numRxAntennas, value, &DeviceInfo::numRxAntennasChanged);
}

void DeviceInfo::setNumTxAntennas(quint8 value)
{
    store(this, m_numTxAntennas, value, &DeviceInfo::numTxAntennasChanged);
}

void DeviceInfo::setDeviceName(const QString& value)
{
    store(this, m_deviceName, value, &DeviceInfo::deviceNameChanged);
}

void DeviceInfo::setDeviceFirmwareName(const QString& value)
{
    store(this, m_deviceFirmwareName, value, &DeviceInfo::deviceFirmwareNameChanged);
}

void DeviceInfo::setMaxRfFrequencyHz(quint64 value)
{
    store(this, m_maxRfFrequencyHz, value, &DeviceInfo::maxRfFrequencyHzChanged);
}

void DeviceInfo::setMinRfFrequencyHz(quint64 value)
{
    store(this, m_minRfFrequencyHz, value, &DeviceInfo::minRfFrequencyHzChanged);
}

void DeviceInfo::setDeviceFirmwareNumber(const QString& value)
{
    store(this, m_deviceFirmwareNumber, value, &DeviceInfo::deviceFirmwareNumberChanged);
}

void DeviceInfo::setDeviceTemperature(const QVariant& value)
{
    // QVariant's own comparison would call an empty variant equal to a
    // float 0 after conversion; compare validity and type as well.
    if (m_deviceTemperature.isValid() == value.isValid() && m_deviceTemperature.userType() == value.userType()
        && m_deviceTemperature == value)
        return;
    m_deviceTemperature = value;
    emit deviceTemperatureChanged();
}

void DeviceInfo::setDeviceTxPower(const QVector<float>& value)
{
    store(this, m_deviceTxPower, value, &DeviceInfo::deviceTxPowerChanged);
}

RadarConstants::RadarType DeviceInfo::radarType() const
{
    return radarTypeFromName(m_deviceName);
}

RadarConstants::RadarType DeviceInfo::radarTypeFromName(const QString& deviceName)
{
    if (deviceName == QLatin1String("KMR7B"))
        return RadarConstants::KMR7B;
    if (deviceName == QLatin1String("KMR7A"))
        return RadarConstants::KMR7A;
    if (deviceName == QLatin1String("KMR7C"))
        return RadarConstants::KMR7C;
    return RadarConstants::Unknown;
}

std::unique_ptr<JSONConfigurationObject> DeviceInfo::configurationNode()
{
    auto node = std::make_unique<JSONConfigurationObject>(QStringLiteral("device_info"));
    using JSONConfigurationBinding::bindValue;
    using D = DeviceInfo;
    bindValue(*node, QStringLiteral("device_firmware_name"), this, &D::deviceFirmwareName, &D::setDeviceFirmwareName);
    bindValue(*node, QStringLiteral("device_firmware_number"), this, &D::deviceFirmwareNumber,
              &D::setDeviceFirmwareNumber);
    bindValue(*node, QStringLiteral("device_name"), this, &D::deviceName, &D::setDeviceName);
    bindValue(*node, QStringLiteral("max_rf_frequency_hz"), this, &D::maxRfFrequencyHz, &D::setMaxRfFrequencyHz);
    bindValue(*node, QStringLiteral("min_rf_frequency_hz"), this, &D::minRfFrequencyHz, &D::setMinRfFrequencyHz);
    bindValue(*node, QStringLiteral("num_rx_antennas"), this, &D::numRxAntennas, &D::setNumRxAntennas);
    bindValue(*node, QStringLiteral("num_tx_antennas"), this, &D::numTxAntennas, &D::setNumTxAntennas);
    JSONConfigurationBinding::bindArray(*node, QStringLiteral("tx_power"), this, &D::deviceTxPower,
                                        &D::setDeviceTxPower);
    return node;
}
