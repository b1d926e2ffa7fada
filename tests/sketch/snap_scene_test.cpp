#include "sketch/core/snap_scene.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace vnt::sketch;

constexpr double kRounding = 1e-9;

Shape straight(Path corners, bool closed = false) { return Straight{std::move(corners), closed}; }
Shape arc(Vec2 centre, double radius, double start, double sweep)
{
    return Round{
        {centre, radius, radius, 0},
        start, sweep
    };
}
Shape circle(Vec2 centre, double radius) { return arc(centre, radius, 0, 2 * kPi); }

// Two lines that cross at (50, 50), a rectangle, a triangle, a circle that the first line crosses, an arc, a curve.
// clang-format off
const std::vector<Shape> kDrawn = {
    straight({{0, 0}, {100, 100}}),
    straight({{100, 0}, {60, 40}, {0, 100}}),
    straight({{200, 0}, {300, 0}, {300, 40}, {200, 40}}, true),
    straight({{200, 200}, {300, 200}, {200, 290}}, true),
    circle({100, 100}, 50),
    arc({400, 100}, 30, 0, kPi / 2),
    Curve{{{400, 300}, {420, 200}, {480, 200}, {500, 300}}, false},
    Curve{{{600, 300}, {620, 200}, {680, 200}, {600, 300}}, true},
    std::monostate(),
};
// Two lines, of which one ends on the other, and a third through that place.
const std::vector<Shape> kAroundAnEnd = {
    straight({{0, 0}, {100, 0}}),
    straight({{50, 0}, {50, 100}}),
    straight({{0, -50}, {100, 50}}),
};
const double kNoNumber = std::nan("");
const double kInfinite = std::numeric_limits<double>::infinity();
const std::vector<Shape> kBad = {
    straight({{kNoNumber, 0}, {5, 5}, {kInfinite, 0}}),
    straight({}),
    straight({}, true),
    straight({{40, 40}}, true),
    straight({{60, 60}, {60, 60}, {60, 60}, {60, 60}}, true),
    circle({0, 0}, kNoNumber),
    circle({0, 0}, 0),
    circle({kNoNumber, 0}, 5),
    arc({0, 0}, 5, kNoNumber, 1),
    Curve{},
    straight({{3, 3}, {20, 3}}),
};
// clang-format on

struct NearestCase {
    const char* name;
    Vec2 p;
    double reach;
    std::optional<SnapTarget> expected;
};
const double kOnCircle = 100 - 50 * std::sqrt(0.5);
// clang-format off
const NearestCase kNearest[] = {
    {"TheEndOfALine",               {-3, 2},     8, SnapTarget{{0, 0}, SnapKind::end}},
    {"TheCornerOfAPolyline",        {62, 41},    8, SnapTarget{{60, 40}, SnapKind::corner}},
    {"TheCornerOfARectangle",       {303, 42},   8, SnapTarget{{300, 40}, SnapKind::corner}},
    {"TheMiddleOfARectangle",       {251, 19},   8, SnapTarget{{250, 20}, SnapKind::centre}},
    {"NotTheMiddleOfATriangle",     {233, 230},  8, std::nullopt},
    {"NotTheInsideOfASide",         {250, 201},  8, std::nullopt},
    {"TheEndThatIsACirclesCentre",  {103, 104},  8, SnapTarget{{100, 100}, SnapKind::end}},
    {"NotTheStartOfAWholeCircle",   {150, 100},  8, std::nullopt},
    {"TheStartOfAnArc",             {431, 101},  8, SnapTarget{{430, 100}, SnapKind::end}},
    {"TheEndOfAnArc",               {401, 131},  8, SnapTarget{{400, 130}, SnapKind::end}},
    {"TheCentreOfAnArc",            {401, 101},  8, SnapTarget{{400, 100}, SnapKind::centre}},
    {"TheCrossingOfTwoLines",       {52, 47},    8, SnapTarget{{50, 50}, SnapKind::intersection}},
    {"TheCrossingOfLineAndCircle",  {66, 64},    8, SnapTarget{{kOnCircle, kOnCircle}, SnapKind::intersection}},
    {"TheEndOfACurve",              {498, 303},  8, SnapTarget{{500, 300}, SnapKind::end}},
    {"NotTheInsideOfACurve",        {450, 226},  8, std::nullopt},
    {"NotTheStartOfAClosedCurve",   {600, 300},  8, std::nullopt},
    {"NothingBeyondReach",          {-6, -5.5},  8, std::nullopt},
    {"WhatIsAtTheReachItself",      {-6, -8},    10, SnapTarget{{0, 0}, SnapKind::end}},
    {"NothingWithoutReach",         {1, 1},      0, std::nullopt},
    {"NothingByNoNumbers",          {std::nan(""), 0}, 8, std::nullopt},
};
// clang-format on
class Nearest : public testing::TestWithParam<NearestCase> {};
TEST_P(Nearest, IsFound)
{
    const NearestCase& row = GetParam();
    const auto found = SnapScene(kDrawn).nearest(row.p, row.reach);
    ASSERT_EQ(found.has_value(), row.expected.has_value());
    if (!found)
        return;
    EXPECT_LT(distance(found->at, row.expected->at), kRounding);
    EXPECT_STREQ(name_of(found->kind), name_of(row.expected->kind));
}
INSTANTIATE_TEST_SUITE_P(, Nearest, testing::ValuesIn(kNearest),
                         [](const auto& row) { return row.param.name; });

