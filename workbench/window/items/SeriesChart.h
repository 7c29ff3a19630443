#pragma once

#include "PlotMapping.h"
#include "SeriesPoints.h"

#include <QColor>
#include <QQuickItem>
#include <QVariant>
#include <QVector>

#include <vector>

class ISeriesChartData;

// Draws every series of an ISeriesChartData as lines with the scene graph:
// one line-strip node per series on the hardware renderers, a painted
// polyline per series on the software renderer, and grid lines at the axis
// ticks. refresh() reads the data once into buffers that keep their
// capacity; the pixel geometry is rebuilt from them when the size or the
// axis ranges change, without reading the data again. Axes, labels and the
// legend belong to the QML around it (ChartView).
class SeriesChart : public QQuickItem
{
    Q_OBJECT
    Q_PROPERTY(QVariant chartData READ chartData WRITE setChartData NOTIFY chartDataChanged)
    Q_PROPERTY(QVariantList colors READ colors WRITE setColors NOTIFY colorsChanged)
    Q_PROPERTY(qreal xMin READ xMin WRITE setXMin NOTIFY rangeChanged)
    Q_PROPERTY(qreal xMax READ xMax WRITE setXMax NOTIFY rangeChanged)
    Q_PROPERTY(qreal yMin READ yMin WRITE setYMin NOTIFY rangeChanged)
    Q_PROPERTY(qreal yMax READ yMax WRITE setYMax NOTIFY rangeChanged)
    Q_PROPERTY(bool autoScaleX READ autoScaleX WRITE setAutoScaleX NOTIFY autoScaleXChanged)
    Q_PROPERTY(bool autoScaleY READ autoScaleY WRITE setAutoScaleY NOTIFY autoScaleYChanged)
    Q_PROPERTY(bool stepped READ stepped WRITE setStepped NOTIFY steppedChanged)
    Q_PROPERTY(qreal lineWidth READ lineWidth WRITE setLineWidth NOTIFY lineWidthChanged)
    Q_PROPERTY(QColor gridColor READ gridColor WRITE setGridColor NOTIFY gridColorChanged)
    // The series (by index; -1 for none) whose points mark positions on the
    // x axis, such as the boundaries between chirps shown one after another:
    // drawn as vertical lines across the plot, left out of the ranges and of
    // the hover readout.
    Q_PROPERTY(int markerSeries READ markerSeries WRITE setMarkerSeries NOTIFY markerSeriesChanged)
    Q_PROPERTY(int seriesCount READ seriesCount NOTIFY refreshed)
    Q_PROPERTY(int pointCount READ pointCount NOTIFY refreshed)
    // Each tick a map {value, position (pixels along the axis), label}.
    Q_PROPERTY(QVariantList xTicks READ xTicks NOTIFY ticksChanged)
    Q_PROPERTY(QVariantList yTicks READ yTicks NOTIFY ticksChanged)
public:
    explicit SeriesChart(QQuickItem* parent = nullptr);

    // The colours of charts whose `colors` are not set: the host palette.
    static void setDefaultColors(const QVector<QColor>& colors);

    QVariant chartData() const { return m_chartData; }
    void setChartData(const QVariant& chartData);
    QVariantList colors() const { return m_colorList; }
    void setColors(const QVariantList& colors);
    qreal xMin() const { return m_mapping.xMin; }
    void setXMin(qreal value);
    qreal xMax() const { return m_mapping.xMax; }
    void setXMax(qreal value);
    qreal yMin() const { return m_mapping.yMin; }
    void setYMin(qreal value);
    qreal yMax() const { return m_mapping.yMax; }
    void setYMax(qreal value);
    bool autoScaleX() const { return m_autoScaleX; }
    void setAutoScaleX(bool on);
    bool autoScaleY() const { return m_autoScaleY; }
    void setAutoScaleY(bool on);
    bool stepped() const { return m_stepped; }
    void setStepped(bool on);
    qreal lineWidth() const { return m_lineWidth; }
    void setLineWidth(qreal width);
    QColor gridColor() const { return m_gridColor; }
    void setGridColor(const QColor& color);
    int markerSeries() const { return m_markerSeries; }
    void setMarkerSeries(int series);
    int seriesCount() const { return m_points.seriesCount(); }
    int pointCount() const { return m_points.pointCount(); }
    QVariantList xTicks() const { return m_xTicks; }
    QVariantList yTicks() const { return m_yTicks; }

    // Reads the chart data again; the page calls it when new data arrived.
    Q_INVOKABLE void refresh();
    // The data coordinates of an item position.
    Q_INVOKABLE QPointF valueAt(qreal x, qreal y) const;
    // The point nearest in x to the item position x over all series, as
    // {series, x, y (data), itemX, itemY (pixels), text ("x: … y: …")};
    // with y given, a tie in x goes to the series nearest in y. An empty
    // map when nothing is drawn.
    Q_INVOKABLE QVariantMap nearest(qreal x, qreal y) const;
    Q_INVOKABLE QVariantMap nearest(qreal x) const;
    Q_INVOKABLE QColor colorAt(int series) const;

    // Whether the series are drawn as steps: asked for, or a state history.
    bool drawsSteps() const { return m_stepped || m_stateHistory; }
    // The pixel vertices of a series as they go to the renderer.
    const std::vector<QPointF>& vertices(int series);
    // Series handed to the renderer with something to draw at the last
    // synchronisation.
    int drawnSeriesCount() const { return m_drawnSeriesCount; }

signals:
    void chartDataChanged();
    void colorsChanged();
    void rangeChanged();
    void autoScaleXChanged();
    void autoScaleYChanged();
    void steppedChanged();
    void lineWidthChanged();
    void gridColorChanged();
    void markerSeriesChanged();
    void ticksChanged();
    void refreshed();

protected:
    QSGNode* updatePaintNode(QSGNode* oldNode, UpdatePaintNodeData* data) override;
    void geometryChanged(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    void applyAutoScale();
    void setRange(double& bound, qreal value, const char* name);
    void updateTicks();
    // The geometry must be rebuilt and handed to the renderer again.
    void invalidateGeometry();
    void buildVertices();
    void updateGrid(class ChartNode* root);
    void updateSeries(class ChartNode* root);
    void updateMarkers(class ChartNode* root);

    QVariant m_chartData;
    ISeriesChartData* m_data = nullptr;
    QVariantList m_colorList;
    QVector<QColor> m_colors;
    PlotMapping m_mapping;
    bool m_autoScaleX = true;
    bool m_autoScaleY = true;
    bool m_stepped = false;
    bool m_stateHistory = false;
    qreal m_lineWidth = 1.0;
    QColor m_gridColor = QColor(0xe4, 0xe4, 0xe4);
    int m_markerSeries = -1;
    QVariantList m_xTicks;
    QVariantList m_yTicks;

    SeriesPoints m_points;
    // Pixel vertices per series; rebuilt in place, capacity kept.
    std::vector<std::vector<QPointF>> m_vertices;
    bool m_verticesStale = true;
    bool m_seriesNodesStale = true;
    bool m_gridStale = true;
    int m_drawnSeriesCount = 0;
};
