#include "sketch/core/shape_kind.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::sketch;

struct KindCase {
    const char* name;
    Shape shape;
    Kind kind;
};
const Affine kTurned{0.8, 0.6, -0.6, 0.8, 3, 4};
Straight closed(const Path& corners) { return {corners, true}; }
Straight turned(Straight shape)
{
    for (Vec2& corner : shape.corners)
        corner = kTurned(corner);
    return shape;
}
// clang-format off
const KindCase kKindsOf[] = {
    {"ALineHasTwoCorners", Straight{{{0, 0}, {5, 5}}, false}, Kind::line},
    {"MoreOpenCornersAreAPolyline", Straight{{{0, 0}, {5, 5}, {9, 0}}, false}, Kind::polyline},
    {"ThreeClosedOnesAreATriangle", closed({{0, 0}, {5, 5}, {9, 0}}), Kind::triangle},
    {"EqualSidesAndRightAnglesAreASquare", turned(closed({{0, 0}, {5, 0}, {5, 5}, {0, 5}})), Kind::square},
    {"RightAnglesAloneAreARectangle", turned(closed({{0, 0}, {5, 0}, {5, 4}, {0, 4}})), Kind::rectangle},
    {"EqualSidesAloneAreAQuadrilateral", closed({{0, 0}, {5, 1}, {6, 6}, {1, 5}}), Kind::quadrilateral},
    {"AThousandthOffIsNoSquare", closed({{0, 0}, {5, 0}, {5, 5.005}, {0, 5.005}}), Kind::rectangle},
    {"AThousandthOfALeanIsNoRectangle", closed({{0, 0}, {5, 0}, {5.005, 5}, {0.005, 5}}),
     Kind::quadrilateral},
    {"FiveConvexOnesAreAPolygon", closed({{0, 0}, {4, 0}, {5, 3}, {2, 5}, {-1, 3}}), Kind::polygon},
    {"BackwardsToo", closed({{-1, 3}, {2, 5}, {5, 3}, {4, 0}, {0, 0}}), Kind::polygon},
    {"ANotchMakesThemAPolyline", closed({{0, 0}, {4, 0}, {2, 2}, {4, 5}, {0, 5}}), Kind::polyline},
    {"AStarOfFiveIsAPolyline", closed({{0, -5}, {3, 4}, {-5, -1.5}, {5, -1.5}, {-3, 4}}), Kind::polyline},
    {"EqualHalfAxesAllAroundAreACircle", Round{{{}, 5, 5, 0}, 1, -2 * kPi}, Kind::circle},
    {"NotAllAroundAnArc", Round{{{}, 5, 5, 0}, 1, 6.2}, Kind::arc},
    {"OthersAnEllipse", Round{{{}, 5, 4.99, 0}, 1, 2 * kPi}, Kind::ellipse},
    {"AndAnEllipticArc", Round{{{}, 5, 4.99, 0}, 1, 2}, Kind::elliptic_arc},
    {"SegmentsAreAFreeCurve", Curve{{{0, 0}, {1, 1}, {2, 1}, {3, 0}}, true}, Kind::free_curve},
    {"NothingIsInk", {}, Kind::ink},
};
// clang-format on
class KindOf : public testing::TestWithParam<KindCase> {};
TEST_P(KindOf, FollowsFromTheNumbers) { EXPECT_EQ(kind_of(GetParam().shape), GetParam().kind); }
INSTANTIATE_TEST_SUITE_P(, KindOf, testing::ValuesIn(kKindsOf),
                         [](const auto& row) { return row.param.name; });

struct MapCase {
    const char* name;
    Affine map;
    bool keeps_angles;
};
// clang-format off
const MapCase kMaps[] = {
    {"AMove", {1, 0, 0, 1, 7, 8}, true},
    {"ATurn", kTurned, true},
    {"AMirror", {1, 0, 0, -1, 0, 0}, true},
    {"AnEvenScaling", {1e-3, 0, 0, 1e-3, 0, 0}, true},
    {"AMirrorThatTurnsAndScales", {3, 4, 4, -3, 0, 0}, true},
    {"AStretch", {1, 0, 0, 1.001, 0, 0}, false},
    {"AShear", {1, 0, 0.001, 1, 0, 0}, false},
};
// clang-format on
class KeepsAngles : public testing::TestWithParam<MapCase> {};
TEST_P(KeepsAngles, IsSo) { EXPECT_EQ(keeps_angles(GetParam().map), GetParam().keeps_angles); }
INSTANTIATE_TEST_SUITE_P(, KeepsAngles, testing::ValuesIn(kMaps),
                         [](const auto& row) { return row.param.name; });

TEST(KindUnder, WhatStaysAlikeStaysWhatItWasDrawnAs)
{
    const Straight square = closed({
        {0, 0},
        {5, 0},
        {5, 5},
        {0, 5}
    });
    EXPECT_EQ(kind_under(kTurned, Kind::polygon, square), Kind::polygon);
    EXPECT_EQ(kind_under({2, 0, 0, 1, 0, 0}, Kind::polygon, square), Kind::square);
    EXPECT_EQ(kind_under({2, 0, 0, 1, 0, 0}, Kind::ink, {}), Kind::ink);
}

} // namespace
