#include "sketch/core/answer.h"

#include "sketch/core/answer_numbers.h"
#include "sketch/core/shape_outline.h"
#include "tests/sketch/random_figures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace vnt::sketch;

constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// One pixel is a point, y of the artwork runs up from the sheet's lower edge.
Sheet plain_sheet()
{
    Sheet sheet;
    sheet.sheet_to_model = {1, 0, 0, -1, 0, 1000};
    sheet.tolerance = 1;
    return sheet;
}

StrokePtr stroke_of(Shape shape)
{
    Stroke stroke;
    stroke.shape = std::move(shape);
    return std::make_shared<const Stroke>(std::move(stroke));
}

StrokePtr ink_of(const Ink& ink)
{
    Stroke stroke;
    stroke.ink = ink;
    return std::make_shared<const Stroke>(std::move(stroke));
}

std::string answer_to(const Shape& shape, const Sheet& sheet = plain_sheet())
{
    return answer_of({stroke_of(shape)}, sheet);
}

std::string point(const char* x, const char* y)
{
    return std::string("<control_point x=\"") + x + "\" y=\"" + y + "\" z=\"0.0\"/>";
}

struct NumberCase {
    double value;
    const char* text;
};
const NumberCase kNumbers[] = {
    {0,           "0.0"               },
    {-0.0,        "0.0"               },
    {100,         "100.0"             },
    {-2.5,        "-2.5"              },
    {0.1,         "0.1"               },
    {1e300,       "1.0e+300"          },
    {1.5e-7,      "1.5e-07"           },
    {1.0 / 3,     "0.3333333333333333"},
    {2 * kPi,     "6.283185307179586" },
    {123456789.0, "123456789.0"       },
};
TEST(AnswerNumber, IsTheShortestWithADecimalPoint)
{
    for (const NumberCase& number : kNumbers) {
        std::string text = "x";
        append_number(text, number.value);
        EXPECT_EQ(text, std::string("x") + number.text);
        EXPECT_EQ(std::strtod(text.c_str() + 1, nullptr), number.value);
    }
}

TEST(AnswerDecimals, AreAMillionthOfAPixelOrFiner)
{
    EXPECT_EQ(Decimals(1)(1.23456789), 1.234568);
    EXPECT_EQ(Decimals(0.75)(1.23456789), 1.2345679);
    EXPECT_EQ(Decimals(2e7)(12345678), 12345680);
    EXPECT_EQ(Decimals(1)(1e12 + 0.25), 1e12 + 0.25); // no digits to spare
    EXPECT_EQ(Decimals(0)(1.23456789), 1.23456789);
    EXPECT_EQ(Decimals(kNan)(1.23456789), 1.23456789);
    EXPECT_EQ(rounded_angle(kPi / 2 + 1e-14), kPi / 2);
    EXPECT_EQ(rounded_angle(1.23456789012345), 1.234567890123);
}

