// Connections and threads as they are seen by LinkWatch; vain_wait_test has what is made of it.
#include "host/kit/link_watch.h"
#include "tests/host/waiting_thread.h"

#include <gtest/gtest.h>

#include <fcntl.h>

#include <atomic>
#include <future>
#include <thread>

namespace {

using namespace vnt::host;
using namespace std::chrono_literals;
using host_test::connect_to;
using host_test::wait_for_close;
using support::Descriptor;
using Thread = LinkSight::Thread;

// --- What is seen of connections

struct Connected {
    support::Listener listener;
    Descriptor link = connect_to(listener.port());
    Descriptor peer = listener.accept_one();
};

LinkWatch watch_of(const support::Listener& listener)
{
    return LinkWatch(static_cast<std::uint16_t>(listener.port()));
}

void close_and_wait(Connected& ends)
{
    ends.peer.reset(-1);
    wait_for_close(ends.link.get());
}

struct ConnectionCase {
    const char* name;
    void (*happens)(Connected& ends);
    bool at_its_end;
};
const ConnectionCase kConnections[] = {
    {"Silent",                                     [](Connected&) {},                                                       false},
    {"AnAnswerAndNoClose",                         [](Connected& ends) { support::send_all(ends.peer.get(), "answer\n"); }, false},
    {"ClosedAtOnce",                               close_and_wait,                                                          true },
    {"ClosedBehindAnAnswer",
     [](Connected& ends) {
         support::send_all(ends.peer.get(), "answer\n");
         close_and_wait(ends);
     },                                                                                                                     false},
    {"ClosedBehindAnAnswerThatIsTaken",
     [](Connected& ends) {
         support::send_all(ends.peer.get(), "answer\n");
         close_and_wait(ends);
         EXPECT_EQ(support::receive_exactly(ends.link.get(), 7), "answer\n");
     },                                                                                                                     true },
    {"ClosedBehindAnAnswerThatIsTakenButForAByte",
     [](Connected& ends) {
         support::send_all(ends.peer.get(), "answer\n");
         close_and_wait(ends);
         EXPECT_EQ(support::receive_exactly(ends.link.get(), 6), "answer");
     },                                                                                                                     false},
    {"ClosedAfterTheAnswerWasTaken",
     [](Connected& ends) {
         support::send_all(ends.peer.get(), "answer\n");
         EXPECT_EQ(support::receive_exactly(ends.link.get(), 7), "answer\n");
         close_and_wait(ends);
     },                                                                                                                     true },
    {"HalfClosedByThePeer",
     [](Connected& ends) {
         shutdown(ends.peer.get(), SHUT_WR);
         wait_for_close(ends.link.get());
     },                                                                                                                     true },
    {"ClosedByBothSides",
     [](Connected& ends) {
         close_and_wait(ends);
         shutdown(ends.link.get(), SHUT_WR);
     },                                                                                                                     true },
    {"Reset",
     [](Connected& ends) {
         host_test::reset_at_close(ends.peer.get());
         close_and_wait(ends);
     },                                                                                                                     false},
    {"ResetWhoseErrorWasTaken",
     [](Connected& ends) {
         host_test::reset_at_close(ends.peer.get());
         close_and_wait(ends);
         int error = 0;
         socklen_t size = sizeof error;
         getsockopt(ends.link.get(), SOL_SOCKET, SO_ERROR, &error, &size);
     },                                                                                                                     true },
    {"ClosedWithTheRequestUnread",
     [](Connected& ends) {
         support::send_all(ends.link.get(), "request\n");
         close_and_wait(ends);
     },                                                                                                                     false},
    {"TheLinkClosedItsOwn",
     [](Connected& ends) {
         close_and_wait(ends);
         ends.link.reset(-1);
     },                                                                                                                     false},
};
class Connections : public testing::TestWithParam<ConnectionCase> {};
TEST_P(Connections, AreSeenAtTheirEnd)
{
    Connected ends;
    const LinkWatch watch = watch_of(ends.listener);
    GetParam().happens(ends);
    EXPECT_EQ(watch.look().at_its_end.has_value(), GetParam().at_its_end);
}
INSTANTIATE_TEST_SUITE_P(, Connections, testing::ValuesIn(kConnections),
                         [](const auto& row) { return row.param.name; });

TEST(Connection, IsNamedByDescriptorAndLocalPort)
{
    Connected ends;
    const LinkWatch watch = watch_of(ends.listener);
    close_and_wait(ends);
    sockaddr_in own{};
    socklen_t size = sizeof own;
    ASSERT_EQ(getsockname(ends.link.get(), reinterpret_cast<sockaddr*>(&own), &size), 0);
    const LinkSight::Connection expected{ends.link.get(), ntohs(own.sin_port)};
    EXPECT_EQ(watch.look().at_its_end, expected);
}

TEST(Connection, ToAnotherPortIsNotLookedAt)
{
    Connected ends;
    Connected others;
    const LinkWatch watch = watch_of(ends.listener);
    close_and_wait(others);
    EXPECT_FALSE(watch.look().at_its_end);
}

TEST(Connection, ToAnotherAddressIsNotLookedAt)
{
    const Descriptor server(socket(AF_INET, SOCK_STREAM, 0));
    sockaddr_in address = support::ipv4_address(0, INADDR_LOOPBACK + 1);
    socklen_t size = sizeof address;
    ASSERT_EQ(bind(server.get(), reinterpret_cast<const sockaddr*>(&address), size), 0);
    ASSERT_EQ(listen(server.get(), 1), 0);
    ASSERT_EQ(getsockname(server.get(), reinterpret_cast<sockaddr*>(&address), &size), 0);
    const Descriptor link(socket(AF_INET, SOCK_STREAM, 0));
    ASSERT_EQ(connect(link.get(), reinterpret_cast<const sockaddr*>(&address), size), 0);
    const LinkWatch watch(ntohs(address.sin_port));
    close(accept(server.get(), nullptr, nullptr));
    wait_for_close(link.get());
    EXPECT_FALSE(watch.look().at_its_end);
}

TEST(Connection, ThatAServerAcceptedIsNotLookedAt)
{
    Connected ends;
    const LinkWatch watch = watch_of(ends.listener);
    ends.link.reset(-1);
    wait_for_close(ends.peer.get());
    EXPECT_FALSE(watch.look().at_its_end);
}

TEST(Connection, BesideALivingOneOfTheSamePortIsFound)
{
    Connected ends;
    const Descriptor second = connect_to(ends.listener.port());
    Descriptor second_peer = ends.listener.accept_one();
    const LinkWatch watch = watch_of(ends.listener);
    second_peer.reset(-1);
    wait_for_close(second.get());
    ASSERT_GT(second.get(), ends.link.get());
    ASSERT_TRUE(watch.look().at_its_end);
    EXPECT_EQ(watch.look().at_its_end->descriptor, second.get());
}

TEST(Connection, OpenedAfterTheWatchIsFoundThirtyTwoNumbersOn)
{
    support::Listener listener;
    const LinkWatch watch = watch_of(listener);
    const Descriptor link = connect_to(listener.port());
    const Descriptor high(fcntl(link.get(), F_DUPFD_CLOEXEC, link.get() + 28));
    listener.accept_one();
    wait_for_close(high.get());
    ASSERT_EQ(watch.look().at_its_end->descriptor, link.get());
    const int number = link.get();
    close(number);
    EXPECT_EQ(watch.look().at_its_end->descriptor, high.get());
    ASSERT_EQ(dup2(high.get(), number), number);
}

TEST(Connection, KeepsItsPendingErrorForTheLink)
{
    Connected ends;
    const LinkWatch watch = watch_of(ends.listener);
    host_test::reset_at_close(ends.peer.get());
    close_and_wait(ends);
    watch.look();
    char byte = 0;
    EXPECT_EQ(recv(ends.link.get(), &byte, 1, 0), -1);
    EXPECT_EQ(errno, ECONNRESET);
}

// --- What is seen of threads

struct Shared {
    int connection = -1;
    std::atomic<bool> stopped = false;
};

void wait_as_the_link_does(const Shared& shared)
{
    while (!shared.stopped)
        host_test::look_and_pause(shared.connection);
}

void nap_longer_than_the_link(const Shared& shared)
{
    while (!shared.stopped)
        poll(nullptr, 0, 20);
}

void look_without_a_pause(const Shared& shared)
{
    char byte = 0;
    while (!shared.stopped)
        recv(shared.connection, &byte, 1, MSG_PEEK);
}

void compute(const Shared& shared)
{
    while (!shared.stopped)
        EXPECT_GT(host_test::compute_a_little(), 0);
}

// Sleeps as often as the link does, for another thread's word in a pipe.
void talk_through_a_pipe(const Shared& shared)
{
    int words[2];
    int answers[2];
    ASSERT_EQ(pipe(words) + pipe(answers), 0);
    std::thread other([&] {
        char word = 0;
        while (read(words[0], &word, 1) == 1 && write(answers[1], &word, 1) == 1) {
        }
    });
    char word = 0;
    while (!shared.stopped && write(words[1], &word, 1) == 1 && read(answers[0], &word, 1) == 1) {
    }
    close(words[1]);
    other.join();
    close(words[0]);
    close(answers[0]);
    close(answers[1]);
}

struct ThreadCase {
    const char* name;
    void (*runs)(const Shared& shared);
    bool closes; // the peer
    bool in_vain;
    int busy_processes;
    std::uint64_t least_sleeps; // without which the row would show nothing
};
const ThreadCase kThreads[] = {
    {"WaitsAsTheLinkDoes",             wait_as_the_link_does,    true,  true,  0, 15 },
    {"WaitsSoOnABusyMachine",          wait_as_the_link_does,    true,  true,  4, 15 },
    {"PausesLongerThanTheLink",        nap_longer_than_the_link, true,  true,  0, 15 },
    {"WaitsForAPeerThatLives",         wait_as_the_link_does,    false, false, 0, 0  },
    {"LooksWithoutAPauseAndIsNotSeen", look_without_a_pause,     true,  false, 0, 0  },
    {"Computes",                       compute,                  true,  false, 0, 0  },
    {"ComputesOnABusyMachine",         compute,                  true,  false, 4, 0  },
    {"SleepsElsewhere",                talk_through_a_pipe,      true,  false, 0, 100},
    {"SleepsElsewhereOnABusyMachine",  talk_through_a_pipe,      true,  false, 4, 20 },
};
class WatchedThread : public testing::TestWithParam<ThreadCase> {};

TEST_P(WatchedThread, IsJudged)
{
    const host_test::BusyMachine busy(GetParam().busy_processes); // forks, so before there are threads
    Connected ends;
    if (GetParam().closes)
        close_and_wait(ends);
    Shared shared;
    shared.connection = ends.link.get();
    std::promise<pid_t> number;
    std::thread thread([&] {
        number.set_value(LinkWatch::calling_thread());
        GetParam().runs(shared);
    });
    LinkWatch watch(static_cast<std::uint16_t>(ends.listener.port()), number.get_future().get());
    EXPECT_TRUE(watch.is_possible());
    const std::uint64_t before = watch.look().sleeps;
    const auto started = std::chrono::steady_clock::now();
    bool in_vain = false;
    std::uint64_t sleeps = 0;
    // What must be seen has kLimit, and what must not be seen a second and a half and thirty looks.
    const auto goes_on = [&](int looks) {
        const auto elapsed = std::chrono::steady_clock::now() - started;
        return GetParam().in_vain ? elapsed < host_test::kLimit : elapsed < 1500ms || looks < 30;
    };
    for (int looks = 0; !in_vain && goes_on(looks); ++looks) {
        in_vain = watch.waits_in_vain();
        sleeps = watch.look().sleeps;
        poll(nullptr, 0, 50);
    }
    shared.stopped = true;
    thread.join();
    EXPECT_EQ(in_vain, GetParam().in_vain);
    EXPECT_GE(sleeps - before, GetParam().least_sleeps);
}
INSTANTIATE_TEST_SUITE_P(, WatchedThread, testing::ValuesIn(kThreads),
                         [](const auto& row) { return row.param.name; });

struct OpenCase {
    const char* name;
    bool has_standard_input;
};
const OpenCase kOpens[] = {
    {"BesideAnOpenStandardInput",  true },
    {"WhereStandardInputIsClosed", false},
};
class LinkWatchFiles : public testing::TestWithParam<OpenCase> {};

TEST_P(LinkWatchFiles, HaveNoStandardNumberAndAreNotInherited)
{
    constexpr int kNumbers = 64;
    const Descriptor kept(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, kNumbers));
    support::ParkedInput::park();
    if (!GetParam().has_standard_input)
        close(STDIN_FILENO);
    std::vector<bool> before;
    for (int number = 0; number < kNumbers; ++number)
        before.push_back(support::is_open(number));
    {
        const LinkWatch watch;
        EXPECT_TRUE(watch.is_possible());
        int opened = 0;
        for (int number = 0; number < kNumbers; ++number) {
            if (before[static_cast<std::size_t>(number)] || !support::is_open(number))
                continue;
            ++opened;
            EXPECT_GT(number, STDERR_FILENO);
            EXPECT_EQ(fcntl(number, F_GETFD), FD_CLOEXEC) << number;
        }
        EXPECT_EQ(opened, 2);
    }
    for (int number = 0; number < kNumbers; ++number)
        EXPECT_EQ(support::is_open(number), before[static_cast<std::size_t>(number)]) << number;
    if (kept.get() >= 0)
        dup2(kept.get(), STDIN_FILENO);
}
INSTANTIATE_TEST_SUITE_P(, LinkWatchFiles, testing::ValuesIn(kOpens),
                         [](const auto& row) { return row.param.name; });

TEST(LinkWatchWithoutFiles, IsNotPossible)
{
    constexpr pid_t kNobody = 0;
    const LinkWatch watch(kSketchPort, kNobody);
    EXPECT_FALSE(watch.is_possible());
}

TEST(LinkWatchWithoutFiles, NeverTakesAnythingForWaiting)
{
    constexpr pid_t kNobody = 0;
    Connected ends;
    close_and_wait(ends);
    LinkWatch watch(static_cast<std::uint16_t>(ends.listener.port()), kNobody);
    for (int looks = 0; looks < 8; ++looks) {
        EXPECT_FALSE(watch.waits_in_vain());
        EXPECT_TRUE(watch.look().at_its_end);
        EXPECT_EQ(watch.look().thread, Thread::unknown);
        poll(nullptr, 0, 50);
    }
}

} // namespace
