#include "benchmarks/free_strokes.h"

#include "benchmarks/hand_drawings.h"
#include "sketch/core/curve_fit.h"
#include "tests/geometry/seeded.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <stdexcept>

namespace bench {
namespace {

using vnt::sketch::kPi;
using vnt::sketch::Path;
using vnt::sketch::Vec2;

// Pixels; where a place is not so near, the search may have lost its way.
constexpr double kNear = 0.5;

// A hand whose curvature drifts and that slows down where it turns, in steps of about so many pixels, its
// places rounded to a grid.
Path wandering(Seeded& seeded, int count, double step, double grid)
{
    Path path;
    Vec2 at{400, 300};
    double heading = seeded.between(0, 2 * kPi);
    double curvature = 0; // radians a pixel
    for (int i = 0; i < count; ++i) {
        const Vec2 place{std::round(at.x / grid) * grid, std::round(at.y / grid) * grid};
        if (path.empty() || path.back() != place)
            path.push_back(place);
        curvature = 0.95 * curvature + seeded.between(-0.008, 0.008);
        const double taken = step / (1 + 20 * std::abs(curvature));
        heading += curvature * taken;
        at = at + taken * vnt::sketch::unit_at(heading);
    }
    return path;
}

// Loops and waves: two frequencies a direction, as in writing.
Path written(Seeded& seeded, int count, double grid)
{
    const double turns = seeded.between(2, 6);
    const double phase = seeded.between(0, kPi);
    const double size = seeded.between(15, 60);
    Path path;
    for (int i = 0; i < count; ++i) {
        const double t = 2 * kPi * turns * i / count;
        const Vec2 at{40 + 0.9 * size * t + size * std::cos(t),
                      200 + size * std::sin(t + phase) + 0.3 * size * std::sin(2 * t)};
        const Vec2 place{std::round(at.x / grid) * grid, std::round(at.y / grid) * grid};
        if (path.empty() || path.back() != place)
            path.push_back(place);
    }
    return path;
}

// The path with places no further apart than step, its points among them.
Path dense(const Path& path, double step)
{
    Path all{path.front()};
    for (std::size_t i = 1; i < path.size(); ++i) {
        const Vec2 from = path[i - 1];
        const auto pieces = static_cast<int>(std::ceil(distance(from, path[i]) / step));
        for (int k = 1; k <= pieces; ++k)
            all.push_back(from + (static_cast<double>(k) / pieces) * (path[i] - from));
    }
    return all;
}

Path flat(const Path& curve)
{
    constexpr int kPieces = 256; // a segment
    Path path;
    for (std::size_t i = 0; i + 3 < curve.size(); i += 4)
        for (int k = 0; k <= kPieces; ++k)
            path.push_back(point_of_cubic(&curve[i], static_cast<double>(k) / kPieces));
    return path;
}

// Each place is looked for about where the one before was found, not further than reach along the line; where
// that gives nothing near, along all of it.
double furthest(const Path& places, const Path& line, double reach)
{
    double most = 0;
    std::size_t found = 1;
    for (const Vec2 p : places) {
        double nearest = std::numeric_limits<double>::infinity();
        std::size_t best = found;
        const auto look_at = [&](std::size_t i) {
            const double off = distance_from_piece(p, line[i - 1], line[i]);
            if (off < nearest) {
                nearest = off;
                best = i;
            }
            return distance(line[i - 1], line[i]);
        };
        look_at(found);
        double way = 0;
        for (std::size_t i = found + 1; i < line.size() && way <= reach; ++i)
            way += look_at(i);
        way = 0;
        for (std::size_t i = found; i-- > 1 && way <= reach;)
            way += look_at(i);
        if (nearest > kNear) {
            for (std::size_t i = 1; i < line.size(); ++i)
                look_at(i);
        }
        found = best;
        most = std::max(most, nearest);
    }
    return most;
}

} // namespace

std::vector<StrokeSet> synthetic_strokes(std::size_t count)
{
    std::vector<StrokeSet> sets = {
        {"a pen, quarter pixels", {}},
        {"a mouse, whole pixels", {}},
        {"a slow mouse",          {}},
        {"writing, a pen",        {}},
        {"writing, a mouse",      {}},
    };
    Seeded seeded(1);
    for (std::size_t i = 0; i < count; ++i) {
        sets[0].paths.push_back(wandering(seeded, 200, 3, 0.25));
        sets[1].paths.push_back(wandering(seeded, 150, 6, 1));
        sets[2].paths.push_back(wandering(seeded, 400, 1.5, 1));
        sets[3].paths.push_back(written(seeded, 400, 0.25));
        sets[4].paths.push_back(written(seeded, 250, 1));
    }
    return sets;
}

void add_drawn_strokes(std::vector<StrokeSet>& sets, const std::string& file)
{
    std::map<std::string, StrokeSet> drawn;
    for (const HandDrawing& drawing : read_drawings(file)) {
        const Path path = clean_path(drawing.ink);
        if (path.size() < 2)
            continue;
        StrokeSet& set = drawn[drawing.label];
        set.name = "drawn: " + drawing.label;
        set.paths.push_back(path);
    }
    for (auto& [label, set] : drawn)
        sets.push_back(std::move(set));
}

Deviation deviation_of(const Path& points, const Path& path, const Path& curve)
{
    constexpr double kStep = 0.1;
    constexpr double kReach = 12; // more than a place goes on, less than a loop takes
    const Path line = flat(curve);
    Deviation off;
    off.of_points = furthest(points, line, kReach);
    off.of_path = furthest(dense(path, kStep), line, kReach);
    off.of_curve = furthest(dense(line, kStep), path, kReach);
    return off;
}

std::string take_option(std::vector<char*>& words, const std::string& name)
{
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (words[i] != name)
            continue;
        if (i + 1 == words.size())
            throw std::runtime_error(name + " needs a value");
        const std::string value = words[i + 1];
        const auto at = words.begin() + static_cast<std::ptrdiff_t>(i);
        words.erase(at, at + 2);
        return value;
    }
    return "";
}

} // namespace bench
