#include "Source/vntClientCom/vntClientCom.h"

#include "tests/support/child_process.h"
#include "tests/support/describe.h"
#include "tests/support/descriptors.h"
#include "tests/support/piecewise_sender.h"
#include "tests/support/scripted_peer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <locale>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using support::describe;
using support::Descriptor;
using support::is_open;
using support::ParkedInput;
using support::PiecewiseSender;
using support::receive_exactly;
using support::receive_waiting;
using support::ScriptedPeer;
using support::SocketPair;
using namespace std::string_literals;

struct TestLink : vnt::ClientCom {
    using vnt::ClientCom::com_type;
    using vnt::ClientCom::data_socket;
    using vnt::ClientCom::figure;

    TestLink() = default;
    explicit TestLink(int socket, vnt::ComType type = vnt::COM_XML)
    {
        data_socket = socket;
        com_type = type;
    }
};

constexpr auto kUnknownType = static_cast<vnt::ComType>(7);

const std::string kIdentityAttributes = R"( m00="1" m01="0" m02="0" m03="0" m10="0" m11="1" m12="0" m13="0")"
                                        R"( m20="0" m21="0" m22="1" m23="0" m30="0" m31="0" m32="0" m33="1")";

// The CAD information document of those parts, as a sketch application receives it.
std::string cad_document(const std::string& viewport, const std::string& view_matrix,
                         const std::string& grid_matrix, const std::string& factor)
{
    return R"(<?xml version="1.0" encoding="UTF-8" standalone="no"?><vant><viewport_information)" + viewport +
           "/><model_space_information><viewport_space_to_model_space_mapping_matrix" + view_matrix +
           "/><snapping_information><unit_grid_space_to_model_space_mapping_matrix" + grid_matrix +
           "/><derivational_scale_factor>" + factor +
           "</derivational_scale_factor></snapping_information></model_space_information></vant>\n";
}

const std::string kExampleDocument =
    cad_document(R"( height="768" width="1024" x="0" y="22")", kIdentityAttributes, kIdentityAttributes, "1");

vnt::ModelSpaceInfo model_space(std::int32_t factor = 1)
{
    vnt::ModelSpaceInfo info{vnt::Matrix(), vnt::Matrix()};
    info.derivational_scale_factor = factor;
    return info;
}

const vnt::ViewportInfo kViewport(0, 22, 1024, 768);

// A comma for the point and dots between the thousands, for everything that does not ask for the classic
// locale.
class ContinentalNumbers {
public:
    ContinentalNumbers() : before_(std::locale::global(std::locale(std::locale::classic(), new Facet))) {}
    ContinentalNumbers(const ContinentalNumbers&) = delete;
    ContinentalNumbers& operator=(const ContinentalNumbers&) = delete;
    ~ContinentalNumbers() { std::locale::global(before_); }

private:
    struct Facet : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::locale before_;
};

// ------------------------------------------------------------------------------------------ the outgoing
// document

class Sending : public testing::Test {
protected:
    ParkedInput parked;
    SocketPair pair;
    TestLink link{pair.link.release()};

    std::string sent(const vnt::ViewportInfo& viewport, const vnt::ModelSpaceInfo& info)
    {
        EXPECT_TRUE(link.send_CAD_info(viewport, info));
        return receive_waiting(pair.peer.get());
    }
};

TEST_F(Sending, WritesTheDocumentOnOneLine) { EXPECT_EQ(sent(kViewport, model_space()), kExampleDocument); }

TEST_F(Sending, TakesAnUnknownTypeForADocument)
{
    link.com_type = kUnknownType;
    EXPECT_EQ(sent(kViewport, model_space()), kExampleDocument);
}

TEST_F(Sending, WritesANegativeEdgeOfTheWindow)
{
    EXPECT_EQ(sent(vnt::ViewportInfo(-12, -2147483647 - 1, 0, 2147483647), model_space(-3)),
              cad_document(R"( height="2147483647" width="0" x="-12" y="-2147483648")", kIdentityAttributes,
                           kIdentityAttributes, "-3"));
}

TEST_F(Sending, NamesEachElementByRowAndColumn)
{
    vnt::ModelSpaceInfo info = model_space(5);
    for (std::size_t i = 0; i < vnt::Matrix::kElements; ++i) {
        info.viewport_space_to_model_space_mapping_matrix[i] = static_cast<double>(i) + 100;
        info.unit_grid_space_to_model_space_mapping_matrix[i] = static_cast<double>(i) + 200;
    }
    EXPECT_EQ(
        sent(kViewport, info),
        cad_document(R"( height="768" width="1024" x="0" y="22")",
                     R"( m00="100" m01="101" m02="102" m03="103" m10="104" m11="105" m12="106" m13="107")"
                     R"( m20="108" m21="109" m22="110" m23="111" m30="112" m31="113" m32="114" m33="115")",
                     R"( m00="200" m01="201" m02="202" m03="203" m10="204" m11="205" m12="206" m13="207")"
                     R"( m20="208" m21="209" m22="210" m23="211" m30="212" m31="213" m32="214" m33="215")",
                     "5"));
}

