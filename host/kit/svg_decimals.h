// Decimal numbers for SVG, with no more digits than what they stand for has.
//
// Errors: none; the numbers are finite. Nothing depends on the locale.
#pragma once

#include <string>

namespace vnt::host {

// Appends the decimal number with the fewest digits that differs from value by no more than tolerance, the one
// nearest to value where several do. With an exponent where that saves more than three characters.
//
// tolerance: >= 0; below what a double holds of value it gives the shortest number that reads back as value.
void append_decimal(std::string& text, double value, double tolerance);

// What is less than this off number is the same number in single precision, on either side: half the way to the
// nearer neighbour. Above a power of two it is half of what would do, as the neighbour below is the nearer one.
double single_precision_slack(float number);

} // namespace vnt::host
