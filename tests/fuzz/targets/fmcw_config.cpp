// An FMCW configuration file loaded into the edited copy of a connected
// KMR7A, and the same bytes as a recording's ".json" (configuration and
// extended document) loaded for playback.
#include "FuzzSupport.h"
#include "fmcw/common/DeviceInfo.h"
#include "fmcw/common/RadarDeviceConfiguration.h"
#include "fmcw/standard/RadarConfiguration.h"
#include "fmcw/standard/RadarUserSettings.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzSupport::quietLog();
    const QString path = FuzzSupport::writeScratch(QStringLiteral("fmcw.json"), data, size);

    // Loading a file reads no board: the SDK table is not needed.
    RadarUserSettings settings(nullptr, nullptr);
    RadarConfiguration configuration(nullptr, &settings);
    configuration.editedConfiguration()->deviceInfo()->setDeviceName(QStringLiteral("KMR7A"));
    configuration.loadConfiguration(path, false);

    RadarConfiguration playback(nullptr, &settings);
    QString error;
    playback.loadRecordingDocument(FuzzSupport::bytesOf(data, size), error);
    return 0;
}
