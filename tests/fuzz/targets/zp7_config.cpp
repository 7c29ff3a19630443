// A ZP7 configuration file applied to a connected board, and the same
// bytes as a recording's ".json" loaded for playback.
#include "FuzzSupport.h"
#include "../../zp7/config/FakeZP7SController.h"
#include "zp7/config/ZP7SConfig.h"
#include "zp7/config/ZP7SUserSettings.h"

#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSupport::quietLog();
    const QString path = FuzzSupport::writeScratch(QStringLiteral("zp7.json"), data, size);

    FakeZP7SController board;
    ZP7SConfig config(&board, std::make_unique<ZP7SUserSettings>());
    config.loadFromDevice();
    config.applyConfigFile(path);

    ZP7SConfig playback(nullptr, std::make_unique<ZP7SUserSettings>());
    QString error;
    playback.loadRecordingDocument(FuzzSupport::bytesOf(data, size), error);
    return 0;
}
