#include "frame/UnavailableModeCoordinator.h"

#include <QDebug>

UnavailableModeCoordinator::UnavailableModeCoordinator(QList<Mode> modes, QObject* parent)
    : IRadarSubmoduleCoordinator(parent)
    , m_modes(std::move(modes))
{
}

bool UnavailableModeCoordinator::connectDevice(const QString& uuid, vrn_Device_Shield_Type_t type)
{
    const QString mode = m_modes.isEmpty() ? QString() : m_modes.first().second;
    qWarning().noquote() << mode << "mode cannot open" << uuid << "of type" << type << "in this build";
    return false;
}

void UnavailableModeCoordinator::onRadarEvent(RadarEventCode code, QString message, QString details)
{
    qDebug() << "Event for a mode that is not available:" << static_cast<qint32>(code) << message << details;
}
