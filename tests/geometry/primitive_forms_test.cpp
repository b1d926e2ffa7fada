#include "Source/geometry/primitives.h"
#include "tests/geometry/sample_primitives.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <sstream>
#include <string>
#include <typeindex>
#include <typeinfo>
#include <vector>

using vnt::FigPrimInfo;
using vnt::Matrix;
using vnt::Point;
using vnt::PrimC;
using vnt::PrimE;
using vnt::PrimF;
using vnt::PrimInfo;
using vnt::PrimL;
using vnt::StrokeInfo;
using wire::bytes_of;
using wire::f64;
using wire::i32;
using wire::text_of;
using namespace sample;

namespace {

struct FormCase {
    const char* name;
    std::string form;
    std::string expected;
};
// clang-format off
const FormCase kForms[] = {
    {"LineText", text_of(some_line()), kLineText},
    {"ArcText", text_of(some_arc()), kArcText},
    {"CircleTextHasFlagZero", text_of(some_circle()), "0 0 0\n1\n0 0\n0\n" + kIdentityText},
    {"EllipseText", text_of(some_ellipse()), kEllipseText},
    {"EllipticArcTextHasFlagOne", text_of(some_elliptic_arc()), "0 0 0\n1 2\n3 4\n1\n" + kIdentityText},
    {"CurveText", text_of(some_curve()), kCurveText},
    {"EmptyOpenCurveText", text_of(empty_curve()), "0\n0"},
    {"StrokeTextHasALineEndBetweenPrimitivesOnly", text_of(stroke_of_every_kind()),
     "4\n0\n" + kLineText + "\n1\n" + kArcText + "\n2\n" + kEllipseText + "\n3\n" + kCurveText},
    {"StrokeOfOneHasNoLineEndAtItsEnd", text_of(stroke_of(some_line())), "1\n0\n" + kLineText},
    {"StrokeOfNoneIsItsCount", text_of(StrokeInfo()), "0\n"},
    {"NullEntryIsMinusOneInText", text_of(stroke_of(nullptr)), "1\n-1\n"},
    {"NullEntryBeforeALineInText", text_of(stroke_of(nullptr, some_line())), "2\n-1\n\n0\n" + kLineText},
    {"FigureText", text_of(figure_of(stroke_of(some_line()), StrokeInfo(), stroke_of(some_curve()))),
     "3\n1\n0\n" + kLineText + "\n0\n\n1\n3\n" + kCurveText + "\n"},
    {"FigureOfNoneText", text_of(FigPrimInfo()), "0\n"},
    {"LineBytes", bytes_of(some_line()), kLineBytes},
    {"ArcBytes", bytes_of(some_arc()), kArcBytes},
    {"EllipseBytes", bytes_of(some_ellipse()), kEllipseBytes},
    {"CurveBytes", bytes_of(some_curve()), kCurveBytes},
    {"EmptyOpenCurveBytes", bytes_of(empty_curve()), i32(0) + i32(0)},
    {"StrokeBytes", bytes_of(stroke_of_every_kind()),
     i32(4) + i32(0) + kLineBytes + i32(1) + kArcBytes + i32(2) + kEllipseBytes + i32(3) + kCurveBytes},
    {"StrokeOfNoneBytes", bytes_of(StrokeInfo()), i32(0)},
    {"NullEntryIsMinusOneInBytes", bytes_of(stroke_of(nullptr, some_line())),
     i32(2) + i32(-1) + i32(0) + kLineBytes},
    {"FigureBytes", bytes_of(figure_of(stroke_of(some_line()), StrokeInfo(), stroke_of(some_curve()))),
     i32(3) + i32(1) + i32(0) + kLineBytes + i32(0) + i32(1) + i32(3) + kCurveBytes},
    {"FigureOfNoneBytes", bytes_of(FigPrimInfo()), i32(0)},
};
// clang-format on
class PrimitiveForm : public testing::TestWithParam<FormCase> {};
TEST_P(PrimitiveForm, IsExact) { EXPECT_EQ(GetParam().form, GetParam().expected); }
INSTANTIATE_TEST_SUITE_P(, PrimitiveForm, testing::ValuesIn(kForms),
                         [](const auto& row) { return row.param.name; });

TEST(PrimF, KeepsTheFlagFirstInBytesAndLastInText)
{
    const PrimF closed({kOrigin}, true);
    EXPECT_EQ(bytes_of(closed), i32(1) + i32(1) + wire::point(0, 0, 0));
    EXPECT_EQ(text_of(closed), "1\n0 0 0\n1");
    const PrimF open({kOrigin}, false);
    EXPECT_EQ(bytes_of(open), i32(0) + i32(1) + wire::point(0, 0, 0));
    EXPECT_EQ(text_of(open), "1\n0 0 0\n0");
}

TEST(StrokeInfo, WritesTheTagOfAnUnknownTypeAndNothingElse)
{
    StrokeInfo stroke;
    stroke.primitives.push_back(copy_of(mistyped_line(kUnknownType)));
    EXPECT_EQ(text_of(stroke), "1\n7\n");
    EXPECT_EQ(bytes_of(stroke), i32(1) + i32(7));
}

TEST(PrimitiveForms, GiveTheStreamBack)
{
    FigPrimInfo figure = figure_of(stroke_of(some_line(), some_arc(), some_ellipse(), some_curve()));
    std::stringstream text;
    EXPECT_EQ(&(text << figure), &text);
    EXPECT_EQ(&(text >> figure), &text);
    std::stringstream bytes;
    EXPECT_EQ(&figure.serialize(bytes), &bytes);
    EXPECT_EQ(&figure.deserialize(bytes), &bytes);
    EXPECT_EQ(text_of(figure), text.str());
    EXPECT_EQ(bytes_of(figure), bytes.str());
}

template <class Kind>
void expect_read_back(const Kind& source, Kind from_text)
{
    Kind from_bytes = from_text;
    std::istringstream text(text_of(source));
    std::istringstream bytes(bytes_of(source));
    EXPECT_TRUE(text >> from_text);
    EXPECT_TRUE(from_bytes.deserialize(bytes));
    EXPECT_EQ(text.peek(), EOF);
    EXPECT_EQ(bytes.peek(), EOF);
    EXPECT_EQ(bytes_of(from_text), bytes_of(source));
    EXPECT_EQ(bytes_of(from_bytes), bytes_of(source));
    EXPECT_EQ(from_text.type, source.type);
}

TEST(Primitives, AreReadBackFromTextAndBytes)
{
    expect_read_back(some_line(), PrimL(kOrigin, kOrigin));
    expect_read_back(some_arc(), PrimC(kOrigin, 0, 0, 0, false, Matrix()));
    expect_read_back(PrimC(kOrigin, 0, 0, 0, false, Matrix()), some_arc());
    expect_read_back(some_ellipse(), PrimE(kOrigin, 0, 0, 0, 0, true, Matrix()));
    expect_read_back(PrimE(kOrigin, 0, 0, 0, 0, true, Matrix()), some_ellipse());
    expect_read_back(some_curve(), PrimF({kOrigin, kOrigin, kOrigin}, false));
    expect_read_back(PrimF({}, false), some_curve());
}

TEST(Primitives, AreReadBackFromBytesBitForBit)
{
    const double nan = wire::double_of(wire::kNaN);
    PrimC arc(Point(nan, -0.0, nan), nan, -0.0, nan, true, odd_posture());
    arc.posture.m33 = nan;
    arc.posture.m00 = -0.0;
    const FigPrimInfo source = figure_of(stroke_of(arc, PrimF({Point(-0.0, nan, -0.0)}, false)));
    FigPrimInfo figure;
    std::istringstream bytes(bytes_of(source));
    EXPECT_TRUE(figure.deserialize(bytes));
    EXPECT_EQ(bytes_of(figure), bytes_of(source));
}

template <class Kind>
void expect_flag_as_a_digit(const Kind& source, Kind target)
{
    std::stringstream words;
    words << std::boolalpha << source;
    EXPECT_EQ(words.str(), text_of(source));
    EXPECT_TRUE(words >> target);
    EXPECT_EQ(text_of(target), text_of(source));
    EXPECT_TRUE(words.flags() & std::ios::boolalpha);
}

TEST(Primitives, HaveADigitForAFlagOnAStreamOfWords)
{
    expect_flag_as_a_digit(some_arc(), some_circle());
    expect_flag_as_a_digit(some_circle(), some_arc());
    expect_flag_as_a_digit(some_ellipse(), some_elliptic_arc());
    expect_flag_as_a_digit(some_elliptic_arc(), some_ellipse());
    expect_flag_as_a_digit(some_curve(), empty_curve());
    expect_flag_as_a_digit(empty_curve(), some_curve());
}

// What a record is after reading the first size bytes of fresh over stale: whole words only.
std::string after_short_read(const std::string& fresh, const std::string& stale, std::size_t size,
                             const std::vector<std::size_t>& words)
{
    std::size_t whole = 0;
    for (const std::size_t word : words) {
        if (whole + word > size)
            break;
        whole += word;
    }
    return fresh.substr(0, whole) + stale.substr(whole);
}

template <class Kind>
void expect_short_bytes_leave_the_rest(const Kind& source, const Kind& before,
                                       const std::vector<std::size_t>& words)
{
    const std::string fresh = bytes_of(source);
    const std::string stale = bytes_of(before);
    for (std::size_t size = 0; size <= fresh.size(); ++size) {
        Kind primitive = before;
        std::istringstream in(fresh.substr(0, size));
        primitive.deserialize(in);
        EXPECT_EQ(in.fail(), size < fresh.size()) << size << " bytes";
        EXPECT_EQ(bytes_of(primitive), after_short_read(fresh, stale, size, words)) << size << " bytes";
    }
}

TEST(Primitives, WhoseBytesEndEarlyKeepTheOtherFields)
{
    const std::vector<std::size_t> posture(16, 8);
    std::vector<std::size_t> arc_words = {8, 8, 8, 8, 8, 8, 4};
    arc_words.insert(arc_words.end(), posture.begin(), posture.end());
    std::vector<std::size_t> ellipse_words = arc_words;
    ellipse_words.insert(ellipse_words.begin(), 8);
    expect_short_bytes_leave_the_rest(some_line(), PrimL(kOrigin, kOrigin), {8, 8, 8, 8, 8, 8});
    expect_short_bytes_leave_the_rest(PrimC(Point(1, 2, 3), 4, 5, 6, false, Matrix()),
                                      PrimC(kOrigin, 7, 8, 9, true, odd_posture()), arc_words);
    expect_short_bytes_leave_the_rest(PrimE(Point(1, 2, 3), 4, 5, 6, 7, true, odd_posture()),
                                      PrimE(kOrigin, 7, 8, 9, 10, false, Matrix()), ellipse_words);
}

TEST(Primitives, WhoseTextEndsEarlyKeepTheOtherFields)
{
    PrimC arc(Point(1, 2, 3), 4, 5, 6, true, Matrix());
    std::istringstream in("10 20 30 40 50");
    in >> arc;
    EXPECT_TRUE(in.fail());
    EXPECT_EQ(text_of(arc), text_of(PrimC(Point(10, 20, 30), 40, 50, 6, true, Matrix())));
}

struct ReadCase {
    const char* name;
    std::string input;
    std::string figure; // its text form
    bool fails;
};
void expect_read(const ReadCase& row, std::istream& (*read)(std::istream&, FigPrimInfo&))
{
    FigPrimInfo figure = figure_of(stroke_of(some_line()), StrokeInfo()); // what it held before goes
    std::istringstream in(row.input);
    read(in, figure);
    EXPECT_EQ(in.fail(), row.fails);
    EXPECT_EQ(text_of(figure), row.figure);
}

const std::string kIdentityElements = " 1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1";

const ReadCase kTextReads[] = {
    {"NothingIsNoStroke",                     "",                                            "0\n",                                    true },
    {"OneLineIsOneEmptyStroke",               "1",                                           "1\n0\n\n",                               true },
    {"CountThatIsNoNumberIsNone",             "x",                                           "0\n",                                    true },
    {"NegativeCountIsNone",                   "-1",                                          "0\n",                                    false},
    {"CountBeyondAnIntegerIsNone",            "99999999999",                                 "0\n",                                    true },
    {"AnyBlanksSeparate",                     "2\t1 0\n1 2 3   4 5 6\n\n 0",                 "2\n1\n0\n" + kLineText + "\n0\n\n",      false},
    {"WhatFollowsStays",                      "1 0 5",                                       "1\n0\n\n",                               false},
    {"MissingStrokesAreEmpty",                "3 1 0 1 2 3 4 5 6",                           "3\n1\n0\n" + kLineText + "\n0\n\n0\n\n", true },
    {"MissingPrimitivesAreNull",              "1 3 0 1 2 3 4",                               "1\n3\n0\n1 2 3\n4 0 0\n-1\n\n-1\n\n",    true },
    {"UnknownTagIsNullAndReadsNoMore",        "1 2 7 0 1 2 3 4 5 6",                         "1\n2\n-1\n\n0\n" + kLineText + "\n",     false},
    {"NegativeTagIsNull",                     "1 2 -1 0 1 2 3 4 5 6",                        "1\n2\n-1\n\n0\n" + kLineText + "\n",     false},
    {"TagThatIsNoNumberIsNullAndNoLine",      "1 2 x 0",                                     "1\n2\n-1\n\n-1\n\n",                     true },
    {"TagBeyondAnIntegerIsNull",              "1 1 99999999999",                             "1\n1\n-1\n\n",                           true },
    {"CoordinateThatIsNoNumberEndsTheFields", "1 1 0 1 2 x 4 5 6",                           "1\n1\n0\n1 2 0\n0 0 0\n",                true },
    {"Circle",                                "1 1 1 1 2 3 0.1 5 6 1" + kIdentityElements,   "1\n1\n1\n" + kArcText + "\n",            false},
    {"Ellipse",                               "1 1 2 1 2 3 4 0.1 5 6 0" + kIdentityElements, "1\n1\n2\n" + kEllipseText + "\n",        false},
    {"Curve",                                 "1 1 3 2 1 2 3 4 5 6 1",                       "1\n1\n3\n" + kCurveText + "\n",          false},
    {"FlagTwoIsTrueAndTheLast",               "1 1 1 1 2 3 0.1 5 6 2 9 9",                   "1\n1\n1\n" + kArcText + "\n",            true },
    {"CurveWithoutItsCount",                  "1 1 3",                                       "1\n1\n3\n0\n0\n",                        true },
    {"CurveWithANegativeCountHasNoPoints",    "1 1 3 -4 1",                                  "1\n1\n3\n0\n1\n",                        false},
    {"CurveCountsMissingPoints",              "1 1 3 3 1 2 3 4",                             "1\n1\n3\n3\n1 2 3\n4 0 0\n0 0 0\n0\n",   true },
    {"CircleCutShortIsNoArcAndUnturned",      "1 1 1 1 2 3 4",
     "1\n1\n1\n1 2 3\n4\n0 0\n0\n" + kIdentityText + "\n",                                                                             true },
    {"EllipseCutShortIsNoArcAndUnturned",     "1 1 2 1 2 3 4",
     "1\n1\n2\n1 2 3\n4 0\n0 0\n0\n" + kIdentityText + "\n",                                                                           true },
};
class FigureText : public testing::TestWithParam<ReadCase> {};
TEST_P(FigureText, IsReadAs)
{
    expect_read(GetParam(),
                [](std::istream& in, FigPrimInfo& figure) -> std::istream& { return in >> figure; });
}
INSTANTIATE_TEST_SUITE_P(, FigureText, testing::ValuesIn(kTextReads),
                         [](const auto& row) { return row.param.name; });

// clang-format off
const ReadCase kByteReads[] = {
    {"NothingIsNoStroke", "", "0\n", true},
    {"CountThatComesShortIsNone", i32(1).substr(0, 3), "0\n", true},
    {"CountAloneIsEmptyStrokes", i32(2), "2\n0\n\n0\n\n", true},
    {"WhatFollowsStays", i32(1) + i32(0) + i32(5), "1\n0\n\n", false},
    {"MissingPrimitivesAreNull", i32(1) + i32(3) + i32(0) + kLineBytes.substr(0, 28),
     "1\n3\n0\n1 2 3\n0 0 0\n-1\n\n-1\n\n", true},
    {"TagThatComesShortIsNull", i32(1) + i32(1) + i32(0).substr(0, 2), "1\n1\n-1\n\n", true},
    {"UnknownTagIsNullAndReadsNoMore", i32(1) + i32(2) + i32(7) + i32(0) + kLineBytes,
     "1\n2\n-1\n\n0\n" + kLineText + "\n", false},
    {"NegativeTagIsNull", i32(1) + i32(2) + i32(-1) + i32(0) + kLineBytes,
     "1\n2\n-1\n\n0\n" + kLineText + "\n", false},
    {"EveryKind",
     i32(2) + i32(0) + //
         i32(4) + i32(3) + kCurveBytes + i32(2) + kEllipseBytes + i32(1) + kArcBytes + i32(0) + kLineBytes,
     "2\n0\n\n"
     "4\n3\n" + kCurveText + "\n2\n" + kEllipseText + "\n1\n" + kArcText + "\n0\n" + kLineText + "\n", false},
    {"AnyFlagButZeroIsTrue",
     i32(1) + i32(3) + i32(3) + i32(2) + i32(0) + i32(3) + i32(-1) + i32(0) + i32(3) + i32(0x01000000) + i32(0),
     "1\n3\n3\n0\n1\n3\n0\n1\n3\n0\n1\n", false},
    {"CurveWithoutItsCount", i32(1) + i32(1) + i32(3) + i32(1), "1\n1\n3\n0\n1\n", true},
    {"CurveCountsMissingPoints",
     i32(1) + i32(1) + i32(3) + i32(1) + i32(3) + kFirstPoint + f64(wire::kFour) + "\1",
     "1\n1\n3\n3\n1 2 3\n4 0 0\n0 0 0\n1\n", true},
    {"CircleCutShortIsNoArcAndUnturned", i32(1) + i32(1) + i32(1) + kFirstPoint,
     "1\n1\n1\n1 2 3\n0\n0 0\n0\n" + kIdentityText + "\n", true},
    {"EllipseCutShortIsNoArcAndUnturned", i32(1) + i32(1) + i32(2) + kFirstPoint,
     "1\n1\n2\n1 2 3\n0 0\n0 0\n0\n" + kIdentityText + "\n", true},
};
// clang-format on
class FigureBytes : public testing::TestWithParam<ReadCase> {};
TEST_P(FigureBytes, AreReadAs)
{
    expect_read(GetParam(), [](std::istream& in, FigPrimInfo& figure) -> std::istream& {
        return figure.deserialize(in);
    });
}
INSTANTIATE_TEST_SUITE_P(, FigureBytes, testing::ValuesIn(kByteReads),
                         [](const auto& row) { return row.param.name; });

TEST(FigPrimInfo, ReadsItsOwnFormsBackWithNullEntries)
{
    const FigPrimInfo source = figure_of(stroke_of(nullptr, some_line(), nullptr), StrokeInfo(),
                                         stroke_of(some_arc(), some_ellipse(), some_curve(), nullptr));
    FigPrimInfo from_text;
    FigPrimInfo from_bytes;
    std::istringstream text(text_of(source));
    std::istringstream bytes(bytes_of(source));
    EXPECT_TRUE(text >> from_text);
    EXPECT_TRUE(from_bytes.deserialize(bytes));
    EXPECT_EQ(text_of(from_text), text_of(source));
    EXPECT_EQ(bytes_of(from_bytes), bytes_of(source));
    EXPECT_EQ(from_text.strokes.front().primitives.front(), nullptr);
}

template <class Kind>
void expect_emptied_by_a_failed_stream(const Kind& full, const Kind& empty)
{
    std::istringstream in;
    in.setstate(std::ios::failbit);
    Kind from_text = full;
    Kind from_bytes = full;
    in >> from_text;
    from_bytes.deserialize(in);
    EXPECT_EQ(text_of(from_text), text_of(empty));
    EXPECT_EQ(text_of(from_bytes), text_of(empty));
}

TEST(CountedRecords, AreEmptiedFirstEvenWhenNothingCanBeRead)
{
    expect_emptied_by_a_failed_stream(some_curve(), PrimF({}, true)); // the flag stays
    expect_emptied_by_a_failed_stream(stroke_of(some_line(), some_arc()), StrokeInfo());
    expect_emptied_by_a_failed_stream(figure_of(stroke_of(some_line())), FigPrimInfo());
}

TEST(StrokeInfo, KeepsANullEntryForAnUnknownTypeTag)
{
    StrokeInfo stroke;
    std::istringstream text("2 7 0 1 2 3 4 5 6");
    EXPECT_TRUE(text >> stroke);
    ASSERT_EQ(stroke.primitives.size(), 2U);
    EXPECT_EQ(stroke.primitives.front(), nullptr);
    ASSERT_NE(dynamic_cast<PrimL*>(stroke.primitives.back()), nullptr);
    std::istringstream bytes(i32(2) + i32(4) + i32(0) + kLineBytes);
    EXPECT_TRUE(stroke.deserialize(bytes));
    ASSERT_EQ(stroke.primitives.size(), 2U);
    EXPECT_EQ(stroke.primitives.front(), nullptr);
    EXPECT_EQ(bytes_of(dynamic_cast<PrimL&>(*stroke.primitives.back())), kLineBytes);
}

TEST(StrokeInfo, ReadsEachTagAsItsClass)
{
    StrokeInfo stroke;
    std::istringstream bytes(bytes_of(stroke_of_every_kind()));
    EXPECT_TRUE(stroke.deserialize(bytes));
    std::vector<std::type_index> classes;
    for (const PrimInfo* primitive : stroke.primitives)
        classes.emplace_back(typeid(*primitive));
    const std::vector<std::type_index> expected{typeid(PrimL), typeid(PrimC), typeid(PrimE), typeid(PrimF)};
    EXPECT_EQ(classes, expected);
}

} // namespace
