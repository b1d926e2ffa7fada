#include "sketch/core/cubic_fit.h"

#include "sketch/core/curve_fit.h"
#include "tests/geometry/seeded.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::sketch;

constexpr double kRounding = 1e-9; // of places up to some hundred, after some dozen operations

const Cubic kBow = {
    {{10, 20}, {60, 140}, {150, -40}, {200, 80}}
};

std::vector<double> uneven_parameters(std::size_t last)
{
    std::vector<double> parameters;
    for (std::size_t i = 0; i <= last; ++i) {
        const double even = static_cast<double>(i) / static_cast<double>(last);
        parameters.push_back(even * (0.7 + 0.3 * even));
    }
    return parameters;
}

Path places_of(const Cubic& cubic, const std::vector<double>& parameters)
{
    Path places;
    for (const double t : parameters)
        places.push_back(point_of_cubic(cubic.data(), t));
    places.back() = cubic[3];
    return places;
}

class CubicOfPoints : public testing::TestWithParam<std::size_t> {};

// Far more points than unknowns, so that the weight that holds the controls is next to nothing.
TEST_P(CubicOfPoints, IsTheOneOnWhichTheyLie)
{
    const std::size_t last = GetParam();
    const std::vector<double> parameters = uneven_parameters(last);
    const Path places = places_of(kBow, parameters);
    const vnt::sketch::Run run{places.data(), last};
    const Headings headings[] = {
        {{},                      {}                     },
        {unit(kBow[1] - kBow[0]), {}                     },
        {{},                      unit(kBow[3] - kBow[2])},
        {unit(kBow[1] - kBow[0]), unit(kBow[3] - kBow[2])},
    };
    for (const Headings& given : headings) {
        const Cubic cubic = nearest_cubic(run, control_sums(run, parameters), given);
        for (std::size_t i = 0; i < cubic.size(); ++i)
            EXPECT_LT(distance(cubic[i], kBow[i]), 0.2) << i;
    }
}

// One point after the other, as the sums are defined.
TEST_P(CubicOfPoints, CountsEachInnerPointOnce)
{
    const std::size_t last = GetParam();
    const std::vector<double> parameters = uneven_parameters(last);
    Seeded seeded(last);
    Path places;
    for (std::size_t i = 0; i <= last; ++i)
        places.push_back({seeded.between(-100, 100), seeded.between(-100, 100)});
    const vnt::sketch::Run run{places.data(), last};
    ControlSums expected;
    for (std::size_t i = 1; i < last; ++i) {
        const double t = parameters[i];
        const double w1 = 3 * (1 - t) * (1 - t) * t;
        const double w2 = 3 * (1 - t) * t * t;
        const Vec2 off = places[i] - (places[0] + t * (places[last] - places[0]));
        expected.w11 += w1 * w1;
        expected.w12 += w1 * w2;
        expected.w22 += w2 * w2;
        expected.r1 = expected.r1 + w1 * off;
        expected.r2 = expected.r2 + w2 * off;
    }
    const ControlSums sums = control_sums(run, parameters);
    EXPECT_NEAR(sums.w11, expected.w11, kRounding);
    EXPECT_NEAR(sums.w12, expected.w12, kRounding);
    EXPECT_NEAR(sums.w22, expected.w22, kRounding);
    EXPECT_LT(distance(sums.r1, expected.r1), kRounding);
    EXPECT_LT(distance(sums.r2, expected.r2), kRounding);
}

TEST_P(CubicOfPoints, TellsTheirDistancesAndStepsToTheirFeet)
{
    const std::size_t last = GetParam();
    std::vector<double> parameters = uneven_parameters(last);
    Path places = places_of(kBow, parameters);
    for (std::size_t i = 1; i < last; ++i)
        places[i] = places[i] + Vec2{i % 2 == 0 ? 1.0 : -1.5, 0.5};
    const vnt::sketch::Run run{places.data(), last};
    Step step;
    for (int i = 0; i < 6; ++i) { // digits double with each
        take_step(run, kBow, parameters, step);
        double largest = 0;
        for (std::size_t k = 0; k <= last; ++k) {
            const double off = distance(point_of_cubic(kBow.data(), parameters[k]), places[k]);
            EXPECT_NEAR(step.squares[k], off * off, kRounding) << k;
            largest = std::max(largest, step.squares[k]);
        }
        EXPECT_EQ(step.largest_square, largest);
        EXPECT_TRUE(step.is_number);
        parameters = step.parameters;
    }
    EXPECT_EQ(parameters.front(), 0);
    EXPECT_EQ(parameters.back(), 1);
    constexpr double kLittle = 1e-6;
    for (std::size_t k = 1; k < last; ++k) {
        const double t = parameters[k];
        const Vec2 along =
            point_of_cubic(kBow.data(), t + kLittle) - point_of_cubic(kBow.data(), t - kLittle);
        EXPECT_NEAR(dot(unit(along), point_of_cubic(kBow.data(), t) - places[k]), 0, 1e-5) << k;
    }
    const ControlSums sums = control_sums(run, parameters);
    EXPECT_NEAR(step.sums.w12, sums.w12, kRounding);
    EXPECT_LT(distance(step.sums.r2, sums.r2), kRounding);
}

INSTANTIATE_TEST_SUITE_P(OfEachParity, CubicOfPoints, testing::Values(11, 12, 13, 40));

TEST(StepOfACubic, TellsWhereThereAreNoNumbers)
{
    for (const std::size_t bad : {1U, 2U, 3U, 4U}) {
        const std::vector<double> parameters = uneven_parameters(5);
        Path places = places_of(kBow, parameters);
        places[bad].y = std::nan("");
        Step step;
        take_step({places.data(), 5}, kBow, parameters, step);
        EXPECT_FALSE(step.is_number) << bad;
    }
}

struct PieceCase {
    const char* name;
    Vec2 first, second; // the controls of a cubic from (0, 0) to (10, 0)
};
const PieceCase kAlongPieces[] = {
    {"BesideThePiece",          {3, 4},  {7, 4}  },
    {"OnBothSides",             {3, 4},  {7, -4} },
    {"StraightBackBeyondAnEnd", {-4, 0}, {10, 0} },
 // There it turns back neither across the piece nor along it.
    {"AslantBeyondTheStart",    {-4, 1}, {10, -2}},
    {"AslantBeyondTheEnd",      {0, 3},  {15, -2}},
};
class CubicAlongAPiece : public testing::TestWithParam<PieceCase> {};
TEST_P(CubicAlongAPiece, IsNearItAsFarAsItGetsAndNoFurther)
{
    const Path piece = {
        {0,  0},
        {10, 0}
    };
    const Cubic cubic = {piece[0], GetParam().first, GetParam().second, piece[1]};
    double furthest = 0; // found one by one
    for (int i = 0; i <= 100000; ++i) {
        const Vec2 place = point_of_cubic(cubic.data(), i / 1e5);
        furthest = std::max(furthest, distance_from_piece(place, piece[0], piece[1]));
    }
    const auto is_near = [&](double tolerance) {
        return is_along_pieces({piece.data(), 1}, cubic, {0, 1}, {0, 0}, tolerance);
    };
    EXPECT_FALSE(is_near(furthest * (1 - 1e-6)));
    EXPECT_TRUE(is_near(furthest * 1.01));
}
INSTANTIATE_TEST_SUITE_P(, CubicAlongAPiece, testing::ValuesIn(kAlongPieces),
                         [](const auto& row) { return row.param.name; });

} // namespace
