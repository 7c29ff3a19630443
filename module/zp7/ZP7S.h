#pragma once

#include "frame/IRadarModule.h"

#include <QObject>
#include <memory>

struct Vrn;
class IPlaybackRegister;
class ZP7SConfig;
class ZP7SCoordinator;
class ZP7SDataProcessing;
class ZP7SDevice;
class ZP7SPlayback;
class ZP7SView;

// The pulsed-Doppler (ZP7) board's frame mode: builds and owns its device,
// configuration object, acquisition, coordinator, view and playback
// source, and publishes the view to the pages as "zp7sView".
class ZP7S : public QObject, public IRadarModule
{
    Q_OBJECT
public:
    explicit ZP7S(QObject* parent = nullptr);
    ~ZP7S() override;

    void hostNotice(const QVariant& notice) override;
    void initialise(ServiceRegistry& registry) override;
    void registerTypes() override;
    void initialiseResources() override;
    void shutdown() override;
    void setupEngine(QQmlEngine* engine) override;
    void addConfiguration(JSONConfigurationObject& root) override;
    IRadarSubmoduleCoordinator* coordinator() override;

    ZP7SView* view() const { return m_view.get(); }
    ZP7SDataProcessing* processing() const { return m_processing.get(); }

private:
    const Vrn* m_sdk = nullptr;
    IPlaybackRegister* m_playbackRegister = nullptr;
    // Declared in dependency order: destroyed from the view down.
    std::unique_ptr<ZP7SDevice> m_device;
    std::unique_ptr<ZP7SConfig> m_config;
    std::unique_ptr<ZP7SDataProcessing> m_processing;
    std::unique_ptr<ZP7SCoordinator> m_coordinator;
    std::shared_ptr<ZP7SPlayback> m_playback;
    std::unique_ptr<ZP7SView> m_view;
};
