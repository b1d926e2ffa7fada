#include "sketch/core/outline.h"

#include <algorithm>
#include <cstddef>

namespace vnt::sketch {

double signed_area(const Path& polygon)
{
    double twice = 0;
    for (std::size_t i = 0; i < polygon.size(); ++i)
        twice += cross(polygon[i] - polygon[0], polygon[(i + 1) % polygon.size()] - polygon[0]);
    return twice / 2;
}

Path hull_of(Path points)
{
    std::sort(points.begin(), points.end(),
              [](Vec2 a, Vec2 b) { return a.x < b.x || (a.x == b.x && a.y < b.y); });
    points.erase(std::unique(points.begin(), points.end()), points.end());
    if (points.size() < 3)
        return points;
    Path hull;
    for (int half = 0; half < 2; ++half) {
        const std::size_t base = hull.size();
        for (const Vec2 p : points) {
            while (hull.size() >= base + 2 &&
                   cross(hull.back() - hull[hull.size() - 2], p - hull.back()) <= 0)
                hull.pop_back();
            hull.push_back(p);
        }
        hull.pop_back(); // the other half begins with it
        std::reverse(points.begin(), points.end());
    }
    return hull;
}

MomentAxes moment_axes(const Path& polygon)
{
    MomentAxes axes;
    if (polygon.empty())
        return axes;
    const Vec2 origin = polygon.front(); // so that far from the sheet's origin nothing is lost
    axes.centroid = origin;
    double area = 0, xx = 0, xy = 0, yy = 0;
    Vec2 first;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Vec2 p = polygon[i] - origin;
        const Vec2 q = polygon[(i + 1) % polygon.size()] - origin;
        const double w = cross(p, q);
        area += w / 2;
        first = first + (w / 6) * (p + q);
        xx += w / 12 * (p.x * p.x + p.x * q.x + q.x * q.x);
        yy += w / 12 * (p.y * p.y + p.y * q.y + q.y * q.y);
        xy += w / 24 * (2 * p.x * p.y + p.x * q.y + q.x * p.y + 2 * q.x * q.y);
    }
    if (!(std::abs(area) > 0))
        return axes;
    const Vec2 centroid = (1 / area) * first;
    xx = xx / area - centroid.x * centroid.x;
    yy = yy / area - centroid.y * centroid.y;
    xy = xy / area - centroid.x * centroid.y;
    const double spread = std::hypot(xx - yy, 2 * xy);
    axes.centroid = origin + centroid;
    axes.major = 2 * std::sqrt(std::max(0.0, (xx + yy + spread) / 2));
    axes.minor = 2 * std::sqrt(std::max(0.0, (xx + yy - spread) / 2));
    axes.rotation = std::atan2(2 * xy, xx - yy) / 2;
    return axes;
}

Path made_round(const Path& points, const MomentAxes& axes)
{
    const Vec2 along = unit_at(axes.rotation);
    const Vec2 across = turned_a_quarter(along);
    const double minor = std::max(axes.minor, axes.major / kMostRounding);
    Path round;
    round.reserve(points.size());
    for (const Vec2 p : points)
        round.push_back({dot(p - axes.centroid, along) / axes.major, dot(p - axes.centroid, across) / minor});
    return round;
}

Path made_unround(const Path& points, const MomentAxes& axes)
{
    const Vec2 along = unit_at(axes.rotation);
    const Vec2 across = turned_a_quarter(along);
    const double minor = std::max(axes.minor, axes.major / kMostRounding);
    Path sheet;
    sheet.reserve(points.size());
    for (const Vec2 p : points)
        sheet.push_back(axes.centroid + (p.x * axes.major) * along + (p.y * minor) * across);
    return sheet;
}

} // namespace vnt::sketch
