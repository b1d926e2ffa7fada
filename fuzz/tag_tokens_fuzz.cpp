// The tokens of a tag against a plain splitter in two passes: quotes first, separators then.
#include "Source/markup/tagrec.h"
#include "fuzz/fuzz.h"

#include <algorithm>
#include <cstddef>
#include <list>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view kSeparators = " \t\r\n";

struct Letter {
    char c;
    bool quoted;
};

std::vector<Letter> without_quotes(const std::string& tag)
{
    std::vector<Letter> letters;
    for (std::size_t i = 0; i < tag.size(); ++i) {
        if (tag[i] != '"' && tag[i] != '\'') {
            letters.push_back({tag[i], false});
            continue;
        }
        const std::size_t close = std::min(tag.find(tag[i], i + 1), tag.size());
        for (++i; i < close; ++i)
            letters.push_back({tag[i], true});
    }
    return letters;
}

std::list<std::string> plain_tokens(std::string tag)
{
    const bool slash = !tag.empty() && tag.back() == '/';
    if (slash)
        tag.pop_back();
    std::list<std::string> tokens;
    bool in_token = false;
    for (const Letter& letter : without_quotes(tag)) {
        const bool separates = !letter.quoted && kSeparators.find(letter.c) != std::string_view::npos;
        if (separates && in_token) {
            in_token = false;
            continue;
        }
        if (!in_token)
            tokens.emplace_back();
        in_token = true;
        tokens.back() += letter.c;
    }
    if (slash && tokens.empty())
        tokens.emplace_back();
    if (slash)
        tokens.front() += '/';
    return tokens;
}

std::string lines(const std::list<std::string>& tokens)
{
    std::string text;
    for (const std::string& token : tokens)
        text += "[" + token + "]\n";
    return text;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string tag = fuzz::text_of(data, size);
    const std::list<std::string> expected = plain_tokens(tag);
    const std::list<std::string> found = sepexp(tag);
    fuzz::require(found == expected, "the tokens of a tag", lines(expected), lines(found));
    return 0;
}
