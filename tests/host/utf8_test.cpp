#include "host/kit/utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using vnt::host::size_of_utf8;
using vnt::host::utf16_units;

struct Utf8Case {
    const char* name;
    std::string bytes;
    std::size_t size;  // of the longest beginning that is UTF-8
    std::size_t units; // of that beginning
};

// The bounds of every line of table 3-7 of The Unicode Standard, and the bytes beside them.
const Utf8Case kCases[] = {
    {"NothingIsGood",         "",             0,                                                     0              },
    {"AZeroByteIsACharacter", std::string(1,  '\0'),                                                 1,               1},
    {"TheLastOfOneByte",                       "\x7F",                    1,                                             1                                       },
    {"AContinuationAloneIsNone",                       "\x80",            0,                                     0},
    {"TheLastContinuationAloneIsNone",                       "\xBF",      0,                               0                                       },
    {"AnOverlongLetterOfTwoIsNone",                       "\xC1\xBF",         0,                              0},
    {"TheFirstOfTwoBytes",                       "\xC2\x80",                  2,                                       1                                       },
    {"TheLastOfTwoBytes",                       "\xDF\xBF",                   2,                                        1},
    {"TwoBytesNeedAContinuation",                       "\xC2\x7F",           0,                                0                                       },
    {"TwoBytesNeedAContinuationAndNoStart",                       "\xC2\xC0", 0,                      0},
    {"TwoBytesCutOff",                       "\xC2",                      0,                                               0                                           },
    {"AnOverlongLetterOfThreeIsNone",                       "\xE0\x9F\xBF",       0,                        0},
    {"TheFirstOfThreeBytes",                       "\xE0\xA0\x80",                3,                                 1                                           },
    {"TheLastBehindE0",                       "\xE0\xBF\xBF",                     3,                                      1},
    {"TheFirstBehindE1",                       "\xE1\x80\x80",                    3,                                     1                                           },
    {"TheLastBehindEC",                       "\xEC\xBF\xBF",                     3,                                      1},
    {"TheLastBeforeTheSurrogates",                       "\xED\x9F\xBF",          3,                           1                                           },
    {"TheFirstSurrogateIsNone",                       "\xED\xA0\x80",             0,                              0},
    {"TheFirstBehindTheSurrogates",                       "\xEE\x80\x80",         3,                          1                                           },
    {"TheLastOfThreeBytes",                       "\xEF\xBF\xBF",                 3,                                  1},
    {"ThreeBytesNeedTheirSecond",                       "\xE1\xC0\x80",           0,                            0                                           },
    {"ThreeBytesNeedTheirThird",                       "\xE1\x80\x7F",            0,                             0},
    {"ThreeBytesNeedTheirThirdAndNoStart",                       "\xE1\x80\xC0",  0,                   0                                           },
    {"ThreeBytesCutOff",                       "\xE1\x80",                    0,                                         0},
    {"AnOverlongLetterOfFourIsNone",                       "\xF0\x8F\xBF\xBF",        0,                     0                                   },
    {"TheFirstOfFourBytes",                       "\xF0\x90\x80\x80",                 4,                              2},
    {"TheLastBehindF0",                       "\xF0\xBF\xBF\xBF",                     4,                                  2                                   },
    {"TheFirstBehindF1",                       "\xF1\x80\x80\x80",                    4,                                 2},
    {"TheLastBehindF3",                       "\xF3\xBF\xBF\xBF",                     4,                                  2                                   },
    {"TheLastOfAll",                       "\xF4\x8F\xBF\xBF",                        4,                                     2},
    {"PastTheLastOfAllIsNone",                       "\xF4\x90\x80\x80",              0,                           0                                   },
    {"FourBytesNeedTheirThird",                       "\xF1\x80\x7F\x80",             0,                          0},
    {"FourBytesNeedTheirFourth",                       "\xF1\x80\x80\xC0",            0,                         0                                   },
    {"FourBytesCutOff",                       "\xF1\x80\x80",                     0,                                      0},
    {"F5BeginsNothing",                       "\xF5\x80\x80\x80",                     0,                                  0                               },
    {"FFBeginsNothing",                       "\xFF",                     0,                                              0        },
    {"WhatIsGoodBeforeCounts",                       "a\xC2\xA9\xE2\x82\xAC\xF0\x9F\x8E\xA8\xFFz",              10, 5},
    {"WhatIsCutOffAtTheEndDoesNot",                       "Skizze\xE2\x82",         6,                        6                                     },
};

class Utf8 : public testing::TestWithParam<Utf8Case> {};

TEST_P(Utf8, IsFoundByItsForms)
{
    EXPECT_EQ(size_of_utf8(GetParam().bytes), GetParam().size);
    EXPECT_EQ(utf16_units(std::string_view(GetParam().bytes).substr(0, GetParam().size)), GetParam().units);
}

// What follows in memory belongs to somebody else.
TEST(Utf8Ends, CutACharacterOffWhereTheBytesEnd)
{
    for (const std::string_view character : {"\xC2\xA9", "\xE2\x82\xAC", "\xF0\x9F\x8E\xA8"}) {
        for (std::size_t size = 0; size < character.size(); ++size)
            EXPECT_EQ(size_of_utf8(character.substr(0, size)), 0U) << size;
    }
}

INSTANTIATE_TEST_SUITE_P(, Utf8, testing::ValuesIn(kCases), [](const auto& row) { return row.param.name; });

} // namespace
