// How fast and how exact arcs become cubics: conv_arc_to_bezier beside the plain cutting that it agrees with to
// the last bit, cairo and lib2geom.
#include "Source/geometry/arc_legs.h"
#include "Source/geometry/bezier.h"
#include "benchmarks/support.h"
#include "tests/geometry/plain_arc.h"
#include "tests/geometry/seeded.h"

#ifdef VNT_HAS_CAIRO
#include <cairo.h>
#endif
#ifdef VNT_HAS_2GEOM
#include <2geom/elliptical-arc.h>
#include <2geom/path.h>
#include <2geom/sbasis-to-bezier.h>
#endif

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <iostream>
#include <list>
#include <memory>
#include <string>
#include <vector>

namespace {

using vnt::Point;

constexpr double kPi = 3.141592653589793;

// About the origin.
struct Arc {
    double radius;
    double start;
    double end;
};
using Arcs = std::vector<Arc>;

using Points = std::vector<Point>;

// Converts an arc, and hands its segments over, 4 points each, where it is given a place for them.
using Way = std::function<void(const Arc&, double tolerance, Points* out)>;

struct Competitor {
    std::string name;
    Way convert;
    bool has_own_points; // no other one's
};

void by_list(const Arc& arc, double tolerance, Points* out)
{
    static const vnt::Matrix posture;
    const std::list<Point> points = vnt::conv_arc_to_bezier(Point(0.0, 0.0, 0.0), arc.radius, arc.radius,
                                                            arc.start, arc.end, posture, tolerance);
    benchmark::DoNotOptimize(&points);
    if (out != nullptr)
        out->assign(points.begin(), points.end());
}

// The legs alone, into an array that is there already.
void by_legs(const Arc& arc, double tolerance, Points* out)
{
    static vnt::Leg legs[8];
    vnt::ArcLegs walk(arc.radius, arc.radius, arc.start, arc.end, tolerance);
    int count = 0;
    while (count < 8 && walk.next(legs[count]))
        ++count;
    benchmark::DoNotOptimize(&legs);
    benchmark::ClobberMemory();
    if (out == nullptr)
        return;
    out->clear();
    for (int i = 0; i < count; ++i) {
        for (int k = 0; k < 4; ++k)
            out->emplace_back(legs[i].x[k], legs[i].y[k], 0.0);
    }
}

void by_plain_cutting(const Arc& arc, double tolerance, Points* out)
{
    static const vnt::Matrix posture;
    const auto points = plain::conv_arc_to_bezier(Point(0.0, 0.0, 0.0), arc.radius, arc.radius, arc.start,
                                                  arc.end, posture, tolerance);
    benchmark::DoNotOptimize(&points);
    if (out != nullptr)
        out->assign(points->begin(), points->end());
}

#ifdef VNT_HAS_CAIRO
class CairoPath {
public:
    CairoPath()
        : surface_(cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1), cairo_surface_destroy),
          context_(cairo_create(surface_.get()), cairo_destroy)
    {
    }

    // The path into the context.
    void draw(const Arc& arc, double tolerance)
    {
        if (cairo_get_tolerance(context_.get()) != tolerance)
            cairo_set_tolerance(context_.get(), tolerance);
        cairo_new_path(context_.get());
        cairo_arc(context_.get(), 0.0, 0.0, arc.radius, arc.start, arc.end);
    }

    // Its points in the caller's hands.
    void convert(const Arc& arc, double tolerance, Points* out)
    {
        draw(arc, tolerance);
        const std::unique_ptr<cairo_path_t, void (*)(cairo_path_t*)> path(cairo_copy_path(context_.get()),
                                                                          cairo_path_destroy);
        benchmark::DoNotOptimize(path.get());
        if (out != nullptr)
            read(*path, *out);
    }

private:
    static void read(const cairo_path_t& path, Points& out)
    {
        out.clear();
        Point at(0.0, 0.0, 0.0);
        for (int i = 0; i < path.num_data; i += path.data[i].header.length) {
            const cairo_path_data_t* const data = &path.data[i];
            const auto point = [data](int k) { return Point(data[k].point.x, data[k].point.y, 0.0); };
            if (data->header.type == CAIRO_PATH_CURVE_TO) {
                out.insert(out.end(), {at, point(1), point(2), point(3)});
                at = point(3);
            } else if (data->header.type == CAIRO_PATH_MOVE_TO) {
                at = point(1);
            }
        }
    }

    std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface_;
    std::unique_ptr<cairo_t, void (*)(cairo_t*)> context_;
};
#endif

