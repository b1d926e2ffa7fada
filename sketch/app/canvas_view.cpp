#include "sketch/app/canvas_view.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kMargin = 24; // widget pixels on each side of what is fitted

} // namespace

QTransform CanvasView::sheetToWidget() const
{
    // Each call stands for what happens before those above it.
    QTransform map;
    map.translate(m_size.width() / 2, m_size.height() / 2);
    map.rotate(m_rotation);
    map.scale(m_scale, m_scale);
    map.translate(-m_centre.x(), -m_centre.y());
    return map;
}

QPointF CanvasView::toSheet(QPointF widget) const { return sheetToWidget().inverted().map(widget); }

void CanvasView::setScale(double scale, QPointF about)
{
    if (!std::isfinite(scale))
        return;
    const QPointF still = toSheet(about);
    m_scale = std::clamp(scale, kLeastScale, kMostScale);
    moveBy(about - toWidget(still));
}

void CanvasView::setRotation(double degrees, QPointF about)
{
    if (!std::isfinite(degrees))
        return;
    const QPointF still = toSheet(about);
    m_rotation = std::remainder(degrees, 360);
    if (m_rotation >= 180)
        m_rotation -= 360;
    moveBy(about - toWidget(still));
}

void CanvasView::moveBy(QPointF widget)
{
    QTransform back;
    back.rotate(-m_rotation);
    m_centre -= back.map(widget) / m_scale;
}

void CanvasView::fit(const QRectF& sheet)
{
    QTransform turned;
    turned.rotate(m_rotation);
    const QRectF seen = turned.mapRect(sheet);
    const double across = std::max(1.0, m_size.width() - 2 * kMargin);
    const double down = std::max(1.0, m_size.height() - 2 * kMargin);
    const double scale =
        std::min(across / std::max(seen.width(), 1e-6), down / std::max(seen.height(), 1e-6));
    m_scale = std::clamp(scale, kLeastScale, kMostScale);
    m_centre = sheet.center();
}
