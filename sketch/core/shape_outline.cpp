#include "sketch/core/shape_outline.h"

#include "sketch/core/curve_fit.h"
#include "sketch/core/free_curve.h"

#include <algorithm>
#include <limits>

namespace vnt::sketch {
namespace {

constexpr double kTurn = 2 * kPi;

// Of one round shape, or of one segment made flat: more are asked for by tolerances far below what is seen.
constexpr int kMostPieces = 4096;

void add_straight(Path& curve, Vec2 from, Vec2 to) { curve.insert(curve.end(), {from, from, to, to}); }

Path curve_of(const Straight& shape)
{
    Path curve;
    if (shape.corners.empty())
        return curve;
    const Vec2 first = shape.corners.front();
    Vec2 at = first;
    for (const Vec2 corner : shape.corners) {
        if (corner != at)
            add_straight(curve, at, corner);
        at = corner;
    }
    if (shape.closed && at != first)
        add_straight(curve, at, first);
    if (curve.empty())
        add_straight(curve, first, first); // a dot
    return curve;
}

// How far the segment of a sweep lies from the circle of radius 1, outside it.
// Source: M. Goldapp, Approximation of Circular Arcs by Cubic Polynomials (CAGD 1991).
double segment_error(double sweep)
{
    const double s = std::sin(sweep / 4);
    const double c = std::cos(sweep / 4);
    return 2.0 / 27 * std::pow(s, 6) / (c * c);
}

int segments_of(double sweep, double radius, double tolerance)
{
    int count = std::max(1, static_cast<int>(std::ceil(sweep / (kPi / 2) - 1e-9)));
    while (count < kMostPieces && segment_error(sweep / count) * radius > tolerance)
        ++count;
    return count;
}

Path curve_of(const Round& shape, double tolerance)
{
    const Ellipse& ellipse = shape.ellipse;
    const double sweep = std::clamp(shape.sweep, -kTurn, kTurn);
    const double radius = std::max(ellipse.major, ellipse.minor);
    if (!std::isfinite(sweep) || !std::isfinite(radius))
        return {};
    const int count = segments_of(std::abs(sweep), radius, tolerance);
    const double step = sweep / count;
    const double arm = 4.0 / 3 * std::tan(step / 4);
    const Vec2 along = ellipse.major * unit_at(ellipse.rotation);
    const Vec2 across = ellipse.minor * turned_a_quarter(unit_at(ellipse.rotation));
    const auto slope_at = [&](double t) { return -std::sin(t) * along + std::cos(t) * across; };
    Path curve;
    Vec2 start = ellipse.at(shape.start);
    for (int i = 0; i < count; ++i) {
        const double from = shape.start + i * step;
        const double to = shape.start + (i + 1) * step;
        Vec2 end = ellipse.at(to);
        if (i + 1 == count && std::abs(sweep) == kTurn)
            end = curve.empty() ? start : curve.front(); // to the bit
        curve.insert(curve.end(), {start, start + arm * slope_at(from), end - arm * slope_at(to), end});
        start = end;
    }
    return curve;
}

Path curve_of(const Curve& shape)
{
    Path curve = shape.points;
    curve.resize(curve.size() - curve.size() % 4);
    if (shape.closed && !curve.empty() && curve.back() != curve.front())
        add_straight(curve, curve.back(), curve.front());
    return curve;
}

// Into how many chords a segment falls.
// Source: half the second derivative's bound, 6 times the larger second difference, over 4 n²: G. Wang
//         (1984); see G. Farin, Curves and Surfaces for CAGD.
int chords_of(const Vec2* p, double tolerance)
{
    // All of a cubic lies in its hull.
    if (distance_from_piece(p[1], p[0], p[3]) <= tolerance / 4 &&
        distance_from_piece(p[2], p[0], p[3]) <= tolerance / 4)
        return 1;
    const double bend = std::max(length(p[0] - 2.0 * p[1] + p[2]), length(p[1] - 2.0 * p[2] + p[3]));
    const double count = std::ceil(std::sqrt(0.75 * bend / tolerance));
    return count >= 1 ? static_cast<int>(std::min(count, double{kMostPieces})) : 1; // 1 for NaN
}

void add_flattened(Path& path, const Vec2* segment, double tolerance)
{
    const int count = chords_of(segment, tolerance);
    for (int i = 1; i < count; ++i)
        path.push_back(point_of_cubic(segment, static_cast<double>(i) / count));
    path.push_back(segment[3]);
}

// From p to the box about four points.
double distance_from_box(Vec2 p, const Vec2* points)
{
    const auto [left, right] = std::minmax({points[0].x, points[1].x, points[2].x, points[3].x});
    const auto [low, high] = std::minmax({points[0].y, points[1].y, points[2].y, points[3].y});
    return length({std::max({left - p.x, 0.0, p.x - right}), std::max({low - p.y, 0.0, p.y - high})});
}

} // namespace

Path cubics_of(const Shape& shape, double tolerance)
{
    if (const auto* straight = std::get_if<Straight>(&shape))
        return curve_of(*straight);
    if (const auto* round = std::get_if<Round>(&shape))
        return curve_of(*round, tolerance);
    if (const auto* curve = std::get_if<Curve>(&shape))
        return curve_of(*curve);
    return {};
}

Path cubics_of(const Stroke& stroke, double tolerance)
{
    if (!std::holds_alternative<std::monostate>(stroke.shape))
        return cubics_of(stroke.shape, tolerance);
    return free_curve_along(stroke.ink, tolerance);
}

Path flattened(const Path& cubics, double tolerance)
{
    Path path;
    for (std::size_t i = 0; i + 3 < cubics.size(); i += 4) {
        if (path.empty() || path.back() != cubics[i])
            path.push_back(cubics[i]);
        add_flattened(path, &cubics[i], tolerance);
    }
    return path;
}

double distance_from_curve(Vec2 p, const Path& cubics, double tolerance)
{
    double nearest = std::numeric_limits<double>::infinity();
    Path chords;
    for (std::size_t i = 0; i + 3 < cubics.size(); i += 4) {
        if (distance_from_box(p, &cubics[i]) >= nearest)
            continue;
        chords.assign(1, cubics[i]);
        add_flattened(chords, &cubics[i], tolerance);
        for (std::size_t k = 1; k < chords.size(); ++k)
            nearest = std::min(nearest, distance_from_piece(p, chords[k - 1], chords[k]));
    }
    return nearest;
}

} // namespace vnt::sketch
