#include "sketch/app/stroke_art.h"

#include "sketch/core/shape_outline.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

using vnt::sketch::Box;
using vnt::sketch::Curve;
using vnt::sketch::kPi;
using vnt::sketch::Path;
using vnt::sketch::Round;
using vnt::sketch::Shape;
using vnt::sketch::Straight;
using vnt::sketch::StrokeId;
using vnt::sketch::StrokePtr;
using vnt::sketch::Vec2;

namespace {

// Sheet pixels: at the closest view a few tenths of a screen pixel.
constexpr double kCurveTolerance = 0.005;
constexpr double kLineTolerance = 0.1;
// Radians; what a whole turn may lack of itself by rounding.
constexpr double kTurnRounding = 1e-9;

double distanceOfPieces(Vec2 a, Vec2 b, Vec2 c, Vec2 d)
{
    const Vec2 along = b - a;
    const Vec2 other = d - c;
    const double c1 = cross(along, c - a);
    const double c2 = cross(along, d - a);
    const double c3 = cross(other, a - c);
    const double c4 = cross(other, b - c);
    if (c1 * c2 < 0 && c3 * c4 < 0)
        return 0;
    return std::min({distance_from_piece(a, c, d), distance_from_piece(b, c, d), distance_from_piece(c, a, b),
                     distance_from_piece(d, a, b)});
}

} // namespace

QRectF boxOf(const Path& places)
{
    const Box box = vnt::sketch::box_of(places);
    return {box.least.x, box.least.y, box.width(), box.height()};
}

bool isClosed(const Shape& shape)
{
    if (const auto* straight = std::get_if<Straight>(&shape))
        return straight->closed;
    if (const auto* round = std::get_if<Round>(&shape))
        return std::abs(round->sweep) >= 2 * kPi - kTurnRounding;
    const auto* curve = std::get_if<Curve>(&shape);
    return curve != nullptr && curve->closed;
}

StrokeArt::StrokeArt(StrokePtr its) : stroke(std::move(its))
{
    if (isInk()) {
        vnt::sketch::InkLine seen = vnt::sketch::ink_line(stroke->ink);
        line = std::move(seen.places);
        pressures = std::move(seen.pressures);
    } else {
        curve = vnt::sketch::cubics_of(stroke->shape, kCurveTolerance);
        line = vnt::sketch::flattened(curve, kLineTolerance);
    }
    // What is painted anew is as much of the screen as the box takes: it holds the rim at the closest view as well.
    box = boxOf(isInk() ? line : vnt::sketch::flattened(curve, kCurveTolerance));
}

double StrokeArt::distanceFrom(Vec2 p, double reach) const
{
    double nearest = std::numeric_limits<double>::infinity();
    if (line.empty() || !box.adjusted(-reach, -reach, reach, reach).contains(p.x, p.y))
        return nearest;
    if (line.size() == 1)
        return distance(p, line.front());
    for (std::size_t i = 1; i < line.size(); ++i)
        nearest = std::min(nearest, distance_from_piece(p, line[i - 1], line[i]));
    return nearest;
}

bool StrokeArt::isCrossed(Vec2 a, Vec2 b, double reach) const
{
    const QRectF way = QRectF(QPointF(a.x, a.y), QPointF(b.x, b.y)).normalized();
    const QRectF near = box.adjusted(-reach, -reach, reach, reach);
    const bool isApart = way.right() < near.left() || way.left() > near.right() ||
                         way.bottom() < near.top() || way.top() > near.bottom();
    if (line.empty() || isApart)
        return false;
    if (line.size() == 1)
        return distance_from_piece(line.front(), a, b) <= reach;
    for (std::size_t i = 1; i < line.size(); ++i) {
        if (distanceOfPieces(a, b, line[i - 1], line[i]) <= reach)
            return true;
    }
    return false;
}

const StrokeArt* StrokeArts::find(StrokeId id) const
{
    const auto found = m_ofId.find(id);
    return found == m_ofId.end() ? nullptr : found->second;
}

const StrokeArt* StrokeArts::topmostAt(Vec2 p, double reach) const
{
    const auto found = std::find_if(m_arts.rbegin(), m_arts.rend(),
                                    [&](const auto& art) { return art->distanceFrom(p, reach) <= reach; });
    return found == m_arts.rend() ? nullptr : found->get();
}

QRectF StrokeArts::box() const
{
    Path corners;
    for (const auto& art : m_arts) {
        if (art->line.empty())
            continue;
        corners.push_back({art->box.left(), art->box.top()});
        corners.push_back({art->box.right(), art->box.bottom()});
    }
    if (corners.empty())
        return {};
    return boxOf(corners);
}

void StrokeArts::reset(const std::vector<StrokePtr>& strokes)
{
    m_arts.clear();
    m_ofId.clear();
    m_arts.reserve(strokes.size());
    for (const StrokePtr& stroke : strokes)
        insert(m_arts.size(), stroke);
}

const StrokeArt& StrokeArts::insert(std::size_t index, const StrokePtr& stroke)
{
    const auto at = m_arts.begin() + static_cast<std::ptrdiff_t>(std::min(index, m_arts.size()));
    StrokeArt& art = **m_arts.insert(at, std::make_unique<StrokeArt>(stroke));
    m_ofId[stroke->id] = &art;
    return art;
}

void StrokeArts::take(StrokeId id)
{
    const auto found = m_ofId.find(id);
    if (found == m_ofId.end())
        return;
    // What goes is what was drawn last, mostly.
    const auto at = std::find_if(m_arts.rbegin(), m_arts.rend(),
                                 [&](const auto& art) { return art.get() == found->second; });
    m_ofId.erase(found);
    m_arts.erase(std::prev(at.base()));
}

const StrokeArt* StrokeArts::replace(const StrokePtr& stroke)
{
    const auto found = m_ofId.find(stroke->id);
    if (found == m_ofId.end())
        return nullptr;
    *found->second = StrokeArt(stroke);
    return found->second;
}
