// The watchdog beside a real link, each in a process of its own: the link never ends its wait by itself.
#include "Source/vntClientCom/BaseCom.h"
#include "host/kit/watchdog.h"
#include "tests/host/waiting_thread.h"
#include "tests/support/child_process.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <atomic>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <variant>

namespace {

using namespace vnt::host;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using host_test::OtherProcess;
using support::Descriptor;
using support::run_in_child;

// Set in a thread that must not allocate.
thread_local bool t_must_not_allocate = false;

constexpr int kAllocated = 99;

[[maybe_unused]] void* unless_forbidden(void* (*allocate)(std::size_t size), std::size_t size)
{
    if (t_must_not_allocate)
        _exit(kAllocated);
    return allocate(size);
}

} // namespace

// The C library's allocation, asked by all that allocates in this program; a sanitizer has its own in that place.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VNT_TEST_REPLACES_MALLOC 0
#elif defined(__has_feature)
#define VNT_TEST_REPLACES_MALLOC (!__has_feature(address_sanitizer) && !__has_feature(thread_sanitizer))
#else
#define VNT_TEST_REPLACES_MALLOC 1
#endif
#if VNT_TEST_REPLACES_MALLOC
extern "C" {
void* __libc_malloc(std::size_t size); // NOLINT(bugprone-reserved-identifier): the C library's name
void* malloc(std::size_t size) { return unless_forbidden(__libc_malloc, size); }
}
#endif

