#include "sketch/core/arc_element.h"

#include "Source/geometry/bezier.h"
#include "sketch/core/shape_outline.h"

#include <algorithm>

namespace vnt::sketch {
namespace {

constexpr double kTurn = 6.283185307179586; // as the plug-in has it

// Half axes that differ by less, as a share of themselves, are a circle's.
constexpr double kSameRadius = 1e-9;

// Of a shape that has no width, as a share of its length.
constexpr double kFlat = 1e-12;

// Lengths for which nothing in the plug-in's areas overflows or is lost.
constexpr double kShortest = 1e-15;
constexpr double kLongest = 1e15;

// Of the square of a radius: a tolerance below this may be out of a cut's reach, which then never ends. The
// areas that are compared with it are good to 2^-44.
constexpr double kReachable = 0x1p-40;

// The request's text has 16 digits, and the plug-in cuts to the double that they stand for.
constexpr double kTextRounding = 1e-15;

// The direction in which an ellipse's point at the parameter lies, on the same turn; and back.
double polar_of(double parameter, double radius_x, double radius_y)
{
    const double polar = std::atan2(radius_y * std::sin(parameter), radius_x * std::cos(parameter));
    return parameter + std::remainder(polar - parameter, kTurn);
}

double parameter_of(double polar, double radius_x, double radius_y)
{
    const double parameter = std::atan2(radius_x * std::sin(polar), radius_y * std::cos(polar));
    return polar + std::remainder(parameter - polar, kTurn);
}

// What the plug-in makes of the element; empty where it might never come to an end.
std::list<Point> path_of(const ArcElement& element, double tolerance)
{
    const double x = element.radius_x;
    const double y = element.radius_y;
    if (!(y >= kShortest && x <= kLongest) || !(tolerance > kReachable * x * (x + y)) ||
        !std::isfinite(tolerance))
        return {};
    Matrix posture;
    posture.m00 = element.posture.a;
    posture.m10 = element.posture.b;
    posture.m01 = element.posture.c;
    posture.m11 = element.posture.d;
    const Point centre(element.centre.x, element.centre.y, 0);
    const PrimE arc(centre, x, y, element.start, element.end, true, posture);
    return conv_prim_to_bezier(&arc, tolerance);
}

bool flattens(const Affine& map)
{
    const Vec2 x{map.a, map.b};
    const Vec2 y{map.c, map.d};
    return std::abs(map.determinant()) <= kFlat * (dot(x, x) + dot(y, y));
}

// Along the shape, from its point at the parameter to where p lies beside it.
double way_along(const Ellipse& ellipse, double parameter, Vec2 p)
{
    return ellipse.major * std::abs(std::remainder(ellipse.parameter_of(p) - parameter, kTurn));
}

// A line there and back, or a dot: as the curve of the circle of radius 1 that the map flattens.
Shape flattened_circle(Round round, const Affine& map)
{
    round.ellipse = {{}, 1, 1, 0};
    const Curve outline{cubics_of(round, kQuarterOff), round.sweep >= kTurn};
    return mapped(Shape(outline), map);
}

} // namespace

ArcElement element_of(const Round& model, const Decimals& decimals)
{
    const Ellipse& ellipse = model.ellipse;
    ArcElement element;
    element.is_whole = std::abs(model.sweep) >= kTurn;
    element.is_circle = ellipse.major - ellipse.minor <= kSameRadius * ellipse.major;
    element.centre = {decimals(ellipse.centre.x), decimals(ellipse.centre.y)};
    element.radius_x = decimals(ellipse.major);
    element.radius_y = element.is_circle ? element.radius_x : decimals(ellipse.minor);
    // A circle's frame needs no turn: its angles take it.
    const Vec2 along = element.is_circle ? Vec2{1, 0} : unit_at(ellipse.rotation);
    element.is_turned_over = !element.is_whole && model.sweep < 0;
    const Vec2 across = element.is_turned_over ? -turned_a_quarter(along) : turned_a_quarter(along);
    element.posture = {rounded_share(along.x), rounded_share(along.y), rounded_share(across.x),
                       rounded_share(across.y)};
    if (element.is_whole) {
        element.end = kTurn;
        return element;
    }
    const double first = model.start + (element.is_circle ? ellipse.rotation : 0);
    const double start = within_a_turn(element.is_turned_over ? -first : first);
    element.start = rounded_angle(polar_of(start, ellipse.major, ellipse.minor));
    element.end = rounded_angle(polar_of(start + std::abs(model.sweep), ellipse.major, ellipse.minor));
    return element;
}

bool is_drawn_well(const ArcElement& element, const Round& shape, const Sheet& sheet,
                   const Affine& model_to_sheet)
{
    if (!(kQuarterOff * shape.ellipse.major <= kMostOff) || !(element.radius_y > 0))
        return false;
    if (element.is_whole)
        return true;
    for (const double rounding : {-kTextRounding, kTextRounding}) {
        const std::list<Point> path = path_of(element, sheet.tolerance * (1 + rounding));
        if (path.empty())
            return false;
        const Vec2 first = model_to_sheet({path.front().x, path.front().y});
        const Vec2 last = model_to_sheet({path.back().x, path.back().y});
        if (!(way_along(shape.ellipse, shape.start, first) <= kMostGap) ||
            !(way_along(shape.ellipse, shape.start + shape.sweep, last) <= kMostGap))
            return false;
    }
    return true;
}

std::optional<Shape> shape_of(Vec2 centre, double radius_x, double radius_y, double start, double end,
                              const Affine& posture)
{
    if (!(start < end))
        return std::nullopt;
    const double x = std::abs(radius_x);
    const double y = std::abs(radius_y);
    const Affine signs{radius_x < 0 ? -1.0 : 1.0, 0, 0, radius_y < 0 ? -1.0 : 1.0, 0, 0};
    const Affine place = Affine{posture.a, posture.b, posture.c, posture.d, centre.x, centre.y} * signs;
    Round round;
    round.start = x > 0 && y > 0 ? parameter_of(start, x, y) : start;
    const double last = x > 0 && y > 0 ? parameter_of(end, x, y) : end;
    round.sweep = end - start >= kTurn ? kTurn : std::min(last - round.start, kTurn);
    if (std::min(x, y) <= kFlat * std::max(x, y) || flattens(place))
        return flattened_circle(round, place * Affine{x, 0, 0, y, 0, 0});
    if (x >= y) {
        round.ellipse = {{}, x, y, 0};
    } else {
        round.ellipse = {{}, y, x, kPi / 2};
        round.start -= kPi / 2;
    }
    return mapped(round, place);
}

} // namespace vnt::sketch
