#include "Source/geometry/arc_legs.h"

#include "Source/geometry/point_math.h"

#include <atomic>
#include <cmath>
#include <cstring>
#include <limits>

namespace vnt {
namespace {

constexpr double kTurn = 6.283185307179586;
constexpr double kQuarterTurn = 1.5707963267948966;

// Control arm of a quarter leg in radii, 4/3 (√2 - 1).
constexpr double kCircleKappa = 0.5522847498307936;

// An end of a segment whose triangle with the ray has an area below this, in square model units, is on the ray.
constexpr double kAreaOnRay = 1.0;

// For ArcLegs::cut: a leg of which nothing is known but its points.
constexpr double kUnknownPart = -1.0;

// The language lets a compiler assume that a loop ends which does nothing but compute. The bisections may go
// on for ever, on purpose; reading an atomic at each step makes that well defined.
void go_on_for_ever()
{
    static std::atomic<int> step{0};
    static_cast<void>(step.load(std::memory_order_relaxed));
}

// std::floor of what an integer holds: where the processor has no instruction for it, that is a call each time.
std::int64_t floor_of(double value)
{
    const auto towards_zero = static_cast<std::int64_t>(value);
    return towards_zero - (static_cast<double>(towards_zero) > value ? 1 : 0);
}

bool is_turn_number(std::int64_t turn)
{
    return turn >= std::numeric_limits<std::int32_t>::min() &&
           turn <= std::numeric_limits<std::int32_t>::max();
}

inline Leg quarter(int quadrant, double radius_x, double radius_y)
{
    const double x = quadrant == 2 || quadrant == 3 ? -radius_x : radius_x;
    const double y = quadrant == 3 || quadrant == 4 ? -radius_y : radius_y;
    const double zero_x = quadrant == 2 || quadrant == 3 ? -0.0 : 0.0;
    const double zero_y = quadrant == 3 || quadrant == 4 ? -0.0 : 0.0;
    const double arm_x = kCircleKappa * x;
    const double arm_y = kCircleKappa * y;
    if (quadrant == 2 || quadrant == 4)
        return {
            {zero_x, arm_x, x,     x     },
            {y,      y,     arm_y, zero_y}
        };
    return {
        {x,      x,     arm_x, zero_x},
        {zero_y, arm_y, y,     y     }
    };
}

// A de Casteljau triangle of one coordinate.
struct Triangle {
    double level1[3];
    double level2[2];
    double level3;

    Triangle(const double control[4], double t)
    {
        const double s = 1 - t;
        for (int i = 0; i < 3; ++i)
            level1[i] = s * control[i] + t * control[i + 1];
        for (int i = 0; i < 2; ++i)
            level2[i] = s * level1[i] + t * level1[i + 1];
        level3 = s * level2[0] + t * level2[1];
    }

    void keep(double control[4], bool before) const
    {
        if (before) {
            control[1] = level1[0];
            control[2] = level2[0];
            control[3] = level3;
        } else {
            control[0] = level3;
            control[1] = level2[1];
            control[2] = level1[2];
        }
    }
};

// A ray from the origin through (x, y).
struct Ray {
    double x;
    double y;

    // Of the triangle with the origin and that point; positive before the ray.
    double area(double at_x, double at_y) const { return (at_x * y - at_y * x) / 2.0; }
};

// The areas of a leg's points with the ray that cuts it, as a polynomial of the parameter.
struct Areas {
    double control[4];
    double c1, c2, c3;

    Areas(const Leg& leg, const Ray& ray)
    {
        for (int i = 0; i < 4; ++i)
            control[i] = ray.area(leg.x[i], leg.y[i]);
        c1 = 3.0 * (control[1] - control[0]);
        c2 = 3.0 * (control[2] - 2.0 * control[1] + control[0]);
        c3 = control[3] - control[0] + 3.0 * (control[1] - control[2]);
    }

    double at(double t) const { return ((c3 * t + c2) * t + c1) * t + control[0]; }
    double slope_at(double t) const { return (3.0 * c3 * t + 2.0 * c2) * t + c1; }