#ifdef VNT_HAS_2GEOM
// An elliptical arc has two ends: a whole circle is two of them.
void by_2geom(const Arc& arc, double tolerance, Points* out)
{
    const bool whole = arc.end - arc.start >= 2 * kPi;
    const int pieces = whole ? 2 : 1;
    if (out != nullptr)
        out->clear();
    for (int i = 0; i < pieces; ++i) {
        const double span = (arc.end - arc.start) / pieces;
        const double start = arc.start + i * span;
        const Geom::EllipticalArc curve(Geom::Point::polar(start, arc.radius),
                                        Geom::Point(arc.radius, arc.radius), 0.0, !whole && span > kPi, true,
                                        Geom::Point::polar(start + span, arc.radius));
        const Geom::Path path = Geom::cubicbezierpath_from_sbasis(curve.toSBasis(), tolerance);
        benchmark::DoNotOptimize(&path);
        if (out == nullptr)
            continue;
        for (const Geom::Curve& segment : path) {
            const auto& cubic = dynamic_cast<const Geom::CubicBezier&>(segment);
            for (unsigned k = 0; k < 4; ++k)
                out->emplace_back(cubic[k].x(), cubic[k].y(), 0.0);
        }
    }
}
#endif

constexpr char kCairo[] = "cairo";

std::vector<Competitor> competitors()
{
    std::vector<Competitor> all = {
        {"conv_arc_to_bezier", by_list,          true },
        {"legs into an array", by_legs,          false},
        {"plain cutting",      by_plain_cutting, false},
    };
#ifdef VNT_HAS_CAIRO
    const auto cairo = std::make_shared<CairoPath>();
    const auto copied_out = [cairo](const Arc& arc, double tolerance, Points* out) {
        cairo->convert(arc, tolerance, out);
    };
    const auto left_inside = [cairo](const Arc& arc, double tolerance, Points* out) {
        if (out == nullptr)
            cairo->draw(arc, tolerance);
        else
            cairo->convert(arc, tolerance, out);
    };
    all.push_back({kCairo, copied_out, true});
    all.push_back({"cairo, not copied out", left_inside, false});
#endif
#ifdef VNT_HAS_2GEOM
    all.push_back({"lib2geom", by_2geom, true});
#endif
    return all;
}

// The largest distance from the circle, in radii.
double radial_error(const Arc& arc, const Points& points)
{
    double largest = 0.0;
    for (std::size_t first = 0; first + 3 < points.size(); first += 4) {
        const std::list<Point> segment(points.begin() + static_cast<std::ptrdiff_t>(first),
                                       points.begin() + static_cast<std::ptrdiff_t>(first) + 4);
        for (int i = 0; i <= 32; ++i) {
            const Point p = de_casteljau(segment, i / 32.0).back().front();
            largest = std::max(largest, std::abs(std::hypot(p.x, p.y) - arc.radius) / arc.radius);
        }
    }
    return largest;
}

struct Load {
    const char* name;
    double tolerance;
    Arcs arcs;
    double times_cairo; // the target; 0: none
    double finer_than_cairo;
};

// From where arcs are still cut (√2) to the size of a page.
constexpr double kLeastRadius = 1.5;
constexpr double kLargestRadius = 2000.0;

Arcs seeded_arcs(std::size_t count, bool whole)
{
    Seeded seeded(1);
    Arcs arcs;
    for (std::size_t i = 0; i < count; ++i) {
        const double radius = seeded.octaves_between(kLeastRadius, kLargestRadius);
        const double start = whole ? 0.0 : seeded.between(-kPi, kPi);
        arcs.push_back({radius, start, start + (whole ? 2 * kPi : seeded.between(0.1, 6.2))});
    }
    return arcs;
}

void convert_all(benchmark::State& state, const Load& load, const Way& convert)
{
    for (auto _ : state) {
        for (const Arc& arc : load.arcs)
            convert(arc, load.tolerance, nullptr);
    }
}

constexpr char kListsAlone[] = "lists alone";

// What any list costs that holds as many points as the arcs of a load.
void build_lists(benchmark::State& state, const Load& load)
{
    std::vector<Points> points(load.arcs.size());
    for (std::size_t i = 0; i < points.size(); ++i)
        by_list(load.arcs[i], load.tolerance, &points[i]);
    for (auto _ : state) {
        for (const Points& each : points) {
            std::list<Point> list;
            for (const Point& point : each)
                list.push_back(point);
            benchmark::DoNotOptimize(&list);
        }
    }
}

std::string registered_name(const Load& load, const std::string& competitor)
{
    return std::string(load.name) + ", " + competitor;
}

struct Result {
    double nanoseconds = 0.0;
    double segments = 0.0; // an arc
    double error = 0.0;    // the largest, in radii
};

Result result_of(const Load& load, const Competitor& competitor, const bench::Medians& seconds)
{
    const auto count = static_cast<double>(load.arcs.size());
    Result result;
    Points points;
    for (const Arc& arc : load.arcs) {
        competitor.convert(arc, load.tolerance, &points);
        result.segments += static_cast<double>(points.size()) / 4.0 / count;
        result.error = std::max(result.error, radial_error(arc, points));
    }
    result.nanoseconds = seconds.of(registered_name(load, competitor.name)) * 1e9 / count;
    return result;
}

