// Any bytes as plain ASCII text without blanks: what is no letter, digit or one of -._/ is % and two digits.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vnt::host {

std::string to_percent_text(std::string_view bytes);

// None for what to_percent_text does not write.
std::optional<std::string> from_percent_text(std::string_view text);

} // namespace vnt::host
