// A process whose numbers look as on the Continent.
#pragma once

#include <locale>
#include <string>

namespace support {

// A comma for the point and dots between the thousands, for everything that does not ask for the classic
// locale.
class ContinentalNumbers {
public:
    ContinentalNumbers() : before_(std::locale::global(std::locale(std::locale::classic(), new Facet))) {}
    ContinentalNumbers(const ContinentalNumbers&) = delete;
    ContinentalNumbers& operator=(const ContinentalNumbers&) = delete;
    ~ContinentalNumbers() { std::locale::global(before_); }

private:
    struct Facet : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::locale before_;
};

} // namespace support