struct NumberCase {
    const char* name;
    double value;
    const char* text;
};

const NumberCase kNumbers[] = {
    {"One",                      1.0,                                      "1"                     },
    {"Zero",                     0.0,                                      "0"                     },
    {"NegativeZero",             -0.0,                                     "-0"                    },
    {"ATenth",                   0.1,                                      "0.1"                   },
    {"AThird",                   1.0 / 3.0,                                "0.3333333333333333"    },
    {"SixteenDigitsAndNoMore",   0.35277777777777775,                      "0.3527777777777777"    },
    {"ALargeExponent",           1e20,                                     "1e+20"                 },
    {"ASmallExponent",           2.5e-7,                                   "2.5e-07"               },
    {"AThousandWithoutGrouping", 1234567.5,                                "1234567.5"             },
    {"TheLargest",               std::numeric_limits<double>::max(),       "1.797693134862316e+308"},
    {"NotANumber",               std::numeric_limits<double>::quiet_NaN(), "nan"                   },
    {"Infinity",                 std::numeric_limits<double>::infinity(),  "inf"                   },
    {"NegativeInfinity",         -std::numeric_limits<double>::infinity(), "-inf"                  },
};

class SentNumber : public testing::TestWithParam<NumberCase> {};

TEST_P(SentNumber, HasSixteenDigitsWhateverTheLocale)
{
    const ContinentalNumbers locale;
    ParkedInput parked;
    SocketPair pair;
    TestLink link(pair.link.release());
    vnt::ModelSpaceInfo info = model_space(1234567);
    info.viewport_space_to_model_space_mapping_matrix.m00 = GetParam().value;
    EXPECT_TRUE(link.send_CAD_info(vnt::ViewportInfo(0, 0, 123456, 0), info));
    std::string attributes = kIdentityAttributes;
    attributes.replace(attributes.find("\"1\""), 3, "\""s + GetParam().text + "\"");
    EXPECT_EQ(receive_waiting(pair.peer.get()), cad_document(R"( height="0" width="123456" x="0" y="0")",
                                                             attributes, kIdentityAttributes, "1234567"));
}

INSTANTIATE_TEST_SUITE_P(, SentNumber, testing::ValuesIn(kNumbers),
                         [](const auto& row) { return row.param.name; });

TEST_F(Sending, WritesTheRecordsTextForms)
{
    const ContinentalNumbers locale;
    link.com_type = vnt::COM_TEXT;
    vnt::ModelSpaceInfo info = model_space(77);
    info.viewport_space_to_model_space_mapping_matrix.m03 = 1234.5;
    EXPECT_EQ(sent(kViewport, info), "0 22 1024 768\n"
                                     "1 0 0 1234.5\n0 1 0 0\n0 0 1 0\n0 0 0 1\n"
                                     "1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n"
                                     "\n");
}

TEST_F(Sending, WritesTheRecordsByteFormsAsBlocks)
{
    link.com_type = vnt::COM_BINARY;
    vnt::ModelSpaceInfo info = model_space(77);
    info.unit_grid_space_to_model_space_mapping_matrix.m33 = -2.5;
    std::string expected = "\0\0\0\x10"s;
    for (const std::int32_t field : {0, 22, 1024, 768})
        expected.append(reinterpret_cast<const char*>(&field), sizeof field);
    expected += "\0\0\1\0"s;
    for (std::size_t i = 0; i < 32; ++i) {
        const double element = i == 31 ? -2.5 : i % 16 % 5 == 0 ? 1.0 : 0.0;
        expected.append(reinterpret_cast<const char*>(&element), sizeof element);
    }
    EXPECT_EQ(sent(kViewport, info), expected);
}

TEST_F(Sending, SaysTrueToAPeerThatHasClosed)
{
    pair.peer.reset(-1);
    EXPECT_TRUE(link.send_CAD_info(kViewport, model_space()));
}

// ---------------------------------------------------------------------------------------------------- the
// answer

struct Outcome {
    int result;
    std::string figure;
    std::string problems; // on standard error
    bool connection_open;
};

// What a link makes of bytes that its peer sends.
Outcome receive(const std::string& bytes, vnt::ComType type = vnt::COM_XML)
{
    ParkedInput parked;
    SocketPair pair;
    TestLink link(pair.link.release(), type);
    const int number = link.data_socket;
    std::thread peer([&] { support::send_all(pair.peer.get(), bytes); });
    testing::internal::CaptureStderr();
    const int result = link.recieve_figure_primitive_info();
    const bool still_open = is_open(number);
    const std::string problems = testing::internal::GetCapturedStderr();
    peer.join();
    return {result, describe(link.figure), problems, still_open};
}

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

