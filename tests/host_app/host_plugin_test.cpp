// vant-host run with plug-ins that err. None of them connects to anything.
#include "tests/host_app/host_program.h"
#include "tests/support/sanitized.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using host_app_test::ProgramEnd;
using host_app_test::Workplace;
using Arguments = std::vector<std::string>;

const std::string kNothingDrawn = "DIR/out.svg: nothing was drawn; an unchanged copy of DIR/small.svg\n";

std::string plugin_erred(const std::string& what)
{
    return "vant-host: the plug-in erred: " + what +
           "; DIR/out.svg was not made; report it to the makers of the plug-in, or go on without --strict\n";
}

std::string let_out(const std::string& what)
{
    return "vant-host: the plug-in failed at the message AI Menu / AI Go: it let an exception out (" + what +
           "); DIR/out.svg was not made; report it to the plug-in's makers\n";
}

const std::string kCrashed =
    "vant-host: the plug-in crashed; DIR/out.svg was not made; report it to the plug-in's makers\n";

struct ErrantCase {
    const char* name;
    const char* deed;
    Arguments arguments;
    int status;
    std::string output;
    std::string errors;
    bool is_for_sanitizers = true; // whether a sanitized build does the same
};

const ErrantCase kErrant[] = {
  // With --strict the first wrong call ends the run.
    {"ANullHandleIsWrong",
     "ask about a null view",               {"--strict"},
     1,                                                                                                   "",
     plugin_erred("IsShown is about a view that there is not")                                                                                                                                      },
    {"AnUnknownSuiteIsWrong",
     "ask for an unknown suite",            {"--strict"},
     1,                                                                                                   "",
     plugin_erred("AcquireSuite asks for a suite, or a version of one, that this host does not have")                                                                                               },
    {"AMenuItemAtTheWrongTimeIsWrong",
     "add a menu item late",                {"--strict"},
     1,                                                                                                   "",
     plugin_erred("AddMenuItem came in another message than SP Interface / Startup")                                                                                                                },
    {"ASegmentNumberPastTheEndIsWrong",
     "skip a segment",                      {"--strict"},
     1,                                                                                                   "",
     plugin_erred("SetPathSegments has a segment number that is not on the path, nor one past its end")                                                                                             },
    {"AnAlertThatWasRunIsWrong",
     "run an alert twice",                  {"--strict"},
     1,                                                                                                   "",
     "vant-host: note: the plug-in shows an alert: Ink: None left\n" +
         plugin_erred("Alert is about an alert that there is not, or that was run already")                                                                                                         },
    {"AnotherThreadIsWrong",
     "call on another thread",              {"--strict"},
     1,                                                                                                   "",
     plugin_erred("IsShown came outside of a message to the plug-in")                                                                                                                               },
    {"TheHostsOwnErrorIsTheHosts",
     "make endless art",                    {"--strict", "--memory", "30"},
     1,                                                                                                   "",
     "vant-host: the host erred: SetPathSegments did not get the memory that it needs; DIR/out.svg was not "
     "made; "
     "report it to the makers of vant-host, or go on without --strict\n",                                                                                                                             false},
    {"NothingWrongIsNothingWrong",                                 "do nothing",        {"--strict"},                  0,   kNothingDrawn,          ""                                                         },

 // Without it a wrong call is answered with its code, and the run goes on.
    {"ANullHandleIsAnswered",                                 "ask about a null view",             {},            0,  kNothingDrawn,               ""      },
    {"AMenuItemAtTheWrongTimeIsAnswered",                                 "add a menu item late", {}, 0,   kNothingDrawn,                           ""                                                                    },
    {"ASkippedSegmentCutsThePathShort",
     "skip a segment",   {},
     0,                                                                              "DIR/out.svg: 1 new path\n",
     "vant-host: note: path 0 is cut short at 2 segments: the plug-in's segment numbers go no further\n"                                                                                    },
    {"AnAlertIsShownOnce",
     "run an alert twice",                {},
     3,                                                             "",
     "vant-host: note: the plug-in shows an alert: Ink: None left\nvant-host: the plug-in ended with an "
     "alert "
     "(Ink: None left); DIR/out.svg was not made; LISTENING\n"                                                                                                                              },
    {"AnotherThreadIsAnswered",                                 "call on another thread",           {},         0, kNothingDrawn,                 ""},
    {"AHostWithoutMemoryDrawsNothing",
     "make endless art",    {"--memory", "30"},
     1,                                                           "",
     "vant-host: not enough memory for SetPathSegments; DIR/out.svg was not made; try a smaller figure, or "
     "allow more with --memory\n",                                                                                                                                 false},

 // What ends the run in any case.
    {"AnExceptionThatComesOutEndsTheRun",                            "throw an exception",                              {},                                                  1,       "", let_out("no ink")},
    {"ASuiteThatAPlugInCannotDoWithoutEndsTheRun",
     "ask for an unknown suite",                  {},
     1,                                                                          "",
     let_out("no AI Mood Suite")                                                                                                                                                                                              },
    {"ANumberThatComesOutEndsTheRun",       "throw a number",         {},                                 1,               "",                              let_out("of another kind")},
    {"ACrashIsTold",       "crash",         {},                                                  1,                                         "",                           kCrashed,                                                                                                                                                                           false},
    {"AnAbortIsTold",                         "abort",                      {},                                                                            1,                                                                  "",                                  kCrashed,false},
    {"AStackOverflowIsTold",                               "fall endlessly",                         {},                                                                          1,             "",kCrashed,                                                                                                  false},
    {"AMenuItemThatIsMissingEndsTheRun",
     "add no menu item",                                {},
     1,"",
     "vant-host: the plug-in has not added its menu item \"Start VANT\"; DIR/out.svg was not made; see with "
     "--trace "
     "what it tried\n"},
};

