#include "fmcw/standard/items/PolarChart.h"

#include <QFontMetrics>
#include <QPainter>
#include <QtDebug>

#include <algorithm>
#include <cmath>

namespace {

constexpr double DegreesToRadians = 0.017453292519943295;

// The painter's arcs count sixteenths of a degree.
int sixteenths(double degrees)
{
    return static_cast<int>(degrees * 16.0);
}

int floorHalf(qint32 degrees)
{
    return static_cast<int>(std::floor(degrees / 2.0));
}

template <typename T>
bool assign(T& member, const T& value)
{
    if (member == value)
        return false;
    member = value;
    return true;
}

QFont pixelFont(int pixels, bool bold = false)
{
    QFont font;
    font.setPixelSize(pixels);
    font.setBold(bold);
    return font;
}

} // namespace

PolarChart::PolarChart(QQuickItem* parent)
    : QQuickPaintedItem(parent),
      m_axisLabelFont(pixelFont(13)),
      m_axisTickFont(pixelFont(11)),
      m_segmentLabelFont(pixelFont(13, true)),
      m_targetFont(pixelFont(11, true)),
      m_legendFont(pixelFont(12)),
      m_axisPen(QColor(60, 60, 60), 2.0),
      m_gridPen(QColor(170, 170, 170), 1.0, Qt::DashLine),
      m_segmentPen(QColor(0, 110, 190), 2.0)
{
    setAntialiasing(true);
}

void PolarChart::setAngleTick(double degrees)
{
    if (assign(m_angleTick, degrees)) {
        emit angleTickChanged();
        update();
    }
}

void PolarChart::setAngleLeftTickCount(qint8 count)
{
    if (assign(m_angleLeftTickCount, count)) {
        emit angleLeftTickCountChanged();
        update();
    }
}

void PolarChart::setAngleRightTickCount(qint8 count)
{
    if (assign(m_angleRightTickCount, count)) {
        emit angleRightTickCountChanged();
        update();
    }
}

void PolarChart::setDistanceMax(double distance)
{
    if (assign(m_distanceMax, distance)) {
        emit distanceMaxChanged();
        update();
    }
}

void PolarChart::setDistanceTicks(int ticks)
{
    if (assign(m_distanceTicks, ticks)) {
        emit distanceTicksChanged();
        update();
    }
}

void PolarChart::setAxisLabel(const QString& label)
{
    if (assign(m_axisLabel, label)) {
        emit axisLabelChanged();
        update();
    }
}

void PolarChart::setAxisLabelFont(const QFont& font)
{
    if (assign(m_axisLabelFont, font)) {
        emit axisLabelFontChanged();
        update();
    }
}

void PolarChart::setAxisTickFont(const QFont& font)
{
    if (assign(m_axisTickFont, font)) {
        emit axisTickFontChanged();
        update();
    }
}

void PolarChart::setSegmentLabelFont(const QFont& font)
{
    if (assign(m_segmentLabelFont, font)) {
        emit segmentLabelFontChanged();
        update();
    }
}

void PolarChart::setTargetFont(const QFont& font)
{
    if (assign(m_targetFont, font)) {
        emit targetFontChanged();
        update();
    }
}

void PolarChart::setLegendFont(const QFont& font)
{
    if (assign(m_legendFont, font)) {
        emit legendFontChanged();
        update();
    }
}

void PolarChart::setTargetsVisible(bool visible)
{
    if (assign(m_targetsVisible, visible)) {
        emit targetsVisibleChanged();
        update();
    }
}

void PolarChart::setUnitFactor(double factor)
{
    if (assign(m_unitFactor, factor)) {
        emit unitFactorChanged();
        update();
    }
}

void PolarChart::setUnitPrecision(int decimals)
{
    if (assign(m_unitPrecision, decimals)) {
        emit unitPrecisionChanged();
        update();
    }
}

void PolarChart::setSegments(const QVector<float>& widthsDegrees)
{
    m_segments.clear();
    m_segments.reserve(widthsDegrees.size());
    for (int i = 0; i < widthsDegrees.size(); ++i)
        m_segments.append(Segment { QStringLiteral("S") + QString::number(i + 1),
                                    static_cast<qint32>(widthsDegrees.at(i)), false });
    update();
}

