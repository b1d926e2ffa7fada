#include "host/kit/path_art.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vnt::host {
namespace {

bool is_finite(const ArtPoint& point) { return std::isfinite(point.h) && std::isfinite(point.v); }

struct Range {
    double low, high;

    void add(double value)
    {
        low = std::min(low, value);
        high = std::max(high, value);
    }
};

// One coordinate of a cubic Bézier segment.
using Cubic = std::array<double, 4>;

double value_at(const Cubic& p, double t)
{
    const double s = 1 - t;
    return s * s * s * p[0] + 3 * s * s * t * p[1] + 3 * s * t * t * p[2] + t * t * t * p[3];
}

void add_extremes(Range& range, const Cubic& p)
{
    range.add(p[3]);
    if (std::min(p[1], p[2]) >= range.low && std::max(p[1], p[2]) <= range.high)
        return; // a curve stays within the hull of its points
    // A third of the derivative is a t² + 2 b t + c.
    const double a = p[3] - 3 * p[2] + 3 * p[1] - p[0];
    const double b = p[2] - 2 * p[1] + p[0];
    const double c = p[1] - p[0];
    const double root = std::sqrt(std::max(b * b - a * c, 0.0));
    const double q = -(b + std::copysign(root, b));
    for (const double t : {q / a, c / q}) { // a division by 0 gives no t between 0 and 1
        if (t > 0 && t < 1)
            range.add(value_at(p, t));
    }
}

} // namespace

bool is_finite(const PathArt& path)
{
    return std::all_of(path.begin(), path.end(), [](const PathSegment& segment) {
        return is_finite(segment.p) && is_finite(segment.in) && is_finite(segment.out);
    });
}

const char* why_left_out(const PathArt& path)
{
    if (path.empty())
        return "has no segments";
    return is_finite(path) ? nullptr : "has a coordinate that is not a finite number";
}

std::optional<ArtBox> bounds_of(const std::vector<PathArt>& paths)
{
    std::optional<Range> h;
    std::optional<Range> v;
    for (const PathArt& path : paths) {
        if (path.empty() || !is_finite(path))
            continue;
        const ArtPoint& start = path.front().p;
        h = h ? h : Range{start.h, start.h};
        v = v ? v : Range{start.v, start.v};
        h->add(start.h);
        v->add(start.v);
        for (std::size_t i = 1; i < path.size(); ++i) {
            const PathSegment& from = path[i - 1];
            const PathSegment& to = path[i];
            add_extremes(*h, {from.p.h, from.out.h, to.in.h, to.p.h});
            add_extremes(*v, {from.p.v, from.out.v, to.in.v, to.p.v});
        }
    }
    if (!h)
        return std::nullopt;
    return ArtBox{h->low, v->low, h->high, v->high};
}

} // namespace vnt::host
