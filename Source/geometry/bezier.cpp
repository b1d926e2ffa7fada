#include "Source/geometry/bezier.h"

#include "Source/geometry/arc_legs.h"
#include "Source/geometry/point_math.h"

#include <algorithm>
#include <iterator>
#include <utility>

double points_distance(const vnt::Point& a, const vnt::Point& b) { return vnt::distance_of(a, b); }

vnt::Point internal_division(const vnt::Point& a, const vnt::Point& b, double m, double n)
{
    return vnt::weighted_sum(a, b, m, n);
}

double calc_signed_triangle_square(const vnt::Point& a, const vnt::Point& b, const vnt::Point& c)
{
    return vnt::signed_area(a, b, c);
}

std::vector<std::vector<vnt::Point>> de_casteljau(const std::list<vnt::Point>& control_points, double t)
{
    std::vector<std::vector<vnt::Point>> levels;
    levels.reserve(std::max<std::size_t>(control_points.size(), 1));
    levels.emplace_back(control_points.begin(), control_points.end());
    while (levels.back().size() > 1) {
        const std::vector<vnt::Point>& above = levels.back();
        std::vector<vnt::Point> level;
        level.reserve(above.size() - 1);
        for (std::size_t i = 0; i + 1 < above.size(); ++i)
            level.push_back(vnt::weighted_sum(above[i], above[i + 1], t, 1 - t));
        levels.push_back(std::move(level));
    }
    return levels;
}

std::list<vnt::Point> get_leg_arc(int quadrant, double radius_x, double radius_y)
{
    const vnt::Leg leg = vnt::leg_of_quadrant(quadrant, radius_x, radius_y);
    std::list<vnt::Point> points;
    for (int i = 0; i < 4; ++i)
        points.emplace_back(leg.x[i], leg.y[i], 0.0);
    return points;
}

std::list<vnt::Point> divide_bezier(const std::list<vnt::Point>& segment, const vnt::Point& ray_origin,
                                    const vnt::Point& ray_point, bool keep_before, double tolerance)
{
    if (segment.size() != 4)
        return {};
    auto it = segment.begin();
    vnt::Point points[4] = {*it, *std::next(it), *std::next(it, 2), *std::next(it, 3)};
    if (!vnt::cut_cubic(points, ray_origin, ray_point, keep_before, tolerance))
        return {};
    return {points, points + 4};
}

namespace vnt {
namespace {

std::list<Point> segments_of(const PrimL& line, double /*tolerance*/)
{
    return conv_line_to_bezier(line.start, line.end);
}

std::list<Point> segments_of(const PrimC& circle, double tolerance)
{
    return conv_arc_to_bezier(circle.center, circle.radius, circle.radius, circle.start, circle.end,
                              circle.posture, tolerance);
}

std::list<Point> segments_of(const PrimE& ellipse, double tolerance)
{
    return conv_arc_to_bezier(ellipse.center, ellipse.major_radius, ellipse.minor_radius, ellipse.start,
                              ellipse.end, ellipse.posture, tolerance);
}

std::list<Point> segments_of(const PrimF& curve, double /*tolerance*/) { return curve.points; }

template <class Kind>
std::list<Point> segments_as(const PrimInfo* primitive, double tolerance)
{
    const auto* const kind = dynamic_cast<const Kind*>(primitive);
    return kind != nullptr ? segments_of(*kind, tolerance) : std::list<Point>();
}

} // namespace

std::list<Point> conv_prim_to_bezier(const PrimInfo* primitive, double tolerance)
{
    if (primitive == nullptr)
        return {};
    switch (primitive->type) {
    case PRIM_LINE: return segments_as<PrimL>(primitive, tolerance);
    case PRIM_CIRCLE: return segments_as<PrimC>(primitive, tolerance);
    case PRIM_ELLIPSE: return segments_as<PrimE>(primitive, tolerance);
    case PRIM_FREE: return segments_as<PrimF>(primitive, tolerance);
    default: return {};
    }
}

std::list<Point> conv_line_to_bezier(const Point& start, const Point& end)
{
    return {start, start, end, end};
}

std::list<Point> conv_arc_to_bezier(const Point& center, double radius_x, double radius_y, double start_angle,
                                    double end_angle, const Matrix& posture, double tolerance)
{
    // What the third column adds to z = 0: a zero of either sign, or NaN.
    const Point third(posture.m02 * 0.0, posture.m12 * 0.0, posture.m22 * 0.0);
    std::list<Point> points;
    ArcLegs legs(radius_x, radius_y, start_angle, end_angle, tolerance);
    for (Leg leg; legs.next(leg);) {
        double x[4];
        double y[4];
        double z[4];
        for (int i = 0; i < 4; ++i) {
            x[i] = posture.m00 * leg.x[i] + posture.m01 * leg.y[i] + third.x + center.x;
            y[i] = posture.m10 * leg.x[i] + posture.m11 * leg.y[i] + third.y + center.y;
            z[i] = posture.m20 * leg.x[i] + posture.m21 * leg.y[i] + third.z + center.z;
        }
        for (int i = 0; i < 4; ++i)
            points.emplace_back(x[i], y[i], z[i]);
    }
    return points;
}

} // namespace vnt
