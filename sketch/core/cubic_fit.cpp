#include "sketch/core/cubic_fit.h"

#include "sketch/core/curve_fit.h"

#include <algorithm>
#include <cstring>

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

// A stretch of a cubic is looked at in halves of halves, up to so many times. Its hull's points are then
// nearer to it by a factor of 4 each time; what still lies across the limit counts as outside.
constexpr int kHalvings = 6;

// Two numbers at once, of two points next to each other. Each operation gives the bits that it gives one by
// one: the compiler's vectors have no arithmetic of their own.
using Two = double __attribute__((vector_size(16)));

Two two_of(const double* numbers)
{
    Two two;
    std::memcpy(&two, numbers, sizeof two);
    return two;
}

void put(const Two& two, double* numbers) { std::memcpy(numbers, &two, sizeof two); }

double both(const Two& two) { return two[0] + two[1]; }

// Places or directions.
struct TwoPlaces {
    Two x, y;
};

TwoPlaces two_from(Vec2 start, const Vec2* points)
{
    return {
        Two{points[0].x, points[1].x}
        - start.x, Two{points[0].y, points[1].y}
        - start.y
    };
}

// A place that moves with a parameter t: ((a t + b) t + c) t, and how it moves.
struct Polynomial {
    Vec2 a, b, c;

    TwoPlaces at(const Two& t) const
    {
        return {((a.x * t + b.x) * t + c.x) * t, ((a.y * t + b.y) * t + c.y) * t};
    }
    TwoPlaces first_derivative(const Two& t) const
    {
        return {(3 * a.x * t + 2 * b.x) * t + c.x, (3 * a.y * t + 2 * b.y) * t + c.y};
    }
    TwoPlaces second_derivative(const Two& t) const { return {6 * a.x * t + 2 * b.x, 6 * a.y * t + 2 * b.y}; }
};

Two dot(const TwoPlaces& a, const TwoPlaces& b) { return a.x * b.x + a.y * b.y; }

// The sums of every other point, and of the others.
struct TwoSums {
    Two w11{}, w12{}, w22{}, x1{}, y1{}, x2{}, y2{};

    // off: from the run's start.
    void add(const Two& t, const TwoPlaces& off, Vec2 chord)
    {
        const Two s = 1.0 - t;
        const Two w = 3.0 * s * t;
        const Two w1 = w * s;
        const Two w2 = w * t;
        const Two x = off.x - t * chord.x;
        const Two y = off.y - t * chord.y;
        w11 += w1 * w1;
        w12 += w1 * w2;
        w22 += w2 * w2;
        x1 += w1 * x;
        y1 += w1 * y;
        x2 += w2 * x;
        y2 += w2 * y;
    }

    ControlSums all() const
    {
        return {
            both(w11), both(w12), both(w22), {both(x1), both(y1)},
               {both(x2), both(y2)}
        };
    }
};

// The run's inner points are taken two at a time, from here: its start says nothing, and makes them even.
std::size_t first_of_pairs(const Run& run) { return run.last % 2 == 0 ? 0 : 1; }

// A control that only its arm's length moves: from the foot along the direction, or nowhere along none.
struct Arm {
    Vec2 foot;
    Vec2 direction;

    Vec2 end(double size) const { return foot + size * direction; }
};

// The chord's thirds, and the sums with the weight that holds the controls there.
struct Sums : ControlSums {
    Vec2 third, other;

    Sums(const Run& run, const ControlSums& sums)
        : ControlSums(sums), third(run.start() + (1.0 / 3) * run.chord()),
          other(run.start() + (2.0 / 3) * run.chord())
    {
        w11 += kHold;
        w22 += kHold;
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

    Vec2 third_of_slope(double t) const
    {
        const double s = 1 - t;
        return (s * s) * a + (2 * s * t) * b + (t * t) * c;
    }
};

// The cubic from its start.
Polynomial polynomial_of(const Cubic& cubic)
{
    const Legs legs(cubic);
    return {legs.a - 2.0 * legs.b + legs.c, 3.0 * (legs.b - legs.a), 3.0 * legs.a};
}

// From one parameter to another, as a cubic of its own.
Cubic stretch_of(const Cubic& cubic, const Legs& legs, double from, double to)
{
    const Vec2 start = point_of_cubic(cubic.data(), from);
    const Vec2 end = point_of_cubic(cubic.data(), to);
    return {start, start + (to - from) * legs.third_of_slope(from),
            end - (to - from) * legs.third_of_slope(to), end};
}

// A straight piece with all that is not further from it than a distance.
struct Lane {
    Vec2 start, end;
    double square; // of the distance

