#include "fmcw/cw/RadarCW.h"

#include "sdk/vrn.h"

RadarCW::RadarCW(QObject* parent)
    : QObject(parent)
{
}

RadarCW::~RadarCW() = default;

void RadarCW::hostNotice(const QVariant&)
{
}

void RadarCW::initialise(ServiceRegistry& registry)
{
    m_sdk = lookupService<Vrn>(registry);
}

void RadarCW::registerTypes()
{
}

void RadarCW::initialiseResources()
{
}

void RadarCW::shutdown()
{
    m_coordinator.disconnectDevice();
}

void RadarCW::setupEngine(QQmlEngine*)
{
}

void RadarCW::addConfiguration(JSONConfigurationObject&)
{
}
