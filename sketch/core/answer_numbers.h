// Numbers of an answer: rounded far below what is seen, so that what is read again and sent again is the same
// text, and written with the fewest digits that give the same double.
//
// Errors: nothing throws or reports.
#pragma once

#include <string>

namespace vnt::sketch {

// Rounds coordinates and lengths to a decimal of at most a millionth of a sheet pixel; or not at all, where a
// double has no digits to spare.
class Decimals {
public:
    // pixel: the size of a sheet pixel in the artwork.
    explicit Decimals(double pixel);

    double operator()(double value) const;

private:
    double factor_ = 1; // a power of ten
    bool is_fine_ = true;
};

// Angles, and elements of a posture, which are as large: to 12 decimals, and a whole number of quarter turns
// exactly.
double rounded_angle(double angle);
double rounded_share(double value);

// Appends the number with a decimal point, and an exponent where that is shorter.
void append_number(std::string& text, double value);

} // namespace vnt::sketch