    bool has(Vec2 p) const
    {
        const Vec2 along = end - start;
        const Vec2 off = p - start;
        const double share = dot(off, along);
        const double whole = dot(along, along);
        if (share <= 0)
            return dot(off, off) <= square;
        if (share >= whole)
            return dot(p - end, p - end) <= square;
        const double across = cross(along, off);
        return across * across <= square * whole;
    }

    // Of a cubic whose ends are in the lane. It has no bays: a cubic is in it when its hull's points are.
    bool has_between(const Cubic& cubic, int halvings) const
    {
        if (has(cubic[1]) && has(cubic[2]))
            return true;
        const Vec2 leg = middle(cubic[1], cubic[2]);
        const Vec2 first = middle(cubic[0], cubic[1]);
        const Vec2 last = middle(cubic[2], cubic[3]);
        const Vec2 before = middle(first, leg);
        const Vec2 behind = middle(leg, last);
        const Vec2 at = middle(before, behind);
        return halvings > 0 && has(at) && has_between({cubic[0], first, before, at}, halvings - 1) &&
               has_between({at, behind, last, cubic[3]}, halvings - 1);
    }
};

} // namespace

ControlSums control_sums(const Run& run, const std::vector<double>& parameters)
{
    const Vec2 chord = run.chord();
    TwoSums sums;
    for (std::size_t i = first_of_pairs(run); i < run.last; i += 2)
        sums.add(two_of(&parameters[i]), two_from(run.start(), &run.points[i]), chord);
    return sums.all();
}

Cubic nearest_cubic(const Run& run, const ControlSums& said, const Headings& headings)
{
    const Sums sums(run, said);
    const Vec2 start = run.start();
    const Vec2 end = run.points[run.last];
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

void take_step(const Run& run, const Cubic& cubic, const std::vector<double>& parameters, Step& step)
{
    step.squares.resize(parameters.size());
    step.parameters.resize(parameters.size());
    const Vec2 start = run.start();
    const Vec2 chord = run.chord();
    const Polynomial place = polynomial_of(cubic);
    const Two zero{0, 0};
    const Two one{1, 1};
    Two largest{};
    Two all{};
    TwoSums sums;
    for (std::size_t i = first_of_pairs(run); i < run.last; i += 2) {
        const Two t = two_of(&parameters[i]);
        const TwoPlaces point = two_from(start, &run.points[i]);
        const TwoPlaces at = place.at(t);
        const TwoPlaces off{at.x - point.x, at.y - point.y};
        const Two square = dot(off, off);
        put(square, &step.squares[i]);
        largest = square > largest ? square : largest;
        all += square;
        const TwoPlaces first = place.first_derivative(t);
        const Two slope = dot(first, first) + dot(off, place.second_derivative(t));
        Two next = slope > zero ? t - dot(off, first) / slope : t;
        next = next > zero ? next : zero;
        next = next < one ? next : one;
        put(next, &step.parameters[i]);
        sums.add(next, point, chord);
    }
    step.squares.front() = step.squares.back() = 0;
    step.parameters.front() = 0;
    step.parameters.back() = 1;
    step.largest_square = std::max(largest[0], largest[1]);
    step.is_number = both(all) >= 0; // a sum of squares is, or NaN
    step.sums = sums.all();
}

bool is_along_pieces(const Run& run, const Cubic& cubic, const std::vector<double>& parameters,
                     const std::vector<double>& squares, double tolerance)
{
    const Legs legs(cubic);
    // Off its own chord a stretch of the cubic is by its parameter's step squared times this, at most.
    const double bend = 0.75 * std::max(length(legs.b - legs.a), length(legs.c - legs.b));
    for (std::size_t i = 1; i <= run.last; ++i) {
        const double step = parameters[i] - parameters[i - 1];
        const double left = tolerance - step * step * bend;
        if (left >= 0 && std::max(squares[i - 1], squares[i]) <= left * left)
            continue;
        const Lane lane{run.points[i - 1], run.points[i], tolerance * tolerance};
        const Cubic stretch = stretch_of(cubic, legs, parameters[i - 1], parameters[i]);
        if (!lane.has(stretch[0]) || !lane.has(stretch[3]) || !lane.has_between(stretch, kHalvings))
            return false;
    }
    return true;
}

} // namespace vnt::sketch
