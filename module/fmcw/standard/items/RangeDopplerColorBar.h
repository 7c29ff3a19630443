#pragma once

#include <QImage>
#include <QQuickPaintedItem>

// The colour scale of the range-Doppler image as a vertical bar: the
// brightest colour (0 dB) at the top, the threshold's black at the bottom,
// each of the 256 colours an equal share of the height. The page labels it
// in dB; the colours themselves are the image's own, so the two always agree.
class RangeDopplerColorBar : public QQuickPaintedItem
{
    Q_OBJECT
public:
    explicit RangeDopplerColorBar(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

private:
    // One pixel wide, one row per colour, the top row the brightest.
    QImage m_scale;
};
