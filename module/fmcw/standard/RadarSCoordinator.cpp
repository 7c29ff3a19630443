#include "fmcw/standard/RadarSCoordinator.h"

#include <QDebug>

RadarSCoordinator::RadarSCoordinator(QObject* parent)
    : IRadarSubmoduleCoordinator(parent)
{
}

QList<IRadarSubmoduleCoordinator::Mode> RadarSCoordinator::supportedModes() const
{
    return {
        { VRN_SHIELD_FMCW_512, QStringLiteral("Standard") },
        { VRN_SHIELD_FMCW_513, QStringLiteral("Standard") },
        { VRN_SHIELD_FMCW_514, QStringLiteral("Standard") }
    };
}

bool RadarSCoordinator::connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type)
{
    // The mode's device, configuration and pipeline are not part of this
    // build yet: refuse the board instead of pretending to stream.
    qWarning() << "Standard mode cannot open" << uuid << "of type" << type << "in this build";
    return false;
}

void RadarSCoordinator::disconnectDevice()
{
    stopAcquisition();
    if (!m_connected)
        return;
    m_connected = false;
    emit isConnectedChanged(false);
}

void RadarSCoordinator::startAcquisition()
{
    if (!m_connected || m_acquiring)
        return;
    m_acquiring = true;
    emit isAcquisitionActiveChanged(true);
}

void RadarSCoordinator::stopAcquisition()
{
    if (!m_acquiring)
        return;
    m_acquiring = false;
    emit isAcquisitionActiveChanged(false);
}

void RadarSCoordinator::onRadarEvent(RadarEventCode code, QString message, QString details)
{
    qDebug() << "Standard mode event" << static_cast<qint32>(code) << message << details;
}