struct AnswerCase {
    const char* name;
    Shape shape;
    std::string element; // within the one shape
};
// clang-format off
const AnswerCase kAnswers[] = {
    {"ALineIsALine", Straight{{{10, 20}, {30.5, 40}}, false},
     R"(<line><start x="10.0" y="980.0" z="0.0"/><end x="30.5" y="960.0" z="0.0"/></line>)"},
    {"StraightPiecesAreOneCurve", Straight{{{0, 0}, {10, 0}, {10, 5}}, false},
     "<open_free_curve><bezier_curve>" + point("0.0", "1000.0") + point("0.0", "1000.0") +
     point("10.0", "1000.0") + point("10.0", "1000.0") + point("10.0", "1000.0") + point("10.0", "1000.0") +
     point("10.0", "995.0") + point("10.0", "995.0") + "</bezier_curve></open_free_curve>"},
    {"ATriangleIsOneThatCloses", Straight{{{0, 0}, {10, 0}, {10, 5}}, true},
     "<closed_free_curve><bezier_curve>" + point("0.0", "1000.0") + point("0.0", "1000.0") +
     point("10.0", "1000.0") + point("10.0", "1000.0") + point("10.0", "1000.0") + point("10.0", "1000.0") +
     point("10.0", "995.0") + point("10.0", "995.0") + point("10.0", "995.0") + point("10.0", "995.0") +
     point("0.0", "1000.0") + point("0.0", "1000.0") + "</bezier_curve></closed_free_curve>"},
    {"ACircleIsACircle", Round{{{300, 200}, 100, 100, 0}, 1.5, -2 * kPi},
     R"(<circle><center x="300.0" y="800.0" z="0.0"/><radius>100.0</radius>)"
     R"(<angle start="0.0" end="6.283185307179586"/></circle>)"},
    {"ASmallCircleToo", Round{{{300, 200}, 0.5, 0.5, 0}, 0, 2 * kPi},
     R"(<circle><center x="300.0" y="800.0" z="0.0"/><radius>0.5</radius>)"
     R"(<angle start="0.0" end="6.283185307179586"/></circle>)"},
    {"AnUprightEllipseHasNoPosture", Round{{{300, 200}, 100, 50, 0}, 0, 2 * kPi},
     R"(<ellipse><center x="300.0" y="800.0" z="0.0"/><major_radius>100.0</major_radius>)"
     R"(<minor_radius>50.0</minor_radius><angle start="0.0" end="6.283185307179586"/></ellipse>)"},
    // On the sheet 30° from x towards y, which is downwards: in the artwork 150° from x upwards.
    {"ATurnedEllipseHasOne", Round{{{300, 200}, 100, 50, kPi / 6}, 0, 2 * kPi},
     R"(<ellipse><center x="300.0" y="800.0" z="0.0"/><major_radius>100.0</major_radius>)"
     R"(<minor_radius>50.0</minor_radius><angle start="0.0" end="6.283185307179586"/>)"
     R"(<posture m00="-0.866025403784" m01="-0.5" m10="0.5" m11="-0.866025403784" m22="1.0"/></ellipse>)"},
    // On the sheet clockwise as one sees it is from x towards y; in the artwork angles run the other way.
    {"AnArcAgainstTheClockRunsUpward", Round{{{300, 200}, 100, 100, 0}, 0, -kPi / 2},
     R"(<circular_arc><center x="300.0" y="800.0" z="0.0"/><radius>100.0</radius>)"
     R"(<angle start="0.0" end="1.5707963267948966"/></circular_arc>)"},
    {"AnArcWithTheClockIsTurnedOver", Round{{{300, 200}, 100, 100, 0}, 0.25, 2.5},
     R"(<circular_arc><center x="300.0" y="800.0" z="0.0"/><radius>100.0</radius>)"
     R"(<angle start="0.25" end="2.75"/>)"
     R"(<posture m00="1.0" m01="0.0" m10="0.0" m11="-1.0" m22="-1.0"/></circular_arc>)"},
    // tan of the polar angle is half that of the parameter.
    {"AnEllipsesAnglesArePolar", Round{{{300, 200}, 100, 50, 0}, 0, -std::atan(2.0)},
     R"(<elliptic_arc><center x="300.0" y="800.0" z="0.0"/><major_radius>100.0</major_radius>)"
     R"(<minor_radius>50.0</minor_radius><angle start="0.0" end="0.785398163397"/></elliptic_arc>)"},
    {"ACurveIsItsPoints", Curve{{{0, 0}, {1, 5}, {4, 5}, {9, 0}}, false},
     "<open_free_curve><bezier_curve>" + point("0.0", "1000.0") + point("1.0", "995.0") +
     point("4.0", "995.0") + point("9.0", "1000.0") + "</bezier_curve></open_free_curve>"},
};
// clang-format on
class AnswerOf : public testing::TestWithParam<AnswerCase> {};
TEST_P(AnswerOf, AShape)
{
    EXPECT_EQ(answer_to(GetParam().shape), "<vant><shape>" + GetParam().element + "</shape></vant>");
}
INSTANTIATE_TEST_SUITE_P(, AnswerOf, testing::ValuesIn(kAnswers),
                         [](const auto& row) { return row.param.name; });

