#include "host/editor/editor_process.h"
#include "tests/editor/shell_process.h"

#include <gtest/gtest.h>

#include <sys/prctl.h>

namespace {

using namespace vnt::host;
using editor_test::Pipe;
using editor_test::ShellProcess;
using namespace std::string_literals;

// A process that reads what is written to the pipe, and says so when it is up.
class Reader {
public:
    explicit Reader(Pipe& pipe, std::vector<std::string> words = {"editor"},
                    const std::string& script = "echo up; read line")
        : process_(script, pipe.reading.get(), up_.writing.get(), std::move(words))
    {
        up_.writing.reset(-1);
        if (up_.line() != "up")
            throw std::runtime_error("the reader did not start");
    }

    ShellProcess& process() { return process_; }
    pid_t pid() const { return process_.pid(); }

private:
    Pipe up_;
    ShellProcess process_;
};

pid_t found(int descriptor)
{
    const auto editor = find_editor(descriptor);
    return editor ? editor->pid : 0;
}

TEST(EditorProcess, IsTheOneThatReadsThePipe)
{
    Pipe pipe;
    const Reader reader(pipe, {"editor", "in file.svg"});
    const auto editor = find_editor(pipe.writing.get());
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->pid, reader.pid());
    EXPECT_EQ(editor->command, "/bin/sh -c echo up; read line editor in file.svg");
    EXPECT_FALSE(editor->is_batch);
    EXPECT_TRUE(is_running(*editor));
}

TEST(EditorProcess, WorksInABatchWhenItsCommandLineSaysSo)
{
    Pipe pipe;
    const Reader reader(pipe, {"editor", "--batch-process", "in.svg"});
    const auto editor = find_editor(pipe.writing.get());
    ASSERT_TRUE(editor);
    EXPECT_TRUE(editor->is_batch);
}

TEST(EditorProcess, IsNotAnotherThatWritesToThePipe)
{
    Pipe pipe;
    Pipe idle;
    const ShellProcess writer("read line", idle.reading.get(), pipe.writing.get());
    const Reader reader(pipe);
    EXPECT_EQ(found(pipe.writing.get()), reader.pid());
}

TEST(EditorProcess, IsNotAnotherThatReadsAnotherPipe)
{
    Pipe one;
    Pipe other;
    const Reader first(one);
    const Reader second(other);
    EXPECT_EQ(found(one.writing.get()), first.pid());
    EXPECT_EQ(found(other.writing.get()), second.pid());
}

TEST(EditorProcess, IsNotAChildThatHasItsDescriptors)
{
    Pipe pipe;
    const Reader reader(pipe, {"editor"}, "(echo up; read line); read line");
    EXPECT_EQ(found(pipe.writing.get()), reader.pid());
}

TEST(EditorProcess, IsNotALaterProcessThatHasItsDescriptors)
{
    Pipe pipe;
    const Reader reader(pipe);
    const auto started = look_at_process(reader.pid());
    ASSERT_TRUE(started);
    for (;;) {
        const Reader later(pipe);
        EXPECT_EQ(found(pipe.writing.get()), reader.pid());
        if (look_at_process(later.pid())->start_time > started->start_time)
            break; // else it was in the same tick
    }
}

TEST(EditorProcess, IsFoundByTheDescriptorThatAnyNumberHas)
{
    Pipe pipe;
    const Reader reader(pipe);
    const support::Descriptor copy(fcntl(pipe.writing.get(), F_DUPFD_CLOEXEC, 100));
    pipe.writing.reset(-1);
    EXPECT_EQ(found(copy.get()), reader.pid());
}

// It is not where it is looked for first then.
TEST(EditorProcess, MayBeInAnotherProcessGroup)
{
    Pipe pipe;
    const Reader reader(pipe);
    ASSERT_EQ(getpgid(reader.pid()), getpgrp());
    EXPECT_EQ(found(pipe.writing.get()), reader.pid());
    Pipe other;
    const ShellProcess away("read line", other.reading.get(), other.writing.get(), {"editor"}, true);
    ASSERT_NE(getpgid(away.pid()), getpgrp());
    EXPECT_EQ(found(other.writing.get()), away.pid());
}

TEST(EditorProcess, IsNotThisOne)
{
    const Pipe pipe;
    EXPECT_EQ(found(pipe.writing.get()), 0);
}

TEST(EditorProcess, IsNobodyWhenTheReaderHasEnded)
{
    Pipe pipe;
    Reader reader(pipe);
    reader.process().end_unnoticed();
    EXPECT_EQ(found(pipe.writing.get()), 0);
}

TEST(EditorProcess, IsNobodyBehindWhatIsNoPipe)
{
    const support::Descriptor device(open("/dev/null", O_WRONLY | O_CLOEXEC));
    const support::SocketPair sockets;
    EXPECT_EQ(found(device.get()), 0);
    EXPECT_EQ(found(sockets.link.get()), 0);
    EXPECT_EQ(found(-1), 0);
}

TEST(EditorProcess, RunsUntilItHasEnded)
{
    Pipe pipe;
    Reader reader(pipe);
    const auto editor = find_editor(pipe.writing.get());
    ASSERT_TRUE(editor);
    EXPECT_TRUE(is_running(*editor));
    reader.process().end_unnoticed();
    EXPECT_FALSE(is_running(*editor));
    reader.process().end();
    EXPECT_FALSE(is_running(*editor));
}

