#include "sketch/core/outline.h"
#include "sketch/core/snap_straight.h"

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace vnt::sketch {
namespace {

// Of what it was.
constexpr double kLeastLeft = 0.25;
// Of the square of its extent; a figure of less area has none to lose.
constexpr double kNoArea = 1e-3;

// Sides of longer chains are not turned: it is not what one sees there, and would take its time.
constexpr std::size_t kMostTurned = 64;

using Targets = std::vector<std::optional<SnapTarget>>; // for each corner

Path placed(const Path& corners, const Targets& targets)
{
    Path moved = corners;
    for (std::size_t i = 0; i < corners.size(); ++i)
        if (targets[i])
            moved[i] = targets[i]->at;
    return moved;
}

// Of two corners with the same target the nearer one keeps it.
void keep_apart(const Straight& straight, Targets& targets)
{
    const Path& corners = straight.corners;
    for (std::size_t i = 0; i < corners.size(); ++i)
        for (std::size_t k = i + 1; k < corners.size(); ++k) {
            const bool may_close = !straight.closed && i == 0 && k + 1 == corners.size() && k >= 3;
            if (may_close || !targets[i] || !targets[k] || targets[i]->at != targets[k]->at)
                continue;
            const bool first_is_nearer =
                distance(corners[i], targets[i]->at) <= distance(corners[k], targets[k]->at);
            targets[first_is_nearer ? k : i].reset();
        }
}

// The corner that goes furthest stays where it is, until what is left is the figure that was.
void keep_likeness(const Straight& straight, Targets& targets)
{
    const Path& corners = straight.corners;
    while (!is_like(placed(corners, targets), corners, straight.closed)) {
        std::size_t furthest = corners.size();
        double most = -1;
        for (std::size_t i = 0; i < corners.size(); ++i)
            if (targets[i] && distance(corners[i], targets[i]->at) > most) {
                most = distance(corners[i], targets[i]->at);
                furthest = i;
            }
        if (furthest == corners.size())
            return; // it was none before
        targets[furthest].reset();
    }
}

struct Turn {
    std::size_t side; // from this corner to the next
    Vec2 across;      // to the direction that it is to have
    double by;        // radians
};

// The sides that are near to a step of angles, and have an end that no place holds.
std::vector<Turn> turns_of(const Path& corners, const Targets& targets, bool closed, const SnapPlaces& places)
{
    std::vector<Turn> turns;
    const std::size_t sides = closed && corners.size() > 2 ? corners.size() : corners.size() - 1;
    for (std::size_t i = 0; i < sides; ++i) {
        const std::size_t next = (i + 1) % corners.size();
        const double angle = angle_of(corners[next] - corners[i]);
        const std::optional<double> step = places.step_near(angle);
        if (step && corners[i] != corners[next] && !(targets[i] && targets[next]))
            turns.push_back({i, turned_a_quarter(unit_at(*step)), std::abs(*step - angle)});
    }
    return turns;
}

// The corners moved, as little as can be, so that each side has its direction; those with targets stay.
Path turned(const Path& corners, const Targets& targets, const std::vector<Turn>& turns)
{
    const auto size = static_cast<Eigen::Index>(2 * corners.size());
    Eigen::MatrixXd across = Eigen::MatrixXd::Zero(static_cast<Eigen::Index>(turns.size()), size);
    Eigen::VectorXd off(static_cast<Eigen::Index>(turns.size()));
    for (std::size_t row = 0; row < turns.size(); ++row) {
        const Turn& turn = turns[row];
        const std::size_t next = (turn.side + 1) % corners.size();
        const auto r = static_cast<Eigen::Index>(row);
        off[r] = -dot(turn.across, corners[next] - corners[turn.side]);
        for (const auto& [corner, sign] : {std::pair(turn.side, -1.0), std::pair(next, 1.0)}) {
            if (targets[corner])
                continue;
            across(r, static_cast<Eigen::Index>(2 * corner)) = sign * turn.across.x;
            across(r, static_cast<Eigen::Index>(2 * corner + 1)) = sign * turn.across.y;
        }
    }
    const Eigen::VectorXd moves = across.completeOrthogonalDecomposition().solve(off);
    Path moved = corners;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const auto at = static_cast<Eigen::Index>(2 * i);
        if (!targets[i])
            moved[i] = moved[i] + Vec2{moves[at], moves[at + 1]};
    }
    return moved;
}

// Whether the sides have their directions, and no corner went further than its sides would swing it.
bool is_turned(const Path& moved, const Path& corners, const std::vector<Turn>& turns, double angle_reach)
{
    double longest = 0;
    for (const Turn& turn : turns)
        longest = std::max(longest, distance(corners[turn.side], corners[(turn.side + 1) % corners.size()]));
    for (const Turn& turn : turns) {
        const Vec2 side = moved[(turn.side + 1) % moved.size()] - moved[turn.side];
        if (!(std::abs(dot(turn.across, side)) <= 1e-9 * longest))
            return false;
    }
    for (std::size_t i = 0; i < moved.size(); ++i)
        if (!(distance(moved[i], corners[i]) <= 2 * angle_reach * longest))
            return false;
    return true;
}

// Turns what can be turned together: where the sides want what cannot be, the one that is furthest off gives in.
void turn_sides(const Straight& before, Path& corners, const Targets& targets, const SnapPlaces& places,
                std::vector<SnapTarget>& marks)
{
    std::vector<Turn> turns = turns_of(corners, targets, before.closed, places);
    while (!turns.empty()) {
        const Path moved = turned(corners, targets, turns);
        if (is_turned(moved, corners, turns, places.angle_reach()) &&
            is_like(moved, corners, before.closed)) {
            corners = moved;
            for (const Turn& turn : turns)
                marks.push_back(
                    {middle(moved[turn.side], moved[(turn.side + 1) % moved.size()]), SnapKind::angle});
            return;
        }
        turns.erase(std::max_element(turns.begin(), turns.end(),
                                     [](const Turn& a, const Turn& b) { return a.by < b.by; }));
    }
}

} // namespace

bool is_like(const Path& corners, const Path& before, bool closed)
{
    const std::size_t sides = closed ? corners.size() : corners.size() - 1;
    for (std::size_t i = 0; i < sides; ++i) {
        const std::size_t next = (i + 1) % corners.size();
        const Vec2 was = before[next] - before[i];
        if (!(dot(corners[next] - corners[i], was) >= kLeastLeft * dot(was, was)))
            return false;
    }
    const double area = signed_area(before);
    const double size = box_of(before).diagonal();
    if (!closed || !(std::abs(area) > kNoArea * size * size))
        return true;
    return signed_area(corners) / area >= kLeastLeft;
}

Snapped snap_corners(const Straight& straight, const SnapPlaces& places)
{
    if (straight.corners.size() < 2)
        return {straight, {}};
    Targets targets;
    for (const Vec2 corner : straight.corners)
        targets.push_back(places.near(corner));
    keep_apart(straight, targets);
    keep_likeness(straight, targets);

    Straight moved{placed(straight.corners, targets), straight.closed};
    Snapped snapped;
    for (const std::optional<SnapTarget>& target : targets)
        if (target)
            snapped.marks.push_back(*target);
    if (straight.corners.size() <= kMostTurned)
        turn_sides(straight, moved.corners, targets, places, snapped.marks);
    snapped.shape = std::move(moved);
    return snapped;
}

} // namespace vnt::sketch
