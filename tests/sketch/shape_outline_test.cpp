#include "sketch/core/shape_outline.h"

#include "sketch/core/curve_fit.h"
#include "tests/geometry/seeded.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace vnt::sketch;

constexpr double kRounding = 1e-9;
constexpr double kInfinite = std::numeric_limits<double>::infinity();

Path straight(const Path& corners)
{
    Path curve;
    for (std::size_t i = 1; i < corners.size(); ++i)
        curve.insert(curve.end(), {corners[i - 1], corners[i - 1], corners[i], corners[i]});
    return curve;
}

struct StraightCase {
    const char* name;
    Straight shape;
    Path passed; // the corners of its curve
};
// clang-format off
const StraightCase kStraights[] = {
    {"ALineIsOneSegment", {{{1, 2}, {3, 4}}, false}, {{1, 2}, {3, 4}}},
    {"AnOpenOneHasASegmentForEachPiece", {{{0, 0}, {5, 0}, {5, 5}}, false}, {{0, 0}, {5, 0}, {5, 5}}},
    {"AClosedOneEndsWhereItBegins", {{{0, 0}, {5, 0}, {5, 5}}, true}, {{0, 0}, {5, 0}, {5, 5}, {0, 0}}},
    {"AClosedOneThatIsClosedAlreadyHasNoPieceMore", {{{0, 0}, {5, 0}, {5, 5}, {0, 0}}, true},
     {{0, 0}, {5, 0}, {5, 5}, {0, 0}}},
    {"CornersTwiceInOnePlaceAreOne", {{{0, 0}, {0, 0}, {5, 0}, {5, 0}}, false}, {{0, 0}, {5, 0}}},
    {"OnePlaceIsADot", {{{3, 4}, {3, 4}}, true}, {{3, 4}, {3, 4}}},
    {"NoCornersAreNothing", {{}, true}, {}},
};
// clang-format on
class StraightOutline : public testing::TestWithParam<StraightCase> {};
TEST_P(StraightOutline, HasItsControlsOnItsEnds)
{
    EXPECT_EQ(cubics_of(Shape(GetParam().shape), 0.1), straight(GetParam().passed));
}
INSTANTIATE_TEST_SUITE_P(, StraightOutline, testing::ValuesIn(kStraights),
                         [](const auto& row) { return row.param.name; });

