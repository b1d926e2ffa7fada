#include "host/kit/launch.h"
#include "host/kit/listening_port.h"
#include "tests/host/waiting_thread.h"
#include "tests/support/child_process.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>

#include <cstdlib>
#include <sstream>

namespace {

using namespace vnt::host;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

std::uint16_t number(const support::ReservedPort& port) { return static_cast<std::uint16_t>(port.number()); }

// A command's folder, port and process; kills the process at its end.
class Application {
public:
    Application() = default;
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    ~Application()
    {
        if (has_written("process")) {
            kill(process(), SIGKILL);
            waitpid(process(), nullptr, 0);
        }
    }

    std::uint16_t port() const { return number(port_); }
    std::string file(const std::string& name) const { return folder_.path(name); }

    bool has_written(const std::string& name) const
    {
        return access(file(name).c_str(), F_OK) == 0 && support::content_of(file(name)).ends_with('\n');
    }

    std::string written(const std::string& name) const
    {
        host_test::wait_until([&] { return has_written(name); });
        return support::content_of(file(name));
    }

    pid_t process() const { return static_cast<pid_t>(std::stol(written("process"))); }

    // Commands that note their process first.
    std::string that(const std::string& command) const
    {
        return "echo $$ >" + file("process") + "; " + command;
    }
    std::string listener() const
    {
        return VNT_PEER_PROGRAM " --answer " VNT_ANSWERS "/every_primitive.xml --port " +
               std::to_string(port());
    }

    Result<Launched> launch(const std::string& command, std::optional<Clock::time_point> deadline = {}) const
    {
        return launch_and_wait(command, port(), deadline);
    }

private:
    support::TemporaryFolder folder_;
    support::ReservedPort port_;
};

// The outcome or the problem in words.
std::string in_words(const Result<Launched>& result)
{
    if (const Problem* const problem = std::get_if<Problem>(&result))
        return problem->sentence;
    switch (std::get<Launched>(result)) {
    case Launched::listened_before: return "listened before";
    case Launched::listening: return "listening";
    case Launched::time_up: return "time up";
    }
    return "no such outcome";
}

bool has_children() { return waitpid(-1, nullptr, WNOHANG) != -1; }

TEST(Launch, WaitsUntilTheApplicationListens)
{
    const Application application;
    ASSERT_EQ(listening_on(application.port()), Listening::no);
    EXPECT_EQ(in_words(application.launch(application.that("exec " + application.listener()))), "listening");
    EXPECT_EQ(listening_on(application.port()), Listening::yes);
}

TEST(Launch, LeavesTheApplicationItsOneExchange)
{
    const Application application;
    ASSERT_EQ(in_words(application.launch(application.that("exec " + application.listener()))), "listening");
    const auto connection = host_test::connect_to(application.port());
    support::send_all(connection.get(), "request\n");
    EXPECT_FALSE(support::receive_line(connection.get()).empty());
}

TEST(Launch, GivesTheApplicationASessionOfItsOwn)
{
    const Application application;
    ASSERT_EQ(in_words(application.launch(application.that("exec " + application.listener()))), "listening");
    EXPECT_EQ(getsid(application.process()), application.process());
    EXPECT_NE(getsid(application.process()), getsid(0));
}

TEST(Launch, StartsNothingWhereSomebodyListens)
{
    const support::Listener listener;
    EXPECT_EQ(in_words(launch_and_wait("sleep 60", static_cast<std::uint16_t>(listener.port()), {})),
              "listened before");
    EXPECT_FALSE(has_children());
}

TEST(Launch, StartsNothingAfterTheDeadline)
{
    const Application application;
    EXPECT_EQ(in_words(application.launch("sleep 60", Clock::now())), "time up");
    EXPECT_FALSE(has_children());
}

TEST(Launch, LeavesTheApplicationRunningAtTheDeadline)
{
    const Application application;
    const auto deadline = Clock::now() + 200ms;
    EXPECT_EQ(in_words(application.launch(application.that("exec sleep 60"), deadline)), "time up");
    EXPECT_GE(Clock::now(), deadline);
    EXPECT_EQ(waitpid(application.process(), nullptr, WNOHANG), 0);
}

TEST(Launch, WaitsOnForACommandThatSentItsProgramToTheBackground)
{
    const Application application;
    const std::string command =
        "(sleep 0.3; exec " + application.listener() + ") & echo $! >" + application.file("process");
    EXPECT_EQ(in_words(application.launch(command)), "listening");
}

TEST(Launch, WaitsTenSecondsForACommandThatEndsWithStatusNull)
{
    const Application application;
    const auto begun = Clock::now();
    EXPECT_EQ(in_words(application.launch("true")), "cannot launch the sketch application: the command "
                                                    "\"true\" ended 10 seconds ago, and nothing listens "
                                                    "on 127.0.0.1:" +
                                                        std::to_string(application.port()) +
                                                        "; try the command in a terminal");
    EXPECT_GE(Clock::now() - begun, 10s);
}

TEST(Launch, TakesALostStatusForNull)
{
    const auto end = support::run_in_child(
        [] {
            signal(SIGCHLD, SIG_IGN); // the system then keeps no status
            const Application application;
            const auto begun = Clock::now();
            const std::string words = in_words(application.launch("exit 3"));
            return words.find("ended 10 seconds ago") != words.npos && Clock::now() - begun >= 10s ? 0 : 1;
        },
        host_test::limit_ms());
    EXPECT_EQ(end.status, 0);
}

struct ProblemCase {
    const char* name;
    const char* command;
    const char* how;
};
const ProblemCase kProblems[] = {
    {"AStatus",                  "exit 3",              "ended with status 3"  },
    {"ASignal",                  "kill -9 $$",          "was ended by signal 9"},
    {"ACommandThatIsNotThere",   "/nonexistent/sketch", "ended with status 127"},
    {"ACommandThatIsNoShells",   "(",                   "ended with status 2"  },
    {"AnEndAfterSomeTime",       "sleep 0.1; exit 255", "ended with status 255"},
    {"TheLastOfSeveralCommands", "true; false",         "ended with status 1"  },
};
class LaunchProblems : public testing::TestWithParam<ProblemCase> {};
TEST_P(LaunchProblems, AreASentence)
{
    const Application application;
    EXPECT_EQ(in_words(application.launch(GetParam().command)),
              "cannot launch the sketch application: the command \"" + std::string(GetParam().command) +
                  "\" " + GetParam().how + ", and nothing listens on 127.0.0.1:" +
                  std::to_string(application.port()) + "; try the command in a terminal");
    EXPECT_FALSE(has_children());
}
INSTANTIATE_TEST_SUITE_P(, LaunchProblems, testing::ValuesIn(kProblems),
                         [](const auto& row) { return row.param.name; });

void limit_softly(decltype(RLIMIT_NOFILE) resource, rlim_t to)
{
    rlimit limit{};
    getrlimit(resource, &limit);
    limit.rlim_cur = to;
    setrlimit(resource, &limit);
}

TEST(LaunchProblem, OfATableThatCannotBeReadStartsNothing)
{
    const auto end = support::run_in_child(
        [] {
            sigset_t end_of_a_child;
            sigemptyset(&end_of_a_child);
            sigaddset(&end_of_a_child, SIGCHLD);
            sigprocmask(SIG_BLOCK, &end_of_a_child, nullptr);
            limit_softly(RLIMIT_NOFILE, 3); // so that nothing can be opened
            const std::string words = in_words(launch_and_wait("sleep 60", 4911, {}));
            return words == "cannot tell whether a sketch application listens on 127.0.0.1:4911: the "
                            "system's table "
                            "of sockets, /proc/net/tcp, cannot be read; start the application first, and "
                            "launch "
                            "nothing" &&
                           !has_children() && sigpending(&end_of_a_child) == 0 &&
                           sigismember(&end_of_a_child, SIGCHLD) == 0
                       ? 0
                       : 1;
        },
        host_test::limit_ms());
    EXPECT_EQ(end.status, 0);
}

TEST(LaunchProblem, OfAMachineWithoutRoomForAProcess)
{
    const auto end = support::run_in_child(
        [] {
            constexpr uid_t kNobody = 65534;
            const support::ReservedPort port;
            limit_softly(RLIMIT_NPROC, 0);
            if (getuid() == 0 && setuid(kNobody) != 0)
                return 2;
            return in_words(launch_and_wait("sleep 60", number(port), {})) ==
                           "cannot launch the sketch application: /bin/sh cannot be started (Resource "
                           "temporarily "
                           "unavailable); start the application first"
                       ? 0
                       : 1;
        },
        host_test::limit_ms());
    EXPECT_EQ(end.status, 0);
}

std::string link_of(const std::string& path)
{
    char target[4096];
    const ssize_t size = readlink(path.c_str(), target, sizeof target);
    return size < 0 ? "" : std::string(target, static_cast<std::size_t>(size));
}

TEST(LaunchedApplication, HasOurStandardErrorAndNoOtherDescriptor)
{
    const Application application;
    const support::Descriptor not_for_children(open("/dev/zero", O_RDONLY)); // and yet without O_CLOEXEC
    const support::Descriptor kept(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0));
    dup2(not_for_children.get(), STDIN_FILENO);
    // In a shell within the shell, so that where these commands write to is none of the outer one's descriptors.
    application.launch("(ls /proc/$$/fd >" + application.file("numbers") +
                       "); (readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2 >" +
                       application.file("files") + "); exit 1");
    dup2(kept.get(), STDIN_FILENO);
    const std::string error = link_of("/proc/self/fd/2");
    EXPECT_EQ(application.written("numbers"), "0\n1\n2\n");
    EXPECT_EQ(application.written("files"), "/dev/null\n" + error + "\n" + error + "\n");
}

