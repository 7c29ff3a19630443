#pragma once

#include "fmcw/processing/IRangeDopplerChartData.h"

#include <QPixmap>
#include <QQuickPaintedItem>

// Shows the range-Doppler colour image. The image is stretched to the item's
// rectangle without keeping its aspect ratio: the page lays the range and
// speed axes along the item's edges, so every bin has to span exactly its
// share of each axis. Scaling is nearest-neighbour, so that the bins stay
// sharp and every pixel keeps a colour of the colour scale instead of a
// blend that the scale does not contain.
class PixmapImage : public QQuickPaintedItem
{
    Q_OBJECT
    Q_PROPERTY(IRangeDopplerChartData* data READ data WRITE setData NOTIFY dataChanged)
public:
    explicit PixmapImage(QQuickItem* parent = nullptr);

    // Not owned; the pipeline keeps it for as long as the page shows it.
    IRangeDopplerChartData* data() const { return m_data; }
    void setData(IRangeDopplerChartData* data);

    void paint(QPainter* painter) override;

signals:
    void dataChanged();

private:
    IRangeDopplerChartData* m_data = nullptr;
    // Reused from paint to paint; the chart data renders into it.
    QPixmap m_pixmap;
};