const std::string kExampleAnswer =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="no"?><vant><shape>)"
    R"(<line><start x="0" y="0" z="0"/><end x="100" y="50" z="0"/></line>)"
    R"(<circular_arc><center x="10" y="10" z="0"/><radius>25</radius><angle start="0" end="1.5707963267948966"/>)"
    R"(<posture m00="1" m11="1" m22="1" m33="1"/></circular_arc>)"
    R"(<closed_free_curve><bezier_curve><control_point x="0" y="0" z="0"/><control_point x="5" y="9" z="0"/>)"
    R"(<control_point x="9" y="5" z="0"/><control_point x="0" y="0" z="0"/></bezier_curve></closed_free_curve>)"
    R"(</shape></vant>)";
const std::string kExampleFigure = "[line(0,0,0 100,50,0) circular_arc(10,10,0 r=25 0..1.5707963267948966) "
                                   "closed(0,0,0 5,9,0 9,5,0 0,0,0)]";

const AnswerCase kRoots[] = {
    {"TheExample",                       kExampleAnswer,                                                 kExampleFigure},
    {"NoShapeIsAFigureWithoutStrokes",   "<vant></vant>",                                                ""            },
    {"TextAloneIsAFigureWithoutStrokes", "abc",                                                          ""            },
    {"AnyRootWillDo",                    "<a><shape></shape></a>",                                       "[]"          },
    {"NoRootWillDo",                     "<shape></shape><shape></shape>",                               "[][]"        },
    {"AnyPrologWillDo",                  "<!DOCTYPE vant [x>y]><?a b?><!-- c --><v><shape></shape></v>", "[]"          },
    {"AnEndTagOfAnotherCaseCloses",      "<vant><shape></SHAPE></Vant>",                                 "[]"          },
};

const AnswerCase kShapes[] = {
    {"AnyCaseIsAStroke",                            "<v><SHAPE></SHAPE><Shape></Shape></v>",             "[][]"                                                     },
    {"ASelfClosingShapeIsNoStroke",                 "<v><shape/></v>",                                   ""                                                         },
    {"TheWholeNameCounts",                          "<v><shapes></shapes><shap></shap></v>",             ""                                                         },
    {"AnyDepthIsAStroke",                           "<v><a><b><shape></shape></b></a></v>",              "[]"                                                       },
    {"AttributesDoNotMatter",                       R"(<v><shape id="1"></shape></v>)",                  "[]"                                                       },
    {"AnInnerShapeIsAStrokeOfItsOwnBehindTheOuter",
     "<v><shape><shape><line></line></shape><circle></circle></shape></v>",                              "[" + kEmptyCircle + "][" + kEmptyLine + "]"               },
    {"StrokesStandInDocumentOrder",
     R"(<v><shape><line><start x="1"/></line><a><shape><line><start x="2"/></line></shape></a></shape>)"
     R"(<shape><line><start x="3"/></line></shape></v>)",                                                "[line(1,0,0 0,0,0)][line(2,0,0 0,0,0)][line(3,0,0 0,0,0)]"},
    {"PrimitivesStandInDocumentOrder",
     shape("<circle></circle><line></line><open_free_curve></open_free_curve><ellipse></ellipse>"),
     "[" + kEmptyCircle + " " + kEmptyLine + " open() " + kEmptyEllipse + "]"                                                                                       },
    {"AnUnknownChildIsIgnored",                     shape("<square></square>text<line></line><!-- -->"), "[" + kEmptyLine + "]"                                     },
    {"APrimitiveBelowAnotherElementIsIgnored",      shape("<group><line></line></group>"),               "[]"                                                       },
};

const AnswerCase kLines[] = {
    {"BothEnds",                          shape(R"(<line><start x="1" y="2" z="3"/><end x="4" y="5" z="6"/></line>)"),
     "[line(1,2,3 4,5,6)]"                                                                                                                   },
    {"EndBeforeStart",                    shape(R"(<line><end x="4"/><start x="1"/></line>)"),                         "[line(1,0,0 4,0,0)]" },
    {"SelfClosingIsIgnored",              shape("<line/>"),                                                            "[]"                  },
    {"OfAnotherCaseIsIgnored",            shape("<Line></Line><LINE></LINE>"),                                         "[]"                  },
    {"WithNothingIsTwoOrigins",           shape("<line></line>"),                                                      "[" + kEmptyLine + "]"},
    {"StartWithAnEndTagIsIgnored",        shape(R"(<line><start x="1"></start><end x="4"/></line>)"),
     "[line(0,0,0 4,0,0)]"                                                                                                                   },
    {"EndWithAnEndTagIsIgnored",          shape(R"(<line><start x="1"/><end x="4"></end></line>)"),
     "[line(1,0,0 0,0,0)]"                                                                                                                   },
    {"StartOfAnotherCaseIsIgnored",       shape(R"(<line><Start x="1"/><END x="4"/></line>)"),
     "[" + kEmptyLine + "]"                                                                                                                  },
    {"StartTwiceTakesTheLast",            shape(R"(<line><start x="1" y="1"/><start x="2"/><end x="4"/></line>)"),
     "[line(2,0,0 4,0,0)]"                                                                                                                   },
    {"EndTwiceTakesTheLast",              shape(R"(<line><end x="1" y="1"/><end x="2"/></line>)"),                     "[line(0,0,0 2,0,0)]" },
    {"StartBelowAnotherElementIsIgnored", shape(R"(<line><a><start x="1"/></a></line>)"),
     "[" + kEmptyLine + "]"                                                                                                                  },
};

