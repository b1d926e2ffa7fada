#include "sketch/core/ink_line.h"

#include "sketch/core/resampling.h"

#include <algorithm>

namespace vnt::sketch {
namespace {

// Sheet pixels from the curve of a rounded step to its chords; and the most chords of one.
constexpr double kFlatness = 0.1;
constexpr double kMostChords = 64;

// Source: see the flattening of cubics in shape_outline.cpp.
int chords_of(const RoundedStep& bend)
{
    const Vec2 along = unit(bend.step);
    const Vec2 first = (1.0 / 3) * bend.first; // Bézier's arms
    const Vec2 second = (1.0 / 3) * bend.second;
    if (std::max(std::abs(cross(along, first)), std::abs(cross(along, second))) <= kFlatness)
        return 1;
    const double turn =
        std::max(length(bend.step - second - 2.0 * first), length(2.0 * second + first - bend.step));
    return static_cast<int>(std::clamp(std::ceil(std::sqrt(0.75 * turn / kFlatness)), 1.0, kMostChords));
}

// From one point of the clean ink to another, both among them.
InkLine line_between(const Ink& clean, std::size_t first, std::size_t last)
{
    Path path;
    path.reserve(clean.size());
    for (const InkPoint& point : clean)
        path.push_back({point.x, point.y});
    InkLine line;
    const auto add = [&](Vec2 place, double pressure) {
        line.places.push_back(place);
        line.pressures.push_back(static_cast<float>(pressure));
    };
    for (std::size_t i = first; i <= last; ++i) {
        add(path[i], clean[i].pressure);
        if (path.size() < 3 || i == last || !(distance(path[i], path[i + 1]) > kLongInkStep))
            continue;
        const RoundedStep bend = rounded_step(path, i);
        const int chords = chords_of(bend);
        for (int k = 1; k < chords; ++k) {
            const double t = static_cast<double>(k) / chords;
            add(bend.at(t), clean[i].pressure + t * (clean[i + 1].pressure - clean[i].pressure));
        }
    }
    line.places.shrink_to_fit();
    line.pressures.shrink_to_fit();
    return line;
}

// The ink with each point's number in the place of its time, which has no say in how ink is cleaned.
Ink numbered(const Ink& ink, std::size_t from, std::size_t to)
{
    Ink part(ink.begin() + static_cast<std::ptrdiff_t>(from), ink.begin() + static_cast<std::ptrdiff_t>(to));
    for (InkPoint& point : part)
        point.time_ms = static_cast<double>(from++);
    return part;
}

} // namespace

InkLine ink_line(const Ink& ink)
{
    const Ink clean = clean_ink(ink);
    return clean.empty() ? InkLine() : line_between(clean, 0, clean.size() - 1);
}

InkLine ink_line_part(const Ink& ink, std::size_t from, std::size_t to)
{
    const std::size_t begin = from - std::min(from, kAroundPart);
    const std::size_t end = std::min(ink.size(), to + kAroundPart);
    const Ink clean = clean_ink(numbered(ink, begin, end));
    if (clean.empty())
        return {};
    const auto at = [&](std::size_t number) { // or the next, or the last
        const auto found = std::find_if(clean.begin(), clean.end(), [&](const InkPoint& point) {
            return point.time_ms >= static_cast<double>(number);
        });
        return static_cast<std::size_t>(found - clean.begin()) - (found == clean.end() ? 1 : 0);
    };
    return line_between(clean, at(from), at(to));
}

} // namespace vnt::sketch
