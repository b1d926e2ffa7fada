// What strokes and figures own, and how they are copied.
#include "Source/geometry/primitives.h"
#include "tests/geometry/sample_primitives.h"
#include "tests/support/small_stack.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <sstream>
#include <string>
#include <typeinfo>

using vnt::FigPrimInfo;
using vnt::PrimC;
using vnt::PrimInfo;
using vnt::PrimL;
using vnt::PrimType;
using vnt::StrokeInfo;
using wire::bytes_of;
using wire::i32;
using wire::text_of;
using namespace sample;

namespace {

// Counts its ends; a copy that a stroke makes of it is a plain line.
struct CountedLine : PrimL {
    int& ended;

    explicit CountedLine(int& counter) : PrimL(some_line()), ended(counter) {}
    CountedLine(const CountedLine&) = delete;
    CountedLine& operator=(const CountedLine&) = delete;
    ~CountedLine() override { ++ended; }
};

TEST(StrokeInfo, DeletesItsPrimitivesWhenCleared)
{
    int ended = 0;
    StrokeInfo stroke = stroke_of(nullptr);
    stroke.primitives.push_back(new CountedLine(ended));
    stroke.primitives.push_back(nullptr);
    stroke.primitives.push_back(new CountedLine(ended));
    stroke.clear();
    EXPECT_EQ(ended, 2);
    EXPECT_TRUE(stroke.primitives.empty());
    stroke.clear();
    EXPECT_EQ(ended, 2);
}

TEST(StrokeInfo, DeletesItsPrimitivesAtItsEnd)
{
    int ended = 0;
    {
        StrokeInfo stroke = stroke_of(nullptr);
        stroke.primitives.push_back(new CountedLine(ended));
        EXPECT_EQ(ended, 0);
    }
    EXPECT_EQ(ended, 1);
}

TEST(StrokeInfo, DeletesItsPrimitivesBeforeItReads)
{
    int ended = 0;
    StrokeInfo stroke;
    stroke.primitives.push_back(new CountedLine(ended));
    std::istringstream nothing;
    nothing >> stroke;
    EXPECT_EQ(ended, 1);
    stroke.primitives.push_back(new CountedLine(ended));
    stroke.deserialize(nothing);
    EXPECT_EQ(ended, 2);
}

TEST(StrokeInfo, CopiesItsPrimitivesDeeply)
{
    int ended = 0;
    StrokeInfo target;
    target.primitives.push_back(new CountedLine(ended));
    {
        const StrokeInfo source = stroke_of(some_line(), nullptr, some_arc(), some_ellipse(), some_curve());
        EXPECT_EQ(&(target = source), &target);
        EXPECT_EQ(ended, 1);
        const StrokeInfo copy(source);
        auto original = source.primitives.begin();
        for (const PrimInfo* primitive : copy.primitives) {
            EXPECT_TRUE(primitive != *original || primitive == nullptr);
            ++original;
        }
        EXPECT_EQ(text_of(copy), text_of(source));
    }
    EXPECT_EQ(text_of(target), "5\n0\n" + kLineText + "\n-1\n\n1\n" + kArcText + "\n2\n" + kEllipseText +
                                   "\n3\n" + kCurveText);
}

TEST(StrokeInfo, CopiesAnEntryOfUnknownTypeAsANullEntry)
{
    StrokeInfo source = stroke_of(some_line());
    source.primitives.push_back(copy_of(mistyped_line(kUnknownType)));
    source.primitives.push_back(copy_of(mistyped_line(static_cast<PrimType>(-1))));
    const StrokeInfo copy(source);
    ASSERT_EQ(copy.primitives.size(), 3U);
    EXPECT_NE(copy.primitives.front(), nullptr);
    EXPECT_EQ(*std::next(copy.primitives.begin()), nullptr);
    EXPECT_EQ(copy.primitives.back(), nullptr);
}

TEST(StrokeInfo, KeepsSelfAssignmentEmptying)
{
    int ended = 0;
    StrokeInfo stroke = stroke_of(some_line());
    stroke.primitives.push_back(new CountedLine(ended));
    const StrokeInfo& itself = stroke;
    stroke = itself;
    EXPECT_TRUE(stroke.primitives.empty());
    EXPECT_EQ(ended, 1);
}

TEST(FigPrimInfo, CopiesItsStrokesDeeply)
{
    FigPrimInfo copy;
    {
        const FigPrimInfo source =
            figure_of(stroke_of(some_line(), nullptr), StrokeInfo(), stroke_of(some_curve()));
        copy = source;
        EXPECT_NE(copy.strokes.front().primitives.front(), source.strokes.front().primitives.front());
    }
    EXPECT_EQ(text_of(copy), "3\n2\n0\n" + kLineText + "\n-1\n\n0\n\n1\n3\n" + kCurveText + "\n");
}

struct MismatchCase {
    const char* name;
    PrimType type;
};
const MismatchCase kMismatches[] = {
    {"ACircle",    vnt::PRIM_CIRCLE },
    {"AnEllipse",  vnt::PRIM_ELLIPSE},
    {"AFreeCurve", vnt::PRIM_FREE   },
};
class LineThatSaysItIs : public testing::TestWithParam<MismatchCase> {};
TEST_P(LineThatSaysItIs, IsABadCast)
{
    StrokeInfo stroke = stroke_of(some_arc());
    stroke.primitives.push_back(copy_of(mistyped_line(GetParam().type)));
    EXPECT_THROW(text_of(stroke), std::bad_cast);
    EXPECT_THROW(bytes_of(stroke), std::bad_cast);
    EXPECT_THROW(StrokeInfo{stroke}, std::bad_cast);
    StrokeInfo target = stroke_of(some_line());
    EXPECT_THROW(target = stroke, std::bad_cast);
    EXPECT_EQ(text_of(target), "1\n1\n" + kArcText); // what it got of the copy is its own, and nothing else
    FigPrimInfo figure;
    EXPECT_THROW(figure.strokes.push_back(stroke), std::bad_cast);
}
INSTANTIATE_TEST_SUITE_P(, LineThatSaysItIs, testing::ValuesIn(kMismatches),
                         [](const auto& row) { return row.param.name; });

TEST(StrokeInfo, RefusesACircleThatSaysItIsALine)
{
    StrokeInfo stroke;
    PrimC circle = some_arc();
    circle.type = vnt::PRIM_LINE;
    stroke.primitives.push_back(copy_of(circle));
    EXPECT_THROW(text_of(stroke), std::bad_cast);
    EXPECT_THROW(StrokeInfo{stroke}, std::bad_cast);
}

TEST(FigPrimInfo, OfAMillionStrokesNeedsNoStack)
{
    constexpr int kStrokes = 1'000'000;
    std::size_t strokes = 0;
    support::run_on_small_stack([&] {
        std::string bytes = i32(kStrokes);
        for (int i = 0; i < kStrokes; ++i)
            bytes += i32(1) + i32(-1);
        std::istringstream in(bytes);
        FigPrimInfo figure;
        figure.deserialize(in);
        const FigPrimInfo copy = figure;
        strokes = bytes_of(copy) == bytes ? copy.strokes.size() : 0;
    });
    EXPECT_EQ(strokes, static_cast<std::size_t>(kStrokes));
}

} // namespace