TEST(EditorProcess, IsNotALaterOneOfItsNumber)
{
    Pipe pipe;
    const Reader reader(pipe);
    auto editor = find_editor(pipe.writing.get());
    ASSERT_TRUE(editor);
    --editor->start_time;
    EXPECT_FALSE(is_running(*editor));
}

TEST(EditorProcess, IsNamedByItsNumberAndStart)
{
    EditorProcess process;
    process.pid = 4711;
    process.start_time = 123456;
    EXPECT_EQ(editor_name(process), "4711-123456");
}

TEST(EditorProcess, HasANameOfTwoNumbers)
{
    for (const char* const name : {"4711-123456", "1-0", "4194304-18446744073709551615"})
        EXPECT_TRUE(is_editor_name(name)) << name;
    for (const char* const other :
         {"", "-", "4711", "4711-", "-123456", "-1-2", "4711--2", "4711-12a", "4711-12 ", "a-1", "4711-1-2",
          "99999999999-1", "4711-18446744073709551616"})
        EXPECT_FALSE(is_editor_name(other)) << other;
}

TEST(EditorProcess, IsFoundByItsNameAndByNoOther)
{
    Pipe pipe;
    Reader reader(pipe);
    const std::optional<EditorProcess> editor = look_at_process(reader.pid());
    ASSERT_TRUE(editor);
    const std::optional<EditorProcess> found = find_named_editor(editor_name(*editor));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->pid, editor->pid);
    EXPECT_EQ(found->start_time, editor->start_time);
    EditorProcess earlier = *editor;
    --earlier.start_time;
    for (const std::string& other : {editor_name(earlier), std::to_string(editor->pid), std::string("-1"),
                                     std::string("a-1"), std::string()})
        EXPECT_FALSE(find_named_editor(other)) << other;
}

// The name stands in front of the fields that are read, between parentheses.
TEST(EditorProcess, MayHaveAnyName)
{
    const auto before = look_at_process(getpid());
    ASSERT_TRUE(before);
    ASSERT_GT(before->start_time, 0U);
    char name[16] = {};
    prctl(PR_GET_NAME, name);
    prctl(PR_SET_NAME, "a) Z 1 (b 2");
    const auto after = look_at_process(getpid());
    prctl(PR_SET_NAME, name);
    ASSERT_TRUE(after);
    EXPECT_EQ(after->start_time, before->start_time);
}

TEST(EditorProcess, ThatStartedLaterHasALaterTime)
{
    Pipe pipe;
    const Reader reader(pipe);
    const auto self = look_at_process(getpid());
    const auto editor = find_editor(pipe.writing.get());
    ASSERT_TRUE(self && editor);
    EXPECT_GE(editor->start_time, self->start_time);
    // In the same unit as the time since the machine started.
    timespec up{};
    clock_gettime(CLOCK_BOOTTIME, &up);
    const auto ticks = static_cast<std::uint64_t>(sysconf(_SC_CLK_TCK));
    EXPECT_LE(editor->start_time, static_cast<std::uint64_t>(up.tv_sec + 1) * ticks);
    EXPECT_GE(editor->start_time + 60 * ticks, static_cast<std::uint64_t>(up.tv_sec) * ticks);
}

TEST(EditorProcess, ThatIsNotThereIsNone)
{
    Pipe pipe;
    Reader reader(pipe);
    const pid_t pid = reader.pid();
    EXPECT_TRUE(look_at_process(pid));
    reader.process().end();
    EXPECT_FALSE(look_at_process(pid));
    EXPECT_FALSE(look_at_process(-1));
}

struct CommandCase {
    const char* name;
    std::string words;
    bool is_batch;
};
// clang-format off
const CommandCase kCommands[] = {
    {"WithTheOption",                   "inkscape\0--batch-process\0in.svg\0"s, true},
    {"WithTheOptionBehindTheFile",      "inkscape\0in.svg\0--batch-process\0"s, true},
    {"WithoutA0AtTheEnd",               "inkscape\0--batch-process"s, true},
    {"WithAValueThatTheEditorIgnores",  "inkscape\0--batch-process=0\0"s, true},
    {"WithoutTheOption",                "inkscape\0in.svg\0"s, false},
    {"WithAShorterFormIsNone",          "inkscape\0--batch-proc\0"s, false},
    {"WithALongerOptionIsNone",         "inkscape\0--batch-processor\0"s, false},
    {"WithItInAnotherWordIsNone",       "inkscape\0--actions=a;--batch-process\0"s, false},
    {"WithAFileOfThatNameIsNone",       "inkscape\0--\0--batch-process\0"s, false},
    {"OfAProgramOfThatNameIsNone",      "--batch-process\0in.svg\0"s, false},
    {"WithAnEmptyWordBeforeIt",         "inkscape\0\0--batch-process\0"s, true},
    {"OfNoWordIsNone",                  ""s, false},
};
// clang-format on
class BatchCommand : public testing::TestWithParam<CommandCase> {};
TEST_P(BatchCommand, IsToldByItsWords) { EXPECT_EQ(is_batch_command(GetParam().words), GetParam().is_batch); }
INSTANTIATE_TEST_SUITE_P(, BatchCommand, testing::ValuesIn(kCommands),
                         [](const auto& row) { return row.param.name; });

} // namespace
