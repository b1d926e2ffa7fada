#include "sketch/core/snap_straight.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <tuple>

namespace vnt::sketch {
namespace {

// Of the size; sides, angles and directions that differ by less are the same.
constexpr double kSame = 1e-6;
// More corners than these are no figure that one aims by its corners.
constexpr std::size_t kMostCorners = 32;
// Each corner and each two of them are a way to go, and of each way all corners are looked up: up to eight corners
// may all aim, of 32 the four nearest to their places.
constexpr std::size_t kMostLookups = 320;

std::size_t most_aimed(std::size_t corners)
{
    std::size_t aimed = 2;
    while ((aimed + 1) * (aimed + 2) / 2 * corners <= kMostLookups)
        ++aimed;
    return aimed;
}

Vec2 middle_of(const Path& corners)
{
    Vec2 sum;
    for (const Vec2 corner : corners)
        sum = sum + corner;
    return (1 / static_cast<double>(corners.size())) * sum;
}

Path moved(Path corners, Vec2 by)
{
    for (Vec2& corner : corners)
        corner = corner + by;
    return corners;
}

Path turned(Path corners, Vec2 about, double angle)
{
    const Vec2 along = unit_at(angle);
    for (Vec2& corner : corners) {
        const Vec2 off = corner - about;
        corner = about + off.x * along + off.y * turned_a_quarter(along);
    }
    return corners;
}

// Moved, turned and scaled so that corners i and k lie at these places.
Path through(Path corners, std::size_t i, Vec2 at_i, std::size_t k, Vec2 at_k)
{
    const Vec2 from = corners[k] - corners[i];
    const Vec2 to = at_k - at_i;
    const double square = dot(from, from);
    const Vec2 ratio{dot(from, to) / square, cross(from, to) / square};
    const Vec2 origin = corners[i];
    for (Vec2& corner : corners) {
        const Vec2 off = corner - origin;
        corner = at_i + ratio.x * off + ratio.y * turned_a_quarter(off);
    }
    return corners;
}

// The ways in which a figure could go to the places near its corners, and the best of them.
class Ways {
public:
    Ways(const Straight& figure, const SnapPlaces& places)
        : before_(figure.corners), places_(places), angle_(angle_of(before_[1] - before_[0]))
    {
        for (const Vec2 corner : before_)
            targets_.push_back(places.near(corner));
        const std::optional<double> step = places.step_near(angle_);
        turn_ = step ? *step - angle_ : 0;
        stepped_ = step.has_value();
        offer(turned(before_, middle_of(before_), turn_));
        if (const std::optional<SnapTarget> target = places.near(middle_of(before_)))
            offer_moved(middle_of(before_), target->at);
        aim();
        for (const std::size_t i : aimed_)
            offer_moved(before_[i], targets_[i]->at);
    }

    // Two corners at their places, the form as it was.
    void add_same_form()
    {
        for_pairs([this](std::size_t i, std::size_t k) {
            offer_near(through(before_, i, targets_[i]->at, k, targets_[k]->at));
        });
    }

    // Two corners of four at their places, the angles right.
    void add_right_angles()
    {
        for_pairs([this](std::size_t i, std::size_t k) {
            if (k == i + 2)
                add_on_diagonal(i);
            else
                add_on_side(k == i + 1 ? i : k);
        });
    }

    Snapped best() const
    {
        Snapped snapped;
        for (const Vec2 corner : best_.corners)
            if (const std::optional<SnapTarget> place = places_.at(corner))
                snapped.marks.push_back(*place);
        const std::optional<SnapTarget> centre = places_.at(middle_of(best_.corners));
        if (snapped.marks.empty() && centre)
            snapped.marks.push_back(*centre);
        const bool is_held = best_.on_places > 2; // its angles are those of the places
        if (stepped_ && !best_.is_turned && !is_held)
            snapped.marks.push_back({middle(best_.corners[0], best_.corners[1]), SnapKind::angle});
        snapped.shape = Straight{best_.corners, true};
        return snapped;
    }

private:
    struct Way {
        Path corners;
        int on_places = -1;
        bool is_centred = false;
        bool is_turned = false; // otherwise than to its step, or where it was
        double farthest = 0;    // of what its corners moved

        // More corners on places, then the centre, then the old direction, then the shorter way.
        auto rank() const { return std::tuple(-on_places, !is_centred, is_turned, farthest); }
    };

    template <class Function>
    void for_pairs(const Function& function)
    {
        for (std::size_t a = 0; a < aimed_.size(); ++a)
            for (std::size_t b = a + 1; b < aimed_.size(); ++b)
                if (targets_[aimed_[a]]->at != targets_[aimed_[b]]->at)
                    function(aimed_[a], aimed_[b]);
    }

