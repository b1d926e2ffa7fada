#include "Source/geometry/curve_fitting.h"

#include "Source/geometry/point_math.h"

#include <iterator>
#include <utility>

namespace vnt {
namespace {

// Samples are thinned at this many tolerances.
constexpr double kThinning = 5.0;

struct Cubic {
    Point points[4];

    Cubic(const Point& start, const Point& control1, const Point& control2, const Point& end)
        : points{start, control1, control2, end}
    {
    }
};

Point plus(const Point& a, double factor, const Point& b)
{
    return Point(a.x + factor * b.x, a.y + factor * b.y, a.z + factor * b.z);
}

Point minus(const Point& a, double factor, const Point& b)
{
    return Point(a.x - factor * b.x, a.y - factor * b.y, a.z - factor * b.z);
}

// Of length 1, from prev towards next; not finite when they coincide.
Point direction(const Point& prev, const Point& next)
{
    const Point chord(next.x - prev.x, next.y - prev.y, next.z - prev.z);
    const double length = distance_of(Point(0.0, 0.0, 0.0), chord);
    return Point(chord.x / length, chord.y / length, chord.z / length);
}

// Hands every point that is kept to the taker, as it stands in the list.
template <class Take>
void thin(const std::list<Point>& points, double min_distance, Take take)
{
    const Point* last = nullptr;
    for (const Point& point : points) {
        if (last == nullptr || distance_of(*last, point) >= min_distance) {
            take(point);
            last = &point;
        }
    }
}

bool merge(Cubic& current, const Cubic& next, double tolerance)
{
    const Point(&a)[4] = current.points;
    const Point(&b)[4] = next.points;
    const double t = distance_of(a[2], a[3]) / distance_of(a[2], b[1]);
    const Cubic merged(a[0], weighted_sum(a[0], a[1], 1 / t, -(1 - t) / t),
                       weighted_sum(b[2], b[3], -t / (1 - t), 1 / (1 - t)), b[3]);
    const CubicTriangle triangle(merged.points, t);
    // A distance that is NaN is not greater.
    if (distance_of(triangle.level2[0], a[2]) > tolerance || distance_of(triangle.level3, a[3]) > tolerance ||
        distance_of(triangle.level2[1], b[1]) > tolerance)
        return false;
    current = merged;
    return true;
}

Cubic cubic_of(const std::list<Point>& segment)
{
    auto it = segment.begin();
    return Cubic(*it, *std::next(it), *std::next(it, 2), *std::next(it, 3));
}

// Takes segments in order and appends to a list what they merge to.
class Merger {
public:
    Merger(std::list<Point>& out, double tolerance) : out_(out), tolerance_(tolerance) {}

    void take(const Cubic& segment)
    {
        if (has_current_ && merge(current_, segment, tolerance_))
            return;
        finish();
        current_ = segment;
        has_current_ = true;
    }

    void finish()
    {
        if (has_current_)
            out_.insert(out_.end(), current_.points, current_.points + 4);
    }

private:
    std::list<Point>& out_;
    double tolerance_;
    bool has_current_ = false;
    Cubic current_{Point(0, 0, 0), Point(0, 0, 0), Point(0, 0, 0), Point(0, 0, 0)};
};

} // namespace

std::list<Point> conv_free_to_bezier(const std::list<Point>& points, double tolerance)
{
    if (points.empty())
        return {};
    std::list<Point> curve;
    Merger merger(curve, tolerance);
    Point start = points.front();
    Point arm = points.front();
    Point end = points.front();
    const Point* prev = nullptr;
    const Point* mid = nullptr;
    thin(points, tolerance * kThinning, [&](const Point& next) {
        if (prev != nullptr) {
            const double arm_in = distance_of(*prev, *mid) / 3.0;
            const double arm_out = distance_of(next, *mid) / 3.0;
            const Point tangent = direction(*prev, next);
            merger.take(Cubic(start, arm, minus(*mid, arm_in, tangent), *mid));
            start = *mid;
            arm = plus(*mid, arm_out, tangent);
        }
        prev = mid;
        mid = &next;
        end = next;
    });
    merger.take(Cubic(start, arm, end, end));
    merger.finish();
    return curve;
}

} // namespace vnt

std::list<vnt::Point> simplification_points(const std::list<vnt::Point>& points, double min_distance)
{
    std::list<vnt::Point> kept;
    vnt::thin(points, min_distance, [&kept](const vnt::Point& point) { kept.push_back(point); });
    return kept;
}

std::list<std::list<vnt::Point>> simplification_bezier(const std::list<std::list<vnt::Point>>& segments,
                                                       double tolerance)
{
    if (segments.empty())
        return {};
    std::list<std::list<vnt::Point>> merged;
    std::list<vnt::Point> current = segments.front();
    for (auto segment = std::next(segments.begin()); segment != segments.end(); ++segment) {
        if (!simplification_cp(current, *segment, tolerance)) {
            merged.push_back(std::move(current));
            current = *segment;
        }
    }
    merged.push_back(std::move(current));
    return merged;
}

bool simplification_cp(std::list<vnt::Point>& current, const std::list<vnt::Point>& next, double tolerance)
{
    if (current.size() != 4 || next.size() != 4)
        return false;
    vnt::Cubic cubic = vnt::cubic_of(current);
    if (!vnt::merge(cubic, vnt::cubic_of(next), tolerance))
        return false;
    current.assign(cubic.points, cubic.points + 4);
    return true;
}
