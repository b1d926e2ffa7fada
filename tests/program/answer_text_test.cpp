#include "tests/support/temporary_folder.h"
#include "tools/program/answer_text.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>

namespace {

using namespace vnt::program;

std::string describe(const Result<std::string>& result)
{
    if (const auto* problem = std::get_if<Problem>(&result))
        return std::to_string(problem->status) + ": " + problem->sentence;
    return "line: " + std::get<std::string>(result);
}

struct JoinCase {
    const char* name;
    std::string document;
    std::string line;
};

const JoinCase kJoins[] = {
    {"NothingStaysNothing",                   "",                                         ""                              },
    {"OneLineStaysAsItIs",                    "<a> <b x='1'  y='2'/> </a>",               "<a> <b x='1'  y='2'/> </a>"    },
    {"LastLineBreakGoes",                     "<a></a>\n",                                "<a></a>"                       },
    {"IndentationBetweenElementsGoes",        "<a>\n  <b/>\n\t<c/>\n</a>\n",              "<a><b/><c/></a>"               },
    {"EmptyLinesGo",                          "\n\n<a>\n\n\n</a>\n\n",                    "<a></a>"                       },
    {"CarriageReturnsGoWithTheirLineFeeds",   "<a>\r\n  <b/>\r\n</a>\r\n",                "<a><b/></a>"                   },
    {"ALoneCarriageReturnIsALineBreak",       "<a>\r<b/>\r</a>\r",                        "<a><b/></a>"                   },
    {"BlanksInFrontOfABreakGo",               "<a>  \n<b/></a>",                          "<a><b/></a>"                   },
    {"BlanksWithoutABreakStay",               "<a>  <b/>\n</a>",                          "<a>  <b/></a>"                 },
    {"BreaksAroundAnElementsTextGo",          "<radius>\n  25.0\n</radius>",              "<radius>25.0</radius>"         },
    {"BreaksWithinATextBecomeABlank",         "<note>two\n    words</note>",              "<note>two words</note>"        },
    {"AttributesOnTheirOwnLinesKeepOneBlank", "<start\n    x=\"1.0\"\n    y=\"2.0\"\n/>",
     "<start x=\"1.0\" y=\"2.0\"/>"                                                                                       },
    {"NoBlankIsLeftAtATagsEnd",               "<a\n>\n</a\n>",                            "<a></a>"                       },
    {"NoBlankIsLeftAtAnInstructionsEnd",      "<?xml version='1.0'\n?>\n<a/>",            "<?xml version='1.0'?><a/>"     },
    {"NoBlankIsLeftAroundAnEqualsSign",       "<a x\n=\n'1'/>",                           "<a x='1'/>"                    },
    {"ValuesKeepABlankForABreak",             "<a x='one\n   two' y=\"it's\nme\"/>",      "<a x='one two' y=\"it's me\"/>"},
    {"AQuotedEndOfTagEndsNoTag",              "<a x='>'\n y='1'/>",                       "<a x='>' y='1'/>"              },
    {"TextQuotesOpenNothing",                 "<a>it's\n</a>\n<b/>",                      "<a>it's</a><b/>"               },
    {"CommentsStayWithABlankForABreak",       "<a>\n<!-- one\n     two -->\n</a>",        "<a><!-- one two --></a>"       },
    {"CommentsHoldTagsAndQuotes",             "<!-- <it's\n x> -->\n<a/>",                "<!-- <it's x> --><a/>"         },
    {"TheShortestCommentEnds",                "<!---->\n<a x\n='1'/>",                    "<!----><a x='1'/>"             },
    {"DashesThatOpenACommentDoNotEndIt",      "<!-->\n<a\nx='1'/>-->\n<b/>",              "<!--> <a x='1'/>--><b/>"       },
};

class AnswerJoin : public testing::TestWithParam<JoinCase> {};

TEST_P(AnswerJoin, MakesOneLine) { EXPECT_EQ(joined(GetParam().document), GetParam().line); }

TEST_P(AnswerJoin, ChangesNothingTwice) { EXPECT_EQ(joined(joined(GetParam().document)), GetParam().line); }

TEST(AnswerJoinBytes, ThatAreNoTextStay)
{
    const std::string bytes("\0\xff\x80", 3);
    EXPECT_EQ(joined("<a>\n" + bytes + "\n</a>"), "<a>" + bytes + "</a>");
}

INSTANTIATE_TEST_SUITE_P(, AnswerJoin, testing::ValuesIn(kJoins),
                         [](const auto& row) { return row.param.name; });

struct LineCase {
    const char* name;
    std::string content;
    bool join;
    std::string outcome;
};

// Of the programs that read answers, one starts with it and one draws it.
const AnswerWords kPeer = {"answer with", "nothing was started", " with --answer"};
const AnswerWords kHost = {"draw", "no file was written", ""};

const std::string kTwoLines = "1: cannot answer with figure.xml, which has more than one line; nothing was "
                              "started; add --join to take out "
                              "its line breaks and indentation, or name a file of one line";

const std::string kEmpty = "1: no answer in figure.xml, which is empty; nothing was started; write the "
                           "answer's line into it, or name "
                           "another file with --answer";

const LineCase kLines[] = {
    {"OneLineGoesOutAsItIs",             "<a>  </a>\n",         false, "line: <a>  </a>"   },
    {"TheLastLineFeedMayBeMissing",      "<a></a>",             false, "line: <a></a>"     },
    {"WhiteSpaceBehindTheLineIsNothing", "<a/>\n\n \t\r\n",     false, "line: <a/>"        },
    {"BlanksInTheLineStay",              " <a/> \r\n",          false, "line:  <a/> \r"    },
    {"AnEmptyLineIsALine",               "\n",                  false, "line: "            },
    {"WhatIsNoMarkupGoesOutToo",         "<>oops\n",            false, "line: <>oops"      },
    {"MoreLinesAreRefused",              "<a>\n</a>\n",         false, kTwoLines           },
    {"ALineBehindAnEmptyOneIsRefused",   "\n<a/>\n",            false, kTwoLines           },
    {"MoreLinesAreJoinedOnDemand",       "<a>\n  <b/>\n</a>\n", true,  "line: <a><b/></a>" },
    {"OneLineIsJoinedToItself",          "<a> <b/></a>\n",      true,  "line: <a> <b/></a>"},
    {"NothingAtAllIsRefused",            "",                    false, kEmpty              },
    {"NothingAtAllIsNotJoined",          "",                    true,  kEmpty              },
};

class AnswerLine : public testing::TestWithParam<LineCase> {};

TEST_P(AnswerLine, IsTheFilesOneLine)
{
    EXPECT_EQ(describe(answer_line(GetParam().content, GetParam().join, "figure.xml", kPeer)),
              GetParam().outcome);
}

INSTANTIATE_TEST_SUITE_P(, AnswerLine, testing::ValuesIn(kLines),
                         [](const auto& row) { return row.param.name; });

TEST(AnswerLineInOtherWords, SaysWhatTheProgramWanted)
{
    EXPECT_EQ(
        describe(answer_line("<a>\n</a>", false, "figure.xml", kHost)),
        "1: cannot draw figure.xml, which has more than one line; no file was written; add --join to take "
        "out its line breaks and indentation, or name a file of one line");
    EXPECT_EQ(describe(answer_line("", false, "figure.xml", kHost)),
              "1: no answer in figure.xml, which is empty; no file was written; write the answer's line into "
              "it, or name another file");
    EXPECT_EQ(describe(read_answer("/nowhere/figure.xml", false, kHost)),
              "1: cannot read the answer file /nowhere/figure.xml: No such file or directory; no file was "
              "written; name a file that can be read");
}

TEST(AnswerFile, ThatIsMissingIsNamed)
{
    EXPECT_EQ(
        describe(read_answer("/nowhere/figure.xml", false, kPeer)),
        "1: cannot read the answer file /nowhere/figure.xml: No such file or directory; nothing was started; "
        "name a file that can be read with --answer");
}

TEST(AnswerFile, ThatIsAFolderIsRefused)
{
    EXPECT_EQ(describe(read_answer("/", false, kPeer)),
              "1: cannot read the answer file /: Is a directory; nothing was "
              "started; name a file that can be read with --answer");
}

TEST(AnswerFile, IsReadWhole)
{
    const support::TemporaryFolder folder;
    const std::string line(300'000, 'x');
    EXPECT_EQ(describe(read_answer(folder.file("a.xml", line + "\n"), false, kPeer)), "line: " + line);
}

TEST(ExampleAnswer, ReadableTwinJoinsToTheOneLine)
{
    const std::string folder = VNT_ANSWERS;
    const std::string one_line = support::content_of(folder + "/every_primitive.xml");
    ASSERT_FALSE(one_line.empty());
    EXPECT_EQ(one_line.find('\n'), one_line.size() - 1);
    EXPECT_EQ(describe(read_answer(folder + "/every_primitive.xml", false, kPeer)) + "\n",
              "line: " + one_line);
    EXPECT_EQ(describe(read_answer(folder + "/every_primitive.pretty.xml", true, kPeer)) + "\n",
              "line: " + one_line);
}

} // namespace
