#include "SeriesChart.h"

#include "ChartTicks.h"
#include "SeriesGeometry.h"
#include "SoftwareSeriesNode.h"

#include "common/ISeriesChartData.h"

#include <QDebug>
#include <QQuickWindow>
#include <QSGFlatColorMaterial>
#include <QSGGeometryNode>
#include <QSGRectangleNode>
#include <QSGRendererInterface>
#include <QSGTransformNode>
#include <QtMath>

#include <cmath>
#include <limits>

namespace {

QVector<QColor>& defaultColors()
{
    static QVector<QColor> colors { QColor(0x1f, 0x77, 0xb4), QColor(0xff, 0x7f, 0x0e), QColor(0x2c, 0xa0, 0x2c),
                                    QColor(0xd6, 0x27, 0x28) };
    return colors;
}

// Headroom above and below the data when the y range follows it, so that a
// peak does not touch the frame.
constexpr double kYMargin = 0.05;
// Pixels per tick the axes aim at.
constexpr double kPixelsPerXTick = 100.0;
constexpr double kPixelsPerYTick = 50.0;
// More markers than this would be a solid block, not lines.
constexpr int kMaximumMarkers = 1024;

// The range [min, max] with room around a single value, so that a flat line
// is drawn in the middle instead of dividing by a zero span.
void widenFlat(double& min, double& max)
{
    if (max > min)
        return;
    const double pad = min != 0.0 ? qAbs(min) * 0.1 : 1.0;
    min -= pad;
    max += pad;
}

QVariantList ticksFor(double min, double max, double length, double pixelsPerTick, bool vertical)
{
    QVariantList ticks;
    const int target = qMax(2, int(length / pixelsPerTick));
    const double span = max - min;
    for (const ChartTicks::Tick& tick : ChartTicks::compute(min, max, target)) {
        const double fraction = span > 0.0 ? (tick.value - min) / span : 0.0;
        const double position = vertical ? length - fraction * length : fraction * length;
        ticks.append(QVariantMap { { QStringLiteral("value"), tick.value },
                                   { QStringLiteral("position"), position },
                                   { QStringLiteral("label"), tick.label } });
    }
    return ticks;
}

}

// The item's scene-graph subtree: grid lines first, then the series on top.
// The containers are identity transform nodes rather than plain nodes: the
// software renderer places a node added later by the state it recorded for
// the parent, and it records none for a plain node, so grid lines added when
// the tick count grows would be drawn at the window's origin.
class ChartNode : public QSGNode
{
public:
    QSGTransformNode* grid = nullptr;
    // One rectangle per marker, under the series.
    QSGTransformNode* markers = nullptr;
    // Hardware renderers: a container of one geometry node per series.
    QSGTransformNode* lines = nullptr;
    // Software renderer: one node painting every series.
    SoftwareSeriesNode* painted = nullptr;
};

SeriesChart::SeriesChart(QQuickItem* parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents, true);
    // A fixed range can put data outside the plot; it must not draw over
    // the axes around it.
    setClip(true);
    m_colors = defaultColors();
}

void SeriesChart::setDefaultColors(const QVector<QColor>& colors)
{
    if (colors.isEmpty()) {
        qWarning() << "Chart palette is empty; the charts keep their built-in colours";
        return;
    }
    defaultColors() = colors;
}

void SeriesChart::setChartData(const QVariant& chartData)
{
    ISeriesChartData* data = nullptr;
    const int type = chartData.userType();
    if (type == qMetaTypeId<ISeriesChartData*>()) {
        data = chartData.value<ISeriesChartData*>();
    } else if (chartData.isValid() && type != QMetaType::Nullptr && !chartData.isNull()) {
        qWarning() << "Series chart" << objectName() << "was given chart data of type" << chartData.typeName()
                   << "instead of ISeriesChartData*; it shows nothing";
    }
    m_chartData = chartData;
    const bool changed = data != m_data;
    m_data = data;
    emit chartDataChanged();
    if (changed)
        refresh();
}

void SeriesChart::setColors(const QVariantList& colors)
{
    QVector<QColor> resolved;
    resolved.reserve(colors.size());
    for (const QVariant& value : colors) {
        // QML hands colours over as colours or as names ("#1f77b4", "red").
        QColor color = value.userType() == QMetaType::QColor ? value.value<QColor>() : QColor(value.toString());
        if (!color.isValid()) {
            qWarning() << "Series chart" << objectName() << "ignores the colour" << value
                       << "which is not a colour";
            continue;
        }
        resolved.append(color);
    }
    m_colorList = colors;
    m_colors = resolved.isEmpty() ? defaultColors() : resolved;
    m_seriesNodesStale = true;
    update();
    emit colorsChanged();
}

