#include "tests/plugin/failing_memory.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();
std::atomic<std::size_t> limit = kNoLimit;

} // namespace

void* operator new(std::size_t size)
{
    void* const memory = size < limit ? std::malloc(size != 0 ? size : 1) : nullptr;
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

void* operator new[](std::size_t size) { return operator new(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace plugin_tests {

MemoryLimit::MemoryLimit(std::size_t bytes) { limit = bytes; }
MemoryLimit::~MemoryLimit() { limit = kNoLimit; }

} // namespace plugin_tests
