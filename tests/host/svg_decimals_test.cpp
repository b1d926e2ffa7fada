#include "host/kit/svg_decimals.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>

namespace {

using namespace vnt::host;

std::string decimal(double value, double tolerance)
{
    std::string text = "x=";
    append_decimal(text, value, tolerance);
    return text.substr(2);
}

struct DecimalCase {
    const char* name;
    double value, tolerance;
    const char* text;
};
const DecimalCase kDecimals[] = {
    {"ZeroIsZero",                        0,                      0,      "0"                     },
    {"NegativeZeroHasNoSign",             -0.0,                   0,      "0"                     },
    {"LessThanTheToleranceIsZero",        -0.4,                   0.5,    "0"                     },
    {"AnIntegerHasNoPoint",               40.00000001,            1e-6,   "40"                    },
    {"ZerosAtTheEndOfAnIntegerStay",      1200,                   1e-3,   "1200"                  },
    {"ZerosAtTheEndOfAFractionGo",        0.25000001,             1e-6,   "0.25"                  },
    {"ASignStays",                        -2.125,                 1e-4,   "-2.125"                },
    {"NoFewerDigitsThanNeeded",           2.0 / 3,                0.0005, "0.667"                 },
    {"FewerWhenTheyHappenToDo",           0.5004,                 0.0005, "0.5"                   },
    {"ZerosBehindThePoint",               0.00123,                1e-6,   "0.00123"               },
    {"ACarryOverTheFirstDigit",           9.9999999,              1e-5,   "10"                    },
    {"TensWhenTheToleranceIsLarge",       123456,                 60,     "123500"                },
    {"AnExponentForTheLarge",             1.25e30,                1e20,   "1.25e30"               },
    {"AnExponentForTheSmall",             6.123234e-15,           1e-22,  "6.123234e-15"          },
    {"NoExponentWhereItIsHardlyShorter",  1e-3,                   1e-16,  "0.001"                 },
    {"ToleranceZeroReadsBackTheSame",     0.1,                    0,      "0.1"                   },
    {"ToleranceZeroTakesSeventeenDigits", 0.1 + 0.2,              0,      "0.30000000000000004"   },
    {"TheLargestDouble",                  1.7976931348623157e308, 0,      "1.7976931348623157e308"},
    {"TheSmallestDouble",                 5e-324,                 0,      "5e-324"                },
    {"ManyDigitsOfALargeNumber",          123456789012345.67,     0,      "123456789012345.67"    },
};
class SvgDecimal : public testing::TestWithParam<DecimalCase> {};
TEST_P(SvgDecimal, HasTheFewestDigits)
{
    EXPECT_EQ(decimal(GetParam().value, GetParam().tolerance), GetParam().text);
}
INSTANTIATE_TEST_SUITE_P(, SvgDecimal, testing::ValuesIn(kDecimals),
                         [](const auto& row) { return row.param.name; });

// Rounds value to one digit less than text has behind its point, with the C library's own rounding.
std::string without_last_digit_of(double value, const std::string& text)
{
    const std::size_t point = text.find('.');
    char shorter[400];
    std::snprintf(shorter, sizeof shorter, "%.*f", static_cast<int>(text.size() - point - 2), value);
    return shorter;
}

// Of 200,000 numbers between 1e-3 and 1e6 in size, with tolerances like those of single precision.
TEST(SvgDecimals, AreWithinTheToleranceAndOneDigitLessIsNot)
{
    std::mt19937_64 random(20260401);
    std::uniform_real_distribution<double> exponent(-3, 6);
    std::uniform_real_distribution<double> part(-9, -4);
    for (int i = 0; i < 200'000; ++i) {
        const double value = std::pow(10, exponent(random)) * (i % 2 == 0 ? 1 : -1);
        const double tolerance = std::abs(value) * std::pow(10, part(random));
        const std::string text = decimal(value, tolerance);
        ASSERT_LE(std::abs(std::strtod(text.c_str(), nullptr) - value), tolerance) << text;
        if (text.find('.') == text.npos || text.find('e') != text.npos)
            continue;
        const std::string shorter = without_last_digit_of(value, text);
        ASSERT_GT(std::abs(std::strtod(shorter.c_str(), nullptr) - value), tolerance)
            << text << ' ' << shorter;
    }
}

TEST(SvgSinglePrecisionSlack, IsHalfTheWayToTheNearerNeighbour)
{
    EXPECT_EQ(single_precision_slack(1.5F), std::ldexp(1.0, -24));
    EXPECT_EQ(single_precision_slack(1.0F), std::ldexp(1.0, -25)); // below a power of two they are nearer
    EXPECT_EQ(single_precision_slack(-1.0F), std::ldexp(1.0, -25));
    EXPECT_EQ(single_precision_slack(0.0F), std::ldexp(1.0, -150));
}

// What is not off by more than the slack is the same number when it is rounded to single precision.
TEST(SvgSinglePrecisionSlack, LeavesEveryNumberTheSame)
{
    std::mt19937_64 random(7);
    for (int i = 0; i < 200'000; ++i) {
        const float number = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (!std::isfinite(number))
            continue;
        const double inside = single_precision_slack(number) * 0.999;
        ASSERT_EQ(static_cast<float>(number + inside), number);
        ASSERT_EQ(static_cast<float>(number - inside), number);
    }
}

} // namespace
