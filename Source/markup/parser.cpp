#include "Source/markup/parser.h"

#include "Source/markup/tag_tokens.h"

#include <cstring>
#include <memory>
#include <utility>

namespace {

bool ends_in_slash(const std::string& name) { return !name.empty() && name.back() == '/'; }

// What a token of a tag ends at, or is odd by.
enum class Stop : unsigned char { no, separator, quote, greater, equals };

struct StopTable {
    Stop of[256] = {};

    constexpr StopTable()
    {
        for (const char c : {' ', '\t', '\r', '\n'})
            of[static_cast<unsigned char>(c)] = Stop::separator;
        of[static_cast<unsigned char>('"')] = of[static_cast<unsigned char>('\'')] = Stop::quote;
        of[static_cast<unsigned char>('>')] = Stop::greater;
        of[static_cast<unsigned char>('=')] = Stop::equals;
    }
};

constexpr StopTable kStops;

Stop stop_at(const char* p) { return kStops.of[static_cast<unsigned char>(*p)]; }

// A tag as peers write it: NAME or NAME A="1" B="2", single separators, perhaps a "/" before its ">".
struct PlainTag {
    const char* after = nullptr; // behind the ">"; null: the tag is not of this kind, or does not end here
    bool slash = false;          // a "/" that belongs at the end of the name
};

// Reads NAME into node->tag and the attributes into its list. On failure the node is half filled, to be
// thrown away.
PlainTag read_plain_tag(tagrec& node, const char* p, const char* end)
{
    const char* const name = p;
    while (p != end && (stop_at(p) == Stop::no || stop_at(p) == Stop::equals))
        ++p;
    if (p == end || p == name || stop_at(p) == Stop::quote)
        return {};
    node.tag.assign(name, p);
    if (stop_at(p) == Stop::greater)
        return {p + 1, false}; // a "/" at the end is where it belongs already
    for (;;) {
        ++p; // the separator
        if (p == end)
            return {};
        if (*p == '>')
            return {p + 1, false};
        const char* const attribute = p;
        while (p != end && stop_at(p) == Stop::no)
            ++p;
        if (p == end)
            return {};
        if (*p == '>' && p - attribute == 1 && *attribute == '/')
            return {p + 1, true};
        if (*p != '=' || p == attribute || end - p < 2 || stop_at(p + 1) != Stop::quote)
            return {};
        const char* const value = p + 2;
        const char* const value_end =
            static_cast<const char*>(std::memchr(value, p[1], static_cast<std::size_t>(end - value)));
        if (value_end == nullptr || value_end + 1 == end)
            return {};
        node.attributes.emplace_back(std::piecewise_construct, std::forward_as_tuple(attribute, p),
                                     std::forward_as_tuple(value, value_end));
        p = value_end + 1;
        if (*p == '>')
            return {p + 1, false};
        if (*p == '/' && end - p > 1 && p[1] == '>')
            return {p + 2, true};
        if (stop_at(p) != Stop::separator)
            return {};
    }
}

} // namespace

int parser::step(int c)
{
    switch (state) {
    case none: return pnone(c);
    case stag: return pstag(c);
    case etag: return petag(c);
    case text: return ptext(c);
    case eps1: return peps1(c);
    case eps2: return peps2(c);
    case eps3: return peps3(c);
    case com1: return pcom1(c);
    case com2: return pcom2(c);
    case com3: return pcom3(c);
    case decl: return pdecl(c);
    case pis1: return ppis1(c);
    case pis2: return ppis2(c);
    case cdt1: return pcdt1(c);
    case cdt2: return pcdt2(c);
    case cdt3: return pcdt3(c);
    case cdt4: return pcdt4(c);
    case cdt5: return pcdt5(c);
    case cdt6: return pcdt6(c);
    case cdt7: return pcdt7(c);
    case cdt8: return pcdt8(c);
    case cdt9: return pcdt9(c);
    case error: break;
    }
    return -1;
}

int parser::acceptable() const { return state == text && current == root ? 1 : 0; }

void parser::enter(states s)
{
    quote = 0;
    end_tag.clear();
    state = s;
    auto node = std::make_unique<tagrec>();
    node->position = static_cast<int>(current->text.size());
    node->parent = current;
    current->children.push_back(node.get());
    current = node.release();
}

void parser::leave(states s)
{
    state = s;
    current = current->parent;
}

int parser::checknext(bool ok, states s)
{
    state = ok ? s : error;
    return ok ? 0 : -1;
}

// Opens a node whose tag starts with mark. After "</>" there is no node to open it in.
int parser::enter_with(states s, const char* mark)
{
    if (current == nullptr)
        return checknext(false, s);
    enter(s);
    current->tag += mark;
    return 0;
}

void parser::septag()
{
    std::list<std::string> tokens = sepexp(current->tag);
    std::string name;
    if (!tokens.empty()) {
        name = std::move(tokens.front());
        tokens.pop_front();
    }
    current->tag.swap(name); // the whole tag's room goes with name; a move or an assignment might keep it
    for (const std::string& token : tokens) {
        const std::size_t equals = token.find('=');
        if (equals == std::string::npos)
            current->attributes.emplace_back(token, std::string());
        else
            current->attributes.emplace_back(token.substr(0, equals), token.substr(equals + 1));
    }
}

// Appends c to the tag and follows the quotes; false when c is outside them and no quote itself.
bool parser::in_tag(char c)
{
    if (quote != 0) {
        if (c == quote)
            quote = 0;
    } else if (is_tag_quote(c)) {
        quote = c;
    } else {
        return false;
    }
    current->tag += c;
    return true;
}

int parser::pnone(int c)
{
    root = current = new tagrec;
    state = text;
    return step(c);
}

