// One JSON object as a line of text, field by field.
//
// Shapes: numbers of single precision have up to 9 significant digits, doubles up to 17, so that each reads back
//         as it was. What is not finite is one of the strings "nan", "inf", "-inf".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vnt::host {

class JsonLine {
public:
    // names have no character that JSON escapes.
    JsonLine& text(std::string_view name, std::string_view value); // bytes that are no UTF-8 become U+FFFD
    JsonLine& integer(std::string_view name, std::int64_t value);
    JsonLine& real(std::string_view name, float value);
    JsonLine& real(std::string_view name, double value);
    JsonLine& flag(std::string_view name, bool value);
    JsonLine& null(std::string_view name);
    JsonLine& pair(std::string_view name, float first, float second); // [first,second]
    JsonLine& pair(std::string_view name, int first, int second);

    // A list of objects: the fields between begin_object and end_object are the object's.
    JsonLine& begin_list(std::string_view name);
    JsonLine& begin_object();
    JsonLine& end_object();
    JsonLine& end_list();

    // The object with its line feed.
    std::string finish() &&;

private:
    void begin_field(std::string_view name);

    std::string line_ = "{";
};

} // namespace vnt::host
