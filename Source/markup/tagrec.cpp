#include "Source/markup/tagrec.h"

#include "Source/markup/tag_tokens.h"

#include <algorithm>
#include <cstddef>

namespace {

// A node whose children are being visited: which of them is next.
struct Visit {
    const tagrec* node;
    std::list<tagrec*>::const_iterator next;
};

void dump_start_tag(std::string& out, const tagrec& node)
{
    if (node.tag.empty())
        return;
    out += '<';
    out += node.tag;
    for (const auto& [name, value] : node.attributes) {
        out += ' ';
        out += name;
        if (!value.empty())
            out.append("=\"").append(value).append("\"");
    }
    if (node.tag.front() == '?')
        out += '?';
    out += '>';
}

void dump_end_tag(std::string& out, const tagrec& node)
{
    if (node.empty == 0)
        out.append("</").append(node.tag).append(">");
}

// A place in node's text; a tree built by hand may hold a position outside it.
std::size_t place_in_text(const tagrec& node, int position)
{
    return std::min(static_cast<std::size_t>(std::max(position, 0)), node.text.size());
}

} // namespace

tagrec::~tagrec()
{
    // Level by level into one list, so that a deep tree does not exhaust the call stack.
    std::list<tagrec*> doomed;
    doomed.splice(doomed.end(), children);
    while (!doomed.empty()) {
        tagrec* const node = doomed.front();
        doomed.pop_front();
        if (node == nullptr)
            continue;
        doomed.splice(doomed.begin(), node->children);
        delete node;
    }
}

bool tagrec::tagcmp(const std::string& name) const { return equal_ignoring_ascii_case(tag, name); }

int tagrec::scan(std::vector<tagrec*>& out, const std::string& name) const
{
    const std::size_t before = out.size();
    std::copy_if(children.begin(), children.end(), std::back_inserter(out),
                 [&](const tagrec* child) { return child->tagcmp(name); });
    return static_cast<int>(out.size() - before);
}

int tagrec::find(std::vector<tagrec*>& out, const std::string& name) const
{
    const std::size_t before = out.size();
    std::vector<Visit> visits{
        {this, children.begin()}
    };
    while (!visits.empty()) {
        Visit& visit = visits.back();
        if (visit.next == visit.node->children.end()) {
            visits.pop_back();
            continue;
        }
        tagrec* const child = *visit.next++;
        if (child->tagcmp(name))
            out.push_back(child);
        if (!child->children.empty())
            visits.push_back({child, child->children.begin()});
    }
    return static_cast<int>(out.size() - before);
}

int tagrec::path(std::vector<tagrec*>& out, const std::string& expr) const
{
    const std::size_t slash = expr.find('/');
    if (slash == std::string::npos || (slash > 0 && slash + 1 == expr.size()))
        return scan(out, expr.substr(0, slash));
    std::vector<tagrec*> found;
    if (slash == 0 || scan(found, expr.substr(0, slash)) == 0)
        return 0;
    for (std::size_t begin = slash + 1;;) { // level by level: a long expression needs no stack either
        const std::size_t end = std::min(expr.find('/', begin), expr.size());
        if (end == begin)
            break; // the rest starts with "/"
        const bool is_last = end + 1 >= expr.size();
        std::vector<tagrec*> matches;
        for (const tagrec* node : found)
            node->scan(is_last ? out : matches, expr.substr(begin, end - begin));
        if (is_last)
            break;
        found.swap(matches);
        begin = end + 1;
    }
    return static_cast<int>(out.size());
}

tagrec* tagrec::findroot() const
{
    tagrec* node = parent;
    while (node != nullptr)
        node = node->parent;
    return node;
}

bool tagrec::scanattr(std::pair<std::string, std::string>& out, const std::string& name) const
{
    const auto found = std::find_if(attributes.begin(), attributes.end(), [&](const auto& attribute) {
        return equal_ignoring_ascii_case(attribute.first, name);
    });
    if (found == attributes.end())
        return false;
    out = *found;
    return true;
}

std::string tagrec::dump() const
{
    struct Place {
        Visit visit;
        std::size_t written; // of the node's text
    };
    std::string out;
    dump_start_tag(out, *this);
    std::vector<Place> places{
        {{this, children.begin()}, 0}
    };
    while (!places.empty()) {
        auto& [visit, written] = places.back();
        const tagrec& node = *visit.node;
        if (visit.next == node.children.end()) {
            out.append(node.text, written);
            dump_end_tag(out, node);
            places.pop_back();
            continue;
        }
        const tagrec& child = **visit.next++;
        const std::size_t here = std::max(written, place_in_text(node, child.position));
        out.append(node.text, written, here - written);
        written = here;
        dump_start_tag(out, child);
        places.push_back({
            {&child, child.children.begin()},
            0
        });
    }
    return out;
}

std::list<std::string> sepexp(const std::string& s)
{
    const bool ends_in_slash = !s.empty() && s.back() == '/';
    const std::size_t size = ends_in_slash ? s.size() - 1 : s.size();
    std::list<std::string> tokens;
    std::string token;
    char open_quote = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const char c = s[i];
        if (open_quote != 0) {
            if (c == open_quote)
                open_quote = 0;
            else
                token += c;
        } else if (is_tag_quote(c)) {
            open_quote = c;
        } else if (is_tag_separator(c) && !token.empty()) {
            tokens.push_back(std::move(token));
            token.clear();
        } else {
            token += c;
        }
    }
    if (!token.empty())
        tokens.push_back(std::move(token));
    if (ends_in_slash) {
        if (tokens.empty())
            tokens.emplace_back();
        tokens.front() += '/';
    }
    return tokens;
}
