#pragma once

class IRadarSubmoduleCoordinator;

class IRadarSubmoduleCoordinatorRegister
{
public:
    virtual ~IRadarSubmoduleCoordinatorRegister() = default;
    virtual void registerSubmoduleCoordinator(IRadarSubmoduleCoordinator* coordinator) = 0;
};
