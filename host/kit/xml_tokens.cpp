#include "host/kit/xml_tokens.h"

#include <algorithm>

namespace vnt::host {
namespace {

constexpr auto npos = std::string_view::npos;

bool starts_name(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' || byte >= 0x80;
}

bool continues_name(char c) { return starts_name(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; }

std::string_view name_at(std::string_view text, std::size_t begin)
{
    std::size_t end = begin;
    if (end < text.size() && starts_name(text[end])) {
        while (end < text.size() && continues_name(text[end]))
            ++end;
    }
    return text.substr(begin, end - begin);
}

// One past the tag's >, which may not stand in an attribute's value; npos when there is none.
std::size_t end_of_tag(std::string_view text, std::size_t from)
{
    for (;;) {
        from = text.find_first_of("\"'<>", from);
        if (from == npos || text[from] == '<')
            return npos;
        if (text[from] == '>')
            return from + 1;
        from = text.find(text[from], from + 1);
        if (from == npos)
            return npos;
        ++from;
    }
}

} // namespace

bool is_xml_blank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool is_xml_name(std::string_view name) { return !name.empty() && name_at(name, 0).size() == name.size(); }

bool XmlTokens::fail(std::size_t offset, const char* what)
{
    fault_ = XmlFault{offset, what};
    return false;
}

bool XmlTokens::end_at(Token& token, std::string_view closing, std::size_t from, const char* unended)
{
    const std::size_t found = text_.find(closing, from);
    if (found == npos)
        return fail(token.begin, unended);
    token.end = found + closing.size();
    return true;
}

bool XmlTokens::read_tag(Token& token)
{
    const bool ends = text_.substr(token.begin, 2) == "</";
    token.name = name_at(text_, token.begin + (ends ? 2 : 1));
    if (token.name.empty())
        return fail(token.begin, "a < begins no tag");
    token.end = end_of_tag(text_, token.begin + 1);
    if (token.end == npos)
        return fail(token.begin, "a tag is not ended");
    token.kind =
        ends ? TokenKind::EndTag : (text_[token.end - 2] == '/' ? TokenKind::EmptyTag : TokenKind::StartTag);
    return true;
}

// Ends at the > that is in no literal, comment, instruction or internal subset.
bool XmlTokens::read_doctype(Token& token)
{
    bool inside = false;
    for (std::size_t at = token.begin + 2;;) {
        at = text_.find_first_of(inside ? "\"'<]" : "\"'[>", at);
        if (at == npos)
            return fail(token.begin, "the document type declaration is not ended");
        std::string_view closing;
        if (text_[at] == '"' || text_[at] == '\'')
            closing = text_.substr(at, 1);
        else if (text_.substr(at, 4) == "<!--")
            closing = "-->";
        else if (text_.substr(at, 2) == "<?")
            closing = "?>";
        if (!closing.empty()) {
            at = text_.find(closing, at + 1);
            if (at == npos)
                return fail(token.begin, "the document type declaration is not ended");
            at += closing.size();
            continue;
        }
        if (text_[at] == '>') {
            token.end = at + 1;
            return true;
        }
        if (text_[at] == '[')
            inside = true;
        else if (text_[at] == ']')
            inside = false;
        ++at;
    }
}

bool XmlTokens::try_next(Token& token)
{
    if (fault_ || at_ >= text_.size())
        return false;
    token = Token();
    token.begin = at_;
    const std::string_view rest = text_.substr(at_);
    bool found = true;
    if (rest.front() != '<') {
        token.end = std::min(text_.find('<', at_), text_.size());
    } else if (rest.starts_with("<!--")) {
        token.kind = TokenKind::Comment;
        found = end_at(token, "-->", at_ + 4, "a comment is not ended");
    } else if (rest.starts_with("<![CDATA[")) {
        token.kind = TokenKind::CData;
        found = end_at(token, "]]>", at_ + 9, "a CDATA section is not ended");
    } else if (rest.starts_with("<?")) {
        token.kind = TokenKind::Instruction;
        token.name = name_at(text_, at_ + 2);
        found = end_at(token, "?>", at_ + 2, "a processing instruction is not ended");
    } else if (rest.starts_with("<!DOCTYPE")) {
        token.kind = TokenKind::Doctype;
        found = read_doctype(token);
    } else {
        found = read_tag(token);
    }
    at_ = token.end;
    return found;
}

TagAttributes::TagAttributes(std::string_view text, const Token& tag)
    : text_(text), at_(tag.begin + 1 + tag.name.size()),
      end_(tag.end - (tag.kind == TokenKind::EmptyTag ? 2 : 1))
{
}

bool TagAttributes::fail(const char* what)
{
    fault_ = XmlFault{at_, what};
    return false;
}

void TagAttributes::skip_blanks()
{
    while (at_ < end_ && is_xml_blank(text_[at_]))
        ++at_;
}

bool TagAttributes::try_next(TagAttribute& attribute)
{
    if (fault_)
        return false;
    const std::size_t before = at_;
    skip_blanks();
    if (at_ >= end_)
        return false;
    if (at_ == before)
        return fail("an attribute does not begin with a blank");
    attribute.name = name_at(text_.substr(0, end_), at_);
    if (attribute.name.empty())
        return fail("an attribute has no name");
    at_ += attribute.name.size();
    skip_blanks();
    if (at_ >= end_ || text_[at_] != '=')
        return fail("an attribute has no value");
    ++at_;
    skip_blanks();
    if (at_ >= end_ || (text_[at_] != '"' && text_[at_] != '\''))
        return fail("an attribute's value is not in quotes");
    const std::size_t closing = text_.find(text_[at_], at_ + 1);
    attribute.value = text_.substr(at_ + 1, closing - at_ - 1);
    at_ = closing + 1;
    return true;
}

ElementSpan find_element(std::string_view text, std::size_t offset)
{
    XmlTokens tokens(text, offset);
    Token token;
    tokens.try_next(token);
    ElementSpan span{token.begin, token.end, token.end, token.kind == TokenKind::EmptyTag, token.name};
    std::size_t open = span.is_empty_tag ? 0 : 1;
    while (open > 0 && tokens.try_next(token)) {
        if (token.kind == TokenKind::StartTag)
            ++open;
        else if (token.kind == TokenKind::EndTag)
            --open;
        span.end_tag = token.begin;
    }
    return span;
}

} // namespace vnt::host
