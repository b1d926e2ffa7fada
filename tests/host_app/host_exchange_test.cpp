// What goes over the real port: the request that the sketch application gets, the calls of the plug-in, and the
// same drawing as of a recorded answer.
#include "tests/host_app/host_program.h"
#include "tests/host_app/trace_reading.h"
#include "tests/peer/peer_program.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using host_app_test::kSmallArtwork;
using host_app_test::ProgramEnd;
using host_app_test::Workplace;
using Arguments = std::vector<std::string>;

Arguments operator+(Arguments first, const Arguments& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// ------------------------------------------------------------------------------------------------ requests

// A page of 200 x 100 px, seen at 200 % around (50, 40) in a window of 800 x 600 pixels at (10, 20): a pixel is
// 0.375 pt. Its grid begins at (20, 30) px, has a line each 10 px, and every fourth is a main one.
const std::string kViewedArtwork =
    R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:inkscape="http://www.inkscape.org/namespaces/inkscape")"
    R"( xmlns:sodipodi="http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd" width="200" height="100">)"
    R"(<sodipodi:namedview inkscape:zoom="2" inkscape:cx="50" inkscape:cy="40" inkscape:window-width="800")"
    R"( inkscape:window-height="600" inkscape:window-x="10" inkscape:window-y="20" showgrid="SHOWN">)"
    R"(<inkscape:grid type="xygrid" originx="20" originy="30" spacingx="10" spacingy="10" empspacing="4"/>)"
    "</sodipodi:namedview></svg>\n";

const std::string kGridShown = host_app_test::replaced(kViewedArtwork, "SHOWN", "true");
const std::string kGridHidden = host_app_test::replaced(kViewedArtwork, "SHOWN", "false");

struct RequestCase {
    const char* name;
    std::string artwork;
    Arguments arguments;
    const char* window; // the attributes of viewport_information
    // Of the view's matrix: a pixel in points, and the window's top left corner in the artwork.
    const char* step;
    const char* left;
    const char* top;
    const char* grid_step;
    const char* grid_factor;
};

// Worked out by hand: step = 1 / (zoom * 4/3); left = (center_x - origin_x) * 3/4 - step * width / 2, in points;
// top likewise, upward.
const RequestCase kRequests[] = {
  // The page fills the window: zoom 1024 / 200.
    {"TellOfTheWholePageWithoutARecord",
     kSmallArtwork, {},
     R"(height="768" width="1024" x="0" y="22")",  "0.146484375",
     "0",      "18.75",
     "50",  "2"},
    {"TellOfTheDocumentsViewAndGrid",
     kGridShown,    {},
     R"(height="600" width="800" x="10" y="20")",  "0.375",
     "-127.5", "105",
     "7.5", "4"},
    {"TellOfNoGridThatIsHidden",
     kGridHidden,   {},
     R"(height="600" width="800" x="10" y="20")",  "0.375",
     "-127.5", "105",
     "50",  "2"},
    {"TellOfNoGridWithNoGrid",
     kGridShown,    {"--no-grid"},
     R"(height="600" width="800" x="10" y="20")",  "0.375",
     "-127.5", "105",
     "50",  "2"},
    {"TellOfTheGridOfTheCommandLine",
     kGridHidden,   {"--grid", "30,3"},
     R"(height="600" width="800" x="10" y="20")",  "0.375",
     "-127.5", "105",
     "10",  "3"},
 // left 22.5 - 0.75 * 400; the window and the centre are the document's.
    {"TellOfTheZoomOfTheCommandLine",
     kGridShown,    {"--zoom", "1"},
     R"(height="600" width="800" x="10" y="20")",  "0.75",
     "-277.5", "217.5",
     "7.5", "4"},
 // Their middle (0, 0) of the page is (-15, 22.5) in the artwork.
    {"TellOfTheCenterOfTheCommandLine",
     kGridShown,    {"--center", "0,0"},
     R"(height="600" width="800" x="10" y="20")",  "0.375",
     "-165",   "135",
     "7.5", "4"},
    {"TellOfTheWindowOfTheCommandLine",
     kGridShown,    {"--view", "100,50,400,300"},
     R"(height="300" width="400" x="100" y="50")", "0.375",
     "-52.5",  "48.75",
     "7.5", "4"},
    {"TellOfTheWholeViewOfTheCommandLine",
     kSmallArtwork, {"--view", "1,2,400,200", "--zoom", "1", "--center", "100,50", "--grid", "25,1"},
     R"(height="200" width="400" x="1" y="2")",    "0.75",
     "-75",    "37.5",
     "25",  "1"},
};

