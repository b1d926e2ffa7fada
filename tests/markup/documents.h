// Documents, the trees they make, and where they end.
#pragma once

#include <string>

namespace markup_test {

enum class End { complete, open, error };

struct Document {
    const char* name;
    std::string text;
    End end;
    const char* tree; // as tree_text without the star, from the root's children on; null: not looked at
};

// clang-format off
inline const Document kDocuments[] = {
    {"NothingIsNoDocument", "", End::open, nullptr},
    {"TextAlone", "abc", End::complete, ""},
    {"OneElement", "<a></a>", End::complete, "[a] 0@0 []\n"},
    {"OneEmptyElement", "<a/>", End::complete, "[a/] 1@0 []\n"},
    {"ElementLeftOpen", "<a>", End::open, "[a] 0@0 []\n"},
    {"StartTagLeftOpen", "<a", End::open, "[a] 1@0 []\n"},
    {"EndTagLeftOpen", "<a></a", End::open, "[a] 0@0 []\n"},
    {"LessAlone", "<", End::open, ""},
    {"GreaterIsText", ">", End::complete, ""},
    {"AttributesInOrder", "<a b=\"1\" c='2' b=\"3\"/>", End::complete, "[a/] 1@0 [] b=[1] c=[2] b=[3]\n"},
    {"AnswerOfAPeer",
     "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?><vant><shape><line><start x=\"0\" y=\"0\" z=\"0\"/>"
     "<end x=\"100\" y=\"50\" z=\"0\"/></line><circle><radius>25</radius></circle></shape></vant>",
     End::complete,
     "[?xml] 1@0 [] version=[1.0] encoding=[UTF-8] standalone=[no]\n"
     "[vant] 0@0 []\n"
     "  [shape] 0@0 []\n"
     "    [line] 0@0 []\n"
     "      [start/] 1@0 [] x=[0] y=[0] z=[0]\n"
     "      [end/] 1@0 [] x=[100] y=[50] z=[0]\n"
     "    [circle] 0@0 []\n"
     "      [radius] 0@0 [25]\n"},
    {"PositionsInTheText", "ab<c/>de<f>g<h/></f>i<j/>", End::complete,
     "[c/] 1@2 []\n"
     "[f] 0@4 [g]\n"
     "  [h/] 1@1 []\n"
     "[j/] 1@5 []\n"},
    {"SeveralElementsAtTheTop", "<a></a><b></b>", End::complete, "[a] 0@0 []\n[b] 0@0 []\n"},
    {"TextAroundElementsInThem", "<a>x<b>y</b>z</a>", End::complete, "[a] 0@0 [xz]\n  [b] 0@1 [y]\n"},
    {"BytesAbove127", "<\xC3\xA4 \xFF=\"\x80\">\xC3\x84</\xC3\xA4>", End::complete,
     "[\xC3\xA4] 0@0 [\xC3\x84] \xFF=[\x80]\n"},

    {"EntitiesStayInText", "<a>&lt;&amp;</a>", End::complete, "[a] 0@0 [&lt;&amp;]\n"},
    {"EntitiesStayInAttributes", "<a b=\"&lt;\"/>", End::complete, "[a/] 1@0 [] b=[&lt;]\n"},

    {"EndTagInOtherCase", "<a></A>", End::complete, "[a] 0@0 []\n"},
    {"EndTagInOtherCaseBothWays", "<ShApE></sHaPe>", End::complete, "[ShApE] 0@0 []\n"},
    {"EndTagWithABlank", "<a></a >", End::error, "[a] 0@0 []\n"},
    {"EndTagWithABlankInFront", "<a></ a>", End::error, "[a] 0@0 []\n"},
    {"EndTagOfAnother", "<a></b>", End::error, "[a] 0@0 []\n"},
    {"EndTagThatIsLonger", "<a></ab>", End::error, "[a] 0@0 []\n"},
    {"EndTagThatIsShorter", "<ab></a>", End::error, "[ab] 0@0 []\n"},
    {"EndTagOfTheOuterFirst", "<a><b></a></b>", End::error, "[a] 0@0 []\n  [b] 0@0 []\n"},
    {"EndTagOfAnEmptyElement", "<a/></a>", End::error, "[a/] 1@0 []\n"},
    {"EndTagOfUmlautInOtherCase", "<\xC4></\xE4>", End::error, "[\xC4] 0@0 []\n"},
    {"EndTagOfACharacterBehindZ", "<{></[>", End::error, "[{] 0@0 []\n"},

    {"GreaterInDoubleQuotes", "<a b=\">\"/>", End::complete, "[a/] 1@0 [] b=[>]\n"},
    {"GreaterInSingleQuotes", "<a b='>'/>", End::complete, "[a/] 1@0 [] b=[>]\n"},
    {"OtherQuoteInQuotes", "<a b='\"' c=\"'\"/>", End::complete, "[a/] 1@0 [] b=[\"] c=[']\n"},
    {"LessInATag", "<a<b c<d=\"<\"/>", End::complete, "[a<b/] 1@0 [] c<d=[<]\n"},
    {"EqualsInAValue", "<a b=\"c=d\"/>", End::complete, "[a/] 1@0 [] b=[c=d]\n"},
    {"EqualsInAName", "<a=b/>", End::complete, "[a=b/] 1@0 []\n"},
    {"EqualsAlone", "<=>", End::open, "[=] 0@0 []\n"},
    {"EqualsFirst", "<a =\"b\"/>", End::complete, "[a/] 1@0 [] =[b]\n"},
    {"ValueWithoutQuotes", "<a b=c/d e/>", End::complete, "[a/] 1@0 [] b=[c/d] e=[]\n"},
    {"ValueMissing", "<a b=/>", End::complete, "[a/] 1@0 [] b=[]\n"},
    {"ValueEmpty", "<a b=\"\" c=''/>", End::complete, "[a/] 1@0 [] b=[] c=[]\n"},
    {"BlanksAroundEquals", "<a b = \"c\"/>", End::complete, "[a/] 1@0 [] b=[] =[] c=[]\n"},
    {"AttributesWithoutABlank", "<a b=\"1\"c=\"2\"/>", End::complete, "[a/] 1@0 [] b=[1c=2]\n"},
    {"QuotesInsideAWord", "<a b\"1\"2'3'=4/>", End::complete, "[a/] 1@0 [] b123=[4]\n"},
    {"SecondBlankInTheNextName", "<a  b=\"1\"   c=\"2\"/>", End::complete, "[a/] 1@0 []  b=[1]  =[] c=[2]\n"},
    {"TabsAndLineEndsSeparate", "<a\tb=\"1\"\rc=\"2\"\nd=\"3\"/>", End::complete, "[a/] 1@0 [] b=[1] c=[2] d=[3]\n"},
    {"BlanksInQuotes", "<a b=\" 1 \t2\n\"/>", End::complete, "[a/] 1@0 [] b=[ 1 \t2\n]\n"},
    {"BlankInFrontOfTheName", "< a/>", End::complete, "[ a/] 1@0 []\n"},
    {"BlankBeforeGreater", "<a ></a>", End::complete, "[a] 0@0 []\n"},
    {"BlankBeforeGreaterWithAttribute", "<a b=\"1\" ></a>", End::complete, "[a] 0@0 [] b=[1]\n"},
    {"BlankBeforeSlash", "<a b=\"1\" />", End::complete, "[a/] 1@0 [] b=[1]\n"},
    {"BlankBehindSlash", "<a/ >", End::complete, "[a/] 1@0 []\n"},
    {"AttributeBehindSlash", "<a/ b=\"1\">", End::complete, "[a/] 1@0 [] b=[1]\n"},
    {"TwoSlashes", "<a//>", End::complete, "[a//] 1@0 []\n"},
    {"SlashOnItsOwnAndAtTheEnd", "<a / />", End::complete, "[a/] 1@0 [] /=[]\n"},
    {"SlashOnItsOwn", "<a / >", End::open, "[a] 0@0 [] /=[]\n"},
    {"SlashBetweenAttributes", "<a b=\"1\"/c=\"2\">", End::open, "[a] 0@0 [] b=[1/c=2]\n"},
    {"SlashInQuotesAtTheEnd", "<a b=\"/\">", End::open, "[a] 0@0 [] b=[/]\n"},

    {"EmptyTag", "<>", End::error, ""},
    {"NameOfQuotes", "<\"\">", End::open, "[] 0@0 []\n"},
    {"NameOfQuotesClosed", "<\"\"></>", End::complete, "[] 0@0 []\n"},
    {"NameOfQuotesAndSlash", "<\"\"/>", End::complete, "[/] 1@0 []\n"},
    {"NameInQuotes", "<\"a b\">", End::open, "[a b] 0@0 []\n"},
    {"NameInQuotesClosed", "<\"a b\"></a b>", End::complete, "[a b] 0@0 []\n"},
    {"NameWithGreaterIsNeverClosed", "<\"a>b\"></a>b>", End::error, "[a>b] 0@0 []\n"},
    {"NameHalfInQuotes", "<a\"b>c\" d=\"1\"/>", End::complete, "[ab>c/] 1@0 [] d=[1]\n"},
    {"NameThatStartsWithAQuestionMarkInQuotes", "<'?a'/>", End::complete, "[?a/] 1@0 []\n"},

    {"Instruction", "<?xml version=\"1.0\"?>", End::complete, "[?xml] 1@0 [] version=[1.0]\n"},
    {"InstructionWithQuestionMarks", "<?a?b?\?>", End::complete, "[?a?b?] 1@0 []\n"},
    {"InstructionWithQuotedEnd", "<?a b=\"?>\"?>", End::complete, "[?a] 1@0 [] b=[?>]\n"},
    {"InstructionWithGreater", "<?a b>c?>", End::complete, "[?a] 1@0 [] b>c=[]\n"},
    {"InstructionWithoutAName", "<?\?>", End::complete, "[?] 1@0 []\n"},
    {"InstructionThatEndsInASlash", "<?a b/?>", End::complete, "[?a/] 1@0 [] b=[]\n"},
    {"InstructionLeftOpen", "<?a>", End::open, "[?a>] 1@0 []\n"},

    {"Declaration", "<!DOCTYPE a SYSTEM \"b>c\" 'd'>", End::complete, "[!DOCTYPE a SYSTEM \"b>c\" 'd'] 1@0 []\n"},
    {"DeclarationEndsAtItsFirstGreater", "<!DOCTYPE a [<!ELEMENT b>]>", End::complete,
     "[!DOCTYPE a [<!ELEMENT b] 1@0 []\n"},
    {"DeclarationWithoutAName", "<!>", End::complete, "[!] 1@0 []\n"},
    {"DeclarationThatEndsInASlash", "<!a/>", End::complete, "[!a/] 1@0 []\n"},

    {"Comment", "<!--a-b-->", End::complete, ""},
    {"CommentWithoutText", "<!---->", End::complete, ""},
    {"CommentWithMarkup", "<!--<a>\"'&--><b/>", End::complete, "[b/] 1@0 []\n"},
    {"CommentInText", "a<!--x-->b<c/>", End::complete, "[c/] 1@2 []\n"},
    {"CommentThirdDashDoesNotEndIt", "<!--a--->", End::open, ""},
    {"CommentFourDashesEndIt", "<!--a---->", End::complete, ""},
    {"CommentOfOneDash", "<!-x", End::error, ""},
    {"CommentLeftOpen", "<!-->", End::open, ""},

    {"CharacterDataSection", "<![CDATA[x]]>", End::error, "[!CDATA ] 1@0 []\n"},
    {"CharacterDataSectionWithoutText", "<![CDATA[]]>", End::error, "[!CDATA ] 1@0 []\n"},
    {"CharacterDataSectionOfBrackets", "<![CDATA[[[", End::open, "[!CDATA ] 1@0 []\n"},
    {"CharacterDataSectionMisspelt", "<![CDATX", End::error, "[] 1@0 []\n"},
    {"CharacterDataSectionInLowerCase", "<![cdata[", End::error, "[] 1@0 []\n"},

    {"RootClosed", "</>", End::open, ""},
    {"RootClosedAfterElements", "a<b/></>", End::open, "[b/] 1@1 []\n"},
    {"RootClosedThenComment", "</><!--a-->", End::open, ""},
    {"RootClosedThenText", "</>a", End::error, ""},
    {"RootClosedThenStartTag", "</><a", End::error, ""},
    {"RootClosedThenLess", "</><", End::open, ""},
    {"RootClosedThenEndTag", "</></>", End::error, ""},
    {"RootClosedThenEndTagLeftOpen", "</></a", End::open, ""},
    {"RootClosedThenInstruction", "</><?", End::error, ""},
    {"RootClosedThenDeclaration", "</><!a", End::error, ""},
    {"RootClosedThenCharacterDataSection", "</><![", End::error, ""},
    {"RootClosedThenEmptyTag", "</><>", End::error, ""},
    {"EndTagOfTheRootByName", "</a>", End::error, ""},
};
// clang-format on

} // namespace markup_test