QColor SeriesChart::colorAt(int series) const
{
    if (m_colors.isEmpty() || series < 0)
        return QColor(Qt::black);
    return m_colors.at(series % m_colors.size());
}

void SeriesChart::setRange(double& bound, qreal value, const char* name)
{
    if (!qIsFinite(value)) {
        qWarning() << "Series chart" << objectName() << "keeps its" << name << "of" << bound << "instead of"
                   << value;
        return;
    }
    if (bound == value)
        return;
    bound = value;
    invalidateGeometry();
    emit rangeChanged();
}

void SeriesChart::setXMin(qreal value)
{
    setRange(m_mapping.xMin, value, "xMin");
}

void SeriesChart::setXMax(qreal value)
{
    setRange(m_mapping.xMax, value, "xMax");
}

void SeriesChart::setYMin(qreal value)
{
    setRange(m_mapping.yMin, value, "yMin");
}

void SeriesChart::setYMax(qreal value)
{
    setRange(m_mapping.yMax, value, "yMax");
}

void SeriesChart::setAutoScaleX(bool on)
{
    if (on == m_autoScaleX)
        return;
    m_autoScaleX = on;
    emit autoScaleXChanged();
    applyAutoScale();
}

void SeriesChart::setAutoScaleY(bool on)
{
    if (on == m_autoScaleY)
        return;
    m_autoScaleY = on;
    emit autoScaleYChanged();
    applyAutoScale();
}

void SeriesChart::setStepped(bool on)
{
    if (on == m_stepped)
        return;
    m_stepped = on;
    invalidateGeometry();
    emit steppedChanged();
}

void SeriesChart::setLineWidth(qreal width)
{
    if (!(width > 0.0) || !qIsFinite(width)) {
        qWarning() << "Series chart" << objectName() << "keeps its line width of" << m_lineWidth << "instead of"
                   << width;
        return;
    }
    if (width == m_lineWidth)
        return;
    m_lineWidth = width;
    invalidateGeometry();
    emit lineWidthChanged();
}

void SeriesChart::setGridColor(const QColor& color)
{
    if (color == m_gridColor)
        return;
    m_gridColor = color;
    m_gridStale = true;
    update();
    emit gridColorChanged();
}

void SeriesChart::setMarkerSeries(int series)
{
    if (series == m_markerSeries)
        return;
    m_markerSeries = series;
    emit markerSeriesChanged();
    // Which points count towards the ranges is decided while reading.
    refresh();
}

void SeriesChart::refresh()
{
    m_points.read(m_data, m_markerSeries);
    m_stateHistory = m_data && m_data->isStateHistory();
    invalidateGeometry();
    applyAutoScale();
    emit refreshed();
}

void SeriesChart::applyAutoScale()
{
    // Without points the range stays where it was: an empty refresh must
    // not make the axes jump.
    if (!m_points.hasBounds() || (!m_autoScaleX && !m_autoScaleY))
        return;
    PlotMapping next = m_mapping;
    if (m_autoScaleX) {
        // The x of a series is its axis (samples, range bins, time): no
        // margin, the line reaches both edges.
        next.xMin = m_points.minX();
        next.xMax = m_points.maxX();
        widenFlat(next.xMin, next.xMax);
    }
    if (m_autoScaleY) {
        const double margin = (m_points.maxY() - m_points.minY()) * kYMargin;
        next.yMin = m_points.minY() - margin;
        next.yMax = m_points.maxY() + margin;
        widenFlat(next.yMin, next.yMax);
    }
    if (next.xMin == m_mapping.xMin && next.xMax == m_mapping.xMax && next.yMin == m_mapping.yMin
        && next.yMax == m_mapping.yMax)
        return;
    m_mapping = next;
    invalidateGeometry();
    emit rangeChanged();
}

void SeriesChart::invalidateGeometry()
{
    m_verticesStale = true;
    m_seriesNodesStale = true;
    m_gridStale = true;
    updateTicks();
    update();
}

void SeriesChart::updateTicks()
{
    QVariantList xTicks = ticksFor(m_mapping.xMin, m_mapping.xMax, width(), kPixelsPerXTick, false);
    QVariantList yTicks = ticksFor(m_mapping.yMin, m_mapping.yMax, height(), kPixelsPerYTick, true);
    if (xTicks == m_xTicks && yTicks == m_yTicks)
        return;
    m_xTicks = std::move(xTicks);
    m_yTicks = std::move(yTicks);
    emit ticksChanged();
}

void SeriesChart::geometryChanged(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChanged(newGeometry, oldGeometry);
    if (newGeometry.size() == oldGeometry.size())
        return;
    m_mapping.size = newGeometry.size();
    invalidateGeometry();
}

