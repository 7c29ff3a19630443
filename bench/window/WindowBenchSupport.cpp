#include "WindowBenchSupport.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QTimer>
#include <QVariant>
#include <algorithm>

double milliseconds(Clock::duration duration)
{
    return std::chrono::duration<double, std::milli>(duration).count();
}

Stats statsOf(std::vector<double> values)
{
    Stats stats;
    if (values.empty())
        return stats;
    std::sort(values.begin(), values.end());
    stats.median = values[values.size() / 2];
    stats.p95 = values[std::min(values.size() - 1, size_t(double(values.size()) * 0.95))];
    return stats;
}

bool waitFor(const std::function<bool()>& done, int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > timeoutMs)
            return false;
        QEventLoop loop;
        QTimer::singleShot(20, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

QObject* child(QObject* object, const char* property)
{
    return object ? object->property(property).value<QObject*>() : nullptr;
}

QString rendererOf(QQuickWindow& window)
{
    switch (window.rendererInterface()->graphicsApi()) {
    case QSGRendererInterface::Software:
        return QStringLiteral("software");
    case QSGRendererInterface::OpenGL:
        return QStringLiteral("OpenGL");
    default:
        return QStringLiteral("other");
    }
}
