#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSGRenderNode>

#include <vector>

class QQuickWindow;

// The series lines for the software renderer, which draws no custom
// geometry: each line is painted as a polyline with the renderer's painter.
// Filled on the GUI thread during synchronisation, painted on the render
// thread, never both at once.
class SoftwareSeriesNode : public QSGRenderNode
{
public:
    struct Line {
        QColor color;
        std::vector<QPointF> vertices;
    };

    explicit SoftwareSeriesNode(QQuickWindow* window);

    // Keeps the capacity of lines that stay.
    void resize(int lineCount) { m_lines.resize(size_t(lineCount)); }
    Line& line(int index) { return m_lines[size_t(index)]; }
    void setLineWidth(double width) { m_lineWidth = width; }
    void setBounds(const QRectF& bounds) { m_bounds = bounds; }

    void render(const RenderState* state) override;
    void releaseResources() override {}
    StateFlags changedStates() const override { return {}; }
    RenderingFlags flags() const override { return BoundedRectRendering; }
    QRectF rect() const override { return m_bounds; }

private:
    QQuickWindow* m_window;
    std::vector<Line> m_lines;
    double m_lineWidth = 1.0;
    QRectF m_bounds;
};
