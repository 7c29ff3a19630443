#include "SeriesGeometry.h"

#include <QtMath>

#include <cmath>

namespace {

// Thinning pays off only once there are clearly more points than columns.
constexpr double kPointsPerColumnBeforeThinning = 2.0;

void appendSteps(const std::vector<QPointF>& points, const PlotMapping& mapping, std::vector<QPointF>& out)
{
    // A state holds until the next change: go across at the old level, then
    // up or down to the new one.
    QPointF previous = mapping.toPixel(points.front());
    out.push_back(previous);
    for (size_t i = 1; i < points.size(); ++i) {
        const QPointF current = mapping.toPixel(points[i]);
        out.emplace_back(current.x(), previous.y());
        out.push_back(current);
        previous = current;
    }
}

void appendThinned(const std::vector<QPointF>& points, const PlotMapping& mapping, std::vector<QPointF>& out)
{
    const double columns = std::ceil(mapping.size.width());
    // Everything left of the plot shares column -1, everything right of it
    // column `columns`: off-plot parts only need to lead the line in and out.
    auto columnOf = [columns](double pixelX) { return qBound(-1.0, std::floor(pixelX), columns); };

    QPointF low = mapping.toPixel(points.front());
    QPointF high = low;
    size_t lowIndex = 0;
    size_t highIndex = 0;
    double column = columnOf(low.x());
    auto flush = [&]() {
        if (lowIndex == highIndex) {
            out.push_back(low);
        } else if (lowIndex < highIndex) {
            out.push_back(low);
            out.push_back(high);
        } else {
            out.push_back(high);
            out.push_back(low);
        }
    };
    for (size_t i = 1; i < points.size(); ++i) {
        const QPointF pixel = mapping.toPixel(points[i]);
        const double pixelColumn = columnOf(pixel.x());
        if (pixelColumn != column) {
            flush();
            column = pixelColumn;
            low = high = pixel;
            lowIndex = highIndex = i;
            continue;
        }
        // Pixel y grows downwards: the lowest value has the largest y.
        if (pixel.y() > low.y()) {
            low = pixel;
            lowIndex = i;
        }
        if (pixel.y() < high.y()) {
            high = pixel;
            highIndex = i;
        }
    }
    flush();
}

}

void SeriesGeometry::build(const SeriesPoints::Series& series, const PlotMapping& mapping, bool stepped,
                           double lineWidth, std::vector<QPointF>& vertices)
{
    vertices.clear();
    const std::vector<QPointF>& points = series.points;
    if (points.empty())
        return;
    if (points.size() == 1) {
        // A line strip needs two vertices: show a lone point as a short dash.
        const QPointF pixel = mapping.toPixel(points.front());
        const double half = qMax(2.0, lineWidth);
        vertices.emplace_back(pixel.x() - half, pixel.y());
        vertices.emplace_back(pixel.x() + half, pixel.y());
        return;
    }
    if (stepped) {
        vertices.reserve(points.size() * 2 - 1);
        appendSteps(points, mapping, vertices);
        return;
    }
    if (series.ascendingX && mapping.size.width() > 0.0
        && double(points.size()) > kPointsPerColumnBeforeThinning * std::ceil(mapping.size.width())) {
        appendThinned(points, mapping, vertices);
        return;
    }
    vertices.reserve(points.size());
    for (const QPointF& point : points)
        vertices.push_back(mapping.toPixel(point));
}
