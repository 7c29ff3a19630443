#include "ModeViews.h"

#include "sdk/vrn.h"

#include <QQmlContext>
#include <QQmlEngine>

namespace ModeViews {

QString viewNameForBoard(int shieldType)
{
    return QString::fromLatin1(shieldType == VRN_SHIELD_ZP7_768 ? kDopplerView : kStandardView);
}

QString viewNameForPlayback(const QString& playbackName)
{
    return QString::fromLatin1(playbackName == QLatin1String("ZP7") ? kDopplerView : kStandardView);
}

QObject* view(QQmlEngine* engine, const QString& name)
{
    return engine ? engine->rootContext()->contextProperty(name).value<QObject*>() : nullptr;
}

} // namespace ModeViews
