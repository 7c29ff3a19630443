#include "fmcw/common/DeviceInfo.h"

#include "core/JSONConfigurationArray.h"
#include "core/JSONConfigurationObject.h"
#include "core/JSONConfigurationValue.h"

namespace {

template<typename T, typename Signal>
void store(DeviceInfo* info, T& member, const T& value, Signal signal)
{
    if (member == value)
        return;
    member = value;
    emit(info->*signal)();
}

template<typename T>
QString acceptAll(const T&)
{
    return QString();
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
    node->addChild(std::make_unique<JSONConfigurationValue<QString>>(
        QStringLiteral("device_firmware_name"), [this] { return m_deviceFirmwareName; },
        [this](const QString& value) { setDeviceFirmwareName(value); }, acceptAll<QString>));
    node->addChild(std::make_unique<JSONConfigurationValue<QString>>(
        QStringLiteral("device_firmware_number"), [this] { return m_deviceFirmwareNumber; },
        [this](const QString& value) { setDeviceFirmwareNumber(value); }, acceptAll<QString>));
    node->addChild(std::make_unique<JSONConfigurationValue<QString>>(
        QStringLiteral("device_name"), [this] { return m_deviceName; },
        [this](const QString& value) { setDeviceName(value); }, acceptAll<QString>));
    node->addChild(std::make_unique<JSONConfigurationValue<quint64>>(
        QStringLiteral("max_rf_frequency_hz"), [this] { return m_maxRfFrequencyHz; },
        [this](const quint64& value) { setMaxRfFrequencyHz(value); }, acceptAll<quint64>));
    node->addChild(std::make_unique<JSONConfigurationValue<quint64>>(
        QStringLiteral("min_rf_frequency_hz"), [this] { return m_minRfFrequencyHz; },
        [this](const quint64& value) { setMinRfFrequencyHz(value); }, acceptAll<quint64>));
    node->addChild(std::make_unique<JSONConfigurationValue<quint8>>(
        QStringLiteral("num_rx_antennas"), [this] { return m_numRxAntennas; },
        [this](const quint8& value) { setNumRxAntennas(value); }, acceptAll<quint8>));
    node->addChild(std::make_unique<JSONConfigurationValue<quint8>>(
        QStringLiteral("num_tx_antennas"), [this] { return m_numTxAntennas; },
        [this](const quint8& value) { setNumTxAntennas(value); }, acceptAll<quint8>));
    node->addChild(std::make_unique<JSONConfigurationArray<QVector<float>>>(
        QStringLiteral("tx_power"), [this] { return m_deviceTxPower; },
        [this](const QVector<float>& value) { setDeviceTxPower(value); }, acceptAll<QVector<float>>));
    return node;
}
