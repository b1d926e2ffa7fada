#include "sketch/core/ink.h"

#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace vnt::sketch {

std::ostream& operator<<(std::ostream& out, Vec2 p) { return out << '(' << p.x << ", " << p.y << ')'; }

} // namespace vnt::sketch

namespace {

using namespace vnt::sketch;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct CleanCase {
    const char* name;
    Path drawn;
    Path kept;
};
// clang-format off
const CleanCase kCleanings[] = {
    {"NothingStaysNothing", {}, {}},
    {"OnePointStays", {{3, 4}}, {{3, 4}}},
    {"RepeatedPointsBecomeOne", {{0, 0}, {0, 0}, {5, 0}, {5, 0}, {5, 0}, {9, 0}}, {{0, 0}, {5, 0}, {9, 0}}},
    {"APointThatIsComeBackToStays", {{0, 0}, {5, 0}, {0, 0}}, {{0, 0}, {5, 0}, {0, 0}}},
    {"PointsThatAreNoNumbersGo", {{kNan, 0}, {0, 0}, {1, kNan}, {2, 0}}, {{0, 0}, {2, 0}}},
    {"InfinitePointsGo", {{0, 0}, {kInfinity, 0}, {1, -kInfinity}, {2, 0}}, {{0, 0}, {2, 0}}},
    {"PointsBeyondAnySheetGo", {{0, 0}, {1.1e9, 0}, {2, 0}}, {{0, 0}, {2, 0}}},
    {"ASpikeOutOfALineGoes",
     {{0, 0}, {3, 0}, {6, 0}, {8, 90}, {9, 0}, {12, 0}, {15, 0}},
     {{0, 0}, {3, 0}, {6, 0}, {9, 0}, {12, 0}, {15, 0}}},
    {"TheTipOfACoarseZigzagIsNoSpike",
     {{0, 0}, {10, 80}, {20, 0}, {30, 80}, {40, 0}},
     {{0, 0}, {10, 80}, {20, 0}, {30, 80}, {40, 0}}},
    {"AHairpinOfManyPointsIsNoSpike",
     {{0, 0}, {0, 30}, {0, 60}, {0, 90}, {2, 60}, {2, 30}, {2, 0}},
     {{0, 0}, {0, 30}, {0, 60}, {0, 90}, {2, 60}, {2, 30}, {2, 0}}},
    {"TheEndsAreNeverSpikes", {{0, 200}, {0, 0}, {3, 0}, {6, 0}, {6, 200}}, {{0, 200}, {0, 0}, {3, 0}, {6, 0}, {6, 200}}},
};
// clang-format on
class CleanPath : public testing::TestWithParam<CleanCase> {};
TEST_P(CleanPath, LeavesWhatThePenMeant)
{
    Ink ink;
    for (const Vec2 p : GetParam().drawn)
        ink.push_back({p.x, p.y, 0, 1});
    EXPECT_EQ(clean_path(ink), GetParam().kept);
}
INSTANTIATE_TEST_SUITE_P(, CleanPath, testing::ValuesIn(kCleanings),
                         [](const auto& row) { return row.param.name; });

TEST(CleanPathOfOddDevices, AsksNeitherTimesNorPressures)
{
    Ink ink = drawn::stroke(drawn::ellipse(1, 1), true);
    const Path path = clean_path(ink);
    for (std::size_t i = 0; i < ink.size(); ++i) {
        ink[i].time_ms = i % 3 == 0 ? kNan : -static_cast<double>(i);
        ink[i].pressure = i % 2 == 0 ? kInfinity : -1;
    }
    EXPECT_EQ(clean_path(ink), path);
}

} // namespace
