#pragma once

#include "frame/IRadarModule.h"

#include <QObject>
#include <memory>

struct Vrn;
class IBroker;
class RadarCWConfig;
class RadarCWController;
class RadarCWCoordinator;
class RadarCWDataProcessing;
class RadarCWView;
class RadarDevice;

// The FMCW boards' continuous-wave test mode: builds and owns its device,
// CW controller, configuration object, data processing, coordinator and
// view, and publishes the view to the pages as "radarCWView".
class RadarCW : public QObject, public IRadarModule
{
    Q_OBJECT
public:
    explicit RadarCW(QObject* parent = nullptr);
    ~RadarCW() override;

    void hostNotice(const QVariant& notice) override;
    void initialise(ServiceRegistry& registry) override;
    void registerTypes() override;
    void initialiseResources() override;
    void shutdown() override;
    void setupEngine(QQmlEngine* engine) override;
    void addConfiguration(JSONConfigurationObject& root) override;
    IRadarSubmoduleCoordinator* coordinator() override;

    RadarCWView* view() const { return m_view.get(); }
    RadarCWDataProcessing* processing() const { return m_processing.get(); }

private:
    const Vrn* m_sdk = nullptr;
    IBroker* m_broker = nullptr;
    // Declared in dependency order: destroyed from the view down.
    std::unique_ptr<RadarDevice> m_device;
    std::unique_ptr<RadarCWController> m_controller;
    std::unique_ptr<RadarCWConfig> m_config;
    std::unique_ptr<RadarCWDataProcessing> m_processing;
    std::unique_ptr<RadarCWCoordinator> m_coordinator;
    std::unique_ptr<RadarCWView> m_view;
};