struct WayCase {
    const char* name;
    Round shape;
    double tolerance; // of a view on which a pixel is a point, but for its turn
    const char* element;
};
const Round kArc{
    {{300, 200}, 100, 100, 0},
    0.4, 2
};
Round arc_of_radius(double radius)
{
    Round arc = kArc;
    arc.ellipse.major = arc.ellipse.minor = radius;
    return arc;
}
Round circle_of_radius(double radius) { return {arc_of_radius(radius).ellipse, 0, 2 * kPi}; }
// A cut is off its ray by 2 / radius points at most, and a quarter by 2.73e-4 of the radius; see kMostOff and
// kMostGap.
// clang-format off
const WayCase kWays[] = {
    {"AnArcIsSentAsOne", kArc, 1, "circular_arc"},
    {"OnAViewThatIsTurnedByAQuarterItIsACurve", kArc, 0, "open_free_curve"},
    {"OnAViewThatIsTurnedFurtherToo", kArc, -1, "open_free_curve"},
    {"OnAViewWithoutANumberToo", kArc, kNan, "open_free_curve"},
    {"OnAnInfiniteViewToo", kArc, kInfinite, "open_free_curve"},
    {"ToATinyToleranceItIsStillAnArc", kArc, 1e-6, "circular_arc"},
    {"ToOneThatCutsMayNotReachItIsACurve", kArc, 1e-9, "open_free_curve"},
    {"ToALargeOneItIsACurve", kArc, 1e4, "open_free_curve"},
    {"ASmallArcIsACurve", arc_of_radius(1.2), 1, "open_free_curve"},
    {"ALargeArcIsACurve", arc_of_radius(1500), 1, "open_free_curve"},
    {"ACircleNeedsNoCut", circle_of_radius(100), 0, "circle"},
    {"NorDoesATinyOne", circle_of_radius(0.1), kNan, "circle"},
    {"AsLargeACircleAsQuartersCanIsACircle", circle_of_radius(1450), 1, "circle"},
    {"ALargerOneIsACurve", circle_of_radius(1500), 1, "closed_free_curve"},
};
// clang-format on
class AnswerWay : public testing::TestWithParam<WayCase> {};
TEST_P(AnswerWay, IsAsGoodAsThePluginDrawsIt)
{
    Sheet sheet = plain_sheet();
    sheet.tolerance = GetParam().tolerance;
    const std::string answer = answer_to(GetParam().shape, sheet);
    const std::string start = std::string("<vant><shape><") + GetParam().element + ">";
    EXPECT_EQ(answer.substr(0, start.size()), start);
}
INSTANTIATE_TEST_SUITE_P(, AnswerWay, testing::ValuesIn(kWays),
                         [](const auto& row) { return row.param.name; });

TEST(Answer, OfNoStrokesIsEmpty)
{
    EXPECT_EQ(answer_of({}, plain_sheet()), "<vant></vant>");
    EXPECT_EQ(answer_of({nullptr}, plain_sheet()), "<vant></vant>");
}

TEST(Answer, HasTheStrokesInTheirOrder)
{
    const std::string first = answer_to(kAnswers[0].shape);
    const std::string second = answer_to(kAnswers[3].shape);
    const auto within = [](const std::string& answer) { return answer.substr(6, answer.size() - 13); };
    EXPECT_EQ(answer_of({stroke_of(kAnswers[0].shape), stroke_of(kAnswers[3].shape)}, plain_sheet()),
              "<vant>" + within(first) + within(second) + "</vant>");
}