class ErrantPlugIns : public testing::TestWithParam<ErrantCase> {
protected:
    Workplace place;
};

TEST_P(ErrantPlugIns, AreToldOf)
{
    if (support::kSanitized && !GetParam().is_for_sanitizers)
        GTEST_SKIP() << "a sanitizer tells of it itself";
    Arguments arguments = {"--plugin", VNT_ERRANT_PLUGIN};
    arguments.insert(arguments.end(), GetParam().arguments.begin(), GetParam().arguments.end());
    ProgramEnd end = place.run_small(arguments, {true,
                                                 host_app_test::Stream::piped,
                                                 host_app_test::Stream::piped,
                                                 {std::string("ERRANT_DEED=") + GetParam().deed}});
    // What to do about an alert depends on whether somebody else listens on the port just now.
    end.errors = host_app_test::replaced(
        end.errors,
        "nothing listens on 127.0.0.1:4910: start the sketch application first, or name it with --launch",
        "LISTENING");
    end.errors = host_app_test::replaced(
        end.errors, "look at what the sketch application says, and try again", "LISTENING");
    EXPECT_EQ(end, (ProgramEnd{GetParam().status, GetParam().output, GetParam().errors}));
    EXPECT_EQ(place.has("out.svg"), GetParam().status == 0);
}

INSTANTIATE_TEST_SUITE_P(, ErrantPlugIns, testing::ValuesIn(kErrant),
                         [](const auto& row) { return row.param.name; });

// ------------------------------------------------------------------------------------------ what cannot be loaded

struct UnloadableCase {
    const char* name;
    const char* plugin;
    std::string start; // of what is said, as far as it is ours and not the system's
    std::string end;
};

const std::string kNameOne = "; DIR/out.svg was not made; name a plug-in for this machine with --plugin\n";

const UnloadableCase kUnloadable[] = {
    {"AFileThatThereIsNot",              "DIR/missing.so",
     "vant-host: cannot load the plug-in DIR/missing.so: ",                                                          kNameOne                },
    {"AFileThatIsNoLibrary",             "DIR/small.svg",      "vant-host: cannot load the plug-in DIR/small.svg: ", kNameOne                },
    {"ALibraryWithoutTheEntry",          VNT_ENTRYLESS_PLUGIN,
     "vant-host: cannot use the plug-in " VNT_ENTRYLESS_PLUGIN,
     ": it has no PluginMain; DIR/out.svg was not made; name a plug-in with --plugin\n"                                                      },
    {"APlugInThatWantsAnUnknownService", VNT_WISHFUL_PLUGIN,
     "vant-host: cannot load the plug-in " VNT_WISHFUL_PLUGIN ": ",                                                  "PlayFanfare" + kNameOne},
};

class UnloadablePlugIns : public testing::TestWithParam<UnloadableCase> {
protected:
    Workplace place;
};

TEST_P(UnloadablePlugIns, AreRefused)
{
    const ProgramEnd end = place.run_small({"--plugin", GetParam().plugin});
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.output, "");
    EXPECT_TRUE(end.errors.starts_with(GetParam().start)) << end.errors;
    EXPECT_TRUE(end.errors.ends_with(GetParam().end)) << end.errors;
    EXPECT_FALSE(place.has("out.svg"));
}

INSTANTIATE_TEST_SUITE_P(, UnloadablePlugIns, testing::ValuesIn(kUnloadable),
                         [](const auto& row) { return row.param.name; });

} // namespace
