#include "Source/geometry/primitives.h"

#include "tests/geometry/sample_primitives.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <limits>
#include <list>
#include <string>
#include <type_traits>

using vnt::Matrix;
using vnt::Point;
using vnt::PrimC;
using vnt::PrimE;
using vnt::PrimF;
using vnt::PrimInfo;
using vnt::PrimL;
using vnt::PrimType;
using wire::bytes_of;
using wire::text_of;
using namespace sample;

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
// cos and sin of a rounded angle, and a handful of roundings of coordinates below 1000.
constexpr double kRounding = 1e-12;

std::string text_of_points(const std::list<Point>& points)
{
    std::string text;
    for (const Point& point : points)
        text += (text.empty() ? "" : ", ") + text_of(point);
    return text;
}

void expect_near(const Point& point, const Point& expected)
{
    EXPECT_NEAR(point.x, expected.x, kRounding);
    EXPECT_NEAR(point.y, expected.y, kRounding);
    EXPECT_NEAR(point.z, expected.z, kRounding);
}

TEST(PrimType, HasItsNumbers)
{
    EXPECT_EQ(static_cast<int>(vnt::PRIM_LINE), 0);
    EXPECT_EQ(static_cast<int>(vnt::PRIM_CIRCLE), 1);
    EXPECT_EQ(static_cast<int>(vnt::PRIM_ELLIPSE), 2);
    EXPECT_EQ(static_cast<int>(vnt::PRIM_FREE), 3);
    EXPECT_EQ(sizeof(PrimType), 4U);
}

TEST(Primitives, KnowTheirType)
{
    EXPECT_EQ(some_line().type, vnt::PRIM_LINE);
    EXPECT_EQ(some_arc().type, vnt::PRIM_CIRCLE);
    EXPECT_EQ(some_ellipse().type, vnt::PRIM_ELLIPSE);
    EXPECT_EQ(some_curve().type, vnt::PRIM_FREE);
    EXPECT_EQ(PrimInfo(vnt::PRIM_FREE).type, vnt::PRIM_FREE);
    EXPECT_TRUE(std::has_virtual_destructor_v<PrimInfo>);
}

TEST(Primitives, StoreTheirArgumentsInOrder)
{
    const PrimC arc(Point(1, 2, 3), 4, 5, 6, true, odd_posture());
    EXPECT_EQ(text_of(arc.center), "1 2 3");
    EXPECT_EQ(arc.radius, 4);
    EXPECT_EQ(arc.start, 5);
    EXPECT_EQ(arc.end, 6);
    EXPECT_TRUE(arc.is_arc);
    EXPECT_EQ(text_of(arc.posture), text_of(odd_posture()));
    const PrimE ellipse(Point(1, 2, 3), 4, 5, 6, 7, true, odd_posture());
    EXPECT_EQ(text_of(ellipse.center), "1 2 3");
    EXPECT_EQ(ellipse.major_radius, 4);
    EXPECT_EQ(ellipse.minor_radius, 5);
    EXPECT_EQ(ellipse.start, 6);
    EXPECT_EQ(ellipse.end, 7);
    EXPECT_TRUE(ellipse.is_arc);
    EXPECT_EQ(text_of(ellipse.posture), text_of(odd_posture()));
    const PrimL line(Point(1, 2, 3), Point(4, 5, 6));
    EXPECT_EQ(text_of(line.start), "1 2 3");
    EXPECT_EQ(text_of(line.end), "4 5 6");
    const PrimF curve({Point(1, 2, 3), Point(4, 5, 6)}, true);
    EXPECT_EQ(text_of_points(curve.points), "1 2 3, 4 5 6");
    EXPECT_TRUE(curve.closed);
}

template <class Kind>
void expect_assignment_copies_everything(const Kind& placeholder, Kind source)
{
    Kind target = placeholder;
    ASSERT_NE(bytes_of(target), bytes_of(source));
    source.type = kUnknownType;
    EXPECT_EQ(&(target = source), &target);
    EXPECT_EQ(bytes_of(target), bytes_of(source));
    EXPECT_EQ(target.type, kUnknownType);
}

TEST(Primitives, AreAssignedFieldByFieldWithTheirType)
{
    expect_assignment_copies_everything(PrimL(kOrigin, kOrigin), some_line());
    expect_assignment_copies_everything(PrimC(kOrigin, 0, 0, 0, false, Matrix()),
                                        PrimC(Point(1, 2, 3), 4, 5, 6, true, odd_posture()));
    expect_assignment_copies_everything(PrimE(kOrigin, 0, 0, 0, 0, false, Matrix()),
                                        PrimE(Point(1, 2, 3), 4, 5, 6, 7, true, odd_posture()));
    expect_assignment_copies_everything(PrimF({}, false), some_curve());
}

