#include "host/kit/utf8.h"

#include <algorithm>

namespace vnt::host {
namespace {

struct Form {
    unsigned char first_least, first_most;
    unsigned char second_least, second_most;
    std::size_t size;
};

constexpr Form kForms[] = {
    {0x00, 0x7F, 0x00, 0x00, 1},
    {0xC2, 0xDF, 0x80, 0xBF, 2},
    {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3},
    {0xED, 0xED, 0x80, 0x9F, 3}, // no surrogates
    {0xEE, 0xEF, 0x80, 0xBF, 3},
    {0xF0, 0xF0, 0x90, 0xBF, 4},
    {0xF1, 0xF3, 0x80, 0xBF, 4},
    {0xF4, 0xF4, 0x80, 0x8F, 4},
};

unsigned char byte_at(std::string_view bytes, std::size_t index)
{
    return static_cast<unsigned char>(bytes[index]);
}

// The size of the character at the beginning of bytes, which are not empty; 0 when it is none.
std::size_t size_of_character(std::string_view bytes)
{
    const unsigned char first = byte_at(bytes, 0);
    const auto* const form = std::find_if(std::begin(kForms), std::end(kForms), [&](const Form& candidate) {
        return first >= candidate.first_least && first <= candidate.first_most;
    });
    if (form == std::end(kForms) || bytes.size() < form->size)
        return 0;
    for (std::size_t i = 1; i < form->size; ++i) {
        const unsigned char least = i == 1 ? form->second_least : 0x80;
        const unsigned char most = i == 1 ? form->second_most : 0xBF;
        if (byte_at(bytes, i) < least || byte_at(bytes, i) > most)
            return 0;
    }
    return form->size;
}

} // namespace

std::size_t size_of_utf8(std::string_view bytes)
{
    std::size_t size = 0;
    while (size < bytes.size()) {
        const std::size_t character = size_of_character(bytes.substr(size));
        if (character == 0)
            break;
        size += character;
    }
    return size;
}

std::size_t utf16_units(std::string_view utf8)
{
    std::size_t units = 0;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80 || byte >= 0xC0) // no continuation
            units += byte >= 0xF0 ? 2 : 1;
    }
    return units;
}

} // namespace vnt::host
