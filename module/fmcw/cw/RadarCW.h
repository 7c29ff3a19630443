#pragma once

#include "frame/IRadarModule.h"
#include "fmcw/cw/RadarCWCoordinator.h"

#include <QObject>

struct Vrn;
class ICoreConfiguration;
class IPlaybackRegister;

// The FMCW boards' continuous-wave test mode.
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
    IRadarSubmoduleCoordinator* coordinator() override { return &m_coordinator; }

private:
    const Vrn* m_sdk = nullptr;
    RadarCWCoordinator m_coordinator;
};
