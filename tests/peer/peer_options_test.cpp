#include "tools/peer/help_text.h"
#include "tools/peer/options.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <variant>
#include <vector>

namespace {

using namespace vnt::peer;
using namespace std::chrono_literals;

using Arguments = std::vector<std::string>;

// All that is no default, readable.
std::string describe(const Options& options)
{
    std::ostringstream out;
    out << (options.help ? "help " : "") << (options.version ? "version " : "") << "port=" << options.port
        << " exchanges=" << options.exchanges << " save=" << options.save_request.value_or("-")
        << " answer=" << options.answer.value_or("-") << (options.join ? " join" : "")
        << " fault=" << entry_of_fault(options.fault).name
        << " timeout=" << (options.timeout ? options.timeout->count() : -1);
    return out.str();
}

std::string describe(const vnt::program::Result<Options>& result)
{
    if (const auto* problem = std::get_if<vnt::program::Problem>(&result))
        return std::to_string(problem->status) + ": " + problem->sentence;
    return describe(std::get<Options>(result));
}

struct UsageCase {
    const char* name;
    Arguments arguments;
    std::string meaning;
};

const UsageCase kGoodUsages[] = {
    {"AnAnswerIsEnough",
     {"--answer", "a.xml"},
     "port=4910 exchanges=1 save=- answer=a.xml fault= timeout=-1"                       },
    {"ValuesMayBeAttached",
     {"--answer=a=b.xml", "--port=1"},
     "port=1 exchanges=1 save=- answer=a=b.xml fault= timeout=-1"                        },
    {"AllOptionsTogether",
     {"--port", "65535", "--exchanges", "4294967295", "--save-request", "r", "--answer", "a", "--join",
      "--fault", "drip", "--timeout", "2.5"},
     "port=65535 exchanges=4294967295 save=r answer=a join fault=drip timeout=2500000000"},
    {"TheLastOfAnOptionCounts",
     {"--port", "1", "--answer", "a", "--port", "0"},
     "port=0 exchanges=1 save=- answer=a fault= timeout=-1"                              },
    {"AFaultThatNeedsNoAnswerIsEnough",
     {"--fault", "reset"},
     "port=4910 exchanges=1 save=- answer=- fault=reset timeout=-1"                      },
    {"AFaultThatNeedsNoAnswerBearsOne",
     {"--fault", "stall", "--answer", "a"},
     "port=4910 exchanges=1 save=- answer=a fault=stall timeout=-1"                      },
    {"HelpEndsTheReading",
     {"--help", "--nonsense"},
     "help port=4910 exchanges=1 save=- answer=- fault= timeout=-1"                      },
    {"VersionEndsTheReading",
     {"--version", "--nonsense"},
     "version port=4910 exchanges=1 save=- answer=- fault= timeout=-1"                   },
    {"TheShortestTimeIsNotNone",
     {"--answer", "a", "--timeout", "1e-20"},
     "port=4910 exchanges=1 save=- answer=a fault= timeout=1"                            },
};

const std::string kFaultNames =
    "refuse, close-before-answer, close-mid-line, stall, drip, garbage, huge, two-answers, reset";
const std::string kPortMeaning = "; nothing was started; give it a port from 0 to 65535";
const std::string kTimeMeaning =
    "; nothing was started; give it a number of seconds above 0 and up to 1000000000";

const UsageCase kWrongUsages[] = {
    {"NothingToAnswer",
     {},
     "2: no answer to give; nothing was started; name one with --answer FILE, or a fault that needs none, as "
     "in "
     "--fault close-before-answer"                                                                      },
    {"AFaultThatNeedsAnAnswer",
     {"--fault", "close-mid-line"},
     "2: no answer for --fault close-mid-line; nothing was started; name one with --answer FILE"        },
    {"UnknownOption",
     {"--anwser", "a"},
     "2: unknown option --anwser; nothing was started; vant-peer --help lists the options"              },
    {"UnexpectedArgument",
     {"a.xml"},
     "2: unexpected argument a.xml; nothing was started; vant-peer --help lists the options"            },
    {"AnOptionBehindTheEndOfOptions",
     {"--answer", "a", "--", "--join"},
     "2: unexpected argument --join; nothing was started; vant-peer --help lists the options"           },
    {"ManyLettersBehindOneDash",
     {"-help"},
     "2: unknown option -help; nothing was started; vant-peer --help lists the options"                 },
    {"EmptyArgument",
     {""},
     "2: unexpected argument ; nothing was started; vant-peer --help lists the options"                 },
    {"UnknownFault",
     {"--fault", "Stall"},
     "2: unknown fault Stall; nothing was started; give --fault one of " + kFaultNames                  },
    {"FaultWithoutName",
     {"--fault"},
     "2: no value behind --fault; nothing was started; give it one of " + kFaultNames                   },
    {"AnswerWithoutFile",
     {"--answer"},
     "2: no value behind --answer; nothing was started; give it the file that holds the answer"         },
    {"AnswerWithAnEmptyName",
     {"--answer="},
     "2: no value behind --answer; nothing was started; give it the file that holds the answer"         },
    {"SaveRequestWithoutFile",
     {"--answer", "a", "--save-request"},
     "2: no value behind --save-request; nothing was started; give it the file to write the request to" },
    {"PortTooHigh",                   {"--port", "65536"},  "2: cannot use --port 65536" + kPortMeaning },
    {"PortBelowZero",                 {"--port", "-1"},     "2: cannot use --port -1" + kPortMeaning    },
    {"PortWithMoreBehindIt",          {"--port", "4910x"},  "2: cannot use --port 4910x" + kPortMeaning },
    {"PortWithoutNumber",             {"--port"},           "2: no value behind --port" + kPortMeaning  },
    {"ExchangesInWords",
     {"--exchanges", "two"},
     "2: cannot use --exchanges two; nothing was started; give it a whole number, 0 for no end"         },
    {"NoTimeAtAll",                   {"--timeout", "0"},   "2: cannot use --timeout 0" + kTimeMeaning  },
    {"TimeBelowZero",                 {"--timeout", "-3"},  "2: cannot use --timeout -3" + kTimeMeaning },
    {"TimeThatIsNoNumber",            {"--timeout", "nan"}, "2: cannot use --timeout nan" + kTimeMeaning},
    {"TimeWithoutEnd",                {"--timeout", "inf"}, "2: cannot use --timeout inf" + kTimeMeaning},
    {"TimeWithUnit",                  {"--timeout", "3s"},  "2: cannot use --timeout 3s" + kTimeMeaning },
    {"JoinWithAValue",
     {"--join=yes"},
     "2: cannot use a value of --join, yes; nothing was started; give --join alone"                     },
    {"JoinWithoutAnswer",
     {"--fault", "stall", "--join"},
     "2: nothing to join; nothing was started; name the file with --answer FILE, or leave --join out"   },
    {"SavingWhatIsNeverRead",
     {"--fault", "refuse", "--save-request", "r"},
     "2: no request to save with --fault refuse, which reads none; nothing was started; leave --save-request "
     "out"                                                                                              },
};

class PeerOptions : public testing::TestWithParam<UsageCase> {};

TEST_P(PeerOptions, AreUnderstood)
{
    EXPECT_EQ(describe(read_options(GetParam().arguments)), GetParam().meaning);
}

const auto kName = [](const auto& row) { return row.param.name; };
INSTANTIATE_TEST_SUITE_P(Good, PeerOptions, testing::ValuesIn(kGoodUsages), kName);
INSTANTIATE_TEST_SUITE_P(Wrong, PeerOptions, testing::ValuesIn(kWrongUsages), kName);

class PeerFaults : public testing::TestWithParam<FaultEntry> {};

TEST_P(PeerFaults, AreFoundByNameAndTold)
{
    const FaultEntry& entry = GetParam();
    ASSERT_NE(fault_of_name(entry.name), nullptr);
    EXPECT_EQ(fault_of_name(entry.name)->fault, entry.fault);
    EXPECT_STREQ(entry_of_fault(entry.fault).name, entry.name);
    EXPECT_NE(help_text().find(std::string("\n  ") + entry.name + " "), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(, PeerFaults, testing::ValuesIn(fault_entries()), [](const auto& row) {
    std::string name = row.param.name;
    for (char& c : name)
        c = c == '-' ? '_' : c;
    return name;
});

TEST(PeerHelp, FitsEightyColumns)
{
    std::istringstream help(help_text());
    for (std::string line; std::getline(help, line);)
        EXPECT_LE(line.size(), 80U) << line;
}

TEST(PeerHelp, NamesEveryOption)
{
    for (const char* option : {"--answer FILE", "--join", "--save-request FILE", "--port N", "--exchanges N",
                               "--fault NAME", "--timeout SECONDS", "--help", "--version"})
        EXPECT_NE(help_text().find(std::string("\n  ") + option), std::string::npos) << option;
}

TEST(PeerHelp, VersionIsTheProgramsNameAndThreeNumbers)
{
    int major = 0;
    int minor = 0;
    int patch = 0;
    int read = 0;
    EXPECT_EQ(std::sscanf(version_text().c_str(), "vant-peer %d.%d.%d\n%n", &major, &minor, &patch, &read),
              3);
    EXPECT_EQ(static_cast<std::size_t>(read), version_text().size());
}

} // namespace
