#include "fmcw/standard/items/RangeDopplerColorBar.h"

#include "fmcw/processing/RangeDopplerColorMap.h"

#include <QPainter>

RangeDopplerColorBar::RangeDopplerColorBar(QQuickItem* parent)
    : QQuickPaintedItem(parent)
    , m_scale(1, 256, QImage::Format_RGB32)
{
    const RangeDopplerColorMap colors;
    for (int index = 0; index < 256; ++index) {
        const quint8* rgb = colors.color(index);
        m_scale.setPixel(0, 255 - index, qRgb(rgb[0], rgb[1], rgb[2]));
    }
}

void RangeDopplerColorBar::paint(QPainter* painter)
{
    painter->save();
    painter->setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter->drawImage(QRectF(0.0, 0.0, width(), height()), m_scale);
    painter->restore();
}
