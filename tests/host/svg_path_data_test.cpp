#include "host/kit/svg_path_data.h"
#include "tests/host/svg_samples.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <vector>

namespace {

using namespace vnt::host;
using host_test::corner;

std::string data_of(const PathArt& path, const Affine& artwork_to_layer = Affine())
{
    std::string text;
    if (!PathDataWriter(artwork_to_layer, try_inverse(artwork_to_layer).value()).try_append(text, path))
        return "(none)";
    return text;
}

struct DataCase {
    const char* name;
    PathArt path;
    Affine artwork_to_layer;
    const char* data;
};
const Affine kAsItIs;
// clang-format off
const DataCase kData[] = {
    {"OneAnchorIsAMove", {corner(1, 2)}, kAsItIs, "M 1,2"},
    {"HandlesOnTheirAnchorsMakeALine", {corner(1, 2), corner(3, 4)}, kAsItIs, "M 1,2 L 3,4"},
    {"AHandleOffTheFirstAnchorMakesACurve", {{{1, 2}, {1, 2}, {1, 3}}, corner(3, 4)}, kAsItIs,
     "M 1,2 C 1,3 3,4 3,4"},
    {"AHandleOffTheSecondAnchorMakesACurve", {corner(1, 2), {{3, 4}, {2, 4}, {3, 4}}}, kAsItIs,
     "M 1,2 C 1,2 2,4 3,4"},
    {"TheOuterHandlesAreNotWritten", {{{1, 2}, {9, 9}, {1, 2}}, {{3, 4}, {3, 4}, {9, 9}}}, kAsItIs,
     "M 1,2 L 3,4"},
    {"ALineOfNoLengthStays", {corner(1, 2), corner(1, 2)}, kAsItIs, "M 1,2 L 1,2"},
    {"SinglePrecisionIsAllThereIs", {corner(0.1F, 1.0F / 3)}, kAsItIs, "M 0.1,0.33333334"},
    {"TheMapIsApplied", {corner(30, -22.5F)}, {4.0 / 3, 0, 0, -4.0 / 3, 0, 0}, "M 40,30"},
    {"AnOffsetNeedsNoMoreDigits", {corner(0.1F, 0)}, Affine::translation(1000, 0), "M 1000.1,0"},
    {"ATinyPartThatAnOffsetSwallowsIsNotWritten", {corner(6.123234e-15F, 6.123234e-15F)},
     Affine::translation(100, 0), "M 100,6.123234e-15"},
    {"AQuarterTurnKeepsTheAxesApart", {corner(1000.0F / 3, 0.001F)}, Affine::rotation(90),
     "M -0.001,333.33334"},
    {"AQuarterTurnKeepsTheOtherAxisApart", {corner(0.001F, 1000.0F / 3)}, Affine::rotation(90),
     "M -333.33334,0.001"},
    {"LargeScalesNeedFewerDecimals", {corner(1.0F / 3, 2.0F / 3)}, Affine::scaling(1e6, 1e6),
     "M 333333.34,666666.7"},
    // 2^34: 17179870000 would do, but is farther off than what would do below it.
    {"APowerOfTwoMayHaveADigitMore", {corner(17179869184.0F, 0)}, kAsItIs, "M 17179869000,0"},
    {"TheLargestNumbers", {corner(3.4028235e38F, -1e-38F)}, kAsItIs, "M 3.4028235e38,-1e-38"},
};
// clang-format on
class SvgPathData : public testing::TestWithParam<DataCase> {};
TEST_P(SvgPathData, IsWritten)
{
    EXPECT_EQ(data_of(GetParam().path, GetParam().artwork_to_layer), GetParam().data);
}
INSTANTIATE_TEST_SUITE_P(, SvgPathData, testing::ValuesIn(kData),
                         [](const auto& row) { return row.param.name; });

TEST(SvgPathDataFit, WhatIsTooLargeForTheLayerLeavesTheTextAsItWas)
{
    std::string text = "d=";
    const PathDataWriter writer(Affine::scaling(1e300, 1e300), Affine::scaling(1e-300, 1e-300));
    EXPECT_FALSE(writer.try_append(text, {corner(1, 1), corner(1e30F, 1)}));
    EXPECT_EQ(text, "d=");
}

struct MapCase {
    const char* name;
    Affine artwork_to_layer;
    double spread; // of the anchors, in decades about 1
};
// clang-format off
const MapCase kMaps[] = {
    {"Pixels", {4.0 / 3, 0, 0, -4.0 / 3, 0, 0}, 30},
    {"Millimetres", {25.4 / 72, 0, 0, -25.4 / 72, 0, 0}, 30},
    {"AnOffset", {4.0 / 3, 0, 0, -4.0 / 3, 500, 700}, 3},
    {"AThirtyDegreeTurn", Affine::rotation(30) * Affine::scaling(1, -1), 3},
    {"ATurnWithAnOffset", {0.6, 0.8, 0.8, -0.6, -200, 300}, 3},
    {"AQuarterTurn", Affine::rotation(-90) * Affine::translation(5, 5), 3},
    {"AStrongSkew", {1, 0, 20, -1, 0, 0}, 2},
    {"TinyUnits", Affine::scaling(1e7, -1e-7), 20},
};
// clang-format on
class SvgPathPrecision : public testing::TestWithParam<MapCase> {};

// The numbers of a path as a reader has them.
std::vector<double> numbers_of(const std::string& data)
{
    std::vector<double> numbers;
    for (const char* at = data.c_str(); *at != '\0';) {
        char* end = nullptr;
        const double number = std::strtod(at, &end);
        if (end != at)
            numbers.push_back(number);
        at = end != at ? end : at + 1;
    }
    return numbers;
}

TEST_P(SvgPathPrecision, IsKeptThereAndBack)
{
    const Affine& map = GetParam().artwork_to_layer;
    const Affine back = try_inverse(map).value();
    std::mt19937_64 random(42);
    std::uniform_real_distribution<double> decade(-GetParam().spread, GetParam().spread);
    for (int i = 0; i < 20'000; ++i) {
        const auto any = [&] {
            return static_cast<float>(std::pow(10, decade(random)) * (random() % 2 == 0 ? 1 : -1));
        };
        const ArtPoint point{any(), any()};
        const std::vector<double> read = numbers_of(data_of(
            {
                {point, point, point}
        },
            map));
        ASSERT_EQ(read.size(), 2U);
        const Vec returned = back({read[0], read[1]});
        ASSERT_EQ(static_cast<float>(returned.x), point.h) << point.h << ',' << point.v;
        ASSERT_EQ(static_cast<float>(returned.y), point.v) << point.h << ',' << point.v;
    }
}
INSTANTIATE_TEST_SUITE_P(, SvgPathPrecision, testing::ValuesIn(kMaps),
                         [](const auto& row) { return row.param.name; });

// In a document whose unit is the artwork's, no number is longer than the shortest that single precision has.
TEST(SvgPathDigits, AreNoMoreThanThoseOfTheShortestFormOfAFloat)
{
    std::mt19937_64 random(5);
    std::uniform_real_distribution<float> any(-2000, 2000);
    for (int i = 0; i < 100'000; ++i) {
        const float number = any(random);
        char shortest[400];
        int digits = 1;
        do
            std::snprintf(shortest, sizeof shortest, "%.*g", digits++, static_cast<double>(number));
        while (std::strtof(shortest, nullptr) != number);
        const std::string data = data_of({corner(number, 0)});
        ASSERT_LE(data.size(), std::string("M ,0").size() + std::string(shortest).size())
            << data << ' ' << shortest;
    }
}

} // namespace