const AnswerCase kPointAttributes[] = {
    {"AllThree",                        circle(R"(<center x="1.5" y="-2" z="3e2"/>)"),      "[circle(1.5,-2,300 r=0 0..0)]"},
    {"WithoutZ",                        circle(R"(<center x="1" y="2"/>)"),                 "[circle(1,2,0 r=0 0..0)]"     },
    {"WithoutX",                        circle(R"(<center y="2" z="3"/>)"),                 "[circle(0,2,3 r=0 0..0)]"     },
    {"WithoutY",                        circle(R"(<center x="1" z="3"/>)"),                 "[circle(1,0,3 r=0 0..0)]"     },
    {"InAnyOrder",                      circle(R"(<center z="3" y="2" x="1"/>)"),           "[circle(1,2,3 r=0 0..0)]"     },
    {"OfAnotherCaseAreIgnored",         circle(R"(<center X="1" Y="2"/>)"),                 "[" + kEmptyCircle + "]"       },
    {"TwiceTakesTheLast",               circle(R"(<center x="1" x="2"/>)"),                 "[circle(2,0,0 r=0 0..0)]"     },
    {"OtherAttributesAreIgnored",       circle(R"(<center w="9" x="1" unit="mm"/>)"),       "[circle(1,0,0 r=0 0..0)]"     },
    {"InSingleQuotes",                  circle("<center x='1' y='2'/>"),                    "[circle(1,2,0 r=0 0..0)]"     },
    {"ANumberMayHaveSomethingBehindIt", circle(R"(<center x="12.5abc" y=" -4" z="1e3"/>)"),
     "[circle(12.5,-4,1000 r=0 0..0)]"                                                                                     },
    {"ABadNumberOverwritesAGoodOne",    circle(R"(<center x="5" x="none"/>)"),              "[" + kEmptyCircle + "]"       },
    {"ASecondBlankLosesTheAttribute",   circle(R"(<center  x="1" y="2"/>)"),                "[circle(0,2,0 r=0 0..0)]"     },
};

const AnswerCase kCircles[] = {
    {"Whole",                                      circle(kCenter + R"(<radius>5</radius><angle start="0" end="6.5"/>)"),
     "[circle(1,2,3 r=5 0..6.5)]"                                                                                                                    },
    {"AnArcIsFlagged",
     shape("<circular_arc>" + kCenter + R"(<radius>5</radius><angle start="-1" end="1"/></circular_arc>)"),
     "[circular_arc(1,2,3 r=5 -1..1)]"                                                                                                               },
    {"SelfClosingIsIgnored",                       shape("<circle/><circular_arc/>"),                                     "[]"                       },
    {"OfAnotherCaseIsIgnored",                     shape("<Circle></Circle><CIRCULAR_ARC></CIRCULAR_ARC>"),               "[]"                       },
    {"CenterWithAnEndTagIsIgnored",                circle(R"(<center x="1"></center><radius>5</radius>)"),
     "[circle(0,0,0 r=5 0..0)]"                                                                                                                      },
    {"CenterTwiceTakesTheLast",                    circle(R"(<center x="1" y="1"/><center x="2"/>)"),
     "[circle(2,0,0 r=0 0..0)]"                                                                                                                      },
    {"WithoutARadiusHasRadiusZero",                circle(kCenter),                                                       "[circle(1,2,3 r=0 0..0)]" },
    {"ASelfClosingRadiusIsIgnored",                circle(R"(<radius>5</radius><radius/>)"),                              "[circle(0,0,0 r=5 0..0)]" },
    {"RadiusTwiceTakesTheLast",                    circle("<radius>5</radius><radius>6</radius>"),                        "[circle(0,0,0 r=6 0..0)]" },
    {"AnEmptyRadiusIsZero",                        circle("<radius>5</radius><radius></radius>"),                         "[" + kEmptyCircle + "]"   },
    {"ARadiusIsItsTextAroundChildren",             circle("<radius>1<a>9</a>2</radius>"),                                 "[circle(0,0,0 r=12 0..0)]"},
    {"AMajorRadiusIsIgnored",                      circle("<major_radius>5</major_radius>"),                              "[" + kEmptyCircle + "]"   },
    {"AnglesMayStandOnAnyChild",                   circle(R"(<sweep start="1"></sweep><x end="2"/>)"),
     "[circle(0,0,0 r=0 1..2)]"                                                                                                                      },
    {"AnglesMayStandOnTheCenter",                  circle(R"(<center x="1" start="0.5" end="1.5"/>)"),
     "[circle(1,0,0 r=0 0.5..1.5)]"                                                                                                                  },
    {"AnglesMayStandOnTheRadius",                  circle(R"(<radius start="0.5" end="1.5">2</radius>)"),
     "[circle(0,0,0 r=2 0.5..1.5)]"                                                                                                                  },
    {"AnglesMayStandOnThePosture",                 circle(R"(<posture m00="2" start="0.5"/>)"),
     "[circle(0,0,0 r=0 0.5..0 m00=2)]"                                                                                                              },
    {"AnglesTwiceTakeTheLast",                     circle(R"(<a start="1" end="2"/><a end="4" start="3"/>)"),
     "[circle(0,0,0 r=0 3..4)]"                                                                                                                      },
    {"AnglesOfAnotherCaseAreIgnored",              circle(R"(<angle Start="1" END="2"/>)"),                               "[" + kEmptyCircle + "]"   },
    {"AnglesOnTheCircleItselfAreIgnored",          shape(R"(<circle start="1" end="2"></circle>)"),
     "[" + kEmptyCircle + "]"                                                                                                                        },
    {"AnglesBelowAnotherElementAreIgnored",        circle(R"(<a><angle start="1" end="2"/></a>)"),
     "[" + kEmptyCircle + "]"                                                                                                                        },
    {"APostureKeepsTheIdentityWhereItSaysNothing", circle(R"(<posture m01="-1" m23="7"/>)"),
     "[circle(0,0,0 r=0 0..0 m01=-1 m23=7)]"                                                                                                         },
    {"APostureSetsEveryElement",
     circle(R"(<posture m00="10" m01="11" m02="12" m03="13" m10="14" m11="15" m12="16" m13="17")"
            R"( m20="18" m21="19" m22="20" m23="21" m30="22" m31="23" m32="24" m33="25"/>)"),
     "[circle(0,0,0 r=0 0..0 m00=10 m01=11 m02=12 m03=13 m10=14 m11=15 m12=16 m13=17"
     " m20=18 m21=19 m22=20 m23=21 m30=22 m31=23 m32=24 m33=25)]"                                                                                    },
    {"APostureWithAnEndTagIsIgnored",              circle(R"(<posture m00="2"></posture>)"),                              "[" + kEmptyCircle + "]"   },
    {"APostureTwiceTakesTheLastWhole",             circle(R"(<posture m00="2"/><posture m11="3"/>)"),
     "[circle(0,0,0 r=0 0..0 m11=3)]"                                                                                                                },
    {"APostureOfOtherNamesIsIgnored",              circle(R"(<posture M00="2" m44="3" m0="4"/>)"),
     "[" + kEmptyCircle + "]"                                                                                                                        },
};

