// A CW configuration file loaded into the edited copy of a connected board
// that has answered with its defaults.
#include "FuzzSupport.h"
#include "../../fmcw/cw/config/FakeCWConfigurator.h"
#include "fmcw/cw/config/RadarCWConfig.h"
#include "fmcw/cw/config/RadarCWUserSettings.h"

#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSupport::quietLog();
    const QString path = FuzzSupport::writeScratch(QStringLiteral("cw.json"), data, size);

    FakeCWConfigurator board;
    RadarCWConfig config(&board, std::make_unique<RadarCWUserSettings>(nullptr, nullptr));
    describeBoard(*config.deviceInfo());
    config.loadDefaultConfig();
    config.loadConfig(path);
    return 0;
}
