#pragma once

#include "frame/IRadarModule.h"

#include <QObject>
#include <memory>

struct Vrn;
class IBroker;
class ICoreConfiguration;
class IPlaybackRegister;
class RadarConfiguration;
class RadarDataProcessing;
class RadarDevice;
class RadarPlayback;
class RadarSCoordinator;
class RadarUserSettings;
class RadarView;

// The FMCW boards' frame mode: builds and owns its configuration object,
// device, pipeline, coordinator, view and playback source.
class RadarS : public QObject, public IRadarModule
{
    Q_OBJECT
public:
    explicit RadarS(QObject* parent = nullptr);
    ~RadarS() override;

    void hostNotice(const QVariant& notice) override;
    void initialise(ServiceRegistry& registry) override;
    void registerTypes() override;
    void initialiseResources() override;
    void shutdown() override;
    void setupEngine(QQmlEngine* engine) override;
    void addConfiguration(JSONConfigurationObject& root) override;
    IRadarSubmoduleCoordinator* coordinator() override;

    RadarView* view() const { return m_view.get(); }
    RadarDataProcessing* processing() const { return m_processing.get(); }

private:
    const Vrn* m_sdk = nullptr;
    IBroker* m_broker = nullptr;
    ICoreConfiguration* m_iCoreConfiguration = nullptr;
    IPlaybackRegister* m_iPlaybackRegister = nullptr;
    // Declared in dependency order: destroyed from the view down.
    std::unique_ptr<RadarUserSettings> m_userSettings;
    std::unique_ptr<RadarConfiguration> m_configuration;
    std::unique_ptr<RadarDevice> m_device;
    std::unique_ptr<RadarDataProcessing> m_processing;
    std::unique_ptr<RadarSCoordinator> m_coordinator;
    std::shared_ptr<RadarPlayback> m_playback;
    std::unique_ptr<RadarView> m_view;
};