std::string request_of(const RequestCase& row)
{
    const std::string step = row.step;
    const std::string grid = row.grid_step;
    return std::string(
               R"(<?xml version="1.0" encoding="UTF-8" standalone="no"?><vant><viewport_information )") +
           row.window + R"(/><model_space_information><viewport_space_to_model_space_mapping_matrix m00=")" +
           step + R"(" m01="0" m02="0" m03=")" + row.left + R"(" m10="0" m11="-)" + step +
           R"(" m12="0" m13=")" + row.top + R"(" m20="0" m21="0" m22=")" + step +
           R"(" m23="0" m30="0" m31="0" m32="0" m33="1"/><snapping_information>)"
           R"(<unit_grid_space_to_model_space_mapping_matrix m00=")" +
           grid + R"(" m01="0" m02="0" m03="0" m10="0" m11="-)" + grid +
           R"(" m12="0" m13="0" m20="0" m21="0" m22=")" + grid +
           R"(" m23="0" m30="0" m31="0" m32="0" m33="1"/><derivational_scale_factor>)" + row.grid_factor +
           "</derivational_scale_factor></snapping_information></model_space_information></vant>\n";
}

// A document with the numbers in its attributes to 12 digits. The plug-in finds the view's matrix by solving equations
// in double precision, whose last digits it may lose.
std::string to_12_digits(const std::string& document)
{
    std::string result;
    std::size_t begin = 0;
    for (std::size_t quote = document.find("=\""); quote != document.npos;
         quote = document.find("=\"", begin)) {
        const std::size_t value = quote + 2;
        const std::string text = document.substr(value, document.find('"', value) - value);
        std::size_t taken = 0;
        double number = 0;
        try {
            number = std::stod(text, &taken);
        } catch (const std::invalid_argument&) {
        }
        char digits[40];
        std::snprintf(digits, sizeof digits, "%.12g", number);
        result += document.substr(begin, value - begin) + (taken == text.size() ? digits : text);
        begin = value + text.size();
    }
    return result + document.substr(begin);
}

class Requests : public testing::TestWithParam<RequestCase> {
protected:
    Workplace place;
};