TEST(SnapScene, PrefersAnEndToTheCrossingInTheSamePlace)
{
    const SnapScene scene(kAroundAnEnd);
    for (int i = 0; i < 100; ++i) {
        const auto found = scene.nearest(Vec2{50, 0} + 0.07 * i * unit_at(0.37 * i), 8);
        ASSERT_TRUE(found);
        EXPECT_EQ(found->kind, SnapKind::end);
        EXPECT_EQ(found->at, (Vec2{50, 0}));
    }
}

TEST(SnapScene, FindsTheCentreOfEveryFigureWithARoundOutline)
{
    Path hexagon, uneven;
    for (int i = 0; i < 6; ++i) {
        hexagon.push_back(Vec2{500, 500} + 40 * unit_at(1 + i * kPi / 3));
        uneven.push_back(Vec2{700, 500} + (40 + i) * unit_at(1 + i * kPi / 3));
    }
    const SnapScene scene({straight(hexagon, true), straight(uneven, true), straight(hexagon, false)});
    const auto centre = scene.nearest({501, 502}, 8);
    ASSERT_TRUE(centre);
    EXPECT_EQ(centre->kind, SnapKind::centre);
    EXPECT_LT(distance(centre->at, {500, 500}), kRounding);
    EXPECT_FALSE(scene.nearest({701, 502}, 8));
}

// Crossings are as many as pairs, and each is there.
TEST(SnapScene, FindsEveryCrossingOfAThousandLines)
{
    std::vector<Shape> lines;
    for (int i = 0; i < 500; ++i) {
        lines.push_back(straight({
            {-10,    20.0 * i},
            {10'010, 20.0 * i}
        }));
        lines.push_back(straight({
            {20.0 * i, -10   },
            {20.0 * i, 10'010}
        }));
    }
    const SnapScene scene(lines);
    for (int i = 0; i < 500; i += 7)
        for (int k = 0; k < 500; k += 7) {
            const auto found = scene.nearest({20.0 * i + 4, 20.0 * k - 3}, 8);
            ASSERT_TRUE(found);
            ASSERT_EQ(found->kind, SnapKind::intersection);
            ASSERT_LT(distance(found->at, {20.0 * i, 20.0 * k}), kRounding);
        }
}

TEST(SnapScene, PassesOverWhatIsNotFiniteOrHasNoSize)
{
    const SnapScene scene(kBad);
    const auto found = scene.nearest({0, 0}, 8);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->at, (Vec2{3, 3}));
    EXPECT_TRUE(scene.nearest({41, 40}, 8));
    EXPECT_FALSE(SnapScene().nearest({0, 0}, 1e9));
}

Ellipse circle_of(Vec2 centre, double radius) { return {centre, radius, radius, 0}; }

TEST(SnapScene, FindsWhatIsNearAnOutline)
{
    const SnapScene scene(kDrawn);
    // Of radius 71 about (50, 50): near both ends of the first line and the second one's, the circle's centre.
    const auto found = scene.near_outline(circle_of({50, 50}, 71), 1);
    std::vector<Vec2> places;
    for (const SnapTarget& target : found)
        places.push_back(target.at);
    const auto has = [&](Vec2 p) {
        return std::any_of(places.begin(), places.end(), [&](Vec2 q) { return distance(p, q) < kRounding; });
    };
    EXPECT_TRUE(has({0, 0}));
    EXPECT_TRUE(has({100, 100}));
    EXPECT_TRUE(has({100, 0}));
    EXPECT_TRUE(has({0, 100}));
    EXPECT_FALSE(has({50, 50}));
    EXPECT_FALSE(has({60, 40}));
    // The crossing of line and circle, 71 from its centre.
    int crossings = 0;
    for (const SnapTarget& target : scene.near_outline(circle_of({kOnCircle - 71, kOnCircle}, 71), 1))
        crossings += target.kind == SnapKind::intersection ? 1 : 0;
    EXPECT_EQ(crossings, 1);
}

} // namespace
