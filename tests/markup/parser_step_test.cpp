// Every state of the parser with every character.
#include "tests/markup/parser_probe.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

using namespace markup_test;

namespace {

enum class At { node, root, nowhere, before_the_tree };

// What a parser is in before it gets a character. Its tree is a root with the text "r" and a node in it with the
// text "tt".
struct Situation {
    int state;
    int quote = 0;
    const char* tag = "n";
    const char* end_tag = "e";
    At at = At::node;
};

using Key = std::tuple<int, int, std::string, std::string, At>;
Key key_of(const Situation& s) { return {s.state, s.quote, s.tag, s.end_tag, s.at}; }

struct Rule {
    const char* name;
    Situation before;
    const char*
        inputs; // each of these characters; null: every character that no other rule of the situation has
    int result;
    std::string changes; // all that changes, in the order of snapshot; ~ stands for the character
};

// What is where, by name.
using Snapshot = std::vector<std::pair<std::string, std::string>>;

class ParserInSituation {
public:
    explicit ParserInSituation(const Situation& situation)
    {
        parser_probe::state(p) = static_cast<parser::states>(situation.state);
        parser_probe::quote(p) = situation.quote;
        parser_probe::end_tag(p) = situation.end_tag;
        if (situation.at == At::before_the_tree)
            return;
        p.root = new tagrec;
        p.root->text = "r";
        node_ = new tagrec;
        node_->parent = p.root;
        node_->tag = situation.tag;
        node_->text = "tt";
        node_->position = 1;
        p.root->children.push_back(node_);
        parser_probe::current(p) = situation.at == At::node   ? node_
                                   : situation.at == At::root ? p.root
                                                              : nullptr;
    }
    ParserInSituation(const ParserInSituation&) = delete;
    ParserInSituation& operator=(const ParserInSituation&) = delete;
    ~ParserInSituation() { delete p.root; }

    Snapshot snapshot()
    {
        Snapshot all{
            {"state",   std::to_string(parser_probe::state(p))},
            {"quote",   std::to_string(parser_probe::quote(p))},
            {"end_tag", "[" + parser_probe::end_tag(p) + "]"  },
            {"current", current_name()                        },
        };
        add_node(all, "root", p.root);
        add_node(all, "node", node_);
        add_node(all, "new", new_node());
        return all;
    }

    parser p;

private:
    const tagrec* new_node() const
    {
        return node_ == nullptr || node_->children.empty() ? nullptr : node_->children.back();
    }

    std::string current_name()
    {
        const tagrec* const current = parser_probe::current(p);
        if (current == nullptr)
            return "null";
        return current == p.root       ? "root"
               : current == node_      ? "node"
               : current == new_node() ? "new"
                                       : "unknown";
    }

    static void add_node(Snapshot& all, const std::string& name, const tagrec* node)
    {
        all.emplace_back(name, node != nullptr ? "made" : "none");
        all.emplace_back(name + ".tag", "[" + (node != nullptr ? node->tag : "") + "]");
        all.emplace_back(name + ".text", "[" + (node != nullptr ? node->text : "") + "]");
        all.emplace_back(name + ".empty", std::to_string(node != nullptr ? node->empty : 1));
        all.emplace_back(name + ".position", std::to_string(node != nullptr ? node->position : 0));
        all.emplace_back(name + ".attributes", "[" + (node != nullptr ? attributes_text(*node) : "") + "]");
        all.emplace_back(name + ".children", std::to_string(node != nullptr ? node->children.size() : 0));
    }

    tagrec* node_ = nullptr;
};

std::string changes_between(const Snapshot& before, const Snapshot& after)
{
    std::string changes;
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (before[i].second != after[i].second)
            changes += (changes.empty() ? "" : " ") + after[i].first + "=" + after[i].second;
    }
    return changes;
}

std::string with_character(const std::string& pattern, char c)
{
    std::string text;
    for (const char p : pattern)
        text += p == '~' ? c : p;
    return text;
}

