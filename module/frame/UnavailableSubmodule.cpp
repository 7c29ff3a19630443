#include "frame/UnavailableSubmodule.h"

UnavailableSubmodule::UnavailableSubmodule(QList<IRadarSubmoduleCoordinator::Mode> modes, QObject* parent)
    : QObject(parent)
    , m_coordinator(std::move(modes))
{
}
