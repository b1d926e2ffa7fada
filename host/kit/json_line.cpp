#include "host/kit/json_line.h"

#include "host/kit/utf8.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <utility>

namespace vnt::host {
namespace {

template <class Number>
void append_real(std::string& line, Number value, int digits)
{
    if (!std::isfinite(value)) {
        line += std::isnan(value) ? "\"nan\"" : value > 0 ? "\"inf\"" : "\"-inf\"";
        return;
    }
    char buffer[40];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits).ptr;
    line.append(buffer, end);
}

void append(std::string& line, float value) { append_real(line, value, 9); }
void append(std::string& line, double value) { append_real(line, value, 17); }
void append(std::string& line, std::int64_t value) { line += std::to_string(value); }

void append_escaped(std::string& line, char c)
{
    constexpr std::string_view kHex = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
        line += '\\';
        line += c;
    } else if (c == '\n') {
        line += "\\n";
    } else if (byte < 0x20 || byte == 0x7F) {
        line += "\\u00";
        line += kHex[byte >> 4U];
        line += kHex[byte & 0xFU];
    } else {
        line += c;
    }
}

void append_text(std::string& line, std::string_view value)
{
    line += '"';
    while (!value.empty()) {
        const std::size_t good = size_of_utf8(value);
        for (const char c : value.substr(0, good))
            append_escaped(line, c);
        if (good < value.size())
            line += "\xEF\xBF\xBD";
        value.remove_prefix(std::min(good + 1, value.size()));
    }
    line += '"';
}

} // namespace

void JsonLine::begin_field(std::string_view name)
{
    if (line_.back() != '{')
        line_ += ',';
    line_.append("\"").append(name).append("\":");
}

JsonLine& JsonLine::text(std::string_view name, std::string_view value)
{
    begin_field(name);
    append_text(line_, value);
    return *this;
}

JsonLine& JsonLine::integer(std::string_view name, std::int64_t value)
{
    begin_field(name);
    append(line_, value);
    return *this;
}

JsonLine& JsonLine::real(std::string_view name, float value)
{
    begin_field(name);
    append(line_, value);
    return *this;
}

JsonLine& JsonLine::real(std::string_view name, double value)
{
    begin_field(name);
    append(line_, value);
    return *this;
}

JsonLine& JsonLine::flag(std::string_view name, bool value)
{
    begin_field(name);
    line_ += value ? "true" : "false";
    return *this;
}

JsonLine& JsonLine::null(std::string_view name)
{
    begin_field(name);
    line_ += "null";
    return *this;
}

JsonLine& JsonLine::pair(std::string_view name, float first, float second)
{
    begin_field(name);
    line_ += '[';
    append(line_, first);
    line_ += ',';
    append(line_, second);
    line_ += ']';
    return *this;
}

JsonLine& JsonLine::pair(std::string_view name, int first, int second)
{
    begin_field(name);
    line_.append("[").append(std::to_string(first)).append(",").append(std::to_string(second)).append("]");
    return *this;
}

JsonLine& JsonLine::begin_list(std::string_view name)
{
    begin_field(name);
    line_ += '[';
    return *this;
}

JsonLine& JsonLine::begin_object()
{
    if (line_.back() != '[')
        line_ += ',';
    line_ += '{';
    return *this;
}

JsonLine& JsonLine::end_object()
{
    line_ += '}';
    return *this;
}

JsonLine& JsonLine::end_list()
{
    line_ += ']';
    return *this;
}

std::string JsonLine::finish() &&
{
    line_ += "}\n";
    return std::move(line_);
}

} // namespace vnt::host
