#include "host/editor/percent_text.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::host;
using namespace std::string_literals;

struct PlainCase {
    const char* name;
    std::string bytes;
    std::string text;
};
// clang-format off
const PlainCase kTexts[] = {
    {"OfNothingIsNothing",       "",                  ""},
    {"OfPlainWordsStays",        "/a-b_c/D.9",        "/a-b_c/D.9"},
    {"HasNoBlanks",              "a b\tc\n",          "a%20b%09c%0A"},
    {"HasNothingThatXmlMinds",   "<&\">'",            "%3C%26%22%3E%27"},
    {"KeepsThePercentSign",      "50%",               "50%25"},
    {"OfLettersBeyondAscii",     "\xC3\xA9",          "%C3%A9"},
    {"OfBytesThatAreNoLetters",  "\x00\x7F\xFF"s,     "%00%7F%FF"},
};
// clang-format on
class PercentText : public testing::TestWithParam<PlainCase> {};
TEST_P(PercentText, IsWrittenAndReadBack)
{
    EXPECT_EQ(to_percent_text(GetParam().bytes), GetParam().text);
    EXPECT_EQ(from_percent_text(GetParam().text), GetParam().bytes);
}
INSTANTIATE_TEST_SUITE_P(, PercentText, testing::ValuesIn(kTexts),
                         [](const auto& row) { return row.param.name; });

TEST(PercentTextOfAnyByte, IsPlainAsciiAndReadBack)
{
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    const std::string text = to_percent_text(bytes);
    for (const char c : text)
        EXPECT_TRUE(c > ' ' && c <= '~') << static_cast<int>(c);
    EXPECT_EQ(from_percent_text(text), bytes);
}

struct BadCase {
    const char* name;
    const char* text;
};
const BadCase kBad[] = {
    {"WithABlank",             "a b" },
    {"WithAnotherSign",        "a&b" },
    {"WithALetterBeyondAscii", "\xE9"},
    {"ThatEndsInASign",        "a%"  },
    {"ThatEndsInADigit",       "a%4" },
    {"WithADigitThatIsNone",   "%4G" },
    {"WithAMinus",             "%-1" },
};
class BadPercentText : public testing::TestWithParam<BadCase> {};
TEST_P(BadPercentText, IsRefused) { EXPECT_EQ(from_percent_text(GetParam().text), std::nullopt); }
INSTANTIATE_TEST_SUITE_P(, BadPercentText, testing::ValuesIn(kBad),
                         [](const auto& row) { return row.param.name; });

} // namespace
