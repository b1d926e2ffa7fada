#include "sketch/core/snap_scene.h"

#include "sketch/core/ink.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace vnt::sketch {
namespace {

constexpr std::size_t kMostAbout = 24;
constexpr std::size_t kMostAlong = 64;
// Of a figure's size; corners that differ by less in their distance from its middle lie on a circle.
constexpr double kOnACircle = 1e-6;
// Of the reach.
constexpr double kSamePlace = 1e-6;

bool is_usable(Vec2 p) { return std::abs(p.x) <= kFarthest && std::abs(p.y) <= kFarthest; } // false for NaN

bool meet(const Box& a, const Box& b)
{
    return a.least.x <= b.most.x && b.least.x <= a.most.x && a.least.y <= b.most.y && b.least.y <= a.most.y;
}

Box grown(const Box& box, double by)
{
    return {
        {box.least.x - by, box.least.y - by},
        {box.most.x + by,  box.most.y + by }
    };
}

// The middle of a closed figure, where that is plain to see.
std::optional<Vec2> centre_of(const Path& corners)
{
    Vec2 sum;
    for (const Vec2 corner : corners)
        sum = sum + corner;
    const Vec2 middle = (1 / static_cast<double>(corners.size())) * sum;
    const double radius = distance(middle, corners.front());
    const bool is_plain =
        radius > 0 && corners.size() > 3 && std::all_of(corners.begin(), corners.end(), [&](Vec2 corner) {
            return std::abs(distance(middle, corner) - radius) <= kOnACircle * radius;
        });
    return is_plain ? std::optional(middle) : std::nullopt;
}

// Whether a side comes near to the outline; a round shape may always.
bool may_come_near(const Trace& trace, const Ellipse& ellipse, double reach)
{
    const auto* const side = std::get_if<Side>(&trace);
    if (side == nullptr)
        return true;
    // A step in the frame of the unit circle is at least the smaller half axis long.
    const Vec2 along = unit_at(ellipse.rotation);
    const auto framed = [&](Vec2 p) {
        const Vec2 off = p - ellipse.centre;
        return Vec2{dot(off, along) / ellipse.major, dot(off, turned_a_quarter(along)) / ellipse.minor};
    };
    const Vec2 start = framed(side->start);
    const Vec2 end = framed(side->end);
    const double slack = reach / ellipse.minor;
    return distance_from_piece({0, 0}, start, end) <= 1 + slack &&
           std::max(length(start), length(end)) >= 1 - slack;
}

} // namespace

const char* name_of(SnapKind kind)
{
    switch (kind) {
    case SnapKind::end: return "end";
    case SnapKind::corner: return "corner";
    case SnapKind::centre: return "centre";
    case SnapKind::intersection: return "intersection";
    case SnapKind::angle: return "angle";
    case SnapKind::grid: break;
    }
    return "grid crossing";
}

SnapScene::SnapScene(const std::vector<Shape>& shapes)
{
    for (const Shape& shape : shapes)
        std::visit([this](const auto& its) { add_shape(its); }, shape);
    sort();
}

void SnapScene::sort()
{
    std::sort(places_.begin(), places_.end(),
              [](const SnapTarget& a, const SnapTarget& b) { return a.at.x < b.at.x; });
    std::sort(traces_.begin(), traces_.end(),
              [](const Boxed& a, const Boxed& b) { return a.box.least.x < b.box.least.x; });
}

void SnapScene::add_place(Vec2 at, SnapKind kind)
{
    if (is_usable(at))
        places_.push_back({at, kind});
}

void SnapScene::add_trace(const Trace& trace)
{
    const Box box = box_of(trace);
    if (is_usable(box.least) && is_usable(box.most) && box.diagonal() > 0)
        traces_.push_back({box, trace});
}

void SnapScene::add_shape(const Straight& straight)
{
    const Path& corners = straight.corners;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const bool is_end = !straight.closed && (i == 0 || i + 1 == corners.size());
        add_place(corners[i], is_end ? SnapKind::end : SnapKind::corner);
        if (i + 1 < corners.size() || straight.closed)
            add_trace(Side{corners[i], corners[(i + 1) % corners.size()]});
    }
    if (straight.closed && !corners.empty())
        if (const std::optional<Vec2> centre = centre_of(corners))
            add_place(*centre, SnapKind::centre);
}

