#include "sketch/core/snap_round.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace vnt::sketch {
namespace {

// Of the radius; so round is a circle, and centres that are so equally far from both ends are one's centre.
constexpr double kSame = 1e-6;
constexpr double kRound = 1e-9;
// Radians; of an arc that turns by less one does not see the centre.
constexpr double kLeastSeen = kPi / 4;
// Of what it was.
constexpr double kLeastLeft = 0.25;
// Steps along the arc at which it is measured how far it moves.
constexpr int kMeasured = 8;

Vec2 point_at(const Round& arc, double share) { return arc.ellipse.at(arc.start + share * arc.sweep); }

// The ways in which an arc could go to the places near its ends and its centre, and the best of them.
class ArcWays {
public:
    ArcWays(const Round& arc, const SnapPlaces& places)
        : before_(arc), places_(places), ends_{point_at(arc, 0), point_at(arc, 1)},
          is_circular_(arc.ellipse.major - arc.ellipse.minor <= kRound * arc.ellipse.major),
          sees_centre_(std::abs(arc.sweep) >= kLeastSeen)
    {
        for (int i = 0; i < 2; ++i)
            targets_[i] = places.near(ends_[i]);
        if (sees_centre_)
            centre_target_ = places.near(arc.ellipse.centre);
        best_.arc = arc;
    }

    void add_all()
    {
        offer(with_free_ends(before_));
        if (centre_target_)
            add_centred(centre_target_->at);
        if (targets_[0] && targets_[1])
            offer(through(targets_[0]->at, targets_[1]->at));
        for (int i = 0; i < 2; ++i)
            if (targets_[i]) {
                offer(i == 0 ? through(targets_[0]->at, ends_[1]) : through(ends_[0], targets_[1]->at));
                offer(moved(targets_[i]->at - ends_[i]));
            }
    }

    Snapped best() const
    {
        Snapped snapped{in_order(best_.arc), best_.marks};
        for (const double share : {0.0, 1.0})
            if (const std::optional<SnapTarget> place = places_.at(point_at(best_.arc, share)))
                snapped.marks.push_back(*place);
        if (sees_centre_)
            if (const std::optional<SnapTarget> place = places_.at(best_.arc.ellipse.centre))
                snapped.marks.push_back(*place);
        return snapped;
    }

private:
    struct Way {
        Round arc;
        std::vector<SnapTarget> marks; // of its radius and its angles
        int on_places = -1;
        double farthest = 0;

        auto rank() const { return std::tuple(-on_places, farthest); }
    };

    void offer(Way way)
    {
        const double turn = way.arc.sweep / before_.sweep;
        const double growth = way.arc.ellipse.major / before_.ellipse.major;
        if (!(turn >= kLeastLeft) || !(std::abs(way.arc.sweep) < 2 * kPi) || !(growth >= kLeastLeft))
            return;
        for (int i = 0; i <= kMeasured; ++i) {
            const double share = 1.0 * i / kMeasured;
            way.farthest =
                std::max(way.farthest, distance(point_at(way.arc, share), point_at(before_, share)));
        }
        // Angles have their own reach.
        if (way.marks.empty() && !(way.farthest <= 2 * places_.reach()))
            return;
        for (const double share : {0.0, 1.0})
            way.on_places += places_.at(point_at(way.arc, share)) ? 1 : 0;
        way.on_places += sees_centre_ && places_.at(way.arc.ellipse.centre) ? 2 : 1; // from -1
        if (best_.on_places < 0 || way.rank() < best_.rank())
            best_ = std::move(way);
    }

    Way moved(Vec2 by) const
    {
        Round arc = before_;
        arc.ellipse.centre = arc.ellipse.centre + by;
        return {arc, {}};
    }

