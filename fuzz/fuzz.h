// What a fuzzed unit defines, and how it says that something is wrong.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

// Tries one input; returns 0. Whatever is wrong ends the process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

inline std::string text_of(const std::uint8_t* data, std::size_t size)
{
    return std::string(data, data + size);
}

inline void require(bool holds, const char* what, const std::string& expected = "",
                    const std::string& found = "")
{
    if (holds)
        return;
    std::fprintf(stderr, "broken: %s\n", what);
    if (!expected.empty() || !found.empty())
        std::fprintf(stderr, "expected:\n%s\nfound:\n%s\n", expected.c_str(), found.c_str());
    std::abort();
}

} // namespace fuzz