const AnswerCase kEllipses[] = {
    {"Whole",
     ellipse(kCenter + "<major_radius>5</major_radius><minor_radius>4</minor_radius>" +
             R"(<angle start="0" end="6.5"/><posture m10="1"/>)"),
     "[ellipse(1,2,3 r=5,4 0..6.5 m10=1)]"                                                                                        },
    {"AnArcIsFlagged",
     shape(R"(<elliptic_arc><major_radius>5</major_radius><angle start="-1" end="1"/></elliptic_arc>)"),
     "[elliptic_arc(0,0,0 r=5,0 -1..1)]"                                                                                          },
    {"SelfClosingIsIgnored",          shape("<ellipse/><elliptic_arc/>"),                                "[]"                     },
    {"OfAnotherCaseIsIgnored",        shape("<Ellipse></Ellipse><Elliptic_arc></Elliptic_arc>"),         "[]"                     },
    {"WithNothingHasRadiiZero",       ellipse(""),                                                       "[" + kEmptyEllipse + "]"},
    {"CenterWithAnEndTagIsIgnored",   ellipse(R"(<center x="1"></center>)"),                             "[" + kEmptyEllipse + "]"},
    {"SelfClosingRadiiAreIgnored",    ellipse("<major_radius/><minor_radius/>"),                         "[" + kEmptyEllipse + "]"},
    {"RadiiTwiceTakeTheLast",
     ellipse("<minor_radius>1</minor_radius><major_radius>2</major_radius><major_radius>3</major_radius>"
             "<minor_radius>4</minor_radius>"),
     "[ellipse(0,0,0 r=3,4 0..0)]"                                                                                                },
    {"APlainRadiusIsIgnored",         ellipse("<radius>5</radius>"),                                     "[" + kEmptyEllipse + "]"},
    {"RadiiOfAnotherCaseAreIgnored",  ellipse("<Major_radius>5</Major_radius>"),                         "[" + kEmptyEllipse + "]"},
    {"AnglesMayStandOnTheCenter",     ellipse(R"(<center start="0.5" end="1.5"/>)"),
     "[ellipse(0,0,0 r=0,0 0.5..1.5)]"                                                                                            },
    {"APostureWithAnEndTagIsIgnored", ellipse(R"(<posture m00="2"></posture>)"),                         "[" + kEmptyEllipse + "]"},
};

