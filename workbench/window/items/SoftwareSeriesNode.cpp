#include "SoftwareSeriesNode.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSGRendererInterface>

SoftwareSeriesNode::SoftwareSeriesNode(QQuickWindow* window) : m_window(window)
{
}

void SoftwareSeriesNode::render(const RenderState* state)
{
    QSGRendererInterface* renderer = m_window->rendererInterface();
    auto* painter = static_cast<QPainter*>(renderer->getResource(m_window, QSGRendererInterface::PainterResource));
    if (!painter)
        return;
    painter->save();
    // The clip has to be set before the transform: it is in window pixels.
    const QRegion* clip = state->clipRegion();
    if (clip && !clip->isEmpty())
        painter->setClipRegion(*clip, Qt::ReplaceClip);
    painter->setTransform(matrix()->toTransform());
    painter->setOpacity(inheritedOpacity());
    painter->setRenderHint(QPainter::Antialiasing, true);
    painter->setBrush(Qt::NoBrush);
    for (const Line& line : m_lines) {
        if (line.vertices.size() < 2)
            continue;
        painter->setPen(QPen(line.color, m_lineWidth, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
        painter->drawPolyline(line.vertices.data(), int(line.vertices.size()));
    }
    painter->restore();
}
