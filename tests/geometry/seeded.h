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

    // From lo to hi, which are above 0: every octave as likely as any other, evenly within each.
    double octaves_between(double lo, double hi)
    {
        const double place = between(octaves_to(lo), octaves_to(hi));
        const double octave = std::floor(place);
        return std::ldexp(1.0 + (place - octave), static_cast<int>(octave));
    }

    // From lo to hi, both included.
    int integer(int lo, int hi)
    {
        return lo + static_cast<int>(engine_() % static_cast<std::uint64_t>(hi - lo + 1));
    }

private:
    // The octaves from 1, with a straight line within each. A logarithm's last bits differ between libraries.
    static double octaves_to(double value)
    {
        int exponent;
        const double half = std::frexp(value, &exponent); // from 0.5 to below 1
        return exponent - 1 + (2.0 * half - 1.0);
    }

    std::mt19937_64 engine_;
};