TEST_P(Requests, OfTheView)
{
    peer_test::Program peer(
        {"--answer", place.path("line.xml"), "--save-request", place.path("request.xml"), "--timeout", "80"});
    peer.port();
    place.file("artwork.svg", GetParam().artwork);
    EXPECT_EQ(place.run(Arguments{"run", "DIR/artwork.svg", "-o", "DIR/out.svg"} + GetParam().arguments),
              (ProgramEnd{0, "DIR/out.svg: 1 new path\n", ""}));
    EXPECT_EQ(to_12_digits(place.content("request.xml")), to_12_digits(request_of(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(, Requests, testing::ValuesIn(kRequests),
                         [](const auto& row) { return row.param.name; });

// ------------------------------------------------------------------------------------------------- traces

class Exchange : public testing::Test {
protected:
    // A run with vant-peer, whose trace is trace.jsonl.
    ProgramEnd run(const std::string& answer, const Arguments& arguments)
    {
        peer_test::Program peer({"--answer", answer, "--timeout", "80"});
        peer.port();
        return place.run(Arguments{"run"} + arguments + Arguments{"--trace", "DIR/trace.jsonl"});
    }

    Workplace place;
};

TEST_F(Exchange, TracesEveryCallOfThePlugInInOrder)
{
    ASSERT_EQ(run(place.path("line.xml"), {"DIR/small.svg", "-o", "DIR/out.svg"}).status, 0);
    EXPECT_EQ(place.content("trace.jsonl"), support::content_of(VNT_TEST_DATA "/line_run.jsonl"));
}

TEST_F(Exchange, TracesLinesOfJson)
{
    ASSERT_EQ(run(VNT_ANSWERS "/every_primitive.xml", {"DIR/small.svg", "-o", "DIR/out.svg"}).status, 0);
    EXPECT_EQ(host_app_test::problem_of_lines(place.content("trace.jsonl")), "");
    EXPECT_EQ(host_app_test::paths_of(place.content("trace.jsonl")).size(), 27U); // strokes of the answer
}

// The trace of a run that ends in the middle has all up to there.
TEST_F(Exchange, TracesUpToTheEndOfARunThatFails)
{
    peer_test::Program peer({"--fault", "close-before-answer", "--timeout", "80"});
    peer.port();
    ASSERT_EQ(place.run_small({"--trace", "DIR/trace.jsonl"}).status, 4);
    const std::string whole = support::content_of(VNT_TEST_DATA "/line_run.jsonl");
    // The last call before the request is sent.
    const std::string last = "{\"call\":\"IsSnappedTo\",\"result\":false}\n";
    EXPECT_EQ(place.content("trace.jsonl"), whole.substr(0, whole.find(last) + last.size()));
}

// ---------------------------------------------------------------------------------- a recorded answer as well

// The tolerance of a run is the size of a pixel in points: 1 at a zoom of 75 %.
TEST_F(Exchange, DrawsAsARecordedAnswerIsDrawn)
{
    place.file("artwork.svg", kGridShown);
    ASSERT_EQ(
        run(VNT_ANSWERS "/every_primitive.xml", {"DIR/artwork.svg", "-o", "DIR/run.svg", "--zoom", "0.75"}),
        (ProgramEnd{0, "DIR/run.svg: 27 new paths\n", ""}));
    ASSERT_EQ(place.run({"draw", VNT_ANSWERS "/every_primitive.xml", "-o", "DIR/draw.svg", "--into",
                         "DIR/artwork.svg", "--trace", "DIR/draw.jsonl"}),
              (ProgramEnd{0, "DIR/draw.svg: 27 new paths\n", ""}));
    EXPECT_EQ(place.content("draw.svg"), place.content("run.svg"));
    EXPECT_EQ(host_app_test::path_lines_of(place.content("draw.jsonl")),
              host_app_test::path_lines_of(place.content("trace.jsonl")));
}

TEST_F(Exchange, CutsArcsToItsPixelsAsARecordedAnswerToItsTolerance)
{
    place.file("artwork.svg", kGridShown);
    ASSERT_EQ(
        run(VNT_ANSWERS "/every_primitive.xml", {"DIR/artwork.svg", "-o", "DIR/run.svg", "--zoom", "0.1875"})
            .status,
        0);
    const Arguments draw = {
        "draw", VNT_ANSWERS "/every_primitive.xml", "-o", "DIR/draw.svg", "--into", "DIR/artwork.svg"};
    ASSERT_EQ(place.run(draw + Arguments{"--tolerance", "4"}).status, 0);
    EXPECT_EQ(place.content("draw.svg"), place.content("run.svg"));
    ASSERT_EQ(place.run(draw).status, 0);
    EXPECT_NE(place.content("draw.svg"), place.content("run.svg"));
}

// ---------------------------------------------------------------------------------------- the sketch by itself

TEST_F(Exchange, WritesTheSketchAloneWithoutADocument)
{
    EXPECT_EQ(run(place.path("line.xml"), {"DIR/small.svg", "--art", "DIR/art.svg"}),
              (ProgramEnd{0, "DIR/art.svg: 1 new path\n", ""}));
    EXPECT_EQ(place.names(), (std::set<std::string>{"art.svg", "line.xml", "small.svg", "trace.jsonl"}));
    EXPECT_EQ(place.content("small.svg"), kSmallArtwork);
    EXPECT_EQ(place.run({"place", "DIR/small.svg", "-o", "DIR/out.svg", "--art", "DIR/art.svg"}).status, 0);
    EXPECT_EQ(place.content("out.svg"), host_app_test::kDrawnArtwork);
}

TEST_F(Exchange, WritesNoSketchWhenNothingWasDrawn)
{
    EXPECT_EQ(run(place.file("nothing.xml", "<vant></vant>\n"), {"DIR/small.svg", "--art", "DIR/art.svg"}),
              (ProgramEnd{0, "nothing was drawn; DIR/art.svg was not made\n", ""}));
    EXPECT_FALSE(place.has("art.svg"));
}

// The document has what was drawn, whatever becomes of the sketch by itself.
TEST_F(Exchange, LooksForObstaclesToBothFilesBeforeSomebodyDraws)
{
    EXPECT_EQ(
        place.run_small({"--art", "DIR/nowhere/art.svg"}),
        (ProgramEnd{1, "",
                    "vant-host: cannot write DIR/nowhere/art.svg: No such file or directory; DIR/out.svg was "
                    "not made; choose another file with --art\n"}));
    EXPECT_EQ(place.run({"run", "DIR/small.svg", "--art", "DIR/nowhere/art.svg"}),
              (ProgramEnd{1, "",
                          "vant-host: cannot write DIR/nowhere/art.svg: No such file or directory; "
                          "DIR/nowhere/art.svg was not made; choose another file with --art\n"}));
}

TEST_F(Exchange, TakesNoFileOfItsOwnForTheTrace)
{
    const ProgramEnd end = place.run_small({"--art", "DIR/art.svg", "--trace", "DIR/art.svg"});
    EXPECT_EQ(end.status, 2);
    EXPECT_FALSE(place.has("art.svg"));
}

} // namespace
