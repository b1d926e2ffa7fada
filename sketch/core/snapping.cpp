#include "sketch/core/snapping.h"

#include "sketch/core/snap_places.h"
#include "sketch/core/snap_round.h"
#include "sketch/core/snap_straight.h"

#include <cstddef>

namespace vnt::sketch {
namespace {

Snapped snapped(std::monostate, Kind, const SnapPlaces&) { return {}; }

Snapped snapped(const Straight& straight, Kind kind, const SnapPlaces& places)
{
    if (kind == Kind::rectangle && straight.closed)
        return snap_rectangle(straight, places);
    const bool keeps_form = kind == Kind::square || kind == Kind::polygon;
    return keeps_form && is_regular(straight) ? snap_form(straight, places) : snap_corners(straight, places);
}

Snapped snapped(const Round& round, Kind kind, const SnapPlaces& places)
{
    if (!is_whole(round))
        return snap_arc(round, places);
    const bool is_oval = kind == Kind::ellipse || kind == Kind::elliptic_arc;
    return !is_oval && round.ellipse.major == round.ellipse.minor ? snap_circle(round, places)
                                                                  : snap_ellipse(round, places);
}

// The points moved by as much as the ends are, the share of each falling along the way.
//
// By the length of the polygon of control points, so that the two handles of a joint, in whose lengths its
// directions meet, stay on one line.
Path led(const Path& points, Vec2 by_start, Vec2 by_end)
{
    const double whole = path_length(points);
    Path moved = points;
    double way = 0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        way += i > 0 ? distance(points[i - 1], points[i]) : 0;
        const double share = i + 1 == points.size() ? 1 : way / whole;
        moved[i] = points[i] + (1 - share) * by_start + share * by_end;
    }
    return moved;
}

Snapped snapped(const Curve& curve, Kind, const SnapPlaces& places)
{
    Snapped result{curve, {}};
    const Path& points = curve.points;
    const double size = path_length(points);
    if (curve.closed || !(size > 0))
        return result;
    std::optional<SnapTarget> start = places.near(points.front());
    std::optional<SnapTarget> end = places.near(points.back());
    // A loop may begin and end in one place; what is hardly longer than the reach would shrink into it.
    if (start && end && start->at == end->at && size < 4 * places.reach())
        (distance(points.front(), start->at) <= distance(points.back(), end->at) ? end : start).reset();
    const Vec2 by_start = start ? start->at - points.front() : Vec2{};
    const Vec2 by_end = end ? end->at - points.back() : Vec2{};
    Path moved = led(points, by_start, by_end);
    for (const auto& [target, place] : {std::pair(start, &moved.front()), std::pair(end, &moved.back())})
        if (target) {
            *place = target->at;
            result.marks.push_back(*target);
        }
    result.shape = Curve{std::move(moved), false};
    return result;
}

} // namespace

std::optional<SnapTarget> snap_point(Vec2 p, const SnapScene& scene, const std::optional<Grid>& grid,
                                     const SnapSettings& settings)
{
    return SnapPlaces(scene, grid, settings).near(p);
}

Snapped snap_shape(const Shape& shape, Kind kind, const SnapScene& scene, const std::optional<Grid>& grid,
                   const SnapSettings& settings)
{
    const SnapPlaces places(scene, grid, settings);
    return std::visit([&](const auto& its) { return snapped(its, kind, places); }, shape);
}

} // namespace vnt::sketch
