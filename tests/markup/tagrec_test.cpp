#include "Source/markup/tagrec.h"

#include "tests/support/made_locale.h"

#include <gtest/gtest.h>

#include <list>
#include <string>
#include <utility>
#include <vector>

namespace {

// Makes a node with that text, or a child of a node.
tagrec* add(tagrec& parent, const std::string& tag, const std::string& text = "")
{
    auto* const node = new tagrec;
    node->tag = tag;
    node->text = text;
    node->position = static_cast<int>(parent.text.size());
    node->parent = &parent;
    parent.children.push_back(node);
    return node;
}

std::string texts_of(const std::vector<tagrec*>& nodes)
{
    std::string all;
    for (const tagrec* node : nodes)
        all += (all.empty() ? "" : " ") + node->text;
    return all;
}

std::string joined(const std::list<std::string>& tokens)
{
    std::string all;
    for (const std::string& token : tokens)
        all += "[" + token + "]";
    return all;
}

TEST(Tagrec, IsEmptyAtConstruction)
{
    const tagrec node;
    EXPECT_EQ(node.empty, 1);
    EXPECT_EQ(node.position, 0);
    EXPECT_EQ(node.tag, "");
    EXPECT_EQ(node.text, "");
    EXPECT_TRUE(node.attributes.empty());
    EXPECT_TRUE(node.children.empty());
    EXPECT_EQ(node.parent, nullptr);
}

TEST(Tagrec, DeletesItsDescendants)
{
    auto* const root = new tagrec;
    for (int i = 0; i < 3; ++i)
        add(*add(*add(*root, "a"), "b"), "c");
    delete root; // the leak check of the sanitizers tells
    tagrec with_null;
    with_null.children.push_back(nullptr);
}

struct NameCase {
    const char* name;
    const char* tag;
    const char* asked;
    bool same;
};
const NameCase kNames[] = {
    {"TheSame",                      "shape",                      "shape",                      true },
    {"UpperInTheTag",                "SHAPE",                      "shape",                      true },
    {"UpperInTheQuestion",           "shape",                      "ShapE",                      true },
    {"SlashIsPartOfTheTag",          "center/",                    "center",                     false},
    {"SlashAsked",                   "CENTER/",                    "center/",                    true },
    {"SlashAskedOfAnElementWithEnd", "center",                     "center/",                    false},
    {"Prefix",                       "shapes",                     "shape",                      false},
    {"LongerThanTheTag",             "shap",                       "shape",                      false},
    {"BothEmpty",                    "",                           "",                           true },
    {"EmptyAsked",                   "a",                          "",                           false},
    {"BlankInFront",                 " a",                         "a",                          false},
    {"EveryLetter",                  "abcdefghijklmnopqrstuvwxyz", "ABCDEFGHIJKLMNOPQRSTUVWXYZ", true },
    {"BracketsAreNoCases",           "[",                          "{",                          false},
    {"AtAndBacktickAreNoCases",      "@",                          "`",                          false},
    {"LatinUmlautsAreNoCases",       "\xC4",                       "\xE4",                       false},
    {"Utf8UmlautsAreNoCases",        "\xC3\x84",                   "\xC3\xA4",                   false},
};
class TagName : public testing::TestWithParam<NameCase> {};
TEST_P(TagName, ComparesWithoutRegardToAsciiCase)
{
    tagrec node;
    node.tag = GetParam().tag;
    EXPECT_EQ(node.tagcmp(GetParam().asked), GetParam().same);
}
INSTANTIATE_TEST_SUITE_P(, TagName, testing::ValuesIn(kNames),
                         [](const auto& row) { return row.param.name; });

TEST(TagNameLocale, HasNoSayInCase)
{
    const support::MadeLocale locale("de_DE", "ISO-8859-1");
    if (!locale.is_set())
        GTEST_SKIP() << "no locale with umlauts can be had here";
    ASSERT_EQ(std::tolower(0xC4), 0xE4); // in that locale they are cases of one letter
    tagrec node;
    node.tag = "\xC4";
    node.attributes.emplace_back("\xC4", "1");
    std::pair<std::string, std::string> found;
    EXPECT_FALSE(node.tagcmp("\xE4"));
    EXPECT_FALSE(node.scanattr(found, "\xE4"));
    EXPECT_TRUE(node.tagcmp("\xC4"));
}

// A tree to search, whose texts tell its nodes apart.
class TagrecSearch : public testing::Test {
protected:
    TagrecSearch()
    {
        add(root_, "center/", "c1");
        tagrec* const outer = add(root_, "Shape", "s1");
        add(*add(*outer, "line", "l1"), "start/", "p1");
        add(*add(*outer, "shape", "s2"), "line", "l2");
        add(*outer, "LINE", "l3");
        add(root_, "center", "c2");
        add(*add(root_, "shape", "s3"), "line", "l4");
        add(*add(root_, "shape/", "s4"), "line", "l5");
    }

