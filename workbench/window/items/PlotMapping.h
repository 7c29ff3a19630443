#pragma once

#include <QPointF>
#include <QSizeF>

// Data coordinates to item pixels and back: x grows to the right from xMin
// at the left edge, y grows upwards from yMin at the bottom edge.
struct PlotMapping {
    double xMin = 0.0;
    double xMax = 1.0;
    double yMin = 0.0;
    double yMax = 1.0;
    QSizeF size;

    // Far outside the item a pixel position only has to stay a finite float
    // for the renderers; the clip cuts it off anyway.
    static constexpr double kLimit = 1.0e6;

    double toPixelX(double x) const;
    double toPixelY(double y) const;
    QPointF toPixel(const QPointF& point) const { return QPointF(toPixelX(point.x()), toPixelY(point.y())); }
    QPointF toData(const QPointF& pixel) const;
};
