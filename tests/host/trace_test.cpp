#include "host/kit/trace.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <variant>

namespace {

using vnt::host::Problem;
using vnt::host::Trace;

std::unique_ptr<Trace> open_trace(const std::string& file)
{
    auto opened = Trace::open(file);
    if (const auto* problem = std::get_if<Problem>(&opened))
        throw std::runtime_error(problem->sentence);
    return std::move(std::get<0>(opened));
}

std::string problem_of(const std::string& file)
{
    const auto opened = Trace::open(file);
    const auto* const problem = std::get_if<Problem>(&opened);
    return problem == nullptr ? "" : problem->sentence;
}

class TraceFile : public testing::Test {
protected:
    support::TemporaryFolder folder;
};

TEST_F(TraceFile, HasEachLineAsSoonAsItIsWritten)
{
    const std::string file = folder.path("trace.jsonl");
    const auto trace = open_trace(file);
    EXPECT_EQ(support::content_of(file), "");
    trace->write("{\"call\":\"One\"}\n");
    EXPECT_EQ(support::content_of(file), "{\"call\":\"One\"}\n");
    trace->write("{\"call\":\"Two\"}\n");
    EXPECT_EQ(support::content_of(file), "{\"call\":\"One\"}\n{\"call\":\"Two\"}\n");
    EXPECT_EQ(trace->problem(), "");
}

TEST_F(TraceFile, TakesTheBytesAsTheyAre)
{
    const std::string file = folder.path("trace.jsonl");
    const std::string line = std::string("a\0b", 3) + std::string(300000, 'x') + "\n";
    open_trace(file)->write(line);
    EXPECT_EQ(support::content_of(file), line);
}

TEST_F(TraceFile, IsEmptiedFirst)
{
    const std::string file = folder.file("trace.jsonl", "an older trace\n");
    open_trace(file)->write("new\n");
    EXPECT_EQ(support::content_of(file), "new\n");
}

TEST_F(TraceFile, IsNotInheritedByOtherPrograms)
{
    const std::string file = folder.path("trace.jsonl");
    const auto trace = open_trace(file);
    const std::string open_files = folder.path("open");
    ASSERT_EQ(std::system(("ls -l /proc/self/fd >" + open_files).c_str()), 0);
    EXPECT_EQ(support::content_of(open_files).find(file), std::string::npos);
}

TEST_F(TraceFile, SaysOnceThatTheDiskIsFull)
{
    const auto trace = open_trace("/dev/full");
    EXPECT_EQ(trace->problem(), "");
    trace->write("{}\n");
    const std::string problem =
        "cannot go on with the trace /dev/full: No space left on device; its last line may be missing";
    EXPECT_EQ(trace->problem(), problem);
    trace->write("{}\n");
    EXPECT_EQ(trace->problem(), problem);
}

TEST_F(TraceFile, CannotBeAFolder)
{
    EXPECT_EQ(problem_of(folder.path(".")),
              "cannot write the trace " + folder.path(".") +
                  ": Is a directory; name a file that can be written with --trace");
}

TEST_F(TraceFile, CannotBeInAFolderThatThereIsNot)
{
    const std::string file = folder.path("missing/trace.jsonl");
    EXPECT_EQ(problem_of(file),
              "cannot write the trace " + file +
                  ": No such file or directory; name a file that can be written with --trace");
}

TEST_F(TraceFile, CannotBeInAFileOfAnotherKind)
{
    const std::string file = folder.file("file", "content") + "/trace.jsonl";
    EXPECT_EQ(problem_of(file), "cannot write the trace " + file +
                                    ": Not a directory; name a file that can be written with --trace");
}

} // namespace
