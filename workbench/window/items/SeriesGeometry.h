#pragma once

#include "PlotMapping.h"
#include "SeriesPoints.h"

#include <vector>

// The line of one series in item pixels, as the renderers draw it: a line
// strip through the points, or steps for a state history. A series with far
// more points than the plot has pixel columns is thinned to the lowest and
// the highest point of each column, in their order, so that its peaks and
// dips stay visible while the vertex count stays near twice the width.
namespace SeriesGeometry {

void build(const SeriesPoints::Series& series, const PlotMapping& mapping, bool stepped, double lineWidth,
           std::vector<QPointF>& vertices);

}