const AnswerCase kCurves[] = {
    {"Open",                               curve("<bezier_curve>" + kPoints + "</bezier_curve>"),                                        "[open(1,2,3 4,0,0)]"},
    {"Closed",                             shape("<closed_free_curve><bezier_curve>" + kPoints + "</bezier_curve></closed_free_curve>"),
     "[closed(1,2,3 4,0,0)]"                                                                                                                                  },
    {"SelfClosingIsIgnored",               shape("<open_free_curve/><closed_free_curve/>"),                                              "[]"                 },
    {"OfAnotherCaseIsIgnored",             shape("<Open_free_curve></Open_free_curve>"),                                                 "[]"                 },
    {"WithNothingHasNoPoints",             curve(""),                                                                                    "[open()]"           },
    {"AnEmptyRunHasNoPoints",              curve("<bezier_curve></bezier_curve>"),                                                       "[open()]"           },
    {"ASelfClosingRunIsIgnored",           curve("<bezier_curve/>"),                                                                     "[open()]"           },
    {"ARunOfAnotherCaseIsIgnored",         curve("<Bezier_curve>" + kPoints + "</Bezier_curve>"),                                        "[open()]"           },
    {"RunsAreJoinedWithEveryPoint",
     curve("<bezier_curve>" + kPoints + "</bezier_curve><bezier_curve>" + kPoints + "</bezier_curve>"),
     "[open(1,2,3 4,0,0 1,2,3 4,0,0)]"                                                                                                                        },
    {"APointWithAnEndTagIsIgnored",
     curve(R"(<bezier_curve><control_point x="1"></control_point></bezier_curve>)"),                                                     "[open()]"           },
    {"APointOfAnotherCaseIsIgnored",       curve(R"(<bezier_curve><Control_Point x="1"/></bezier_curve>)"),
     "[open()]"                                                                                                                                               },
    {"APointOutsideARunIsIgnored",         curve(kPoints),                                                                               "[open()]"           },
    {"APointBelowAnotherElementIsIgnored", curve("<bezier_curve><a>" + kPoints + "</a></bezier_curve>"),
     "[open()]"                                                                                                                                               },
    {"APointWithNothingIsTheOrigin",       curve("<bezier_curve><control_point/></bezier_curve>"),                                       "[open(0,0,0)]"      },
};

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

TEST(Receiving, ReadsADocumentWhateverTheLocale)
{
    const ContinentalNumbers locale;
    const Outcome outcome = receive(kExampleAnswer + "\n");
    EXPECT_EQ(outcome.result, 1);
    EXPECT_NE(outcome.figure.find("1,5707963267948966"), std::string::npos); // describe() speaks the locale
}

TEST(Receiving, TakesAnUnknownTypeForADocument)
{
    const Outcome outcome = receive(kExampleAnswer + "\n", static_cast<vnt::ComType>(5));
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.figure, kExampleFigure);
}

// --------------------------------------------------------------------------------------------- refused
// documents

const std::string kInvalid = "vntClientCom( 194 ) : invalid date\n";
const std::string kIncomplete = "vntClientCom( 203 ) : can't accept\n";

struct RefusedCase {
    const char* name;
    std::string document;
    std::string problem;
};

const RefusedCase kRefused[] = {
    {"AnEmptyLine",                "",                                 kIncomplete},
    {"AnOpenElement",              "<vant><shape></shape>",            kIncomplete},
    {"AnOpenTag",                  "<vant></vant",                     kIncomplete},
    {"AnOpenQuote",                "<vant a=\"></vant>",               kIncomplete},
    {"AnOpenComment",              "<vant></vant><!-- --->",           kIncomplete},
    {"AClosedRoot",                "<vant></vant></>",                 kIncomplete},
    {"AClosedRootAndMore",         "<vant></vant></>x",                kInvalid   },
    {"AWrongEndTag",               "<vant></want>",                    kInvalid   },
    {"AnEndTagWithABlank",         "<vant></vant >",                   kInvalid   },
    {"AnEndTagWithoutItsStart",    "</vant>",                          kInvalid   },
    {"AnEmptyTag",                 "<vant><></vant>",                  kInvalid   },
    {"CharacterData",              "<vant><![CDATA[x]]></vant>",       kInvalid   },
    {"HalfACommentsStart",         "<vant><!-x--></vant>",             kInvalid   },
    {"ALateFault",                 kExampleAnswer + "</vant>",         kInvalid   },
    {"TheAnswerOfAnotherProtocol", "HTTP/1.1 400 Bad Request\r<html>", kIncomplete},
};

class Refused : public testing::TestWithParam<RefusedCase> {};

TEST_P(Refused, SaysWhyAndKeepsTheFigureAndTheConnection)
{
    ParkedInput parked;
    SocketPair pair;
    TestLink link(pair.link.release());
    link.figure.strokes.emplace_back();
    support::send_all(pair.peer.get(), GetParam().document + "\n");
    testing::internal::CaptureStderr();
    const int result = link.recieve_figure_primitive_info();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), GetParam().problem);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(describe(link.figure), "[]");
    EXPECT_TRUE(is_open(link.data_socket));
}

INSTANTIATE_TEST_SUITE_P(, Refused, testing::ValuesIn(kRefused), kByName);