QPointF SeriesChart::valueAt(qreal x, qreal y) const
{
    return m_mapping.toData(QPointF(x, y));
}

QVariantMap SeriesChart::nearest(qreal x) const
{
    return nearest(x, std::numeric_limits<qreal>::quiet_NaN());
}

QVariantMap SeriesChart::nearest(qreal x, qreal y) const
{
    const double dataX = m_mapping.toData(QPointF(x, 0.0)).x();
    int bestSeries = -1;
    QPointF best;
    double bestDx = std::numeric_limits<double>::infinity();
    double bestDy = std::numeric_limits<double>::infinity();
    for (int s = 0; s < m_points.seriesCount(); ++s) {
        QPointF point;
        if (s == m_markerSeries || !m_points.nearestInX(s, dataX, point))
            continue;
        const QPointF pixel = m_mapping.toPixel(point);
        const double dx = qAbs(pixel.x() - x);
        const double dy = qIsFinite(y) ? qAbs(pixel.y() - y) : 0.0;
        // Series sampled on the same axis tie in x; within half a pixel the
        // one closer to the pointer wins.
        if (dx < bestDx - 0.5 || (dx <= bestDx + 0.5 && dy < bestDy)) {
            bestSeries = s;
            best = point;
            bestDx = dx;
            bestDy = dy;
        }
    }
    if (bestSeries < 0)
        return QVariantMap();
    const QPointF pixel = m_mapping.toPixel(best);
    const double xStep = ChartTicks::step(m_mapping.xMin, m_mapping.xMax, qMax(2, int(width() / kPixelsPerXTick)));
    const double yStep = ChartTicks::step(m_mapping.yMin, m_mapping.yMax, qMax(2, int(height() / kPixelsPerYTick)));
    const QString text = QStringLiteral("x: %1 y: %2")
                             .arg(ChartTicks::format(best.x(), xStep, 2), ChartTicks::format(best.y(), yStep, 2));
    return QVariantMap { { QStringLiteral("series"), bestSeries },  { QStringLiteral("x"), best.x() },
                         { QStringLiteral("y"), best.y() },         { QStringLiteral("itemX"), pixel.x() },
                         { QStringLiteral("itemY"), pixel.y() },    { QStringLiteral("text"), text } };
}

void SeriesChart::buildVertices()
{
    if (!m_verticesStale)
        return;
    const int count = m_points.seriesCount();
    if (int(m_vertices.size()) < count)
        m_vertices.resize(size_t(count));
    for (int s = 0; s < count; ++s) {
        if (s == m_markerSeries)
            m_vertices[size_t(s)].clear();
        else
            SeriesGeometry::build(m_points.series(s), m_mapping, drawsSteps(), m_lineWidth, m_vertices[size_t(s)]);
    }
    m_verticesStale = false;
}

const std::vector<QPointF>& SeriesChart::vertices(int series)
{
    static const std::vector<QPointF> none;
    buildVertices();
    if (series < 0 || series >= m_points.seriesCount())
        return none;
    return m_vertices[size_t(series)];
}

QSGNode* SeriesChart::updatePaintNode(QSGNode* oldNode, UpdatePaintNodeData*)
{
    auto* root = static_cast<ChartNode*>(oldNode);
    if (!root) {
        root = new ChartNode;
        root->grid = new QSGTransformNode;
        root->appendChildNode(root->grid);
        root->markers = new QSGTransformNode;
        root->appendChildNode(root->markers);
        if (window()->rendererInterface()->graphicsApi() == QSGRendererInterface::Software) {
            root->painted = new SoftwareSeriesNode(window());
            root->appendChildNode(root->painted);
        } else {
            root->lines = new QSGTransformNode;
            root->appendChildNode(root->lines);
        }
        m_gridStale = true;
        m_seriesNodesStale = true;
    }
    if (m_gridStale)
        updateGrid(root);
    if (m_seriesNodesStale) {
        updateMarkers(root);
        updateSeries(root);
    }
    return root;
}

void SeriesChart::updateGrid(ChartNode* root)
{
    m_gridStale = false;
    const int wanted = m_xTicks.size() + m_yTicks.size();
    while (root->grid->childCount() > wanted) {
        QSGNode* last = root->grid->lastChild();
        root->grid->removeChildNode(last);
        delete last;
    }
    while (root->grid->childCount() < wanted)
        root->grid->appendChildNode(window()->createRectangleNode());
    // One pixel wide, on whole pixels, so that a grid line stays sharp.
    QSGNode* node = root->grid->firstChild();
    for (const QVariant& tick : qAsConst(m_xTicks)) {
        auto* line = static_cast<QSGRectangleNode*>(node);
        const double x = std::floor(tick.toMap().value(QStringLiteral("position")).toDouble());
        line->setRect(QRectF(x, 0.0, 1.0, height()));
        line->setColor(m_gridColor);
        node = node->nextSibling();
    }
    for (const QVariant& tick : qAsConst(m_yTicks)) {
        auto* line = static_cast<QSGRectangleNode*>(node);
        const double y = std::floor(tick.toMap().value(QStringLiteral("position")).toDouble());
        line->setRect(QRectF(0.0, y, width(), 1.0));
        line->setColor(m_gridColor);
        node = node->nextSibling();
    }
}

