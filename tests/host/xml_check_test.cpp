#include "host/kit/xml_check.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace vnt::host;

// "offset: what", or nothing.
std::string fault_of(std::string_view text)
{
    XmlEntities entities;
    const std::optional<XmlFault> fault = find_fault(text, entities);
    return fault ? std::to_string(fault->offset) + ": " + fault->what : "";
}

struct GoodCase {
    const char* name;
    std::string_view text;
};
// clang-format off
const GoodCase kGood[] = {
    {"AnEmptyTag", "<a/>"},
    {"EverythingAroundTheRoot", "<?xml version='1.0'?> <!--c--><!DOCTYPE a><?pi?><a></a>\n<?p ?>"},
    {"BlanksInTags", "<a\n b = '1'\tc=\"2\" ><d\n/></a\n>"},
    {"MarksInAttributes", "<a b='>/>' c=\"it's\"/>"},
    {"ReferencesOfAllKinds", "<a b='&lt;&#65;&#x10FFFF;'>&amp;&gt;&quot;&apos;</a>"},
    {"TagsInCommentsAndSections", "<a><!-- </a> <b - --><![CDATA[</a>]]><?p </a>?></a>"},
    {"LettersBeyondAscii", "<\xC3\xA4 \xD0\xB6='1'>\xF0\x9F\x96\x89</\xC3\xA4>"},
    {"ADeclaredEntity", "<!DOCTYPE a [<!ENTITY e '>'>]><a>&e;</a>"},
    {"AnEntityOfAnotherFile", "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.txt'>]><a>&e;</a>"},
    {"AnEntityThatAnExternalSubsetMayHave", "<!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>"},
    {"AnEntityThatAParameterMayHave", "<!DOCTYPE a [%more;]><a>&e;</a>"},
    {"Latin1WhereItIsDeclared", "<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE4</a>"},
    {"CDataWithBracketsAtItsEnd", "<a><![CDATA[<&]]]]></a>"},
};
// clang-format on
class XmlGood : public testing::TestWithParam<GoodCase> {};
TEST_P(XmlGood, HasNoFault) { EXPECT_EQ(fault_of(GetParam().text), ""); }
INSTANTIATE_TEST_SUITE_P(, XmlGood, testing::ValuesIn(kGood), [](const auto& row) { return row.param.name; });

struct BadCase {
    const char* name;
    std::string_view text;
    const char* fault;
};
// clang-format off
const BadCase kBad[] = {
    {"OnlyBlanks", " \n", "0: there is no element"},
    {"TextInsteadOfXml", "just words", "0: text stands outside the outermost element"},
    {"TextBehindTheRoot", "<a/> b", "5: text stands outside the outermost element"},
    {"AReferenceBehindTheRoot", "<a/>&#32;", "4: text stands outside the outermost element"},
    {"CDataOutside", "<![CDATA[]]><a/>", "0: a CDATA section stands outside the outermost element"},
    {"TwoRoots", "<a/><b/>", "4: there is a second outermost element"},
    {"AnElementThatIsNotEnded", "<a><b></b>", "10: the element <a> is not ended"},
    {"AnEndTagOfNothing", "<a></a></a>", "7: the end tag </a> ends no element"},
    {"AnEndTagOfAnother", "<a><b></a></b>", "6: the end tag </a> stands where </b> is due"},
    {"AnEndTagWithAnAttribute", "<a></a b='1'>", "3: the end tag </a> holds more than its name"},
    {"ATagThatIsNotEnded", "<a b='>", "0: a tag is not ended"},
    {"ATagInATag", "<a <b/>", "0: a tag is not ended"},
    {"ALessThanAlone", "<a>1 < 2</a>", "5: a < begins no tag"},
    {"ALessThanInAnAttribute", "<a b='x<y'/>", "7: an attribute's value holds <"},
    {"AnAttributeWithoutAValue", "<a b/>", "4: an attribute has no value"},
    {"AnAttributeWithoutQuotes", "<a b=1/>", "5: an attribute's value is not in quotes"},
    {"AnAttributeTwice", "<a b='1' c='2' b='3'/>", "0: the attribute b stands twice in a tag"},
    {"AttributesWithoutABlank", "<a b='1'c='2'/>", "8: an attribute does not begin with a blank"},
    {"AnAttributeWithoutAName", "<a ='1'/>", "3: an attribute has no name"},
    {"ANameThatBeginsWithADigit", "<1/>", "0: a < begins no tag"},
    {"AnAmpersandAlone", "<a>&</a>", "3: an & begins no reference"},
    {"AReferenceThatIsNotEnded", "<a>x &amp y</a>", "5: an & begins no reference"},
    {"AReferenceToNoCharacter", "<a b='&#0;'/>", "6: an & begins no reference"},
    {"AReferenceToASurrogate", "<a>&#xD800;</a>", "3: an & begins no reference"},
    {"AnUnknownEntity", "<a>&nbsp;</a>", "3: the entity &nbsp; is not declared"},
    {"AnEntityThatIsOnlyAParameter", "<!DOCTYPE a [<!ENTITY f ''>]><a>&e;</a>",
     "32: the entity &e; is not declared"},
    {"ACommentThatIsNotEnded", "<a><!-- ></a>", "3: a comment is not ended"},
    {"ACommentWithTwoHyphens", "<a><!-- -- --></a>", "8: a comment holds --"},
    {"ACommentThatEndsWithThree", "<a><!-- ---></a>", "8: a comment holds --"},
    {"ASectionThatIsNotEnded", "<a><![CDATA[ ]></a>", "3: a CDATA section is not ended"},
    {"TheEndOfASectionAlone", "<a>]]></a>", "3: ]]> ends no CDATA section"},
    {"AnInstructionThatIsNotEnded", "<?pi ><a/>", "0: a processing instruction is not ended"},
    {"AnInstructionWithoutAName", "<? pi?><a/>", "0: a processing instruction has no name"},
    {"ADeclarationBehindABlank", " <?xml version='1.0'?><a/>", "1: an XML declaration stands in the text"},
    {"ADoctypeThatIsNotEnded", "<!DOCTYPE a [<a/>", "0: the document type declaration is not ended"},
    {"ADoctypeWithAnOpenLiteral", "<!DOCTYPE a \"x><a/>", "0: the document type declaration is not ended"},
    {"ADoctypeInTheRoot", "<a><!DOCTYPE a></a>", "3: a document type declaration does not stand here"},
    {"TwoDoctypes", "<!DOCTYPE a><!DOCTYPE a><a/>", "12: a document type declaration does not stand here"},
    {"AControlCharacter", "<a>\x01</a>", "3: a control character is not allowed"},
    {"ABrokenByte", "<a>\xFF</a>", "3: the bytes are no UTF-8"},
    {"ACharacterCutShort", "<a>\xC3</a>", "3: the bytes are no UTF-8"},
    {"ACharacterCutShortByTheEnd", "<a/>\xF0\x9F\x96", "4: the bytes are no UTF-8"},
    {"ALongerFormOfACharacter", "<a>\xC0\xAF</a>", "3: the bytes are no UTF-8"},
    {"ASurrogateInUtf8", "<a>\xED\xA0\x80</a>", "3: the bytes are no UTF-8"},
    {"BeyondTheLastCharacter", "<a>\xF4\x90\x80\x80</a>", "3: the bytes are no UTF-8"},
    {"LatinLettersWithoutADeclaration", "<a>\xE4</a>", "3: the bytes are no UTF-8"},
};
// clang-format on
class XmlBad : public testing::TestWithParam<BadCase> {};
TEST_P(XmlBad, HasAFaultAtItsPlace) { EXPECT_EQ(fault_of(GetParam().text), GetParam().fault); }
INSTANTIATE_TEST_SUITE_P(, XmlBad, testing::ValuesIn(kBad), [](const auto& row) { return row.param.name; });

