// "Start VANT" without an editor around it: the document on standard output, and what is told and kept when that fails.
#include "host/editor/kept_art.h"
#include "tests/host_app/host_program.h"
#include "tests/peer/peer_program.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace {

using namespace host_app_test;

constexpr const char* kInfiniteAnswer = "<vant><shape><line><start x=\"1e999\" y=\"0\" z=\"0\"/><end x=\"1\" "
                                        "y=\"1\" z=\"0\"/></line></shape></vant>\n";

// The names of what is kept or was placed.
using Names = std::vector<std::string>;

class Extension : public testing::Test {
protected:
    Surroundings surroundings(const std::string& document = "", const std::string& path = "/nowhere") const
    {
        Surroundings result;
        for (const char* const folder : {"STATE_HOME", "DATA_HOME", "CONFIG_HOME", "RUNTIME_DIR"})
            result.environment.push_back(std::string("XDG_") + folder + "=" + place.path(folder));
        result.environment.emplace_back("DBUS_SESSION_BUS_ADDRESS=");
        result.environment.push_back("DOCUMENT_PATH=" + document);
        result.environment.push_back("PATH=" + path);
        return result;
    }

    ProgramEnd start(const std::vector<std::string>& arguments = {}) const
    {
        std::vector<std::string> words = {"extension", place.path("small.svg")};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return run_host(words, surroundings());
    }

