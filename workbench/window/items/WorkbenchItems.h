#pragma once

#include <QColor>
#include <QVector>

// Registers the host's chart items for the QML import "Workbench 1.0":
// SeriesChart (C++) and ChartView (QML around it). Series colours default to
// `palette`, cycled. Call once, before any QML that imports them is loaded.
void registerWorkbenchItems(const QVector<QColor>& palette);
