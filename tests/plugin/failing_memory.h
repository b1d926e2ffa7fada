// Memory that runs out on demand, in the program that links failing_memory.cpp.
#pragma once

#include <cstddef>

namespace plugin_tests {

// While one lives, every operator new of that many bytes or more throws std::bad_alloc.
class MemoryLimit {
public:
    explicit MemoryLimit(std::size_t bytes);
    MemoryLimit(const MemoryLimit&) = delete;
    MemoryLimit& operator=(const MemoryLimit&) = delete;
    ~MemoryLimit();
};

} // namespace plugin_tests
