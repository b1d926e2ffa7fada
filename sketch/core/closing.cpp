#include "sketch/core/closing.h"

#include "sketch/core/resampling.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace vnt::sketch {
namespace {

// Of the path's length, at each end: what stands over is not longer.
constexpr double kMostLeftOut = 0.16;

// The ends have to come this much nearer for each bit of path that is left out: 0 would leave out anything, 1
// nothing that runs straight towards the other end.
constexpr double kPriceOfLeavingOut = 0.4;

// Of the distance between the path's own ends; leaving out has to bring them at least so much nearer.
constexpr double kWorthLeavingOut = 0.5;

// Of the gap: over so long a way each end is bent by half of it, which turns it by less than 8°.
constexpr double kBendOverGap = 6;
// Of the path, at most; a longer gap turns its ends more.
constexpr double kLongestBend = 0.25;

// From 1 at the end to 0, evenly at both; way: from the end.
double ease(double way, double over)
{
    const double u = over > 0 ? 1 - way / over : 0;
    return u > 0 ? u * u * (3 - 2 * u) : 0;
}

} // namespace

Closing close_path(const Path& even)
{
    if (even.size() < 3)
        return {even, 1};
    const auto most = static_cast<std::size_t>(kMostLeftOut * static_cast<double>(even.size()));
    const double step = path_length(even) / static_cast<double>(even.size() - 1);
    std::size_t best_first = 0;
    std::size_t best_last = even.size() - 1;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t first = 0; first <= most; ++first) {
        for (std::size_t left = 0; left <= most; ++left) {
            const std::size_t last = even.size() - 1 - left;
            const double price = distance(even[first], even[last]) +
                                 kPriceOfLeavingOut * step * static_cast<double>(first + left);
            if (price < least) {
                least = price;
                best_first = first;
                best_last = last;
            }
        }
    }
    if (distance(even[best_first], even[best_last]) >
        kWorthLeavingOut * distance(even.front(), even.back())) {
        best_first = 0;
        best_last = even.size() - 1;
    }
    Closing closing;
    closing.loop.assign(even.begin() + static_cast<std::ptrdiff_t>(best_first),
                        even.begin() + static_cast<std::ptrdiff_t>(best_last) + 1);
    const auto steps = static_cast<double>(even.size() - 1);
    closing.before = static_cast<double>(best_first) / steps;
    closing.after = 1 - static_cast<double>(best_last) / steps;
    const double around = path_length(closing.loop, true);
    closing.gap = around > 0 ? distance(closing.loop.front(), closing.loop.back()) / around : 1;
    return closing;
}

Path with_ends_met(const Path& path, const Closing& closing)
{
    const double whole = path_length(path);
    Path loop = part_of(path, closing.before * whole, (1 - closing.after) * whole);
    if (loop.size() < 3)
        return loop;
    const Vec2 gap = loop.front() - loop.back();
    const double length_left = path_length(loop);
    const double over = std::min(kBendOverGap * length(gap), kLongestBend * length_left);
    double passed = 0;
    Vec2 before = loop.front();
    for (Vec2& place : loop) {
        passed += distance(before, place);
        before = place;
        place = place + (0.5 * ease(length_left - passed, over) - 0.5 * ease(passed, over)) * gap;
    }
    loop.pop_back(); // it has met the first one
    return loop;
}

} // namespace vnt::sketch
