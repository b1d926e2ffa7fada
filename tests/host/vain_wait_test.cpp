// What is made of what LinkWatch sees: texts of /proc, and sequences of looks.
#include "host/kit/link_watch.h"

#include <gtest/gtest.h>

#include <sys/syscall.h>

#include <string>
#include <vector>

namespace {

using namespace vnt::host;
using namespace std::chrono_literals;
using Thread = LinkSight::Thread;

// --- What the files say

struct StatusCase {
    const char* name;
    const char* text;
    std::optional<std::uint64_t> sleeps;
};
const StatusCase kStatuses[] = {
    {"TheFieldIsFound",                      "Name:\tvant-host\nvoluntary_ctxt_switches:\t371\nnonvoluntary_ctxt_switches:\t12\n",
     371U                                                                                                                                     },
    {"BeyondThirtyTwoBits",                  "Name:\tx\nvoluntary_ctxt_switches:\t5000000000\nnon",                                5000000000U},
    {"TheOtherFieldIsNotTaken",              "Name:\tx\nnonvoluntary_ctxt_switches:\t12\n",                                        {}         },
    {"ATextThatEndsInTheNumberIsNotTrusted", "Name:\tx\nvoluntary_ctxt_switches:\t37",                                             {}         },
    {"AFieldWithoutANumber",                 "Name:\tx\nvoluntary_ctxt_switches:\t\n",                                             {}         },
    {"NoText",                               "",                                                                                   {}         },
};
class StatusTexts : public testing::TestWithParam<StatusCase> {};
TEST_P(StatusTexts, TellHowOftenAThreadSlept)
{
    EXPECT_EQ(sleeps_of_status(GetParam().text), GetParam().sleeps);
}
INSTANTIATE_TEST_SUITE_P(, StatusTexts, testing::ValuesIn(kStatuses),
                         [](const auto& row) { return row.param.name; });

std::string call(long number)
{
    return std::to_string(number) + " 0x0 0x0 0x0 0x0 0x7ffe 0x0 0x7ffc 0x7f88\n";
}

struct CallCase {
    const char* name;
    std::string text;
    Thread thread;
};
const CallCase kCalls[] = {
    {"Runs",                     "running\n",                  Thread::running},
    {"PausesInSelect",           call(SYS_pselect6),           Thread::pausing},
    {"PausesInPoll",             call(SYS_ppoll),              Thread::pausing},
    {"PausesInNanosleep",        call(SYS_nanosleep),          Thread::pausing},
    {"PausesInClockNanosleep",   call(SYS_clock_nanosleep),    Thread::pausing},
    {"WaitsForALock",            call(SYS_futex),              Thread::busy   },
    {"WaitsInAWrite",            call(SYS_write),              Thread::busy   },
    {"WaitsInAReceive",          call(SYS_recvfrom),           Thread::busy   },
    {"WaitsForAPageOfMemory",    "-1 0x7ffc0ac5a6d8 0x7f88\n", Thread::busy   },
    {"AnEmptyTextTellsNothing",  "",                           Thread::unknown},
    {"AnErrorsTextTellsNothing", "stopped\n",                  Thread::unknown},
};
class SystemCallTexts : public testing::TestWithParam<CallCase> {};
TEST_P(SystemCallTexts, TellWhatAThreadDoes)
{
    EXPECT_EQ(thread_of_system_call(GetParam().text), GetParam().thread);
}
INSTANTIATE_TEST_SUITE_P(, SystemCallTexts, testing::ValuesIn(kCalls),
                         [](const auto& row) { return row.param.name; });

// --- What a sequence of looks comes to

// A look in the words of a table: when in ms, what it saw of the thread, its sleeps so far, and the connection at its
// end: by its descriptor, on local port 100 unless told; -1: none is at its end.
LinkSight at(int ms, Thread thread, std::uint64_t sleeps, int descriptor = 5, std::uint16_t port = 100)
{
    LinkSight sight;
    sight.when += std::chrono::milliseconds(ms);
    if (descriptor >= 0)
        sight.at_its_end = LinkSight::Connection{descriptor, port};
    sight.thread = thread;
    sight.sleeps = sleeps;
    return sight;
}

constexpr Thread kPausing = Thread::pausing;
constexpr Thread kRunning = Thread::running;
constexpr int kNever = -1;

struct SequenceCase {
    const char* name;
    std::vector<LinkSight> sights;
    int judged_at; // the time in ms of the first look that says in vain
};
// clang-format off
const SequenceCase kSequences[] = {
    {"ThreeWindowsOfPauses",
     {at(0, kPausing, 10), at(50, kPausing, 300), at(100, kPausing, 600), at(150, kPausing, 900)}, 150},
    {"TwoWindowsAreTooFew",
     {at(0, kPausing, 10), at(50, kPausing, 300), at(100, kPausing, 600)}, kNever},
    {"FiveSleepsAWindowAreEnough",
     {at(0, kPausing, 0), at(50, kPausing, 5), at(100, kPausing, 10), at(150, kPausing, 15)}, 150},
    {"FourSleepsLeaveAWindowOpen",
     {at(0, kPausing, 0), at(50, kPausing, 4), at(100, kPausing, 8), at(150, kPausing, 12), at(200, kPausing, 16),
      at(250, kPausing, 20), at(300, kPausing, 24)}, 300},
    {"TheFirstLookMayFindTheThreadRunning",
     {at(0, kRunning, 10), at(50, kPausing, 300), at(100, kPausing, 600), at(150, kPausing, 900)}, 150},
    {"ALookThatFindsTheThreadRunningLeavesAWindowOpen",
     {at(0, kPausing, 0), at(50, kRunning, 300), at(100, kPausing, 600), at(150, kRunning, 900), at(200, kPausing, 1200),
      at(250, kPausing, 1500)}, 250},
    {"AThreadThatRunsInEveryLookIsNeverTakenForPausing",
     {at(0, kRunning, 0), at(50, kRunning, 300), at(100, kRunning, 600), at(150, kRunning, 900), at(200, kRunning, 1200),
      at(250, kRunning, 1500)}, kNever},
    {"AThreadThatDoesNotSleepIsNeverTakenForPausing",
     {at(0, kPausing, 7), at(50, kPausing, 7), at(100, kPausing, 7), at(150, kPausing, 7), at(200, kPausing, 7)},
     kNever},
    {"LooksThatComeTooOftenAddUp",
     {at(0, kPausing, 0), at(20, kPausing, 100), at(49, kPausing, 200), at(60, kPausing, 300), at(100, kPausing, 400),
      at(110, kPausing, 500), at(159, kPausing, 600), at(160, kPausing, 700)}, 160},
    {"AWindowThatStaysOpenTooLongEndsTheRow",
     {at(0, kPausing, 0), at(50, kPausing, 300), at(100, kPausing, 600), at(601, kPausing, 900), at(651, kPausing, 1200),
      at(701, kPausing, 1500), at(751, kPausing, 1800)}, 751},
    {"AWindowOfTheLongestLengthCounts",
     {at(0, kPausing, 0), at(500, kPausing, 300), at(1000, kPausing, 600), at(1500, kPausing, 900)}, 1500},
    {"OneBusyLookEndsTheRow",
     {at(0, kPausing, 0), at(50, kPausing, 300), at(100, kPausing, 600), at(150, Thread::busy, 900),
      at(200, kPausing, 1200), at(250, kPausing, 1500), at(300, kPausing, 1800), at(350, kPausing, 2100)}, 350},
    {"OneLookThatKnowsNothingEndsTheRow",
     {at(0, kPausing, 0), at(50, kPausing, 300), at(100, kPausing, 600), at(150, Thread::unknown, 0),
      at(200, kPausing, 1200), at(250, kPausing, 1500), at(300, kPausing, 1800)}, kNever},
    {"AConnectionThatIsNotAtItsEndEndsTheRow",
     {at(0, kPausing, 0), at(50, kPausing, 300), at(100, kPausing, 600), at(150, kPausing, 900, -1),
      at(200, kPausing, 1200), at(250, kPausing, 1500), at(300, kPausing, 1800)}, kNever},
    {"AnotherDescriptorBeginsAnew",
     {at(0, kPausing, 0), at(50, kPausing, 300), at(100, kPausing, 600), at(150, kPausing, 900, 6),
      at(200, kPausing, 1200, 6), at(250, kPausing, 1500, 6), at(300, kPausing, 1800, 6)}, 300},
    {"ANewConnectionOnTheSameDescriptorBeginsAnew",
     {at(0, kPausing, 0), at(50, kPausing, 300), at(100, kPausing, 600), at(150, kPausing, 900, 5, 101),
      at(200, kPausing, 1200, 5, 101), at(250, kPausing, 1500, 5, 101)}, kNever},
};
// clang-format on
class VainWaits : public testing::TestWithParam<SequenceCase> {};
TEST_P(VainWaits, AreJudgedByWindows)
{
    VainWait wait;
    int judged_at = kNever;
    for (const LinkSight& sight : GetParam().sights) {
        if (wait.judge(sight) && judged_at == kNever)
            judged_at = static_cast<int>(sight.when.time_since_epoch() / 1ms);
    }
    EXPECT_EQ(judged_at, GetParam().judged_at);
}
INSTANTIATE_TEST_SUITE_P(, VainWaits, testing::ValuesIn(kSequences),
                         [](const auto& row) { return row.param.name; });

} // namespace
