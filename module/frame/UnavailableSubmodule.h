#pragma once

#include "frame/IRadarModule.h"
#include "frame/UnavailableModeCoordinator.h"

#include <QObject>

// A submodule whose mode is not part of this build: it takes part in every
// host operation without adding anything, and its coordinator refuses boards.
class UnavailableSubmodule : public QObject, public IRadarModule
{
    Q_OBJECT
public:
    explicit UnavailableSubmodule(QList<IRadarSubmoduleCoordinator::Mode> modes, QObject* parent = nullptr);

    void hostNotice(const QVariant&) override {}
    void initialise(ServiceRegistry&) override {}
    void registerTypes() override {}
    void initialiseResources() override {}
    void shutdown() override {}
    void setupEngine(QQmlEngine*) override {}
    void addConfiguration(JSONConfigurationObject&) override {}
    IRadarSubmoduleCoordinator* coordinator() override { return &m_coordinator; }

private:
    UnavailableModeCoordinator m_coordinator;
};
