#include "host/kit/json_line.h"
#include "tests/host/json_check.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>
#include <utility>

namespace {

using host_test::JsonCheck;
using vnt::host::JsonLine;

std::string value_of(const std::string& line)
{
    EXPECT_TRUE(line.starts_with("{\"x\":") && line.ends_with("}\n")) << line;
    EXPECT_EQ(JsonCheck::problem_of(line.substr(0, line.size() - 1)), "");
    return line.substr(5, line.size() - 7);
}

// -------------------------------------------------------------------------------------------------- texts

struct TextCase {
    const char* name;
    std::string text;
    std::string json;
};

const TextCase kTexts[] = {
    {"NothingIsAnEmptyString",         "",                 R"("")"                                               },
    {"LettersStandAsTheyAre",          "Start VANT / 'a'", R"("Start VANT / 'a'")"                               },
    {"QuotesAndBackslashesAreEscaped", R"("a\b")",         R"("\"a\\b\"")"                                       },
    {"ALineFeedHasALetter",            "a\nb",             R"("a\nb")"                                           },
    {"OtherControlsHaveNumbers",       "\t\r\x01\x1F\x7F", R"("\u0009\u000d\u0001\u001f\u007f")"                 },
    {"AZeroByteHasItsNumber",          std::string("a\0b", 3),                                                     R"("a\u0000b")"},
    {"CharactersOfAnySizeStandAsTheyAre",                                "\xC2\xA9\xE2\x82\xAC\xF0\x9F\x8E\xA8",
     "\"\xC2\xA9\xE2\x82\xAC\xF0\x9F\x8E\xA8\""},
    {"AByteThatIsNoUtf8IsReplaced",
     "a\xFF"
     "b",                      "\"a\xEF\xBF\xBD"
     "b\""                                                                                                         },
    {"EachSuchByteIsReplaced",                                "\xE2\x82\xFF",                           "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\""},
    {"ACharacterCutOffIsReplaced",                                "Skizze\xC2",                       "\"Skizze\xEF\xBF\xBD\""                                                                                                       },
    {"ASurrogateIsReplaced",                                "\xED\xA0\x80",                             "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\""},
};

class JsonTexts : public testing::TestWithParam<TextCase> {};

TEST_P(JsonTexts, AreStrings)
{
    EXPECT_EQ(value_of(std::move(JsonLine().text("x", GetParam().text)).finish()), GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(, JsonTexts, testing::ValuesIn(kTexts),
                         [](const auto& row) { return row.param.name; });

// ------------------------------------------------------------------------------------------------ numbers

std::string json_of(float number) { return value_of(std::move(JsonLine().real("x", number)).finish()); }
std::string json_of(double number) { return value_of(std::move(JsonLine().real("x", number)).finish()); }

TEST(JsonNumbers, HaveNoMoreDigitsThanTheyNeedForWholeNumbers)
{
    EXPECT_EQ(json_of(0.0F), "0");
    EXPECT_EQ(json_of(-0.0F), "-0");
    EXPECT_EQ(json_of(600.0F), "600");
    EXPECT_EQ(json_of(-18.75), "-18.75");
}

TEST(JsonNumbers, OfSinglePrecisionHaveNineDigits)
{
    EXPECT_EQ(json_of(0.1F), "0.100000001");
    EXPECT_EQ(json_of(1.0F / 3.0F), "0.333333343");
    EXPECT_EQ(json_of(16777216.0F), "16777216");
    EXPECT_EQ(json_of(std::numeric_limits<float>::max()), "3.40282347e+38");
    EXPECT_EQ(json_of(std::numeric_limits<float>::denorm_min()), "1.40129846e-45");
}

TEST(JsonNumbers, OfDoublePrecisionHaveSeventeenDigits)
{
    EXPECT_EQ(json_of(0.1), "0.10000000000000001");
    EXPECT_EQ(json_of(1.0 / 3.0), "0.33333333333333331");
    EXPECT_EQ(json_of(std::numeric_limits<double>::max()), "1.7976931348623157e+308");
    EXPECT_EQ(json_of(std::numeric_limits<double>::denorm_min()), "4.9406564584124654e-324");
}

TEST(JsonNumbers, ReadBackExactly)
{
    std::uint32_t bits = 1;
    for (int i = 0; i < 20000; ++i, bits = bits * 1664525U + 1013904223U) {
        const float number = std::ldexp(static_cast<float>(bits), static_cast<int>(bits >> 24U) - 160);
        EXPECT_EQ(std::strtof(json_of(number).c_str(), nullptr), number);
        const double twin =
            std::ldexp(1.0 / (static_cast<double>(bits) + 0.1), static_cast<int>(bits >> 23U) - 256);
        EXPECT_EQ(std::strtod(json_of(twin).c_str(), nullptr), twin);
    }
}

TEST(JsonNumbers, ThatAreNotFiniteAreStrings)
{
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(json_of(kInfinity), "\"inf\"");
    EXPECT_EQ(json_of(-kInfinity), "\"-inf\"");
    EXPECT_EQ(json_of(kNan), "\"nan\"");
    EXPECT_EQ(json_of(-kNan), "\"nan\"");
    EXPECT_EQ(json_of(static_cast<double>(kInfinity)), "\"inf\"");
    EXPECT_EQ(json_of(-static_cast<double>(kInfinity)), "\"-inf\"");
    EXPECT_EQ(json_of(static_cast<double>(kNan)), "\"nan\"");
    EXPECT_EQ(value_of(std::move(JsonLine().pair("x", kNan, -kInfinity)).finish()), R"(["nan","-inf"])");
}

TEST(JsonNumbers, ThatAreWholeHaveAllTheirDigits)
{
    const auto json = [](std::int64_t number) {
        return value_of(std::move(JsonLine().integer("x", number)).finish());
    };
    EXPECT_EQ(json(0), "0");
    EXPECT_EQ(json(std::numeric_limits<std::int64_t>::max()), "9223372036854775807");
    EXPECT_EQ(json(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

// -------------------------------------------------------------------------------------------------- fields

TEST(JsonFields, StandInTheirOrder)
{
    JsonLine line;
    line.text("call", "Do").integer("n", -3).flag("on", true).flag("off", false).null("none");
    line.pair("at", 1, -2).pair("p", 0.5F, -0.25F).real("r", 1.5);
    EXPECT_EQ(std::move(line).finish(),
              R"({"call":"Do","n":-3,"on":true,"off":false,"none":null,"at":[1,-2],"p":[0.5,-0.25],"r":1.5})"
              "\n");
}

TEST(JsonFields, NeedNotBeThere) { EXPECT_EQ(JsonLine().finish(), "{}\n"); }

TEST(JsonFields, MayBeListsOfObjects)
{
    JsonLine line;
    line.integer("count", 2).begin_list("all");
    line.begin_object().integer("a", 1).flag("b", true).end_object();
    line.begin_object().integer("a", 2).end_object();
    line.end_list().integer("last", 3);
    EXPECT_EQ(std::move(line).finish(), R"({"count":2,"all":[{"a":1,"b":true},{"a":2}],"last":3})"
                                        "\n");
}

TEST(JsonFields, MayBeAnEmptyList)
{
    JsonLine line;
    line.begin_list("all").end_list();
    EXPECT_EQ(std::move(line).finish(), "{\"all\":[]}\n");
}

// ------------------------------------------------------------------------------- what the tests of traces rely on

struct CheckCase {
    const char* name;
    const char* text;
    bool is_json;
};

const CheckCase kChecks[] = {
    {"TakesAnObject",                  R"({"a":[1,-2.5e+3,0.5],"b":{},"c":[],"d":"","e":null,"f":true,"g":false})", true },
    {"TakesBlanks",                    "{ \"a\" : [ 1 , 2 ] }",                                                     true },
    {"TakesEscapes",                   R"("\"\\\/\b\f\n\r\t\u00e9")",                                               true },
    {"RefusesNothing",                 "",                                                                          false},
    {"RefusesTwoValues",               "{}{}",                                                                      false},
    {"RefusesACommaBeforeTheEnd",      R"({"a":1,})",                                                               false},
    {"RefusesAMissingComma",           R"({"a":1"b":2})",                                                           false},
    {"RefusesAMissingColon",           R"({"a" 1})",                                                                false},
    {"RefusesABareName",               "{a:1}",                                                                     false},
    {"RefusesAnOpenObject",            R"({"a":1)",                                                                 false},
    {"RefusesAnOpenList",              "[1,2",                                                                      false},
    {"RefusesAnOpenString",            "\"a",                                                                       false},
    {"RefusesAControlInAString",       "\"a\nb\"",                                                                  false},
    {"RefusesAnUnknownEscape",         R"("\x41")",                                                                 false},
    {"RefusesAnEscapeCutOff",          R"("\u00g1")",                                                               false},
    {"RefusesABareNan",                "[nan]",                                                                     false},
    {"RefusesALeadingZero",            "01",                                                                        false},
    {"RefusesAPointWithoutDigits",     "1.",                                                                        false},
    {"RefusesAnExponentWithoutDigits", "1e",                                                                        false},
    {"RefusesAPlusSign",               "+1",                                                                        false},
    {"RefusesAMinusAlone",             "-",                                                                         false},
    {"RefusesWhatIsNoUtf8",            "\"\xFF\"",                                                                  false},
};

class JsonChecks : public testing::TestWithParam<CheckCase> {};

TEST_P(JsonChecks, TellJsonFromOtherText)
{
    EXPECT_EQ(JsonCheck::problem_of(GetParam().text).empty(), GetParam().is_json);
}

INSTANTIATE_TEST_SUITE_P(, JsonChecks, testing::ValuesIn(kChecks),
                         [](const auto& row) { return row.param.name; });

} // namespace