TEST(ClientComCheck, KeepsTheProblemLines)
{
    ParkedInput parked;
    const TestLink link;
    const auto problem = [&](const std::string& document) {
        parser p;
        p.feed(document.data(), document.size());
        const std::unique_ptr<tagrec> tree(p.root);
        testing::internal::CaptureStderr();
        const bool usable = link.checkData(p);
        return testing::internal::GetCapturedStderr() + (usable ? "usable" : "refused");
    };
    EXPECT_EQ(problem("<>"), "vntClientCom( 194 ) : invalid date\nrefused");
    EXPECT_EQ(problem("<a>"), "vntClientCom( 203 ) : can't accept\nrefused");
    EXPECT_EQ(problem(""),
              "vntClientCom( 203 ) : can't accept\nrefused"); // the root is null, and not asked for
    EXPECT_EQ(problem("<a></a>"), "usable");
}

// Every beginning of a document is refused, or is a document itself; nothing crashes or leaks.
TEST(Receiving, RefusesEveryTruncation)
{
    for (std::size_t size = 0; size < kExampleAnswer.size(); ++size) {
        const Outcome outcome = receive(kExampleAnswer.substr(0, size) + "\n");
        const bool before_the_root = size > 0 && kExampleAnswer.find("<vant>") == size;
        EXPECT_EQ(outcome.result, before_the_root ? 1 : 0) << "at byte " << size;
        EXPECT_EQ(outcome.problems, before_the_root ? "" : kIncomplete) << "at byte " << size;
    }
}

TEST(Receiving, OfAMillionNestedShapesUsesNoStack)
{
    const auto end = support::run_in_child(
        [] {
            constexpr int kDepth = 1000000;
            std::string document;
            for (int i = 0; i < kDepth; ++i)
                document += "<shape>";
            for (int i = 0; i < kDepth; ++i)
                document += "</shape>";
            ParkedInput::park();
            SocketPair pair;
            TestLink link(pair.link.release());
            std::thread peer([&] { support::send_all(pair.peer.get(), document + "\n"); });
            const int result = link.recieve_figure_primitive_info();
            peer.join();
            return result == 1 && link.figure.strokes.size() == kDepth ? 7 : 8;
        },
        100000);
    EXPECT_EQ(end.status, 7);
}

// --------------------------------------------------------------------------------------------- types 0 and 1

TEST(ClientComText, KeepsReadingOneLineOfAFigure)
{
    ParkedInput parked;
    SocketPair pair;
    TestLink link(pair.link.release(), vnt::COM_TEXT);
    const int number = link.data_socket;
    support::send_all(pair.peer.get(), "1\n1\n0\n1 2 3\n4 5 6\n");
    EXPECT_EQ(link.recieve_figure_primitive_info(), 1);
    EXPECT_EQ(describe(link.figure), "[]"); // one stroke, whose own count is on the next line
    EXPECT_FALSE(is_open(number));
}

TEST(ClientComText, ReadsAFigureThatStandsOnOneLine)
{
    const ContinentalNumbers locale;
    const Outcome outcome = receive("1 2 0 1.5 2 3 4 5 6 3 1 7 8 9 1\n", vnt::COM_TEXT);
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.figure, "[line(1,5,2,3 4,5,6) closed(7,8,9)]");
}

TEST(ClientComText, TakesAnythingForAFigure)
{
    const Outcome outcome = receive("no figure at all\n", vnt::COM_TEXT);
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.figure, "");
}

std::string block(const std::string& bytes)
{
    std::string length = "\0\0\0\0"s;
    length[2] = static_cast<char>(bytes.size() / 256);
    length[3] = static_cast<char>(bytes.size() % 256);
    return length + bytes;
}

std::string figure_bytes()
{
    vnt::FigPrimInfo figure;
    figure.strokes.emplace_back().primitives.push_back(
        new vnt::PrimL(vnt::Point(1, 2, 3), vnt::Point(4, 5, 6)));
    std::ostringstream out;
    figure.serialize(out);
    return out.str();
}

TEST(ClientComBinary, ReadsAFigure)
{
    const Outcome outcome = receive(block(figure_bytes()), vnt::COM_BINARY);
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.figure, "[line(1,2,3 4,5,6)]");
    EXPECT_FALSE(outcome.connection_open);
}

TEST(ClientComBinary, RefusesABlockWithoutALength)
{
    const Outcome outcome = receive("\0\0"s, vnt::COM_BINARY);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_TRUE(outcome.connection_open);
}

TEST(ClientComBinary, TakesAnEmptyBlockForAnEmptyFigure)
{
    const Outcome outcome = receive("\0\0\0\0"s, vnt::COM_BINARY);
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.figure, "");
}

// --------------------------------------------------------------------------------------------- whole
// exchanges

class Exchange : public testing::TestWithParam<std::size_t> {};

TEST_P(Exchange, SendsTheViewAndBringsTheFigure)
{
    ParkedInput parked;
    TestLink link;
    std::string request;
    ScriptedPeer peer([&](Descriptor& connection) {
        request = support::receive_line(connection.get());
        PiecewiseSender sender(connection.get(), link.data_socket, kExampleAnswer + "\n", GetParam());
    });
    vnt::FigPrimInfo* const figure =
        link.summonVANT(kViewport, model_space(), vnt::COM_XML, peer.port(), "127.0.0.1");
    const bool closed = !is_open(link.data_socket);
    peer.finish();
    EXPECT_EQ(request, kExampleDocument);
    ASSERT_EQ(figure, &link.figure);
    EXPECT_EQ(describe(*figure), kExampleFigure);
    EXPECT_TRUE(closed);
    EXPECT_EQ(link.com_type, vnt::COM_XML);
}

