#pragma once

#include <QObject>
#include <QString>

class DeviceInfo;
class IRadarFirmwareSource;

// Tells a mode's view whether the firmware folder holds an image newer than
// what the connected board runs. It follows the board's firmware version,
// so the answer changes as boards come and go or are flashed; a newer image
// is announced once per board version, not on every look.
class RadarFirmwareNotice : public QObject
{
    Q_OBJECT
public:
    explicit RadarFirmwareNotice(QObject* parent = nullptr);

    // Neither is owned; either may be null (then there is never an image).
    void setSource(const IRadarFirmwareSource* source);
    void watch(DeviceInfo* deviceInfo);
    // Only the mode that has the board open speaks of it: the device
    // information of another mode may still describe the same board.
    void setConnected(bool connected);

    // Looks again: the newer image's path, empty when the board is up to
    // date, not connected to this mode, or there is no image.
    QString check();
    QString newerImage() const { return m_newerImage; }

signals:
    void newerImageChanged(QString path);
    // For the user's messages, once per board version with a newer image.
    void announce(QString message, QString details);

private:
    const IRadarFirmwareSource* m_source = nullptr;
    DeviceInfo* m_deviceInfo = nullptr;
    bool m_connected = false;
    QString m_newerImage;
    QString m_announcedFor;
};
