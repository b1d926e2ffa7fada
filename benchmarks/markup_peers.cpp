#include "benchmarks/markup_peers.h"

#include "Source/markup/parser.h"
#include "Source/markup/tagrec.h"

#include <algorithm>
#include <list>
#include <utility>

#ifdef VNT_HAS_EXPAT
#include <expat.h>
#endif
#ifdef VNT_HAS_LIBXML2
#include <libxml/parser.h>
#include <libxml/tree.h>
#endif
#ifdef VNT_HAS_PUGIXML
#include <pugixml.hpp>
#endif

namespace bench {
namespace {

std::shared_ptr<void> owned_when_complete(const parser& document)
{
    std::shared_ptr<tagrec> root(document.root);
    return document.acceptable() == 1 ? root : nullptr;
}

std::shared_ptr<void> parse_by_feed(const std::string& document)
{
    parser p;
    p.feed(document.data(), document.size());
    return owned_when_complete(p);
}

std::shared_ptr<void> parse_by_step(const std::string& document)
{
    parser p;
    for (const char c : document)
        p.step(static_cast<signed char>(c));
    return owned_when_complete(p);
}

std::size_t shapes_of_tagrec(const void* tree)
{
    std::vector<tagrec*> shapes;
    static_cast<const tagrec*>(tree)->path(shapes, "vant/shape");
    return shapes.size();
}

#ifdef VNT_HAS_EXPAT

// The least that a tree of the same standard types can be.
struct Node {
    std::string name;
    std::string text;
    std::list<std::pair<std::string, std::string>> attributes;
    std::list<Node*> children;
    Node* parent = nullptr;

    Node() = default;
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    ~Node()
    {
        for (const Node* child : children)
            delete child;
    }
};

void XMLCALL open_element(void* current, const XML_Char* name, const XML_Char** attributes)
{
    Node*& parent = *static_cast<Node**>(current);
    auto node = std::make_unique<Node>();
    node->name = name;
    for (; *attributes != nullptr; attributes += 2)
        node->attributes.emplace_back(attributes[0], attributes[1]);
    node->parent = parent;
    parent->children.push_back(node.get());
    parent = node.release();
}

void XMLCALL close_element(void* current, const XML_Char*)
{
    Node*& node = *static_cast<Node**>(current);
    node = node->parent;
}

void XMLCALL append_text(void* current, const XML_Char* text, int size)
{
    (*static_cast<Node**>(current))->text.append(text, static_cast<std::size_t>(size));
}

std::shared_ptr<void> parse_by_expat(const std::string& document, std::size_t piece)
{
    auto root = std::make_shared<Node>();
    Node* current = root.get();
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> expat(XML_ParserCreate(nullptr),
                                                                        XML_ParserFree);
    XML_SetUserData(expat.get(), &current);
    XML_SetElementHandler(expat.get(), open_element, close_element);
    XML_SetCharacterDataHandler(expat.get(), append_text);
    for (std::size_t at = 0; at < document.size(); at += piece) {
        const std::size_t size = std::min(piece, document.size() - at);
        const bool last = at + size == document.size();
        if (XML_Parse(expat.get(), document.data() + at, static_cast<int>(size), last) != XML_STATUS_OK)
            return nullptr;
    }
    return root;
}

std::shared_ptr<void> parse_by_expat_whole(const std::string& document)
{
    return parse_by_expat(document, document.size());
}

std::shared_ptr<void> parse_by_expat_in_pieces(const std::string& document)
{
    constexpr std::size_t kPiece = 64 * 1024;
    return parse_by_expat(document, kPiece);
}

std::size_t shapes_of_expat(const void* tree)
{
    const Node& vant = *static_cast<const Node*>(tree)->children.front();
    return static_cast<std::size_t>(std::count_if(vant.children.begin(), vant.children.end(),
                                                  [](const Node* child) { return child->name == "shape"; }));
}

#endif
#ifdef VNT_HAS_PUGIXML

std::shared_ptr<void> parse_by_pugixml(const std::string& document)
{
    auto tree = std::make_shared<pugi::xml_document>();
    return tree->load_buffer(document.data(), document.size()) ? tree : nullptr;
}

std::size_t shapes_of_pugixml(const void* tree)
{
    const auto shapes = static_cast<const pugi::xml_document*>(tree)->child("vant").children("shape");
    return static_cast<std::size_t>(std::distance(shapes.begin(), shapes.end()));
}

#endif
#ifdef VNT_HAS_LIBXML2

std::shared_ptr<void> parse_by_libxml2(const std::string& document)
{
    return {xmlReadMemory(document.data(), static_cast<int>(document.size()), nullptr, nullptr,
                          XML_PARSE_HUGE | XML_PARSE_NONET),
            xmlFreeDoc};
}

std::size_t shapes_of_libxml2(const void* tree)
{
    return xmlChildElementCount(xmlDocGetRootElement(static_cast<const xmlDoc*>(tree)));
}

#endif

} // namespace

std::vector<MarkupPeer> markup_peers()
{
    std::vector<MarkupPeer> peers{
        {"feed", "`parser::feed`", parse_by_feed, shapes_of_tagrec},
        {"step", "`parser::step`", parse_by_step, shapes_of_tagrec},
    };
#ifdef VNT_HAS_EXPAT
    const std::string version = std::string("expat ") + (XML_ExpatVersion() + sizeof "expat_" - 1);
    peers.push_back(
        {"expat", version + ", the whole document in one call", parse_by_expat_whole, shapes_of_expat, true});
    peers.push_back(
        {"expat-pieces", version + ", in pieces of 64 KB", parse_by_expat_in_pieces, shapes_of_expat, true});
#endif
#ifdef VNT_HAS_PUGIXML
    peers.push_back({"pugixml",
                     "pugixml " + std::to_string(PUGIXML_VERSION / 1000) + "." +
                         std::to_string(PUGIXML_VERSION / 10 % 100) + ", its own tree",
                     parse_by_pugixml, shapes_of_pugixml});
#endif
#ifdef VNT_HAS_LIBXML2
    peers.push_back(
        {"libxml2", "libxml2 " LIBXML_DOTTED_VERSION ", its own tree", parse_by_libxml2, shapes_of_libxml2});
#endif
    return peers;
}

} // namespace bench
