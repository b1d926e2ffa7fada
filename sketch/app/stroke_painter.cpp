#include "sketch/app/stroke_painter.h"

#include "sketch/core/shape_outline.h"

#include <algorithm>
#include <cmath>

using vnt::sketch::Path;
using vnt::sketch::Vec2;

namespace {

constexpr double kLightest = 0.25;  // of the full width, at no pressure
constexpr double kLeastWidth = 0.5; // pixels

// Device pixels by which the line of a curve may leave it.
constexpr double kFlatness = 0.05;

// Device pixels across what is painted in one go; as much as the processor has at hand.
constexpr int kBlock = 128;
// Places of a line that are looked at or passed over together.
constexpr std::size_t kRun = 64;

// Of a line; of the usual length they go far beyond a screen.
constexpr double kMostDashes = 1e5;

// Device pixels; nothing is painted on more.
constexpr double kFarthest = 1e6;

QRect pixelsOf(const QRectF& box)
{
    const QRectF near = box & QRectF(-kFarthest, -kFarthest, 2 * kFarthest, 2 * kFarthest);
    const bool isAny = near.width() >= 0 && near.height() >= 0; // not where it is no number
    return isAny ? near.toAlignedRect() : QRect();
}

struct Run {
    const LinePoint* points;
    std::size_t count;
    QRect box; // of the pixels that it covers
};

QRect boxOf(const LinePoint* points, std::size_t count)
{
    double left = points[0].x, right = left, top = points[0].y, bottom = top, reach = points[0].radius;
    for (std::size_t i = 1; i < count; ++i) {
        left = std::min(left, points[i].x);
        right = std::max(right, points[i].x);
        top = std::min(top, points[i].y);
        bottom = std::max(bottom, points[i].y);
        reach = std::max(reach, points[i].radius);
    }
    return pixelsOf(QRectF(QPointF(left, top), QPointF(right, bottom)).adjusted(-reach, -reach, reach, reach))
        .adjusted(-1, -1, 1, 1);
}

using Line = std::vector<LinePoint>;

// Each but a line's last with the next one's first place.
std::vector<Run> runsOf(const std::vector<Line>& lines, const QRect& area)
{
    std::vector<Run> runs;
    for (const Line& line : lines) {
        for (std::size_t from = 0; from == 0 || from + 1 < line.size(); from += kRun) {
            const std::size_t count = std::min(kRun + 1, line.size() - from);
            const QRect box = boxOf(line.data() + from, count) & area;
            if (!box.isEmpty())
                runs.push_back({line.data() + from, count, box});
        }
    }
    return runs;
}

void paintBlock(QPainter& painter, const std::vector<Run>& runs, const QRect& block, const QColor& colour)
{
    QRect box;
    for (const Run& run : runs)
        box |= run.box & block;
    if (box.isEmpty())
        return;
    LineCoverage coverage(box);
    for (const Run& run : runs) {
        if (run.box.intersects(box))
            coverage.add(run.points, run.count);
    }
    paintCoverage(painter, coverage, colour);
}

// None of the lines is empty.
void paintLines(QPainter& painter, const std::vector<Line>& lines, const QColor& colour, const QRect& area)
{
    const std::vector<Run> runs = runsOf(lines, area);
    QRect box;
    for (const Run& run : runs)
        box |= run.box;
    for (int top = box.top(); top <= box.bottom(); top += kBlock) {
        for (int left = box.left(); left <= box.right(); left += kBlock)
            paintBlock(painter, runs, QRect(left, top, kBlock, kBlock) & box, colour);
    }
}

double scaleOf(const QTransform& map) { return std::sqrt(std::abs(map.determinant())); }

// The painter's own pixels without its world's map.
QTransform deviceOnly(const QPainter& painter)
{
    return painter.worldTransform().inverted() * painter.deviceTransform();
}

Path mapped(const Path& places, const QTransform& map)
{
    Path all;
    all.reserve(places.size());
    for (const Vec2 place : places) {
        const QPointF at = map.map(QPointF(place.x, place.y));
        all.push_back({at.x(), at.y()});
    }
    return all;
}

Line lineAlong(const Path& cubics, double radius)
{
    Line line;
    for (const Vec2 place : vnt::sketch::flattened(cubics, kFlatness))
        line.push_back({place.x, place.y, radius});
    return line;
}

// Of the segments that can show in the area: the others need not even be flattened.
std::vector<Line> linesWithin(const QRect& area, const Path& cubics, double radius)
{
    const QRectF near = QRectF(area).adjusted(-radius - 1, -radius - 1, radius + 1, radius + 1);
    std::vector<Line> lines;
    Path shown;
    const auto finish = [&] {
        if (!shown.empty())
            lines.push_back(lineAlong(shown, radius));
        shown.clear();
    };
    for (auto segment = cubics.begin(); cubics.end() - segment >= 4; segment += 4) {
        const auto [left, right] = std::minmax({segment[0].x, segment[1].x, segment[2].x, segment[3].x});
        const auto [top, bottom] = std::minmax({segment[0].y, segment[1].y, segment[2].y, segment[3].y});
        if (left <= near.right() && right >= near.left() && top <= near.bottom() && bottom >= near.top())
            shown.insert(shown.end(), segment, segment + 4);
        else
            finish();
    }
    finish();
    return lines;
}

double lengthOf(const Line& line)
{
    double length = 0;
    for (std::size_t i = 1; i < line.size(); ++i)
        length += std::hypot(line[i].x - line[i - 1].x, line[i].y - line[i - 1].y);
    return length;
}

// The line's dashes, so long and so far apart; the first begins where the line does. The line itself where they have
// no length or would be too many, or it has no end.
std::vector<Line> dashesOf(const Line& line, double dash, double gap)
{
    if (!line.empty() && !(lengthOf(line) < kMostDashes * (dash + gap)))
        return {line};
    std::vector<Line> dashes;
    bool isDash = true;
    double rest = dash;
    if (!line.empty())
        dashes.push_back({line.front()});
    for (std::size_t i = 1; i < line.size(); ++i) {
        const LinePoint& from = line[i - 1];
        const LinePoint& to = line[i];
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        double done = 0;
        while (length - done >= rest) {
            done += rest;
            const double share = done / length;
            const LinePoint at{from.x + share * (to.x - from.x), from.y + share * (to.y - from.y),
                               from.radius};
            if (isDash)
                dashes.back().push_back(at);
            else
                dashes.push_back({at});
            isDash = !isDash;
            rest = isDash ? dash : gap;
        }
        rest -= length - done;
        if (isDash)
            dashes.back().push_back(to);
    }
    return dashes;
}

} // namespace

