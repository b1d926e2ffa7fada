// The element tree that the parser builds, queries over it by name and path, and the splitting of a tag into
// tokens.
//
// Shapes: names keep the marks of their form: "center/" was self-closing, "?xml" a processing instruction,
//         "!DOCTYPE ..." a declaration with its whole text, "!CDATA " a character data section.
//         Names compare without regard to case, in ASCII alone, whatever the locale.
// Owner:  a node owns its children. Nothing here uses the call stack in proportion to the depth of a tree.
// Errors: nothing throws but allocation; what is not there is not found.
#pragma once

#include <list>
#include <string>
#include <utility>
#include <vector>

class tagrec {
public:
    // 0 when the element has an end tag; 1 for self-closing elements, declarations and the root.
    int empty = 1;

    // Length of the parent's text when this node was opened: where it sits in that text.
    int position = 0;

    std::string tag;  // the root's is empty
    std::string text; // character data directly inside, children's excluded

    // Name and value in document order, quotes removed.
    std::list<std::pair<std::string, std::string>> attributes;

    std::list<tagrec*> children; // in document order
    tagrec* parent = nullptr;    // null for the root

    tagrec() = default;
    tagrec(const tagrec&) = delete;
    tagrec& operator=(const tagrec&) = delete;
    ~tagrec(); // deletes every descendant

    // Whether the tag is that name. The "/" of a self-closing element is part of its tag.
    bool tagcmp(const std::string& name) const;

    // Appends every direct child of that name, in order; returns how many.
    int scan(std::vector<tagrec*>& out, const std::string& name) const;

    // Appends every descendant of that name in document order, a node before its own descendants; returns how
    // many.
    int find(std::vector<tagrec*>& out, const std::string& name) const;

    // Follows names separated by "/" from this node down and appends the nodes at the end of the path.
    // One "/" at the end makes no difference. An expression that starts with "/" finds nothing and returns 0.
    //
    // Deliberate: of several names, returns the size of out, with what it held before; of one, how many it
    // appended. Kept by TagrecPath.KeepsCountingWhatOutHeldBefore. Depends on it: nothing.
    int path(std::vector<tagrec*>& out, const std::string& expr) const;

    // Deliberate: walks past the root and returns null; the root is where parent is null.
    // Kept by Tagrec.KeepsFindrootReturningNull. Depends on it: path, whose absolute expressions find
    // nothing.
    tagrec* findroot() const;

    // Copies the first attribute of that name to out and returns true; returns false and leaves out alone
    // when there is none.
    bool scanattr(std::pair<std::string, std::string>& out, const std::string& name) const;

    // The markup of this node and all below it. The "/" of a self-closing element stands right after its
    // name.
    std::string dump() const;
};

// Splits the inside of a tag into tokens: at blank, tab, CR and LF outside quotes. Quotes are not copied,
// what is in them is, blanks included. A "/" at the end goes to the end of the first token, and is the first
// token of a tag that has no other.
//
// Deliberate: a separator met while the token is empty is copied into it, so that the second of two blanks
// starts the next token. Kept by Sepexp.KeepsASecondBlankInTheNextToken. Depends on it: peers, which write
// single blanks.
std::list<std::string> sepexp(const std::string& s);
