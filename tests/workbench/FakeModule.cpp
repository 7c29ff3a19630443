// A module that records the order in which the host drives it.
#include "host/IModule.h"

#include <string>

namespace {
std::string& calls()
{
    static std::string text;
    return text;
}

void record(const char* call)
{
    if (!calls().empty())
        calls() += ',';
    calls() += call;
}

class FakeModule : public IModule
{
public:
    ~FakeModule() override { record("destroy"); }
    void hostNotice(const QVariant&) override { record("hostNotice"); }
    void initialise(ServiceRegistry& registry) override
    {
        record(registry.count("class IBroker") && registry.count("class Vrn") ? "initialise" : "initialise-without-services");
    }
    void registerTypes() override { record("registerTypes"); }
    void initialiseResources() override { record("initialiseResources"); }
    void shutdown() override { record("shutdown"); }
    void setupEngine(QQmlEngine* engine) override { record(engine ? "setupEngine" : "setupEngine-null"); }
    void addConfiguration(JSONConfigurationObject&) override { record("addConfiguration"); }
    std::pair<QString, QString> moduleInfo() const override { return { "Fake", FAKE_CORE_VERSION }; }
};
} // namespace

extern "C" {
__attribute__((visibility("default"))) const char* CoreVersion()
{
    return FAKE_CORE_VERSION;
}

__attribute__((visibility("default"))) IModule* CreateModule()
{
    return new FakeModule();
}

__attribute__((visibility("default"))) const char* fakeModuleCalls()
{
    return calls().c_str();
}
}
