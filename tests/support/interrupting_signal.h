// A signal that interrupts system calls, and how to send it for sure.
#pragma once

#include <pthread.h>
#include <signal.h>

#include <atomic>
#include <thread>

namespace support {

// Has SIGUSR1 interrupt system calls for as long as it lives.
class InterruptingSignal {
public:
    InterruptingSignal()
    {
        struct sigaction action {};
        action.sa_handler = [](int) { ++taken_; };
        sigaction(SIGUSR1, &action, &before_); // without SA_RESTART
    }
    InterruptingSignal(const InterruptingSignal&) = delete;
    InterruptingSignal& operator=(const InterruptingSignal&) = delete;
    ~InterruptingSignal() { sigaction(SIGUSR1, &before_, nullptr); }

    // Returns when the thread has taken each of them.
    static void interrupt(std::thread& thread, int times)
    {
        for (int i = 0; i < times; ++i)
            send_one(thread.native_handle(), [] { return false; });
    }

    // Until has_ended says so, however early the first of them come.
    template <class HasEnded>
    static void interrupt_until(pthread_t thread, HasEnded has_ended)
    {
        while (!has_ended())
            send_one(thread, has_ended);
    }

private:
    template <class HasEnded>
    static void send_one(pthread_t thread, HasEnded has_ended)
    {
        const int before = taken_;
        pthread_kill(thread, SIGUSR1);
        while (taken_ == before && !has_ended())
            std::this_thread::yield();
    }

    static inline std::atomic<int> taken_ = 0;
    struct sigaction before_ {};
};

} // namespace support
