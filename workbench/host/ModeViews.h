#pragma once

#include <QString>

class QObject;
class QQmlEngine;

// Which of the module's view objects serves a board family or a playback.
// The pulsed-Doppler boards and their recordings have a view of their own;
// every other board and recording goes through the standard view. The host
// knows the views only by these context-property names.
namespace ModeViews {

constexpr const char* kStandardView = "radarView";
constexpr const char* kDopplerView = "zp7sView";

// `shieldType` 0: no board.
QString viewNameForBoard(int shieldType);
// The name a playback registers under ("ZP7" for pulsed-Doppler recordings).
QString viewNameForPlayback(const QString& playbackName);
// The engine's view of that name; null when the module publishes none.
QObject* view(QQmlEngine* engine, const QString& name);

} // namespace ModeViews