// clang-format off
const Rule kRules[] = {
    // Nothing read yet: the root is made, and the character taken as text.
    {"NothingReadLess", {0, 0, "", "", At::before_the_tree}, "<", 0, "state=10 current=root root=made"},
    {"NothingReadOther", {0, 0, "", "", At::before_the_tree}, nullptr, 0,
     "state=3 current=root root=made root.text=[~]"},

    // 1: a start tag
    {"StartTagEnds", {1}, ">", 0, "state=3 node.empty=0"},
    {"StartTagDoubleQuoteOpens", {1}, "\"", 0, "quote=34 node.tag=[n~]"},
    {"StartTagSingleQuoteOpens", {1}, "'", 0, "quote=39 node.tag=[n~]"},
    {"StartTagOther", {1}, nullptr, 0, "node.tag=[n~]"},
    {"StartTagDoubleQuoteCloses", {1, 34}, "\"", 0, "quote=0 node.tag=[n~]"},
    {"StartTagInDoubleQuotes", {1, 34}, nullptr, 0, "node.tag=[n~]"},
    {"StartTagSingleQuoteCloses", {1, 39}, "'", 0, "quote=0 node.tag=[n~]"},
    {"StartTagInSingleQuotes", {1, 39}, nullptr, 0, "node.tag=[n~]"},
    {"StartTagEndsEmpty", {1, 0, "n/"}, ">", 0, "state=3 current=root"},
    {"StartTagEndsEmptyWithAttributes", {1, 0, "n x=\"1\" y='2' /"}, ">", 0,
     "state=3 current=root node.tag=[n/] node.attributes=[ x=[1] y=[2]]"},
    {"StartTagEndsWithAttributes", {1, 0, "n x=\"a=b\" y"}, ">", 0,
     "state=3 node.tag=[n] node.empty=0 node.attributes=[ x=[a=b] y=[]]"},
    {"StartTagEndsWithoutAName", {1, 0, "\"\""}, ">", 0, "state=3 node.tag=[] node.empty=0"},
    {"StartTagEndsWithASlashAlone", {1, 0, "\"\"/"}, ">", 0, "state=3 current=root node.tag=[/]"},

    // 2: an end tag
    {"EndTagFits", {2, 0, "n", "n"}, ">", 0, "state=3 current=root"},
    {"EndTagFitsWithoutRegardToCase", {2, 0, "nOm", "NoM"}, ">", 0, "state=3 current=root"},
    {"EndTagWithABlankDoesNotFit", {2, 0, "n", "n "}, ">", -1, "state=4"},
    {"EndTagDoesNotFit", {2}, ">", -1, "state=4"},
    {"EndTagOther", {2}, nullptr, 0, "end_tag=[e~]"},
    {"EndTagWithoutANameFitsTheRoot", {2, 0, "n", "", At::root}, ">", 0, "state=3 current=null"},
    {"EndTagDoesNotFitTheRoot", {2, 0, "n", "n", At::root}, ">", -1, "state=4"},
    {"EndTagBehindTheRoot", {2, 0, "n", "", At::nowhere}, ">", -1, "state=4"},
    {"EndTagOtherBehindTheRoot", {2, 0, "n", "", At::nowhere}, nullptr, 0, "end_tag=[~]"},

    // 3: text
    {"TextLess", {3}, "<", 0, "state=10"},
    {"TextOther", {3}, nullptr, 0, "node.text=[tt~]"},
    {"TextLessBehindTheRoot", {3, 0, "n", "", At::nowhere}, "<", 0, "state=10"},
    {"TextOtherBehindTheRoot", {3, 0, "n", "", At::nowhere}, nullptr, -1, "state=4"},

    // 4: error, and every number that is no state
    {"Error", {4}, nullptr, -1, ""},
    {"ErrorBehindTheRoot", {4, 0, "n", "", At::nowhere}, nullptr, -1, ""},
    {"NoStateFive", {5}, nullptr, -1, ""},
    {"NoState59", {59}, nullptr, -1, ""},
    {"NoStateMinusOne", {-1}, nullptr, -1, ""},

    // 10: "<"
    {"LessSlash", {10}, "/", 0, "state=2 end_tag=[]"},
    {"LessGreaterIsAnErrorAndReturnsZero", {10}, ">", 0, "state=4"},
    {"LessQuestionMark", {10}, "?", 0,
     "state=40 end_tag=[] current=new node.children=1 new=made new.tag=[?] new.position=2"},
    {"LessExclamationMark", {10}, "!", 0, "state=11"},
    {"LessDoubleQuote", {10}, "\"", 0,
     "state=1 quote=34 end_tag=[] current=new node.children=1 new=made new.tag=[~] new.position=2"},
    {"LessSingleQuote", {10}, "'", 0,
     "state=1 quote=39 end_tag=[] current=new node.children=1 new=made new.tag=[~] new.position=2"},
    {"LessOther", {10}, nullptr, 0,
     "state=1 end_tag=[] current=new node.children=1 new=made new.tag=[~] new.position=2"},
    {"LessForgetsAnOpenQuote", {10, 39}, "a", 0,
     "state=1 quote=0 end_tag=[] current=new node.children=1 new=made new.tag=[~] new.position=2"},
    {"LessSlashBehindTheRoot", {10, 0, "n", "e", At::nowhere}, "/", 0, "state=2 end_tag=[]"},
    {"LessGreaterBehindTheRoot", {10, 0, "n", "e", At::nowhere}, ">", 0, "state=4"},
    {"LessExclamationMarkBehindTheRoot", {10, 0, "n", "e", At::nowhere}, "!", 0, "state=11"},
    {"LessOtherBehindTheRoot", {10, 0, "n", "e", At::nowhere}, nullptr, -1, "state=4"},

    // 11: "<!"
    {"DeclarationDash", {11}, "-", 0, "state=12"},
    {"DeclarationBracket", {11}, "[", 0,
     "state=50 end_tag=[] current=new node.children=1 new=made new.position=2"},
    {"DeclarationDoubleQuote", {11}, "\"", 0,
     "state=30 quote=34 end_tag=[] current=new node.children=1 new=made new.tag=[!~] new.position=2"},
    {"DeclarationSingleQuote", {11}, "'", 0,
     "state=30 quote=39 end_tag=[] current=new node.children=1 new=made new.tag=[!~] new.position=2"},
    {"DeclarationEndsAtOnce", {11}, ">", 0,
     "state=3 end_tag=[] node.children=1 new=made new.tag=[!] new.position=2"},
    {"DeclarationOther", {11}, nullptr, 0,
     "state=30 end_tag=[] current=new node.children=1 new=made new.tag=[!~] new.position=2"},
    {"DeclarationDashBehindTheRoot", {11, 0, "n", "", At::nowhere}, "-", 0, "state=12"},
    {"DeclarationOtherBehindTheRoot", {11, 0, "n", "", At::nowhere}, nullptr, -1, "state=4"},

    // 12: "<!-"
    {"SecondDash", {12}, "-", 0, "state=20"},
    {"SecondDashMissing", {12}, nullptr, -1, "state=4"},
    {"SecondDashBehindTheRoot", {12, 0, "n", "", At::nowhere}, "-", 0, "state=20"},

    // 20 to 22: a comment
    {"CommentDash", {20}, "-", 0, "state=21"},
    {"CommentOther", {20}, nullptr, 0, ""},
    {"CommentDashDash", {21}, "-", 0, "state=22"},
    {"CommentDashOther", {21}, nullptr, 0, "state=20"},
    {"CommentEnds", {22}, ">", 0, "state=3"},
    {"CommentThirdDashIsAFirst", {22}, "-", 0, "state=21"},
    {"CommentDashDashOther", {22}, nullptr, 0, "state=20"},
    {"CommentOtherBehindTheRoot", {20, 0, "n", "", At::nowhere}, nullptr, 0, ""},
    {"CommentDashBehindTheRoot", {20, 0, "n", "", At::nowhere}, "-", 0, "state=21"},
    {"CommentEndsBehindTheRoot", {22, 0, "n", "", At::nowhere}, ">", 0, "state=3"},

    // 30: a declaration
    {"DeclarationTextEnds", {30, 0, "!a b=\"1\" /"}, ">", 0, "state=3 current=root"},
    {"DeclarationTextDoubleQuoteOpens", {30}, "\"", 0, "quote=34 node.tag=[n~]"},
    {"DeclarationTextSingleQuoteOpens", {30}, "'", 0, "quote=39 node.tag=[n~]"},
    {"DeclarationTextGreater", {30}, ">", 0, "state=3 current=root"},
    {"DeclarationTextOther", {30}, nullptr, 0, "node.tag=[n~]"},
    {"DeclarationTextDoubleQuoteCloses", {30, 34}, "\"", 0, "quote=0 node.tag=[n~]"},
    {"DeclarationTextInDoubleQuotes", {30, 34}, nullptr, 0, "node.tag=[n~]"},
    {"DeclarationTextSingleQuoteCloses", {30, 39}, "'", 0, "quote=0 node.tag=[n~]"},
    {"DeclarationTextInSingleQuotes", {30, 39}, nullptr, 0, "node.tag=[n~]"},

    // 40, 41: a processing instruction
    {"InstructionQuestionMark", {40}, "?", 0, "state=41"},
    {"InstructionDoubleQuoteOpens", {40}, "\"", 0, "quote=34 node.tag=[n~]"},
    {"InstructionSingleQuoteOpens", {40}, "'", 0, "quote=39 node.tag=[n~]"},
    {"InstructionOther", {40}, nullptr, 0, "node.tag=[n~]"},
    {"InstructionDoubleQuoteCloses", {40, 34}, "\"", 0, "quote=0 node.tag=[n~]"},
    {"InstructionInDoubleQuotes", {40, 34}, nullptr, 0, "node.tag=[n~]"},
    {"InstructionSingleQuoteCloses", {40, 39}, "'", 0, "quote=0 node.tag=[n~]"},
    {"InstructionInSingleQuotes", {40, 39}, nullptr, 0, "node.tag=[n~]"},
    {"InstructionEnds", {41, 0, "?n"}, ">", 0, "state=3 current=root"},
    {"InstructionEndsWithAttributes", {41, 0, "?xml version=\"1.0\""}, ">", 0,
     "state=3 current=root node.tag=[?xml] node.attributes=[ version=[1.0]]"},
    {"InstructionGreaterAfterItsQuestionMark", {41}, ">", 0, "state=3 current=root"},
    {"InstructionSecondQuestionMark", {41}, "?", 0, "node.tag=[n?]"},
    {"InstructionDoubleQuoteAfterAQuestionMark", {41}, "\"", 0, "state=40 quote=34 node.tag=[n?~]"},
    {"InstructionSingleQuoteAfterAQuestionMark", {41}, "'", 0, "state=40 quote=39 node.tag=[n?~]"},
    {"InstructionOtherAfterAQuestionMark", {41}, nullptr, 0, "state=40 node.tag=[n?~]"},

    // 50 to 55: the opening of a character data section, which no state leads out of
    {"SectionC", {50}, "C", 0, "state=51"},
    {"SectionNoC", {50}, nullptr, -1, "state=4"},
    {"SectionD", {51}, "D", 0, "state=52"},
    {"SectionNoD", {51}, nullptr, -1, "state=4"},
    {"SectionA", {52}, "A", 0, "state=53"},
    {"SectionNoA", {52}, nullptr, -1, "state=4"},
    {"SectionT", {53}, "T", 0, "state=54"},
    {"SectionNoT", {53}, nullptr, -1, "state=4"},
    {"SectionSecondA", {54}, "A", 0, "state=55"},
    {"SectionNoSecondA", {54}, nullptr, -1, "state=4"},
    {"SectionBracketStays", {55}, "[", 0, "node.tag=[!CDATA ]"},
    {"SectionAfterItsBracket", {55}, nullptr, -1, "state=4"},

    // 56 to 58: its content, which no document leads to
    {"ContentBracket", {56}, "]", 0, "state=57"},
    {"ContentOther", {56}, nullptr, 0, "node.tag=[n~]"},
    {"ContentSecondBracket", {57}, "]", 0, "state=58"},
    {"ContentOneBracketOther", {57}, nullptr, 0, "state=56 node.tag=[n]~]"},
    {"ContentEnds", {58}, ">", 0, "state=3 current=root"},
    {"ContentThirdBracket", {58}, "]", 0, "node.tag=[n]]"},
    {"ContentTwoBracketsOther", {58}, nullptr, 0, "state=56 node.tag=[n]]~]"},
};
// clang-format on