double widthAt(double pressure, double fullWidth)
{
    const double pressed = std::isfinite(pressure) ? std::clamp(pressure, 0.0, 1.0) : 1;
    return std::max(std::min(kLeastWidth, fullWidth), fullWidth * (kLightest + (1 - kLightest) * pressed));
}

QColor mixed(const QColor& first, const QColor& second, double share)
{
    const auto part = [share](int a, int b) { return static_cast<int>(std::lround(a + share * (b - a))); };
    return {part(first.red(), second.red()), part(first.green(), second.green()),
            part(first.blue(), second.blue())};
}

QRect paintedPixels(const QPainter& painter, const QRectF& within)
{
    QRectF area = deviceOnly(painter).mapRect(QRectF(painter.viewport()));
    if (painter.hasClipping())
        area &= painter.deviceTransform().mapRect(painter.clipBoundingRect());
    if (!within.isNull())
        area &= painter.deviceTransform().mapRect(within);
    return area.isEmpty() ? QRect() : pixelsOf(area);
}

std::vector<LinePoint> linePoints(const QPainter& painter, const Path& line,
                                  const std::vector<float>& pressures, const QTransform& map, double width)
{
    const QTransform toDevice = map * painter.deviceTransform();
    const double scale = scaleOf(painter.deviceTransform()) / 2;
    std::vector<LinePoint> points;
    points.reserve(line.size());
    for (std::size_t i = 0; i < line.size(); ++i) {
        const QPointF at = toDevice.map(QPointF(line[i].x, line[i].y));
        points.push_back({at.x(), at.y(), scale * widthAt(double{pressures[i]}, width)});
    }
    return points;
}

void paintCoverage(QPainter& painter, const LineCoverage& coverage, const QColor& colour)
{
    if (coverage.covered().isEmpty())
        return;
    const QTransform own = painter.worldTransform();
    painter.setWorldTransform(deviceOnly(painter).inverted());
    painter.drawImage(coverage.covered().topLeft(), coverage.picture(colour));
    painter.setWorldTransform(own);
}

void paintInk(QPainter& painter, const Path& line, const std::vector<float>& pressures, const QTransform& map,
              const QColor& colour, double width, const QRectF& within)
{
    if (!line.empty())
        paintLines(painter, {linePoints(painter, line, pressures, map, width)}, colour,
                   paintedPixels(painter, within));
}

void paintCurve(QPainter& painter, const Path& cubics, const QTransform& map, const QColor& colour,
                double width, const QRectF& within)
{
    const QRect area = paintedPixels(painter, within);
    const double radius = scaleOf(painter.deviceTransform()) * width / 2;
    paintLines(painter, linesWithin(area, mapped(cubics, map * painter.deviceTransform()), radius), colour,
               area);
}

void paintDashedCurve(QPainter& painter, const Path& cubics, const QTransform& map, const QColor& colour,
                      const DashedPen& pen, const QRectF& within)
{
    const double scale = scaleOf(painter.deviceTransform());
    const Line line = lineAlong(mapped(cubics, map * painter.deviceTransform()), scale * pen.width / 2);
    // Round ends lengthen a dash.
    const double dash = scale * std::max(0.0, pen.dash - pen.width);
    const double gap = scale * (pen.gap + std::min(pen.dash, pen.width));
    paintLines(painter, dashesOf(line, dash, gap), colour, paintedPixels(painter, within));
}

void paintStroke(QPainter& painter, const StrokeArt& art, const QTransform& map, const StrokeLook& look,
                 const QRectF& within)
{
    if (art.isInk())
        paintInk(painter, art.line, art.pressures, map, look.ink, look.width, within);
    else
        paintCurve(painter, art.curve, map, look.shape, look.width, within);
}
