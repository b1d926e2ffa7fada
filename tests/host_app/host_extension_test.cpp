// "Start VANT" without an editor around it: the document on standard output, and what is told and kept when that fails.
#include "tests/host_app/host_program.h"
#include "tests/peer/peer_program.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace host_app_test;

class Extension : public testing::Test {
protected:
    ProgramEnd start(const std::vector<std::string>& arguments = {}) const
    {
        std::vector<std::string> words = {"extension", place.path("small.svg")};
        words.insert(words.end(), arguments.begin(), arguments.end());
        Surroundings surroundings;
        for (const char* const folder : {"STATE_HOME", "DATA_HOME", "CONFIG_HOME", "RUNTIME_DIR"})
            surroundings.environment.push_back(std::string("XDG_") + folder + "=" + place.path(folder));
        for (const char* const unset : {"DBUS_SESSION_BUS_ADDRESS=", "DOCUMENT_PATH=", "PATH=/usr/bin:/bin"})
            surroundings.environment.emplace_back(unset);
        return run_host(words, surroundings);
    }

    std::size_t kept() const
    {
        const std::filesystem::path folder = place.path("DATA_HOME/vant/sketches");
        std::size_t count = 0;
        if (std::filesystem::exists(folder))
            for (const auto& entry : std::filesystem::directory_iterator(folder))
                count += entry.path().extension() == ".svg" ? 1U : 0U;
        return count;
    }
    std::string log() const { return support::content_of(place.path("STATE_HOME/vant/vant-host.log")); }

    Workplace place;
};

TEST_F(Extension, PrintsTheDocumentWithTheSketch)
{
    peer_test::Program peer({"--answer", place.path("line.xml"), "--timeout", "80"});
    peer.port();
    EXPECT_EQ(start(), (ProgramEnd{0, kDrawnArtwork, ""}));
    EXPECT_EQ(kept(), 0U);
}

TEST_F(Extension, EndsWhenItsTimeIsUp)
{
    peer_test::Program peer({"--fault", "stall", "--answer", place.path("line.xml"), "--timeout", "80"});
    peer.port();
    const ProgramEnd end = start({"--timeout", "0.3"});
    EXPECT_EQ(end.status, 4);
    EXPECT_EQ(end.output, "");
    EXPECT_NE(end.errors.find("time"), std::string::npos) << end.errors;
    EXPECT_NE(end.errors.find("the drawing is as it was"), std::string::npos) << end.errors;
}

// A sketch application shares standard error with the program that has started it, and may have the last word there.
TEST_F(Extension, TellsItsOwnReasonAndLogsWhatTheSketchApplicationSays)
{
    const std::string chatty =
        place.file("chatty", "echo 'one: of mine' >&2\necho 'vant-sketch: bye' >&2\nexit 3\n");
    const ProgramEnd end = start({"--launch", "sh " + chatty});
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.errors.find("vant-sketch: bye"), std::string::npos) << end.errors;
    EXPECT_NE(end.errors.find("the drawing is as it was"), std::string::npos) << end.errors;
    EXPECT_NE(log().find("one: of mine"), std::string::npos) << log();
    EXPECT_NE(log().find("vant-sketch: bye"), std::string::npos) << log();
}

TEST_F(Extension, KeepsTheArtOfAProcessThatWasEndedBeforeItCould)
{
    {
        peer_test::Program peer({"--answer", place.path("line.xml"), "--timeout", "80"});
        peer.port();
        ASSERT_EQ(place.run({"run", "DIR/small.svg", "--art", "DIR/art.svg"}).status, 0);
    }
    for (const char* const stray : {"RUNTIME_DIR/vant/sketch-abcdef", "RUNTIME_DIR/vant/sketch-empty1"})
        std::filesystem::create_directories(place.path(stray));
    std::filesystem::rename(place.path("art.svg"), place.path("RUNTIME_DIR/vant/sketch-abcdef/art.svg"));
    EXPECT_EQ(start().status, 3); // no sketch application
    EXPECT_EQ(kept(), 1U);
    EXPECT_FALSE(std::filesystem::exists(place.path("RUNTIME_DIR/vant/sketch-abcdef")));
    EXPECT_FALSE(std::filesystem::exists(place.path("RUNTIME_DIR/vant/sketch-empty1")));
}

} // namespace