void PolarChart::setSegmentHighlights(const QVector<int>& highlights)
{
    for (int i = 0; i < highlights.size(); ++i) {
        if (i >= m_segments.size()) {
            // The segmentation answered for more segments than were handed
            // to us: a mismatch between the pipeline and its configuration.
            // The view must not take the workbench down for it.
            qCritical() << "Segment highlight index" << i << "is beyond the" << m_segments.size()
                        << "segments of the polar chart; ignored";
            break;
        }
        m_segments[i].highlighted = highlights.at(i) != 0;
    }
    update();
}

void PolarChart::setTargets(RadarTrackedObjects targets)
{
    m_targets = std::move(targets);
    update();
}

QPointF PolarChart::pointAt(double degrees, double radius) const
{
    const double radians = degrees * DegreesToRadians;
    return QPointF(m_centre.x() + std::sin(radians) * radius, m_centre.y() - std::cos(radians) * radius);
}

void PolarChart::paint(QPainter* painter)
{
    updateGeometry();
    // Nothing fits into an item smaller than its margins and labels.
    if (m_horizontalRadius <= 0)
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, antialiasing());
    paintBackground(painter);
    paintSpokes(painter);
    if (m_segmentsSpan > 0)
        paintSegments(painter);
    paintDistanceAxis(painter);
    paintLegend(painter);
    if (m_targets && m_targetsVisible)
        paintTargets(painter);
    painter->restore();
}

void PolarChart::updateGeometry()
{
    const int tickHeight = QFontMetrics(m_axisTickFont).height();
    const int labelHeight = QFontMetrics(m_axisLabelFont).height();
    const double left = m_leftMargin + tickHeight;
    const double right = m_rightMargin + tickHeight;
    const double top = m_topMargin + tickHeight;
    const double bottom = labelHeight + m_bottomMargin;
    const int radius = std::min(static_cast<int>(std::floor((width() - left - right) * 0.5)),
                                static_cast<int>(std::floor(height() - top - bottom)));
    if (radius != m_horizontalRadius) {
        m_horizontalRadius = radius;
        m_verticalRadius = radius;
        emit pixelRadiusChanged();
    }
    m_centre = QPointF((left + width() - right) * 0.5, (top + height() - bottom + radius) * 0.5);
    m_fanRect = QRectF(m_centre.x() - radius, m_centre.y() - radius, 2.0 * radius, 2.0 * radius);
    m_segmentsSpan = 0;
    for (const Segment& segment : qAsConst(m_segments))
        m_segmentsSpan += segment.width;
}

void PolarChart::paintBackground(QPainter* painter)
{
    const double start = m_angleRightTickCount * m_angleTick + 90.0;
    const double span = (m_angleLeftTickCount - m_angleRightTickCount) * m_angleTick;
    painter->setPen(m_axisPen);
    if (m_segmentsSpan > 0) {
        painter->setBrush(m_fanFillColor);
        painter->drawChord(m_fanRect, sixteenths(start), sixteenths(span));
        // The segmented sector straight ahead stands out white.
        painter->setBrush(Qt::white);
        painter->drawPie(m_fanRect, sixteenths(floorHalf(m_segmentsSpan) + 90), sixteenths(-m_segmentsSpan));
    } else {
        painter->setBrush(Qt::white);
        painter->drawChord(m_fanRect, sixteenths(start), sixteenths(span));
    }

    painter->setPen(m_gridPen);
    painter->setBrush(Qt::NoBrush);
    for (int i = 1; i < m_distanceTicks; ++i) {
        const double ring = m_horizontalRadius * double(i) / m_distanceTicks;
        painter->drawArc(QRectF(m_centre.x() - ring, m_centre.y() - ring, 2.0 * ring, 2.0 * ring), sixteenths(start),
                         sixteenths(span));
    }
}

void PolarChart::paintSpokes(QPainter* painter)
{
    const int tickHeight = QFontMetrics(m_axisTickFont).height();
    painter->setFont(m_axisTickFont);
    for (int k = m_angleLeftTickCount; k <= m_angleRightTickCount; ++k) {
        const double angle = k * m_angleTick;
        const bool outer = k == m_angleLeftTickCount || k == m_angleRightTickCount;
        painter->setPen(outer ? m_axisPen : m_gridPen);
        painter->drawLine(m_centre, pointAt(angle, m_horizontalRadius));
        painter->setPen(m_axisPen);
        const QPointF labelCentre = pointAt(angle, m_horizontalRadius + tickHeight);
        painter->drawText(QRectF(labelCentre.x() - tickHeight, labelCentre.y() - tickHeight, 2.0 * tickHeight,
                                 2.0 * tickHeight),
                          Qt::AlignCenter, QStringLiteral("%1°").arg(angle, 0, 'f', 0));
    }
}