TEST(PrimInfo, IsAssignedWithItsType)
{
    PrimL target = some_line();
    PrimInfo& base = target;
    base = PrimInfo(vnt::PRIM_FREE);
    EXPECT_EQ(target.type, vnt::PRIM_FREE);
    EXPECT_EQ(text_of(target), kLineText);
}

struct LinePointCase {
    const char* name;
    double t;
    const char* point;
};
const LinePointCase kLinePoints[] = {
    {"ItsStartAtZero",          0.0,  "1 2 3"    },
    {"ItsEndAtOne",             1.0,  "5 10 19"  },
    {"AQuarterOfTheWay",        0.25, "2 4 7"    },
    {"HalfOfTheWay",            0.5,  "3 6 11"   },
    {"BeforeItsStartUnclamped", -1.0, "-3 -6 -13"},
    {"BehindItsEndUnclamped",   2.0,  "9 18 35"  },
};
class LinePoint : public testing::TestWithParam<LinePointCase> {};
TEST_P(LinePoint, Is)
{
    EXPECT_EQ(text_of(PrimL(Point(1, 2, 3), Point(5, 10, 19)).getEvaluateAt(GetParam().t)), GetParam().point);
}
INSTANTIATE_TEST_SUITE_P(, LinePoint, testing::ValuesIn(kLinePoints),
                         [](const auto& row) { return row.param.name; });

TEST(PrimL, KeepsEvaluatePointsOffTheLine)
{
    EXPECT_EQ(text_of_points(some_line().getEvaluatePoints(4)), "0 0 0, 0.25 0 0, 0.5 0 0, 0.75 0 0, 1 0 0");
    EXPECT_EQ(text_of_points(PrimL(kOrigin, kOrigin).getEvaluatePoints(2)), "0 0 0, 0.5 0 0, 1 0 0");
    EXPECT_TRUE(some_line().getEvaluatePoints(-1).empty());
    const std::list<Point> undefined = some_line().getEvaluatePoints(0);
    ASSERT_EQ(undefined.size(), 1U);
    EXPECT_TRUE(std::isnan(undefined.front().x));
}

struct ArcPointCase {
    const char* name;
    double t;
    Matrix posture;
    Point expected; // of the centre (100, 200, 300), radius 2 along x and, of the ellipse, 5 along y
    Point on_ellipse;
};
// At the angle 0 of the odd posture its first column counts twice, at a quarter turn its second twice or five
// times; its translation and the centre are added.
const ArcPointCase kArcPoints[] = {
    {"OnLocalXAtZero",               0.0,      Matrix(),      {102, 200, 300}, {102, 200, 300}},
    {"OnLocalYAtAQuarter",           kPi / 2,  Matrix(),      {100, 202, 300}, {100, 205, 300}},
    {"OppositeAtAHalf",              kPi,      Matrix(),      {98, 200, 300},  {98, 200, 300} },
    {"BelowAtMinusAQuarter",         -kPi / 2, Matrix(),      {100, 198, 300}, {100, 195, 300}},
    {"TurnedAndShiftedByThePosture", 0.0,      odd_posture(), {114, 228, 342}, {114, 228, 342}},
    {"TurnedAndShiftedOffTheAxis",   kPi / 2,  odd_posture(), {116, 230, 344}, {125, 245, 365}},
};
class ArcPoint : public testing::TestWithParam<ArcPointCase> {};
TEST_P(ArcPoint, IsWhereTheAngleSays)
{
    const Point center(100, 200, 300);
    const ArcPointCase& row = GetParam();
    expect_near(PrimC(center, 2, 0, 0, false, row.posture).getEvaluateAt(row.t), row.expected);
    expect_near(PrimE(center, 2, 5, 0, 0, false, row.posture).getEvaluateAt(row.t), row.on_ellipse);
}
INSTANTIATE_TEST_SUITE_P(, ArcPoint, testing::ValuesIn(kArcPoints),
                         [](const auto& row) { return row.param.name; });

TEST(ArcEvaluation, IsExactOnLocalX)
{
    EXPECT_EQ(text_of(PrimC(Point(100, 200, 300), 2, 0, 0, false, odd_posture()).getEvaluateAt(0)),
              "114 228 342");
    EXPECT_EQ(text_of(PrimE(Point(100, 200, 300), 2, 5, 0, 0, false, odd_posture()).getEvaluateAt(0)),
              "114 228 342");
}

