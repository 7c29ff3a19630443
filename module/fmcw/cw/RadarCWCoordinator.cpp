#include "fmcw/cw/RadarCWCoordinator.h"

#include <QDebug>

RadarCWCoordinator::RadarCWCoordinator(QObject* parent)
    : IRadarSubmoduleCoordinator(parent)
{
}

QList<IRadarSubmoduleCoordinator::Mode> RadarCWCoordinator::supportedModes() const
{
    return {
        { VRN_SHIELD_FMCW_512, QStringLiteral("CW") },
        { VRN_SHIELD_FMCW_513, QStringLiteral("CW") },
        { VRN_SHIELD_FMCW_514, QStringLiteral("CW") }
    };
}

bool RadarCWCoordinator::connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type)
{
    // The mode's device, configuration and pipeline are not part of this
    // build yet: refuse the board instead of pretending to stream.
    qWarning() << "CW mode cannot open" << uuid << "of type" << type << "in this build";
    return false;
}

void RadarCWCoordinator::disconnectDevice()
{
    stopAcquisition();
    if (!m_connected)
        return;
    m_connected = false;
    emit isConnectedChanged(false);
}

void RadarCWCoordinator::startAcquisition()
{
    if (!m_connected || m_acquiring)
        return;
    m_acquiring = true;
    emit isAcquisitionActiveChanged(true);
}

void RadarCWCoordinator::stopAcquisition()
{
    if (!m_acquiring)
        return;
    m_acquiring = false;
    emit isAcquisitionActiveChanged(false);
}

void RadarCWCoordinator::onRadarEvent(RadarEventCode code, QString message, QString details)
{
    qDebug() << "CW mode event" << static_cast<qint32>(code) << message << details;
}
