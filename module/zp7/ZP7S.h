#pragma once

#include "frame/IRadarModule.h"
#include "zp7/ZP7SCoordinator.h"

#include <QObject>

struct Vrn;
class ICoreConfiguration;
class IPlaybackRegister;

// The pulsed Doppler board's frame mode.
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
    IRadarSubmoduleCoordinator* coordinator() override { return &m_coordinator; }

private:
    const Vrn* m_sdk = nullptr;
    ICoreConfiguration* m_iCoreConfiguration = nullptr;
    ZP7SCoordinator m_coordinator;
};
