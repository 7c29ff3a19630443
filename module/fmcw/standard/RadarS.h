#pragma once

#include "frame/IRadarModule.h"
#include "fmcw/standard/RadarSCoordinator.h"

#include <QObject>

struct Vrn;
class ICoreConfiguration;
class IPlaybackRegister;

// The FMCW boards' frame mode.
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
    IRadarSubmoduleCoordinator* coordinator() override { return &m_coordinator; }

private:
    const Vrn* m_sdk = nullptr;
    ICoreConfiguration* m_iCoreConfiguration = nullptr;
    IPlaybackRegister* m_iPlaybackRegister = nullptr;
    RadarSCoordinator m_coordinator;
};
