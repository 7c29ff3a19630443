#pragma once

#include "host/IModule.h"

#include <QList>
#include <memory>

class IRadarModule;
class RadarCoordinator;
class RadarDeviceMonitor;
class RadarFirmwareSource;
class RadarFlasherMonitor;
class RadarGeneralUserSettings;

// The radar module as the host sees it: owns the objects shared by the
// modes and forwards every host operation to the three submodules.
class Radar : public IModule
{
public:
    Radar();
    ~Radar() override;

    void hostNotice(const QVariant& notice) override;
    void initialise(ServiceRegistry& registry) override;
    void registerTypes() override;
    void initialiseResources() override;
    void shutdown() override;
    void setupEngine(QQmlEngine* engine) override;
    void addConfiguration(JSONConfigurationObject& root) override;
    std::pair<QString, QString> moduleInfo() const override;

    // For the host's scripted sessions and for tests.
    RadarCoordinator* coordinator() const { return m_coordinator.get(); }
    RadarDeviceMonitor* deviceMonitor() const { return m_deviceMonitor.get(); }
    RadarGeneralUserSettings* generalUserSettings() const { return m_generalUserSettings.get(); }
    const QList<std::shared_ptr<IRadarModule>>& submodules() const { return m_submodules; }

private:
    std::shared_ptr<RadarGeneralUserSettings> m_generalUserSettings;
    std::shared_ptr<RadarFirmwareSource> m_firmwareSource;
    std::shared_ptr<RadarFlasherMonitor> m_flasherMonitor;
    std::shared_ptr<RadarCoordinator> m_coordinator;
    std::shared_ptr<RadarDeviceMonitor> m_deviceMonitor;
    QList<std::shared_ptr<IRadarModule>> m_submodules;
};