    // Moved, turned and scaled so that it goes from one place to the other.
    Way through(Vec2 start, Vec2 end) const
    {
        const Vec2 from = ends_[1] - ends_[0];
        const Vec2 to = end - start;
        const double square = dot(from, from);
        const Vec2 ratio{dot(from, to) / square, cross(from, to) / square};
        const Vec2 off = before_.ellipse.centre - ends_[0];
        Round arc = before_;
        arc.ellipse.centre = start + ratio.x * off + ratio.y * turned_a_quarter(off);
        arc.ellipse.major *= length(ratio);
        arc.ellipse.minor *= length(ratio);
        // A circle keeps the direction of its half axes, which nobody sees.
        (is_circular_ ? arc.start : arc.ellipse.rotation) += angle_of(ratio);
        return {arc, {}};
    }

    // With its ends, which no place holds, at steps of angles about the centre.
    Way with_free_ends(const Round& arc) const
    {
        Way way{arc, {}};
        if (!is_circular_) {
            if (const std::optional<double> step = places_.step_near(arc.ellipse.rotation)) {
                way.arc.ellipse.rotation = *step;
                way.marks.push_back({way.arc.ellipse.at(0), SnapKind::angle});
            }
            return way;
        }
        const double start = arc.ellipse.rotation + arc.start;
        const std::optional<double> start_step = places_.step_near(start);
        const std::optional<double> end_step = places_.step_near(start + arc.sweep);
        const double new_start = start_step.value_or(start);
        way.arc.start = new_start - arc.ellipse.rotation;
        way.arc.sweep = end_step.value_or(start + arc.sweep) - new_start;
        if (start_step)
            way.marks.push_back({point_at(way.arc, 0), SnapKind::angle});
        if (end_step)
            way.marks.push_back({point_at(way.arc, 1), SnapKind::angle});
        return way;
    }

    // About the place, the ends where they are seen from there.
    Way about(Vec2 centre, double radius, Vec2 start, Vec2 end) const
    {
        Round arc = before_;
        const double first = turn_between(ends_[0] - before_.ellipse.centre, start - centre);
        const double last = turn_between(ends_[1] - before_.ellipse.centre, end - centre);
        arc.ellipse.centre = centre;
        arc.ellipse.major = arc.ellipse.minor = radius;
        arc.start += first;
        arc.sweep += last - first;
        return {arc, {}};
    }

    void add_centred(Vec2 centre)
    {
        const Vec2 by = centre - before_.ellipse.centre;
        if (!is_circular_) {
            offer(with_free_ends(moved(by).arc));
            return;
        }
        for (int i = 0; i < 2; ++i) {
            if (!targets_[i])
                continue;
            const double radius = distance(centre, targets_[i]->at);
            const auto& other = targets_[1 - i];
            const bool is_about_both =
                other && std::abs(distance(centre, other->at) - radius) <= kSame * radius;
            const Vec2 stays = is_about_both ? other->at : ends_[1 - i] + by;
            offer(i == 0 ? about(centre, radius, targets_[0]->at, stays)
                         : about(centre, radius, stays, targets_[1]->at));
        }
        Way way = with_free_ends(moved(by).arc);
        if (const std::optional<SnapTarget> target = radius_target(way.arc, places_)) {
            way.arc.ellipse.major = way.arc.ellipse.minor = distance(centre, target->at);
            way.marks.push_back(*target);
        }
        offer(std::move(way));
    }

    Round before_;
    const SnapPlaces& places_;
    Vec2 ends_[2];
    bool is_circular_;
    bool sees_centre_;
    std::optional<SnapTarget> targets_[2];
    std::optional<SnapTarget> centre_target_;
    Way best_;
};

} // namespace

Snapped snap_arc(const Round& arc, const SnapPlaces& places)
{
    if (!(arc.ellipse.major > 0) || !(arc.ellipse.minor > 0) || !(std::abs(arc.sweep) > 0))
        return {arc, {}};
    ArcWays ways(arc, places);
    ways.add_all();
    return ways.best();
}

} // namespace vnt::sketch
