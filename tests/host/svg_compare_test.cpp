#include "host/kit/svg_compare.h"
#include "tests/host/svg_samples.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace vnt::host;
using host_test::svg;

std::unique_ptr<SvgTree> tree_of(const std::string& body, const std::string& attributes = "")
{
    auto read = SvgTree::read("drawing.svg", svg(attributes, body));
    if (const auto* problem = std::get_if<Problem>(&read))
        throw std::runtime_error(problem->sentence);
    return std::move(std::get<0>(read));
}

const char* const kGood = "";
const char* const kMisplaced = "a new path is not where it should be";
const char* const kChanged = "an old element is not as it was";

// Two new paths, n1 and n2, at the end of what has the id l.
struct CompareCase {
    const char* name;
    const char* before;
    const char* after;
    const char* difference;
};
// clang-format off
const CompareCase kCompared[] = {
    {"TheNewPathsAlone", "<g id='l'><p a='1'/></g><q/>",
     "<g id='l'><p a='1'/><path id='n1'/><path id='n2'/></g><q/>", kGood},
    {"AnEmptyTagThatWasOpened", "<g id='l'/>", "<g id='l'><path id='n1'/><path id='n2'/></g>", kGood},
    {"BlanksBetweenElements", "<g id='l'>\n <p/>\n</g>",
     "<g id='l'>\n <p/>\n <path id='n1'/>\n <path id='n2'/>\n</g>", kGood},
    {"BlanksBehindATextThatMoved", "<g id='l'>words\n </g>",
     "<g id='l'>words<path id='n1'/><path id='n2'/>\n </g>", kGood},
    {"BlanksThatBecameOnlyBlanks", "<g id='l'>\n </g>",
     "<g id='l'><path id='n1'/><path id='n2'/></g>", kGood},
    {"ALayerBehindManyElements", "<a><b/><c/></a><d/><a><g id='l'><e/></g></a><f/>",
     "<a><b/><c/></a><d/><a><g id='l'><e/><path id='n1'/><path id='n2'/></g></a><f/>", kGood},

    {"TheIdsInTheWrongOrder", "<g id='l'/>", "<g id='l'><path id='n2'/><path id='n1'/></g>", kMisplaced},
    {"OnlyTheLastOfTheTwo", "<g id='l'/>", "<g id='l'><path id='n2'/></g>", kMisplaced},
    {"OnlyTheFirstOfTheTwo", "<g id='l'/>", "<g id='l'><path id='n1'/></g>", kMisplaced},
    {"BelowWhatIsInTheLayer", "<g id='l'><p/></g>", "<g id='l'><path id='n1'/><path id='n2'/><p/></g>",
     kMisplaced},
    {"OneLevelTooDeep", "<g id='l'><g/></g>",
     "<g id='l'><g><path id='n1'/><path id='n2'/></g></g>", kMisplaced},
    {"OneLevelTooHigh", "<g id='l'/>", "<g id='l'/><path id='n1'/><path id='n2'/>", kMisplaced},
    {"InAnotherLayer", "<g id='k'/><g id='l'/>", "<g id='k'><path id='n1'/><path id='n2'/></g><g id='l'/>",
     kMisplaced},
    {"ElementsOfAnotherName", "<g id='l'/>", "<g id='l'><path id='n1'/><rect id='n2'/></g>", kMisplaced},
    {"ElementsOfAnotherNamespace", "<g id='l'/>", "<g id='l'><path id='n1'/><path id='n2' xmlns='u'/></g>",
     kMisplaced},
    {"AfterThatEndsBeforeTheLayer", "<a/><b/><g id='l'/>", "<a/>", kMisplaced},

    {"AnAttributeWithAnotherValue", "<g id='l'><p a='1'/></g>",
     "<g id='l'><p a='2'/><path id='n1'/><path id='n2'/></g>", kChanged},
    {"AnAttributeWithAnotherName", "<g id='l'><p a='1'/></g>",
     "<g id='l'><p b='1'/><path id='n1'/><path id='n2'/></g>", kChanged},
    {"AnAttributeLost", "<g id='l'><p a='1' b='2'/></g>",
     "<g id='l'><p a='1'/><path id='n1'/><path id='n2'/></g>", kChanged},
    {"AnAttributeAdded", "<g id='l'><p a='1'/></g>",
     "<g id='l'><p a='1' b='2'/><path id='n1'/><path id='n2'/></g>", kChanged},
    {"AnAttributeOfTheLayerItself", "<g id='l' a='1'/>",
     "<g id='l'><path id='n1'/><path id='n2'/></g>", kChanged},
    {"AnElementLostInTheLayer", "<g id='l'><p/><q/></g>",
     "<g id='l'><p/><path id='n1'/><path id='n2'/></g>", kChanged},
    {"AnElementLostBehindTheLayer", "<g id='l'/><p/>",
     "<g id='l'><path id='n1'/><path id='n2'/></g>", kChanged},
    {"TheLastChildLostBehindTheLayer", "<g id='l'/><a><b/><c/></a>",
     "<g id='l'><path id='n1'/><path id='n2'/></g><a><b/></a>", kChanged},
    {"AnElementAddedToTheLayer", "<g id='l'><p/></g>",
     "<g id='l'><p/><path id='n0'/><path id='n1'/><path id='n2'/></g>", kChanged},
    {"AnElementAddedBehindTheLayer", "<g id='l'/>",
     "<g id='l'><path id='n1'/><path id='n2'/></g><p/>", kChanged},
    {"AnElementAddedInAnother", "<g id='l'/><a/>", "<g id='l'><path id='n1'/><path id='n2'/></g><a><p/></a>",
     kChanged},
    {"AnElementOfAnotherName", "<g id='l'/><p/>",
     "<g id='l'><path id='n1'/><path id='n2'/></g><q/>", kChanged},
    {"AnElementOneLevelDeeper", "<g id='l'/><a/><b/>",
     "<g id='l'><path id='n1'/><path id='n2'/></g><a><b/></a>", kChanged},
    {"AnElementOneLevelHigher", "<g id='l'/><a><b/><c/></a>",
     "<g id='l'><path id='n1'/><path id='n2'/></g><a><b/></a><c/>", kChanged},
    {"AnotherText", "<g id='l'/><t>one</t>",
     "<g id='l'><path id='n1'/><path id='n2'/></g><t>two</t>", kChanged},
    {"ATextLost", "<g id='l'/><t>one</t>", "<g id='l'><path id='n1'/><path id='n2'/></g><t/>", kChanged},
    {"BlanksInFrontOfAText", "<g id='l'/><t>one</t>",
     "<g id='l'><path id='n1'/><path id='n2'/></g><t> one</t>",
     kChanged},
    {"BlanksInsideAText", "<g id='l'/><t>one two</t>",
     "<g id='l'><path id='n1'/><path id='n2'/></g><t>one  two</t>", kChanged},
    {"ATextThatBecameAnElement", "<g id='l'/><t>b</t>",
     "<g id='l'><path id='n1'/><path id='n2'/></g><t><b/></t>",
     kChanged},
};
// clang-format on
class SvgCompare : public testing::TestWithParam<CompareCase> {};
TEST_P(SvgCompare, SaysWhatIsNotAsItShouldBe)
{
    const auto before = tree_of(GetParam().before);
    const auto after = tree_of(GetParam().after);
    EXPECT_EQ(find_difference(*before, before->find_id("l"), *after, {"n1", "n2"}), GetParam().difference);
}
INSTANTIATE_TEST_SUITE_P(, SvgCompare, testing::ValuesIn(kCompared),
                         [](const auto& row) { return row.param.name; });

TEST(SvgCompareRoot, MayBeTheLayer)
{
    const auto before = tree_of("<p/>");
    EXPECT_EQ(find_difference(*before, before->root(), *tree_of("<p/><path id='n'/>"), {"n"}), "");
    EXPECT_EQ(find_difference(*before, before->root(), *tree_of("<q/><path id='n'/>"), {"n"}), kChanged);
}

TEST(SvgCompareRoot, IsComparedToo)
{
    const auto before = tree_of("<g id='l'/>", "width='1'");
    const auto after = tree_of("<g id='l'><path id='n'/></g>", "width='2'");
    EXPECT_EQ(find_difference(*before, before->find_id("l"), *after, {"n"}), kChanged);
}

} // namespace
