#include "tools/program/arguments.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

namespace {

using vnt::program::Arguments;
using vnt::program::WrongUsage;

// A program with an option of every kind, as small as can be.
void take(Arguments& arguments, std::ostream& out)
{
    const std::string& option = arguments.option();
    if (!arguments.is_option())
        out << "[" << option << "]";
    else if (option == "-o" || option == "--output")
        out << option << "{" << arguments.value("the file to write") << "}";
    else if (option == "-v" || option == "--verbose") {
        arguments.no_value();
        out << option;
    } else if (option == "--port")
        out << option << "{" << arguments.number<std::uint16_t>("a port") << "}";
    else if (option == "--tolerance")
        out << option << "{" << arguments.number<double>("a number") << "}";
    else if (option == "--timeout")
        out << option << "{" << arguments.seconds().count() << " ns}";
    else if (option == "--center") {
        const std::vector<double> numbers = arguments.numbers(2, "X,Y");
        out << option << "{" << numbers[0] << " " << numbers[1] << "}";
    } else if (option == "--view") {
        out << option << "{";
        for (const double number : arguments.numbers(4, "X,Y,WIDTH,HEIGHT"))
            out << number << ";";
        out << "}";
    } else if (option == "--layer" && arguments.value("a name") == "none")
        arguments.refuse("no layer " + arguments.text(), "name one");
    else
        arguments.refuse_unknown("try --help");
    out << " ";
}

std::string reading_of(const std::vector<std::string>& arguments)
{
    std::ostringstream out;
    try {
        Arguments rest(arguments, "nothing was drawn", "o");
        while (rest.next())
            take(rest, out);
        EXPECT_FALSE(rest.next()); // the end stays the end
    } catch (const WrongUsage& wrong) {
        return wrong.sentence;
    }
    return out.str();
}

struct UsageCase {
    const char* name;
    std::vector<std::string> arguments;
    std::string reading;
};

const UsageCase kGood[] = {
    {"NothingIsNothing",                        {},                                    ""                                  },
    {"FilesStandAmongOptions",                  {"a.svg", "-o", "b.svg", "c.svg"},     "[a.svg] -o{b.svg} [c.svg] "        },
    {"ALettersValueStandsApart",                {"-o", "b"},                           "-o{b} "                            },
    {"ALettersValueStandsRightBehindIt",        {"-ob"},                               "-o{b} "                            },
    {"ALettersValueMayBeginWithAnEqualsSign",   {"-o=b"},                              "-o{=b} "                           },
    {"ANamesValueStandsApart",                  {"--output", "b"},                     "--output{b} "                      },
    {"ANamesValueStandsBehindTheEqualsSign",    {"--output=a=b"},                      "--output{a=b} "                    },
    {"OptionsWithoutValueLeaveTheNextArgument", {"-v", "b", "--verbose", "c"},         "-v [b] --verbose [c] "             },
    {"AValueMayLookLikeAnOption",               {"-o", "-v", "--output", "--"},        "-o{-v} --output{--} "              },
    {"ADashAloneIsNoOption",                    {"-", "-o", "-"},                      "[-] -o{-} "                        },
    {"AnEmptyArgumentIsNoOption",               {""},                                  "[] "                               },
    {"ANameWithAnEqualsSignStaysWhole",         {"a=b.svg"},                           "[a=b.svg] "                        },
    {"BehindTwoDashesNothingIsAnOption",        {"-v", "--", "-o", "--output=b", "-"}, "-v [-o] [--output=b] [-] "         },
    {"OnlyTheFirstTwoDashesEndTheOptions",      {"--", "--", "a"},                     "[--] [a] "                         },
    {"TwoDashesAmongFilesAreAFileThen",         {"--", "a", "--", "b"},                "[a] [--] [b] "                     },
    {"AnAttachedValueIsOfItsOptionOnly",        {"--output=a", "-o", "b"},             "--output{a} -o{b} "                },
    {"TwoDashesAtTheEndAreNothing",             {"a", "--"},                           "[a] "                              },
    {"ANegativeNumberIsAValue",                 {"--tolerance", "-2.5"},               "--tolerance{-2.5} "                },
    {"ANumberMayHaveAnExponent",                {"--tolerance=1e-3"},                  "--tolerance{0.001} "               },
    {"NumbersMayAllBeNegative",                 {"--center", "-3,-4.5"},               "--center{-3 -4.5} "                },
    {"NumbersMayBeAttached",                    {"--view=1,2.5,-3e2,0"},               "--view{1;2.5;-300;0;} "            },
    {"TheLargestPortIsAPort",                   {"--port", "65535"},                   "--port{65535} "                    },
    {"ATimeIsExact",                            {"--timeout", "2.5"},                  "--timeout{2500000000 ns} "         },
    {"TheShortestTimeIsNotNone",                {"--timeout", "1e-20"},                "--timeout{1 ns} "                  },
    {"TheLongestTimeHasRoom",                   {"--timeout", "1e9"},                  "--timeout{1000000000000000000 ns} "},
};

const std::string kEnd = "; nothing was drawn; ";
const std::string kTime = kEnd + "give it a number of seconds above 0 and up to 1000000000";

const UsageCase kWrong[] = {
    {"AnUnknownNameIsNamedWithoutItsValue",    {"--outptu=b"},           "unknown option --outptu" + kEnd + "try --help"                },
    {"AnUnknownLetterIsNamed",                 {"-x"},                   "unknown option -x" + kEnd + "try --help"                      },
    {"LettersThatTakeNoValueAreNotTakenApart", {"-verbose"},             "unknown option -verbose" + kEnd + "try --help"                },
    {"NoNameIsAnUnknownOption",                {"--=b"},                 "unknown option --" + kEnd + "try --help"                      },
    {"ALetterWithoutItsValue",                 {"a", "-o"},              "no value behind -o" + kEnd + "give it the file to write"      },
    {"ANameWithoutItsValue",                   {"--output"},             "no value behind --output" + kEnd + "give it the file to write"},
    {"AnEmptyValueIsNone",                     {"-o", ""},               "no value behind -o" + kEnd + "give it the file to write"      },
    {"AnEmptyAttachedValueIsNone",
     {"--output=", "b"},
     "no value behind --output" + kEnd + "give it the file to write"                                                                    },
    {"AValueOfTheOptionBeforeIsGone",
     {"--output=b", "-o"},
     "no value behind -o" + kEnd + "give it the file to write"                                                                          },
    {"AValueWhereThereIsNone",
     {"--verbose=2"},
     "cannot use a value of --verbose, 2" + kEnd + "give --verbose alone"                                                               },
    {"AnEmptyValueWhereThereIsNone",
     {"--verbose="},
     "cannot use a value of --verbose, " + kEnd + "give --verbose alone"                                                                },
    {"ANumberOutOfItsRange",                   {"--port", "65536"},      "cannot use --port 65536" + kEnd + "give it a port"            },
    {"ANumberWithMoreBehindIt",
     {"--tolerance", "1mm"},
     "cannot use --tolerance 1mm" + kEnd + "give it a number"                                                                           },
    {"ANumberWithADecimalComma",
     {"--tolerance", "1,5"},
     "cannot use --tolerance 1,5" + kEnd + "give it a number"                                                                           },
    {"ANumberWithABlank",                      {"--tolerance", " 1"},    "cannot use --tolerance  1" + kEnd + "give it a number"        },
    {"ANumberThatIsNone",                      {"--tolerance", "nan"},   "cannot use --tolerance nan" + kEnd + "give it a number"       },
    {"ANumberWithoutEnd",                      {"--tolerance=-inf"},     "cannot use --tolerance -inf" + kEnd + "give it a number"      },
    {"ANumberThatNoDoubleHolds",
     {"--tolerance", "1e999"},
     "cannot use --tolerance 1e999" + kEnd + "give it a number"                                                                         },
    {"TooFewNumbers",                          {"--view", "1,2,3"},      "cannot use --view 1,2,3" + kEnd + "give it X,Y,WIDTH,HEIGHT"  },
    {"TooManyNumbers",                         {"--center", "1,2,3"},    "cannot use --center 1,2,3" + kEnd + "give it X,Y"             },
    {"NumbersWithAGap",                        {"--view", "1,,3,4"},     "cannot use --view 1,,3,4" + kEnd + "give it X,Y,WIDTH,HEIGHT" },
    {"NumbersThatEndInAComma",                 {"--center", "1,"},       "cannot use --center 1," + kEnd + "give it X,Y"                },
    {"NumbersThatBeginWithAComma",             {"--center", ",1"},       "cannot use --center ,1" + kEnd + "give it X,Y"                },
    {"NumbersWithABlankBetween",               {"--center", "1, 2"},     "cannot use --center 1, 2" + kEnd + "give it X,Y"              },
    {"NumbersWithoutEnd",                      {"--center", "1,inf"},    "cannot use --center 1,inf" + kEnd + "give it X,Y"             },
    {"NumbersWithoutAnyValue",                 {"--center"},             "no value behind --center" + kEnd + "give it X,Y"              },
    {"NoTimeAtAll",                            {"--timeout", "0"},       "cannot use --timeout 0" + kTime                               },
    {"ATimeBelowZero",                         {"--timeout", "-3"},      "cannot use --timeout -3" + kTime                              },
    {"ATimeWithoutRoom",                       {"--timeout=1000000001"}, "cannot use --timeout 1000000001" + kTime                      },
    {"WhatTheProgramItselfRefuses",            {"--layer", "none"},      "no layer none" + kEnd + "name one"                            },
};

class ProgramArguments : public testing::TestWithParam<UsageCase> {};

TEST_P(ProgramArguments, AreRead) { EXPECT_EQ(reading_of(GetParam().arguments), GetParam().reading); }

const auto kName = [](const auto& row) { return row.param.name; };
INSTANTIATE_TEST_SUITE_P(Good, ProgramArguments, testing::ValuesIn(kGood), kName);
INSTANTIATE_TEST_SUITE_P(Wrong, ProgramArguments, testing::ValuesIn(kWrong), kName);

TEST(ProgramArgumentsWithoutLetters, StayWholeBehindOneDash)
{
    Arguments arguments({"-ob"}, "nothing was drawn");
    ASSERT_TRUE(arguments.next());
    EXPECT_TRUE(arguments.is_option());
    EXPECT_EQ(arguments.option(), "-ob");
    EXPECT_EQ(arguments.text(), "");
}

} // namespace