INSTANTIATE_TEST_SUITE_P(InPiecesOf, Exchange, testing::Values(1, 2, 3, 5, support::kAllAtOnce),
                         testing::PrintToStringParamName());

TEST(ExchangeEnd, WhereNobodyListensIsNullAndStoresNoType)
{
    ParkedInput parked;
    TestLink link;
    EXPECT_EQ(link.summonVANT(kViewport, model_space(), vnt::COM_XML, support::unused_port(), "127.0.0.1"),
              nullptr);
    EXPECT_EQ(link.com_type, vnt::COM_TEXT);
}

TEST(ExchangeEnd, AtABadAddressIsNull)
{
    ParkedInput parked;
    TestLink link;
    EXPECT_EQ(link.summonVANT(kViewport, model_space(), vnt::COM_XML, 4910, "localhost"), nullptr);
}

TEST(ExchangeEnd, OfARefusedAnswerIsNull)
{
    ParkedInput parked;
    TestLink link;
    ScriptedPeer peer([](Descriptor& connection) {
        support::receive_line(connection.get());
        support::send_all(connection.get(), "<vant></want>\n");
    });
    testing::internal::CaptureStderr();
    EXPECT_EQ(link.summonVANT(kViewport, model_space(), vnt::COM_XML, peer.port(), "127.0.0.1"), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), kInvalid);
    EXPECT_TRUE(is_open(link.data_socket));
}

TEST(ExchangeEnd, OfAResetConnectionIsNull)
{
    ParkedInput parked;
    TestLink link;
    ScriptedPeer peer([](Descriptor& connection) {
        support::receive_line(connection.get());
        const linger at_once{1, 0};
        setsockopt(connection.get(), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
        connection.reset(-1);
    });
    testing::internal::CaptureStderr();
    EXPECT_EQ(link.summonVANT(kViewport, model_space(), vnt::COM_XML, peer.port(), "127.0.0.1"), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), kIncomplete);
}

TEST(ExchangeEnd, LeavesASecondAnswerUnread)
{
    ParkedInput parked;
    TestLink link;
    ScriptedPeer peer([](Descriptor& connection) {
        support::receive_line(connection.get());
        support::send_all(connection.get(), "<a><shape></shape></a>\n<b></b>\n");
    });
    const vnt::FigPrimInfo* const figure =
        link.summonVANT(kViewport, model_space(), vnt::COM_XML, peer.port(), "127.0.0.1");
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(describe(*figure), "[]");
}

TEST(ExchangeEnd, OfASecondExchangeReplacesTheFigure)
{
    ParkedInput parked;
    TestLink link;
    for (const int strokes : {2, 1}) {
        ScriptedPeer peer([&](Descriptor& connection) {
            support::receive_line(connection.get());
            std::string shapes;
            for (int i = 0; i < strokes; ++i)
                shapes += "<shape></shape>";
            support::send_all(connection.get(), shapes + "\n");
        });
        const vnt::FigPrimInfo* const figure =
            link.summonVANT(kViewport, model_space(), vnt::COM_XML, peer.port(), "127.0.0.1");
        ASSERT_NE(figure, nullptr);
        EXPECT_EQ(figure->strokes.size(), static_cast<std::size_t>(strokes));
    }
}

TEST(ExchangeOfText, RunsOverTcp)
{
    ParkedInput parked;
    TestLink link;
    std::string request;
    ScriptedPeer peer([&](Descriptor& connection) {
        for (int line = 0; line < 10; ++line)
            request += support::receive_line(connection.get());
        support::send_all(connection.get(), "1 1 0 1 2 3 4 5 6\n");
    });
    const vnt::FigPrimInfo* const figure =
        link.summonVANT(kViewport, model_space(), vnt::COM_TEXT, peer.port(), "127.0.0.1");
    peer.finish();
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(describe(*figure), "[line(1,2,3 4,5,6)]");
    EXPECT_EQ(request,
              "0 22 1024 768\n1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n\n");
}

TEST(ExchangeOfBytes, RunsOverTcp)
{
    ParkedInput parked;
    TestLink link;
    std::string request;
    ScriptedPeer peer([&](Descriptor& connection) {
        request = receive_exactly(connection.get(), 4 + 16 + 4 + 256);
        support::send_all(connection.get(), block(figure_bytes()));
    });
    const vnt::FigPrimInfo* const figure =
        link.summonVANT(kViewport, model_space(), vnt::COM_BINARY, peer.port(), "127.0.0.1");
    peer.finish();
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(describe(*figure), "[line(1,2,3 4,5,6)]");
    EXPECT_EQ(request.size(), 280u);
}

} // namespace
