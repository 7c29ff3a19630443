#include "PlotMapping.h"

#include <QtGlobal>

namespace {

// An empty or inverted range is drawn as if it spanned one unit, rather than
// dividing by zero.
double spanOf(double min, double max)
{
    const double span = max - min;
    return (span > 0.0 && qIsFinite(span)) ? span : 1.0;
}

double limited(double pixel)
{
    return qBound(-PlotMapping::kLimit, pixel, PlotMapping::kLimit);
}

}

double PlotMapping::toPixelX(double x) const
{
    return limited((x - xMin) / spanOf(xMin, xMax) * size.width());
}

double PlotMapping::toPixelY(double y) const
{
    return limited(size.height() - (y - yMin) / spanOf(yMin, yMax) * size.height());
}

QPointF PlotMapping::toData(const QPointF& pixel) const
{
    const double x = size.width() > 0.0 ? xMin + pixel.x() / size.width() * spanOf(xMin, xMax) : xMin;
    const double y = size.height() > 0.0 ? yMin + (size.height() - pixel.y()) / size.height() * spanOf(yMin, yMax)
                                         : yMin;
    return QPointF(x, y);
}
