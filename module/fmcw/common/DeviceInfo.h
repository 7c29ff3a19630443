#pragma once

#include "frame/RadarConstants.h"

#include <QObject>
#include <QString>
#include <QVariant>
#include <QVector>

#include <memory>

class JSONConfigurationObject;

// What is known about the connected FMCW device ("device_info" of the
// extended document), for the pages and the validators.
class DeviceInfo : public QObject
{
    Q_OBJECT
    Q_PROPERTY(quint8 numRxAntennas READ numRxAntennas WRITE setNumRxAntennas NOTIFY numRxAntennasChanged)
    Q_PROPERTY(quint8 numTxAntennas READ numTxAntennas WRITE setNumTxAntennas NOTIFY numTxAntennasChanged)
    Q_PROPERTY(QString deviceName READ deviceName WRITE setDeviceName NOTIFY deviceNameChanged)
    Q_PROPERTY(QString deviceFirmwareName READ deviceFirmwareName WRITE setDeviceFirmwareName NOTIFY deviceFirmwareNameChanged)
    Q_PROPERTY(quint64 maxRfFrequencyHz READ maxRfFrequencyHz WRITE setMaxRfFrequencyHz NOTIFY maxRfFrequencyHzChanged)
    Q_PROPERTY(quint64 minRfFrequencyHz READ minRfFrequencyHz WRITE setMinRfFrequencyHz NOTIFY minRfFrequencyHzChanged)
    Q_PROPERTY(QString deviceFirmwareNumber READ deviceFirmwareNumber WRITE setDeviceFirmwareNumber NOTIFY deviceFirmwareNumberChanged)
    Q_PROPERTY(QVariant deviceTemperature READ deviceTemperature WRITE setDeviceTemperature NOTIFY deviceTemperatureChanged)
    Q_PROPERTY(QVector<float> deviceTxPower READ deviceTxPower WRITE setDeviceTxPower NOTIFY deviceTxPowerChanged)
public:
    explicit DeviceInfo(QObject* parent = nullptr);

    quint8 numRxAntennas() const { return m_numRxAntennas; }
    void setNumRxAntennas(quint8 value);
    quint8 numTxAntennas() const { return m_numTxAntennas; }
    void setNumTxAntennas(quint8 value);
    QString deviceName() const { return m_deviceName; }
    void setDeviceName(const QString& value);
    QString deviceFirmwareName() const { return m_deviceFirmwareName; }
    void setDeviceFirmwareName(const QString& value);
    quint64 maxRfFrequencyHz() const { return m_maxRfFrequencyHz; }
    void setMaxRfFrequencyHz(quint64 value);
    quint64 minRfFrequencyHz() const { return m_minRfFrequencyHz; }
    void setMinRfFrequencyHz(quint64 value);
    QString deviceFirmwareNumber() const { return m_deviceFirmwareNumber; }
    void setDeviceFirmwareNumber(const QString& value);
    // A float, or empty when no reading is available.
    QVariant deviceTemperature() const { return m_deviceTemperature; }
    void setDeviceTemperature(const QVariant& value);
    // One entry per transmit antenna, dBm.
    QVector<float> deviceTxPower() const { return m_deviceTxPower; }
    void setDeviceTxPower(const QVector<float>& value);

    // The SDK's chip family (vrn_Device_Type_t), the key of its defaults.
    int deviceType() const { return m_deviceType; }
    void setDeviceType(int value) { m_deviceType = value; }

    RadarConstants::RadarType radarType() const;
    static RadarConstants::RadarType radarTypeFromName(const QString& deviceName);

    std::unique_ptr<JSONConfigurationObject> configurationNode();

signals:
    void numRxAntennasChanged();
    void numTxAntennasChanged();
    void deviceNameChanged();
    void deviceFirmwareNameChanged();
    void maxRfFrequencyHzChanged();
    void minRfFrequencyHzChanged();
    void deviceFirmwareNumberChanged();
    void deviceTemperatureChanged();
    void deviceTxPowerChanged();

private:
    quint8 m_numRxAntennas = 0;
    quint8 m_numTxAntennas = 0;
    QString m_deviceName;
    QString m_deviceFirmwareName;
    quint64 m_maxRfFrequencyHz = 0;
    quint64 m_minRfFrequencyHz = 0;
    QString m_deviceFirmwareNumber;
    QVariant m_deviceTemperature;
    QVector<float> m_deviceTxPower;
    int m_deviceType = 0;
};