    // From before the ray to behind it, and never back.
    bool fall() const
    {
        return control[0] > 0.0 && control[3] < 0.0 && control[0] >= control[1] && control[1] >= control[2] &&
               control[2] >= control[3];
    }
};

// About where the area is 0, and how far from there it is still below what is certain.
struct Guess {
    double root;
    double reach;
};

// On a quarter of a circle. Good to 2e-9.
//
// part:   the angle of the ray, as a part of the quarter.
// Source: least squares over the angles of a quarter; slopes from the least speed along it, 1.535 radii.
Guess guess_by_angle(double part, double radius, double certain)
{
    const double w = part - 0.5;
    const double q = w * w;
    const double q2 = q * q;
    const double root = 0.5 + w * (1.022964238924365 - 0.07448463874058718 * q +
                                   (-0.09249965944758957 + 0.09679538549537689 * q +
                                    (-0.012099480604269932 - 0.027665159998890618 * q) * q2) *
                                       q2);
    return {root, certain / (0.5 * 1.535 * radius * radius)};
}

// On a leg of any ellipse, from the share of the way that a straight line between its ends would have gone.
// Good to 2e-8 on a whole leg, to 0.06 on a part of one.
//
// Source: least squares over the angles of a leg. All legs have this in common: they are images of one another,
//         and shares of the way stay what they are.
Guess guess_by_areas(const Areas& areas, double certain)
{
    const double share = areas.control[0] / (areas.control[0] - areas.control[3]);
    const double w = share - 0.5;
    const double q = w * w;
    const double q2 = q * q;
    const double low =
        1.302478153739766 - 1.8903052065702275 * q + (4.468782051387185 - 11.491540549964892 * q) * q2;
    const double high =
        28.32630840149786 - 58.48697452190876 * q + (83.34305964708662 - 57.775029426220705 * q) * q2;
    return {0.5 + w * (low + high * (q2 * q2)), certain / -areas.slope_at(share)};
}

// Numbers from 1 to below 2 as their bits: there 2^-52 of a number is 1 of its bits.
std::int64_t bits_of(double number)
{
    std::int64_t bits;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

double number_of(std::int64_t bits)
{
    double number;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

// Where a bisection of 0 to 1 stands: it tries mid, and its bracket reaches half a width to either side.
struct Step {
    double mid = 0.5;
    double half = 0.5;
};

// The first step of a bisection to try a number from low to high, which lie above 0 and below 1: it tries the
// coarsest binary fraction there is among them. The range may be taken as a little wider than it is.
Step first_step_within(double low, double high)
{
    constexpr std::int64_t kRounding = 1; // of the sums with 1
    const std::int64_t below = bits_of(1.0 + low) - kRounding - 1;
    const std::int64_t highest = bits_of(1.0 + high) + kRounding;
    if (below < bits_of(1.0) || highest >= bits_of(2.0))
        return {};
    // Above the highest bit in which they differ, all numbers of the range are alike.
    const auto differing = static_cast<unsigned long long>(below ^ highest);
    const std::int64_t half = std::int64_t{1} << (63 - __builtin_clzll(differing));
    return {number_of(highest & -half) - 1.0, static_cast<double>(half) * 0x1p-52};
}

// The first step of a cut's bisection whose outcome is not certain beforehand.
//
// The area falls along the leg. Where it is further from 0 than the tolerance and all rounding together, a step
// neither ends the bisection nor goes to the wrong side; and that holds outside a range of parameters as soon as
// it holds at the range's two ends. So all steps before the first within the range are certain.
//
// certain: the tolerance and all rounding, of the polynomial and of the triangle that it stands for.
Step after_certain_steps(const Areas& areas, Guess guess, double certain)
{
    if (!areas.fall())
        return {};
    for (int i = 0; i < 3 && std::abs(areas.at(guess.root)) > certain * 0x1p-6; ++i)
        guess.root -= areas.at(guess.root) / areas.slope_at(guess.root);
    // Wider than it need be, for a root that is a little off and for the bend of the polynomial.
    const double reach = guess.reach * (1.0 + 0x1p-5 + 2.0 * guess.reach);
    const double low = guess.root - reach;
    const double high = guess.root + reach;
    if (low > 0.0 && high < 1.0 && areas.at(low) > certain && areas.at(high) < -certain)
        return first_step_within(low, high);
    return {};
}

// Radii for which nothing in the bounds of cut_by_areas overflows or is lost to underflow.
bool is_ordinary(double radius_x, double radius_y)
{
    return std::abs(radius_x) > 0x1p-60 && std::abs(radius_x) < 0x1p60 && std::abs(radius_y) < 0x1p60;
}

// cut_cubic's bisection to the bit, without the steps that are certain.
//
// Source: with u = 2^-53, X and Y the radii and S = X (X + Y), so that the areas of control points are below
//         S / 2: the area by the triangle is off by at most 5 u S, that of a control point by u S, the
//         coefficients of the polynomial thus by u S, 12 u S, 30 u S and 24 u S, and its value by 64 u S more;
//         and between control points that fall it may rise by 6 u S. These are 142 u S; 512 u S are allowed.
bool cut_by_areas(Leg& leg, const Ray& ray, double radius_x, double radius_y, double part, bool keep_before,
                  double tolerance)
{
    const Areas areas(leg, ray);
    if (std::abs(areas.control[0]) < kAreaOnRay)
        return !keep_before;
    if (std::abs(areas.control[3]) < kAreaOnRay)
        return keep_before;
    const double rounding = 0x1p-44 * std::abs(radius_x) * (std::abs(radius_x) + std::abs(radius_y));
    const double certain = (tolerance > 0.0 ? tolerance : 0.0) + rounding;
    const bool by_angle = radius_x == radius_y && part != kUnknownPart;
    const Step first = after_certain_steps(
        areas, by_angle ? guess_by_angle(part, radius_x, certain) : guess_by_areas(areas, certain), certain);
    double lo = first.mid - first.half;
    double hi = first.mid + first.half;
    for (double mid = first.mid;; mid = (lo + hi) / 2.0) {
        go_on_for_ever();
        const Triangle x(leg.x, mid);
        const Triangle y(leg.y, mid);
        const double area = ray.area(x.level3, y.level3);
        if (std::abs(area) < tolerance) {
            x.keep(leg.x, keep_before);
            y.keep(leg.y, keep_before);
            return true;
        }
        (area > 0.0 ? lo : hi) = mid;
    }
}

// Any radii: the bisection as it stands.
bool cut_as_cubic(Leg& leg, const Ray& ray, bool keep_before, double tolerance)
{
    Point points[4] = {Point(leg.x[0], leg.y[0], 0.0), Point(leg.x[1], leg.y[1], 0.0),
                       Point(leg.x[2], leg.y[2], 0.0), Point(leg.x[3], leg.y[3], 0.0)};
    const bool kept =
        cut_cubic(points, Point(0.0, 0.0, 0.0), Point(ray.x, ray.y, 0.0), keep_before, tolerance);
    for (int i = 0; i < 4; ++i) {
        leg.x[i] = points[i].x;
        leg.y[i] = points[i].y;
    }
    return kept;
}

} // namespace

bool cut_cubic(Point segment[4], const Point& ray_origin, const Point& ray_point, bool keep_before,
               double tolerance)
{
    if (std::abs(signed_area(ray_origin, segment[0], ray_point)) < kAreaOnRay)
        return !keep_before;
    if (std::abs(signed_area(ray_origin, segment[3], ray_point)) < kAreaOnRay)
        return keep_before;
    double lo = 0.0;
    double hi = 1.0;
    while (hi - lo >= 0.0) {
        go_on_for_ever();
        const double mid = (lo + hi) / 2.0;
        const double area = signed_area(ray_origin, CubicTriangle(segment, mid).level3, ray_point);
        if (std::abs(area) < tolerance)
            break;
        (area > 0.0 ? lo : hi) = mid;
    }
    const CubicTriangle triangle(segment, (lo + hi) / 2.0);
    if (keep_before) {
        segment[1] = triangle.level1[0];
        segment[2] = triangle.level2[0];
        segment[3] = triangle.level3;
    } else {
        segment[0] = triangle.level3;
        segment[1] = triangle.level2[1];
        segment[2] = triangle.level1[2];
    }
    return true;
}

Leg leg_of_quadrant(int quadrant, double radius_x, double radius_y)
{
    return quarter(quadrant, radius_x, radius_y);
}

ArcLegs::ArcLegs(double radius_x, double radius_y, double start_angle, double end_angle, double tolerance)
    : radius_x_(radius_x), radius_y_(radius_y), start_angle_(start_angle), end_angle_(end_angle),
      tolerance_(tolerance)
{
    if (!(start_angle < end_angle))
        return;
    const double start_turns = start_angle / kTurn;
    const double end_turns = end_angle / kTurn;
    constexpr double kHeld = 0x1p40; // far past any turn number, and an integer holds it
    if (!(start_turns > -kHeld && end_turns < kHeld))
        return;
    const std::int64_t first_turn = floor_of(start_turns);
    std::int64_t last_turn = floor_of(end_turns);
    if (static_cast<double>(last_turn) == end_turns)
        --last_turn; // ends where a turn does: in the turn before, as its quadrant 5
    if (!is_turn_number(first_turn) || !is_turn_number(last_turn))
        return;
    first_ = place_of(start_angle, first_turn);
    last_ = place_of(end_angle, last_turn);
    turn_ = first_.turn;
    quadrant_ = first_.quadrant;
}

ArcLegs::Place ArcLegs::place_of(double angle, std::int64_t turn)
{
    const double quarters = (angle + static_cast<double>(turn) * -kTurn) / kQuarterTurn;
    const std::int64_t whole = floor_of(quarters);
    return {turn, static_cast<int>(whole) + 1, quarters - static_cast<double>(whole)};
}

bool ArcLegs::next(Leg& leg)
{
    while (turn_ <= last_.turn) {
        if (quadrant_ > 4 || (turn_ == last_.turn && quadrant_ > last_.quadrant)) {
            ++turn_;
            quadrant_ = 1;
            continue;
        }
        const bool at_first = is_at(first_);
        const bool at_last = is_at(last_);
        ++quadrant_;
        leg = quarter(quadrant_ - 1, radius_x_, radius_y_);
        if (at_first && !cut(leg, start_angle_, first_.part, false))
            continue;
        if (at_last && !cut(leg, end_angle_, at_first ? kUnknownPart : last_.part, true))
            continue;
        return true;
    }
    return false;
}

// part: what part of a whole quarter the ray cuts off, or kUnknownPart.
bool ArcLegs::cut(Leg& leg, double angle, double part, bool keep_before) const
{
    const Ray ray{radius_x_ * std::cos(angle), radius_x_ * std::sin(angle)};
    return is_ordinary(radius_x_, radius_y_)
               ? cut_by_areas(leg, ray, radius_x_, radius_y_, part, keep_before, tolerance_)
               : cut_as_cubic(leg, ray, keep_before, tolerance_);
}

} // namespace vnt