void PolarChart::paintSegments(QPainter* painter)
{
    const int labelHeight = QFontMetrics(m_segmentLabelFont).height();
    painter->setFont(m_segmentLabelFont);
    int start = static_cast<int>(std::floor(m_segmentsSpan * 0.5 + 90.0));
    for (const Segment& segment : qAsConst(m_segments)) {
        painter->setPen(m_segmentPen);
        painter->setBrush(segment.highlighted ? QBrush(m_highlightColor) : QBrush(Qt::transparent));
        painter->drawPie(m_fanRect, sixteenths(start), sixteenths(-segment.width));
        const QPointF labelCentre = pointAt(90 - start + floorHalf(segment.width), 0.7 * m_horizontalRadius);
        painter->drawText(QRectF(labelCentre.x() - labelHeight, labelCentre.y() - labelHeight, 2.0 * labelHeight,
                                 2.0 * labelHeight),
                          Qt::AlignCenter, segment.label);
        start -= segment.width;
    }
}

void PolarChart::paintDistanceAxis(QPainter* painter)
{
    const int tickHeight = QFontMetrics(m_axisTickFont).height();
    const int labelHeight = QFontMetrics(m_axisLabelFont).height();
    const double length = m_horizontalRadius;
    painter->setPen(m_axisPen);
    // Restoring rather than resetting keeps whatever transform the scene
    // graph painted us with (its device pixel ratio, for one).
    painter->save();
    painter->translate(m_centre);
    // Screen angles start straight up, the painter's x axis at three o'clock.
    painter->rotate(m_angleRightTickCount * m_angleTick - 90.0);
    painter->setFont(m_axisTickFont);
    for (int i = 1; i <= m_distanceTicks; ++i) {
        const double fraction = double(i) / m_distanceTicks;
        const double p = fraction * length;
        painter->drawLine(QPointF(p, 0.0), QPointF(p, m_tickOffset));
        painter->drawText(QRectF(p - tickHeight, m_tickOffset, 2.0 * tickHeight, tickHeight),
                          Qt::AlignCenter | Qt::TextDontClip,
                          QStringLiteral("%1").arg(fraction * m_distanceMax * m_unitFactor, 0, 'f', m_unitPrecision));
    }
    painter->setFont(m_axisLabelFont);
    painter->drawText(QRectF(0.0, m_tickOffset + tickHeight + 2, length, labelHeight), Qt::AlignCenter, m_axisLabel);
    painter->restore();
}

void PolarChart::paintLegend(QPainter* painter)
{
    const int lineHeight = QFontMetrics(m_legendFont).height();
    painter->setFont(m_legendFont);
    painter->setPen(m_axisPen);
    for (int i = 0; i < m_segments.size(); ++i) {
        const Segment& segment = m_segments.at(i);
        painter->drawText(QRectF(m_leftMargin, m_topMargin + i * lineHeight, 100, lineHeight),
                          Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip,
                          QStringLiteral("%1: %2°").arg(segment.label).arg(double(segment.width), 0, 'f', 1));
    }
}

void PolarChart::paintTargets(QPainter* painter)
{
    painter->setFont(m_targetFont);
    for (const RadarTrackedObject& target : *m_targets) {
        // Only the three lowest bits choose the colour, so neighbouring
        // identifiers differ and eight colours repeat.
        const QColor color((target.id & 1u) ? 150 : 0, (target.id & 2u) ? 150 : 0, (target.id & 4u) ? 150 : 0, 255);
        const double d = target.distance / m_distanceMax;
        const QPointF centre = pointAt(target.angle, d * m_horizontalRadius);
        painter->setPen(Qt::NoPen);
        painter->setBrush(color);
        painter->drawEllipse(centre, m_targetRadius, m_targetRadius);
        painter->setPen(Qt::white);
        painter->drawText(QRectF(centre.x() - m_targetRadius, centre.y() - m_targetRadius, 2.0 * m_targetRadius,
                                 2.0 * m_targetRadius),
                          Qt::AlignCenter | Qt::TextDontClip, QString::number(target.id));
    }
}
