#pragma once

// What the window benchmarks share: timing figures, waiting on the event
// loop, and reading the module's objects by property.

#include <QString>
#include <chrono>
#include <functional>
#include <vector>

class QObject;
class QQuickWindow;

using Clock = std::chrono::steady_clock;

struct Stats {
    double median = 0.0;
    double p95 = 0.0;
};

double milliseconds(Clock::duration duration);
Stats statsOf(std::vector<double> values);
// Runs the event loop until `done` answers true; false after the timeout.
bool waitFor(const std::function<bool()>& done, int timeoutMs);
// The QObject a property of `object` holds; null when either is missing.
QObject* child(QObject* object, const char* property);
// "software", "OpenGL" or "other".
QString rendererOf(QQuickWindow& window);
