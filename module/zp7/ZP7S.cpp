#include "zp7/ZP7S.h"

#include "sdk/vrn.h"
#include "host/ICoreConfiguration.h"

ZP7S::ZP7S(QObject* parent)
    : QObject(parent)
{
}

ZP7S::~ZP7S() = default;

void ZP7S::hostNotice(const QVariant&)
{
}

void ZP7S::initialise(ServiceRegistry& registry)
{
    m_sdk = lookupService<Vrn>(registry);
    m_iCoreConfiguration = lookupService<ICoreConfiguration>(registry);
}

void ZP7S::registerTypes()
{
}

void ZP7S::initialiseResources()
{
}

void ZP7S::shutdown()
{
    m_coordinator.disconnectDevice();
}

void ZP7S::setupEngine(QQmlEngine*)
{
}

void ZP7S::addConfiguration(JSONConfigurationObject&)
{
}
