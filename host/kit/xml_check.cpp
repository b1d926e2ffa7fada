#include "host/kit/xml_check.h"

#include <algorithm>
#include <string>
#include <vector>

namespace vnt::host {
namespace {

constexpr auto npos = std::string_view::npos;

std::string lower_case(std::string_view text)
{
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lower;
}

// The encoding that the XML declaration names, in lower case; empty without one.
std::string declared_encoding(std::string_view text)
{
    if (!text.starts_with("<?xml") || text.size() < 6 || !is_xml_blank(text[5]))
        return {};
    const std::string_view declaration = text.substr(0, text.find("?>"));
    std::size_t at = declaration.find("encoding");
    at = at == npos ? npos : declaration.find_first_of("\"'", at);
    if (at == npos)
        return {};
    const std::size_t end = declaration.find(declaration[at], at + 1);
    return end == npos ? std::string() : lower_case(declaration.substr(at + 1, end - at - 1));
}

bool is_utf8(const std::string& encoding)
{
    return encoding.empty() || encoding == "utf-8" || encoding == "utf8" || encoding == "us-ascii" ||
           encoding == "ascii";
}

// The length of the character at offset; 0 when its bytes are none, or one that XML does not allow.
std::size_t length_of_character(std::string_view text, std::size_t offset)
{
    const auto byte = [&](std::size_t i) -> char32_t {
        return offset + i < text.size() ? static_cast<unsigned char>(text[offset + i]) : 0U;
    };
    const char32_t first = byte(0);
    if (first < 0x80)
        return is_xml_character(first) ? 1 : 0;
    const std::size_t length = first >= 0xF0 ? 4 : (first >= 0xE0 ? 3 : 2);
    constexpr char32_t kSmallest[] = {0x80, 0x800, 0x10000};
    char32_t character = first & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80)
            return 0;
        character = (character << 6) | (byte(i) & 0x3FU);
    }
    const bool shortest = character >= kSmallest[length - 2];
    return first >= 0xC0 && first < 0xF8 && shortest && is_xml_character(character) ? length : 0;
}

std::optional<XmlFault> find_bad_character(std::string_view text)
{
    const bool decodes = is_utf8(declared_encoding(text));
    for (std::size_t at = 0; at < text.size();) {
        const auto byte = static_cast<unsigned char>(text[at]);
        if (byte >= 0x20 && (byte < 0x80 || !decodes)) {
            ++at;
            continue;
        }
        const std::size_t length = length_of_character(text, at);
        if (length == 0)
            return XmlFault{at,
                            byte >= 0x80 ? "the bytes are no UTF-8" : "a control character is not allowed"};
        at += length;
    }
    return std::nullopt;
}

class Checker {
public:
    Checker(std::string_view text, XmlEntities& entities) : text_(text), entities_(entities) {}

    std::optional<XmlFault> run()
    {
        XmlTokens tokens(text_);
        Token token;
        while (!fault_ && tokens.try_next(token))
            take(token);
        if (!fault_)
            fault_ = tokens.fault();
        if (!fault_ && !open_.empty())
            fail(text_.size(), "the element <" + std::string(open_.back()) + "> is not ended");
        if (!fault_ && !has_root_)
            fail(0, "there is no element");
        return fault_;
    }

private:
    void fail(std::size_t offset, std::string what)
    {
        if (!fault_)
            fault_ = XmlFault{offset, std::move(what)};
    }

    void take(const Token& token)
    {
        switch (token.kind) {
        case TokenKind::Text: take_text(token); break;
        case TokenKind::Comment: take_comment(token); break;
        case TokenKind::CData:
            if (open_.empty())
                fail(token.begin, "a CDATA section stands outside the outermost element");
            break;
        case TokenKind::Instruction: take_instruction(token); break;
        case TokenKind::Doctype:
            if (has_root_ || has_doctype_)
                fail(token.begin, "a document type declaration does not stand here");
            has_doctype_ = true;
            entities_.declare(text_.substr(token.begin, token.end - token.begin));
            break;
        case TokenKind::StartTag:
        case TokenKind::EmptyTag: take_start(token); break;
        case TokenKind::EndTag: take_end(token); break;
        }
    }

