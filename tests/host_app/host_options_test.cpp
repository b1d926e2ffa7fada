#include "host/app/help_text.h"
#include "host/app/options.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <variant>
#include <vector>

namespace {

using namespace vnt::host;

std::vector<std::string> words(const std::string& text)
{
    std::istringstream rest(text);
    return {std::istream_iterator<std::string>(rest), {}};
}

const char* name_of(Command command)
{
    switch (command) {
    case Command::help: return "help";
    case Command::version: return "version";
    case Command::run: return "run";
    case Command::draw: return "draw";
    }
    return "?";
}

// All that differs from what holds without it.
std::string text_of(const Options& o)
{
    std::ostringstream out;
    out.precision(12);
    out << name_of(o.command);
    const auto tell = [&](const char* name, const auto& value) { out << " " << name << "=" << value; };
    if (!o.subject.empty())
        tell("subject", o.subject);
    if (!o.artwork.empty())
        tell("artwork", o.artwork);
    if (!o.answer.empty())
        tell("answer", o.answer);
    if (!o.out.empty())
        tell("out", o.out);
    if (o.trace)
        tell("trace", *o.trace);
    if (o.timeout)
        tell("timeout_ns", o.timeout->count());
    if (o.memory)
        tell("memory", *o.memory);
    if (o.strict)
        out << " strict";
    if (o.art)
        tell("art", *o.art);
    if (o.editor)
        tell("editor", *o.editor);
    if (o.plugin)
        tell("plugin", *o.plugin);
    if (o.launch)
        tell("launch", *o.launch);
    if (const auto& window = o.view.window)
        out << " window=" << window->x << "," << window->y << "," << window->width << "," << window->height;
    if (o.view.zoom)
        tell("zoom", *o.view.zoom);
    if (o.view.center)
        out << " center=" << o.view.center->x << "," << o.view.center->y;
    if (o.grid)
        out << " grid=" << o.grid->spacing << "," << o.grid->subdivisions;
    if (o.no_grid)
        out << " no_grid";
    if (o.join)
        out << " join";
    if (o.into)
        tell("into", *o.into);
    if (o.tolerance != 1)
        tell("tolerance", o.tolerance);
    return out.str();
}

// The options, or the problem's sentence.
std::string reading_of(const std::string& arguments)
{
    const auto read = read_options(words(arguments));
    if (const auto* problem = std::get_if<vnt::program::Problem>(&read)) {
        EXPECT_EQ(problem->status, vnt::program::kWrongUsage);
        return problem->sentence;
    }
    return text_of(std::get<Options>(read));
}

struct OptionsCase {
    const char* name;
    const char* arguments;
    std::string reading;
};

const std::string kRun = "run artwork=a.svg out=o.svg";
const std::string kDraw = "draw answer=a.xml out=o.svg";

const OptionsCase kGood[] = {
    {"RunHasAnArtworkAndAFile",    "run a.svg -o o.svg",                                  kRun                             },
    {"TheFileMayStandFirst",       "run -o o.svg a.svg",                                  kRun                             },
    {"TheFileMayStandAtTheLetter", "run a.svg -oo.svg",                                   kRun                             },
    {"TheFileHasALongName",        "run a.svg --output o.svg",                            kRun                             },
    {"TheFileMayStandAtTheName",   "run a.svg --output=o.svg",                            kRun                             },
    {"TheLastFileCounts",          "run a.svg -o b.svg -o o.svg",                         kRun                             },
    {"TheFileMayBeTheArtwork",     "run a.svg -o a.svg",                                  "run artwork=a.svg out=a.svg"    },
    {"BehindDashesAllAreFiles",    "run -o o.svg -- --a.svg",                             "run artwork=--a.svg out=o.svg"  },
    {"ADashAloneIsAFile",          "run - -o o.svg",                                      "run artwork=- out=o.svg"        },
    {"DrawHasAnAnswerAndAFile",    "draw a.xml -o o.svg",                                 kDraw                            },
    {"OfRunATrace",                "run a.svg -o o.svg --trace t",                        kRun + " trace=t"                },
    {"OfDrawATrace",               "draw a.xml -o o.svg --trace=t",                       kDraw + " trace=t"               },
    {"OfRunATimeout",              "run a.svg -o o.svg --timeout 1.5",                    kRun + " timeout_ns=1500000000"  },
    {"OfDrawATimeout",             "draw a.xml -o o.svg --timeout 1e-10",                 kDraw + " timeout_ns=1"          },
    {"OfRunMemory",                "run a.svg -o o.svg --memory 300",                     kRun + " memory=314572800"       },
    {"OfDrawMemory",               "draw a.xml -o o.svg --memory 0.5",                    kDraw + " memory=524288"         },
    {"TheMostMemory",              "run a.svg -o o.svg --memory 1e9",                     kRun + " memory=1048576000000000"},
    {"OfRunStrictness",            "run a.svg -o o.svg --strict",                         kRun + " strict"                 },
    {"OfDrawStrictness",           "draw a.xml -o o.svg --strict",                        kDraw + " strict"                },
    {"AFileForThePathsAlone",      "run a.svg -o o.svg --art p.svg",                      kRun + " art=p.svg"              },
    {"AnEditor",                   "run a.svg -o o.svg --editor 4711-99",                 kRun + " editor=4711-99"         },
    {"AnEditorThatIsNotKnown",     "run a.svg -o o.svg --editor none",                    kRun + " editor="                },
    {"APlugIn",                    "run a.svg -o o.svg --plugin p.so",                    kRun + " plugin=p.so"            },
    {"ACommandToLaunch",           "run a.svg -o o.svg --launch sketch",                  kRun + " launch=sketch"          },
    {"AWindow",                    "run a.svg -o o.svg --view 1,2,3,4",                   kRun + " window=1,2,3,4"         },
    {"TheLargestWindow",           "run a.svg -o o.svg --view -32768,-32768,65535,65535",
     kRun + " window=-32768,-32768,65535,65535"                                                                            },
    {"AZoom",                      "run a.svg -o o.svg --zoom 0.25",                      kRun + " zoom=0.25"              },
    {"ACenter",                    "run a.svg -o o.svg --center -1.5,2",                  kRun + " center=-1.5,2"          },
    {"AGrid",                      "run a.svg -o o.svg --grid 7.5,4",                     kRun + " grid=7.5,4"             },
    {"TheFinestGrid",              "run a.svg -o o.svg --grid 1,1000000",                 kRun + " grid=1,1000000"         },
    {"NoGrid",                     "run a.svg -o o.svg --no-grid",                        kRun + " no_grid"                },
    {"AnArtworkToDrawInto",        "draw a.xml -o o.svg --into i.svg",                    kDraw + " into=i.svg"            },
    {"ATolerance",                 "draw a.xml -o o.svg --tolerance 0.01",                kDraw + " tolerance=0.01"        },
    {"AnyTolerance",               "draw a.xml -o o.svg --tolerance -3",                  kDraw + " tolerance=-3"          },
    {"Joining",                    "draw a.xml -o o.svg --join",                          kDraw + " join"                  },
    {"Help",                       "--help",                                              "help"                           },
    {"HelpByItsLetter",            "-h",                                                  "help"                           },
    {"HelpAsACommand",             "help",                                                "help"                           },
    {"HelpWithASubject",           "help draw",                                           "help subject=draw"              },
    {"HelpOfRun",                  "run --help",                                          "help subject=run"               },
    {"HelpOfDrawBehindOthers",     "draw --tolerance 3 -h --nonsense",                    "help subject=draw tolerance=3"  },
    {"TheVersion",                 "--version",                                           "version"                        },
    {"TheVersionOfACommand",       "run --version",                                       "version"                        },
};

const std::string kNothing = "; nothing was done; ";
const std::string kWindow = kNothing +
                            "give it X,Y,WIDTH,HEIGHT in pixels of the screen, whose edges are from -32768 "
                            "to 32767";
const std::string kZoom =
    kNothing + "give it a number above 0: 2 shows a pixel of the page as 2 of the screen";
const std::string kGrid =
    kNothing + "give it SPACING,SUBDIVISIONS: points above 0, and a whole number from 1 to 1000000";
const std::string kMemory = kNothing + "give it a number of mebibytes above 0 and up to 1000000000";
const std::string kTime = kNothing + "give it a number of seconds above 0 and up to 1000000000";
const std::string kFiles = "run a.svg -o o.svg ";
const std::string kCommands = kNothing + "vant-host --help lists the commands";

const OptionsCase kBad[] = {
    {"NoCommand",                  "",                                        "no command" + kCommands                                                       },
    {"AnUnknownCommand",           "walk a.svg",                              "unknown command walk" + kCommands                                             },
    {"AnOptionAsTheCommand",       "--fast",                                  "unknown option --fast" + kCommands                                            },
    {"NoArtwork",                  "run -o o.svg",
     "no artwork to work on" + kNothing + "name it, as in vant-host run drawing.svg -o result.svg"                                                           },
    {"NoFileOfRun",                "run a.svg",
     "no file to write" + kNothing + "name it with -o FILE, which may be the artwork itself"                                                                 },
    {"NoAnswer",                   "draw -o o.svg",
     "no answer to draw" + kNothing + "name it, as in vant-host draw answer.xml -o result.svg"                                                               },
    {"NoFileOfDraw",               "draw a.xml",                              "no file to write" + kNothing + "name it with -o FILE"                         },
    {"TwoArtworks",                "run a.svg b.svg -o o.svg",
     "unexpected argument b.svg" + kNothing + "one file is worked on at a time"                                                                              },
    {"AnUnknownOptionOfRun",       "run a.svg --fast -o o.svg",
     "unknown option --fast" + kNothing + "vant-host run --help lists the options"                                                                           },
    {"AnOptionOfDrawInRun",        "run a.svg --tolerance 1 -o o.svg",
     "unknown option --tolerance" + kNothing + "vant-host run --help lists the options"                                                                      },
    {"AnOptionOfRunInDraw",        "draw a.xml --zoom 1 -o o.svg",
     "unknown option --zoom" + kNothing + "vant-host draw --help lists the options"                                                                          },
    {"AFileWithoutItsName",        "run a.svg -o",                            "no value behind -o" + kNothing + "give it the file to write"                  },
    {"ATraceWithoutItsName",
     "run a.svg --trace=",                                                    "no value behind --trace" + kNothing + "give it the file to write the calls to"},
    {"APlugInWithoutItsName",      "run a.svg --plugin",
     "no value behind --plugin" + kNothing + "give it the plug-in to load"                                                                                   },
    {"ALaunchWithoutItsCommand",   "run a.svg --launch",
     "no value behind --launch" + kNothing + "give it the command that starts the sketch application"                                                        },
    {"AnIntoWithoutItsName",       "draw a.xml --into",
     "no value behind --into" + kNothing + "give it the artwork to draw into"                                                                                },
    {"AValueOfStrict",             "run a.svg --strict=yes",
     "cannot use a value of --strict, yes" + kNothing + "give --strict alone"                                                                                },
    {"AValueOfNoGrid",             "run a.svg --no-grid=1",
     "cannot use a value of --no-grid, 1" + kNothing + "give --no-grid alone"                                                                                },
    {"AValueOfJoin",               "draw a.xml --join=1",
     "cannot use a value of --join, 1" + kNothing + "give --join alone"                                                                                      },
    {"AValueOfHelp",               "--help=run",                              "cannot use a value of --help, run" + kNothing + "give --help alone"           },
    {"AValueOfVersion",            "--version=1",
     "cannot use a value of --version, 1" + kNothing + "give --version alone"                                                                                },
    {"GridAndNoGrid",              "run a.svg -o o.svg --grid 1,1 --no-grid",
     "cannot use both --grid and --no-grid" + kNothing + "leave one out"                                                                                     },
    {"NoTime",                     "run a.svg --timeout 0",                   "cannot use --timeout 0" + kTime                                               },
    {"TooMuchTime",                "run a.svg --timeout 1e10",                "cannot use --timeout 1e10" + kTime                                            },
    {"ATimeThatIsNoNumber",        "draw a.xml --timeout soon",               "cannot use --timeout soon" + kTime                                            },
    {"NoMemory",                   "run a.svg --memory 0",                    "cannot use --memory 0" + kMemory                                              },
    {"TooMuchMemory",              "run a.svg --memory 1.1e9",                "cannot use --memory 1.1e9" + kMemory                                          },
    {"MemoryThatIsNoNumber",       "draw a.xml --memory 4G",                  "cannot use --memory 4G" + kMemory                                             },
    {"MemoryThatIsNotFinite",      "draw a.xml --memory inf",                 "cannot use --memory inf" + kMemory                                            },
    {"AnEditorsNumberAlone",       "run a.svg --editor 4711",
     "cannot use --editor 4711" + kNothing + "give it an editor's name, as 4711-123456, or none"                                                             },
    {"AWindowOfThreeNumbers",      "run a.svg --view 0,0,100",                "cannot use --view 0,0,100" + kWindow                                          },
    {"AWindowOfFiveNumbers",       "run a.svg --view 0,0,1,1,1",              "cannot use --view 0,0,1,1,1" + kWindow                                        },
    {"AWindowWithoutWidth",        "run a.svg --view 0,0,0,100",              "cannot use --view 0,0,0,100" + kWindow                                        },
    {"AWindowWithoutHeight",       "run a.svg --view 0,0,100,0",              "cannot use --view 0,0,100,0" + kWindow                                        },
    {"AWindowTooFarLeft",          "run a.svg --view -32769,0,9,9",           "cannot use --view -32769,0,9,9" + kWindow                                     },
    {"AWindowTooFarUp",            "run a.svg --view 0,-32769,9,9",           "cannot use --view 0,-32769,9,9" + kWindow                                     },
    {"AWindowTooFarRight",         "run a.svg --view 32767,0,1,1",            "cannot use --view 32767,0,1,1" + kWindow                                      },
    {"AWindowTooFarDown",          "run a.svg --view 0,32767,1,1",            "cannot use --view 0,32767,1,1" + kWindow                                      },
    {"NoZoom",                     "run a.svg --zoom 0",                      "cannot use --zoom 0" + kZoom                                                  },
    {"ANegativeZoom",              "run a.svg --zoom -2",                     "cannot use --zoom -2" + kZoom                                                 },
    {"AZoomInPerCent",             "run a.svg --zoom 200%",                   "cannot use --zoom 200%" + kZoom                                               },
    {"ACenterOfOneNumber",         "run a.svg --center 1",
     "cannot use --center 1" + kNothing + "give it X,Y in pixels of the page"                                                                                },
    {"AGridWithoutSubdivisions",   "run a.svg --grid 10",                     "cannot use --grid 10" + kGrid                                                 },
    {"AGridWithoutSpacing",        "run a.svg --grid 0,4",                    "cannot use --grid 0,4" + kGrid                                                },
    {"AGridOfNoSubdivisions",      "run a.svg --grid 10,0",                   "cannot use --grid 10,0" + kGrid                                               },
    {"AGridOfHalfSubdivisions",    "run a.svg --grid 10,1.5",                 "cannot use --grid 10,1.5" + kGrid                                             },
    {"AGridOfTooManySubdivisions", "run a.svg --grid 10,1000001",             "cannot use --grid 10,1000001" + kGrid                                         },
    {"AToleranceThatIsNoNumber",   "draw a.xml --tolerance fine",
     "cannot use --tolerance fine" + kNothing + "give it a number of points"                                                                                 },
    {"AToleranceThatIsNotFinite",  "draw a.xml --tolerance nan",
     "cannot use --tolerance nan" + kNothing + "give it a number of points"                                                                                  },
};

class HostOptions : public testing::TestWithParam<OptionsCase> {};

TEST_P(HostOptions, AreRead) { EXPECT_EQ(reading_of(GetParam().arguments), GetParam().reading); }

INSTANTIATE_TEST_SUITE_P(Good, HostOptions, testing::ValuesIn(kGood),
                         [](const auto& row) { return row.param.name; });
INSTANTIATE_TEST_SUITE_P(Bad, HostOptions, testing::ValuesIn(kBad),
                         [](const auto& row) { return row.param.name; });

TEST(HostOptionsOfLaunch, AreWholeCommands)
{
    const auto read = read_options({"run", "a.svg", "-o", "o.svg", "--launch", "vant-sketch --large &"});
    EXPECT_EQ(std::get<Options>(read).launch, "vant-sketch --large &");
}

// --------------------------------------------------------------------------------------------------- help

// What the reading of options knows, of which each place that tells people of them must know as well.
struct KnownOption {
    const char* name;
    const char* value; // a good one, or empty for none
    bool of_run, of_draw;
};

const KnownOption kKnown[] = {
    {"-o",          "o.svg",   true,  true },
    {"--output",    "o.svg",   true,  true },
    {"--trace",     "t",       true,  true },
    {"--timeout",   "1",       true,  true },
    {"--memory",    "1",       true,  true },
    {"--strict",    "",        true,  true },
    {"--art",       "p.svg",   true,  false},
    {"--plugin",    "p.so",    true,  false},
    {"--launch",    "sketch",  true,  false},
    {"--view",      "0,0,1,1", true,  false},
    {"--zoom",      "1",       true,  false},
    {"--center",    "0,0",     true,  false},
    {"--grid",      "1,1",     true,  false},
    {"--no-grid",   "",        true,  false},
    {"--into",      "i.svg",   false, true },
    {"--tolerance", "1",       false, true },
    {"--join",      "",        false, true },
    {"--help",      "",        true,  true },
    {"--version",   "",        true,  true },
};

bool takes(const std::string& command, const KnownOption& option)
{
    return reading_of(command + " a -o o " + option.name + " " + option.value).find("unknown option") ==
           std::string::npos;
}

// Whether a text names an option as a word of its own.
bool names(const std::string& text, const std::string& option)
{
    for (std::size_t at = text.find(option); at != text.npos; at = text.find(option, at + 1)) {
        const char behind = at + option.size() < text.size() ? text[at + option.size()] : ' ';
        const char before = at > 0 ? text[at - 1] : ' ';
        if (behind != '-' && std::isalpha(static_cast<unsigned char>(behind)) == 0 && before != '-')
            return true;
    }
    return false;
}

class KnownOptions : public testing::TestWithParam<KnownOption> {};

TEST_P(KnownOptions, StandInTheHelpOfTheirCommands)
{
    const KnownOption& option = GetParam();
    EXPECT_EQ(takes("run", option), option.of_run);
    EXPECT_EQ(takes("draw", option), option.of_draw);
    EXPECT_EQ(names(help_text("run"), option.name), option.of_run);
    EXPECT_EQ(names(help_text("draw"), option.name), option.of_draw);
}

TEST_P(KnownOptions, StandInTheManual)
{
    std::string manual = support::content_of(VNT_MANUAL);
    std::erase(manual, '\\');                                        // which may stand before any dash
    const std::string name = std::string(GetParam().name).substr(1); // the macro makes the first dash
    EXPECT_TRUE(names(manual, "Fl " + name)) << name;
}

INSTANTIATE_TEST_SUITE_P(, KnownOptions, testing::ValuesIn(kKnown), [](const auto& row) {
    std::string name;
    for (const char c : std::string(row.param.name))
        name += std::isalpha(static_cast<unsigned char>(c)) != 0 ? std::string(1, c) : "_";
    return name;
});

// What only our own processes say to one another.
TEST(HelpOfRun, HasNoOptionOfTheEditorsCommands) { EXPECT_FALSE(names(help_text("run"), "--editor")); }

// The other way round: what the help shows at the beginning of a line is an option.
TEST(HelpText, HasNoOptionThatThereIsNot)
{
    for (const std::string command : {"run", "draw"}) {
        std::istringstream help(help_text(command));
        int options = 0;
        for (std::string line; std::getline(help, line);) {
            for (const std::string& word : words(line.substr(0, 24))) {
                if (word[0] != '-' || !line.starts_with("  -"))
                    continue;
                ++options;
                const std::string name = word.substr(0, word.find(','));
                EXPECT_TRUE(std::any_of(std::begin(kKnown), std::end(kKnown), [&](const KnownOption& known) {
                    return known.name == name;
                })) << name;
            }
        }
        EXPECT_GT(options, 8) << command;
    }
}

TEST(HelpText, FitsATerminal)
{
    for (const std::string command : {"", "run", "draw"}) {
        std::istringstream help(help_text(command));
        for (std::string line; std::getline(help, line);)
            EXPECT_LE(line.size(), 80U) << line;
    }
}

TEST(HelpText, OfAnUnknownCommandIsTheProgramsOwn) { EXPECT_EQ(help_text("walk"), help_text("")); }

} // namespace
