#include "host/kit/svg_numbers.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace vnt::host;

struct NumberCase {
    const char* name;
    std::string_view text;
    std::optional<double> number;
    std::string_view rest;
};
const NumberCase kNumbers[] = {
    {"AnInteger",                "12",       12.0,         ""     },
    {"ASignOfEitherKind",        "+1.5-2",   1.5,          "-2"   },
    {"NoDigitBeforeThePoint",    "-.5.25",   -0.5,         ".25"  },
    {"AnExponent",               "1E+2e3",   100.0,        "e3"   },
    {"TheUnitEmIsNoExponent",    "5em",      5.0,          "em"   },
    {"TooSmallIsNothing",        "1e-999,1", 0.0,          ",1"   },
    {"TooLargeIsNone",           "1e999",    std::nullopt, "1e999"},
    {"ANameOfANumberIsNone",     "inf",      std::nullopt, "inf"  },
    {"ASignAloneIsNone",         "-",        std::nullopt, "-"    },
    {"APointAloneIsNone",        ".",        std::nullopt, "."    },
    {"TwoSignsAreNone",          "-+1",      std::nullopt, "-+1"  },
    {"NothingIsNone",            "",         std::nullopt, ""     },
    {"HexadecimalEndsAtItsZero", "0x10",     0.0,          "x10"  },
};
class SvgNumber : public testing::TestWithParam<NumberCase> {};
TEST_P(SvgNumber, IsTakenFromTheFront)
{
    std::string_view text = GetParam().text;
    EXPECT_EQ(take_number(text), GetParam().number);
    EXPECT_EQ(text, GetParam().rest);
}
INSTANTIATE_TEST_SUITE_P(, SvgNumber, testing::ValuesIn(kNumbers),
                         [](const auto& row) { return row.param.name; });

struct LengthCase {
    const char* name;
    std::string_view text;
    std::optional<double> px; // a hundredth of 300 px is a per cent
};
const LengthCase kLengths[] = {
    {"WithoutAUnit",            "12.5",      12.5        },
    {"InPixels",                " 12.5px\n", 12.5        },
    {"InMillimetres",           "25.4mm",    96.0        },
    {"InCentimetres",           "2.54cm",    96.0        },
    {"InInches",                "0.5in",     48.0        },
    {"InPoints",                "72pt",      96.0        },
    {"InPicas",                 "6pc",       96.0        },
    {"InPerCent",               "50%",       150.0       },
    {"InEmIsNone",              "5em",       std::nullopt},
    {"WithABlankBeforeTheUnit", "5 mm",      std::nullopt},
    {"InCapitals",              "5MM",       std::nullopt},
    {"AWord",                   "auto",      std::nullopt},
    {"Nothing",                 "",          std::nullopt},
};
class SvgLength : public testing::TestWithParam<LengthCase> {};
TEST_P(SvgLength, HasItsUnit)
{
    const std::optional<Length> length = try_read_length(GetParam().text);
    ASSERT_EQ(length.has_value(), GetParam().px.has_value());
    if (length) {
        EXPECT_DOUBLE_EQ(px_of(*length, 300), *GetParam().px);
    }
}
INSTANTIATE_TEST_SUITE_P(, SvgLength, testing::ValuesIn(kLengths),
                         [](const auto& row) { return row.param.name; });

struct TransformCase {
    const char* name;
    std::string_view text;
    Affine map;
};
const double kHalfRoot3 = std::sqrt(3.0) / 2;
const TransformCase kTransforms[] = {
    {"NothingIsTheIdentity",          "",                           {1, 0, 0, 1, 0, 0}                       },
    {"BlanksAreTheIdentity",          " \n",                        {1, 0, 0, 1, 0, 0}                       },
    {"NoneIsTheIdentity",             "none",                       {1, 0, 0, 1, 0, 0}                       },
    {"AMatrix",                       "matrix(1 2,3 , 4-5.5.5)",    {1, 2, 3, 4, -5.5, 0.5}                  },
    {"ATranslation",                  "translate( 3 , 4 )",         {1, 0, 0, 1, 3, 4}                       },
    {"ATranslationAlongX",            "translate(3)",               {1, 0, 0, 1, 3, 0}                       },
    {"AScale",                        "scale(2 -1)",                {2, 0, 0, -1, 0, 0}                      },
    {"AScaleOfBothAxes",              "scale(2)",                   {2, 0, 0, 2, 0, 0}                       },
    {"ATurnFromXToY",                 "rotate(30)",                 {kHalfRoot3, 0.5, -0.5, kHalfRoot3, 0, 0}},
    {"ATurnAboutAPoint",              "rotate(90, 10, 20)",         {0, 1, -1, 0, 30, 10}                    },
    {"ASkewAlongX",                   "skewX(45)",                  {1, 0, 1, 1, 0, 0}                       },
    {"ASkewAlongY",                   "skewY(-45)",                 {1, -1, 0, 1, 0, 0}                      },
    {"TheRightmostOfAListComesFirst", "translate(10,20) scale(2)",  {2, 0, 0, 2, 10, 20}                     },
    {"AListMayHaveCommas",            "scale(2),translate(10,20)",  {2, 0, 0, 2, 20, 40}                     },
    {"AListMayHaveNothingBetween",    "scale(2)translate(10)",      {2, 0, 0, 2, 20, 0}                      },
    {"ABlankBeforeTheParenthesis",    "scale (2)\n\ttranslate (1)", {2, 0, 0, 2, 2, 0}                       },
};
class SvgTransform : public testing::TestWithParam<TransformCase> {};
TEST_P(SvgTransform, IsTheProductOfItsList)
{
    const std::optional<Affine> map = try_read_transform(GetParam().text);
    ASSERT_TRUE(map.has_value());
    constexpr double kRounding = 1e-15;
    EXPECT_NEAR(map->a, GetParam().map.a, kRounding);
    EXPECT_NEAR(map->b, GetParam().map.b, kRounding);
    EXPECT_NEAR(map->c, GetParam().map.c, kRounding);
    EXPECT_NEAR(map->d, GetParam().map.d, kRounding);
    EXPECT_NEAR(map->e, GetParam().map.e, kRounding);
    EXPECT_NEAR(map->f, GetParam().map.f, kRounding);
}
INSTANTIATE_TEST_SUITE_P(, SvgTransform, testing::ValuesIn(kTransforms),
                         [](const auto& row) { return row.param.name; });

struct BadTransformCase {
    const char* name;
    std::string_view text;
};
const BadTransformCase kBadTransforms[] = {
    {"AnUnknownName",       "turn(30)"         },
    {"ANameAlone",          "scale"            },
    {"TooManyNumbers",      "translate(1,2,3)" },
    {"TooFewNumbers",       "matrix(1 0 0 1 0)"},
    {"NoNumbers",           "rotate()"         },
    {"TwoNumbersOfATurn",   "rotate(1,2)"      },
    {"AUnit",               "rotate(30deg)"    },
    {"ACommaTooMany",       "translate(1,,2)"  },
    {"ACommaAtTheEnd",      "translate(1,)"    },
    {"AMissingParenthesis", "translate(1 2"    },
    {"SomethingBehind",     "scale(2) and more"},
    {"ANameInCapitals",     "Scale(2)"         },
};
class SvgBadTransform : public testing::TestWithParam<BadTransformCase> {};
TEST_P(SvgBadTransform, IsNone) { EXPECT_FALSE(try_read_transform(GetParam().text).has_value()); }
INSTANTIATE_TEST_SUITE_P(, SvgBadTransform, testing::ValuesIn(kBadTransforms),
                         [](const auto& row) { return row.param.name; });

} // namespace