    Names names_in(const std::string& folder) const
    {
        Names names;
        if (std::filesystem::exists(place.path(folder)))
            for (const auto& entry : std::filesystem::directory_iterator(place.path(folder)))
                names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    Names kept() const
    {
        Names names = names_in("DATA_HOME/vant/sketches");
        names.erase(std::remove(names.begin(), names.end(), "placed"), names.end());
        return names;
    }
    std::string log() const { return place.content("STATE_HOME/vant/vant-host.log"); }

    // Leaves a folder as a process does that was ended when it had drawn; the name under which its art is kept.
    std::string leave_a_stray() const
    {
        peer_test::Program peer({"--answer", place.path("line.xml"), "--timeout", "80"});
        peer.port();
        std::filesystem::create_directories(place.path(kStray));
        EXPECT_EQ(run_host({"run", place.path("small.svg"), "--art", place.path(kStray) + "/art.svg",
                            "--editor", "4711-99"},
                           surroundings(place.path("my drawing.svg")))
                      .status,
                  0);
        const auto art = vnt::host::read_kept_art("it", place.content(std::string(kStray) + "/art.svg"));
        return std::get<vnt::host::KeptArt>(art).id + ".svg";
    }

    static constexpr const char* kStray = "RUNTIME_DIR/vant/sketch-abcdef";
    Workplace place;
};

TEST_F(Extension, PrintsTheDocumentWithTheSketch)
{
    peer_test::Program peer({"--answer", place.path("line.xml"), "--timeout", "80"});
    peer.port();
    EXPECT_EQ(start(), (ProgramEnd{0, kDrawnArtwork, ""}));
    EXPECT_EQ(kept(), Names());
    EXPECT_EQ(names_in("DATA_HOME/vant/sketches/placed").size(), 1U);
}

// An address that would have a bus started is none.
TEST_F(Extension, PrintsTheDocumentWhereThereIsNoBusYet)
{
    peer_test::Program peer({"--answer", place.path("line.xml"), "--timeout", "80"});
    peer.port();
    Surroundings busless = surroundings();
    for (std::string& variable : busless.environment) {
        if (variable == "DBUS_SESSION_BUS_ADDRESS=")
            variable += "autolaunch:";
    }
    EXPECT_EQ(run_host({"extension", place.path("small.svg")}, busless), (ProgramEnd{0, kDrawnArtwork, ""}));
}

TEST_F(Extension, SaysWhatToSetWhereNoFolderOfTheUserIsKnown)
{
    Surroundings homeless;
    for (const char* const name : {"HOME=", "XDG_STATE_HOME=", "XDG_DATA_HOME=", "XDG_RUNTIME_DIR="})
        homeless.environment.emplace_back(name);
    const char* const said =
        "Nothing was done: cannot find the user's folders: neither HOME nor XDG_STATE_HOME "
        "names a folder from / on; set HOME to the home folder\n";
    for (const char* const command : {"extension", "place"})
        EXPECT_EQ(run_host({command, place.path("small.svg")}, homeless), (ProgramEnd{1, "", said}))
            << command;
}

// A dialog would hang it.
TEST_F(Extension, SaysNothingOfThatInABatchRun)
{
    const std::string command = "cd '" + place.path("") +
                                "'; export HOME= XDG_STATE_HOME= XDG_DATA_HOME= XDG_RUNTIME_DIR=;"
                                " { until [ -e ready ]; do :; done; " VNT_HOST_PROGRAM
                                " extension small.svg 2>errors; echo $? >status; } |"
                                " sh -c '>ready; cat; :' editor --batch-process";
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(place.content("status"), "1\n");
    EXPECT_EQ(place.content("errors"), "");
}

TEST_F(Extension, SaysWhichFolderOfTheUserCannotBeMade)
{
    place.file("STATE_HOME", "in the way");
    const std::string said = "Nothing was done: cannot make the folder " + place.path("STATE_HOME") +
                             "/vant (at " + place.path("STATE_HOME") +
                             "): File exists; make it by hand, or free the place\n";
    EXPECT_EQ(start(), (ProgramEnd{1, "", said}));
}

TEST_F(Extension, EndsWhenItsTimeIsUp)
{
    peer_test::Program peer({"--fault", "stall", "--answer", place.path("line.xml"), "--timeout", "80"});
    peer.port();
    EXPECT_EQ(
        start({"--timeout", "0.3"}),
        (ProgramEnd{4, "",
                    "the time of --timeout is up; the drawing is as it was; give it more time, or leave "
                    "--timeout out\n"}));
}

struct TurnedCase {
    const char* name;
    const char* rotation; // of the document's sheet
    const char* told;
};
const TurnedCase kTurned[] = {
    {"BySomeDegrees",    "15",    "--sheet-rotation 15\n"   },
    {"AgainstTheClock",  "-0.25", "--sheet-rotation -0.25\n"},
    {"ByNothing",        "0",     "\n"                      },
    {"ByWhatIsNoNumber", "left",  "\n"                      },
};

TEST_F(Extension, TellsTheSketchApplicationThatItStartsHowTheSheetIsTurned)
{
    const std::string application =
        place.file("vant-sketch", "#!/bin/sh\necho \"$@\" >'" + place.path("told") +
                                      "'\nexec " VNT_PEER_PROGRAM " --timeout 80 --answer '" +
                                      place.path("line.xml") + "'\n");
    std::filesystem::permissions(application, std::filesystem::perms::owner_all);
    const Surroundings with_it = surroundings("", place.path("") + ":/bin:/usr/bin");
    for (const TurnedCase& row : kTurned) {
        SCOPED_TRACE(row.name);
        const std::string artwork =
            place.file("turned.svg",
                       std::string(R"(<svg xmlns="http://www.w3.org/2000/svg" width="200" height="100" )"
                                   R"(xmlns:inkscape="http://www.inkscape.org/namespaces/inkscape" )"
                                   R"(xmlns:sodipodi="http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd">)"
                                   R"(<sodipodi:namedview inkscape:rotation=")") +
                           row.rotation + "\"/></svg>\n");
        EXPECT_EQ(run_host({"extension", artwork}, with_it).status, 0);
        EXPECT_EQ(place.content("told"), row.told);
    }
}

// A sketch application shares standard error with the program that has started it, and may have the last word there.
TEST_F(Extension, TellsItsOwnReasonAndLogsWhatTheSketchApplicationSays)
{
    const std::string chatty =
        place.file("chatty", "echo 'one: of mine' >&2\necho 'vant-sketch: bye' >&2\nexit 3\n");
    const ProgramEnd end = start({"--launch", "/bin/sh " + chatty});
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.errors,
              "cannot launch the sketch application: the command \"/bin/sh " + chatty +
                  "\" ended with status 3, and nothing listens on 127.0.0.1:4910; the drawing is as "
                  "it was; try the command in a terminal\n");
    EXPECT_NE(log().find("one: of mine"), std::string::npos) << log();
    EXPECT_NE(log().find("vant-sketch: bye"), std::string::npos) << log();
}

