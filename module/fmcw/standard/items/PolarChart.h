#pragma once

#include "fmcw/processing/RadarTrackedObject.h"

#include <QColor>
#include <QFont>
#include <QPen>
#include <QQuickPaintedItem>
#include <QRectF>
#include <QVector>

// The segmentation view: a fan over the sensor's field of view with distance
// rings, angle spokes, the user's angular segments (highlighted while a
// target is in them), a distance axis along the rightmost spoke, a legend of
// the segments and the tracked targets. Screen angles are in degrees,
// clockwise from straight up; the painter's arcs take sixteenths of a degree
// counter-clockwise from three o'clock.
class PolarChart : public QQuickPaintedItem
{
    Q_OBJECT
    Q_PROPERTY(double angleTick READ angleTick WRITE setAngleTick NOTIFY angleTickChanged)
    Q_PROPERTY(qint8 angleLeftTickCount READ angleLeftTickCount WRITE setAngleLeftTickCount
                   NOTIFY angleLeftTickCountChanged)
    Q_PROPERTY(qint8 angleRightTickCount READ angleRightTickCount WRITE setAngleRightTickCount
                   NOTIFY angleRightTickCountChanged)
    Q_PROPERTY(double distanceMax READ distanceMax WRITE setDistanceMax NOTIFY distanceMaxChanged)
    Q_PROPERTY(int distanceTicks READ distanceTicks WRITE setDistanceTicks NOTIFY distanceTicksChanged)
    Q_PROPERTY(QString axisLabel READ axisLabel WRITE setAxisLabel NOTIFY axisLabelChanged)
    Q_PROPERTY(QFont axisLabelFont READ axisLabelFont WRITE setAxisLabelFont NOTIFY axisLabelFontChanged)
    Q_PROPERTY(QFont axisTickFont READ axisTickFont WRITE setAxisTickFont NOTIFY axisTickFontChanged)
    Q_PROPERTY(QFont segmentLabelFont READ segmentLabelFont WRITE setSegmentLabelFont NOTIFY segmentLabelFontChanged)
    Q_PROPERTY(QFont targetFont READ targetFont WRITE setTargetFont NOTIFY targetFontChanged)
    Q_PROPERTY(QFont legendFont READ legendFont WRITE setLegendFont NOTIFY legendFontChanged)
    Q_PROPERTY(bool targetsVisible READ targetsVisible WRITE setTargetsVisible NOTIFY targetsVisibleChanged)
    Q_PROPERTY(double unitFactor READ unitFactor WRITE setUnitFactor NOTIFY unitFactorChanged)
    Q_PROPERTY(int unitPrecision READ unitPrecision WRITE setUnitPrecision NOTIFY unitPrecisionChanged)
    Q_PROPERTY(int pixelRadius READ pixelRadius NOTIFY pixelRadiusChanged)
public:
    struct Segment {
        QString label;
        qint32 width = 0; // whole degrees
        bool highlighted = false;
    };

    explicit PolarChart(QQuickItem* parent = nullptr);

    double angleTick() const { return m_angleTick; }
    void setAngleTick(double degrees);
    qint8 angleLeftTickCount() const { return m_angleLeftTickCount; }
    void setAngleLeftTickCount(qint8 count);
    qint8 angleRightTickCount() const { return m_angleRightTickCount; }
    void setAngleRightTickCount(qint8 count);
    double distanceMax() const { return m_distanceMax; }
    void setDistanceMax(double distance);
    int distanceTicks() const { return m_distanceTicks; }
    void setDistanceTicks(int ticks);
    QString axisLabel() const { return m_axisLabel; }
    void setAxisLabel(const QString& label);
    QFont axisLabelFont() const { return m_axisLabelFont; }
    void setAxisLabelFont(const QFont& font);
    QFont axisTickFont() const { return m_axisTickFont; }
    void setAxisTickFont(const QFont& font);
    QFont segmentLabelFont() const { return m_segmentLabelFont; }
    void setSegmentLabelFont(const QFont& font);
    QFont targetFont() const { return m_targetFont; }
    void setTargetFont(const QFont& font);
    QFont legendFont() const { return m_legendFont; }
    void setLegendFont(const QFont& font);
    bool targetsVisible() const { return m_targetsVisible; }
    void setTargetsVisible(bool visible);
    double unitFactor() const { return m_unitFactor; }
    void setUnitFactor(double factor);
    int unitPrecision() const { return m_unitPrecision; }
    void setUnitPrecision(int decimals);
    // Radius of the fan at the last paint, in pixels.
    int pixelRadius() const { return m_horizontalRadius; }
    // Centre of the fan at the last paint.
    QPointF centre() const { return m_centre; }

    // Widths in degrees, truncated to whole degrees; labelled "S1", "S2", ...
    void setSegments(const QVector<float>& widthsDegrees);
    // Entry i non-zero highlights segment i.
    void setSegmentHighlights(const QVector<int>& highlights);
    void setTargets(RadarTrackedObjects targets);
    const QVector<Segment>& segments() const { return m_segments; }
    RadarTrackedObjects targets() const { return m_targets; }

    void paint(QPainter* painter) override;

signals:
    void angleTickChanged();
    void angleLeftTickCountChanged();
    void angleRightTickCountChanged();
    void distanceMaxChanged();
    void distanceTicksChanged();
    void axisLabelChanged();
    void axisLabelFontChanged();
    void axisTickFontChanged();
    void segmentLabelFontChanged();
    void targetFontChanged();
    void legendFontChanged();
    void targetsVisibleChanged();
    void unitFactorChanged();
    void unitPrecisionChanged();
    void pixelRadiusChanged();

private:
    void updateGeometry();
    void paintBackground(QPainter* painter);
    void paintSpokes(QPainter* painter);
    void paintSegments(QPainter* painter);
    void paintDistanceAxis(QPainter* painter);
    void paintLegend(QPainter* painter);
    void paintTargets(QPainter* painter);
    // The point at screen angle `degrees` and `radius` pixels from the centre.
    QPointF pointAt(double degrees, double radius) const;

    double m_angleTick = 15.0;
    qint8 m_angleLeftTickCount = -6;
    qint8 m_angleRightTickCount = 6;
    double m_distanceMax = 5.0;
    int m_distanceTicks = 5;
    QString m_axisLabel = QStringLiteral("Distance (m)");
    QFont m_axisLabelFont;
    QFont m_axisTickFont;
    QFont m_segmentLabelFont;
    QFont m_targetFont;
    QFont m_legendFont;
    bool m_targetsVisible = true;
    double m_unitFactor = 1.0;
    int m_unitPrecision = 1;

    // Pixels.
    int m_leftMargin = 10;
    int m_rightMargin = 10;
    int m_topMargin = 10;
    int m_bottomMargin = 24; // room for the tick labels and the title under the axis
    int m_tickOffset = 5;
    int m_targetRadius = 10;

    QColor m_highlightColor { 255, 165, 0, 160 };
    QColor m_fanFillColor { 225, 225, 225 };
    QPen m_axisPen;
    QPen m_gridPen;
    QPen m_segmentPen;

    QRectF m_fanRect;
    QPointF m_centre;
    int m_horizontalRadius = 0;
    int m_verticalRadius = 0;
    qint32 m_segmentsSpan = 0; // degrees
    QVector<Segment> m_segments;
    RadarTrackedObjects m_targets;
};