std::set<char> inputs_of(const Rule& rule)
{
    if (rule.inputs != nullptr)
        return std::set<char>(rule.inputs, rule.inputs + std::strlen(rule.inputs));
    std::set<char> inputs;
    for (int c = CHAR_MIN; c <= CHAR_MAX; ++c)
        inputs.insert(static_cast<char>(c));
    for (const Rule& other : kRules) {
        if (other.inputs == nullptr || key_of(other.before) != key_of(rule.before))
            continue;
        for (const char c : inputs_of(other))
            inputs.erase(c);
    }
    return inputs;
}

class ParserRule : public testing::TestWithParam<Rule> {
protected:
    // take gives the parser one character and returns its result.
    template <class Take>
    void expect_rule(Take take)
    {
        const Rule& rule = GetParam();
        const std::set<char> inputs = inputs_of(rule);
        ASSERT_FALSE(inputs.empty());
        for (const char c : inputs) {
            ParserInSituation situation(rule.before);
            const Snapshot before = situation.snapshot();
            const int result = take(situation.p, c);
            ASSERT_EQ(changes_between(before, situation.snapshot()), with_character(rule.changes, c))
                << "character " << static_cast<int>(c);
            const bool in_error = situation.p.checkerror();
            ASSERT_EQ(in_error, parser_probe::state(situation.p) == 4);
            ASSERT_EQ(result, expected_result(rule, in_error)) << "character " << static_cast<int>(c);
        }
    }

