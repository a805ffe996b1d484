#pragma once

#include <QPointF>
#include <QWidget>

namespace RefHost {
class Drawing;
}

namespace KvHost {

// Shows one page of a drawing as the page pictures draw it, fitted to the widget, with zoom
// (wheel, zoomBy) and pan (drag with any button).
class PageView final : public QWidget
{
    Q_OBJECT

public:
    explicit PageView(QWidget* parent = nullptr);

    // The drawing is not owned; it must outlive the view or be replaced before it goes.
    void setDrawing(const RefHost::Drawing* drawing);
    void setLayer(const QString& layer);
    const QString& layer() const { return m_layer; }

    double zoom() const { return m_zoom; }
    void zoomBy(double factor);
    // Back to the whole page in view.
    void zoomExtents();

    QSize sizeHint() const override { return {900, 640}; }

signals:
    void zoomChanged(double zoom);

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    const RefHost::Drawing* m_drawing = nullptr;
    QString m_layer;
    double m_zoom = 1.0;
    QPointF m_pan;
    QPointF m_dragFrom;
    bool m_dragging = false;
};

} // namespace KvHost