std::string scientific(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2e", value);
    return text;
}

void add_rows(bench::Table& table, const Load& load, const std::vector<Competitor>& all,
              const bench::Medians& seconds)
{
    std::vector<Result> results;
    const Result* cairo = nullptr;
    results.reserve(all.size());
    for (const Competitor& competitor : all) {
        results.push_back(result_of(load, competitor, seconds));
        if (competitor.name == kCairo)
            cairo = &results.back();
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
        const Result& result = results[i];
        std::vector<std::string> row{load.name,
                                     all[i].name,
                                     bench::fixed(result.nanoseconds, 0),
                                     bench::fixed(result.segments, 2),
                                     scientific(result.error),
                                     "",
                                     ""};
        if (cairo != nullptr) {
            const auto judged = [i](double value, double target) {
                return i == 0 && target > 0.0 ? bench::at_least(value, target) : bench::fixed(value, 2);
            };
            row[5] = judged(cairo->nanoseconds / result.nanoseconds, load.times_cairo);
            row[6] = judged(cairo->error / result.error, load.finer_than_cairo);
        }
        table.add(row);
    }
    const double lists =
        seconds.of(registered_name(load, kListsAlone)) * 1e9 / static_cast<double>(load.arcs.size());
    table.add({load.name, kListsAlone, bench::fixed(lists, 0), "", "", "", ""});
}

// How far whole circles are off, which errors in radii hide.
std::string errors_by_radius(const std::vector<Competitor>& all)
{
    std::vector<std::string> header{"radius, tolerance"};
    for (const Competitor& competitor : all) {
        if (competitor.has_own_points)
            header.push_back(competitor.name);
    }
    bench::Table table(header);
    for (const double radius : {2.0, 20.0, 200.0, 2000.0}) {
        for (const double tolerance : {1.0, 0.01}) {
            std::vector<std::string> row{bench::fixed(radius, 0) + ", " + bench::fixed(tolerance, 2)};
            const Arc circle{radius, 0.0, 2 * kPi};
            Points points;
            for (const Competitor& competitor : all) {
                if (!competitor.has_own_points)
                    continue;
                competitor.convert(circle, tolerance, &points);
                row.push_back(scientific(radial_error(circle, points) * radius));
            }
            table.add(row);
        }
    }
    return table.text();
}

void run(int argc, char** argv)
{
    const bench::Effort effort = bench::start(argc, argv, "Converts arcs to cubic Bézier segments.");
    const std::size_t count = effort == bench::Effort::smoke ? 16 : 1024;
    const std::vector<Load> loads = {
        {"whole circles, tolerance 1",    1.0,  seeded_arcs(count, true),  1.7, 50.0},
        {"whole circles, tolerance 0.01", 0.01, seeded_arcs(count, true),  1.7, 4.0 },
        {"partial arcs, tolerance 1",     1.0,  seeded_arcs(count, false), 1.0, 50.0},
        {"partial arcs, tolerance 0.01",  0.01, seeded_arcs(count, false), 1.0, 4.0 },
    };
    const std::vector<Competitor> all = competitors();
    for (const Load& load : loads) {
        for (const Competitor& competitor : all)
            benchmark::RegisterBenchmark(registered_name(load, competitor.name).c_str(), convert_all, load,
                                         competitor.convert);
        benchmark::RegisterBenchmark(registered_name(load, kListsAlone).c_str(), build_lists, load);
    }
    const bench::Medians seconds = bench::run_registered();

    std::cout << R"(## Arcs

Radii from 1.5 to 2000, every octave as likely; partial arcs of 0.1 to 6.2 radians; medians. The list of
`conv_arc_to_bezier` is built and freed; cairo's points are copied out, as a caller gets them. "Lists alone" is what
`std::list` takes for as many points: what returns one cannot be faster. "Legs into an array" is the cutting without the
list, "plain cutting" what the tests compare it with, to the same bits. Errors are distances from the circle in radii,
the largest of all arcs. At tolerance 1 cairo draws half of a circle below radius 54 as one segment; a list of four legs
alone takes more than half of cairo's time then, so that the target for whole circles is met at tolerance 0.01 only.
Targets are judged against the points copied out.

)";
    bench::Table table({"arcs", "by", "ns an arc", "segments an arc", "radial error", "times cairo's speed",
                        "times finer than cairo"});
    for (const Load& load : loads)
        add_rows(table, load, all, seconds);
    std::cout << table.text() << R"(
Distances from whole circles in model units. Where the tolerance asks for it, cairo and lib2geom take more segments; a
leg is always a quarter.

)" << errors_by_radius(all);
}

} // namespace

int main(int argc, char** argv) { return bench::run_program(argc, argv, run); }
