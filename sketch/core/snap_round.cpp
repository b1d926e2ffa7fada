#include "sketch/core/snap_round.h"

#include <algorithm>
#include <cmath>

namespace vnt::sketch {
namespace {

// Of what it was; no half axis becomes less.
constexpr double kLeastLeft = 0.25;
// Of a half axis.
constexpr double kSame = 1e-6;

double change(double a, double b) { return std::abs(a - b); }

// One half axis of an ellipse, changed so that the outline goes through a target.
struct Axis {
    double half = 0;
    SnapTarget target;
    Vec2 at; // of the target: along the axis and across it, from the centre
};

// Of the targets the one that changes the half axis least; none when that is more than the reach.
void offer(std::optional<Axis>& best, const Axis& axis, double before, double reach)
{
    if (!(change(axis.half, before) <= reach) || axis.half < kLeastLeft * before)
        return;
    if (!best || change(axis.half, before) < change(best->half, before))
        best = axis;
}

// Both half axes at once: x²/a² + y²/b² = 1 at both targets is linear in 1/a² and 1/b².
bool try_both(Ellipse& ellipse, const Axis& major, const Axis& minor, double reach)
{
    const Vec2 first{major.at.x * major.at.x, major.at.y * major.at.y};
    const Vec2 second{minor.at.y * minor.at.y, minor.at.x * minor.at.x}; // its own axis came first
    const double size = cross(first, second);
    const double a = 1 / std::sqrt((second.y - first.y) / size);
    const double b = 1 / std::sqrt((first.x - second.x) / size);
    if (!(change(a, ellipse.major) <= reach) || !(change(b, ellipse.minor) <= reach) ||
        a < kLeastLeft * ellipse.major || b < kLeastLeft * ellipse.minor)
        return false;
    ellipse.major = a;
    ellipse.minor = b;
    return true;
}

class HalfAxes {
public:
    HalfAxes(Ellipse& ellipse, const SnapPlaces& places, std::vector<SnapTarget>& marks)
        : ellipse_(ellipse), places_(places), marks_(marks), along_(unit_at(ellipse.rotation))
    {
    }

    void snap()
    {
        for (const SnapTarget& target : places_.near_outline(ellipse_))
            add(target);
        if (major_ && minor_ && try_both(ellipse_, *major_, *minor_, places_.reach())) {
            marks_.push_back(major_->target);
            marks_.push_back(minor_->target);
            return;
        }
        const bool is_major = major_ && (!minor_ || change(major_->half, ellipse_.major) <=
                                                        change(minor_->half, ellipse_.minor));
        if (is_major)
            take(*major_, ellipse_.major, ellipse_.minor);
        else if (minor_)
            take(*minor_, ellipse_.minor, ellipse_.major);
        else {
            to_steps(ellipse_.major, along_);
            to_steps(ellipse_.minor, turned_a_quarter(along_));
        }
    }

private:
    void add(const SnapTarget& target)
    {
        const Vec2 off = target.at - ellipse_.centre;
        const double x = dot(off, along_);
        const double y = dot(off, turned_a_quarter(along_));
        const double u = std::abs(x) / ellipse_.major;
        const double v = std::abs(y) / ellipse_.minor;
        if (u >= v)
            offer(major_,
                  {
                      std::abs(x) / std::sqrt(1 - v * v), target, {x, y}
            },
                  ellipse_.major, places_.reach());
        else
            offer(minor_,
                  {
                      std::abs(y) / std::sqrt(1 - u * u), target, {y, x}
            },
                  ellipse_.minor, places_.reach());
    }

    // The other half axis is free only where the target is at the end of this one.
    void take(const Axis& axis, double& half, double& other)
    {
        marks_.push_back(axis.target);
        half = axis.half;
        if (std::abs(axis.at.y) <= kSame * other)
            to_steps(other, &other == &ellipse_.minor ? turned_a_quarter(along_) : along_);
    }

    void to_steps(double& half, Vec2 direction)
    {
        const std::optional<double> whole = places_.whole_steps(half);
        if (!whole || *whole < kLeastLeft * half)
            return;
        half = *whole;
        marks_.push_back({ellipse_.centre + half * direction, SnapKind::grid});
    }

    Ellipse& ellipse_;
    const SnapPlaces& places_;
    std::vector<SnapTarget>& marks_;
    Vec2 along_;
    std::optional<Axis> major_;
    std::optional<Axis> minor_;
};

void snap_centre(Ellipse& ellipse, const SnapPlaces& places, std::vector<SnapTarget>& marks)
{
    if (const std::optional<SnapTarget> target = places.near(ellipse.centre)) {
        ellipse.centre = target->at;
        marks.push_back(*target);
    }
}

bool has_size(const Round& round) { return round.ellipse.major > 0 && round.ellipse.minor > 0; }

} // namespace

Round in_order(Round round)
{
    Ellipse& ellipse = round.ellipse;
    if (ellipse.minor > ellipse.major) {
        std::swap(ellipse.minor, ellipse.major);
        ellipse.rotation += kPi / 2;
        round.start -= kPi / 2;
    }
    const double half_turns = std::floor(ellipse.rotation / kPi);
    ellipse.rotation = std::clamp(ellipse.rotation - half_turns * kPi, 0.0, std::nextafter(kPi, 0.0));
    round.start += half_turns * kPi;
    return round;
}

std::optional<SnapTarget> radius_target(const Round& circle, const SnapPlaces& places)
{
    const double radius = circle.ellipse.major;
    std::optional<SnapTarget> best;
    double least = places.reach();
    for (const SnapTarget& target : places.near_outline(circle.ellipse)) {
        const double to = distance(circle.ellipse.centre, target.at);
        const bool is_sooner = best && change(to, radius) == least && target.kind < best->kind;
        if (to < kLeastLeft * radius || !is_on_arc(circle, target.at))
            continue;
        if (change(to, radius) < least || is_sooner || (!best && change(to, radius) == least)) {
            best = target;
            least = change(to, radius);
        }
    }
    if (best)
        return best;
    const std::optional<double> whole = places.whole_steps(radius);
    if (!whole || *whole < kLeastLeft * radius)
        return std::nullopt;
    return SnapTarget{circle.ellipse.centre +
                          *whole * unit_at(circle.ellipse.rotation + circle.start + circle.sweep / 2),
                      SnapKind::grid};
}

Snapped snap_circle(const Round& circle, const SnapPlaces& places)
{
    if (!has_size(circle))
        return {circle, {}};
    Round round = circle;
    Snapped snapped;
    snap_centre(round.ellipse, places, snapped.marks);
    if (const std::optional<SnapTarget> target = radius_target(round, places)) {
        round.ellipse.major = round.ellipse.minor = distance(round.ellipse.centre, target->at);
        snapped.marks.push_back(*target);
    }
    snapped.shape = round;
    return snapped;
}

Snapped snap_ellipse(const Round& ellipse, const SnapPlaces& places)
{
    if (!has_size(ellipse))
        return {ellipse, {}};
    Round round = ellipse;
    Snapped snapped;
    snap_centre(round.ellipse, places, snapped.marks);
    const std::optional<double> step = places.step_near(round.ellipse.rotation);
    const bool is_long = round.ellipse.major > (1 + kSame) * round.ellipse.minor;
    if (step && is_long)
        round.ellipse.rotation = *step;
    HalfAxes(round.ellipse, places, snapped.marks).snap();
    if (step && is_long)
        snapped.marks.push_back({round.ellipse.at(0), SnapKind::angle});
    snapped.shape = in_order(round);
    return snapped;
}

} // namespace vnt::sketch