template <class Arc>
void expect_even_steps(const Arc& arc, const Point& first, const Point& middle, const Point& last)
{
    const std::list<Point> points = arc.getEvaluatePoints(2);
    ASSERT_EQ(points.size(), 3U);
    expect_near(points.front(), first);
    expect_near(*std::next(points.begin()), middle);
    expect_near(points.back(), last);
    EXPECT_EQ(arc.getEvaluatePoints(7).size(), 8U);
    EXPECT_TRUE(arc.getEvaluatePoints(-1).empty());
    const std::list<Point> undefined = arc.getEvaluatePoints(0);
    ASSERT_EQ(undefined.size(), 1U);
    EXPECT_TRUE(std::isnan(undefined.front().x));
    EXPECT_TRUE(std::isnan(undefined.front().y));
}

TEST(PrimC, EvaluatesInEvenStepsFromStartToEnd)
{
    expect_even_steps(PrimC(kOrigin, 2, kPi / 2, 3 * kPi / 2, true, Matrix()), Point(0, 2, 0),
                      Point(-2, 0, 0), Point(0, -2, 0));
}

TEST(PrimC, EvaluatesBackwardsWhenItsEndComesFirst)
{
    expect_even_steps(PrimC(kOrigin, 2, kPi / 2, -kPi / 2, true, Matrix()), Point(0, 2, 0), Point(2, 0, 0),
                      Point(0, -2, 0));
}

TEST(PrimE, EvaluatesInEvenStepsFromStartToEnd)
{
    expect_even_steps(PrimE(kOrigin, 2, 5, kPi / 2, 3 * kPi / 2, true, Matrix()), Point(0, 5, 0),
                      Point(-2, 0, 0), Point(0, -5, 0));
}

struct CurvePointCase {
    const char* name;
    double t;
    int points; // (0, 0, 1), (0, 0, 2) and so on
    const char* point;
};
const double kJustBelowAQuarter = std::nextafter(0.25, 0.0);
const double kJustBelowOne = std::nextafter(1.0, 0.0);
const CurvePointCase kCurvePoints[] = {
    {"TheFirstAtZero",                   0.0,                4,   "0 0 1"  },
    {"TheFirstBelowZero",                -3.0,               4,   "0 0 1"  },
    {"TheFirstJustAboveZero",            5e-324,             4,   "0 0 1"  },
    {"TheFirstUpToAQuarterOfFour",       kJustBelowAQuarter, 4,   "0 0 1"  },
    {"TheSecondFromAQuarterOfFour",      0.25,               4,   "0 0 2"  },
    {"TheThirdOfFourAtAHalf",            0.5,                4,   "0 0 3"  },
    {"TheLastJustBelowOne",              kJustBelowOne,      4,   "0 0 4"  },
    {"TheLastJustBelowOneOfMany",        kJustBelowOne,      999, "0 0 999"},
    {"TheLastAtOne",                     1.0,                4,   "0 0 4"  },
    {"TheLastAboveOne",                  1e300,              4,   "0 0 4"  },
    {"TheOnlyPoint",                     0.5,                1,   "0 0 1"  },
    {"TheOriginOfAnEmptyList",           0.5,                0,   "0 0 0"  },
    {"TheOriginOfAnEmptyListAtItsStart", 0.0,                0,   "0 0 0"  },
    {"TheOriginOfAnEmptyListAtItsEnd",   1.0,                0,   "0 0 0"  },
    {"TheOriginAtNaN",                   kNaN,               4,   "0 0 0"  },
};
class CurvePoint : public testing::TestWithParam<CurvePointCase> {};
TEST_P(CurvePoint, Is)
{
    PrimF curve({}, false);
    for (int i = 1; i <= GetParam().points; ++i)
        curve.points.emplace_back(0.0, 0.0, i);
    EXPECT_EQ(text_of(curve.getEvaluateAt(GetParam().t)), GetParam().point);
}
INSTANTIATE_TEST_SUITE_P(, CurvePoint, testing::ValuesIn(kCurvePoints),
                         [](const auto& row) { return row.param.name; });

TEST(PrimF, EvaluatesToItsControlPointsWhateverTheCount)
{
    for (const int n : {-1, 0, 1, 100})
        EXPECT_EQ(text_of_points(some_curve().getEvaluatePoints(n)), "1 2 3, 4 5 6");
    EXPECT_TRUE(PrimF({}, true).getEvaluatePoints(3).empty());
}

} // namespace