void SnapScene::add_shape(const Round& round)
{
    if (!(round.ellipse.major > 0) || !(round.ellipse.minor > 0) || !std::isfinite(round.start + round.sweep))
        return;
    add_place(round.ellipse.centre, SnapKind::centre);
    add_trace(round);
    if (is_whole(round))
        return;
    add_place(round.ellipse.at(round.start), SnapKind::end);
    add_place(round.ellipse.at(round.start + round.sweep), SnapKind::end);
}

void SnapScene::add_shape(const Curve& curve)
{
    if (curve.closed || curve.points.empty())
        return;
    add_place(curve.points.front(), SnapKind::end);
    add_place(curve.points.back(), SnapKind::end);
}

std::optional<SnapTarget> SnapScene::nearest(Vec2 p, double reach) const
{
    std::optional<SnapTarget> best;
    double least = reach;
    const auto offer = [&](Vec2 at, SnapKind kind) {
        const double off = distance(p, at);
        // Sides cross in their corners as well, rounded.
        const double better = kind == SnapKind::intersection ? kSamePlace * reach : 0;
        if (best ? off + better < least : off <= least) {
            best = SnapTarget{at, kind};
            least = off;
        }
    };
    const auto from = std::lower_bound(places_.begin(), places_.end(), p.x - reach,
                                       [](const SnapTarget& place, double x) { return place.at.x < x; });
    for (auto place = from; place != places_.end() && place->at.x <= p.x + least; ++place)
        offer(place->at, place->kind);

    const Box about = grown({p, p}, least);
    std::vector<std::pair<double, const Trace*>> near;
    for (const Boxed& boxed : traces_) {
        if (boxed.box.least.x > about.most.x)
            break;
        if (!meet(boxed.box, about))
            continue;
        const double off = least_distance(p, boxed.trace);
        if (off <= least)
            near.emplace_back(off, &boxed.trace);
    }
    if (near.size() > kMostAbout) {
        std::nth_element(near.begin(), near.begin() + kMostAbout, near.end());
        near.resize(kMostAbout);
    }
    for (std::size_t i = 0; i < near.size(); ++i)
        for (std::size_t k = i + 1; k < near.size(); ++k)
            for (const Vec2 crossing : crossings_of(*near[i].second, *near[k].second))
                offer(crossing, SnapKind::intersection);
    return best;
}

std::vector<SnapTarget> SnapScene::near_outline(const Ellipse& ellipse, double reach) const
{
    std::vector<SnapTarget> found;
    const Box about = grown(box_of(Trace(Round{ellipse, 0, 2 * kPi})), reach);
    const auto keep = [&](const SnapTarget& target) {
        if (std::abs(ellipse.distance_of(target.at)) <= reach)
            found.push_back(target);
    };
    const auto from = std::lower_bound(places_.begin(), places_.end(), about.least.x,
                                       [](const SnapTarget& place, double x) { return place.at.x < x; });
    for (auto place = from; place != places_.end() && place->at.x <= about.most.x; ++place)
        if (place->at.y >= about.least.y && place->at.y <= about.most.y)
            keep(*place);

    std::vector<const Boxed*> near;
    for (const Boxed& boxed : traces_) {
        if (near.size() == kMostAlong || boxed.box.least.x > about.most.x)
            break;
        if (meet(boxed.box, about) && may_come_near(boxed.trace, ellipse, reach))
            near.push_back(&boxed);
    }
    for (std::size_t i = 0; i < near.size(); ++i)
        for (std::size_t k = i + 1; k < near.size(); ++k)
            if (meet(near[i]->box, near[k]->box))
                for (const Vec2 crossing : crossings_of(near[i]->trace, near[k]->trace))
                    keep({crossing, SnapKind::intersection});
    return found;
}

} // namespace vnt::sketch
