// The settings file as the host loads it: one root holding the module's
// general settings and the host's own, filled by the JSON configuration
// tree from the file's bytes.
#include "FuzzSupport.h"
#include "HostSettings.h"
#include "core/JSONConfigurationFile.h"
#include "core/JSONConfigurationObject.h"
#include "frame/RadarGeneralUserSettings.h"
#include "host/CoreUserSettings.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSupport::quietLog();
    RadarGeneralUserSettings general;
    CoreUserSettings core;
    HostSettings host(core);
    JSONConfigurationObject root(QStringLiteral("settings"));
    root.addChild(general.configurationNode());
    root.addChild(host.configurationNode());
    loadFromText(root, FuzzSupport::bytesOf(data, size));
    return 0;
}
