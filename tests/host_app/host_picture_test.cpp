// A drawing as it is seen: rendered by a program that knows nothing of us, and looked at pixel by pixel.
#include "tests/host_app/host_program.h"
#include "tests/host_app/trace_reading.h"
#include "tests/support/picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

namespace {

using host_app_test::ProgramEnd;
using host_app_test::Workplace;
using support::Picture;

// The page in pixels, of which a point is 4/3; the artwork's origin is its lower left corner. Room for the figure of
// the example answer, which lies in 600 x 400 points.
constexpr int kWidth = 800;
constexpr int kHeight = 540;
constexpr double kPxPerPt = 4.0 / 3.0;

constexpr const char* kPage =
    R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:inkscape="http://www.inkscape.org/namespaces/inkscape")"
    R"( xmlns:sodipodi="http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd" width="800" height="540">)"
    R"(<sodipodi:namedview><inkscape:grid type="xygrid" originx="0" originy="540"/></sodipodi:namedview></svg>)";

struct Spot {
    double x, y; // pixels, y down
};

Spot on_page(double h, double v) { return {h * kPxPerPt, kHeight - v * kPxPerPt}; }

// Points of all curves of all paths, less than a quarter of a pixel apart.
std::vector<Spot> spots_of(const std::vector<vnt::host::PathArt>& paths)
{
    std::vector<Spot> spots;
    for (const vnt::host::PathArt& path : paths) {
        for (std::size_t i = 1; i < path.size(); ++i) {
            const auto& [p0, in0, p1] = path[i - 1]; // the segment's end, and the handle towards the next
            const auto& [p3, p2, out3] = path[i];
            // No curve moves faster than three times its longest leg.
            const double leg =
                std::max({std::hypot(p1.h - p0.h, p1.v - p0.v), std::hypot(p2.h - p1.h, p2.v - p1.v),
                          std::hypot(p3.h - p2.h, p3.v - p2.v)});
            const int steps = static_cast<int>(std::ceil(3 * leg * kPxPerPt / 0.25)) + 1;
            for (int step = 0; step <= steps; ++step) {
                const double t = static_cast<double>(step) / steps;
                const double s = 1 - t;
                const double a = s * s * s;
                const double b = 3 * s * s * t;
                const double c = 3 * s * t * t;
                const double d = t * t * t;
                spots.push_back(on_page(a * p0.h + b * p1.h + c * p2.h + d * p3.h,
                                        a * p0.v + b * p1.v + c * p2.v + d * p3.v));
            }
        }
    }
    return spots;
}

// A line of 1 pt is 0.67 pixels to each side, and a pixel that it touches has its middle up to 0.71 farther away.
constexpr double kNear = 1.5;
// A pixel whose middle is not touched may have a little ink all the same; a line of 1 pt leaves more in some.
constexpr int kLeastInk = 64;
// A mitre of a corner is a spike of at most 4 times half the line's width.
constexpr double kSpike = 4 * 0.5 * kPxPerPt + 0.71;

// The pixels whose middles are within reach of a spot.
template <class Visit>
void visit_pixels(const Spot& spot, double reach, Visit visit)
{
    for (int y = static_cast<int>(spot.y - reach); y <= spot.y + reach; ++y) {
        for (int x = static_cast<int>(spot.x - reach); x <= spot.x + reach; ++x) {
            if (x >= 0 && y >= 0 && x < kWidth && y < kHeight &&
                std::hypot(x + 0.5 - spot.x, y + 0.5 - spot.y) <= reach)
                visit(x, y);
        }
    }
}

class RenderedDrawing : public testing::Test {
protected:
    void SetUp() override
    {
        if (std::string(VNT_RSVG_CONVERT).empty())
            GTEST_SKIP() << "rsvg-convert is missing (Debian: librsvg2-bin)";
        place.file("page.svg", kPage);
    }

    // Draws the example answer, and renders it to drawing.png.
    void draw_and_render()
    {
        ASSERT_EQ(place.run({"draw", VNT_ANSWERS "/every_primitive.xml", "--into", "DIR/page.svg", "-o",
                             "DIR/drawing.svg", "--trace", "DIR/trace.jsonl"}),
                  (ProgramEnd{0, "DIR/drawing.svg: 27 new paths\n", ""}));
        const std::string command = std::string(VNT_RSVG_CONVERT) + " -f png -o " +
                                    place.path("drawing.png") + " " + place.path("drawing.svg");
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
    }

    Workplace place;
};

TEST_F(RenderedDrawing, HasInkWhereTheFigureIsAndNowhereElse)
{
    draw_and_render();
    const Picture picture(place.path("drawing.png"));
    ASSERT_EQ(picture.width(), kWidth);
    ASSERT_EQ(picture.height(), kHeight);
    const auto paths = host_app_test::paths_of(place.content("trace.jsonl"));
    const std::vector<Spot> spots = spots_of(paths);
    ASSERT_GT(spots.size(), 10000U);

    std::vector<bool> is_near(static_cast<std::size_t>(kWidth * kHeight), false);
    const auto index = [](int x, int y) { return static_cast<std::size_t>(y * kWidth + x); };
    int without_ink = 0;
    for (const Spot& spot : spots) {
        int most = 0;
        visit_pixels(spot, kNear, [&](int x, int y) {
            is_near[index(x, y)] = true;
            most = std::max(most, picture.ink(x, y));
        });
        if (most < kLeastInk && without_ink++ == 0)
            ADD_FAILURE() << "no ink at " << spot.x << ", " << spot.y;
    }
    EXPECT_EQ(without_ink, 0);
    for (const auto& path : paths) {
        for (const auto& segment : path)
            visit_pixels(on_page(segment.p.h, segment.p.v), kSpike,
                         [&](int x, int y) { is_near[index(x, y)] = true; });
    }
    int astray = 0;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            if (picture.ink(x, y) >= kLeastInk && !is_near[index(x, y)] && astray++ == 0)
                ADD_FAILURE() << "ink at " << x << ", " << y;
        }
    }
    EXPECT_EQ(astray, 0);
}

// What the answer itself says, without a look at the paths: its first stroke is a circle, its 15th begins with a line.
TEST_F(RenderedDrawing, HasTheCircleAndTheLineOfTheAnswer)
{
    draw_and_render();
    const Picture picture(place.path("drawing.png"));
    const auto expect_ink = [&](double h, double v) {
        int most = 0;
        visit_pixels(on_page(h, v), kNear, [&](int x, int y) { most = std::max(most, picture.ink(x, y)); });
        EXPECT_GE(most, kLeastInk) << h << ", " << v;
    };
    for (int degrees = 0; degrees < 360; ++degrees) {
        const double angle = degrees * std::numbers::pi / 180;
        expect_ink(478 + 40 * std::cos(angle), 312 + 40 * std::sin(angle));
    }
    for (int v = 150; v <= 334; ++v)
        expect_ink(270, v);
    // The circle is not filled.
    visit_pixels(on_page(478, 312), 20,
                 [&](int x, int y) { EXPECT_EQ(picture.ink(x, y), 0) << x << ", " << y; });
}

} // namespace
