#include "host/editor/editor_process.h"
#include "host/editor/sketch_lock.h"
#include "tests/editor/shell_process.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <regex>

namespace {

using namespace vnt::host;
using editor_test::Pipe;
using editor_test::ShellProcess;
using support::TemporaryFolder;

std::optional<SketchLock> taken(const std::string& path)
{
    auto lock = SketchLock::try_lock(path);
    if (const auto* problem = std::get_if<Problem>(&lock))
        throw std::runtime_error(problem->sentence);
    return std::move(std::get<0>(lock));
}

bool is_free(const std::string& path) { return taken(path).has_value(); }

// A process that has what is inherited, and lives until it is ended. Its copy of the lock is closed here.
class Heir {
public:
    explicit Heir(SketchLock lock)
        : process_("echo up; read line", idle_.reading.get(), up_.writing.get()), lock_(std::move(lock))
    {
        up_.writing.reset(-1);
        up_.line();
        const SketchLock closed = std::move(lock_);
    }
    void end() { process_.end(); }

private:
    Pipe idle_;
    Pipe up_;
    ShellProcess process_;
    SketchLock lock_;
};

TEST(SketchLock, IsHeldByOne)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("lock");
    {
        const auto lock = taken(path);
        EXPECT_TRUE(lock);
        EXPECT_FALSE(taken(path));
        EXPECT_FALSE(taken(path)); // being refused changes nothing
    }
    EXPECT_TRUE(is_free(path));
    EXPECT_TRUE(is_free(path));
}

TEST(SketchLock, OfAnotherUserIsAnotherFile)
{
    const TemporaryFolder folder;
    const auto one = taken(folder.path("one"));
    EXPECT_TRUE(taken(folder.path("other")));
}

TEST(SketchLock, GoesWithItsOwner)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("lock");
    auto lock = taken(path);
    ASSERT_TRUE(lock);
    SketchLock second = std::move(*lock);
    lock.reset();
    EXPECT_FALSE(taken(path));
    auto other = taken(folder.path("other"));
    second = std::move(*other); // ends what it held
    EXPECT_TRUE(is_free(path));
    EXPECT_FALSE(is_free(folder.path("other")));
}

TEST(SketchLock, IsHeldOnByAChildWhenTheParentEnded)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("lock");
    Pipe to_child;
    Pipe up;
    auto lock = taken(path);
    const pid_t child = fork();
    if (child == 0) {
        to_child.writing.reset(-1);
        if (write(up.writing.get(), "up\n", 3) == 3)
            to_child.line();
        _exit(0);
    }
    up.writing.reset(-1);
    EXPECT_EQ(up.line(), "up");
    lock.reset();
    EXPECT_FALSE(taken(path));
    to_child.writing.reset(-1); // the child ends
    waitpid(child, nullptr, 0);
    EXPECT_TRUE(is_free(path));
}

TEST(SketchLock, IsNotInheritedByAProgram)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("lock");
    const Heir heir(*taken(path));
    EXPECT_TRUE(is_free(path));
}

TEST(SketchLock, IsInheritedByAProgramThatIsToHaveIt)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("lock");
    auto lock = taken(path);
    ASSERT_TRUE(lock);
    lock->set_inherited(true);
    Heir heir(std::move(*lock));
    EXPECT_FALSE(taken(path));
    heir.end(); // as by the system: nothing is tidied up
    EXPECT_TRUE(is_free(path));
}

TEST(SketchLock, SaysWhoHoldsIt)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("lock");
    const auto lock = taken(path);
    ASSERT_TRUE(lock);
    lock->sign("/home/u/my drawing\n100%.svg");
    const auto holder = SketchLock::holder(path);
    ASSERT_TRUE(holder);
    EXPECT_EQ(holder->pid, getpid());
    EXPECT_EQ(holder->start_time, look_at_process(getpid())->start_time);
    EXPECT_EQ(holder->document, "/home/u/my drawing\n100%.svg");
    EXPECT_TRUE(std::regex_match(holder->since, std::regex(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d[+-]\d\d:\d\d)")))
        << holder->since;
}

TEST(SketchLock, SaysOfALongTextOverwrittenByAShortOneTheShortOne)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("lock");
    const auto lock = taken(path);
    lock->sign(std::string(4096, ' ')); // as long as a path gets
    EXPECT_EQ(SketchLock::holder(path)->document, std::string(4096, ' '));
    lock->sign("b");
    EXPECT_EQ(SketchLock::holder(path)->document, "b");
    EXPECT_EQ(SketchLock::holder(path)->pid, getpid());
}