// The quarter of the unit circle has its controls 4/3 (√2 - 1) along its ends' tangents.
TEST(OutlineOfRound, AQuarterHasTheKnownControls)
{
    const double arm = 4.0 / 3 * (std::sqrt(2.0) - 1);
    const Path expected = {
        {1,   0  },
        {1,   arm},
        {arm, 1  },
        {0,   1  }
    };
    const Path curve = cubics_of(Shape(Round{
                                     {{}, 1, 1, 0},
                                     0, kPi / 2
    }),
                                 0.1);
    ASSERT_EQ(curve.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_LT(distance(curve[i], expected[i]), kRounding) << i;
}

struct RoundCase {
    const char* name;
    Round shape;
    double tolerance;
    std::size_t segments;
};
// A quarter of a circle lies 2.73e-4 of its radius outside, an eighth 4.2e-6 of it.
// clang-format off
const RoundCase kRounds[] = {
    {"AWholeCircleIsFourQuarters", {{{5, 6}, 100, 100, 0}, 1, 2 * kPi}, 0.03, 4},
    {"ALargeOneHasShorterSegments", {{{5, 6}, 1000, 1000, 0}, 1, 2 * kPi}, 0.005, 8},
    {"BackwardsAsWell", {{{5, 6}, 100, 100, 0}, 1, -2 * kPi}, 0.03, 4},
    {"ALittleMoreThanAQuarterIsTwo", {{{5, 6}, 100, 100, 0}, 1, 1.6}, 0.03, 2},
    {"AQuarterIsOne", {{{5, 6}, 100, 100, 0}, 1, -kPi / 2}, 0.03, 1},
    {"AnEllipseGoesByItsLargerHalfAxis", {{{5, 6}, 1000, 10, 2}, 1, 2 * kPi}, 0.005, 8},
    {"ATinyArcIsOne", {{{5, 6}, 10, 10, 0}, 1, 1e-6}, 0.03, 1},
};
// clang-format on
class RoundOutline : public testing::TestWithParam<RoundCase> {};
TEST_P(RoundOutline, LiesWithinTheTolerance)
{
    const auto& [name, shape, tolerance, segments] = GetParam();
    const Path curve = cubics_of(Shape(shape), tolerance);
    ASSERT_EQ(curve.size(), 4 * segments);
    const bool is_whole = std::abs(shape.sweep) == 2 * kPi;
    EXPECT_LT(distance(curve.front(), shape.ellipse.at(shape.start)), kRounding);
    EXPECT_LT(distance(curve.back(), shape.ellipse.at(shape.start + shape.sweep)), kRounding);
    EXPECT_EQ(curve.front() == curve.back(), is_whole);
    double before = shape.start;
    for (std::size_t i = 0; i < curve.size(); i += 4) {
        EXPECT_EQ(curve[i], curve[i > 0 ? i - 1 : 0]);
        for (int k = 0; k <= 32; ++k) {
            const Vec2 p = point_of_cubic(&curve[i], k / 32.0);
            EXPECT_LE(std::abs(shape.ellipse.distance_of(p)), tolerance);
            const double here = shape.ellipse.parameter_of(p);
            const double step = std::remainder(here - before, 2 * kPi);
            EXPECT_GE(step * shape.sweep, -kRounding);
            before = here;
        }
    }
}
INSTANTIATE_TEST_SUITE_P(, RoundOutline, testing::ValuesIn(kRounds),
                         [](const auto& row) { return row.param.name; });

TEST(OutlineOfRound, WhatIsNotFiniteIsNothing)
{
    EXPECT_EQ(cubics_of(Shape(Round{
                            {{}, kInfinite, 1, 0},
                            0, 1
    }),
                        0.1),
              Path());
    EXPECT_EQ(cubics_of(Shape(Round{
                            {{}, 1, 1, 0},
                            0, std::nan("")
    }),
                        0.1),
              Path());
}

TEST(CurveOutline, IsItselfAndEndsWhereItBeginsWhenItIsClosed)
{
    const Path open = {
        {0, 0},
        {1, 5},
        {4, 5},
        {9, 0}
    };
    EXPECT_EQ(cubics_of(Shape(Curve{open, false}), 0.1), open);
    Path closed = open;
    closed.insert(closed.end(), {open[3], open[3], open[0], open[0]});
    EXPECT_EQ(cubics_of(Shape(Curve{open, true}), 0.1), closed);
    EXPECT_EQ(cubics_of(Shape(Curve{closed, true}), 0.1), closed);
}

TEST(CurveOutline, LeavesOutAnUnfinishedSegment)
{
    EXPECT_EQ(cubics_of(Shape(Curve{
                            {{0, 0}, {1, 5}, {4, 5}},
                            true
    }),
                        0.1),
              Path());
}

TEST(ShapeOutline, OfNoShapeIsNothing) { EXPECT_EQ(cubics_of(Shape(), 0.1), Path()); }

TEST(InkOutline, RunsAlongTheInkWithinTheTolerance)
{
    Stroke stroke;
    for (int i = 0; i <= 40; ++i)
        stroke.ink.push_back({5.0 * i, 60 * std::sin(i * 0.2), 8.0 * i, 1});
    const Path curve = cubics_of(stroke, 0.25);
    ASSERT_GE(curve.size(), 4U);
    EXPECT_EQ(curve.front(), (Vec2{0, 0}));
    EXPECT_EQ(curve.back(), (Vec2{200, 60 * std::sin(8.0)}));
    for (const InkPoint& p : stroke.ink)
        EXPECT_LE(distance_from_curve({p.x, p.y}, curve, 0.001), 0.251);
}

TEST(InkOutline, OfATapIsADot)
{
    Stroke stroke;
    stroke.ink = {
        {3, 4, 0, 1}
    };
    EXPECT_EQ(cubics_of(stroke, 0.25), Path(4, Vec2{3, 4}));
    stroke.ink.clear();
    EXPECT_EQ(cubics_of(stroke, 0.25), Path());
}

TEST(Flattened, LiesWithinTheTolerance)
{
    Seeded seeded(7);
    for (const double tolerance : {0.01, 0.1, 1.0}) {
        for (int i = 0; i < 50; ++i) {
            Path curve;
            for (int k = 0; k < 4; ++k)
                curve.push_back({seeded.between(-100, 100), seeded.between(-100, 100)});
            const Path chords = flattened(curve, tolerance);
            EXPECT_EQ(chords.front(), curve.front());
            EXPECT_EQ(chords.back(), curve.back());
            for (int k = 0; k <= 500; ++k) {
                const Vec2 p = point_of_cubic(curve.data(), k / 500.0);
                double nearest = kInfinite;
                for (std::size_t j = 1; j < chords.size(); ++j)
                    nearest = std::min(nearest, distance_from_piece(p, chords[j - 1], chords[j]));
                EXPECT_LE(nearest, tolerance);
            }
        }
    }
}

TEST(Flattened, AStraightSegmentIsOneChord)
{
    const Path corners = {
        {0,   0 },
        {300, 40},
        {300, 90}
    };
    EXPECT_EQ(flattened(straight(corners), 0.01), corners);
}

TEST(Flattened, OfNothingIsNothing) { EXPECT_EQ(flattened({}, 0.1), Path()); }

struct DistanceCase {
    const char* name;
    Vec2 from;
    double distance;
};
// clang-format off
const DistanceCase kDistances[] = { // from the circle of radius 100 about (0, 0)
    {"Outside", {150, 0}, 50},
    {"Inside", {0, -60}, 40},
    {"AtItsMiddle", {0, 0}, 100},
    {"OnIt", {-60, 80}, 0},
};
// clang-format on
class DistanceFromCurve : public testing::TestWithParam<DistanceCase> {};
TEST_P(DistanceFromCurve, IsThatOfTheCircle)
{
    const Path curve = cubics_of(Shape(Round{
                                     {{}, 100, 100, 0},
                                     0.3, 2 * kPi
    }),
                                 0.001);
    EXPECT_NEAR(distance_from_curve(GetParam().from, curve, 0.001), GetParam().distance, 0.002);
}
INSTANTIATE_TEST_SUITE_P(, DistanceFromCurve, testing::ValuesIn(kDistances),
                         [](const auto& row) { return row.param.name; });

TEST(DistanceFromNothing, IsInfinite) { EXPECT_EQ(distance_from_curve({1, 2}, {}, 0.1), kInfinite); }

struct MapCase {
    const char* name;
    Affine map;
};
// clang-format off
const MapCase kMaps[] = {
    {"Moved", {1, 0, 0, 1, 30, -40}},
    {"Turned", {0.8, 0.6, -0.6, 0.8, 1, 2}},
    {"Scaled", {3, 0, 0, 3, 0, 0}},
    {"Mirrored", {1, 0, 0, -1, 0, 500}},
    {"MirroredTurnedAndScaled", {1.6, 1.2, 1.2, -1.6, 5, 6}},
    {"Stretched", {4, 0, 0, 0.5, 1, 2}},
    {"StretchedAcross", {0.5, 0, 0, 4, 1, 2}},
    {"Sheared", {1, 0, 0.7, 1, 0, 0}},
    {"ShearedAndMirrored", {-1, 0.2, 0.7, 1.5, 8, 9}},
};
// clang-format on
class MappedRound : public testing::TestWithParam<MapCase> {};
TEST_P(MappedRound, HasEveryPointWhereTheMapTakesIt)
{
    const Round shapes[] = {
        {{{10, 20}, 50, 50, 0},   0.7,  2 * kPi },
        {{{10, 20}, 50, 20, 0.4}, -2.2, 4.5     },
        {{{-10, 0}, 50, 49.9, 3}, 5.0,  -1.5    },
        {{{0, 0}, 1e-3, 1e-3, 2}, 0.0,  -2 * kPi},
        {{{0, 0}, 30, 30, 1.2},   3.0,  1.0     },
    };
    for (const Round& shape : shapes) {
        const auto after = std::get<Round>(mapped(Shape(shape), GetParam().map));
        EXPECT_GE(after.ellipse.major, after.ellipse.minor);
        EXPECT_GE(after.ellipse.rotation, 0);
        EXPECT_LT(after.ellipse.rotation, kPi);
        EXPECT_EQ(std::abs(after.sweep), std::abs(shape.sweep));
        for (int i = 0; i <= 12; ++i) {
            const Vec2 before = shape.ellipse.at(shape.start + shape.sweep * i / 12);
            const Vec2 place = after.ellipse.at(after.start + after.sweep * i / 12);
            EXPECT_LT(distance(place, GetParam().map(before)), kRounding * 100) << i;
        }
    }
}
INSTANTIATE_TEST_SUITE_P(, MappedRound, testing::ValuesIn(kMaps),
                         [](const auto& row) { return row.param.name; });

TEST(MappedCircle, StaysOneToTheBitWhereAnglesAreKept)
{
    const Round circle{
        {{10, 20}, 37.3, 37.3, 0},
        0.7, 2 * kPi
    };
    for (int degrees = 1; degrees < 360; ++degrees) {
        const Vec2 along = 0.7 * unit_at(degrees * kPi / 180);
        for (const double side : {1.0, -1.0}) {
            const Affine map{along.x, along.y, side * -along.y, side * along.x, 3, 4};
            const Ellipse after = std::get<Round>(mapped(Shape(circle), map)).ellipse;
            EXPECT_EQ(after.major, after.minor) << degrees << " degrees";
            EXPECT_EQ(after.rotation, 0);
        }
    }
}

// Its directions are in its last bits only, and must not go by those of the map.
TEST(MappedEllipse, ThatIsNearlyACircleIsTurnedAsTheMapTurns)
{
    const Round ellipse{
        {{10, 20}, 100, 100 - 1e-11, 0.5},
        0, 1
    };
    const Vec2 along = 0.7 * unit_at(0.6);
    const auto after =
        std::get<Round>(mapped(Shape(ellipse), Affine{along.x, along.y, -along.y, along.x, 3, 4}));
    EXPECT_NEAR(after.ellipse.rotation, 1.1, kRounding);
}

TEST(MappedStroke, TakesInkReadingsAndShapeAlongUnderAnotherId)
{
    Stroke stroke;
    stroke.id = 3;
    stroke.ink = {
        {1, 2, 30, 0.4}
    };
    stroke.kind = Kind::circle;
    stroke.shape = Round{
        {{0, 0}, 10, 10, 0},
        0, 2 * kPi
    };
    stroke.readings = {
        {Kind::line, 0.7, Straight{{{0, 0}, {1, 1}}, false}}
    };
    const Stroke after = mapped(stroke, Affine{2, 0, 0, 1, 100, 200}, 9);
    EXPECT_EQ(after.id, 9U);
    EXPECT_EQ(after.ink[0].x, 102);
    EXPECT_EQ(after.ink[0].y, 202);
    EXPECT_EQ(after.ink[0].time_ms, 30);
    EXPECT_EQ(after.ink[0].pressure, 0.4);
    EXPECT_EQ(std::get<Straight>(after.readings[0].shape).corners, (Path{
                                                                       {100, 200},
                                                                       {102, 201}
    }));
    EXPECT_EQ(after.readings[0].score, 0.7);
    EXPECT_EQ(after.kind, Kind::ellipse);
    EXPECT_NEAR(std::get<Round>(after.shape).ellipse.major, 20, kRounding);
}

} // namespace
