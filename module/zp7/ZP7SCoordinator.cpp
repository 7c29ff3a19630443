#include "zp7/ZP7SCoordinator.h"

#include <QDebug>

ZP7SCoordinator::ZP7SCoordinator(QObject* parent)
    : IRadarSubmoduleCoordinator(parent)
{
}

QList<IRadarSubmoduleCoordinator::Mode> ZP7SCoordinator::supportedModes() const
{
    return {
        { VRN_SHIELD_ZP7_768, QStringLiteral("Standard") }
    };
}

bool ZP7SCoordinator::connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type)
{
    // The mode's device, configuration and pipeline are not part of this
    // build yet: refuse the board instead of pretending to stream.
    qWarning() << "Standard mode cannot open" << uuid << "of type" << type << "in this build";
    return false;
}

void ZP7SCoordinator::disconnectDevice()
{
    stopAcquisition();
    if (!m_connected)
        return;
    m_connected = false;
    emit isConnectedChanged(false);
}

void ZP7SCoordinator::startAcquisition()
{
    if (!m_connected || m_acquiring)
        return;
    m_acquiring = true;
    emit isAcquisitionActiveChanged(true);
}

void ZP7SCoordinator::stopAcquisition()
{
    if (!m_acquiring)
        return;
    m_acquiring = false;
    emit isAcquisitionActiveChanged(false);
}

void ZP7SCoordinator::onRadarEvent(RadarEventCode code, QString message, QString details)
{
    qDebug() << "Standard mode event" << static_cast<qint32>(code) << message << details;
}
