// A parser from inside, for tests: its state can be read and set, and described whole with its tree.
#pragma once

#include "Source/markup/parser.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

struct parser_probe {
    static parser::states& state(parser& p) { return p.state; }
    static std::string& end_tag(parser& p) { return p.end_tag; }
    static int& quote(parser& p) { return p.quote; }
    static tagrec*& current(parser& p) { return p.current; }
};

namespace markup_test {

// A parser that takes its tree with it.
struct OwnedParser {
    parser p;

    OwnedParser() = default;
    OwnedParser(const OwnedParser&) = delete;
    OwnedParser& operator=(const OwnedParser&) = delete;
    ~OwnedParser() { delete p.root; }
};

inline std::string attributes_text(const tagrec& node)
{
    std::string text;
    for (const auto& [name, value] : node.attributes)
        text += " " + name + "=[" + value + "]";
    return text;
}

// A line per node, two blanks deeper for each level: [tag] empty@position [text] name=[value] ..., with a star
// behind the node that is current.
inline std::string tree_text(const tagrec* root, const tagrec* current = nullptr)
{
    if (root == nullptr)
        return "no tree\n";
    std::string text;
    std::vector<std::pair<const tagrec*, std::size_t>> open{
        {root, 0}
    };
    while (!open.empty()) {
        const auto [node, depth] = open.back();
        open.pop_back();
        text.append(depth * 2, ' ').append("[").append(node->tag).append("] ");
        text += std::to_string(node->empty) + "@" + std::to_string(node->position);
        text.append(" [").append(node->text).append("]").append(attributes_text(*node));
        text += node == current ? " *\n" : "\n";
        for (auto child = node->children.rbegin(); child != node->children.rend(); ++child) {
            open.emplace_back(*child, depth + 1);
            if ((*child)->parent != node)
                text += "the next child has a wrong parent\n";
        }
    }
    return text;
}

// All that can be seen of a parser now or later. What a state does not use is left out: the name of an end tag
// outside of one, and the open quote outside of tags.
inline std::string whole_text(parser& p)
{
    const parser::states state = parser_probe::state(p);
    const tagrec* const current = parser_probe::current(p);
    std::string text = "state " + std::to_string(state);
    text += p.acceptable() != 0 ? " acceptable" : "";
    text += p.checkerror() ? " error" : "";
    text += current == nullptr ? " no current node" : "";
    if (state == parser::etag)
        text += " end tag [" + parser_probe::end_tag(p) + "]";
    if (state == parser::stag || state == parser::decl || state == parser::pis1)
        text += " quote " + std::to_string(parser_probe::quote(p));
    return text + "\n" + tree_text(p.root, current);
}

// Steps through a document, whatever the parser says of it.
inline void step_all(parser& p, const std::string& document)
{
    for (const char c : document)
        p.step(static_cast<signed char>(c));
}

} // namespace markup_test
