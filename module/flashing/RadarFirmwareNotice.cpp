#include "flashing/RadarFirmwareNotice.h"

#include "flashing/IRadarFirmwareSource.h"
#include "fmcw/common/DeviceInfo.h"

#include <QDebug>
#include <QFileInfo>

RadarFirmwareNotice::RadarFirmwareNotice(QObject* parent)
    : QObject(parent)
{
}

void RadarFirmwareNotice::setSource(const IRadarFirmwareSource* source)
{
    m_source = source;
    check();
}

void RadarFirmwareNotice::watch(DeviceInfo* deviceInfo)
{
    if (m_deviceInfo)
        disconnect(m_deviceInfo, nullptr, this, nullptr);
    m_deviceInfo = deviceInfo;
    if (m_deviceInfo)
        connect(m_deviceInfo, &DeviceInfo::deviceFirmwareNumberChanged, this, &RadarFirmwareNotice::check);
    check();
}

void RadarFirmwareNotice::setConnected(bool connected)
{
    m_connected = connected;
    // Reading the firmware folder is not part of connecting a board: look
    // once the connection (and whatever the caller does next) is done.
    QMetaObject::invokeMethod(this, &RadarFirmwareNotice::check, Qt::QueuedConnection);
}

QString RadarFirmwareNotice::check()
{
    const QString version = (m_connected && m_deviceInfo) ? m_deviceInfo->deviceFirmwareNumber() : QString();
    const QString image = (m_source && !version.isEmpty()) ? m_source->newerImageFor(version) : QString();
    if (image != m_newerImage) {
        m_newerImage = image;
        emit newerImageChanged(image);
    }
    if (!image.isEmpty() && version != m_announcedFor) {
        m_announcedFor = version;
        qInfo() << "Newer firmware" << image << "for a board running" << version;
        emit announce(QStringLiteral("A newer firmware image is available"),
                      QStringLiteral("%1 is newer than the board's firmware %2; flash it from the flashers panel "
                                     "or with --flash.")
                          .arg(QFileInfo(image).fileName(), version));
    }
    if (version.isEmpty())
        m_announcedFor.clear();
    return image;
}
