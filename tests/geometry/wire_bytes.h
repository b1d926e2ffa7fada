// The records' byte forms, written out by hand: each number by its bit pattern, in the host's byte order.
#pragma once

#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>

namespace wire {

// Bit patterns of doubles.
constexpr std::uint64_t kHalf = 0x3FE0000000000000;
constexpr std::uint64_t kOne = 0x3FF0000000000000;
constexpr std::uint64_t kTwo = 0x4000000000000000;
constexpr std::uint64_t kThree = 0x4008000000000000;
constexpr std::uint64_t kFour = 0x4010000000000000;
constexpr std::uint64_t kFive = 0x4014000000000000;
constexpr std::uint64_t kSix = 0x4018000000000000;
constexpr std::uint64_t kNegativeZero = 0x8000000000000000;
constexpr std::uint64_t kNaN = 0xFFF8000000000123; // quiet, negative, with a payload

template <class Word>
std::string raw(Word word)
{
    std::string bytes(sizeof word, '\0');
    std::memcpy(bytes.data(), &word, sizeof word);
    return bytes;
}

inline std::string f64(std::uint64_t bits) { return raw(bits); }
inline std::string i32(std::int32_t value) { return raw(value); }

inline double double_of(std::uint64_t bits)
{
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

inline std::string point(std::uint64_t x, std::uint64_t y, std::uint64_t z)
{
    return f64(x) + f64(y) + f64(z);
}

inline std::string identity()
{
    std::string bytes;
    for (int element = 0; element < 16; ++element)
        bytes += f64(element % 5 == 0 ? kOne : 0);
    return bytes;
}

template <class Record>
std::string bytes_of(const Record& record)
{
    std::ostringstream out;
    record.serialize(out);
    return out.str();
}

template <class Record>
std::string text_of(const Record& record)
{
    std::ostringstream out;
    out << record;
    return out.str();
}

} // namespace wire
