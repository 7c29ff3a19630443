#include "WindowPicture.h"

#include <QEventLoop>
#include <QQuickWindow>
#include <QScreen>
#include <QTimer>

QImage renderedWindow(QQuickWindow& window, int timeoutMs)
{
    QEventLoop loop;
    bool swapped = false;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &loop, [&] {
        swapped = true;
        loop.quit();
    });
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    window.update();
    loop.exec();
    if (swapped && window.screen()) {
        const QImage shown = window.screen()->grabWindow(window.winId()).toImage();
        if (!shown.isNull())
            return shown;
    }
    // A platform whose screen cannot hand windows out renders on request.
    return window.grabWindow();
}
