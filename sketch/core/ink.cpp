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

Vec2 place_of(const InkPoint& point) { return {point.x, point.y}; }

double distance(const InkPoint& a, const InkPoint& b) { return sketch::distance(place_of(a), place_of(b)); }

// The longest of the steps about point i, without the two at the point itself. 0: there are none.
double longest_step_about(const Ink& ink, std::size_t i)
{
    double longest = 0;
    for (std::size_t k = i > kNeighbours + 1 ? i - kNeighbours - 1 : 0; k + 1 < i; ++k)
        longest = std::max(longest, distance(ink[k], ink[k + 1]));
    for (std::size_t k = i + 1; k + 1 < ink.size() && k <= i + kNeighbours; ++k)
        longest = std::max(longest, distance(ink[k], ink[k + 1]));
    return longest;
}

bool is_spike(const Ink& ink, std::size_t i)
{
    const double out = distance(ink[i - 1], ink[i]);
    const double back = distance(ink[i], ink[i + 1]);
    const double usual = longest_step_about(ink, i);
    const double on = distance(ink[i - 1], ink[i + 1]);
    return usual > 0 && std::min(out, back) > kSpikeStep * usual && on <= 2 * usual;
}

bool is_new(const InkPoint& point, const Ink& before)
{
    return before.empty() || place_of(before.back()) != place_of(point);
}

} // namespace

Ink clean_ink(const Ink& ink)
{
    Ink places;
    places.reserve(ink.size());
    for (const InkPoint& point : ink) {
        if (is_finite_place(point) && is_new(point, places))
            places.push_back(point);
    }
    Ink kept;
    kept.reserve(places.size());
    for (std::size_t i = 0; i < places.size(); ++i) {
        const bool is_end = i == 0 || i + 1 == places.size();
        if ((is_end || !is_spike(places, i)) && is_new(places[i], kept))
            kept.push_back(places[i]);
    }
    return kept;
}

Path clean_path(const Ink& ink)
{
    const Ink clean = clean_ink(ink);
    Path path;
    path.reserve(clean.size());
    for (const InkPoint& point : clean)
        path.push_back(place_of(point));
    return path;
}

} // namespace vnt::sketch
