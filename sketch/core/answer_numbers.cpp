#include "sketch/core/answer_numbers.h"

#include "sketch/core/plane.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace vnt::sketch {
namespace {

constexpr double kShares = 1e12;
constexpr double kMostDigits = 22;    // 10 to the 22nd is the last power of ten that a double holds exactly
constexpr double kLastExact = 0x1p52; // whole numbers beyond it are no doubles with a half between them
constexpr double kQuarterTurn = 1.5707963267948966;

} // namespace

Decimals::Decimals(double pixel)
{
    const double digits = std::floor(std::log10(pixel)) - 6; // NaN and infinite: no rounding
    if (!(std::abs(digits) <= kMostDigits)) {
        factor_ = 0;
        return;
    }
    is_fine_ = digits < 0;
    for (int i = 0; i < static_cast<int>(std::abs(digits)); ++i)
        factor_ *= 10;
}

double Decimals::operator()(double value) const
{
    const double steps = is_fine_ ? value * factor_ : value / factor_;
    if (factor_ == 0 || !(std::abs(steps) < kLastExact))
        return value;
    return is_fine_ ? std::round(steps) / factor_ : std::round(steps) * factor_;
}

double rounded_share(double value) { return std::round(value * kShares) / kShares; }

double rounded_angle(double angle)
{
    const double quarters = std::round(angle / kQuarterTurn);
    return std::abs(angle - quarters * kQuarterTurn) < 1 / kShares ? quarters * kQuarterTurn
                                                                   : rounded_share(angle);
}

void append_number(std::string& text, double value)
{
    char buffer[32]; // 24 are the most that a double needs
    const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value + 0.0); // -0 is 0
    static_cast<void>(error);
    const std::string_view digits(buffer, static_cast<std::size_t>(end - buffer));
    const std::size_t exponent = std::min(digits.find('e'), digits.size());
    text += digits.substr(0, exponent);
    if (digits.find('.') == digits.npos)
        text += ".0";
    text += digits.substr(exponent);
}

} // namespace vnt::sketch
