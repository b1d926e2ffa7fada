// What the tree and the parser share of the grammar of a tag.
#pragma once

#include <string>

// What separates the tokens of a tag.
inline bool is_tag_separator(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

inline bool is_tag_quote(char c) { return c == '"' || c == '\''; }

// Equal without regard to case, in ASCII alone: the process's locale has no say in which elements match.
inline bool equal_ignoring_ascii_case(const char* a, const char* b, std::size_t size)
{
    const auto folded = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    for (std::size_t i = 0; i < size; ++i) {
        if (a[i] != b[i] && folded(a[i]) != folded(b[i]))
            return false;
    }
    return true;
}

inline bool equal_ignoring_ascii_case(const std::string& a, const std::string& b)
{
    return a.size() == b.size() && equal_ignoring_ascii_case(a.data(), b.data(), a.size());
}
