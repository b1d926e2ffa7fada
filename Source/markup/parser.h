// A push parser for the documents of the link: characters in, a tree of tagrec out.
//
// Deliberately minimal: no entities are decoded ("&amp;" stays five characters), there are no namespaces,
// nothing is checked but the nesting of end tags, comments leave no trace, names compare without regard to
// case.
//
// Owner:  the tree belongs to the caller, who deletes root; the parser's destructor leaves it alone.
// Errors: state 4 (error), from which nothing leads away; checkerror() tells.
#pragma once

#include "Source/markup/tagrec.h"

#include <cstddef>
#include <string>

class parser {
public:
    enum states : int {
        none = 0,  // nothing read yet
        stag = 1,  // inside a start tag
        etag = 2,  // inside an end tag
        text = 3,  // character data of the current node
        error = 4, // for ever
        eps1 = 10, // after "<"
        eps2 = 11, // after "<!"
        eps3 = 12, // after "<!-"
        com1 = 20, // comment
        com2 = 21, // comment, one "-" seen
        com3 = 22, // comment, two "-" seen
        decl = 30, // declaration, such as a document type declaration
        pis1 = 40, // processing instruction
        pis2 = 41, // processing instruction, "?" seen
        cdt1 = 50, // "<![" seen; 50 to 55 match "CDATA["
        cdt2 = 51,
        cdt3 = 52,
        cdt4 = 53,
        cdt5 = 54,
        cdt6 = 55,
        cdt7 = 56, // character data section
        cdt8 = 57, // one "]" seen
        cdt9 = 58, // two "]" seen
    };

    // The root of the tree, null until the first character. Its tag is empty; the document's elements are its
    // children.
    tagrec* root = nullptr;

    parser() = default;
    parser(const parser&) = delete;
    parser& operator=(const parser&) = delete;

    // Takes one byte of the document, as a signed char's value; returns 0 when it was accepted and -1 on an
    // error, now or before.
    //
    // Deliberate: the ">" of "<>" leads to the error state and still returns 0.
    // Kept by ParserStep.KeepsReturningZeroForTheEmptyTag. Depends on it: nothing.
    //
    // Deliberate: in a comment, a third "-" counts as the first again, so that "--->" does not end it.
    // Kept by Parser.KeepsAThirdDashFromEndingAComment. Depends on it: nothing.
    //
    // Deliberate: state 55 never moves on, so that every character data section ends in the error state, at
    // the first character after its opening bracket that is not another "[". States 56 to 58 stay for it all
    // the same. Kept by Parser.KeepsCharacterDataSectionsInError. Depends on it: peers, which write none.
    int step(int c);

    // Takes size bytes at once; the same in every respect as step() for each of them, only faster.
    // Returns -1 when the parser is in its error state afterwards, else 0.
    int feed(const char* data, std::size_t size);

    // 1 when the document is complete (every element closed, the root not), else 0.
    int acceptable() const;

    bool checkerror() const { return state == error; }

private:
    friend struct parser_probe; // the tests', which also enter the states that no document leads to

    states state = none;
    std::string end_tag;       // name collected inside an end tag
    int quote = 0;             // the quote character that is open inside a tag, 0 when none
    tagrec* current = nullptr; // receives text and children; null once "</>" has closed the root

    void enter(states s);             // opens a new child of current, makes it current and goes to s
    void leave(states s);             // back to current's parent, and to s
    int checknext(bool ok, states s); // 0 and to s when ok, else -1 and to the error state
    int enter_with(states s, const char* mark);
    void septag(); // splits current's tag into name and attributes
    bool in_tag(char c);

    int pnone(int c);
    int pstag(int c);
    int petag(int c);
    int ptext(int c);
    int peps1(int c);
    int peps2(int c);
    int peps3(int c);
    int pcom1(int c);
    int pcom2(int c);
    int pcom3(int c);
    int pdecl(int c);
    int ppis1(int c);
    int ppis2(int c);
    int pcdt1(int c);
    int pcdt2(int c);
    int pcdt3(int c);
    int pcdt4(int c);
    int pcdt5(int c);
    int pcdt6(int c);
    int pcdt7(int c);
    int pcdt8(int c);
    int pcdt9(int c);

    const char* feed_text(const char* data, const char* end);
    const char* whole_start_tag(const char* data, const char* end);
    const char* whole_end_tag(const char* data, const char* end);
};
