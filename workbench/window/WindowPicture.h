#pragma once

#include <QImage>

class QQuickWindow;

// The window's next frame as it reached the screen; a null image when no
// frame came within `timeoutMs`. QQuickWindow::grabWindow() answers an empty
// image with the software renderer on the offscreen platform, so the
// picture is taken from the screen, which keeps what was flushed to it.
QImage renderedWindow(QQuickWindow& window, int timeoutMs = 5000);
