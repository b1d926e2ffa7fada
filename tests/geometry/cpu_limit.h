// Whether something ends at all, told by the time that the processor spends on it: a busy machine, which lets
// a process wait, changes nothing.
#pragma once

#include "tests/support/child_process.h"

#include <sys/time.h>

#include <csignal>
#include <stdexcept>

// True when body returns in a child process, false when it uses up its processor time there.
template <class Body>
bool ends_in_child(Body body)
{
    constexpr suseconds_t kProcessorTime_us = 300'000; // some million steps of a bisection; an arc takes 50
    constexpr int kLimit_ms = 60'000;
    const support::ChildEnd end = support::run_in_child(
        [&body] {
            const itimerval timer{
                {0, 0                },
                {0, kProcessorTime_us}
            };
            std::signal(SIGVTALRM, SIG_DFL);
            setitimer(ITIMER_VIRTUAL, &timer, nullptr);
            body();
            return 0;
        },
        kLimit_ms);
    if (end.ended && end.status == 0)
        return true;
    if (end.ended && end.status == -SIGVTALRM)
        return false;
    throw std::runtime_error("the child neither returned nor used its time up");
}
