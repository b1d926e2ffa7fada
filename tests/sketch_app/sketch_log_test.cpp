#include "sketch/app/log_file.h"

#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>

namespace {

QString own(const std::string& path) { return QString::fromStdString(path); }

TEST(SketchLog, WritesALineForEachEntryWithTimeAndProcess)
{
    const support::TemporaryFolder folder;
    const LogFile log(own(folder.path("new/folder/log")));
    log.add("the first\nwith a line break");
    log.add("Ürsula");
    const std::string time = R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}(Z|[+-]\d\d:\d\d) \[\d+\] )";
    EXPECT_TRUE(std::regex_match(support::content_of(folder.path("new/folder/log")),
                                 std::regex(time + "the first with a line break\n" + time + "Ürsula\n")));
}

TEST(SketchLog, BeginsANewFileWhenItIsLong)
{
    const support::TemporaryFolder folder;
    const LogFile log(own(folder.path("log")), 100);
    log.add("one entry of some length, and then some more of it");
    log.add("two");
    log.add("three");
    EXPECT_EQ(folder.names(), (std::set<std::string>{"log", "log.1"}));
    EXPECT_NE(support::content_of(folder.path("log.1")).find("one entry"), std::string::npos);
    EXPECT_NE(support::content_of(folder.path("log")).find("three"), std::string::npos);
}

TEST(SketchLog, IsDoneWithoutWhereItCannotBeWritten)
{
    const support::TemporaryFolder folder;
    folder.file("blocked", "a file");
    LogFile(own(folder.path("blocked/log"))).add("nothing");
    EXPECT_EQ(support::content_of(folder.path("blocked")), "a file");
}

} // namespace