TEST(Answer, LeavesOutWhatIsNotFinite)
{
    const Shape shapes[] = {
        Straight{{{0, 0}, {kNan, 5}},       false},
        Straight{{{0, 0}, {1e39, 5}},       false}, // beyond single precision
        Round{{{kInfinite, 0}, 5, 5, 0}, 0,     2 * kPi},
        Round{{{0, 0}, kNan, kNan, 0},                         0,        2 * kPi},
        Round{{{0, 0}, 5, 5, 0},                  kNan,                1},
        Curve{{{0, 0}, {1, 1}, {kNan, 0}, {3, 3}},    false},
    };
    for (const Shape& shape : shapes)
        EXPECT_EQ(answer_to(shape), "<vant></vant>") << shape.index();
    Sheet sheet = plain_sheet();
    sheet.sheet_to_model.e = kNan;
    EXPECT_EQ(answer_to(kAnswers[0].shape, sheet), "<vant></vant>");
}

TEST(Answer, OfInkIsTheCurveAlongIt)
{
    Ink ink;
    for (int i = 0; i <= 40; ++i)
        ink.push_back({5.0 * i, 60 * std::sin(i * 0.2), 8.0 * i, 1});
    const StrokePtr stroke = ink_of(ink);
    const std::string answer = answer_of({stroke}, plain_sheet());
    std::size_t points = 0;
    for (std::size_t at = answer.find("<control_point"); at != answer.npos;
         at = answer.find("<control_point", at + 1))
        ++points;
    EXPECT_EQ(points, cubics_of(*stroke, kAnswerTolerance).size());
    EXPECT_EQ(answer.find(point("0.0", "1000.0")),
              std::string("<vant><shape><open_free_curve><bezier_curve>").size());
}

TEST(Answer, OfATapIsADot)
{
    EXPECT_EQ(
        answer_of(
            {
                ink_of({{3, 4, 0, 1}}
                )
    },
            plain_sheet()),
        R"(<vant><shape><line><start x="3.0" y="996.0" z="0.0"/><end x="3.0" y="996.0" z="0.0"/></line>)"
        "</shape></vant>");
}

// A path of the plug-in has 32,768 anchors at most; where it welds nothing a segment takes two.
TEST(Answer, OfACurveThatIsTooLongForOnePathIsSeveralShapes)
{
    Straight shape;
    for (int i = 0; i <= 20000; ++i)
        shape.corners.push_back({i % 100 * 10.0, i / 100 * 10.0});
    const std::string answer = answer_to(shape);
    const std::size_t second = answer.find("<shape>", 10);
    ASSERT_NE(second, answer.npos);
    EXPECT_EQ(answer.find("<shape>", second + 1), answer.npos);
    // The second begins where the first ends.
    const std::size_t last = answer.rfind("<control_point", second);
    const std::string end = answer.substr(last, answer.find("/>", last) + 2 - last);
    EXPECT_EQ(answer.find(end, second), answer.find("<control_point", second));
}

// What the plug-in's parser asks for, of every kind of shape.
TEST(Answer, HasOneBlankBeforeAnAttributeAndNoOtherMarks)
{
    random_figures::Figures figures(5);
    std::vector<StrokePtr> strokes;
    for (StrokeId id = 1; id <= 200; ++id)
        strokes.push_back(figures.next(id));
    const std::string answer = answer_of(strokes, Sheet());
    EXPECT_EQ(answer.find_first_not_of("<>/=\" abcdefghijklmnopqrstuvwxyz_0123456789.-+"), answer.npos);
    EXPECT_EQ(answer.find("  "), answer.npos);
    EXPECT_EQ(answer.find("> "), answer.npos);
    EXPECT_EQ(answer.find(" /"), answer.npos);
    EXPECT_EQ(answer.find(" ="), answer.npos);
    EXPECT_EQ(answer.find("= "), answer.npos);
    EXPECT_EQ(answer.find("nan"), answer.npos);
    EXPECT_EQ(answer.find("inf"), answer.npos);
}

} // namespace
