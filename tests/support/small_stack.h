// Runs what must not use the call stack in proportion to its input, on a stack too small for it to.
#pragma once

#include <pthread.h>

#include <cstddef>
#include <stdexcept>

namespace support {

constexpr std::size_t kSmallStack = std::size_t{256} * 1024;

// Calls body on a thread with a small stack, and waits for it. Overflowing that stack ends the process.
template <class Body>
void run_on_small_stack(Body body)
{
    pthread_attr_t attributes;
    pthread_t thread;
    const auto run = [](void* argument) -> void* {
        (*static_cast<Body*>(argument))();
        return nullptr;
    };
    if (pthread_attr_init(&attributes) != 0 || pthread_attr_setstacksize(&attributes, kSmallStack) != 0 ||
        pthread_create(&thread, &attributes, run, &body) != 0)
        throw std::runtime_error("no thread with a small stack");
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

} // namespace support
