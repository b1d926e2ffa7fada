#include "sketch/app/snap_marks.h"

#include <QPainterPath>

using vnt::sketch::SnapKind;

namespace {

constexpr double kReach = 6.5; // from the middle to the rim
constexpr double kPen = 2;
constexpr double kCasing = 1.5; // on either side, of the sheet's colour

QPainterPath outlineOf(SnapKind kind)
{
    constexpr double r = kReach;
    QPainterPath path;
    switch (kind) {
    case SnapKind::end: path.addRect(-r + 1, -r + 1, 2 * r - 2, 2 * r - 2); break;
    case SnapKind::corner:
        path.addPolygon(QPolygonF({
            {0,  -r},
            {r,  0 },
            {0,  r },
            {-r, 0 },
            {0,  -r}
        }));
        break;
    case SnapKind::centre:
        path.addEllipse(QPointF(), r, r);
        path.addEllipse(QPointF(), 0.5, 0.5);
        break;
    case SnapKind::intersection:
        path.moveTo(-r + 1, -r + 1);
        path.lineTo(r - 1, r - 1);
        path.moveTo(-r + 1, r - 1);
        path.lineTo(r - 1, -r + 1);
        break;
    case SnapKind::grid:
        path.moveTo(-r, 0);
        path.lineTo(r, 0);
        path.moveTo(0, -r);
        path.lineTo(0, r);
        break;
    case SnapKind::angle:
        path.moveTo(r, 0);
        path.lineTo(-r, 0);
        path.lineTo(r - 1, -r);
        break;
    }
    return path;
}

} // namespace

QRectF snapMarkBox(QPointF at)
{
    constexpr double kWhole = kReach + kPen / 2 + kCasing + 1;
    return {at.x() - kWhole, at.y() - kWhole, 2 * kWhole, 2 * kWhole};
}

void paintSnapMark(QPainter& painter, QPointF at, SnapKind kind, const CanvasColours& colours)
{
    const QPainterPath outline = outlineOf(kind).translated(at);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colours.sheet, kPen + 2 * kCasing, Qt::SolidLine, Qt::RoundCap, Qt::MiterJoin));
    painter.drawPath(outline);
    painter.setPen(QPen(colours.marker, kPen, Qt::SolidLine, Qt::RoundCap, Qt::MiterJoin));
    painter.drawPath(outline);
}