TEST(LaunchedApplication, HasNoSignalBlockedOrIgnored)
{
    const auto end = support::run_in_child(
        [] {
            sigset_t all;
            sigfillset(&all);
            pthread_sigmask(SIG_BLOCK, &all, nullptr);
            signal(SIGINT, SIG_IGN);
            signal(SIGPIPE, SIG_IGN);
            const Application application;
            // By the shell itself: it would start another program without any signal blocked.
            application.launch(
                "while read -r name value; do case $name in SigBlk:|SigIgn:) echo $value;; esac; done "
                "</proc/self/status >" +
                application.file("signals") + "; exit 1");
            std::istringstream masks(application.written("signals"));
            std::uint64_t blocked = 0;
            std::uint64_t ignored = 0;
            masks >> std::hex >> blocked >> ignored;
            constexpr std::uint64_t kInternal = std::uint64_t{3} << 31U; // 32 and 33 are the C library's own
            return !masks.fail() && blocked == 0 && (ignored & ~kInternal) == 0 ? 0 : 1;
        },
        host_test::limit_ms());
    EXPECT_EQ(end.status, 0);
}

TEST(LaunchedApplication, HasOurEnvironmentAndWorkingFolder)
{
    const Application application;
    setenv("VANT_TEST_WORD", "two words", 1);
    application.launch("{ echo \"$VANT_TEST_WORD\"; pwd -P; } >" + application.file("words") + "; exit 1");
    unsetenv("VANT_TEST_WORD");
    EXPECT_EQ(application.written("words"), "two words\n" + std::filesystem::current_path().string() + "\n");
}

} // namespace
