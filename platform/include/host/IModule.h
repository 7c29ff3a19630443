#pragma once

#include "host/ServiceRegistry.h"

#include <QString>
#include <QVariant>
#include <utility>

class QQmlEngine;
class JSONConfigurationObject;

// A plug-in module as the host drives it. The host calls, in this order:
// initialise, registerTypes, initialiseResources, setupEngine,
// addConfiguration, and at the end shutdown, then deletes the module.
// The order of the virtual slots is part of the binary contract.
class IModule
{
public:
    virtual ~IModule() = default;
    // Host notices (language, theme, ...) meant for every module; a module
    // may ignore them.
    virtual void hostNotice(const QVariant& notice) = 0;
    virtual void initialise(ServiceRegistry& registry) = 0;
    virtual void registerTypes() = 0;
    virtual void initialiseResources() = 0;
    virtual void shutdown() = 0;
    virtual void setupEngine(QQmlEngine* engine) = 0;
    virtual void addConfiguration(JSONConfigurationObject& root) = 0;
    virtual std::pair<QString, QString> moduleInfo() const = 0;
};

// The two symbols a module library exports with C linkage.
extern "C" {
typedef const char* (*CoreVersionFn)();
typedef IModule* (*CreateModuleFn)();
}

namespace ModuleExports {
constexpr const char* coreVersionSymbol = "CoreVersion";
constexpr const char* createModuleSymbol = "CreateModule";
constexpr const char* coreVersion = "1.0";
}
