#include "fmcw/standard/items/PixmapImage.h"

#include <QPainter>

PixmapImage::PixmapImage(QQuickItem* parent) : QQuickPaintedItem(parent)
{
}

void PixmapImage::setData(IRangeDopplerChartData* data)
{
    if (m_data == data)
        return;
    m_data = data;
    emit dataChanged();
    update();
}

void PixmapImage::paint(QPainter* painter)
{
    // A chart data without a map of its dimensions has no current image;
    // what the pixmap still holds from before is stale.
    if (!m_data || !m_data->render(m_pixmap) || m_pixmap.isNull())
        return;
    painter->save();
    painter->setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter->drawPixmap(QRectF(0.0, 0.0, width(), height()), m_pixmap, QRectF(m_pixmap.rect()));
    painter->restore();
}
