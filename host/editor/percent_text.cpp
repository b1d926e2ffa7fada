#include "host/editor/percent_text.h"

#include <charconv>

namespace vnt::host {
namespace {

bool is_plain(char c)
{
    constexpr std::string_view kOthers = "-._/";
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           kOthers.find(c) != kOthers.npos;
}

} // namespace

std::string to_percent_text(std::string_view bytes)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size());
    for (const char c : bytes) {
        if (is_plain(c)) {
            text += c;
        } else {
            const auto byte = static_cast<unsigned char>(c);
            text.append("%").append({kDigits[byte / 16], kDigits[byte % 16]});
        }
    }
    return text;
}

std::optional<std::string> from_percent_text(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        const char c = text.front();
        text.remove_prefix(1);
        if (is_plain(c)) {
            bytes += c;
            continue;
        }
        constexpr std::size_t kDigits = 2;
        if (c != '%' || text.size() < kDigits)
            return std::nullopt;
        unsigned byte = 0;
        const auto read = std::from_chars(text.data(), text.data() + kDigits, byte, 16);
        if (read.ec != std::errc() || read.ptr != text.data() + kDigits)
            return std::nullopt;
        bytes += static_cast<char>(byte);
        text.remove_prefix(kDigits);
    }
    return bytes;
}

} // namespace vnt::host