    virtual int expected_result(const Rule& rule, bool /*in_error*/) const { return rule.result; }
};

TEST_P(ParserRule, HoldsForStep)
{
    expect_rule([](parser& p, char c) { return p.step(static_cast<signed char>(c)); });
}
INSTANTIATE_TEST_SUITE_P(, ParserRule, testing::ValuesIn(kRules),
                         [](const auto& row) { return row.param.name; });

// Of a run of one character, feed says whether the parser is in its error state afterwards.
class ParserRuleOfRuns : public ParserRule {
protected:
    int expected_result(const Rule& /*rule*/, bool in_error) const override { return in_error ? -1 : 0; }
};
TEST_P(ParserRuleOfRuns, HoldsForFeed)
{
    expect_rule([](parser& p, char c) { return p.feed(&c, 1); });
}
INSTANTIATE_TEST_SUITE_P(, ParserRuleOfRuns, testing::ValuesIn(kRules),
                         [](const auto& row) { return row.param.name; });

TEST(ParserRules, CoverEveryCharacterInEveryState)
{
    std::map<Key, std::size_t> characters; // of each situation
    for (const Rule& rule : kRules)
        characters[key_of(rule.before)] += inputs_of(rule).size();
    const int states[] = {1, 2, 3, 4, 10, 11, 12, 20, 21, 22, 30, 40, 41, 50, 51, 52, 53, 54, 55, 56, 57, 58};
    for (const int state : states)
        EXPECT_EQ(characters[key_of({state})], 256U) << "state " << state;
    for (const int state : {1, 30, 40}) {
        for (const int quote : {34, 39})
            EXPECT_EQ(characters[key_of({state, quote})], 256U) << "state " << state << " quote " << quote;
    }
    EXPECT_EQ((characters[{0, 0, "", "", At::before_the_tree}]), 256U);
}

