// Numbers from a seed, the same on every machine: the library's distributions are not.
#pragma once

#include <cmath>
#include <cstdint>
#include <random>

class Seeded {
public:
    explicit Seeded(std::uint64_t seed) : engine_(seed) {}

    // From lo to below hi, evenly.
    double between(double lo, double hi)
    {
        return lo + (hi - lo) * static_cast<double>(engine_() >> 11) * 0x1p-53;
    }

    // From lo to hi, every octave as likely as any other.
    double octaves_between(double lo, double hi) { return std::exp2(between(std::log2(lo), std::log2(hi))); }

    // From lo to hi, both included.
    int integer(int lo, int hi)
    {
        return lo + static_cast<int>(engine_() % static_cast<std::uint64_t>(hi - lo + 1));
    }

private:
    std::mt19937_64 engine_;
};
