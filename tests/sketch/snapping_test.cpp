#include "sketch/core/snapping.h"

#include "tests/sketch/snap_cases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <limits>

namespace {

using namespace snaps;

const double kLong = 100 * std::cos(2 * kDegree); // what a line of 100 is long along its nearest step
// clang-format off
const SnapCase kLines[] = {
    {"BothEndsGoToWhatIsThere", Kind::line, line({3, 4}, {97, 52}), {place({0, 0}), place({100, 50})}, 0, line({0, 0}, {100, 50}), "end, end"},
    {"AnEndGoesToTheGrid",      Kind::line, line({3, 4}, {97, 52}), {}, 100, line({0, 0}, {97, 52}), "grid crossing", false},
    {"WhatIsDrawnComesBeforeTheGrid", Kind::line, line({3, 4}, {97, 52}), {place({7, 4})}, 100, line({7, 4}, {97, 52}), "end", false},
    {"AFreeLineTurnsToAStep",   Kind::line, line(-50 * unit_at(2 * kDegree), 50 * unit_at(2 * kDegree)), {}, 0, line({-kLong / 2, 0}, {kLong / 2, 0}), "angle"},
    {"AHeldLineTurnsAboutItsEnd", Kind::line, line({1, 0}, 100 * unit_at(2 * kDegree)), {place({0, 0})}, 0, line({0, 0}, {kLong, 0}), "end, angle"},
    {"AHeldLineDoesNotTurn",    Kind::line, line({0, 0}, {300, 8}), {place({0, 0}), place({300, 9})}, 0, line({0, 0}, {300, 9}), "end, end"},
    {"FourDegreesStayAsTheyAre", Kind::line, line({0, 0}, 100 * unit_at(4 * kDegree)), {}, 0, line({0, 0}, 100 * unit_at(4 * kDegree)), ""},
    {"BeyondReachItStays",      Kind::line, line({9, 0}, 100 * unit_at(5 * kDegree)), {place({0, 0})}, 0, line({9, 0}, 100 * unit_at(5 * kDegree)), ""},
    {"OfTwoEndsTheNearerGoes",  Kind::line, line({-6, 1}, {4, -1}), {place({0, 0})}, 0, line({-6, 1}, {0, 0}), "end"},
    {"ToACrossing",             Kind::line, line({52, 47}, {80, 0}), {line({0, 0}, {100, 100}), line({100, 0}, {0, 100})}, 0, line({50, 50}, {80, 0}), "intersection", false},
    {"ToTheCentreOfACircle",    Kind::line, line({52, 47}, {80, 0}), {circle({50, 50}, 30)}, 0, line({50, 50}, {80, 0}), "centre", false},
    {"NotToTheInsideOfACurve",  Kind::line, line({50, 1}, {80, 77}), {Curve{{{0, 0}, {30, 0}, {60, 0}, {100, 0}}, false}}, 0, line({50, 1}, {80, 77}), ""},
};

const SnapCase kCorners[] = {
    {"EachCornerOfAPolyline",   Kind::polyline, open({{3, 3}, {52, 38}, {103, 2}}), {place({0, 0}), place({50, 40}), place({100, 0})}, 0, open({{0, 0}, {50, 40}, {100, 0}}), "end, end, end"},
    {"SomeCornersOfAPolyline",  Kind::polyline, open({{3, 3}, {52, 38}, {110, 9}}), {place({50, 40})}, 0, open({{3, 3}, {50, 40}, {110, 9}}), "end", false},
    {"ALongPolylineMayClose",   Kind::polyline, open({{3, 3}, {60, 20}, {50, 90}, {-3, 3}}), {place({0, 0})}, 0, open({{0, 0}, {60, 20}, {50, 90}, {0, 0}}), "end, end", false},
    {"AVStaysOpen",             Kind::polyline, open({{3, 3}, {41, 92}, {-3, 4}}), {place({0, 0})}, 0, open({{0, 0}, {41, 92}, {-3, 4}}), "end"},
    {"EachCornerOfATriangle",   Kind::triangle, closed({{3, 3}, {98, 4}, {40, 77}}), {}, 50, closed({{0, 0}, {100, 0}, {40, 77}}), "grid crossing, grid crossing", false},
    {"ATrianglesCornersKeepApart", Kind::triangle, closed({{-4, 0}, {3, 1}, {1, 40}}), {place({0, 0})}, 0, closed({{-4, 0}, {0, 0}, {1, 40}}), "end", false},
    // All three to the line y = 0 would leave nothing of it.
    {"ATriangleKeepsAnArea",    Kind::triangle, closed({{0, 1}, {100, 1}, {50, 7}}), {place({0, 0}), place({100, 0}), place({50, 0})}, 0, closed({{0, 0}, {100, 0}, {50, 7}}), "end, end"},
    {"ASmallSideKeepsAQuarter", Kind::polyline, open({{-1, 0}, {1, 0}, {2, 77}}), {place({0, 0}), place({0.2, 0})}, 0, open({{-1, 0}, {0.2, 0}, {2, 77}}), "end", false},
    {"ARightAngleOfAPolyline",  Kind::polyline, open({{0, 0}, {100, 2}, {98, 102}}), {}, 0, open({{0, 1}, {99, 1}, {99, 102}}), "angle, angle"},
    {"AHeldCornerIsTurnedAbout", Kind::polyline, open({{0, 0}, {100, 2}, {98, 102}}), {place({100, 0})}, 0, open({{0, 0}, {100, 0}, {100, 102}}), "end, angle, angle"},
    {"EachCornerOfAnUnevenPolygon", Kind::polygon, closed({{3, 3}, {98, 4}, {130, 60}, {60, 110}, {-20, 60}}), {place({0, 0}), place({130, 55})}, 0, closed({{0, 0}, {98, 4}, {130, 55}, {60, 110}, {-20, 60}}), "end, end", false},
};

const SnapCase kRectangles[] = {
    {"GoesToTheGridWithAllCorners", Kind::rectangle, closed({{3, 4}, {98, 4}, {98, 52}, {3, 52}}), {}, 10, closed({{0, 0}, {100, 0}, {100, 50}, {0, 50}}), "grid crossing, grid crossing, grid crossing, grid crossing"},
    {"GoesWholeToOnePlace",     Kind::rectangle, closed({{3, 4}, {98, 4}, {98, 52}, {3, 52}}), {place({5, 5})}, 0, closed({{5, 5}, {100, 5}, {100, 53}, {5, 53}}), "end, angle"},
    {"IsStretchedBetweenTwo",   Kind::rectangle, closed({{3, 4}, {98, 4}, {98, 52}, {3, 52}}), {place({0, 0}), place({104, 55})}, 0, closed({{0, 0}, {104, 0}, {104, 55}, {0, 55}}), "end, end, angle"},
    {"LiesOnASide",             Kind::rectangle, closed({{3, 4}, {98, 4}, {98, 54}, {3, 54}}), {place({0, 0}), place({100, 0})}, 0, closed({{0, 0}, {100, 0}, {100, 50}, {0, 50}}), "end, end, angle"},
    {"LiesOnASideThatLeans",    Kind::rectangle, closed({{0, 0}, {50, 0}, {50, 30}, {0, 30}}), {place({0, 0}), place({50, 5})}, 0, closed({{0, 0}, {50, 5}, Vec2{50, 5} + 30 * unit({-5, 50}), 30 * unit({-5, 50})}), "end, end"},
    {"TurnsToAStep",            Kind::rectangle, closed({50 * unit_at(27 * kDegree), 50 * unit_at(97 * kDegree), 50 * unit_at(207 * kDegree), 50 * unit_at(277 * kDegree)}), {}, 0, closed({50 * unit_at(25 * kDegree), 50 * unit_at(95 * kDegree), 50 * unit_at(205 * kDegree), 50 * unit_at(275 * kDegree)}), "angle"},
    {"GoesToACentre",           Kind::rectangle, closed({{-47, -28}, {53, -28}, {53, 32}, {-47, 32}}), {place({0, 0})}, 0, closed({{-50, -30}, {50, -30}, {50, 30}, {-50, 30}}), "end, angle"},
};

const SnapCase kForms[] = {
    {"ASquareOnTheGrid",        Kind::square, closed({{3, 4}, {98, 4}, {98, 99}, {3, 99}}), {}, 10, closed({{0, 0}, {100, 0}, {100, 100}, {0, 100}}), "grid crossing, grid crossing, grid crossing, grid crossing"},
    {"ASquareOnTwoPlaces",      Kind::square, closed({{0, 0}, {100, 0}, {100, 100}, {0, 100}}), {place({0, 0}), place({104, 3})}, 0, closed({{0, 0}, {104, 3}, {101, 107}, {-3, 104}}), "end, end"},
    {"ASquareOnItsDiagonal",    Kind::square, closed({{1, 1}, {101, 1}, {101, 101}, {1, 101}}), {place({0, 0}), place({104, 104})}, 0, closed({{0, 0}, {104, 0}, {104, 104}, {0, 104}}), "end, end, angle"},
    {"ATinySquareStays",        Kind::square, closed({{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}), {}, 0, closed({{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}), "angle"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Line, Snapping, testing::ValuesIn(kLines), kName);
INSTANTIATE_TEST_SUITE_P(Corners, Snapping, testing::ValuesIn(kCorners), kName);
INSTANTIATE_TEST_SUITE_P(Rectangle, Snapping, testing::ValuesIn(kRectangles), kName);
INSTANTIATE_TEST_SUITE_P(Form, Snapping, testing::ValuesIn(kForms), kName);

struct PointCase {
    const char* name;
    Vec2 p;
    Affine grid_to_sheet;
    int subdivisions;
    double view_scale;
    std::optional<Vec2> expected;
};
// clang-format off
const PointCase kPoints[] = {
    {"GoesToACrossing",              {43, 78},   {20, 0, 0, 20, 0, 0},      1, 1,   Vec2{40, 80}},
    {"StaysBetweenFarCrossings",     {50, 90},   {40, 0, 0, 40, 0, 0},      1, 1,   std::nullopt},
    {"GoesFurtherWhereTheViewIsSmall", {50, 70}, {40, 0, 0, 40, 0, 0},      1, 0.5, Vec2{40, 80}},
    {"GoesLessFarWhereTheViewIsLarge", {43, 83}, {40, 0, 0, 40, 0, 0},      1, 2,   std::nullopt},
    {"GoesByATurnedGrid",            {1, 13},    {10, 10, -10, 10, 0, 0},   1, 1,   Vec2{0, 20}},
    {"GoesByAGridThatIsMoved",       {12, 9},    {20, 0, 0, -20, 7, 3},     1, 1,   Vec2{7, 3}},
    {"GoesToTheNearestOfASlantedGrid", {9, 9},   {20, 0, 19, 20, 0, 0},     1, 9e-1, std::nullopt},
    {"LeavesOutWhatIsTooFine",       {43, 78},   {2, 0, 0, 2, 0, 0},        10, 1,  Vec2{40, 80}},
    {"KeepsWhatIsFineEnough",        {43.8, 78},   {2, 0, 0, 2, 0, 0},        10, 2,  Vec2{44, 78}},
    {"HasNoGridThatIsFinerStill",    {43, 78},   {0.2, 0, 0, 0.2, 0, 0},    10, 1,  std::nullopt},
    {"HasNoGridThatIsFlat",          {43, 78},   {20, 20, 20, 20, 0, 0},    1, 1,   std::nullopt},
    {"StaysWithoutAView",            {43, 78},   {20, 0, 0, 20, 0, 0},      1, 0,   std::nullopt},
    {"StaysWhereThereIsNoNumber",    {std::nan(""), 78}, {20, 0, 0, 20, 0, 0}, 1, 1, std::nullopt},
};
// clang-format on
class SnapPoint : public testing::TestWithParam<PointCase> {};
TEST_P(SnapPoint, ByTheGrid)
{
    const PointCase& row = GetParam();
    SnapSettings settings;
    settings.view_scale = row.view_scale;
    const Grid grid{row.grid_to_sheet, row.subdivisions};
    const auto target = snap_point(row.p, SnapScene(), grid, settings);
    ASSERT_EQ(target.has_value(), row.expected.has_value());
    if (target) {
        EXPECT_LT(distance(target->at, *row.expected), kRounding);
        EXPECT_EQ(target->kind, SnapKind::grid);
    }
    settings.to_grid = false;
    EXPECT_FALSE(snap_point(row.p, SnapScene(), grid, settings));
}
INSTANTIATE_TEST_SUITE_P(, SnapPoint, testing::ValuesIn(kPoints), kName);

TEST(SnapPointInASlantedGrid, GoesToTheNearestCrossing)
{
    const Affine slanted{20, 0, 17, 9, 3, 4};
    for (double x = -30; x < 30; x += 1.7)
        for (double y = -30; y < 30; y += 1.7) {
            double least = 1e9;
            for (int i = -9; i <= 9; ++i)
                for (int k = -9; k <= 9; ++k)
                    least = std::min(least, distance({x, y}, slanted({1.0 * i, 1.0 * k})));
            const auto target = snap_point({x, y}, SnapScene(), Grid{slanted, 1}, {});
            ASSERT_EQ(target.has_value(), least <= 8);
            if (target) {
                ASSERT_NEAR(distance(target->at, {x, y}), least, kRounding);
            }
        }
}

TEST(SnapPointToThings, CanBeSwitchedOff)
{
    const SnapScene scene({place({0, 0})});
    SnapSettings settings;
    EXPECT_TRUE(snap_point({3, 4}, scene, std::nullopt, settings));
    settings.to_shapes = false;
    EXPECT_FALSE(snap_point({3, 4}, scene, std::nullopt, settings));
}

Path wave()
{
    Path points;
    for (const Vec2 p : {
             Vec2{0,   0  },
             Vec2{30,  50 },
             Vec2{60,  60 },
             Vec2{100, 40 },
             Vec2{120, 30 },
             Vec2{150, -20},
             Vec2{190, 0  }
    })
        points.push_back(p);
    points.insert(points.begin() + 4, points[3]); // the joint, from both sides
    return points;
}

TEST(SnapFreeCurve, MovesItsEndsAndLetsTheRestFollow)
{
    const Path before = wave();
    const Snapped result = snap_shape(Curve{before, false}, Kind::free_curve,
                                      SnapScene({place({3, -4}), place({100, 42})}), std::nullopt, {});
    const Path& after = std::get<Curve>(result.shape).points;
    ASSERT_EQ(after.size(), before.size());
    EXPECT_EQ(after.front(), (Vec2{3, -4}));
    EXPECT_EQ(after.back(), before.back());
    EXPECT_EQ(after[3], after[4]) << "the segments still meet";
    for (std::size_t i = 1; i < before.size(); ++i)
        EXPECT_LE(distance(after[i], before[i]), distance(after[i - 1], before[i - 1])) << "point " << i;
    EXPECT_EQ(kinds_of(result.marks), "end");
}

// The handles of the joint lie on one line, as before.
TEST(SnapFreeCurve, StaysAsSmoothAsItWas)
{
    const Path before = wave();
    const auto kink = [](const Path& points) {
        return turn_between(points[3] - points[2], points[5] - points[4]);
    };
    ASSERT_NEAR(kink(before), 0, kRounding);
    const Snapped result = snap_shape(Curve{before, false}, Kind::free_curve,
                                      SnapScene({place({3, -4}), place({195, 6})}), std::nullopt, {});
    const Path& after = std::get<Curve>(result.shape).points;
    EXPECT_EQ(after.front(), (Vec2{3, -4}));
    EXPECT_EQ(after.back(), (Vec2{195, 6}));
    EXPECT_NEAR(kink(after), 0, kRounding);
}

TEST(SnapFreeCurve, MayBeginAndEndInOnePlaceWhenItIsLong)
{
    const Path loop = {
        Vec2{3,   3  },
        Vec2{100, 0  },
        Vec2{0,   100},
        Vec2{-3,  3  }
    };
    const Path tiny = {
        Vec2{3,  3},
        Vec2{4,  4},
        Vec2{-4, 4},
        Vec2{-3, 4}
    };
    const SnapScene scene({place({0, 0})});
    const Snapped closed_loop = snap_shape(Curve{loop, false}, Kind::free_curve, scene, std::nullopt, {});
    EXPECT_EQ(points_of(closed_loop.shape).front(), (Vec2{0, 0}));
    EXPECT_EQ(points_of(closed_loop.shape).back(), (Vec2{0, 0}));
    const Snapped open_one = snap_shape(Curve{tiny, false}, Kind::free_curve, scene, std::nullopt, {});
    EXPECT_EQ(points_of(open_one.shape).front(), (Vec2{0, 0}));
    EXPECT_EQ(points_of(open_one.shape).back(), tiny.back());
}

TEST(SnapFreeCurve, StaysWhenItIsClosedOrInk)
{
    const Path loop = {
        Vec2{3,   3  },
        Vec2{100, 0  },
        Vec2{0,   100},
        Vec2{3,   3  }
    };
    const SnapScene scene({place({0, 0})});
    const Snapped result = snap_shape(Curve{loop, true}, Kind::free_curve, scene, std::nullopt, {});
    EXPECT_EQ(points_of(result.shape), loop);
    EXPECT_TRUE(result.marks.empty());
    const Snapped ink = snap_shape(std::monostate(), Kind::ink, scene, std::nullopt, {});
    EXPECT_TRUE(std::holds_alternative<std::monostate>(ink.shape));
    EXPECT_TRUE(ink.marks.empty());
}

// Every two of its corners would be 496 ways, with 32 corners to look up of each.
TEST(SnapManyCorners, LooksUpAFewPlacesForEachOfThem)
{
    std::vector<Shape> shapes;
    for (int i = 0; i < 500; ++i)
        shapes.push_back(closed({
            {2.0 * i,       7.0 * (i % 90) },
            {2.0 * i + 140, 7.0 * (i % 90) },
            {2.0 * i + 90,  7.0 * (i % 110)}
        }));
    const SnapScene scene(shapes);
    const Grid grid{
        {12, 0, 0, 12, 0, 0},
        1
    };
    Path corners;
    for (int i = 0; i < 32; ++i)
        corners.push_back(Vec2{500, 300} + 200 * unit_at(2 * kPi * i / 32));
    // The quickest of some, as the machine does other things as well.
    const auto quickest = [](const auto& run) {
        std::clock_t least = std::numeric_limits<std::clock_t>::max();
        for (int i = 0; i < 5; ++i) {
            const std::clock_t from = std::clock();
            run();
            least = std::min(least, std::clock() - from);
        }
        return static_cast<double>(least);
    };
    constexpr int kPlaces = 1000;
    const double places = quickest([&] {
        for (int i = 0; i < kPlaces; ++i)
            snap_point(corners[static_cast<std::size_t>(i) % 32], scene, grid, {});
    });
    const double figure = quickest([&] { snap_shape(closed(corners), Kind::polygon, scene, grid, {}); });
    EXPECT_LT(figure, 2 * places);
}

} // namespace
