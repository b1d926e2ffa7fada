#include "tests/geometry/plain_arc.h"

#include <cmath>
#include <vector>

namespace plain {
namespace {

using vnt::Point;

const double kTwoPi = 6.283185307179586;
const double kHalfPi = 1.5707963267948966;
const double kKappa = 0.5522847498307936;

double signed_area(const Point& a, const Point& b, const Point& c)
{
    return ((a.x * b.y + b.x * c.y + c.x * a.y) - a.y * b.x - b.y * c.x - c.y * a.x) / 2.0;
}

std::vector<std::vector<Point>> triangle_of(const Points& segment, double t)
{
    std::vector<std::vector<Point>> levels = {
        {segment.begin(), segment.end()}
    };
    while (levels.back().size() > 1) {
        std::vector<Point> level;
        for (std::size_t i = 1; i < levels.back().size(); ++i) {
            const Point& a = levels.back()[i - 1];
            const Point& b = levels.back()[i];
            level.emplace_back((1 - t) * a.x + t * b.x, (1 - t) * a.y + t * b.y, (1 - t) * a.z + t * b.z);
        }
        levels.push_back(level);
    }
    return levels;
}

} // namespace

Points get_leg_arc(int quadrant, double radius_x, double radius_y)
{
    Points leg = {Point(radius_x, 0, 0), Point(radius_x, kKappa * radius_y, 0),
                  Point(kKappa * radius_x, radius_y, 0), Point(0, radius_y, 0)};
    for (Point& p : leg) {
        if (quadrant == 2 || quadrant == 3)
            p.x = -p.x;
        if (quadrant == 3 || quadrant == 4)
            p.y = -p.y;
    }
    if (quadrant == 2 || quadrant == 4)
        leg.reverse();
    return leg;
}

std::optional<Points> divide_bezier(const Points& segment, const Point& ray_origin, const Point& ray_point,
                                    bool keep_before, double tolerance)
{
    if (segment.size() != 4)
        return Points();
    if (std::fabs(signed_area(ray_origin, segment.front(), ray_point)) < 1.0)
        return keep_before ? Points() : segment;
    if (std::fabs(signed_area(ray_origin, segment.back(), ray_point)) < 1.0)
        return keep_before ? segment : Points();
    double lo = 0.0;
    double hi = 1.0;
    for (int step = 0; hi - lo >= 0.0; ++step) {
        if (step == kSteps)
            return std::nullopt;
        const double mid = (lo + hi) / 2.0;
        const double area = signed_area(ray_origin, triangle_of(segment, mid).back().front(), ray_point);
        if (std::fabs(area) < tolerance)
            break;
        if (area > 0.0)
            lo = mid;
        else
            hi = mid;
    }
    Points part;
    for (const std::vector<Point>& level : triangle_of(segment, (lo + hi) / 2.0))
        part.push_back(keep_before ? level.front() : level.back());
    if (!keep_before)
        part.reverse();
    return part;
}

std::optional<Points> conv_arc_to_bezier(const Point& center, double radius_x, double radius_y,
                                         double start_angle, double end_angle, const vnt::Matrix& posture,
                                         double tolerance)
{
    if (!(start_angle < end_angle))
        return Points();
    const int first_turn = static_cast<int>(std::floor(start_angle / kTwoPi));
    int last_turn = static_cast<int>(std::floor(end_angle / kTwoPi));
    if (static_cast<int>(std::ceil(end_angle / kTwoPi)) == last_turn)
        --last_turn;
    const int first_quadrant =
        static_cast<int>(std::floor((start_angle + first_turn * -kTwoPi) / kHalfPi)) + 1;
    const int last_quadrant = static_cast<int>(std::floor((end_angle + last_turn * -kTwoPi) / kHalfPi)) + 1;

    const Point origin(0, 0, 0);
    const Point start_point(radius_x * std::cos(start_angle), radius_x * std::sin(start_angle), 0);
    const Point end_point(radius_x * std::cos(end_angle), radius_x * std::sin(end_angle), 0);
    Points result;
    for (int turn = first_turn; turn <= last_turn; ++turn) {
        for (int q = turn == first_turn ? first_quadrant : 1; q <= 4; ++q) {
            if (turn == last_turn && q > last_quadrant)
                break;
            std::optional<Points> leg = get_leg_arc(q, radius_x, radius_y);
            if (turn == first_turn && q == first_quadrant)
                leg = divide_bezier(*leg, origin, start_point, false, tolerance);
            if (leg && turn == last_turn && q == last_quadrant)
                leg = divide_bezier(*leg, origin, end_point, true, tolerance);
            if (!leg)
                return std::nullopt;
            result.splice(result.end(), *leg);
        }
    }
    for (Point& p : result) {
        p = Point(((posture.m00 * p.x + posture.m01 * p.y) + posture.m02 * p.z) + center.x,
                  ((posture.m10 * p.x + posture.m11 * p.y) + posture.m12 * p.z) + center.y,
                  ((posture.m20 * p.x + posture.m21 * p.y) + posture.m22 * p.z) + center.z);
    }
    return result;
}

} // namespace plain
