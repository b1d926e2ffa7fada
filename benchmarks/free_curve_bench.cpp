// Of how many cubics free curves are made, how far off they are, and how long that takes: fit_curve beside
// lib2geom's fitting, on the same strokes.
#include "sketch/core/free_curve.h"

#include "benchmarks/free_strokes.h"
#include "benchmarks/support.h"

#ifdef VNT_HAS_2GEOM
#include <2geom/bezier-utils.h>
#endif

#include <algorithm>
#include <cmath>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

namespace {

using bench::StrokeSet;
using vnt::sketch::Path;
using vnt::sketch::Vec2;

constexpr double kTolerance = 0.5; // view pixels

Path fit_here(const Path& path) { return free_curve_along(path, kTolerance); }

#ifdef VNT_HAS_2GEOM
Path fit_by_2geom(const Path& path)
{
    std::vector<Geom::Point> points;
    points.reserve(path.size());
    for (const Vec2 p : path)
        points.emplace_back(p.x, p.y);
    std::vector<Geom::Point> curve(4 * points.size());
    const int segments =
        Geom::bezier_fit_cubic_r(curve.data(), points.data(), static_cast<int>(points.size()),
                                 kTolerance * kTolerance, static_cast<unsigned>(points.size()));
    Path out;
    for (int i = 0; i < 4 * segments; ++i)
        out.push_back({curve[static_cast<std::size_t>(i)].x(), curve[static_cast<std::size_t>(i)].y()});
    return out;
}
#endif

struct Competitor {
    const char* name;
    Path (*fit)(const Path& path);
};

std::vector<Competitor> competitors()
{
    std::vector<Competitor> all = {
        {"fit_curve", fit_here}
    };
#ifdef VNT_HAS_2GEOM
    all.push_back({"bezier_fit_cubic_r", fit_by_2geom});
#endif
    return all;
}

std::string registered_name(const StrokeSet& set, const Competitor& competitor)
{
    return set.name + ", " + competitor.name;
}

void register_times(const std::vector<StrokeSet>& sets, const std::vector<Competitor>& all)
{
    for (const StrokeSet& set : sets) {
        for (const Competitor& competitor : all) {
            const auto fit_all = [&set, fit = competitor.fit](benchmark::State& state) {
                for (auto _ : state) {
                    for (const Path& path : set.paths) {
                        const Path curve = fit(path);
                        benchmark::DoNotOptimize(curve.data());
                    }
                }
            };
            benchmark::RegisterBenchmark(registered_name(set, competitor).c_str(), fit_all);
        }
    }
}

// What one competitor makes of a set.
struct Made {
    std::vector<std::size_t> cubics; // of each stroke
    std::size_t all_cubics = 0;
    double points_off = 0;
    double off = 0; // both ways, between the points as well
};

Made made_of(const StrokeSet& set, const Competitor& competitor)
{
    Made made;
    for (const Path& path : set.paths) {
        const Path curve = competitor.fit(path);
        const Path rounded = rounded_for_free_curve(path, kTolerance);
        const bench::Deviation off = bench::deviation_of(path, rounded, curve);
        made.cubics.push_back(curve.size() / 4);
        made.all_cubics += curve.size() / 4;
        made.points_off = std::max(made.points_off, off.of_points);
        made.off = std::max({made.off, off.of_path, off.of_curve});
    }
    return made;
}

void add_rows(bench::Table& table, const StrokeSet& set, const std::vector<Competitor>& all,
              const bench::Medians& seconds)
{
    const Made ours = made_of(set, all.front());
    for (const Competitor& competitor : all) {
        const bool is_ours = &competitor == &all.front();
        const Made made = is_ours ? ours : made_of(set, competitor);
        const double microseconds =
            seconds.of(registered_name(set, competitor)) * 1e6 / static_cast<double>(set.paths.size());
        std::size_t fewer = 0;
        for (std::size_t i = 0; i < set.paths.size(); ++i)
            fewer += made.cubics[i] < ours.cubics[i] ? 1U : 0U;
        const double share = static_cast<double>(ours.all_cubics) / static_cast<double>(made.all_cubics);
        // Rounding of the measurement's own: its chords and steps.
        const double measured = std::floor(made.off * 100 + 0.4) / 100;
        table.add({set.name, std::to_string(set.paths.size()), competitor.name,
                   std::to_string(made.all_cubics), is_ours ? "" : bench::at_most(share, 1.0),
                   is_ours ? "" : std::to_string(fewer), bench::fixed(made.points_off, 2),
                   is_ours ? bench::at_most(measured, kTolerance) : bench::fixed(measured, 2),
                   bench::fixed(microseconds, 0)});
    }
}

void run(int argc, char** argv)
{
    std::vector<char*> words(argv, argv + argc);
    const std::string file = bench::take_option(words, "--strokes");
    const bench::Effort effort =
        bench::start(static_cast<int>(words.size()), words.data(),
                     "Fits free curves to strokes, and to those that people drew (--strokes FILE, one JSON "
                     "object a line).");
    std::vector<StrokeSet> sets = bench::synthetic_strokes(effort == bench::Effort::smoke ? 2 : 40);
    if (file.empty())
        std::cerr << "no drawings are fitted: there is no --strokes FILE\n";
    else
        bench::add_drawn_strokes(sets, file);
    const std::vector<Competitor> all = competitors();
    register_times(sets, all);
    const bench::Medians seconds = bench::run_registered();
    std::cout << R"(## Free curves

Cubics within half a pixel of strokes; medians of the times. Strokes with few points are rounded between them first, as
the free curve of a stroke is. `bezier_fit_cubic_r` gets the points alone, and minds no others: "off, both ways" is
measured between them as well, against the rounded stroke. "Strokes of fewer" counts those of which it makes fewer cubics.

)";
    bench::Table table({"strokes", "count", "by", "cubics", "ours over theirs", "strokes of fewer",
                        "points off", "off, both ways", "µs a stroke"});
    for (const StrokeSet& set : sets)
        add_rows(table, set, all, seconds);
    std::cout << table.text();
}

} // namespace

int main(int argc, char** argv) { return bench::run_program(argc, argv, run); }
