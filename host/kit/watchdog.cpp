#include "host/kit/watchdog.h"

#include <pthread.h>
#include <signal.h>

#include <algorithm>
#include <system_error>
#include <utility>

namespace vnt::host {
namespace {

constexpr std::chrono::milliseconds kShortestTick(1);

// Blocks all signals in the calling thread, and so in threads that it starts; sets them back at its end.
class SignalsBlocked {
public:
    SignalsBlocked()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_;
};

} // namespace

Result<std::unique_ptr<Watchdog>> Watchdog::start(Watch watch)
{
    std::unique_ptr<Watchdog> watchdog(new Watchdog(std::move(watch)));
    const SignalsBlocked blocked;
    try {
        watchdog->thread_ = std::thread(&Watchdog::run, watchdog.get());
    } catch (const std::system_error& error) {
        return Problem{std::string("cannot watch over the plug-in: no thread can be started (") +
                       error.code().message() + "); close other programs, or raise the limit of processes"};
    }
    return watchdog;
}

Watchdog::Watchdog(Watch watch) : watch_(std::move(watch)), started_(Clock::now())
{
    watch_.tick_interval = std::max<std::chrono::nanoseconds>(watch_.tick_interval, kShortestTick);
    next_tick_ = started_ + watch_.tick_interval;
    if (watch_.link)
        link_.emplace(watch_.port);
}

Watchdog::~Watchdog()
{
    {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
    }
    stop_called_.notify_one();
    if (thread_.joinable())
        thread_.join();
}

// Calls back without the lock, so that whoever ends the watchdog never waits for it with the lock held.
void Watchdog::run()
{
    std::unique_lock lock(mutex_);
    while (!stopped_) {
        lock.unlock();
        const Clock::time_point now = Clock::now();
        const std::optional<Ended> ended = look(now);
        if (ended) {
            if (watch_.on_end)
                watch_.on_end(*ended);
            return;
        }
        if (watch_.on_tick && now >= next_tick_) {
            watch_.on_tick(now - started_);
            // Ticks that were missed are not made up for.
            while (next_tick_ <= now)
                next_tick_ += watch_.tick_interval;
        }
        lock.lock();
        wait_until_next(lock, now);
    }
}

std::optional<Ended> Watchdog::look(Clock::time_point now)
{
    if (link_ && link_->waits_in_vain())
        return Ended::closed_without_answer;
    if (watch_.deadline && now >= *watch_.deadline)
        return Ended::time_up;
    return std::nullopt;
}

void Watchdog::wait_until_next(std::unique_lock<std::mutex>& lock, Clock::time_point now)
{
    Clock::time_point next = now + std::chrono::hours(1);
    if (link_)
        next = now + VainWait::kWindow;
    if (watch_.deadline)
        next = std::min(next, *watch_.deadline);
    if (watch_.on_tick)
        next = std::min(next, next_tick_);
    stop_called_.wait_until(lock, next, [this] { return stopped_; });
}

} // namespace vnt::host
