#include "host/kit/xml_entities.h"

#include "host/kit/xml_tokens.h"

#include <charconv>

namespace vnt::host {
namespace {

constexpr auto npos = std::string_view::npos;
constexpr int kDeepest = 16;
constexpr int kMostReferences = 64;
constexpr std::size_t kLongest = 4096;

void append_utf8(std::string& text, char32_t c)
{
    const auto add = [&](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (c < 0x80) {
        add(c);
    } else if (c < 0x800) {
        add(0xC0 | (c >> 6));
        add(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        add(0xE0 | (c >> 12));
        add(0x80 | ((c >> 6) & 0x3F));
        add(0x80 | (c & 0x3F));
    } else {
        add(0xF0 | (c >> 18));
        add(0x80 | ((c >> 12) & 0x3F));
        add(0x80 | ((c >> 6) & 0x3F));
        add(0x80 | (c & 0x3F));
    }
}

std::string_view without_blanks_before(std::string_view text)
{
    while (!text.empty() && is_xml_blank(text.front()))
        text.remove_prefix(1);
    return text;
}

std::string_view take_word(std::string_view& text)
{
    text = without_blanks_before(text);
    std::size_t end = 0;
    while (end < text.size() && !is_xml_blank(text[end]) && text[end] != '>' && text[end] != '"' &&
           text[end] != '\'')
        ++end;
    const std::string_view word = text.substr(0, end);
    text.remove_prefix(end);
    return word;
}

// What stands between a declaration's < and its >, where no literal hides the >.
std::size_t end_of_declaration(std::string_view text, std::size_t from)
{
    for (;;) {
        from = text.find_first_of("\"'>", from);
        if (from == npos || text[from] == '>')
            return from;
        from = text.find(text[from], from + 1);
        if (from == npos)
            return npos;
        ++from;
    }
}

// Where the ; of a reference at the beginning of text stands; npos when there is none. What cannot stand in one
// ends the search, so that many an & without its ; takes no time.
std::size_t end_of_reference(std::string_view text)
{
    const std::size_t end = text.find_first_of("&; \t\r\n", 1);
    return end != npos && text[end] == ';' ? end : npos;
}

} // namespace

char32_t character_of_reference(std::string_view inside)
{
    if (!inside.starts_with('#'))
        return 0;
    inside.remove_prefix(1);
    int base = 10;
    if (inside.starts_with('x')) {
        base = 16;
        inside.remove_prefix(1);
    }
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(inside.data(), inside.data() + inside.size(), number, base);
    if (error != std::errc() || end != inside.data() + inside.size())
        return 0;
    return is_xml_character(number) ? number : 0;
}

bool is_xml_character(char32_t c)
{
    return c == 9 || c == 10 || c == 13 || (c >= 0x20 && c < 0xD800) || (c >= 0xE000 && c < 0xFFFE) ||
           (c >= 0x10000 && c < 0x110000);
}

char predefined_entity(std::string_view name)
{
    if (name == "lt")
        return '<';
    if (name == "gt")
        return '>';
    if (name == "amp")
        return '&';
    if (name == "quot")
        return '"';
    return name == "apos" ? '\'' : '\0';
}

void XmlEntities::declare(std::string_view doctype)
{
    const std::size_t subset = doctype.find_first_of("[\"'");
    // A literal in front of the internal subset is the name of an external one.
    incomplete_ = subset != npos && doctype[subset] != '[';
    for (std::size_t at = doctype.find('[', subset); at != npos;) {
        at = doctype.find_first_of("<%", at);
        if (at == npos)
            return;
        if (doctype[at] == '%') {
            incomplete_ = true; // a parameter entity, which may hold declarations
            ++at;
        } else if (doctype.substr(at, 4) == "<!--") {
            at = doctype.find("-->", at);
        } else if (doctype.substr(at, 2) == "<?") {
            at = doctype.find("?>", at);
        } else {
            const std::size_t end = end_of_declaration(doctype, at);
            declare_entity(doctype.substr(at, end - at));
            at = end;
        }
    }
}

// The first declaration of a name counts. An entity in another file is known, but is not read.
void XmlEntities::declare_entity(std::string_view declaration)
{
    if (take_word(declaration) != "<!ENTITY")
        return;
    const std::string_view name = take_word(declaration);
    declaration = without_blanks_before(declaration);
    if (!is_xml_name(name) || declaration.empty())
        return;
    const bool literal = declaration.front() == '"' || declaration.front() == '\'';
    const std::size_t closing = literal ? declaration.find(declaration.front(), 1) : npos;
    values_.emplace(name, closing != npos ? declaration.substr(1, closing - 1) : std::string_view());
}

bool XmlEntities::is_declared(std::string_view name) const
{
    return predefined_entity(name) != '\0' || values_.find(name) != values_.end();
}

std::string XmlEntities::expand(std::string_view written) const
{
    Expansion expansion;
    expand_into(expansion, written);
    return expansion.value;
}

bool XmlEntities::try_expand_reference(Expansion& expansion, std::string_view inside) const
{
    if (const char32_t character = character_of_reference(inside)) {
        append_utf8(expansion.value, character);
        return true;
    }
    if (const char predefined = predefined_entity(inside)) {
        expansion.value += predefined;
        return true;
    }
    const auto entity = values_.find(inside);
    if (entity == values_.end() || expansion.depth == kDeepest || expansion.references == kMostReferences ||
        entity->second.size() > kLongest - expansion.from_entities)
        return false;
    expansion.from_entities += entity->second.size();
    ++expansion.references;
    ++expansion.depth;
    expand_into(expansion, entity->second);
    --expansion.depth;
    return true;
}

void XmlEntities::expand_into(Expansion& expansion, std::string_view written) const
{
    while (!written.empty()) {
        const std::size_t end = written.front() == '&' ? end_of_reference(written) : npos;
        if (end != npos && try_expand_reference(expansion, written.substr(1, end - 1))) {
            written.remove_prefix(end + 1);
        } else {
            expansion.value += is_xml_blank(written.front()) ? ' ' : written.front();
            written.remove_prefix(1);
        }
    }
}

} // namespace vnt::host
