#include "host/editor/log_file.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <ctime>
#include <regex>
#include <sstream>

namespace {

using namespace vnt::host;
using support::content_of;
using support::TemporaryFolder;
using Names = std::set<std::string>;

const std::string kBegin = R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} [+-]\d{4} \[\d+\] )";
const std::size_t kBeginSize =
    std::string("2026-11-03 14:05:09.123 +0100 [] ").size() + std::to_string(getpid()).size();

// The file's content with what every entry begins with, and where the time and the process are right, as "> ".
std::string entries_of(const std::string& path)
{
    return std::regex_replace(content_of(path), std::regex(kBegin), "> ");
}

TEST(Log, HasALineWithTheTimeAndTheProcess)
{
    const TemporaryFolder folder;
    const LogFile log(folder.path("log"));
    ASSERT_EQ(setenv("TZ", "HERE-5:30", 1), 0);
    tzset();
    const std::time_t before = std::time(nullptr);
    log.add("the sketch began");
    const std::time_t after = std::time(nullptr);
    unsetenv("TZ");
    tzset();
    const std::string line = content_of(log.path());
    tm read{};
    char* const rest = strptime(line.c_str(), "%Y-%m-%d %H:%M:%S", &read);
    ASSERT_NE(rest, nullptr) << line;
    const std::time_t time = timegm(&read) - (5 * 60 + 30) * 60;
    EXPECT_GE(time, before);
    EXPECT_LE(time, after);
    EXPECT_TRUE(std::regex_match(
        rest, std::regex(R"(\.\d{3} \+0530 \[)" + std::to_string(getpid()) + R"(\] the sketch began\n)")))
        << line;
}

struct EntryCase {
    const char* name;
    std::string text;
    std::string entry;
};
// clang-format off
const EntryCase kEntries[] = {
    {"IsOneLine",                       "text",             "> text\n"},
    {"MayBeEmpty",                      "",                 "> \n"},
    {"EndsInOneLineFeed",               "text\n\n",         "> text\n"},
    {"HasItsFurtherLinesIndented",      "a\nb\n\nc",        "> a\n    b\n    \n    c\n"},
    {"CannotLookLikeAnother",           "a\n2026-11-03 14:05:09.123 +0100 [1] b", "> a\n    > b\n"},
    {"HasNoControlCharacters",          "a\x1B[2J\rb\x7F",  "> a\\x1B[2J\\x0Db\\x7F\n"},
    {"KeepsTabsAndLettersBeyondAscii",  "a\tb\xC3\xA9",     "> a\tb\xC3\xA9\n"},
};
// clang-format on
class LogEntry : public testing::TestWithParam<EntryCase> {};
TEST_P(LogEntry, IsWritten)
{
    const TemporaryFolder folder;
    const LogFile log(folder.path("log"));
    log.add("before");
    log.add(GetParam().text);
    EXPECT_EQ(entries_of(log.path()), "> before\n" + GetParam().entry);
}
INSTANTIATE_TEST_SUITE_P(, LogEntry, testing::ValuesIn(kEntries),
                         [](const auto& row) { return row.param.name; });

TEST(Log, IsForThisUserAlone)
{
    const TemporaryFolder folder;
    const LogFile log(folder.path("log"));
    log.add("text");
    struct stat there {};
    ASSERT_EQ(stat(log.path().c_str(), &there), 0);
    EXPECT_EQ(there.st_mode & 07777U, 0600U);
}

TEST(Log, BeginsAnewWhenAnEntryWouldNotFit)
{
    const TemporaryFolder folder;
    const std::uint64_t room = 2 * (kBeginSize + 2); // of two entries of one letter
    const LogFile log(folder.path("log"), room);
    log.add("1");
    log.add("2");
    EXPECT_EQ(folder.names(), Names{"log"});
    log.add("3");
    EXPECT_EQ(entries_of(log.path()), "> 3\n");
    EXPECT_EQ(entries_of(log.path() + ".1"), "> 1\n> 2\n");
    log.add("4");
    log.add("5");
    EXPECT_EQ(entries_of(log.path()), "> 5\n");
    EXPECT_EQ(entries_of(log.path() + ".1"), "> 3\n> 4\n");
    EXPECT_EQ(folder.names(), (Names{"log", "log.1"}));
}

