#include "ModulePages.h"

#include "ModeViews.h"

#include "fmcw/cw/RadarCWMode.h"
#include "sdk/vrn.h"

namespace {

struct Page {
    const char* mode;
    int shieldType; // 0: any board
    const char* url;
};

// Most specific first.
constexpr Page kPages[] = {
    { "Standard", VRN_SHIELD_ZP7_768, "qrc:/qml/ZP7S/ZP7SModule.qml" },
    { RadarCWMode::kUserMode, 0, "qrc:/qml/RadarCW/RadarCWModule.qml" },
    { "Standard", 0, "qrc:/qml/Radar/RadarModule.qml" },
};

constexpr const char* kFallback = "qrc:/qml/Radar/RadarModule.qml";

} // namespace

QString ModulePages::pageFor(const QString& mode, int shieldType)
{
    for (const Page& page : kPages) {
        if (mode == QLatin1String(page.mode) && (page.shieldType == 0 || page.shieldType == shieldType))
            return QString::fromLatin1(page.url);
    }
    return QString::fromLatin1(kFallback);
}

QString ModulePages::pageForPlayback(const QString& mode, const QString& playbackName)
{
    const bool doppler = ModeViews::viewNameForPlayback(playbackName) == QLatin1String(ModeViews::kDopplerView);
    return pageFor(mode, doppler ? VRN_SHIELD_ZP7_768 : 0);
}