    tagrec root_;
};

TEST_F(TagrecSearch, ScanTakesDirectChildrenInOrder)
{
    std::vector<tagrec*> out;
    EXPECT_EQ(root_.scan(out, "shape"), 2);
    EXPECT_EQ(texts_of(out), "s1 s3");
    EXPECT_EQ(root_.scan(out, "CENTER/"), 1);
    EXPECT_EQ(texts_of(out), "s1 s3 c1");
    EXPECT_EQ(root_.scan(out, "line"), 0);
    EXPECT_EQ(root_.scan(out, ""), 0);
    EXPECT_EQ(texts_of(out), "s1 s3 c1");
}

TEST_F(TagrecSearch, FindTakesDescendantsInDocumentOrder)
{
    std::vector<tagrec*> out;
    EXPECT_EQ(root_.find(out, "shape"), 3);
    EXPECT_EQ(texts_of(out), "s1 s2 s3");
    EXPECT_EQ(root_.find(out, "line"), 5);
    EXPECT_EQ(texts_of(out), "s1 s2 s3 l1 l2 l3 l4 l5");
    EXPECT_EQ(root_.find(out, "nothing"), 0);
    EXPECT_EQ(out.size(), 8U);
}

TEST_F(TagrecSearch, FindLeavesTheNodeItselfOut)
{
    std::vector<tagrec*> out;
    const tagrec* const outer = *std::next(root_.children.begin());
    EXPECT_EQ(outer->find(out, "shape"), 1);
    EXPECT_EQ(texts_of(out), "s2");
}

struct PathCase {
    const char* name;
    const char* expr;
    const char* found; // texts of the nodes that are appended
    int result;        // into an empty list
    int result_behind; // into a list that holds two nodes already
};
const PathCase kPaths[] = {
    {"OneName",                                "shape",            "s1 s3",    2, 2},
    {"OneNameThatIsNotThere",                  "line",             "",         0, 0},
    {"SlashAtTheEndMakesNoDifference",         "shape/",           "s1 s3",    2, 2},
    {"CenterWithSlashFindsTheOneWithAnEndTag", "center/",          "c2",       1, 1},
    {"TwoNames",                               "shape/line",       "l1 l3 l4", 3, 5},
    {"TwoNamesInOtherCase",                    "SHAPE/Line",       "l1 l3 l4", 3, 5},
    {"TwoNamesAndASlash",                      "shape/line/",      "l1 l3 l4", 3, 5},
    {"ThreeNames",                             "shape/shape/line", "l2",       1, 3},
    {"FirstNameNotThere",                      "none/line",        "",         0, 0},
    {"LastNameNotThere",                       "shape/none",       "",         0, 2},
    {"MiddleNameNotThere",                     "shape/none/line",  "",         0, 2},
    {"AbsoluteFindsNothing",                   "/shape",           "",         0, 0},
    {"SlashAloneFindsNothing",                 "/",                "",         0, 0},
    {"TwoSlashesInside",                       "shape//line",      "",         0, 2},
    {"TwoSlashesAtTheEnd",                     "shape//",          "",         0, 2},
    {"EmptyFindsUnnamedChildren",              "",                 "",         0, 0},
};
class TagrecPathCase : public TagrecSearch, public testing::WithParamInterface<PathCase> {};
TEST_P(TagrecPathCase, FindsAndCounts)
{
    std::vector<tagrec*> out;
    EXPECT_EQ(root_.path(out, GetParam().expr), GetParam().result);
    EXPECT_EQ(texts_of(out), GetParam().found);
    tagrec held;
    held.text = "held";
    std::vector<tagrec*> behind{&held, &held};
    EXPECT_EQ(root_.path(behind, GetParam().expr), GetParam().result_behind);
    const std::string found = GetParam().found;
    EXPECT_EQ(texts_of(behind), "held held" + (found.empty() ? "" : " " + found));
}
INSTANTIATE_TEST_SUITE_P(, TagrecPathCase, testing::ValuesIn(kPaths),
                         [](const auto& row) { return row.param.name; });

TEST(TagrecPath, KeepsCountingWhatOutHeldBefore)
{
    tagrec root;
    add(*add(root, "a"), "b", "b1");
    tagrec held;
    std::vector<tagrec*> out{&held, &held};
    EXPECT_EQ(root.path(out, "a/b"), 3);
    EXPECT_EQ(root.path(out, "a"), 1);
    EXPECT_EQ(root.path(out, "none/b"), 0);
    EXPECT_EQ(out.size(), 4U);
}

TEST(Tagrec, KeepsFindrootReturningNull)
{
    tagrec root;
    const tagrec* const leaf = add(*add(root, "a"), "b");
    EXPECT_EQ(leaf->findroot(), nullptr);
    EXPECT_EQ(root.findroot(), nullptr);
}

TEST(Tagrec, FindsAnAttributeByName)
{
    tagrec node;
    std::pair<std::string, std::string> out("old name", "old value");
    EXPECT_FALSE(node.scanattr(out, "x"));
    node.attributes = {
        {"X", "1"},
        {"x", "2"},
        {"y", "" }
    };
    EXPECT_FALSE(node.scanattr(out, "z"));
    EXPECT_EQ(out.first, "old name");
    EXPECT_EQ(out.second, "old value");
    EXPECT_TRUE(node.scanattr(out, "x")); // the first of them, and its name as it stands
    EXPECT_EQ(out.first, "X");
    EXPECT_EQ(out.second, "1");
    EXPECT_TRUE(node.scanattr(out, "Y"));
    EXPECT_EQ(out.first, "y");
    EXPECT_EQ(out.second, "");
}

// Dumps

tagrec* element(tagrec& parent, const std::string& tag)
{
    tagrec* const node = add(parent, tag);
    node->empty = 0;
    return node;
}

TEST(TagrecDump, OfNothingIsNothing) { EXPECT_EQ(tagrec().dump(), ""); }

TEST(TagrecDump, WritesStartTextAndEnd)
{
    tagrec root;
    element(root, "a")->text = "x<&y";
    EXPECT_EQ(root.dump(), "<a>x<&y</a>");
}

TEST(TagrecDump, WritesTheSlashOfASelfClosingElementBehindItsName)
{
    tagrec root;
    add(root, "center/")->attributes = {
        {"x", "1"},
        {"y", "" },
        {"z", "3"}
    };
    EXPECT_EQ(root.dump(), "<center/ x=\"1\" y z=\"3\">");
}

TEST(TagrecDump, WritesInstructionsWithBothQuestionMarks)
{
    tagrec root;
    add(root, "?xml")->attributes = {
        {"version", "1.0"}
    };
    EXPECT_EQ(root.dump(), "<?xml version=\"1.0\"?>");
}

TEST(TagrecDump, WritesDeclarationsAsTheyStand)
{
    tagrec root;
    add(root, "!DOCTYPE a \"b\"");
    EXPECT_EQ(root.dump(), "<!DOCTYPE a \"b\">");
}

TEST(TagrecDump, WritesElementsWithoutANameByTheirEndAlone)
{
    tagrec root;
    element(root, "")->text = "x";
    EXPECT_EQ(root.dump(), "x</>");
}

TEST(TagrecDump, PutsChildrenWhereTheyStandInTheText)
{
    tagrec root;
    tagrec* const a = element(root, "a");
    a->text = "12";
    add(*a, "b/");
    add(*a, "c/");
    a->text += "345";
    element(*a, "d")->text = "x";
    EXPECT_EQ(root.dump(), "<a>12<b/><c/>345<d>x</d></a>");
    EXPECT_EQ(a->dump(), "<a>12<b/><c/>345<d>x</d></a>");
}

TEST(TagrecDump, StandsPositionsOutsideTheText)
{
    tagrec root;
    root.text = "123";
    add(root, "a/")->position = 1000;
    add(root, "b/")->position = -5;
    add(root, "c/")->position = 1;
    EXPECT_EQ(root.dump(), "123<a/><b/><c/>");
}

// Tokens

struct TokenCase {
    const char* name;
    const char* tag;
    const char* tokens;
};
const TokenCase kTokens[] = {
    {"SelfClosingPoint",                       "center x=\"1\" y=\"2\" /", "[center/][x=1][y=2]"},
    {"SelfClosingName",                        "br/",                      "[br/]"              },
    {"SelfClosingWithoutABlank",               "a b=\"1\"/",               "[a/][b=1]"          },
    {"Nothing",                                "",                         ""                   },
    {"SlashAlone",                             "/",                        "[/]"                },
    {"QuotesAndSlash",                         "\"\"/",                    "[/]"                },
    {"QuotesAlone",                            "\"\"''",                   ""                   },
    {"TwoSlashes",                             "//",                       "[//]"               },
    {"SlashInside",                            "a/b",                      "[a/b]"              },
    {"SlashBeforeABlank",                      "a/ ",                      "[a/]"               },
    {"EverySeparator",                         "a b\tc\rd\ne",             "[a][b][c][d][e]"    },
    {"OtherBlanksDoNotSeparate",               "a\vb\fc",                  "[a\vb\fc]"          },
    {"BlankAtTheEndIsDropped",                 "a ",                       "[a]"                },
    {"TwoBlanks",                              "a  b",                     "[a][ b]"            },
    {"ThreeBlanks",                            "a   b",                    "[a][ ][b]"          },
    {"FourBlanks",                             "a    b",                   "[a][ ][ b]"         },
    {"TabAndBlank",                            "a\t b",                    "[a][ b]"            },
    {"TwoBlanksAtTheEnd",                      "a  ",                      "[a][ ]"             },
    {"BlankFirst",                             " a",                       "[ a]"               },
    {"BlankAlone",                             " ",                        "[ ]"                },
    {"BlanksInDoubleQuotes",                   "a=\" b  c \" d",           "[a= b  c ][d]"      },
    {"BlanksInSingleQuotes",                   "a=' b' c",                 "[a= b][c]"          },
    {"OtherQuoteInQuotes",                     "a='\"' b=\"'\"",           "[a=\"][b=']"        },
    {"QuoteLeftOpen",                          "a=\"b c",                  "[a=b c]"            },
    {"QuoteLeftOpenBeforeTheSlash",            "a=\"b/",                   "[a=b/]"             },
    {"QuoteLeftOpenInAttributeBeforeTheSlash", "a b=\"c/",                 "[a/][b=c]"          },
    {"EmptyQuotesAreNoToken",                  "a \"\" b",                 "[a][ b]"            },
    {"EmptyQuotesInAToken",                    "a b=\"\" c",               "[a][b=][c]"         },
    {"QuotesInsideAToken",                     "a\"b c\"d",                "[ab cd]"            },
    {"BytesAbove127",                          "\xC3\xA4 \xFF",            "[\xC3\xA4][\xFF]"   },
};
class TagTokens : public testing::TestWithParam<TokenCase> {};
TEST_P(TagTokens, AreSplit) { EXPECT_EQ(joined(sepexp(GetParam().tag)), GetParam().tokens); }
INSTANTIATE_TEST_SUITE_P(, TagTokens, testing::ValuesIn(kTokens),
                         [](const auto& row) { return row.param.name; });

TEST(Sepexp, KeepsASecondBlankInTheNextToken)
{
    EXPECT_EQ(joined(sepexp("a  b")), "[a][ b]");
    EXPECT_EQ(joined(sepexp("center  x=\"1\" /")), "[center/][ x=1]");
}

TEST(Sepexp, CopiesNulBytes)
{
    const std::string tag("a\0b c", 5);
    EXPECT_EQ(joined(sepexp(tag)), std::string("[a\0b][c]", 8));
}

} // namespace