TEST(XmlDepth, IsNotLimited)
{
    constexpr int kDeep = 200'000;
    std::string text;
    for (int i = 0; i < kDeep; ++i)
        text += "<a>";
    for (int i = 0; i < kDeep; ++i)
        text += "</a>";
    EXPECT_EQ(fault_of(text), "");
}

struct EncodingCase {
    const char* name;
    std::string_view text;
    bool ascii;
};
// clang-format off
const EncodingCase kEncodings[] = {
    {"NoneIsUtf8", "<a/>", true},
    {"Utf8InCapitals", "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a/>", true},
    {"Latin9", "<?xml version='1.0' encoding = 'iso-8859-15'?><a/>", true},
    {"OneOfWindows", "<?xml version='1.0' encoding='Windows-1252'?><a/>", true},
    {"ShiftJisIsNot", "<?xml version='1.0' encoding='Shift_JIS'?><a/>", false},
    {"Utf16IsNot", "<?xml version='1.0' encoding='UTF-16'?><a/>", false},
    {"TheWordElsewhereDoesNotCount", "<a encoding='UTF-16'/>", true},
};
// clang-format on
class XmlEncoding : public testing::TestWithParam<EncodingCase> {};
TEST_P(XmlEncoding, MayHaveTheMarkupOfAscii)
{
    EXPECT_EQ(has_ascii_markup(GetParam().text), GetParam().ascii);
}
INSTANTIATE_TEST_SUITE_P(, XmlEncoding, testing::ValuesIn(kEncodings),
                         [](const auto& row) { return row.param.name; });

TEST(XmlPosition, CountsLinesAndBytes)
{
    const std::string_view text = "ab\ncd\r\nef";
    const auto at = [&](std::size_t offset) {
        const TextPosition position = position_of(text, offset);
        return std::to_string(position.line) + "," + std::to_string(position.column);
    };
    EXPECT_EQ(at(0), "1,1");
    EXPECT_EQ(at(2), "1,3");
    EXPECT_EQ(at(3), "2,1");
    EXPECT_EQ(at(8), "3,2");
}