int parser::ptext(int c)
{
    if (c == '<')
        return checknext(true, eps1);
    if (current == nullptr)
        return checknext(false, text);
    current->text += static_cast<char>(c);
    return 0;
}

int parser::peps1(int c)
{
    switch (c) {
    case '/': end_tag.clear(); return checknext(true, etag);
    case '>': state = error; return 0;
    case '?': return enter_with(pis1, "?");
    case '!': return checknext(true, eps2);
    default: return enter_with(stag, "") == 0 ? step(c) : -1;
    }
}

int parser::pstag(int c)
{
    if (in_tag(static_cast<char>(c)))
        return 0;
    if (c != '>') {
        current->tag += static_cast<char>(c);
        return 0;
    }
    septag();
    if (ends_in_slash(current->tag)) {
        leave(text);
    } else {
        current->empty = 0;
        state = text;
    }
    return 0;
}

int parser::petag(int c)
{
    if (c != '>') {
        end_tag += static_cast<char>(c);
        return 0;
    }
    if (current == nullptr || !current->tagcmp(end_tag))
        return checknext(false, text);
    leave(text);
    return 0;
}

int parser::peps2(int c)
{
    if (c == '-')
        return checknext(true, eps3);
    if (c == '[')
        return enter_with(cdt1, "");
    return enter_with(decl, "!") == 0 ? step(c) : -1;
}

int parser::peps3(int c) { return checknext(c == '-', com1); }

int parser::pcom1(int c) { return checknext(true, c == '-' ? com2 : com1); }

int parser::pcom2(int c) { return checknext(true, c == '-' ? com3 : com1); }

int parser::pcom3(int c) { return checknext(true, c == '>' ? text : c == '-' ? com2 : com1); }

int parser::pdecl(int c)
{
    if (in_tag(static_cast<char>(c)))
        return 0;
    if (c == '>')
        leave(text);
    else
        current->tag += static_cast<char>(c);
    return 0;
}

int parser::ppis1(int c)
{
    if (in_tag(static_cast<char>(c)))
        return 0;
    if (c == '?')
        return checknext(true, pis2);
    current->tag += static_cast<char>(c);
    return 0;
}

int parser::ppis2(int c)
{
    if (c == '>') {
        septag();
        leave(text);
        return 0;
    }
    current->tag += '?';
    state = pis1;
    return step(c);
}

int parser::pcdt1(int c) { return checknext(c == 'C', cdt2); }

int parser::pcdt2(int c) { return checknext(c == 'D', cdt3); }

int parser::pcdt3(int c) { return checknext(c == 'A', cdt4); }

int parser::pcdt4(int c) { return checknext(c == 'T', cdt5); }

int parser::pcdt5(int c) { return checknext(c == 'A', cdt6); }

int parser::pcdt6(int c)
{
    if (c != '[')
        return checknext(false, cdt6);
    current->tag = "!CDATA ";
    return 0;
}

int parser::pcdt7(int c)
{
    if (c == ']')
        return checknext(true, cdt8);
    current->tag += static_cast<char>(c);
    return 0;
}

int parser::pcdt8(int c)
{
    if (c == ']')
        return checknext(true, cdt9);
    current->tag += ']';
    current->tag += static_cast<char>(c);
    return checknext(true, cdt7);
}

int parser::pcdt9(int c)
{
    if (c == '>') {
        leave(text);
        return 0;
    }
    if (c == ']') {
        current->tag += ']';
        return 0;
    }
    current->tag += "]]";
    current->tag += static_cast<char>(c);
    return checknext(true, cdt7);
}

int parser::feed(const char* data, std::size_t size)
{
    const char* const end = data + size;
    while (data != end && state != error) {
        if (state == text && current != nullptr)
            data = feed_text(data, end);
        else
            step(*data++);
    }
    return state == error ? -1 : 0;
}

// Takes the text up to the next "<", and the tag behind it when all of it is there; returns where it stopped.
const char* parser::feed_text(const char* data, const char* end)
{
    const auto* less = static_cast<const char*>(std::memchr(data, '<', static_cast<std::size_t>(end - data)));
    if (less == nullptr)
        less = end;
    current->text.append(data, less);
    if (less == end)
        return end;
    const char* const tag = less + 1;
    if (tag != end) {
        const char* const after = *tag == '/' ? whole_end_tag(tag + 1, end) : whole_start_tag(tag, end);
        if (after != nullptr)
            return after;
    }
    state = eps1;
    return tag;
}

// An end tag of current's name that ends before end: closes it and returns where it stopped. Else null.
const char* parser::whole_end_tag(const char* data, const char* end)
{
    const std::size_t size = current->tag.size();
    if (static_cast<std::size_t>(end - data) <= size || std::memchr(data, '>', size + 1) != data + size ||
        !equal_ignoring_ascii_case(data, current->tag.data(), size))
        return nullptr;
    leave(text);
    return data + size + 1;
}

// A start tag as peers write it that ends before end: opens its node and returns where it stopped. Else null,
// and nothing has changed.
const char* parser::whole_start_tag(const char* data, const char* end)
{
    if (*data == '!' || *data == '?')
        return nullptr;
    auto node = std::make_unique<tagrec>();
    const PlainTag tag = read_plain_tag(*node, data, end);
    if (tag.after == nullptr)
        return nullptr;
    if (tag.slash)
        node->tag += '/';
    node->position = static_cast<int>(current->text.size());
    node->parent = current;
    current->children.push_back(node.get());
    tagrec* const opened = node.release();
    if (!ends_in_slash(opened->tag)) {
        opened->empty = 0;
        current = opened;
    }
    return tag.after;
}