    void take_text(const Token& token)
    {
        const std::string_view content = text_.substr(token.begin, token.end - token.begin);
        if (open_.empty()) {
            const auto mark = std::find_if_not(content.begin(), content.end(), is_xml_blank);
            if (mark != content.end())
                fail(token.begin + static_cast<std::size_t>(mark - content.begin()),
                     "text stands outside the outermost element");
            return;
        }
        if (const std::size_t at = content.find("]]>"); at != npos)
            fail(token.begin + at, "]]> ends no CDATA section");
        check_references(content);
    }

    void take_comment(const Token& token)
    {
        const std::size_t hyphens = text_.find("--", token.begin + 4);
        if (hyphens + 3 != token.end)
            fail(hyphens, "a comment holds --");
    }

    void take_instruction(const Token& token)
    {
        if (token.name.empty())
            fail(token.begin, "a processing instruction has no name");
        else if (token.begin != 0 && lower_case(token.name) == "xml")
            fail(token.begin, "an XML declaration stands in the text");
    }

    void take_start(const Token& token)
    {
        if (open_.empty() && has_root_)
            return fail(token.begin, "there is a second outermost element");
        has_root_ = true;
        names_.clear();
        TagAttributes attributes(text_, token);
        for (TagAttribute attribute; attributes.try_next(attribute);) {
            names_.push_back(attribute.name);
            if (const std::size_t at = attribute.value.find('<'); at != npos)
                fail(offset_of(attribute.value) + at, "an attribute's value holds <");
            check_references(attribute.value);
        }
        if (attributes.fault())
            fail(attributes.fault()->offset, attributes.fault()->what);
        std::sort(names_.begin(), names_.end());
        const auto twice = std::adjacent_find(names_.begin(), names_.end());
        if (twice != names_.end())
            fail(token.begin, "the attribute " + std::string(*twice) + " stands twice in a tag");
        if (token.kind == TokenKind::StartTag)
            open_.push_back(token.name);
    }

    void take_end(const Token& token)
    {
        const std::size_t behind = token.begin + 2 + token.name.size();
        const std::string_view rest = text_.substr(behind, token.end - 1 - behind);
        const std::string tag = "the end tag </" + std::string(token.name) + ">";
        if (open_.empty())
            return fail(token.begin, tag + " ends no element");
        if (open_.back() != token.name)
            return fail(token.begin, tag + " stands where </" + std::string(open_.back()) + "> is due");
        if (!std::all_of(rest.begin(), rest.end(), is_xml_blank))
            return fail(token.begin, tag + " holds more than its name");
        open_.pop_back();
    }

    void check_references(std::string_view content)
    {
        for (std::size_t at = content.find('&'); at != npos; at = content.find('&', at + 1)) {
            const std::size_t end = content.find(';', at);
            const std::string_view inside =
                end == npos ? std::string_view() : content.substr(at + 1, end - at - 1);
            if (inside.starts_with('#') ? character_of_reference(inside) == 0 : !is_xml_name(inside))
                return fail(offset_of(content) + at, "an & begins no reference");
            if (!inside.starts_with('#') && !entities_.is_declared(inside) && !entities_.is_incomplete())
                return fail(offset_of(content) + at,
                            "the entity &" + std::string(inside) + "; is not declared");
        }
    }

    std::size_t offset_of(std::string_view part) const
    {
        return static_cast<std::size_t>(part.data() - text_.data());
    }

    std::string_view text_;
    XmlEntities& entities_;
    std::vector<std::string_view> open_;
    std::vector<std::string_view> names_; // of the tag at hand
    bool has_doctype_ = false;
    bool has_root_ = false;
    std::optional<XmlFault> fault_;
};

} // namespace

bool has_ascii_markup(std::string_view text)
{
    const std::string encoding = declared_encoding(text);
    return is_utf8(encoding) || encoding.starts_with("iso-8859-") || encoding.starts_with("windows-125") ||
           encoding == "latin1" || encoding.starts_with("koi8-");
}

std::optional<XmlFault> find_fault(std::string_view text, XmlEntities& entities)
{
    if (std::optional<XmlFault> fault = find_bad_character(text))
        return fault;
    return Checker(text, entities).run();
}

TextPosition position_of(std::string_view text, std::size_t offset)
{
    const std::string_view before = text.substr(0, offset);
    const auto lines = std::count(before.begin(), before.end(), '\n');
    const std::size_t last = before.rfind('\n');
    return {static_cast<std::size_t>(lines) + 1, last == npos ? offset + 1 : offset - last};
}

} // namespace vnt::host
