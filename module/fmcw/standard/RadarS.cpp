#include "fmcw/standard/RadarS.h"

#include "sdk/vrn.h"
#include "host/ICoreConfiguration.h"
#include "host/IPlaybackRegister.h"

RadarS::RadarS(QObject* parent)
    : QObject(parent)
{
}

RadarS::~RadarS() = default;

void RadarS::hostNotice(const QVariant&)
{
}

void RadarS::initialise(ServiceRegistry& registry)
{
    m_sdk = lookupService<Vrn>(registry);
    m_iCoreConfiguration = lookupService<ICoreConfiguration>(registry);
    m_iPlaybackRegister = lookupService<IPlaybackRegister>(registry);
}

void RadarS::registerTypes()
{
}

void RadarS::initialiseResources()
{
}

void RadarS::shutdown()
{
    m_coordinator.disconnectDevice();
}

void RadarS::setupEngine(QQmlEngine*)
{
}

void RadarS::addConfiguration(JSONConfigurationObject&)
{
}
