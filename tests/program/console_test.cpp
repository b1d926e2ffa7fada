#include "tools/program/console.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>
#include <string>

namespace {

using namespace vnt::program;

// As long as it lives, what goes to a stream is kept here, or is lost where there is no room.
class Diverted {
public:
    enum class Room { all, none };

    explicit Diverted(std::ostream& stream, Room room = Room::all)
        : stream_(stream), before_(stream.rdbuf(room == Room::all ? kept_.rdbuf() : nullptr))
    {
    }
    Diverted(const Diverted&) = delete;
    Diverted& operator=(const Diverted&) = delete;
    ~Diverted()
    {
        stream_.rdbuf(before_);
        stream_.clear();
    }

    std::string text() const { return kept_.str(); }

private:
    std::ostream& stream_;
    std::ostringstream kept_;
    std::streambuf* before_;
};

const Console kConsole("vant-test");

TEST(ProgramConsole, PrintsTheTextAloneOnStandardOutput)
{
    const Diverted output(std::cout);
    const Diverted errors(std::cerr);
    EXPECT_EQ(kConsole.print("two\nlines\n"), kDone);
    EXPECT_EQ(output.text(), "two\nlines\n");
    EXPECT_EQ(errors.text(), "");
}

// Who waits for the line reads it while the program goes on.
TEST(ProgramConsole, PrintsAtOnce)
{
    struct : std::stringbuf {
        int sync() override
        {
            handed_on = str();
            return 0;
        }
        std::string handed_on;
    } buffer;
    std::streambuf* const before = std::cout.rdbuf(&buffer);
    kConsole.print("ready\n");
    std::cout.rdbuf(before);
    EXPECT_EQ(buffer.handed_on, "ready\n");
}

TEST(ProgramConsole, TellsThatItCannotPrint)
{
    const Diverted output(std::cout, Diverted::Room::none);
    const Diverted errors(std::cerr);
    EXPECT_EQ(kConsole.print("text"), kFailed);
    EXPECT_EQ(errors.text(), "vant-test: cannot write to standard output; nothing was done; let it lead "
                             "somewhere\n");
}

TEST(ProgramConsole, ReportsAProblemInALineAndReturnsItsStatus)
{
    const Diverted output(std::cout);
    const Diverted errors(std::cerr);
    EXPECT_EQ(kConsole.report({kTimeUp, "too late"}), kTimeUp);
    EXPECT_EQ(kConsole.report({kAlert, "it said so"}), kAlert);
    EXPECT_EQ(errors.text(), "vant-test: too late\nvant-test: it said so\n");
    EXPECT_EQ(output.text(), "");
}

TEST(ProgramConsole, NotesWhatIsNoProblem)
{
    const Diverted errors(std::cerr);
    kConsole.note("it is late");
    EXPECT_EQ(errors.text(), "vant-test: note: it is late\n");
}

// Scripts compare with the numbers.
TEST(ProgramExit, StatusesAreTheNumbersThatAreDocumented)
{
    EXPECT_EQ(kDone, 0);
    EXPECT_EQ(kFailed, 1);
    EXPECT_EQ(kWrongUsage, 2);
    EXPECT_EQ(kAlert, 3);
    EXPECT_EQ(kTimeUp, 4);
}

} // namespace