namespace {

// What a child ends with.
enum Outcome { kTimeUp = 40, kClosed = 41, kLineCame = 42, kNoWatchdog = 43, kWrong = 44 };

void exit_with(Ended ended) { _exit(ended == Ended::time_up ? kTimeUp : kClosed); }

std::unique_ptr<Watchdog> started(Watch watch)
{
    auto watchdog = Watchdog::start(std::move(watch));
    if (std::holds_alternative<Problem>(watchdog))
        _exit(kNoWatchdog);
    return std::move(std::get<0>(watchdog));
}

// Waits for a line as the plug-in does, and computes for as long after it.
int wait_for_line(unsigned int port, std::chrono::milliseconds computing)
{
    support::ParkedInput::park();
    BaseCom link;
    if (link.connect_server(port, "127.0.0.1") != 1)
        return kWrong;
    std::stringstream line;
    link >> line;
    const Clock::time_point until = Clock::now() + computing;
    while (Clock::now() < until)
        host_test::compute_a_little();
    return kLineCame;
}

void stay_silent(Descriptor& connection)
{
    pollfd polled{connection.get(), POLLRDHUP, 0};
    poll(&polled, 1, -1);
}

struct LinkCase {
    const char* name;
    void (*peer)(Descriptor& connection); // closes it by its end
    std::chrono::milliseconds deadline;   // 0: none
    std::chrono::milliseconds computing;  // of the plug-in, after the line
    int outcome;
};
// clang-format off
const LinkCase kLinks[] = {
    {"AnOrderlyCloseIsNoticed", [](Descriptor&) {}, 0ms, 0ms, kClosed},
    {"ACloseInTheMiddleOfTheLineIsNoticed",
     [](Descriptor& connection) { support::send_all(connection.get(), "<fig"); }, 0ms, 0ms, kClosed},
    {"AHalfCloseIsNoticed",
     [](Descriptor& connection) { shutdown(connection.get(), SHUT_WR); stay_silent(connection); }, 0ms, 0ms, kClosed},
    {"ACloseIsNoticedBeforeALaterDeadline", [](Descriptor&) {}, 60000ms, 0ms, kClosed},
    {"ALineThatComesEndsTheWait",
     [](Descriptor& connection) { support::send_all(connection.get(), "<figure>\n"); }, 0ms, 0ms, kLineCame},
    {"ComputingBehindALineIsNotTakenForWaiting",
     [](Descriptor& connection) { support::send_all(connection.get(), "<figure>\n"); }, 0ms, 1500ms, kLineCame},
    {"AResetIsLeftToTheLink",
     [](Descriptor& connection) { host_test::reset_at_close(connection.get()); }, 0ms, 0ms, kLineCame},
    {"ASilentPeerIsWaitedForUntilTheDeadline", stay_silent, 300ms, 0ms, kTimeUp},
    {"ADeadlineEndsComputingAsWell",
     [](Descriptor& connection) { support::send_all(connection.get(), "<figure>\n"); }, 300ms, 60000ms, kTimeUp},
};
// clang-format on
class WatchedLinks : public testing::TestWithParam<LinkCase> {};

TEST_P(WatchedLinks, EndAsTheyShould)
{
    support::Listener listener;
    const OtherProcess peer([&] {
        Descriptor connection = listener.accept_one();
        GetParam().peer(connection);
    });
    const auto begun = Clock::now();
    const auto end = run_in_child(
        [&] {
            host_test::end_with_parent();
            Watch watch;
            watch.link = true;
            watch.port = static_cast<std::uint16_t>(listener.port());
            if (GetParam().deadline > 0ms)
                watch.deadline = Clock::now() + GetParam().deadline;
            watch.on_end = exit_with;
            const auto watchdog = started(std::move(watch));
            return wait_for_line(listener.port(), GetParam().computing);
        },
        host_test::limit_ms());
    EXPECT_EQ(end.status, GetParam().outcome);
    if (end.status == kTimeUp) {
        EXPECT_GE(Clock::now() - begun, GetParam().deadline);
    }
}
INSTANTIATE_TEST_SUITE_P(, WatchedLinks, testing::ValuesIn(kLinks),
                         [](const auto& row) { return row.param.name; });

// The thread's own word that it has run, which a child waits for.
struct Seen {
    std::atomic<int> ends = 0;
    std::atomic<int> ticks = 0;
    std::atomic<pid_t> thread = 0;
};

TEST(WatchdogThread, AllocatesNothingAndOpensNothing)
{
    if (!VNT_TEST_REPLACES_MALLOC)
        GTEST_SKIP() << "allocations are the sanitizer's";
    support::Listener listener;
    const OtherProcess peer([&] { listener.accept_one(); });
    const auto end = run_in_child(
        [&] {
            host_test::end_with_parent();
            std::atomic<bool> allocates_nothing = false;
            Watch watch;
            watch.link = true;
            watch.port = static_cast<std::uint16_t>(listener.port());
            watch.tick_interval = 1ms;
            watch.on_tick = [&](std::chrono::nanoseconds) {
                t_must_not_allocate = true;
                allocates_nothing = true;
            };
            watch.on_end = exit_with;
            const auto watchdog = started(std::move(watch));
            host_test::wait_until([&] { return allocates_nothing.load(); });
            const Descriptor connection = host_test::connect_to(listener.port());
            rlimit descriptors{};
            getrlimit(RLIMIT_NOFILE, &descriptors);
            descriptors.rlim_cur = 1; // with 0, poll would take no descriptor either
            setrlimit(RLIMIT_NOFILE, &descriptors);
            for (;;)
                host_test::look_and_pause(connection.get());
            return static_cast<int>(kWrong);
        },
        host_test::limit_ms());
    EXPECT_EQ(end.status, kClosed);
}

TEST(WatchdogThread, WouldBeEndedByAnAllocation)
{
    if (!VNT_TEST_REPLACES_MALLOC)
        GTEST_SKIP() << "allocations are the sanitizer's";
    const auto end = run_in_child(
        [] {
            t_must_not_allocate = true;
            ::operator delete(::operator new(1));
            return static_cast<int>(kWrong);
        },
        host_test::limit_ms());
    EXPECT_EQ(end.status, kAllocated);
}

TEST(WatchdogThread, TakesNoSignal)
{
    const auto end = run_in_child(
        [] {
            Seen seen;
            Watch watch;
            watch.tick_interval = 1ms;
            watch.on_tick = [&](std::chrono::nanoseconds) { ++seen.ticks; };
            const auto watchdog = started(std::move(watch));
            sigset_t signals;
            sigemptyset(&signals);
            sigaddset(&signals, SIGUSR1);
            sigaddset(&signals, SIGTERM);
            pthread_sigmask(SIG_BLOCK, &signals, nullptr);
            kill(getpid(), SIGUSR1); // would end the process in a thread that takes it
            kill(getpid(), SIGTERM);
            const int before = seen.ticks;
            host_test::wait_until([&] { return seen.ticks > before + 1; });
            sigset_t pending;
            sigpending(&pending);
            return sigismember(&pending, SIGUSR1) == 1 && sigismember(&pending, SIGTERM) == 1 ? 0 : 1;
        },
        host_test::limit_ms());
    EXPECT_EQ(end.status, 0);
}

TEST(WatchdogThread, LeavesTheSignalsOfTheThreadThatStartsItAsTheyAre)
{
    sigset_t before;
    pthread_sigmask(SIG_SETMASK, nullptr, &before);
    const auto watchdog = started({});
    sigset_t after;
    pthread_sigmask(SIG_SETMASK, nullptr, &after);
    for (int number = 1; number < NSIG; ++number)
        EXPECT_EQ(sigismember(&after, number), sigismember(&before, number)) << number;
}

// Whether each thread but the calling one is asleep.
bool are_others_asleep()
{
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream file(entry.path() / "syscall");
        std::string does;
        file >> does;
        if (entry.path().filename() != std::to_string(LinkWatch::calling_thread()) && does == "running")
            return false;
    }
    return true;
}

