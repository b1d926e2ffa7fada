#include "Source/markup/parser.h"

#include "tests/markup/documents.h"
#include "tests/markup/parser_probe.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

using namespace markup_test;

namespace {

// The lines of a tree under its root, one level up.
std::string tree_under_root(const tagrec& root)
{
    std::string text;
    for (const tagrec* child : root.children)
        text += tree_text(child);
    return text;
}

class ParserDocument : public testing::TestWithParam<Document> {};
TEST_P(ParserDocument, MakesItsTree)
{
    OwnedParser owned;
    parser& p = owned.p;
    step_all(p, GetParam().text);
    EXPECT_EQ(p.checkerror(), GetParam().end == End::error);
    EXPECT_EQ(p.acceptable(), GetParam().end == End::complete ? 1 : 0);
    if (GetParam().tree == nullptr) {
        EXPECT_EQ(p.root, nullptr);
        return;
    }
    ASSERT_NE(p.root, nullptr);
    EXPECT_EQ(p.root->tag, "");
    EXPECT_EQ(p.root->parent, nullptr);
    EXPECT_EQ(p.root->empty, 1);
    EXPECT_EQ(tree_under_root(*p.root), GetParam().tree);
}
INSTANTIATE_TEST_SUITE_P(, ParserDocument, testing::ValuesIn(kDocuments),
                         [](const auto& row) { return row.param.name; });

TEST(Parser, HoldsTextInTheRootWhereNoElementIs)
{
    OwnedParser owned;
    step_all(owned.p, "a<b>c</b>d");
    EXPECT_EQ(owned.p.root->text, "ad");
}

struct ErrorCase {
    const char* name;
    std::string document;
    std::size_t at; // number of the character that leads to the error state
    int result;     // of its step
};
const ErrorCase kErrors[] = {
    {"EndTagThatDoesNotFit",                 "<a></b>",       6,  -1},
    {"CommentOfOneDash",                     "<!-x",          3,  -1},
    {"CharacterDataSectionAtItsText",        "<![CDATA[x]]>", 9,  -1},
    {"CharacterDataSectionAtItsEnd",         "<![CDATA[]]>",  9,  -1},
    {"CharacterDataSectionMisspelt",         "<![CDATX",      7,  -1},
    {"CharacterDataSectionBehindABracket",   "<![CDATA[[[x",  11, -1},
    {"EmptyTagWithoutSayingSo",              "<>",            1,  0 },
    {"TextBehindTheRoot",                    "</>x",          3,  -1},
    {"BlankBehindTheRoot",                   "</> ",          3,  -1},
    {"StartTagBehindTheRoot",                "</><a",         4,  -1},
    {"EndTagBehindTheRoot",                  "</></>",        5,  -1},
    {"InstructionBehindTheRoot",             "</><?",         4,  -1},
    {"DeclarationBehindTheRoot",             "</><!a",        5,  -1},
    {"DeclarationWithoutANameBehindTheRoot", "</><!>",        5,  -1},
    {"CharacterDataSectionBehindTheRoot",    "</><![",        5,  -1},
    {"TextBehindACommentBehindTheRoot",      "</><!--a-->x",  11, -1},
    {"EmptyTagBehindTheRoot",                "</><>",         4,  0 },
};
class ParserError : public testing::TestWithParam<ErrorCase> {};
TEST_P(ParserError, IsMetAtItsCharacterAndStays)
{
    OwnedParser owned;
    parser& p = owned.p;
    for (std::size_t i = 0; i < GetParam().document.size(); ++i) {
        const int result = p.step(GetParam().document[i]);
        EXPECT_EQ(p.checkerror(), i >= GetParam().at) << "character " << i;
        EXPECT_EQ(result, i < GetParam().at    ? 0
                          : i == GetParam().at ? GetParam().result
                                               : -1)
            << "character " << i;
    }
    const std::string before = whole_text(p);
    for (const char c : std::string("x<a/></a>--><>")) {
        EXPECT_EQ(p.step(c), -1);
        EXPECT_EQ(p.acceptable(), 0);
    }
    EXPECT_EQ(whole_text(p), before);
}
INSTANTIATE_TEST_SUITE_P(, ParserError, testing::ValuesIn(kErrors),
                         [](const auto& row) { return row.param.name; });

TEST(Parser, KeepsAThirdDashFromEndingAComment)
{
    OwnedParser owned;
    parser& p = owned.p;
    step_all(p, "<!--a--->");
    EXPECT_EQ(p.acceptable(), 0);
    step_all(p, "b");
    EXPECT_EQ(p.root->text, "");
    step_all(p, "-->c");
    EXPECT_EQ(p.acceptable(), 1);
    EXPECT_EQ(p.root->text, "c");
}

TEST(Parser, KeepsCharacterDataSectionsInError)
{
    for (const std::string content : {"", "x", "]", "]]>", " ", "<", "C"}) {
        OwnedParser owned;
        step_all(owned.p, "<![CDATA[" + content + "]]>");
        EXPECT_TRUE(owned.p.checkerror()) << content;
    }
    OwnedParser brackets;
    for (const char c : std::string("<![CDATA[[[[["))
        EXPECT_EQ(brackets.p.step(c), 0);
    EXPECT_FALSE(brackets.p.checkerror());
    EXPECT_EQ(brackets.p.root->children.front()->tag, "!CDATA ");
    EXPECT_EQ(brackets.p.step(']'), -1);
}

TEST(Parser, LeavesItsTreeToItsOwner)
{
    tagrec* root = nullptr;
    {
        parser p;
        step_all(p, "<a><b/></a>");
        root = p.root;
    }
    EXPECT_EQ(root->dump(), "<a><b/></a>");
    delete root;
}

TEST(Parser, IsUsableWithoutEverGettingACharacter)
{
    parser p;
    EXPECT_EQ(p.acceptable(), 0);
    EXPECT_FALSE(p.checkerror());
    EXPECT_EQ(p.root, nullptr);
    EXPECT_EQ(p.feed("", 0), 0);
    EXPECT_EQ(p.root, nullptr);
}

TEST(Parser, FindsNoStrokeInASelfClosingShape)
{
    OwnedParser owned;
    step_all(owned.p, "<vant><shape/><SHAPE></SHAPE><Shape><shape><line></line></shape></Shape></vant>");
    std::vector<tagrec*> shapes;
    EXPECT_EQ(owned.p.root->find(shapes, "shape"), 3);
    ASSERT_EQ(shapes.size(), 3U);
    EXPECT_EQ(shapes[0]->tag, "SHAPE");
    EXPECT_EQ(shapes[1]->tag, "Shape");
    EXPECT_EQ(shapes[2]->tag, "shape");
}

} // namespace
