#include "sketch/core/ink.h"

#include <algorithm>

namespace vnt::sketch {
namespace {

// Times the longest step of the neighbourhood; above it a step out and back is a spike. A pen that turns
// sharply slows down, a finger that is hit by a palm for one sample jumps.
constexpr double kSpikeStep = 4.0;

// Steps on either side of a point that tell how far a step is here.
constexpr std::size_t kNeighbours = 3;

bool is_finite_place(const InkPoint& point)
{
    return std::abs(point.x) <= kFarthest && std::abs(point.y) <= kFarthest; // false for NaN
}

// The longest of the steps about point i, without the two at the point itself. 0: there are none.
double longest_step_about(const Path& path, std::size_t i)
{
    double longest = 0;
    for (std::size_t k = i > kNeighbours + 1 ? i - kNeighbours - 1 : 0; k + 1 < i; ++k)
        longest = std::max(longest, distance(path[k], path[k + 1]));
    for (std::size_t k = i + 1; k + 1 < path.size() && k <= i + kNeighbours; ++k)
        longest = std::max(longest, distance(path[k], path[k + 1]));
    return longest;
}

bool is_spike(const Path& path, std::size_t i)
{
    const double out = distance(path[i - 1], path[i]);
    const double back = distance(path[i], path[i + 1]);
    const double usual = longest_step_about(path, i);
    const double on = distance(path[i - 1], path[i + 1]);
    return usual > 0 && std::min(out, back) > kSpikeStep * usual && on <= 2 * usual;
}

} // namespace

Path clean_path(const Ink& ink)
{
    Path path;
    path.reserve(ink.size());
    for (const InkPoint& point : ink) {
        const Vec2 place{point.x, point.y};
        if (is_finite_place(point) && (path.empty() || path.back() != place))
            path.push_back(place);
    }
    Path kept;
    kept.reserve(path.size());
    for (std::size_t i = 0; i < path.size(); ++i) {
        const bool is_end = i == 0 || i + 1 == path.size();
        if ((is_end || !is_spike(path, i)) && (kept.empty() || kept.back() != path[i]))
            kept.push_back(path[i]);
    }
    return kept;
}

} // namespace vnt::sketch
