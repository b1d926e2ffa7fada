// The marks of an XML text, one after the other, with the places where they stand.
//
// Space:  an offset counts bytes from the text's beginning.
// Owner:  the views of a token point into the text, which must outlive them.
// Errors: a fault, with its offset and a phrase for people; there is no token after it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vnt::host {

enum class TokenKind { Text, Comment, CData, Instruction, Doctype, StartTag, EmptyTag, EndTag };

struct Token {
    TokenKind kind = TokenKind::Text;
    std::size_t begin = 0;
    std::size_t end = 0;   // one past the token's last byte
    std::string_view name; // of a tag's element with its prefix, or of an instruction's target
};

struct XmlFault {
    std::size_t offset;
    std::string what; // "a comment is not ended"
};

class XmlTokens {
public:
    explicit XmlTokens(std::string_view text, std::size_t begin = 0) : text_(text), at_(begin) {}

    // False at the text's end and at a fault.
    bool try_next(Token& token);
    const std::optional<XmlFault>& fault() const { return fault_; }

private:
    bool fail(std::size_t offset, const char* what);
    bool end_at(Token& token, std::string_view closing, std::size_t from, const char* unended);
    bool read_tag(Token& token);
    bool read_doctype(Token& token);

    std::string_view text_;
    std::size_t at_;
    std::optional<XmlFault> fault_;
};

struct TagAttribute {
    std::string_view name;
    std::string_view value; // as it is written between the quotes
};

// The attributes of a start tag or an empty tag, in their order.
class TagAttributes {
public:
    TagAttributes(std::string_view text, const Token& tag);

    bool try_next(TagAttribute& attribute);
    const std::optional<XmlFault>& fault() const { return fault_; }

private:
    bool fail(const char* what);
    void skip_blanks();

    std::string_view text_;
    std::size_t at_;
    std::size_t end_;
    std::optional<XmlFault> fault_;
};

// Where an element's tags stand.
struct ElementSpan {
    std::size_t begin;     // of its start tag
    std::size_t content;   // behind its start tag
    std::size_t end_tag;   // of its end tag; that of the content when there is none
    bool is_empty_tag;     // it is one tag that ends with />
    std::string_view name; // with its prefix
};

// The element whose start tag begins at offset, in a text that is well-formed.
ElementSpan find_element(std::string_view text, std::size_t offset);

bool is_xml_blank(char c);
bool is_xml_name(std::string_view name);

} // namespace vnt::host