TEST(SketchLock, SaysNothingOfAHolderThatDidNotSign)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("lock");
    taken(path)->sign("of the one before");
    const auto lock = taken(path);
    const auto holder = SketchLock::holder(path);
    ASSERT_TRUE(holder);
    EXPECT_EQ(holder->pid, 0);
    EXPECT_EQ(holder->document, "");
}

TEST(SketchLock, HasNoHolderWhenItIsFree)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("lock");
    EXPECT_FALSE(SketchLock::holder(path));
    taken(path)->sign("a.svg");
    EXPECT_FALSE(SketchLock::holder(path));
    EXPECT_TRUE(is_free(path));
}

struct TextCase {
    const char* name;
    const char* text;
    pid_t pid;
};
// clang-format off
const TextCase kTexts[] = {
    {"Whole",                "pid 7\nstart 9\nsince x\ndocument y\nend\n",       7},
    {"WithMoreBehindTheEnd", "pid 7\nstart 9\nsince x\ndocument y\nend\nd\nend", 7},
    {"OfALaterVersion",      "pid 7\nmood good\nend\n",                          7},
    {"CutShort",             "pid 7\nstart 9\nsince x\n",                        0},
    {"CutWithinALine",       "pid 7\nstart 9\nen",                               0},
    {"OfAnotherForm",        "7\n",                                              0},
    {"WithANumberOfNone",    "pid seven\nend\n",                                 0},
    {"WithABadDocument",     "pid 7\ndocument %\nend\n",                         0},
    {"Empty",                "",                                                 0},
};
// clang-format on
class SketchLockText : public testing::TestWithParam<TextCase> {};
TEST_P(SketchLockText, IsUnderstoodWholeOrNotAtAll)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("lock");
    const auto lock = taken(path);
    folder.file("lock", GetParam().text); // the same file, with another text
    const auto holder = SketchLock::holder(path);
    ASSERT_TRUE(holder);
    EXPECT_EQ(holder->pid, GetParam().pid);
}
INSTANTIATE_TEST_SUITE_P(, SketchLockText, testing::ValuesIn(kTexts),
                         [](const auto& row) { return row.param.name; });

TEST(SketchLockAdoption, GoesOnWithTheLock)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("lock");
    auto lock = taken(path);
    lock->set_inherited(true);
    const int descriptor = lock->release();
    lock.reset();
    {
        const auto adopted = SketchLock::adopt(descriptor, path);
        ASSERT_TRUE(adopted);
        EXPECT_EQ(adopted->descriptor(), descriptor);
        EXPECT_EQ(fcntl(descriptor, F_GETFD), FD_CLOEXEC);
        EXPECT_FALSE(taken(path));
    }
    EXPECT_FALSE(support::is_open(descriptor));
    EXPECT_TRUE(is_free(path));
}

TEST(SketchLockAdoption, RefusesWhatIsNotTheLock)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("lock");
    const auto lock = taken(path);
    const support::Descriptor other(open(folder.file("other", "").c_str(), O_RDWR | O_CLOEXEC));
    const support::Descriptor without(open(path.c_str(), O_RDWR | O_CLOEXEC));
    EXPECT_FALSE(SketchLock::adopt(-1, path));
    EXPECT_FALSE(SketchLock::adopt(other.get(), path));
    EXPECT_FALSE(SketchLock::adopt(without.get(), path)); // somebody else holds it
    EXPECT_TRUE(support::is_open(other.get()));
    EXPECT_TRUE(support::is_open(without.get()));
}

TEST(SketchLock, CannotBeWhereNoFileCan)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("none/lock");
    const auto lock = SketchLock::try_lock(path);
    ASSERT_EQ(lock.index(), 1U);
    EXPECT_EQ(
        std::get<1>(lock).sentence,
        "cannot tell whether a sketch is under way: the file " + path +
            " cannot be locked (No such file or directory); see to it that its folder can be written to");
}

} // namespace
