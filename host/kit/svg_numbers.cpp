#include "host/kit/svg_numbers.h"

#include "host/kit/xml_tokens.h"

#include <array>
#include <charconv>
#include <cmath>
#include <vector>

namespace vnt::host {
namespace {

constexpr double kPi = 3.14159265358979323846;

struct UnitName {
    std::string_view name;
    LengthUnit unit;
    double px;
};

constexpr std::array<UnitName, 7> kUnits = {
    {
     {"", LengthUnit::None, 1},
     {"px", LengthUnit::Px, 1},
     {"mm", LengthUnit::Mm, 96 / 25.4},
     {"cm", LengthUnit::Cm, 96 / 2.54},
     {"in", LengthUnit::In, 96},
     {"pt", LengthUnit::Pt, kPxPerPt},
     {"pc", LengthUnit::Pc, 16},
     }
};

using Arguments = std::vector<double>;

std::optional<Affine> matrix_of(std::string_view name, const Arguments& n)
{
    const auto tangent = [](double degrees) { return std::tan(degrees * kPi / 180); };
    const std::size_t count = n.size();
    if (name == "matrix" && count == 6)
        return Affine{n[0], n[1], n[2], n[3], n[4], n[5]};
    if (name == "translate" && (count == 1 || count == 2))
        return Affine::translation(n[0], count == 2 ? n[1] : 0);
    if (name == "scale" && (count == 1 || count == 2))
        return Affine::scaling(n[0], n[count - 1]);
    if (name == "rotate" && count == 1)
        return Affine::rotation(n[0]);
    if (name == "rotate" && count == 3)
        return Affine::translation(n[1], n[2]) * Affine::rotation(n[0]) * Affine::translation(-n[1], -n[2]);
    if (name == "skewX" && count == 1)
        return Affine{1, 0, tangent(n[0]), 1, 0, 0};
    if (name == "skewY" && count == 1)
        return Affine{1, tangent(n[0]), 0, 1, 0, 0};
    return std::nullopt;
}

void take_blanks(std::string_view& text)
{
    while (!text.empty() && is_xml_blank(text.front()))
        text.remove_prefix(1);
}

// ( number separator number ... )
std::optional<Arguments> take_arguments(std::string_view& text)
{
    take_blanks(text);
    if (!text.starts_with('('))
        return std::nullopt;
    text.remove_prefix(1);
    take_blanks(text);
    Arguments numbers;
    while (!text.starts_with(')')) {
        const std::optional<double> number = take_number(text);
        if (!number)
            return std::nullopt;
        numbers.push_back(*number);
        take_blanks(text);
        if (text.starts_with(',')) {
            text.remove_prefix(1);
            take_blanks(text);
            if (text.starts_with(')'))
                return std::nullopt;
        }
    }
    text.remove_prefix(1);
    return numbers;
}

} // namespace

std::optional<double> take_number(std::string_view& text)
{
    std::string_view rest = text;
    const bool negative = rest.starts_with('-');
    if (negative || rest.starts_with('+'))
        rest.remove_prefix(1);
    // from_chars also knows names of numbers, and signs.
    const auto is_digit = [&](std::size_t i) { return i < rest.size() && rest[i] >= '0' && rest[i] <= '9'; };
    if (!is_digit(0) && !(rest.starts_with('.') && is_digit(1)))
        return std::nullopt;
    double number = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), number);
    const auto length = static_cast<std::size_t>(end - rest.data());
    if (error == std::errc::result_out_of_range)
        number =
            rest.substr(0, length).find("e-") != rest.npos || rest.substr(0, length).find("E-") != rest.npos
                ? 0
                : HUGE_VAL;
    if (!std::isfinite(number))
        return std::nullopt;
    text = rest.substr(length);
    return negative ? -number : number;
}

void take_separator(std::string_view& text)
{
    take_blanks(text);
    if (text.starts_with(',')) {
        text.remove_prefix(1);
        take_blanks(text);
    }
}

std::string_view without_blanks(std::string_view text)
{
    take_blanks(text);
    while (!text.empty() && is_xml_blank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::optional<Length> try_read_length(std::string_view text)
{
    text = without_blanks(text);
    const std::optional<double> value = take_number(text);
    if (!value)
        return std::nullopt;
    if (text == "%")
        return Length{*value, LengthUnit::Percent};
    for (const UnitName& unit : kUnits) {
        if (text == unit.name)
            return Length{*value, unit.unit};
    }
    return std::nullopt;
}

double px_of(const Length& length, double whole)
{
    for (const UnitName& unit : kUnits) {
        if (length.unit == unit.unit)
            return length.value * unit.px;
    }
    return length.value / 100 * whole;
}

std::optional<Affine> try_read_transform(std::string_view text)
{
    text = without_blanks(text);
    Affine product;
    if (text == "none")
        return product;
    while (!text.empty()) {
        const std::string_view name = text.substr(0, text.find_first_of(" \t\r\n("));
        text.remove_prefix(name.size());
        const std::optional<Arguments> arguments = take_arguments(text);
        const std::optional<Affine> map = arguments ? matrix_of(name, *arguments) : std::nullopt;
        if (!map)
            return std::nullopt;
        product = product * *map;
        take_separator(text);
    }
    return product;
}

} // namespace vnt::host
