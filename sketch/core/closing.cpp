#include "sketch/core/closing.h"

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
    const double around = path_length(closing.loop, true);
    closing.gap = around > 0 ? distance(closing.loop.front(), closing.loop.back()) / around : 1;
    return closing;
}

} // namespace vnt::sketch
