#include "PageView.h"

#include "Drawing.h"
#include "PagePicture.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>

namespace KvHost {

namespace {
// Pixels of the picture's longer side that the page is laid out in before it is fitted.
constexpr int LayoutSide = 2000;
constexpr double MinZoom = 0.1;
constexpr double MaxZoom = 50.0;
constexpr int Margin = 16;
} // namespace

PageView::PageView(QWidget* parent) : QWidget(parent)
{
    setAutoFillBackground(false);
    setMouseTracking(false);
    setFocusPolicy(Qt::ClickFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void PageView::setDrawing(const RefHost::Drawing* drawing)
{
    m_drawing = drawing;
    update();
}

void PageView::setLayer(const QString& layer)
{
    if (layer.compare(m_layer, Qt::CaseInsensitive) != 0)
        zoomExtents();
    m_layer = layer;
    update();
}

void PageView::zoomBy(double factor)
{
    const double zoom = qBound(MinZoom, m_zoom * factor, MaxZoom);
    m_pan *= zoom / m_zoom;
    m_zoom = zoom;
    update();
    emit zoomChanged(m_zoom);
}

void PageView::zoomExtents()
{
    m_zoom = 1.0;
    m_pan = QPointF();
    update();
    emit zoomChanged(m_zoom);
}

void PageView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0x5a, 0x60, 0x68));
    if (!m_drawing || m_layer.isEmpty())
        return;
    QString error;
    const std::optional<RefHost::PagePicture::Layout> layout =
        RefHost::PagePicture::layout(*m_drawing, m_layer, &error, LayoutSide);
    if (!layout) {
        painter.setPen(Qt::white);
        painter.drawText(rect(), Qt::AlignCenter, error);
        return;
    }
    const QRectF area = QRectF(rect()).adjusted(Margin, Margin, -Margin, -Margin);
    const double fit =
        qMin(area.width() / layout->size.width(), area.height() / layout->size.height());
    const double scale = qMax(1e-6, fit * m_zoom);
    const QSizeF shown(layout->size.width() * scale, layout->size.height() * scale);
    const QPointF topLeft = area.center() - QPointF(shown.width(), shown.height()) / 2.0 + m_pan;

    painter.fillRect(QRectF(topLeft + QPointF(4, 4), shown), QColor(0, 0, 0, 70));
    painter.translate(topLeft);
    painter.scale(scale, scale);
    painter.setClipRect(QRectF(QPointF(0, 0), QSizeF(layout->size)));
    RefHost::PagePicture::paint(painter, *m_drawing, m_layer, *layout);
}

void PageView::wheelEvent(QWheelEvent* event)
{
    const double steps = event->angleDelta().y() / 120.0;
    if (steps != 0.0)
        zoomBy(std::pow(1.2, steps));
    event->accept();
}

void PageView::mousePressEvent(QMouseEvent* event)
{
    m_dragging = true;
    m_dragFrom = event->position();
    setCursor(Qt::ClosedHandCursor);
}

void PageView::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_dragging)
        return;
    m_pan += event->position() - m_dragFrom;
    m_dragFrom = event->position();
    update();
}

void PageView::mouseReleaseEvent(QMouseEvent*)
{
    m_dragging = false;
    unsetCursor();
}

} // namespace KvHost