TEST_F(Extension, TellsOfASketchThatCannotBeKept)
{
    peer_test::Program peer({"--answer", place.file("inf.xml", kInfiniteAnswer), "--timeout", "80"});
    peer.port();
    const ProgramEnd end = place.run({"run", "DIR/small.svg", "--art", "DIR/art.svg"});
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(
        end.errors,
        "vant-host: note: path 0 has a coordinate that is not a finite number and is left out\n"
        "vant-host: nothing of what was drawn can be placed; DIR/art.svg was not made; the notes above say "
        "why; draw it again\n");
    EXPECT_FALSE(place.has("art.svg"));
}

// ------------------------------------------------------------------------- what an ended process leaves behind

TEST_F(Extension, KeepsTheArtOfAProcessThatWasEndedBeforeItCould)
{
    const timespec written[] = {
        {0,  UTIME_OMIT},
        {12, 345       }
    };
    const std::string drawing = place.file("my drawing.svg", kSmallArtwork);
    ASSERT_EQ(utimensat(AT_FDCWD, drawing.c_str(), written, 0), 0);
    const std::string name = leave_a_stray();
    std::filesystem::create_directories(place.path("RUNTIME_DIR/vant/sketch-empty1"));
    place.file("RUNTIME_DIR/vant/sketchbook", "of somebody else");
    EXPECT_EQ(start().status, 3); // no sketch application
    ASSERT_EQ(kept(), Names{name});
    const auto art = vnt::host::read_kept_art("it", place.content("DATA_HOME/vant/sketches/" + name));
    ASSERT_TRUE(std::holds_alternative<vnt::host::KeptArt>(art));
    const vnt::host::DocumentMark& mark = std::get<vnt::host::KeptArt>(art).document;
    EXPECT_EQ(mark.path, drawing);
    EXPECT_EQ(mark.editor, "4711-99");
    EXPECT_EQ(mark.file_time, 12'000'000'345);
    EXPECT_EQ(names_in("RUNTIME_DIR/vant"), (Names{"sketch.lock", "sketchbook"}));
}

TEST_F(Extension, KeepsNothingTwice)
{
    for (const char* const there : {"DATA_HOME/vant/sketches/", "DATA_HOME/vant/sketches/placed/"}) {
        const std::string name = leave_a_stray();
        std::filesystem::create_directories(place.path(there));
        const std::string before = place.file(there + name, "as it was");
        EXPECT_EQ(start().status, 3);
        EXPECT_EQ(support::content_of(before), "as it was");
        EXPECT_EQ(names_in("RUNTIME_DIR/vant"), Names{"sketch.lock"});
        std::filesystem::remove(before);
        EXPECT_EQ(kept(), Names());
    }
}

TEST_F(Extension, LeavesTheSketchOfAKilledProcessToThePlugInThatStillWaits)
{
    peer_test::Program peer({"--fault", "stall", "--answer", place.path("line.xml"), "--save-request",
                             place.path("request.xml"), "--timeout", "80"});
    peer.port();
    std::string command = "exec 2>/dev/null; cd /;";
    for (const std::string& variable : surroundings().environment)
        command += " export '" + variable + "';";
    command += " " VNT_HOST_PROGRAM " extension '" + place.path("small.svg") +
               "' & process=$!; until [ -s '" + place.path("request.xml") +
               "' ]; do :; done; kill -9 $process";
    EXPECT_EQ(std::system(command.c_str()), 0);
    const ProgramEnd second = start();
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.errors.substr(0, 42), "A sketch is going on in VANT already. Fini");
    EXPECT_EQ(names_in("RUNTIME_DIR/vant").size(), 2U); // the lock and the folder of the first
}

TEST_F(Extension, LeavesAFolderAloneThatIsNoneOfASketch)
{
    std::filesystem::create_directories(place.path("mine/sub"));
    place.file("mine/sub/file", "mine");
    EXPECT_EQ(run_host({"agent", place.path("mine")}, surroundings()).status, 1);
    EXPECT_EQ(place.content("mine/sub/file"), "mine");
}

} // namespace
