#include "sketch/app/grid_painter.h"

#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>
#include <array>
#include <cmath>

using vnt::sketch::Affine;
using vnt::sketch::Sheet;
using vnt::sketch::Vec2;

namespace {

constexpr int kMostLines = 4000; // of a family; no screen shows as many at kLeastGridStep
// Above it steps and line numbers would no longer be whole numbers.
constexpr double kFarthestLine = 1e9;
constexpr int kLargestStep = 1'000'000;

Vec2 vec(QPointF p) { return {p.x(), p.y()}; }
QPointF point(Vec2 p) { return {p.x, p.y}; }

struct Range {
    double least = kFarthestLine;
    double most = -kFarthestLine;

    void take(double value)
    {
        least = std::min(least, value);
        most = std::max(most, value);
    }
    bool isDrawable() const { return least <= most && least > -kFarthestLine && most < kFarthestLine; }
};

// Where a line of one pixel's width covers that pixel and no other. A line on the border between two belongs
// to the second of them, however its place was rounded.
double pixelMiddle(double place, double scale, double offset)
{
    constexpr double kRounding = 1e-4;
    return (std::floor(place * scale + offset + kRounding) + 0.5 - offset) / scale;
}

void alignToPixels(QList<QLineF>& lines, const QTransform& device)
{
    for (QLineF& line : lines) {
        if (line.x1() == line.x2()) {
            const double x = pixelMiddle(line.x1(), device.m11(), device.dx());
            line.setLine(x, line.y1(), x, line.y2());
        } else {
            const double y = pixelMiddle(line.y1(), device.m22(), device.dy());
            line.setLine(line.x1(), y, line.x2(), y);
        }
    }
}

// One of the two families: the lines on which one grid coordinate is a whole number.
class Family {
public:
    Family(const Affine& gridToWidget, bool isAcross, Range own, Range other)
        : m_map(gridToWidget), m_isAcross(isAcross), m_own(own), m_other(other)
    {
    }

    double pixelsApart() const
    {
        const Vec2 along = m_map.linear(m_isAcross ? Vec2{1, 0} : Vec2{0, 1});
        return std::abs(m_map.determinant()) / std::max(vnt::sketch::length(along), 1e-12);
    }

    // Those of every step-th line that are, or are not, multiples of subdivisions.
    QList<QLineF> lines(int step, int subdivisions, bool areMain) const
    {
        QList<QLineF> found;
        const auto first = static_cast<qint64>(std::ceil(m_own.least / step)) * step;
        const auto last = static_cast<qint64>(std::floor(m_own.most / step)) * step;
        if ((last - first) / step > kMostLines)
            return found;
        for (qint64 i = first; i <= last; i += step) {
            if ((i % subdivisions == 0) == areMain)
                found.append(QLineF(at(static_cast<double>(i), m_other.least),
                                    at(static_cast<double>(i), m_other.most)));
        }
        return found;
    }

private:
    QPointF at(double own, double other) const
    {
        return point(m_map(m_isAcross ? Vec2{other, own} : Vec2{own, other}));
    }

    Affine m_map;
    bool m_isAcross;
    Range m_own;
    Range m_other;
};

Affine affine(const QTransform& map)
{
    return {map.m11(), map.m12(), map.m21(), map.m22(), map.dx(), map.dy()};
}

// The grid coordinates that are seen in a part of the screen.
struct Seen {
    Seen(const QPolygonF& part, const Affine& widgetToGrid)
    {
        for (const QPointF corner : part) {
            const Vec2 place = widgetToGrid(vec(corner));
            columns.take(place.x);
            rows.take(place.y);
        }
    }
    bool isDrawable() const { return columns.isDrawable() && rows.isDrawable(); }

    Range columns;
    Range rows;
};

} // namespace

int gridStep(double pixelsApart, int subdivisions)
{
    if (!(pixelsApart > 0))
        return kLargestStep;
    if (pixelsApart >= kLeastGridStep)
        return 1;
    constexpr std::array<int, 3> kSteps = {1, 2, 5};
    for (qint64 tens = 1; tens * subdivisions < kLargestStep; tens *= 10) {
        for (const int step : kSteps) {
            const qint64 whole = tens * step * subdivisions;
            if (whole < kLargestStep && static_cast<double>(whole) * pixelsApart >= kLeastGridStep)
                return static_cast<int>(whole);
        }
    }
    return kLargestStep;
}

void paintGrid(QPainter& painter, const Sheet& sheet, const QTransform& sheetToWidget, const QRectF& screen,
               const QRectF& within, const GridColours& colours)
{
    if (!sheet.grid)
        return;
    const Affine gridToWidget = affine(sheetToWidget) * sheet.grid->grid_to_sheet;
    const auto widgetToGrid = vnt::sketch::try_inverse(gridToWidget);
    if (!widgetToGrid)
        return;
    // Lines are as long as the screen shows of them, so that they look the same whichever part is painted.
    const QPolygonF paper = sheetToWidget.map(QPolygonF(QRectF(0, 0, sheet.width, sheet.height)));
    const Seen whole(paper.intersected(QPolygonF(screen)), *widgetToGrid);
    const Seen part(paper.intersected(QPolygonF(within.adjusted(-1, -1, 1, 1))), *widgetToGrid);
    if (!whole.isDrawable() || !part.isDrawable())
        return;

    const int subdivisions = std::clamp(sheet.grid->subdivisions, 1, kLargestStep);
    const std::array<Family, 2> families = {Family(gridToWidget, false, part.columns, whole.rows),
                                            Family(gridToWidget, true, part.rows, whole.columns)};
    painter.save();
    const bool isUpright = gridToWidget.b == 0 && gridToWidget.c == 0;
    painter.setRenderHint(QPainter::Antialiasing, !isUpright);
    if (!isUpright) { // lines end where the box of what shows does, beside the sheet
        QPainterPath edge;
        edge.addPolygon(paper);
        painter.setClipPath(edge, Qt::IntersectClip);
    }
    for (const bool areMain : {false, true}) { // main ones over the fine ones of the other family
        painter.setPen(QPen(areMain ? colours.main : colours.fine, 0));
        for (const Family& family : families) {
            const int step = gridStep(family.pixelsApart(), subdivisions);
            QList<QLineF> lines = family.lines(step, subdivisions, areMain);
            if (isUpright)
                alignToPixels(lines, painter.deviceTransform());
            painter.drawLines(lines);
        }
    }
    painter.restore();
}
