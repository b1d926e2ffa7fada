#include "tests/editor/real/saved_drawing.h"

#include <pugixml.hpp>

#include <map>
#include <ostream>
#include <stdexcept>

namespace real_editor_test {
namespace {

constexpr unsigned int kAll =
    pugi::parse_full & ~(pugi::parse_escapes | pugi::parse_eol | pugi::parse_wconv_attribute);

constexpr const char* kViewRecord = "sodipodi:namedview";

std::string id_of(const pugi::xml_node& node) { return node.attribute("id").value(); }

std::string words_for(const pugi::xml_node& node)
{
    return std::string(node.name()) + " \"" + id_of(node) + "\"";
}

std::map<std::string, std::string> attributes_of(const pugi::xml_node& node)
{
    std::map<std::string, std::string> attributes;
    for (const pugi::xml_attribute& attribute : node.attributes())
        attributes[attribute.name()] = attribute.value();
    return attributes;
}

class Comparison {
public:
    Comparison(const pugi::xml_node& before, View view) : view_(view) { collect_ids(before); }

    void compare(const pugi::xml_node& before, const pugi::xml_node& after)
    {
        if (before.type() != after.type() || std::string(before.name()) != after.name() ||
            std::string(before.value()) != after.value())
            return note(words_for(before) + " has become " + words_for(after));
        if (view_ == View::ignored && std::string(before.name()) == kViewRecord)
            return;
        compare_attributes(before, after);
        pugi::xml_node old = before.first_child();
        for (const pugi::xml_node& child : after.children()) {
            if (is_new(child)) {
                change.added.push_back(id_of(after) + "/" + child.name());
                continue;
            }
            if (!old)
                return note("a second " + words_for(child) + " stands in " + words_for(after));
            compare(old, child);
            old = old.next_sibling();
        }
        if (old)
            note(words_for(old) + " is gone from " + words_for(after));
    }

    Change change;

private:
    void collect_ids(const pugi::xml_node& node)
    {
        ids_.insert(id_of(node));
        for (const pugi::xml_node& child : node.children())
            collect_ids(child);
    }

    bool is_new(const pugi::xml_node& node) const
    {
        return node.type() == pugi::node_element && ids_.count(id_of(node)) == 0;
    }

    void compare_attributes(const pugi::xml_node& before, const pugi::xml_node& after)
    {
        const auto old = attributes_of(before);
        const auto now = attributes_of(after);
        for (const auto& [name, value] : old) {
            const auto found = now.find(name);
            if (found == now.end())
                note(words_for(before) + " has lost its " + name);
            else if (found->second != value)
                note(words_for(before) + " has " + name + " " + found->second + " instead of " + value);
        }
        // The editor completes these two itself: with its version and namespaces when it saves, with the view when it
        // runs an extension.
        if (std::string(before.name()) == kViewRecord || before.parent().type() == pugi::node_document)
            return;
        for (const auto& [name, value] : now) {
            if (old.count(name) == 0)
                note(words_for(before) + " has got " + name + " " + value);
        }
    }

    void note(const std::string& text)
    {
        if (change.damage.empty())
            change.damage = text;
    }

    View view_;
    std::set<std::string> ids_;
};

// White space between elements is not read, as the editor sets it anew.
pugi::xml_document read(const std::string& text)
{
    pugi::xml_document document;
    if (!document.load_buffer(text.data(), text.size(), kAll & ~pugi::parse_ws_pcdata))
        throw std::runtime_error("the editor saved no XML");
    return document;
}

} // namespace

Change change_between(const std::string& before, const std::string& after, View view)
{
    const pugi::xml_document old = read(before);
    const pugi::xml_document now = read(after);
    Comparison comparison(old, view);
    comparison.compare(old, now);
    return comparison.change;
}

Change paths_in(const std::string& layer, std::size_t count)
{
    std::string name = layer;
    name += "/path";
    return {"", std::vector<std::string>(count, name)};
}

void PrintTo(const Change& change, std::ostream* out)
{
    *out << change.added.size() << " new elements";
    const std::set<std::string> kinds(change.added.begin(), change.added.end());
    for (const std::string& kind : kinds)
        *out << ", " << kind;
    *out << (change.damage.empty() ? "; nothing else" : "; " + change.damage);
}

} // namespace real_editor_test
