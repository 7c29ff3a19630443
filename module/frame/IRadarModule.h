#pragma once

#include "host/ServiceRegistry.h"

#include <QVariant>

class QQmlEngine;
class JSONConfigurationObject;
class IRadarSubmoduleCoordinator;

// One operating mode of the radar module. The module forwards each of its
// host operations to every submodule in order, so a submodule has the same
// operation set plus its coordinator.
class IRadarModule
{
public:
    virtual ~IRadarModule() = default;
    virtual void hostNotice(const QVariant& notice) = 0;
    virtual void initialise(ServiceRegistry& registry) = 0;
    virtual void registerTypes() = 0;
    virtual void initialiseResources() = 0;
    virtual void shutdown() = 0;
    virtual void setupEngine(QQmlEngine* engine) = 0;
    virtual void addConfiguration(JSONConfigurationObject& root) = 0;
    virtual IRadarSubmoduleCoordinator* coordinator() = 0;
};
