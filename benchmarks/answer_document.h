// Answers as a sketch application writes them, made from a seed: the same bytes on every machine.
//
// Shapes: one line of XML with root "vant", without its line feed. A shape is a stroke of 1 to 4 primitives,
//         of all seven kinds, and about 1.1 kB long.
// Units:  coordinates lie within ±1000, radii below 1000, angles are radians; numbers have 16 digits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace bench {

inline constexpr std::uint64_t kAnswerSeed = 4910;

// Where a drawing lies: anywhere in space, so that every coordinate and all nine numbers of a posture's
// rotation have 16 digits; or in the plane z = 0, whose zeros and ones are written as one digit.
enum class Lie { in_space, flat };

std::string answer_document(std::size_t shapes, Lie lie = Lie::in_space, std::uint64_t seed = kAnswerSeed);

} // namespace bench