TEST(ParserStates, HaveTheirNumbers)
{
    EXPECT_EQ(static_cast<int>(parser::none), 0);
    EXPECT_EQ(static_cast<int>(parser::stag), 1);
    EXPECT_EQ(static_cast<int>(parser::etag), 2);
    EXPECT_EQ(static_cast<int>(parser::text), 3);
    EXPECT_EQ(static_cast<int>(parser::error), 4);
    EXPECT_EQ(static_cast<int>(parser::eps1), 10);
    EXPECT_EQ(static_cast<int>(parser::eps3), 12);
    EXPECT_EQ(static_cast<int>(parser::com1), 20);
    EXPECT_EQ(static_cast<int>(parser::com3), 22);
    EXPECT_EQ(static_cast<int>(parser::decl), 30);
    EXPECT_EQ(static_cast<int>(parser::pis1), 40);
    EXPECT_EQ(static_cast<int>(parser::pis2), 41);
    EXPECT_EQ(static_cast<int>(parser::cdt1), 50);
    EXPECT_EQ(static_cast<int>(parser::cdt9), 58);
}

TEST(ParserStep, KeepsReturningZeroForTheEmptyTag)
{
    OwnedParser owned;
    EXPECT_EQ(owned.p.step('<'), 0);
    EXPECT_EQ(owned.p.step('>'), 0);
    EXPECT_TRUE(owned.p.checkerror());
    EXPECT_EQ(owned.p.step('<'), -1);
    EXPECT_EQ(owned.p.step('a'), -1);
    EXPECT_TRUE(owned.p.checkerror());
}

} // namespace
