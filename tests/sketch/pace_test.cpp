#include "sketch/core/pace.h"

#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace vnt::sketch;

// 200 points along x, one pixel and about 10 ms each, with rests at some of them.
Ink going(const std::vector<int>& rests)
{
    Seeded seeded(4);
    Ink ink;
    double time = 0;
    for (int i = 0; i < 200; ++i) {
        ink.push_back({1.0 * i, 0, time, 1});
        time += seeded.between(6, 14);
        for (const int rest : rests)
            time += rest == i ? 300 : 0;
    }
    return ink;
}

struct RestCase {
    const char* name;
    std::vector<int> rests;
    std::size_t counted;
};
const RestCase kRests[] = {
    {"NoneOnAnEvenWay",       {},             0},
    {"EachOnItsOwn",          {50, 100, 150}, 3},
    {"TwoInOnePlaceAreOne",   {100, 101},     1},
    {"ThoseAtTheEndsAreNone", {2, 197},       0},
};
class Rests : public testing::TestWithParam<RestCase> {};
TEST_P(Rests, AreCounted)
{
    const Pace pace = pace_of(going(GetParam().rests));
    EXPECT_TRUE(pace.is_known);
    EXPECT_EQ(pace.rests, GetParam().counted);
}
INSTANTIATE_TEST_SUITE_P(, Rests, testing::ValuesIn(kRests), [](const auto& row) { return row.param.name; });

struct UnknownCase {
    const char* name;
    void (*spoil)(Ink& ink);
};
// clang-format off
const UnknownCase kUnknown[] = {
    {"WhereTimesAreMissing",      [](Ink& ink) { for (InkPoint& point : ink) point.time_ms = 0; }},
    {"WhereTimesRunBackwards",    [](Ink& ink) { ink[120].time_ms = 3; }},
    {"WhereATimeIsNoNumber",      [](Ink& ink) { ink[120].time_ms = std::numeric_limits<double>::quiet_NaN(); }},
    {"WhereTimesAreMadeUpEvenly", [](Ink& ink) { for (InkPoint& point : ink) point.time_ms = 8 * point.x; }},
    {"OfOnePoint",                [](Ink& ink) { ink.resize(1); }},
    {"OfNone",                    [](Ink& ink) { ink.clear(); }},
    {"OfOnePlace",                [](Ink& ink) { for (InkPoint& point : ink) point.x = 7; }},
};
// clang-format on
class UnknownPace : public testing::TestWithParam<UnknownCase> {};
TEST_P(UnknownPace, SaysNothing)
{
    Ink ink = going({50, 100});
    GetParam().spoil(ink);
    EXPECT_FALSE(pace_of(ink).is_known);
    EXPECT_EQ(pace_of(ink).rests, 0U);
}
INSTANTIATE_TEST_SUITE_P(, UnknownPace, testing::ValuesIn(kUnknown),
                         [](const auto& row) { return row.param.name; });

} // namespace
