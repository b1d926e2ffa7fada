#include "sketch/core/regular_shapes.h"

#include <algorithm>
#include <cstddef>

namespace vnt::sketch {
namespace {

Vec2 side(const Path& corners, std::size_t i) { return corners[(i + 1) % 4] - corners[i % 4]; }

// The middle of the four corners, and the direction of the first side, averaged over all four.
struct Stand {
    Vec2 middle;
    double angle;
    int turn; // 1: the second side lies a quarter turn from x towards y further; -1: the other way
};

Stand stand_of(const Path& corners)
{
    Stand stand{};
    for (const Vec2 corner : corners)
        stand.middle = stand.middle + 0.25 * corner;
    stand.turn = cross(corners[2] - corners[0], corners[3] - corners[1]) >= 0 ? 1 : -1;
    // Each side turned back by its quarters; longer ones say more.
    Vec2 sum;
    for (std::size_t i = 0; i < 4; ++i) {
        Vec2 back = side(corners, i);
        for (std::size_t k = 0; k < i; ++k)
            back = (stand.turn > 0 ? -1.0 : 1.0) * turned_a_quarter(back);
        sum = sum + back;
    }
    stand.angle = angle_of(sum);
    return stand;
}

Stand upright(Stand stand)
{
    const double angle = std::round(stand.angle / (kPi / 2)) * (kPi / 2);
    if (std::abs(stand.angle - angle) < kUpright)
        stand.angle = angle;
    return stand;
}

Straight box_on(const Stand& stand, double width, double height)
{
    const Vec2 along = 0.5 * width * unit_at(stand.angle);
    const Vec2 across = (0.5 * height * stand.turn) * turned_a_quarter(unit_at(stand.angle));
    return {
        {stand.middle - along - across, stand.middle + along - across, stand.middle + along + across,
         stand.middle - along + across},
        true
    };
}

double mean_length(const Path& corners, std::size_t i)
{
    return (length(side(corners, i)) + length(side(corners, i + 2))) / 2;
}

} // namespace

double skew_of(const Path& corners)
{
    const Path regular = box_on(stand_of(corners), mean_length(corners, 0), mean_length(corners, 1)).corners;
    double sum = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const double moved = distance(corners[i], regular[i]);
        sum += moved * moved;
    }
    const double diagonal = std::max(distance(corners[0], corners[2]), distance(corners[1], corners[3]));
    return std::sqrt(sum / 4) / diagonal;
}

double elongation_of(const Path& corners)
{
    const double a = mean_length(corners, 0);
    const double b = mean_length(corners, 1);
    return std::max(a, b) / std::min(a, b);
}

Straight rectangle_of(const Path& corners)
{
    return box_on(upright(stand_of(corners)), mean_length(corners, 0), mean_length(corners, 1));
}

Straight square_of(const Path& corners)
{
    const double size = (mean_length(corners, 0) + mean_length(corners, 1)) / 2;
    return box_on(upright(stand_of(corners)), size, size);
}

double turn_about(Vec2 centre, const Path& path)
{
    double sum = 0;
    for (std::size_t i = 1; i < path.size(); ++i)
        sum += turn_between(path[i - 1] - centre, path[i] - centre);
    return sum;
}

Round whole_round(const Ellipse& ellipse, const Path& path)
{
    const double sweep = turn_about(ellipse.centre, path) < 0 ? -2 * kPi : 2 * kPi;
    return {ellipse, ellipse.parameter_of(path.front()), sweep};
}

Round arc_along(const Ellipse& ellipse, const Path& path)
{
    // In the ellipse's parameters the way is followed step by step, so that it is known which way around it
    // went.
    double sweep = 0;
    double at = ellipse.parameter_of(path.front());
    const double start = at;
    for (const Vec2 p : path) {
        const double next = ellipse.parameter_of(p);
        sweep += std::remainder(next - at, 2 * kPi);
        at = next;
    }
    return {ellipse, start, std::clamp(sweep, -2 * kPi, 2 * kPi)};
}

double length_of(const Round& arc)
{
    constexpr int kChords = 64;
    Path path;
    for (int i = 0; i <= kChords; ++i)
        path.push_back(arc.ellipse.at(arc.start + arc.sweep * i / kChords));
    return path_length(path);
}

Ellipse as_ellipse(const CircleFit& circle) { return {circle.centre, circle.radius, circle.radius, 0}; }

} // namespace vnt::sketch