TEST(Log, TakesAnEntryThatIsLongerThanAll)
{
    const TemporaryFolder folder;
    const LogFile log(folder.path("log"), 10);
    log.add("a long entry");
    EXPECT_EQ(folder.names(), Names{"log"});
    log.add("another long entry");
    EXPECT_EQ(entries_of(log.path()), "> another long entry\n");
    EXPECT_EQ(entries_of(log.path() + ".1"), "> a long entry\n");
}

TEST(Log, LosesAndTearsNothingOfSeveralWriters)
{
    constexpr int kWriters = 4;
    constexpr int kEach = 1000;
    const TemporaryFolder folder;
    const std::string path = folder.path("log");
    const std::size_t entry = kBeginSize + 1 + 1 + 4 + 1 + 40 + 1; // about; a process's number may be longer
    // It begins anew once: the second file has room for the rest.
    const LogFile log(path, kWriters * kEach * entry * 2 / 3);
    std::vector<pid_t> writers;
    for (int writer = 0; writer < kWriters; ++writer) {
        writers.push_back(fork());
        if (writers.back() != 0)
            continue;
        for (int i = 0; i < kEach; ++i)
            log.add(std::to_string(writer) + " " + std::to_string(1000 + i) + " " + std::string(40, 'x'));
        _exit(0);
    }
    for (const pid_t writer : writers)
        waitpid(writer, nullptr, 0);

    ASSERT_EQ(folder.names(), (Names{"log", "log.1"}));
    std::set<std::string> seen;
    const std::regex form(kBegin + R"((\d \d{4}) x{40})");
    for (const std::string& file : {path, path + ".1"}) {
        std::istringstream lines(content_of(file));
        for (std::string line; std::getline(lines, line);) {
            std::smatch parts;
            ASSERT_TRUE(std::regex_match(line, parts, form)) << line;
            EXPECT_TRUE(seen.insert(parts[1]).second) << line;
        }
    }
    EXPECT_EQ(seen.size(), std::size_t{kWriters} * kEach);
}

TEST(Log, GrowsRatherThanWaitsForAnotherThatMovesIt)
{
    const TemporaryFolder folder;
    const LogFile log(folder.path("log"), kBeginSize + 2);
    log.add("1");
    const int other = open(log.path().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(other, LOCK_EX | LOCK_NB), 0);
    log.add("2");
    close(other);
    EXPECT_EQ(entries_of(log.path()), "> 1\n> 2\n");
    EXPECT_EQ(folder.names(), Names{"log"});
}

TEST(Log, IsDoneWithoutWhereItCannotBe)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("folder"));
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    for (const char* name : {"none/log", "folder", "pipe"}) {
        const LogFile log(folder.path(name));
        log.add("text");
        EXPECT_EQ(log.open(), -1) << name;
    }
    EXPECT_EQ(folder.names(), (Names{"folder", "pipe"}));
}

TEST(Log, GrowsWhereTheOldOneCannotBeMoved)
{
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder.path("log.1/in the way"));
    const LogFile log(folder.path("log"), kBeginSize + 2);
    log.add("1");
    log.add("2");
    EXPECT_EQ(entries_of(log.path()), "> 1\n> 2\n");
}

TEST(Log, TakesWhatAProgramSaysOnADescriptor)
{
    const TemporaryFolder folder;
    const LogFile log(folder.path("log"));
    const int error = log.open();
    ASSERT_GE(error, 0);
    EXPECT_EQ(fcntl(error, F_GETFD), FD_CLOEXEC);
    log.add("1");
    ASSERT_EQ(write(error, "said\n", 5), 5);
    log.add("2");
    close(error);
    EXPECT_EQ(entries_of(log.path()), "> 1\nsaid\n> 2\n");
}

} // namespace
