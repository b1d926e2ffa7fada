#include "sketch/app/stroke_painter.h"

#include <QVarLengthArray>

#include <algorithm>
#include <cmath>

using vnt::sketch::Path;

namespace {

constexpr double kLightest = 0.25;  // of the full width, at no pressure
constexpr double kWidthSteps = 4;   // a pixel: what is as wide is painted in one go
constexpr double kLeastWidth = 0.5; // pixels
constexpr double kThinPen = 3;      // pixels

bool touches(const QPointF& a, const QPointF& b, const QRectF& within, double margin)
{
    return std::max(a.x(), b.x()) >= within.left() - margin &&
           std::min(a.x(), b.x()) <= within.right() + margin &&
           std::max(a.y(), b.y()) >= within.top() - margin &&
           std::min(a.y(), b.y()) <= within.bottom() + margin;
}

using Run = QVarLengthArray<QPointF, 256>;

void paintRun(QPainter& painter, const Run& run, const QColor& colour, double width)
{
    if (run.size() < 2)
        return;
    painter.setPen(roundPen(colour, width));
    painter.drawPolyline(run.constData(), static_cast<int>(run.size()));
}

} // namespace

double widthAt(double pressure, double fullWidth)
{
    const double pressed = std::isfinite(pressure) ? std::clamp(pressure, 0.0, 1.0) : 1;
    const double width = fullWidth * (kLightest + (1 - kLightest) * pressed);
    return std::max(kLeastWidth, std::round(width * kWidthSteps) / kWidthSteps);
}

QColor mixed(const QColor& first, const QColor& second, double share)
{
    const auto part = [share](int a, int b) { return static_cast<int>(std::lround(a + share * (b - a))); };
    return {part(first.red(), second.red()), part(first.green(), second.green()),
            part(first.blue(), second.blue())};
}

QPen roundPen(const QColor& colour, double width)
{
    // Of a thin pen nobody sees the joins, and round ones take twice as long.
    const Qt::PenJoinStyle join = width <= kThinPen ? Qt::MiterJoin : Qt::RoundJoin;
    return {colour, width, Qt::SolidLine, Qt::RoundCap, join};
}

void paintStroke(QPainter& painter, const StrokeArt& art, const QTransform& map, const StrokeLook& look)
{
    if (art.isInk()) {
        paintInk(painter, art.line, art.pressures, map, look.ink, look.width);
        return;
    }
    painter.setPen(roundPen(look.shape, look.width));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(map.map(art.curve));
}

void paintInk(QPainter& painter, const Path& line, const std::vector<float>& pressures, const QTransform& map,
              const QColor& colour, double width, const QRectF& within)
{
    if (line.empty())
        return;
    QPointF last = map.map(QPointF(line.front().x, line.front().y));
    if (line.size() == 1) {
        painter.setPen(roundPen(colour, widthAt(pressures.front(), width)));
        painter.drawPoint(last);
        return;
    }
    Run run;
    double runWidth = 0;
    for (std::size_t i = 1; i < line.size(); ++i) {
        const QPointF next = map.map(QPointF(line[i].x, line[i].y));
        const double here = widthAt((double{pressures[i - 1]} + pressures[i]) / 2, width);
        if (within.isNull() || touches(last, next, within, width + 1)) {
            if (here != runWidth || run.isEmpty()) {
                paintRun(painter, run, colour, runWidth);
                run.clear();
                run.append(last);
                runWidth = here;
            }
            run.append(next);
        } else {
            paintRun(painter, run, colour, runWidth);
            run.clear();
        }
        last = next;
    }
    paintRun(painter, run, colour, runWidth);
}