    void aim()
    {
        const auto off = [this](std::size_t i) { return distance(before_[i], targets_[i]->at); };
        for (std::size_t i = 0; i < before_.size(); ++i)
            if (targets_[i])
                aimed_.push_back(i);
        const std::size_t most = most_aimed(before_.size());
        if (aimed_.size() <= most)
            return;
        std::nth_element(aimed_.begin(), aimed_.begin() + static_cast<std::ptrdiff_t>(most), aimed_.end(),
                         [&](std::size_t a, std::size_t b) { return off(a) < off(b); });
        aimed_.resize(most);
        std::sort(aimed_.begin(), aimed_.end());
    }

    void offer_moved(Vec2 from, Vec2 to) { offer(turned(moved(before_, to - from), to, turn_)); }

    void offer_near(const Path& corners)
    {
        if (farthest_of(corners) <= 2 * places_.reach())
            offer(corners);
    }

    double farthest_of(const Path& corners) const
    {
        double farthest = 0;
        for (std::size_t i = 0; i < corners.size(); ++i)
            farthest = std::max(farthest, distance(corners[i], before_[i]));
        return farthest;
    }

    void offer(const Path& corners)
    {
        // The first one always is: it only turns the figure about its middle.
        if (!best_.corners.empty() && !is_like(corners, before_, true))
            return;
        Way way{corners};
        way.on_places = static_cast<int>(std::count_if(
            corners.begin(), corners.end(), [this](Vec2 corner) { return places_.at(corner).has_value(); }));
        way.is_centred = places_.at(middle_of(corners)).has_value();
        const double angle = angle_of(corners[1] - corners[0]);
        way.is_turned = std::abs(std::remainder(angle - angle_ - turn_, 2 * kPi)) > kSame;
        way.farthest = farthest_of(corners);
        if (best_.corners.empty() || way.rank() < best_.rank())
            best_ = way;
    }

    // Corners i and i + 2 at their places: the sides' directions say the rest.
    void add_on_diagonal(std::size_t i)
    {
        const Vec2 from = targets_[i]->at;
        const Vec2 to = targets_[i + 2]->at;
        const Vec2 along = unit_at(angle_of(before_[i + 1] - before_[i]) + turn_);
        Path corners(4);
        corners[i] = from;
        corners[i + 1] = from + dot(to - from, along) * along;
        corners[i + 2] = to;
        corners[(i + 3) % 4] = to - dot(to - from, along) * along;
        offer(corners);
    }

    // Corners i and i + 1 at their places: the other side as long as it was, or up to another corner's place.
    void add_on_side(std::size_t i)
    {
        const std::size_t next = (i + 1) % 4;
        const std::size_t third = (i + 2) % 4;
        const std::size_t last = (i + 3) % 4;
        const Vec2 from = targets_[i]->at;
        const Vec2 to = targets_[next]->at;
        const Vec2 side = before_[third] - before_[next];
        Vec2 across = turned_a_quarter(unit(to - from));
        if (dot(across, side) < 0)
            across = -across;
        const auto offer_deep = [&](double depth) {
            Path corners(4);
            corners[i] = from;
            corners[next] = to;
            corners[third] = to + depth * across;
            corners[last] = from + depth * across;
            offer_near(corners);
        };
        offer_deep(length(side));
        for (const std::size_t other : {third, last})
            if (targets_[other])
                offer_deep(dot(targets_[other]->at - from, across));
    }

    Path before_;
    const SnapPlaces& places_;
    std::vector<std::optional<SnapTarget>> targets_; // for each corner
    std::vector<std::size_t> aimed_;                 // corners that have one, rising
    double angle_;                                   // of the first side
    double turn_ = 0;                                // to its step
    bool stepped_ = false;
    Way best_;
};

} // namespace

bool is_regular(const Straight& figure)
{
    const Path& corners = figure.corners;
    if (!figure.closed || corners.size() < 3)
        return false;
    const Vec2 centre = middle_of(corners);
    const Vec2 first = corners[0] - centre;
    const double turn = turn_between(first, corners[1] - centre);
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Vec2 here = corners[i] - centre;
        const Vec2 next = corners[(i + 1) % corners.size()] - centre;
        if (!(std::abs(length(here) - length(first)) <= kSame * length(first)) ||
            !(std::abs(turn_between(here, next) - turn) <= kSame))
            return false;
    }
    return length(first) > 0;
}

Snapped snap_rectangle(const Straight& rectangle, const SnapPlaces& places)
{
    if (rectangle.corners.size() != 4)
        return snap_corners(rectangle, places);
    Ways ways(rectangle, places);
    ways.add_right_angles();
    return ways.best();
}

Snapped snap_form(const Straight& figure, const SnapPlaces& places)
{
    if (figure.corners.size() < 3 || figure.corners.size() > kMostCorners)
        return snap_corners(figure, places);
    Ways ways(figure, places);
    ways.add_same_form();
    return ways.best();
}

} // namespace vnt::sketch
