// Numbers, lengths and transforms as SVG attributes write them.
//
// Units:  1 px is 1/96 inch; 1 pt is 1/72 inch.
// Errors: what is not written as it should be gives none; nothing depends on the locale.
// Source: Scalable Vector Graphics (SVG) 1.1, chapters 4.2, 7.6 and 7.7.
#pragma once

#include "host/kit/affine.h"

#include <optional>
#include <string_view>

namespace vnt::host {

constexpr double kPxPerPt = 96.0 / 72.0;

// Takes a number from the beginning of text; leaves text as it is when there is none.
std::optional<double> take_number(std::string_view& text);

// Takes what may stand between two numbers: blanks and at most one comma.
void take_separator(std::string_view& text);

std::string_view without_blanks(std::string_view text);

enum class LengthUnit { None, Px, Mm, Cm, In, Pt, Pc, Percent };

struct Length {
    double value;
    LengthUnit unit;
};

// A number with one of the units above; em, ex and the like are none, as they hang on a font.
std::optional<Length> try_read_length(std::string_view text);

// px for one unit; user units count as px, and a per cent as a hundredth of whole.
double px_of(const Length& length, double whole);

// A list of matrix, translate, scale, rotate, skewX and skewY; the identity when it is empty.
std::optional<Affine> try_read_transform(std::string_view text);

} // namespace vnt::host
