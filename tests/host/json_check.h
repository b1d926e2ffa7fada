// Whether a text is JSON, for tests of what writes it. Source: RFC 8259.
#pragma once

#include "host/kit/utf8.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace host_test {

class JsonCheck {
public:
    // Empty when text is one JSON value and nothing else; else the place of the first byte that is wrong.
    static std::string problem_of(std::string_view text)
    {
        JsonCheck check(text);
        if (vnt::host::size_of_utf8(text) == text.size() && check.value() && check.at_ == text.size())
            return "";
        return "no JSON at byte " + std::to_string(check.at_) + " of " + std::string(text);
    }

private:
    explicit JsonCheck(std::string_view text) : text_(text) {}

    char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }
    bool is_digit() const { return peek() >= '0' && peek() <= '9'; }

    bool take(char c)
    {
        if (at_ == text_.size() || text_[at_] != c)
            return false;
        ++at_;
        return true;
    }

    bool take(std::string_view word)
    {
        if (text_.substr(at_, word.size()) != word)
            return false;
        at_ += word.size();
        return true;
    }

    void blanks()
    {
        while (peek() == ' ' || peek() == '\t' || peek() == '\n' || peek() == '\r')
            ++at_;
    }

    bool digits()
    {
        const std::size_t begin = at_;
        while (is_digit())
            ++at_;
        return at_ > begin;
    }

    bool value()
    {
        switch (peek()) {
        case '{': return list('{', '}', true);
        case '[': return list('[', ']', false);
        case '"': return string();
        case 't': return take("true");
        case 'f': return take("false");
        case 'n': return take("null");
        default: return number();
        }
    }

    bool list(char open, char close, bool has_names)
    {
        take(open);
        blanks();
        if (take(close))
            return true;
        do {
            blanks();
            if (has_names && !name())
                return false;
            if (!value())
                return false;
            blanks();
        } while (take(','));
        return take(close);
    }

    bool name()
    {
        if (!string())
            return false;
        blanks();
        if (!take(':'))
            return false;
        blanks();
        return true;
    }

    bool string()
    {
        if (!take('"'))
            return false;
        while (at_ < text_.size() && peek() != '"') {
            if (static_cast<unsigned char>(peek()) < 0x20)
                return false;
            if (take('\\') ? !escape() : !take(peek()))
                return false;
        }
        return take('"');
    }

    bool escape()
    {
        if (!take('u')) {
            constexpr std::string_view kLetters = "\"\\/bfnrt";
            return kLetters.find(peek()) != kLetters.npos && take(peek());
        }
        for (int i = 0; i < 4; ++i, ++at_) {
            constexpr std::string_view kHex = "0123456789abcdefABCDEF";
            if (kHex.find(peek()) == kHex.npos)
                return false;
        }
        return true;
    }

    bool number()
    {
        take('-');
        if (!take('0') && !digits())
            return false;
        if (take('.') && !digits())
            return false;
        if (take('e') || take('E')) {
            if (!take('+'))
                take('-');
            return digits();
        }
        return true;
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

} // namespace host_test
