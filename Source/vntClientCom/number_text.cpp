#include "Source/vntClientCom/number_text.h"

#if __has_include(<charconv>)
#include <charconv>
#endif
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <locale>
#include <sstream>
#include <system_error>

namespace vnt {
namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// A number as it stands in a text: the value is (-1)^negative digits 10^exponent.
struct Decimal {
    const char* begin = nullptr; // behind the sign
    const char* end = nullptr;
    bool negative = false;
    bool valid = false;
    std::uint64_t digits = 0; // without leading zeros
    std::int64_t exponent = 0;
};

// So far beyond every double that adding the digits' own places changes nothing.
constexpr std::int64_t kHugeExponent = std::int64_t{1} << 40;

const char* read_exponent(const char* p, const char* end, Decimal& number)
{
    bool negative = false;
    if (p != end && (*p == '+' || *p == '-'))
        negative = *p++ == '-';
    number.valid = p != end && is_digit(*p);
    std::int64_t value = 0;
    for (; p != end && is_digit(*p); ++p)
        value = value < kHugeExponent ? value * 10 + (*p - '0') : value;
    number.exponent += negative ? -value : value;
    return p;
}

// The longest run that a number can start with: sign, digits with at most one point, and an exponent.
Decimal read_decimal(const char* p, const char* end)
{
    constexpr std::uint64_t kRoom = (std::numeric_limits<std::uint64_t>::max() - 9) / 10;
    Decimal number;
    if (p != end && (*p == '+' || *p == '-'))
        number.negative = *p++ == '-';
    number.begin = p;
    bool point = false;
    std::int64_t dropped = 0; // digits in front of the point that digits has no room for
    std::int64_t places = 0;  // digits behind the point that are in digits
    for (; p != end; ++p) {
        if (*p == '.' && !point) {
            point = true;
            continue;
        }
        if (!is_digit(*p))
            break;
        number.valid = true;
        if (number.digits <= kRoom) {
            number.digits = number.digits * 10 + static_cast<std::uint64_t>(*p - '0');
            places += point ? 1 : 0;
        } else {
            dropped += point ? 0 : 1;
        }
    }
    number.exponent = dropped - places;
    if (number.valid && p != end && (*p == 'e' || *p == 'E'))
        p = read_exponent(p + 1, end, number);
    number.end = p;
    return number;
}

// Exact where both factors are: a whole number up to 2^53 and a power of ten up to 10^22 have no rounding
// error, so that one operation rounds once. Only where it rounds to a double at once: not with wider
// intermediate results. More digits than fit in Decimal are more than 2^53.
// Source: W. D. Clinger, How to Read Floating Point Numbers Accurately, PLDI 1990.
bool try_exact_product(const Decimal& number, double& value)
{
#if !defined(FLT_EVAL_METHOD) || FLT_EVAL_METHOD != 0
    return false;
#endif
    constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                  1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    constexpr std::uint64_t kExactWhole = std::uint64_t{1} << 53;
    if (number.digits > kExactWhole || number.exponent < -22 || number.exponent > 22)
        return false;
    const auto whole = static_cast<double>(number.digits);
    value = number.exponent < 0 ? whole / kPowers[-number.exponent] : whole * kPowers[number.exponent];
    return true;
}

// What is no finite double, or too small for any, by the side that it left the range on.
double out_of_range(const Decimal& number)
{
    return number.exponent > 0 ? std::numeric_limits<double>::max() : 0.0;
}

double nearest_double(const Decimal& number)
{
    double value = 0.0;
    if (number.digits == 0 || try_exact_product(number, value))
        return value;
#if defined(__cpp_lib_to_chars) && __cpp_lib_to_chars >= 201611L
    const bool in_range = std::from_chars(number.begin, number.end, value).ec == std::errc();
#else
    std::istringstream stream(std::string(number.begin, number.end));
    stream.imbue(std::locale::classic());
    stream >> value; // some libraries fail on a number too small to be normal, and set it all the same
    constexpr bool in_range = true;
#endif
    return in_range && std::isfinite(value) ? value : out_of_range(number);
}

// The common text, a number and nothing else: what from_chars takes to the end, and is no "inf" or "nan", a
// stream takes to the end too. False when it is anything else, or the library has no such function.
bool try_whole_text([[maybe_unused]] const std::string& text, [[maybe_unused]] double& value)
{
#if defined(__cpp_lib_to_chars) && __cpp_lib_to_chars >= 201611L
    const char* const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stopped == end && is_digit(end[-1]);
#else
    return false;
#endif
}

} // namespace

double number_of_text(const std::string& text)
{
    double value = 0.0;
    if (try_whole_text(text, value))
        return value;
    const char* p = text.data();
    const char* const end = p + text.size();
    while (p != end && is_space(*p))
        ++p;
    const Decimal number = read_decimal(p, end);
    if (!number.valid)
        return 0.0;
    value = nearest_double(number);
    return number.negative ? -value : value;
}

} // namespace vnt
