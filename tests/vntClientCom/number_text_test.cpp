#include "Source/vntClientCom/number_text.h"

#include "tests/support/made_locale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>

using vnt::number_of_text;

namespace {

std::uint64_t bits_of(double value)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

struct NumberCase {
    const char* name;
    std::string text;
    double value;
};
constexpr double kMax = std::numeric_limits<double>::max();
constexpr double kLeast = std::numeric_limits<double>::denorm_min();
const std::string kManyZeros(400, '0');
// clang-format off
const NumberCase kNumbers[] = {
    {"NumberBeforeText", "12.5abc", 12.5},
    {"Exponent", "1e3", 1000},
    {"ExponentInUpperCase", "1E3", 1000},
    {"ExponentWithPlus", "1e+3", 1000},
    {"ExponentWithMinus", "25e-1", 2.5},
    {"BlankAndMinus", " -4", -4},
    {"Plus", "+4", 4},
    {"EveryWhiteSpace", " \t\n\v\f\r7", 7},
    {"SpaceInside", "1 2", 1},
    {"NoDigitsBeforeThePoint", ".5", 0.5},
    {"NoDigitsBehindThePoint", "5.", 5},
    {"NoDigitsBehindThePointAndExponent", "5.e1", 50},
    {"NoDigitsBeforeThePointAndExponent", "-.5e1", -5},
    {"LeadingZeros", "007.50", 7.5},
    {"SecondPoint", "1.5.2", 1.5},
    {"SecondExponent", "1e1e1", 10},
    {"PointInTheExponent", "1e1.5", 10},
    {"MinusInside", "1-2", 1},
    {"NegativeZero", "-0", -0.0},
    {"NegativeZeroWithExponent", "-0.0e5", -0.0},
    {"TenthIsTheNearest", "0.1", 0.1},
    {"HalfPi", "1.5707963267948966", 1.5707963267948966},

    {"Nothing", "", 0},
    {"BlanksAlone", " \t ", 0},
    {"Word", "abc", 0},
    {"PointAlone", ".", 0},
    {"MinusAlone", "-", 0},
    {"MinusPoint", "-.", 0},
    {"TwoSigns", "+-4", 0},
    {"SignThenBlank", "- 4", 0},
    {"ExponentAlone", "e5", 0},
    {"PointAndExponent", ".e5", 0},
    {"Infinity", "inf", 0},
    {"NotANumber", "nan", 0},
    {"NonBreakingSpaceInFront", "\xA0" "4", 0},
    {"NulInFront", std::string("\0004", 2), 0},
    {"NulBehind", std::string("4\0005", 3), 4},

    {"DanglingExponent", "12e", 0},
    {"DanglingExponentWithPlus", "12e+", 0},
    {"DanglingExponentWithMinus", "-12e-", 0},
    {"DanglingExponentBeforeText", "12em", 0},
    {"DanglingExponentBeforeASpace", "12e 3", 0},

    {"HexadecimalIsItsZero", "0x10", 0},
    {"CommaEnds", "1,5", 1},
    {"CommaOfThousandsEnds", "1,234,567.5", 1},
    {"ApostropheEnds", "1'000", 1},

    {"TooLarge", "1e999", kMax},
    {"TooLargeNegative", "-1e999", -kMax},
    {"TooLargeByDigits", "1" + kManyZeros, kMax},
    {"TooLargeExponentOfManyDigits", "1e99999999999999999999999999", kMax},
    {"TooLargeDespiteZerosBehindThePoint", "0." + kManyZeros + "1e800", kMax},
    {"LargestIsRead", "1.7976931348623157e308", kMax},
    {"JustTooLarge", "1.7976931348623159e308", kMax},
    {"TooSmall", "1e-999", 0},
    {"TooSmallNegative", "-1e-999", -0.0},
    {"TooSmallByZeros", "0." + kManyZeros + "1", 0},
    {"TooSmallExponentOfManyDigits", "1e-99999999999999999999999999", 0},
    {"LeastIsRead", "4.9406564584124654e-324", kLeast},
    {"MoreThanHalfTheLeastIsTheLeast", "2.4703282292062328e-324", kLeast},
    {"LessThanHalfTheLeastIsZero", "2.4703282292062327e-324", 0},
    {"ZeroWithAHugeExponent", "0e99999999999999999999", 0},
    {"ZerosOnBothSides", kManyZeros + "." + kManyZeros + "e9", 0},
    {"ManyDigitsAndABackwardExponent", "1" + kManyZeros + "e-400", 1},
    {"ManyZerosInFront", kManyZeros + "2.5", 2.5},

    {"TiesGoToEven", "9007199254740993", 9007199254740992},
    {"TiesGoToEvenUpwards", "9007199254740995", 9007199254740996},
    {"MoreThanATieGoesUp", "9007199254740993.00000000000000000000000000001", 9007199254740994},
    {"TwentyDigitsOfATenth", "0.10000000000000000555", 0.1},
    {"LastExactWhole", "9007199254740992e22", 9007199254740992e22},
    {"BeyondExactPowers", "1e23", 1e23},
    {"BeyondExactPowersDownwards", "1e-23", 1e-23},
    {"MoreDigitsThanAnyWord", "123456789012345678901234567890", 123456789012345678901234567890.0},
    {"ZerosBehindTheDigitsThatFit", "18446744073709551610000", 18446744073709551610000.0},
    {"DigitsBehindThePointThatDoNotFit", "0.3333333333333333333333333333", 0.3333333333333333333333333333},
};
// clang-format on
class NumberOfText : public testing::TestWithParam<NumberCase> {};
TEST_P(NumberOfText, IsExact)
{
    const double value = number_of_text(GetParam().text);
    EXPECT_EQ(bits_of(value), bits_of(GetParam().value)) << value;
}
INSTANTIATE_TEST_SUITE_P(, NumberOfText, testing::ValuesIn(kNumbers),
                         [](const auto& row) { return row.param.name; });

// What a stream in the classic locale takes from the start of a text. Where it takes no number it says 0, and the
// largest where the number is too large.
double streamed(const std::string& text)
{
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    double value = 0.0;
    stream >> value;
    return value;
}

std::string number_text(std::mt19937_64& random)
{
    std::ostringstream out;
    out.imbue(std::locale::classic());
    const std::uint64_t bits = random();
    double any = 0.0;
    std::memcpy(&any, &bits, sizeof any);
    switch (random() % 4) {
    case 0:
        out.precision(static_cast<int>(1 + random() % 25));
        out << (std::isfinite(any) ? any : 0.5);
        break;
    case 1: out << random() << "." << random(); break;
    case 2: out << random() % 100000 << "e" << static_cast<int>(random() % 700) - 350; break;
    default: out << static_cast<double>(random() % 1000000) / 1000; break;
    }
    return out.str();
}

TEST(NumberText, IsWhatAStreamInTheClassicLocaleTakes)
{
    const std::string odd = "0123456789.eE+-, \tx";
    std::mt19937_64 random(20240504);
    for (int i = 0; i < 100'000; ++i) {
        std::string text = number_text(random);
        for (std::uint64_t changes = random() % 3; changes > 0; --changes)
            text.insert(text.begin() + static_cast<std::ptrdiff_t>(random() % (text.size() + 1)),
                        odd[random() % odd.size()]);
        ASSERT_EQ(bits_of(number_of_text(text)), bits_of(streamed(text))) << text;
    }
}

TEST(NumberText, IsReadBackFromSeventeenDigits)
{
    std::mt19937_64 random(20240505);
    for (int i = 0; i < 100'000; ++i) {
        const std::uint64_t bits = random();
        double value = 0.0;
        std::memcpy(&value, &bits, sizeof value);
        if (!std::isfinite(value))
            continue;
        char text[40];
        std::snprintf(text, sizeof text, "%.17g", value);
        ASSERT_EQ(bits_of(number_of_text(text)), bits) << text;
    }
}

// Locales

struct CommaPoint : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

void expect_points_not_commas()
{
    EXPECT_EQ(number_of_text("1.5"), 1.5);
    EXPECT_EQ(number_of_text("1,5"), 1.0);
    EXPECT_EQ(number_of_text("1.234"), 1.234);
    EXPECT_EQ(number_of_text("1.234.567"), 1.234);
    EXPECT_EQ(number_of_text("0.33333333333333331483"), 1.0 / 3); // too long for the short way
    EXPECT_EQ(number_of_text("1.25e-300"), 1.25e-300);
}

TEST(NumberLocale, OfTheProcessesStreamsHasNoSay)
{
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
    std::istringstream in("1,5");
    double by_stream = 0.0;
    EXPECT_TRUE(in >> by_stream);
    EXPECT_EQ(by_stream, 1.5); // that locale is in force
    expect_points_not_commas();
    std::locale::global(before);
}

TEST(NumberLocale, OfTheCLibraryHasNoSay)
{
    const support::MadeLocale locale("de_DE", "UTF-8");
    if (!locale.is_set())
        GTEST_SKIP() << "no locale with a decimal comma can be had here";
    EXPECT_EQ(std::strtod("1,5", nullptr), 1.5); // that locale is in force
    expect_points_not_commas();
}

} // namespace
