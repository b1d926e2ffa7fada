#include "sketch/core/free_curve.h"

#include "sketch/core/corners.h"
#include "sketch/core/curve_fit.h"
#include "sketch/core/ink_line.h"
#include "sketch/core/resampling.h"

namespace vnt::sketch {
namespace {

// Of the path, at either end: a longer tail beyond where the ends meet was meant, and stays. No data: as far
// as ends may be from one another and still are meant to meet.
constexpr double kLongestTail = 0.05;

// Tolerances; between points that are no further apart a curve as sharp as a hand's is off the straight piece
// by one at most: a turn of 1 over a step of 8 has a height of 1.
constexpr double kLongFreeStep = 8;

// Tolerances, from the curve of a rounded step to its chords.
constexpr double kFreeFlatness = 0.1;

bool is_closed(const Signs& signs)
{
    // A chain's ends are joined where a curve's are.
    return signs.pieces.is_closed && signs.body.closing.before <= kLongestTail &&
           signs.body.closing.after <= kLongestTail;
}

// The path's places as they stand in the rounded path, which has all points of the path in their order.
std::vector<std::size_t> found_again(const Path& path, const std::vector<std::size_t>& places,
                                     const Path& rounded)
{
    std::vector<std::size_t> found;
    std::size_t at = 0;
    std::size_t next = 0;
    for (const std::size_t place : places) {
        for (; next <= place; ++next) {
            while (rounded[at] != path[next])
                ++at;
        }
        found.push_back(at);
    }
    return found;
}

} // namespace

Path rounded_for_free_curve(const Path& path, double tolerance)
{
    return with_long_steps_rounded(path, kLongFreeStep * tolerance, kFreeFlatness * tolerance);
}

Path free_curve_along(const Path& path, double tolerance)
{
    const Path rounded = rounded_for_free_curve(path, tolerance);
    return fit_curve(rounded, tolerance, found_again(path, find_corners(path), rounded));
}

Path free_curve_along(const Ink& ink, double tolerance)
{
    const Path path = clean_path(ink);
    const Path line = ink_line(ink).places;
    return fit_curve(line, tolerance, found_again(path, find_corners(path), line));
}

Curve free_curve_of(const Signs& signs, double tolerance)
{
    if (!is_closed(signs))
        return {free_curve_along(signs.path, tolerance), false};
    Path loop = with_ends_met(signs.path, signs.body.closing);
    const std::vector<std::size_t> corners = find_closed_corners(loop);
    loop.push_back(loop.front());
    Path rounded = rounded_for_free_curve(loop, tolerance);
    const std::vector<std::size_t> sharp = found_again(loop, corners, rounded);
    rounded.pop_back();
    return {fit_closed_curve(rounded, tolerance, sharp), true};
}

} // namespace vnt::sketch