// Without a notice the thread would sleep for an hour, beyond the test's time limit.
TEST(WatchdogEnd, DoesNotWaitForTheNextTick)
{
    Watch watch;
    watch.deadline = Clock::now() + 1h;
    watch.on_tick = [](std::chrono::nanoseconds) {};
    watch.tick_interval = 1h;
    auto watchdog = started(std::move(watch));
    host_test::wait_until(are_others_asleep);
    watchdog.reset();
    EXPECT_EQ(watchdog, nullptr);
}

TEST(WatchdogEnd, ComesBeforeItsDeadlineInSilence)
{
    Seen seen;
    Watch watch;
    watch.deadline = Clock::now() + 1h;
    watch.on_end = [&](Ended) { ++seen.ends; };
    started(std::move(watch)).reset();
    EXPECT_EQ(seen.ends, 0);
}

TEST(WatchdogCallback, OfTheEndComesOnceAndIsTheLast)
{
    Seen seen;
    Watch watch;
    watch.deadline = Clock::now() + 20ms;
    watch.tick_interval = 1ms;
    watch.on_tick = [&](std::chrono::nanoseconds) {
        if (seen.ends > 0)
            seen.ends = 100;
        ++seen.ticks;
    };
    watch.on_end = [&](Ended ended) {
        EXPECT_EQ(ended, Ended::time_up);
        EXPECT_GT(seen.ticks, 0);
        seen.thread = LinkWatch::calling_thread();
        ++seen.ends;
    };
    const auto watchdog = started(std::move(watch));
    host_test::wait_until([&] { return seen.thread != 0; });
    EXPECT_NE(seen.thread, LinkWatch::calling_thread());
    const std::string entry = "/proc/self/task/" + std::to_string(seen.thread);
    host_test::wait_until([&] { return access(entry.c_str(), F_OK) != 0; });
    EXPECT_EQ(seen.ends, 1);
}

TEST(WatchdogCallback, OfADeadlineThatIsPastComesAtOnce)
{
    Seen seen;
    Watch watch;
    watch.deadline = Clock::now() - 1s;
    watch.on_end = [&](Ended) { ++seen.ends; };
    const auto watchdog = started(std::move(watch));
    host_test::wait_until([&] { return seen.ends == 1; });
}

TEST(WatchdogCallback, OfATickTellsTheTimeSinceTheStart)
{
    std::atomic<int> ticks = 0;
    std::chrono::nanoseconds elapsed[3]{};
    const auto before = Clock::now();
    Watch watch;
    watch.tick_interval = 10ms;
    watch.on_tick = [&](std::chrono::nanoseconds time) {
        const int tick = ticks;
        if (tick < 3)
            elapsed[tick] = time;
        ++ticks;
    };
    {
        const auto watchdog = started(std::move(watch));
        host_test::wait_until([&] { return ticks >= 3; });
    }
    EXPECT_GE(elapsed[0], 10ms);
    EXPECT_GE(elapsed[1], 20ms);
    EXPECT_GE(elapsed[2], 30ms);
    EXPECT_LE(elapsed[2], Clock::now() - before);
}

TEST(WatchdogCallback, OfATickWithoutAnIntervalLeavesTimeForTheEnd)
{
    Seen seen;
    Watch watch;
    watch.tick_interval = 0ms;
    watch.on_tick = [&](std::chrono::nanoseconds) { ++seen.ticks; };
    const auto watchdog = started(std::move(watch));
    host_test::wait_until([&] { return seen.ticks >= 3; });
}

TEST(WatchdogCallback, ThatIsNotThereIsNotCalled)
{
    Watch watch;
    watch.deadline = Clock::now();
    const auto watchdog = started(std::move(watch));
    host_test::wait_until(are_others_asleep); // or have ended
    EXPECT_NE(watchdog, nullptr);
}

TEST(WatchdogStart, WithoutAThreadIsAProblem)
{
    const auto end = run_in_child(
        [] {
            constexpr uid_t kNobody = 65534;
            rlimit none{0, 0};
            if (setrlimit(RLIMIT_NPROC, &none) != 0 || (getuid() == 0 && setuid(kNobody) != 0))
                return static_cast<int>(kWrong);
            const auto watchdog = Watchdog::start({});
            const Problem* const problem = std::get_if<Problem>(&watchdog);
            return problem != nullptr &&
                           problem->sentence ==
                               "cannot watch over the plug-in: no thread can be started (Resource "
                               "temporarily unavailable); close other programs, or raise the limit of "
                               "processes"
                       ? 0
                       : 1;
        },
        host_test::limit_ms());
    EXPECT_EQ(end.status, 0);
}

} // namespace
