#include "host/kit/svg_decimals.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace vnt::host {
namespace {

constexpr std::size_t kMostDecimals = 12;
constexpr std::array<double, kMostDecimals + 1> kPowers = {1,   1e1, 1e2, 1e3,  1e4,  1e5, 1e6,
                                                           1e7, 1e8, 1e9, 1e10, 1e11, 1e12};
constexpr double kExactIntegers = 9007199254740992.0; // 2^53: below it a quotient by 10^n reads back exactly

// number / 10^decimals
void append_scaled(std::string& text, std::int64_t number, int decimals)
{
    std::array<char, 24> digits;
    const bool negative = number < 0;
    const char* end =
        std::to_chars(digits.data(), digits.data() + digits.size(), negative ? -number : number).ptr;
    const auto count = static_cast<int>(end - digits.data());
    if (negative)
        text += '-';
    if (count > decimals) {
        text.append(digits.data(), static_cast<std::size_t>(count - decimals));
    } else {
        text += '0';
    }
    if (decimals == 0)
        return;
    text += '.';
    const int zeros = count < decimals ? decimals - count : 0;
    text.append(static_cast<std::size_t>(zeros), '0');
    text.append(end - (decimals - zeros), end);
}

// The integer nearest to a number below 2^53, one of the two nearest where both are about as near.
double nearest_integer(double number)
{
    return static_cast<double>(static_cast<std::int64_t>(number + std::copysign(0.5, number)));
}

// False when value or tolerance is not of the common size: then nothing is appended.
bool try_append_plain(std::string& text, double value, double tolerance)
{
    // With 10^-decimals <= 2 tolerance the nearest decimal is within tolerance. Tolerances of 0.5 and more are
    // those of numbers whose last digits are zeros in front of the point.
    std::size_t decimals = 0;
    while (decimals <= kMostDecimals && !(kPowers[decimals] * (2 * tolerance) >= 1))
        ++decimals;
    if (tolerance > 0.5 || decimals > kMostDecimals ||
        !(std::abs(value) * kPowers[decimals] < kExactIntegers))
        return false;
    double scaled = nearest_integer(value * kPowers[decimals]);
    const auto is_near = [&](double number, std::size_t n) {
        return std::abs(number / kPowers[n] - value) <= tolerance;
    };
    if (!is_near(scaled, decimals))
        return false;
    while (decimals > 0) {
        const double shorter = nearest_integer(value * kPowers[decimals - 1]);
        if (!is_near(shorter, decimals - 1))
            break;
        scaled = shorter;
        --decimals;
    }
    append_scaled(text, static_cast<std::int64_t>(scaled), static_cast<int>(decimals));
    return true;
}

// From "-d.ddde+XX": the same number, without an exponent where that is hardly longer.
void append_scientific(std::string& text, std::string_view written)
{
    if (written.front() == '-') {
        text += '-';
        written.remove_prefix(1);
    }
    const std::size_t mark = written.find('e');
    std::string digits(written.substr(0, 1));
    if (mark > 2)
        digits += written.substr(2, mark - 2);
    int exponent = 0;
    const std::size_t sign = written[mark + 1] == '+' ? 2 : 1; // from_chars takes no plus
    std::from_chars(written.data() + mark + sign, written.data() + written.size(), exponent);

    std::string plain = digits;
    const int behind = static_cast<int>(digits.size()) - 1 - exponent; // digits behind the point
    if (behind <= 0)
        plain.append(static_cast<std::size_t>(-behind), '0');
    else if (exponent >= 0)
        plain.insert(static_cast<std::size_t>(exponent) + 1, ".");
    else
        plain.insert(0, "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0'));
    if (digits.size() > 1)
        digits.insert(1, ".");
    digits += 'e' + std::to_string(exponent);
    constexpr std::size_t kWorthAnExponent = 3;
    text += plain.size() <= digits.size() + kWorthAnExponent ? plain : digits;
}

} // namespace

void append_decimal(std::string& text, double value, double tolerance)
{
    if (std::abs(value) <= tolerance) {
        text += '0';
        return;
    }
    if (try_append_plain(text, value, tolerance))
        return;
    std::array<char, 40> written;
    char* const last = written.data() + written.size();
    for (int digits = 0; digits <= 16; ++digits) {
        const char* const end =
            std::to_chars(written.data(), last, value, std::chars_format::scientific, digits).ptr;
        double read = 0;
        const auto [rest, error] = std::from_chars(written.data(), end, read);
        if (error == std::errc() && std::abs(read - value) <= tolerance)
            return append_scientific(text, {written.data(), static_cast<std::size_t>(end - written.data())});
    }
}

double single_precision_slack(float number)
{
    // Neighbours in single precision are neighbours as integers; of 0 only the upper one is there.
    const std::uint32_t bits = std::bit_cast<std::uint32_t>(std::abs(number));
    const std::uint32_t neighbour = bits == 0 ? 1 : bits - 1;
    return std::abs(static_cast<double>(std::bit_cast<float>(bits)) -
                    static_cast<double>(std::bit_cast<float>(neighbour))) /
           2;
}

} // namespace vnt::host