struct EntityCase {
    const char* name;
    std::string_view declarations;
    std::string_view written;
    std::string_view value;
};
// clang-format off
const EntityCase kEntities[] = {
    {"PredefinedOnes", "", "&lt;&gt;&amp;&quot;&apos;", "<>&\"'"},
    {"Characters", "", "&#65;&#xe4;&#x20AC;&#x1F589;", "A\xC3\xA4\xE2\x82\xAC\xF0\x9F\x96\x89"},
    {"BlanksAreSpaces", "", "a\tb\nc", "a b c"},
    {"AnEscapedReferenceIsText", "<!ENTITY e 'x'>", "&amp;e;", "&e;"},
    {"OneInAnother", "<!ENTITY e 'x&f;'><!ENTITY f \"'y\">", "-&e;-", "-x'y-"},
    {"TheFirstOfAName", "<!ENTITY e '1'><!ENTITY e '2'>", "&e;", "1"},
    {"DeclaredOverSeveralLines", "<!ENTITY\n\n e\n\t'>'\n>", "&e;", ">"},
    {"NotInAComment", "<!-- <!ENTITY e 'no'> --><!ENTITY e 'yes'>", "&e;", "yes"},
    {"NotInAnInstruction", "<?p <!ENTITY e 'no'> ?><!ENTITY e 'yes'>", "&e;", "yes"},
    {"NotInALiteral", "<!ATTLIST a b CDATA '<!ENTITY e \"no\">'><!ENTITY e 'yes'>", "&e;", "yes"},
    {"NotAParameterEntity", "<!ENTITY % e 'no'><!ENTITY e 'yes'>", "&e;", "yes"},
    {"AnUnknownOneIsLeft", "", "a&e;b", "a&e;b"},
    {"AnAmpersandAloneIsLeft", "", "a&b", "a&b"},
};
// clang-format on
class XmlEntity : public testing::TestWithParam<EntityCase> {};
TEST_P(XmlEntity, StandsForItsValue)
{
    XmlEntities entities;
    entities.declare("<!DOCTYPE a PUBLIC '[' \"'\" [" + std::string(GetParam().declarations) + "]>");
    EXPECT_EQ(entities.expand(GetParam().written), GetParam().value);
}
INSTANTIATE_TEST_SUITE_P(, XmlEntity, testing::ValuesIn(kEntities),
                         [](const auto& row) { return row.param.name; });

TEST(XmlEntityExpansion, EndsForEntitiesThatHoldThemselves)
{
    XmlEntities entities;
    entities.declare("<!DOCTYPE a [<!ENTITY e 'x&f;'><!ENTITY f 'y&e;'>]>");
    EXPECT_EQ(entities.expand("&e;"), "xyxyxyxyxyxyxyxy&e;");
}

// The text of entities is 4 KiB in all, whatever is written beside them.
TEST(XmlEntityExpansion, LeavesReferencesThatWouldPassTheLimit)
{
    const std::string large(4097, 'a');
    const std::string half(2048, 'b');
    XmlEntities entities;
    entities.declare("<!DOCTYPE a [<!ENTITY large '" + large + "'><!ENTITY half '" + half +
                     "'><!ENTITY x 'x'>" + "<!ENTITY both '&half;&half;'>]>");
    EXPECT_EQ(entities.expand("&large;&x;"), "&large;x");
    EXPECT_EQ(entities.expand("&half;-&half;-&half;-&x;"), half + "-" + half + "-&half;-&x;");
    EXPECT_EQ(entities.expand("&both;"), half + "&half;"); // the inner references are text of an entity too
    EXPECT_EQ(entities.expand(large + "&x;" + large), large + "x" + large);
}

TEST(XmlEntityExpansion, LeavesReferencesPastTheSixtyFourth)
{
    XmlEntities entities;
    entities.declare("<!DOCTYPE a [<!ENTITY e ''>]>");
    std::string written;
    for (int i = 0; i < 66; ++i)
        written += "&e;&amp;";
    EXPECT_EQ(entities.expand(written), std::string(64, '&') + "&e;&&e;&");
}

// A search from each & to the text's end would take minutes.
TEST(XmlEntityExpansion, PassesOverManyAmpersandsOfNoReference)
{
    const std::string many(3'000'000, '&');
    XmlEntities entities;
    entities.declare("<!DOCTYPE a [<!ENTITY e '" + many + "'>]>");
    EXPECT_EQ(entities.expand(many + "&lt;"), many + "<");
    EXPECT_EQ(entities.expand("&e;"), "&e;");
}

// Ten references in each of 12 entities: 10^12 when they were all followed, be they empty or not.
TEST(XmlEntityExpansion, EndsForEntitiesThatMultiply)
{
    for (const std::string last : {"", "0123456789"}) {
        std::string declarations = "<!ENTITY e0 '" + last + "'>";
        for (int i = 1; i <= 12; ++i) {
            const std::string inner = "&e" + std::to_string(i - 1) + ";";
            std::string value;
            for (int n = 0; n < 10; ++n)
                value += inner;
            declarations += "<!ENTITY e" + std::to_string(i) + " '" + value + "'>";
        }
        XmlEntities entities;
        entities.declare("<!DOCTYPE a [" + declarations + "]>");
        EXPECT_LT(entities.expand("&e12;").size(), 10'000U);
    }
}

} // namespace
