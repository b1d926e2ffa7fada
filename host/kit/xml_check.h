// Whether a text is well-formed XML in an encoding that it can be handled in.
//
// Shapes: the reader behind the queries takes many a text that no other program opens: two outermost elements,
//         an attribute twice, an unknown entity. What is to be written back is therefore checked first.
#pragma once

#include "host/kit/xml_entities.h"
#include "host/kit/xml_tokens.h"

#include <optional>
#include <string_view>

namespace vnt::host {

// Whether the text's own declaration names an encoding in which < > & " and names are the bytes of ASCII. Such
// a text can be cut and joined without being decoded.
bool has_ascii_markup(std::string_view text);

// The first fault of a text without byte order mark, by Extensible Markup Language (XML) 1.0; none for a
// well-formed one. Entities get the text's own declarations.
//
// Accuracy: inside a document type declaration nothing is checked but where it ends, and the text of an entity
//           is not checked for balance. Names are taken for right from U+0080 on.
std::optional<XmlFault> find_fault(std::string_view text, XmlEntities& entities);

struct TextPosition {
    std::size_t line;   // from 1
    std::size_t column; // from 1, in bytes
};
TextPosition position_of(std::string_view text, std::size_t offset);

} // namespace vnt::host
