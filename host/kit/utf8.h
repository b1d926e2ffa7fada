// UTF-8 as text that others wrote may or may not be.
#pragma once

#include <cstddef>
#include <string_view>

namespace vnt::host {

// The size of the longest beginning of bytes that is UTF-8. Source: The Unicode Standard, table 3-7.
std::size_t size_of_utf8(std::string_view bytes);

// The number of UTF-16 units that UTF-8 text takes: two for a character of four bytes, else one.
std::size_t utf16_units(std::string_view utf8);

} // namespace vnt::host