void SeriesChart::updateMarkers(ChartNode* root)
{
    QVector<double> positions;
    if (m_markerSeries >= 0 && m_markerSeries < m_points.seriesCount()) {
        for (const QPointF& point : m_points.series(m_markerSeries).points) {
            const double x = std::floor(m_mapping.toPixelX(point.x()));
            if (x >= 0.0 && x < width() && positions.size() < kMaximumMarkers)
                positions.append(x);
        }
    }
    while (root->markers->childCount() > positions.size()) {
        QSGNode* last = root->markers->lastChild();
        root->markers->removeChildNode(last);
        delete last;
    }
    while (root->markers->childCount() < positions.size())
        root->markers->appendChildNode(window()->createRectangleNode());
    QSGNode* node = root->markers->firstChild();
    for (double x : qAsConst(positions)) {
        auto* line = static_cast<QSGRectangleNode*>(node);
        line->setRect(QRectF(x, 0.0, 1.0, height()));
        line->setColor(colorAt(m_markerSeries));
        node = node->nextSibling();
    }
}

void SeriesChart::updateSeries(ChartNode* root)
{
    m_seriesNodesStale = false;
    buildVertices();
    const int count = m_points.seriesCount();
    m_drawnSeriesCount = 0;

    if (root->painted) {
        root->painted->resize(count);
        QRectF bounds;
        for (int s = 0; s < count; ++s) {
            SoftwareSeriesNode::Line& line = root->painted->line(s);
            const std::vector<QPointF>& vertices = m_vertices[size_t(s)];
            line.color = colorAt(s);
            line.vertices.assign(vertices.begin(), vertices.end());
            if (vertices.size() >= 2)
                ++m_drawnSeriesCount;
        }
        // The line may stick out of the item by half its width; the clip
        // cuts it at the item's edges anyway.
        bounds = QRectF(0.0, 0.0, width(), height()).adjusted(-m_lineWidth, -m_lineWidth, m_lineWidth, m_lineWidth);
        root->painted->setBounds(bounds);
        root->painted->setLineWidth(m_lineWidth);
        root->painted->markDirty(QSGNode::DirtyMaterial);
        return;
    }

    while (root->lines->childCount() > count) {
        QSGNode* last = root->lines->lastChild();
        root->lines->removeChildNode(last);
        delete last;
    }
    while (root->lines->childCount() < count) {
        auto* node = new QSGGeometryNode;
        auto* geometry = new QSGGeometry(QSGGeometry::defaultAttributes_Point2D(), 0);
        geometry->setDrawingMode(QSGGeometry::DrawLineStrip);
        node->setGeometry(geometry);
        node->setMaterial(new QSGFlatColorMaterial);
        node->setFlags(QSGNode::OwnsGeometry | QSGNode::OwnsMaterial);
        root->lines->appendChildNode(node);
    }
    QSGNode* child = root->lines->firstChild();
    for (int s = 0; s < count; ++s, child = child->nextSibling()) {
        auto* node = static_cast<QSGGeometryNode*>(child);
        const std::vector<QPointF>& vertices = m_vertices[size_t(s)];
        QSGGeometry* geometry = node->geometry();
        // A strip of one vertex draws nothing; leave it empty instead.
        const int vertexCount = vertices.size() >= 2 ? int(vertices.size()) : 0;
        if (geometry->vertexCount() != vertexCount)
            geometry->allocate(vertexCount);
        QSGGeometry::Point2D* out = geometry->vertexDataAsPoint2D();
        for (int i = 0; i < vertexCount; ++i)
            out[i].set(float(vertices[size_t(i)].x()), float(vertices[size_t(i)].y()));
        geometry->setLineWidth(float(m_lineWidth));
        auto* material = static_cast<QSGFlatColorMaterial*>(node->material());
        if (material->color() != colorAt(s))
            material->setColor(colorAt(s));
        node->markDirty(QSGNode::DirtyGeometry | QSGNode::DirtyMaterial);
        if (vertexCount > 0)
            ++m_drawnSeriesCount;
    }
}
