// The entities that a document declares for itself, and what references to them stand for.
//
// Shapes: drawings of some programs hold their namespaces in entities (xmlns="&ns_svg;"), so that nothing of
//         such a document can be found without them.
// Errors: a reference that means nothing is left as it is written.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace vnt::host {

class XmlEntities {
public:
    // Takes the general entities with a literal value from a document type declaration, <!DOCTYPE to >.
    void declare(std::string_view doctype);

    bool is_declared(std::string_view name) const;

    // Whether there may be declarations that are not in the document itself, so that an unknown name is no fault.
    bool is_incomplete() const { return incomplete_; }

    // An attribute's value as the document means it: references replaced, each blank a space.
    //
    // Accuracy: a reference to an entity is left as it is when the text of entities would pass 4 KiB, and past 64
    //           of them, or 16 one in the other: an answer to documents that expand without end. Time is
    //           proportional to what is written and those limits.
    std::string expand(std::string_view written) const;

private:
    void declare_entity(std::string_view declaration);

    struct Expansion {
        std::string value;
        std::size_t from_entities = 0; // bytes, as the entities are written
        int references = 0;
        int depth = 0;
    };
    void expand_into(Expansion& expansion, std::string_view written) const;
    bool try_expand_reference(Expansion& expansion, std::string_view inside) const;

    std::map<std::string, std::string, std::less<>> values_;
    bool incomplete_ = false;
};

// The character that the inside of a reference (#65, #x41) names; 0 when it names none.
char32_t character_of_reference(std::string_view inside);
bool is_xml_character(char32_t character);
// One of lt, gt, amp, quot, apos; 0 otherwise.
char predefined_entity(std::string_view name);

} // namespace vnt::host
