#include "sketch/core/cubic_fit.h"

#include "sketch/core/curve_fit.h"

#include <algorithm>

namespace vnt::sketch {
namespace {

// A weight beside that of one point, which holds the controls at the chord's thirds where the points say
// nothing.
constexpr double kHold = 1e-4;

// Of the chord: a shorter arm has no direction to keep.
constexpr double kShortestArm = 0.01;

// Tolerances; an arm of this length takes a segment off its chord by 4/9 as much, and two by less than a
// tolerance.
constexpr double kPieceArm = 1.0;

// The four weights of a cubic's points at t.
std::array<double, 4> weights_at(double t)
{
    const double s = 1 - t;
    return {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
}

// A control that only its arm's length moves: from the foot along the direction, or nowhere along none.
struct Arm {
    Vec2 foot;
    Vec2 direction;

    Vec2 end(double size) const { return foot + size * direction; }
};

// What the points say of the controls' distances from the chord's thirds: the sums of least squares.
struct Sums {
    Vec2 third, other; // the chord's thirds
    double w11 = kHold, w12 = 0, w22 = kHold;
    Vec2 r1, r2;

    Sums(const Vec2* points, const std::vector<double>& parameters)
    {
        const std::size_t last = parameters.size() - 1;
        const Vec2 start = points[0];
        const Vec2 end = points[last];
        third = start + (1.0 / 3) * (end - start);
        other = start + (2.0 / 3) * (end - start);
        for (std::size_t i = 1; i < last; ++i) {
            const auto w = weights_at(parameters[i]);
            const Vec2 off = points[i] - (w[0] * start + w[1] * third + w[2] * other + w[3] * end);
            w11 += w[1] * w[1];
            w12 += w[1] * w[2];
            w22 += w[2] * w[2];
            r1 = r1 + w[1] * off;
            r2 = r2 + w[2] * off;
        }
    }
};

// The arm's length when the other control is free: that one's equations are solved for it first.
double arm_beside_free(Vec2 direction, double w_arm, double w12, double w_free, Vec2 rest_arm, Vec2 rest_free)
{
    return dot(direction, rest_arm - (w12 / w_free) * rest_free) / (w_arm - w12 * w12 / w_free);
}

// Both controls' lengths of arm; a control without one is free, and its length is 0. Sets the controls.
struct Arms {
    double first = 0;
    double second = 0;
};
Arms place_controls(const Sums& sums, const std::optional<Arm>& first, const std::optional<Arm>& second,
                    Cubic& cubic)
{
    const Vec2 c1 = first ? first->foot - sums.third : Vec2{};
    const Vec2 c2 = second ? second->foot - sums.other : Vec2{};
    const Vec2 rest1 = sums.r1 - sums.w11 * c1 - sums.w12 * c2;
    const Vec2 rest2 = sums.r2 - sums.w12 * c1 - sums.w22 * c2;
    Arms arms;
    if (first && second) {
        const double cosine = dot(first->direction, second->direction);
        const double b1 = dot(first->direction, rest1);
        const double b2 = dot(second->direction, rest2);
        const double determinant = sums.w11 * sums.w22 - sums.w12 * sums.w12 * cosine * cosine;
        arms.first = (sums.w22 * b1 - sums.w12 * cosine * b2) / determinant;
        arms.second = (sums.w11 * b2 - sums.w12 * cosine * b1) / determinant;
    } else if (first) {
        arms.first = arm_beside_free(first->direction, sums.w11, sums.w12, sums.w22, rest1, rest2);
        cubic[2] = sums.other + (1 / sums.w22) * (rest2 - (sums.w12 * arms.first) * first->direction);
    } else if (second) {
        arms.second = arm_beside_free(second->direction, sums.w22, sums.w12, sums.w11, rest2, rest1);
        cubic[1] = sums.third + (1 / sums.w11) * (rest1 - (sums.w12 * arms.second) * second->direction);
    }
    if (first)
        cubic[1] = first->end(arms.first);
    if (second)
        cubic[2] = second->end(arms.second);
    return arms;
}

// Both controls free: two equations for each of x and y.
Cubic nearest_free(const Sums& sums, Vec2 start, Vec2 end)
{
    const double scale = 1 / (sums.w11 * sums.w22 - sums.w12 * sums.w12);
    return {start, sums.third + scale * (sums.w22 * sums.r1 - sums.w12 * sums.r2),
            sums.other + scale * (sums.w11 * sums.r2 - sums.w12 * sums.r1), end};
}

// A cubic's derivative is s² a + 2 s t b + t² c, times 3.
struct Legs {
    Vec2 a, b, c;

    explicit Legs(const Cubic& cubic) : a(cubic[1] - cubic[0]), b(cubic[2] - cubic[1]), c(cubic[3] - cubic[2])
    {
    }
};

// Where between from and to the cubic runs neither towards nor away from the direction: up to two places.
std::array<double, 2> turning_places(const Legs& legs, Vec2 direction, double from, double to)
{
    const double a = dot(legs.a, direction);
    const double b = dot(legs.b, direction);
    const double c = dot(legs.c, direction);
    // a + 2 (b - a) t + (a - 2 b + c) t², without loss of digits.
    const double square = a - 2 * b + c;
    const double half = b - a;
    const double root = std::sqrt(std::max(0.0, half * half - square * a));
    const double q = -(half + (half < 0 ? -root : root));
    const auto within = [&](double t) { return t > from && t < to ? t : from; }; // from for NaN
    return {within(q / square), within(a / q)};
}

} // namespace

Cubic nearest_cubic(const Vec2* points, const std::vector<double>& parameters, const Headings& headings)
{
    const Sums sums(points, parameters);
    const Vec2 start = points[0];
    const Vec2 end = points[parameters.size() - 1];
    if (!headings.at_start && !headings.at_end)
        return nearest_free(sums, start, end);
    const double shortest = kShortestArm * distance(start, end);
    std::optional<Arm> first, second;
    if (headings.at_start)
        first = Arm{start, *headings.at_start};
    if (headings.at_end)
        second = Arm{end, -*headings.at_end};
    Cubic cubic{start, start, end, end};
    const Arms arms = place_controls(sums, first, second, cubic);
    const bool first_is_short = first && !(arms.first >= shortest);
    const bool second_is_short = second && !(arms.second >= shortest);
    if (first_is_short)
        first = Arm{first->end(shortest), {}};
    if (second_is_short)
        second = Arm{second->end(shortest), {}};
    if (first_is_short || second_is_short)
        place_controls(sums, first, second, cubic);
    return cubic;
}

Cubic cubic_along_piece(Vec2 start, Vec2 end, const Headings& headings, double tolerance)
{
    const double arm = std::min(distance(start, end) / 3, kPieceArm * tolerance);
    return {start, headings.at_start ? start + arm * *headings.at_start : start + (1.0 / 3) * (end - start),
            headings.at_end ? end - arm * *headings.at_end : start + (2.0 / 3) * (end - start), end};
}

void step_parameters(const Cubic& cubic, const Vec2* points, std::vector<double>& parameters)
{
    const Legs legs(cubic);
    for (std::size_t i = 1; i + 1 < parameters.size(); ++i) {
        const double t = parameters[i];
        const double s = 1 - t;
        const Vec2 off = point_of_cubic(cubic.data(), t) - points[i];
        const Vec2 first = (3 * s * s) * legs.a + (6 * s * t) * legs.b + (3 * t * t) * legs.c;
        const Vec2 second = (6 * s) * (legs.b - legs.a) + (6 * t) * (legs.c - legs.b);
        const double slope = dot(first, first) + dot(off, second);
        if (slope > 0)
            parameters[i] = std::clamp(t - dot(off, first) / slope, 0.0, 1.0);
    }
}

double distances_at(const Cubic& cubic, const Vec2* points, const std::vector<double>& parameters,
                    std::vector<double>& offs)
{
    offs.assign(parameters.size(), 0);
    double largest = 0;
    for (std::size_t i = 1; i + 1 < parameters.size(); ++i) {
        const Vec2 off = point_of_cubic(cubic.data(), parameters[i]) - points[i];
        offs[i] = std::sqrt(dot(off, off));
        // Not std::max: NaN has to stay.
        if (!(offs[i] <= largest))
            largest = offs[i];
    }
    return largest;
}

bool is_along_pieces(const Cubic& cubic, const Vec2* points, const std::vector<double>& parameters,
                     const std::vector<double>& offs, double tolerance)
{
    const Legs legs(cubic);
    // Off its own chord a stretch of the cubic is by its parameter's step squared times this, at most.
    const double bend = 0.75 * std::max(length(legs.b - legs.a), length(legs.c - legs.b));
    for (std::size_t i = 1; i < parameters.size(); ++i) {
        const auto [from, to] = std::minmax({parameters[i - 1], parameters[i]});
        if (std::max(offs[i - 1], offs[i]) + (to - from) * (to - from) * bend <= tolerance)
            continue;
        // Furthest off it is where it turns back across, or along beyond an end.
        const Vec2 along = points[i] - points[i - 1];
        const auto across = turning_places(legs, turned_a_quarter(along), from, to);
        const auto beyond = turning_places(legs, along, from, to);
        for (const double t : {across[0], across[1], beyond[0], beyond[1]}) {
            const Vec2 place = point_of_cubic(cubic.data(), t);
            if (!(distance_from_piece(place, points[i - 1], points[i]) <= tolerance))
                return false;
        }
    }
    return true;
}

} // namespace vnt::sketch
