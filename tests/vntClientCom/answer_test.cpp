// What of an answer becomes the figure, element by element.
#include "tests/vntClientCom/exchange_samples.h"

#include <gtest/gtest.h>

#include <string>

using namespace exchange_samples;

namespace {

struct AnswerCase {
    const char* name;
    std::string document;
    std::string figure;
};

std::string shape(const std::string& content) { return "<vant><shape>" + content + "</shape></vant>"; }

std::string circle(const std::string& content) { return shape("<circle>" + content + "</circle>"); }

std::string ellipse(const std::string& content) { return shape("<ellipse>" + content + "</ellipse>"); }

std::string curve(const std::string& content)
{
    return shape("<open_free_curve>" + content + "</open_free_curve>");
}

const std::string kCenter = R"(<center x="1" y="2" z="3"/>)";
const std::string kPoints = R"(<control_point x="1" y="2" z="3"/><control_point x="4"/>)";
const std::string kEmptyLine = "line(0,0,0 0,0,0)";
const std::string kEmptyCircle = "circle(0,0,0 r=0 0..0)";
const std::string kEmptyEllipse = "ellipse(0,0,0 r=0,0 0..0)";

// clang-format off
const AnswerCase kRoots[] = {
    {"TheExample", kExampleAnswer, kExampleFigure},
    {"NoShapeIsAFigureWithoutStrokes", "<vant></vant>", ""},
    {"TextAloneIsAFigureWithoutStrokes", "abc", ""},
    {"AnyRootWillDo", "<a><shape></shape></a>", "[]"},
    {"NoRootWillDo", "<shape></shape><shape></shape>", "[][]"},
    {"AnyPrologWillDo", "<!DOCTYPE vant [x>y]><?a b?><!-- c --><v><shape></shape></v>", "[]"},
    {"AnEndTagOfAnotherCaseCloses", "<vant><shape></SHAPE></Vant>", "[]"},
};

const AnswerCase kShapes[] = {
    {"AnyCaseIsAStroke", "<v><SHAPE></SHAPE><Shape></Shape></v>", "[][]"},
    {"ASelfClosingShapeIsNoStroke", "<v><shape/></v>", ""},
    {"TheWholeNameCounts", "<v><shapes></shapes><shap></shap></v>", ""},
    {"AnyDepthIsAStroke", "<v><a><b><shape></shape></b></a></v>", "[]"},
    {"AttributesDoNotMatter", R"(<v><shape id="1"></shape></v>)", "[]"},
    {"AnInnerShapeIsAStrokeOfItsOwnBehindTheOuter",
     "<v><shape><shape><line></line></shape><circle></circle></shape></v>",
     "[" + kEmptyCircle + "][" + kEmptyLine + "]"},
    {"StrokesStandInDocumentOrder",
     R"(<v><shape><line><start x="1"/></line><a><shape><line><start x="2"/></line></shape></a></shape>)"
         R"(<shape><line><start x="3"/></line></shape></v>)",
     "[line(1,0,0 0,0,0)][line(2,0,0 0,0,0)][line(3,0,0 0,0,0)]"},
    {"PrimitivesStandInDocumentOrder",
     shape("<circle></circle><line></line><open_free_curve></open_free_curve><ellipse></ellipse>"),
     "[" + kEmptyCircle + " " + kEmptyLine + " open() " + kEmptyEllipse + "]"},
    {"AnUnknownChildIsIgnored", shape("<square></square>text<line></line><!-- -->"), "[" + kEmptyLine + "]"},
    {"APrimitiveBelowAnotherElementIsIgnored", shape("<group><line></line></group>"), "[]"},
};

const AnswerCase kLines[] = {
    {"BothEnds",
     shape(R"(<line><start x="1" y="2" z="3"/><end x="4" y="5" z="6"/></line>)"), "[line(1,2,3 4,5,6)]"},
    {"EndBeforeStart", shape(R"(<line><end x="4"/><start x="1"/></line>)"), "[line(1,0,0 4,0,0)]"},
    {"SelfClosingIsIgnored", shape("<line/>"), "[]"},
    {"OfAnotherCaseIsIgnored", shape("<Line></Line><LINE></LINE>"), "[]"},
    {"WithNothingIsTwoOrigins", shape("<line></line>"), "[" + kEmptyLine + "]"},
    {"StartWithAnEndTagIsIgnored",
     shape(R"(<line><start x="1"></start><end x="4"/></line>)"), "[line(0,0,0 4,0,0)]"},
    {"EndWithAnEndTagIsIgnored",
     shape(R"(<line><start x="1"/><end x="4"></end></line>)"), "[line(1,0,0 0,0,0)]"},
    {"StartOfAnotherCaseIsIgnored",
     shape(R"(<line><Start x="1"/><END x="4"/></line>)"), "[" + kEmptyLine + "]"},
    {"StartTwiceTakesTheLast",
     shape(R"(<line><start x="1" y="1"/><start x="2"/><end x="4"/></line>)"), "[line(2,0,0 4,0,0)]"},
    {"EndTwiceTakesTheLast", shape(R"(<line><end x="1" y="1"/><end x="2"/></line>)"), "[line(0,0,0 2,0,0)]"},
    {"StartBelowAnotherElementIsIgnored",
     shape(R"(<line><a><start x="1"/></a></line>)"), "[" + kEmptyLine + "]"},
};

const AnswerCase kPointAttributes[] = {
    {"AllThree", circle(R"(<center x="1.5" y="-2" z="3e2"/>)"), "[circle(1.5,-2,300 r=0 0..0)]"},
    {"WithoutZ", circle(R"(<center x="1" y="2"/>)"), "[circle(1,2,0 r=0 0..0)]"},
    {"WithoutX", circle(R"(<center y="2" z="3"/>)"), "[circle(0,2,3 r=0 0..0)]"},
    {"WithoutY", circle(R"(<center x="1" z="3"/>)"), "[circle(1,0,3 r=0 0..0)]"},
    {"InAnyOrder", circle(R"(<center z="3" y="2" x="1"/>)"), "[circle(1,2,3 r=0 0..0)]"},
    {"OfAnotherCaseAreIgnored", circle(R"(<center X="1" Y="2"/>)"), "[" + kEmptyCircle + "]"},
    {"TwiceTakesTheLast", circle(R"(<center x="1" x="2"/>)"), "[circle(2,0,0 r=0 0..0)]"},
    {"OtherAttributesAreIgnored", circle(R"(<center w="9" x="1" unit="mm"/>)"), "[circle(1,0,0 r=0 0..0)]"},
    {"InSingleQuotes", circle("<center x='1' y='2'/>"), "[circle(1,2,0 r=0 0..0)]"},
    {"ANumberMayHaveSomethingBehindIt",
     circle(R"(<center x="12.5abc" y=" -4" z="1e3"/>)"), "[circle(12.5,-4,1000 r=0 0..0)]"},
    {"ABadNumberOverwritesAGoodOne", circle(R"(<center x="5" x="none"/>)"), "[" + kEmptyCircle + "]"},
    {"ASecondBlankLosesTheAttribute", circle(R"(<center  x="1" y="2"/>)"), "[circle(0,2,0 r=0 0..0)]"},
};

const AnswerCase kCircles[] = {
    {"Whole",
     circle(kCenter + R"(<radius>5</radius><angle start="0" end="6.5"/>)"), "[circle(1,2,3 r=5 0..6.5)]"},
    {"AnArcIsFlagged",
     shape("<circular_arc>" + kCenter + R"(<radius>5</radius><angle start="-1" end="1"/></circular_arc>)"),
     "[circular_arc(1,2,3 r=5 -1..1)]"},
    {"SelfClosingIsIgnored", shape("<circle/><circular_arc/>"), "[]"},
    {"OfAnotherCaseIsIgnored", shape("<Circle></Circle><CIRCULAR_ARC></CIRCULAR_ARC>"), "[]"},
    {"CenterWithAnEndTagIsIgnored",
     circle(R"(<center x="1"></center><radius>5</radius>)"), "[circle(0,0,0 r=5 0..0)]"},
    {"CenterTwiceTakesTheLast",
     circle(R"(<center x="1" y="1"/><center x="2"/>)"), "[circle(2,0,0 r=0 0..0)]"},
    {"CenterOfAnotherCaseIsIgnored", circle(R"(<CENTER x="1"/><Center x="2"/>)"), "[" + kEmptyCircle + "]"},
    {"WithoutARadiusHasRadiusZero", circle(kCenter), "[circle(1,2,3 r=0 0..0)]"},
    {"ASelfClosingRadiusIsIgnored", circle(R"(<radius>5</radius><radius/>)"), "[circle(0,0,0 r=5 0..0)]"},
    {"RadiusTwiceTakesTheLast", circle("<radius>5</radius><radius>6</radius>"), "[circle(0,0,0 r=6 0..0)]"},
    {"RadiusOfAnotherCaseIsIgnored",
     circle("<RADIUS>5</RADIUS><Radius>6</Radius>"), "[" + kEmptyCircle + "]"},
    {"AnEmptyRadiusIsZero", circle("<radius>5</radius><radius></radius>"), "[" + kEmptyCircle + "]"},
    {"ARadiusIsItsTextAroundChildren", circle("<radius>1<a>9</a>2</radius>"), "[circle(0,0,0 r=12 0..0)]"},
    {"AMajorRadiusIsIgnored", circle("<major_radius>5</major_radius>"), "[" + kEmptyCircle + "]"},
    {"AnglesMayStandOnAnyChild",
     circle(R"(<sweep start="1"></sweep><x end="2"/>)"), "[circle(0,0,0 r=0 1..2)]"},
    {"AnglesMayStandOnTheCenter",
     circle(R"(<center x="1" start="0.5" end="1.5"/>)"), "[circle(1,0,0 r=0 0.5..1.5)]"},
    {"AnglesMayStandOnTheRadius",
     circle(R"(<radius start="0.5" end="1.5">2</radius>)"), "[circle(0,0,0 r=2 0.5..1.5)]"},
    {"AnglesMayStandOnThePosture",
     circle(R"(<posture m00="2" start="0.5"/>)"), "[circle(0,0,0 r=0 0.5..0 m00=2)]"},
    {"AnglesTwiceTakeTheLast",
     circle(R"(<a start="1" end="2"/><a end="4" start="3"/>)"), "[circle(0,0,0 r=0 3..4)]"},
    {"AnglesOfAnotherCaseAreIgnored", circle(R"(<angle Start="1" END="2"/>)"), "[" + kEmptyCircle + "]"},
    {"AnglesOnTheCircleItselfAreIgnored",
     shape(R"(<circle start="1" end="2"></circle>)"), "[" + kEmptyCircle + "]"},
    {"AnglesBelowAnotherElementAreIgnored",
     circle(R"(<a><angle start="1" end="2"/></a>)"), "[" + kEmptyCircle + "]"},
    {"APostureKeepsTheIdentityWhereItSaysNothing",
     circle(R"(<posture m01="-1" m23="7"/>)"), "[circle(0,0,0 r=0 0..0 m01=-1 m23=7)]"},
    {"APostureSetsEveryElement",
     circle(R"(<posture m00="10" m01="11" m02="12" m03="13" m10="14" m11="15" m12="16" m13="17")"
         R"( m20="18" m21="19" m22="20" m23="21" m30="22" m31="23" m32="24" m33="25"/>)"),
     "[circle(0,0,0 r=0 0..0 m00=10 m01=11 m02=12 m03=13 m10=14 m11=15 m12=16 m13=17"
         " m20=18 m21=19 m22=20 m23=21 m30=22 m31=23 m32=24 m33=25)]"},
    {"APostureWithAnEndTagIsIgnored", circle(R"(<posture m00="2"></posture>)"), "[" + kEmptyCircle + "]"},
    {"APostureTwiceTakesTheLastWhole",
     circle(R"(<posture m00="2"/><posture m11="3"/>)"), "[circle(0,0,0 r=0 0..0 m11=3)]"},
    {"APostureOfOtherNamesIsIgnored",
     circle(R"(<posture M00="2" m44="3" m0="4"/>)"), "[" + kEmptyCircle + "]"},
    {"APostureOfAnotherCaseIsIgnored",
     circle(R"(<POSTURE m00="2"/><Posture m11="3"/>)"), "[" + kEmptyCircle + "]"},
};

const AnswerCase kEllipses[] = {
    {"Whole",
     ellipse(kCenter + "<major_radius>5</major_radius><minor_radius>4</minor_radius>" +
         R"(<angle start="0" end="6.5"/><posture m10="1"/>)"),
     "[ellipse(1,2,3 r=5,4 0..6.5 m10=1)]"},
    {"AnArcIsFlagged",
     shape(R"(<elliptic_arc><major_radius>5</major_radius><angle start="-1" end="1"/></elliptic_arc>)"),
     "[elliptic_arc(0,0,0 r=5,0 -1..1)]"},
    {"SelfClosingIsIgnored", shape("<ellipse/><elliptic_arc/>"), "[]"},
    {"OfAnotherCaseIsIgnored", shape("<Ellipse></Ellipse><Elliptic_arc></Elliptic_arc>"), "[]"},
    {"WithNothingHasRadiiZero", ellipse(""), "[" + kEmptyEllipse + "]"},
    {"CenterWithAnEndTagIsIgnored", ellipse(R"(<center x="1"></center>)"), "[" + kEmptyEllipse + "]"},
    {"CenterTwiceTakesTheLast",
     ellipse(R"(<center x="1" y="1"/><center x="2"/>)"), "[ellipse(2,0,0 r=0,0 0..0)]"},
    {"CenterOfAnotherCaseIsIgnored", ellipse(R"(<CENTER x="1"/><Center x="2"/>)"), "[" + kEmptyEllipse + "]"},
    {"SelfClosingRadiiAreIgnored", ellipse("<major_radius/><minor_radius/>"), "[" + kEmptyEllipse + "]"},
    {"RadiiTwiceTakeTheLast",
     ellipse("<minor_radius>1</minor_radius><major_radius>2</major_radius><major_radius>3</major_radius>"
         "<minor_radius>4</minor_radius>"),
     "[ellipse(0,0,0 r=3,4 0..0)]"},
    {"APlainRadiusIsIgnored", ellipse("<radius>5</radius>"), "[" + kEmptyEllipse + "]"},
    {"RadiiOfAnotherCaseAreIgnored", ellipse("<Major_radius>5</Major_radius>"), "[" + kEmptyEllipse + "]"},
    {"MajorRadiusInCapitalsIsIgnored", ellipse("<MAJOR_RADIUS>5</MAJOR_RADIUS>"), "[" + kEmptyEllipse + "]"},
    {"MinorRadiusInCapitalsIsIgnored",
     ellipse("<MINOR_RADIUS>4</MINOR_RADIUS><Minor_radius>3</Minor_radius>"), "[" + kEmptyEllipse + "]"},
    {"AnglesMayStandOnTheCenter",
     ellipse(R"(<center start="0.5" end="1.5"/>)"), "[ellipse(0,0,0 r=0,0 0.5..1.5)]"},
    {"AnglesTwiceTakeTheLast",
     ellipse(R"(<a start="1" end="2"/><a end="4" start="3"/>)"), "[ellipse(0,0,0 r=0,0 3..4)]"},
    {"APostureWithAnEndTagIsIgnored", ellipse(R"(<posture m00="2"></posture>)"), "[" + kEmptyEllipse + "]"},
    {"APostureTwiceTakesTheLastWhole",
     ellipse(R"(<posture m00="2"/><posture m11="3"/>)"), "[ellipse(0,0,0 r=0,0 0..0 m11=3)]"},
    {"APostureOfAnotherCaseIsIgnored",
     ellipse(R"(<POSTURE m00="2"/><Posture m11="3"/>)"), "[" + kEmptyEllipse + "]"},
};

const AnswerCase kCurves[] = {
    {"Open", curve("<bezier_curve>" + kPoints + "</bezier_curve>"), "[open(1,2,3 4,0,0)]"},
    {"Closed",
     shape("<closed_free_curve><bezier_curve>" + kPoints + "</bezier_curve></closed_free_curve>"),
     "[closed(1,2,3 4,0,0)]"},
    {"SelfClosingIsIgnored", shape("<open_free_curve/><closed_free_curve/>"), "[]"},
    {"OfAnotherCaseIsIgnored", shape("<Open_free_curve></Open_free_curve>"), "[]"},
    {"WithNothingHasNoPoints", curve(""), "[open()]"},
    {"AnEmptyRunHasNoPoints", curve("<bezier_curve></bezier_curve>"), "[open()]"},
    {"ASelfClosingRunIsIgnored", curve("<bezier_curve/>"), "[open()]"},
    {"ARunOfAnotherCaseIsIgnored", curve("<Bezier_curve>" + kPoints + "</Bezier_curve>"), "[open()]"},
    {"RunsAreJoinedWithEveryPoint",
     curve("<bezier_curve>" + kPoints + "</bezier_curve><bezier_curve>" + kPoints + "</bezier_curve>"),
     "[open(1,2,3 4,0,0 1,2,3 4,0,0)]"},
    {"APointWithAnEndTagIsIgnored",
     curve(R"(<bezier_curve><control_point x="1"></control_point></bezier_curve>)"), "[open()]"},
    {"APointOfAnotherCaseIsIgnored",
     curve(R"(<bezier_curve><Control_Point x="1"/></bezier_curve>)"), "[open()]"},
    {"APointOutsideARunIsIgnored", curve(kPoints), "[open()]"},
    {"APointBelowAnotherElementIsIgnored",
     curve("<bezier_curve><a>" + kPoints + "</a></bezier_curve>"), "[open()]"},
    {"APointWithNothingIsTheOrigin", curve("<bezier_curve><control_point/></bezier_curve>"), "[open(0,0,0)]"},
};
// clang-format on

class Answer : public testing::TestWithParam<AnswerCase> {};

TEST_P(Answer, BecomesTheFigure)
{
    const Outcome outcome = receive(GetParam().document + "\n");
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.figure, GetParam().figure);
    EXPECT_EQ(outcome.problems, "");
    EXPECT_FALSE(outcome.connection_open);
}

const auto kByName = [](const auto& row) { return std::string(row.param.name); };
INSTANTIATE_TEST_SUITE_P(Root, Answer, testing::ValuesIn(kRoots), kByName);
INSTANTIATE_TEST_SUITE_P(Shape, Answer, testing::ValuesIn(kShapes), kByName);
INSTANTIATE_TEST_SUITE_P(Line, Answer, testing::ValuesIn(kLines), kByName);
INSTANTIATE_TEST_SUITE_P(PointAttributes, Answer, testing::ValuesIn(kPointAttributes), kByName);
INSTANTIATE_TEST_SUITE_P(Circle, Answer, testing::ValuesIn(kCircles), kByName);
INSTANTIATE_TEST_SUITE_P(Ellipse, Answer, testing::ValuesIn(kEllipses), kByName);
INSTANTIATE_TEST_SUITE_P(FreeCurve, Answer, testing::ValuesIn(kCurves), kByName);

} // namespace
