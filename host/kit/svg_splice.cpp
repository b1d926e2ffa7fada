#include "host/kit/svg_splice.h"

#include "host/kit/xml_tokens.h"

#include <algorithm>

namespace vnt::host {
namespace {

// Whether the blanks in an element are part of its text.
bool keeps_blanks(const SvgTree& tree, pugi::xml_node element)
{
    for (; element.type() == pugi::node_element; element = element.parent()) {
        if (const std::optional<std::string> space = tree.attribute(element, "xml:space"))
            return *space == "preserve";
    }
    return false;
}

struct Layout {
    std::string_view line_end; // empty: what is in front of the place is not the beginning of a line
    std::string_view indent;
};

// What stands between the last mark in front of offset and offset, when that is a line's end and an indent.
Layout layout_before(std::string_view text, std::size_t offset)
{
    std::size_t begin = offset;
    while (begin > 0 && is_xml_blank(text[begin - 1]))
        --begin;
    if (begin > 0 && text[begin - 1] != '>')
        return {}; // text, which blanks would become part of
    const std::string_view blanks = text.substr(begin, offset - begin);
    const std::size_t last = blanks.find_last_of("\r\n");
    if (last == blanks.npos)
        return {};
    const bool is_pair = blanks[last] == '\n' && last > 0 && blanks[last - 1] == '\r';
    return {blanks.substr(is_pair ? last - 1 : last, is_pair ? 2 : 1), blanks.substr(last + 1)};
}

} // namespace

ElementSplice::ElementSplice(const SvgTree& tree, pugi::xml_node element) : text_(tree.text())
{
    const ElementSpan span = find_element(text_, tree.offset_of(element));
    const std::size_t colon = span.name.find(':');
    prefix_ = colon == span.name.npos ? std::string_view() : span.name.substr(0, colon + 1);
    const Layout layout = keeps_blanks(tree, element)
                              ? Layout()
                              : layout_before(text_, span.is_empty_tag ? span.begin : span.end_tag);
    if (!span.is_empty_tag) {
        from_ = to_ = span.end_tag;
        if (!layout.line_end.empty()) {
            // The last of the blanks that are there go on the end tag's line again.
            from_ = to_ = span.end_tag - layout.indent.size() - layout.line_end.size();
            lay_out(layout.line_end, layout.indent);
        }
        return;
    }
    from_ = span.content - 2; // the tag's />
    to_ = span.content;
    opening_ = ">";
    if (!layout.line_end.empty()) {
        lay_out(layout.line_end, layout.indent);
        after_.append(layout.line_end).append(layout.indent);
    }
    after_.append("</").append(span.name).append(">");
}

void ElementSplice::lay_out(std::string_view line_end, std::string_view indent)
{
    before_.append(line_end).append(indent).append(indent.ends_with('\t') ? "\t" : "  ");
}

void ElementSplice::begin(std::string& text) const { text.append(text_.substr(0, from_)).append(opening_); }

void ElementSplice::end(std::string& text) const { text.append(after_).append(text_.substr(to_)); }

} // namespace vnt::host
