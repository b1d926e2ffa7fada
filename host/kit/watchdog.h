// A thread that looks on while the plug-in runs: it ends a wait that lasts too long, or that is in vain.
//
// Units:  time on the steady clock, which a machine that sleeps stops.
// When:   started before the plug-in runs and, where memory is limited, before that: from start's return on the
//         thread opens no descriptor, allocates nothing and takes no signal.
// Owner:  whoever starts it; its end stops the thread at once and waits for it, and no callback runs after that.
// Errors: start alone can fail, for want of a thread. A link that cannot be judged (link_watch.h) is not watched.
#pragma once

#include "host/kit/link_watch.h"
#include "host/kit/result.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace vnt::host {

enum class Ended {
    time_up,
    closed_without_answer, // the sketch application has closed the connection, and the plug-in waits on
};

struct Watch {
    std::optional<std::chrono::steady_clock::time_point> deadline; // none: no limit
    bool link = false; // whether to watch the connection of the thread that starts the watchdog
    std::uint16_t port = kSketchPort;

    // Both callbacks run on the watchdog's thread, while the main thread may stand anywhere: inside malloc, with
    // a stream's lock held, at the memory's limit. So they must not allocate, throw, open a descriptor, take a
    // lock or use stdio; write and _exit are for them, with texts that were made before.

    // Called once and never again, also when it returns. It is meant to end the process.
    std::function<void(Ended)> on_end;
    // Called every tick_interval with the time since the start, until on_end has been called.
    std::function<void(std::chrono::nanoseconds)> on_tick;
    std::chrono::nanoseconds tick_interval = std::chrono::seconds(1);
};

class Watchdog {
public:
    static Result<std::unique_ptr<Watchdog>> start(Watch watch);

    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    ~Watchdog();

private:
    using Clock = std::chrono::steady_clock;

    explicit Watchdog(Watch watch);
    void run();
    std::optional<Ended> look(Clock::time_point now);
    void wait_until_next(std::unique_lock<std::mutex>& lock, Clock::time_point now);

    Watch watch_;
    std::optional<LinkWatch> link_;
    Clock::time_point started_;
    Clock::time_point next_tick_;
    std::mutex mutex_;
    std::condition_variable stop_called_;
    bool stopped_ = false;
    std::thread thread_;
};

} // namespace vnt::host
