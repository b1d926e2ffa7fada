// How fast a hand-drawn line becomes a smooth curve, of how many segments, and how far off: conv_free_to_bezier
// beside lib2geom's fitting.
#include "Source/geometry/bezier.h"
#include "Source/geometry/curve_fitting.h"
#include "benchmarks/support.h"
#include "tests/geometry/seeded.h"

#ifdef VNT_HAS_2GEOM
#include <2geom/bezier-utils.h>
#endif

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <iostream>
#include <limits>
#include <list>
#include <string>
#include <utility>
#include <vector>

namespace {

using vnt::Point;
using Points = std::vector<Point>;

// Model units; a pen's pixel is about one.
constexpr double kTolerance = 1.0;

// A pen that wanders: its curvature drifts, it slows down where it turns, and its positions come in quarters of
// a pixel.
Points hand_drawn(std::size_t count)
{
    Seeded seeded(1);
    Points points;
    double x = 0.0;
    double y = 0.0;
    double heading = 0.0;
    double curvature = 0.0; // radians a unit
    for (std::size_t i = 0; i < count; ++i) {
        points.emplace_back(std::round(4.0 * x) / 4.0, std::round(4.0 * y) / 4.0, 0.0);
        curvature = 0.97 * curvature + seeded.between(-0.01, 0.01);
        const double step = 2.5 / (1.0 + 20.0 * std::abs(curvature));
        heading += curvature * step;
        x += step * std::cos(heading);
        y += step * std::sin(heading);
    }
    return points;
}

// Fits, and hands the segments over, 4 points each, where it is given a place for them.
using Fit = std::function<void(Points* out)>;

Fit fit_here(const Points& line)
{
    return [list = std::list<Point>(line.begin(), line.end())](Points* out) {
        const std::list<Point> curve = vnt::conv_free_to_bezier(list, kTolerance);
        benchmark::DoNotOptimize(&curve);
        if (out != nullptr)
            out->assign(curve.begin(), curve.end());
    };
}

#ifdef VNT_HAS_2GEOM
Fit fit_by_2geom(const Points& line)
{
    std::vector<Geom::Point> points;
    for (const Point& point : line)
        points.emplace_back(point.x, point.y);
    return [points, curve = std::vector<Geom::Point>(4 * line.size())](Points* out) mutable {
        const int segments =
            Geom::bezier_fit_cubic_r(curve.data(), points.data(), static_cast<int>(points.size()),
                                     kTolerance * kTolerance, static_cast<unsigned>(points.size()));
        benchmark::DoNotOptimize(curve.data());
        if (out == nullptr)
            return;
        out->clear();
        for (int i = 0; i < 4 * segments; ++i)
            out->emplace_back(curve[static_cast<std::size_t>(i)].x(), curve[static_cast<std::size_t>(i)].y(),
                              0.0);
    };
}
#endif

struct Competitor {
    const char* name;
    Fit (*prepare)(const Points& line);
};

std::vector<Competitor> competitors()
{
    std::vector<Competitor> all = {
        {"conv_free_to_bezier", fit_here}
    };
#ifdef VNT_HAS_2GEOM
    all.push_back({"bezier_fit_cubic_r", fit_by_2geom});
#endif
    return all;
}

double distance_from_chord(const Point& p, const Point& a, const Point& b)
{
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double square = dx * dx + dy * dy;
    const double t =
        square > 0.0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / square, 0.0, 1.0) : 0.0;
    return std::hypot(a.x + t * dx - p.x, a.y + t * dy - p.y);
}

// The largest distance of a sample from the curve where it runs at that time, not where it comes by later: each
// sample is looked for about where the one before was found.
double largest_deviation(const Points& line, const Points& curve)
{
    constexpr int kChords = 16;             // a segment
    constexpr std::size_t kAhead = kChords; // more than a sample goes on, less than a loop takes
    constexpr std::size_t kBack = kAhead;
    Points flat;
    for (std::size_t first = 0; first + 3 < curve.size(); first += 4) {
        const auto begin = curve.begin() + static_cast<std::ptrdiff_t>(first);
        const std::list<Point> segment(begin, begin + 4);
        for (int i = 0; i <= kChords; ++i)
            flat.push_back(de_casteljau(segment, static_cast<double>(i) / kChords).back().front());
    }
    double largest = 0.0;
    std::size_t found = 0;
    for (const Point& p : line) {
        double nearest = std::numeric_limits<double>::infinity();
        const std::size_t begin = found < kBack ? 0 : found - kBack;
        const std::size_t end = std::min(found + kAhead, flat.size() - 1);
        for (std::size_t i = begin; i < end; ++i) {
            const double distance = distance_from_chord(p, flat[i], flat[i + 1]);
            if (distance < nearest) {
                nearest = distance;
                found = i;
            }
        }
        largest = std::max(largest, nearest);
    }
    return largest;
}

void fit_line(benchmark::State& state, const Fit& fit)
{
    for (auto _ : state)
        fit(nullptr);
}

std::string registered_name(std::size_t points, const Competitor& competitor)
{
    return std::to_string(points) + " points, " + competitor.name;
}

void add_rows(bench::Table& table, const Points& line, const std::vector<Competitor>& all,
              const bench::Medians& seconds)
{
    const double ours = seconds.of(registered_name(line.size(), all.front()));
    for (const Competitor& competitor : all) {
        Points curve;
        competitor.prepare(line)(&curve);
        const double taken = seconds.of(registered_name(line.size(), competitor));
        const auto points = static_cast<double>(line.size());
        table.add({bench::fixed(points, 0) + " points", competitor.name, bench::fixed(taken * 1e6, 1),
                   bench::fixed(taken * 1e9 / points, 1),
                   bench::fixed(static_cast<double>(curve.size()) / 4.0, 0),
                   bench::fixed(largest_deviation(line, curve), 2),
                   &competitor == &all.front() ? "" : bench::at_least(taken / ours, 20.0)});
    }
}

void run(int argc, char** argv)
{
    const bench::Effort effort = bench::start(argc, argv, "Fits curves to hand-drawn lines.");
    std::vector<Points> lines;
    for (const std::size_t count : {std::size_t{200}, std::size_t{10000}, std::size_t{100000}}) {
        if (effort != bench::Effort::smoke || lines.empty())
            lines.push_back(hand_drawn(count));
    }
    const std::vector<Competitor> all = competitors();
    for (const Points& line : lines) {
        for (const Competitor& competitor : all)
            benchmark::RegisterBenchmark(registered_name(line.size(), competitor).c_str(), fit_line,
                                         competitor.prepare(line));
    }
    const bench::Medians seconds = bench::run_registered();

    std::cout << R"(## Curve fitting

Lines as a pen draws them, tolerance 1; medians. Deviations are the samples' from the curve. This fitting is fast, not
frugal: it goes through the samples once, and where it merges it compares three points, so that a sample between may come
to lie some tolerances away. `bezier_fit_cubic_r` measures every sample again and again.

)";
    bench::Table table({"line", "by", "µs", "ns a point", "segments", "largest deviation",
                        "`conv_free_to_bezier` is faster, times"});
    for (const Points& line : lines)
        add_rows(table, line, all, seconds);
    std::cout << table.text();
}

} // namespace

int main(int argc, char** argv) { return bench::run_program(argc, argv, run); }
