#include "sketch/core/request.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace vnt::sketch;

// A window at (0, 22), one pixel a point, y of the artwork up from its lower edge; a grid of 200 points in 4.
const std::string kLine =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="no"?><vant>)"
    R"(<viewport_information height="768" width="1024" x="0" y="22"/><model_space_information>)"
    R"(<viewport_space_to_model_space_mapping_matrix m00="1" m01="0" m02="0" m03="0" m10="0" m11="-1" )"
    R"(m12="0" m13="768" m20="0" m21="0" m22="1" m23="0" m30="0" m31="0" m32="0" m33="1"/>)"
    R"(<snapping_information>)"
    R"(<unit_grid_space_to_model_space_mapping_matrix m00="50" m01="0" m02="0" m03="0" m10="0" m11="-50" )"
    R"(m12="0" m13="0" m20="0" m21="0" m22="50" m23="0" m30="0" m31="0" m32="0" m33="1"/>)"
    R"(<derivational_scale_factor>4</derivational_scale_factor></snapping_information>)"
    R"(</model_space_information></vant>)";
const std::string kWindow = R"(height="768" width="1024" x="0" y="22")";
const std::string kView = R"(m00="1" m01="0" m02="0" m03="0" m10="0" m11="-1" m12="0" m13="768")";
const std::string kGrid = R"(m00="50" m01="0" m02="0" m03="0" m10="0" m11="-50" m12="0" m13="0")";

// The line with the first place where it says what saying something else.
std::string line_with(const std::string& what, const std::string& by)
{
    std::string line = kLine;
    line.replace(line.find(what), what.size(), by);
    return line;
}

Request request_of(const std::string& line)
{
    const Result<Request> result = read_request(line);
    if (const auto* problem = std::get_if<Problem>(&result))
        throw std::runtime_error(problem->sentence);
    return std::get<Request>(result);
}

TEST(ReadRequest, TakesTheLineAsItIsSent)
{
    const Request request = request_of(kLine);
    EXPECT_EQ(request.window.x, 0);
    EXPECT_EQ(request.window.y, 22);
    EXPECT_EQ(request.window.width, 1024);
    EXPECT_EQ(request.window.height, 768);
    EXPECT_EQ(request.sheet.width, 1024);
    EXPECT_EQ(request.sheet.height, 768);
    EXPECT_EQ(request.sheet.sheet_to_model, (Affine{1, 0, 0, -1, 0, 768}));
    EXPECT_EQ(request.sheet.tolerance, 1);
    ASSERT_TRUE(request.sheet.grid);
    EXPECT_EQ(request.sheet.grid->grid_to_sheet, (Affine{50, 0, 0, 50, 0, 768}));
    EXPECT_EQ(request.sheet.grid->subdivisions, 4);
}

TEST(ReadRequest, TakesAMatrixByRows)
{
    const Sheet sheet =
        request_of(
            line_with(kView, R"(m00="-0.5" m01="2.5e-07" m02="0" m03="30" m10="4" m11="5" m12="0" m13="60")"))
            .sheet;
    EXPECT_EQ(sheet.sheet_to_model, (Affine{-0.5, 4, 2.5e-07, 5, 30, 60}));
    EXPECT_EQ(sheet.tolerance, -0.5);
}

TEST(ReadRequest, PassesOverWhiteSpaceAndWhatItDoesNotKnow)
{
    const std::string line = line_with("<model_space_information>",
                                       "<!-- a view -->\t<colour r=\"1\"/> <model_space_information> ");
    EXPECT_EQ(request_of(line).sheet.sheet_to_model, request_of(kLine).sheet.sheet_to_model);
}

struct WindowCase {
    const char* name;
    const char* sent;
    int x, y, width, height;
};
// clang-format off
const WindowCase kWindows[] = {
    {"IsTakenAsItIs", R"(height="600" width="800" x="10" y="20")", 10, 20, 800, 600},
    {"LeftOfTheScreenWithItsRightEdgeOnIt", R"(height="600" width="-64736" x="65436" y="20")", -100, 20, 800,
     600},
    {"LeftOfTheScreenAltogether", R"(height="600" width="800" x="64536" y="20")", -1000, 20, 800, 600},
    {"AboveTheScreenWithItsLowerEdgeOnIt", R"(height="-64936" width="800" x="10" y="65531")", 10, -5, 800,
     600},
    {"LeftAndAbove", R"(height="-65530" width="-65530" x="65534" y="65533")", -2, -3, 6, 6},
    {"ThatSaysMinusByItself", R"(height="600" width="800" x="-7" y="-9")", -7, -9, 800, 600},
    {"AtTheLastPlaceOfTheScreen", R"(height="1" width="1" x="32767" y="32767")", 32767, 32767, 1, 1},
};
// clang-format on
class RequestWindow : public testing::TestWithParam<WindowCase> {};
TEST_P(RequestWindow, IsPutRight)
{
    const Request request = request_of(line_with(kWindow, GetParam().sent));
    EXPECT_EQ(request.window.x, GetParam().x);
    EXPECT_EQ(request.window.y, GetParam().y);
    EXPECT_EQ(request.window.width, GetParam().width);
    EXPECT_EQ(request.window.height, GetParam().height);
    EXPECT_EQ(request.sheet.width, GetParam().width);
    EXPECT_EQ(request.sheet.height, GetParam().height);
}
INSTANTIATE_TEST_SUITE_P(, RequestWindow, testing::ValuesIn(kWindows),
                         [](const auto& row) { return row.param.name; });

struct GridCase {
    const char* name;
    std::string what, by;
    bool has_grid;
    int subdivisions;
};
const std::string kFactor = "<derivational_scale_factor>4<";
// clang-format off
const GridCase kGrids[] = {
    {"IsThere", kGrid, kGrid, true, 4},
    {"HasAtLeastOneSubdivision", kFactor, "<derivational_scale_factor>0<", true, 1},
    {"HasNoFewerThanOne", kFactor, "<derivational_scale_factor>-3<", true, 1},
    {"IsNotThereWhenItIsNotFinite", "m00=\"50\"", "m00=\"inf\"", false, 0},
    {"IsNotThereWhenItIsNoNumberOfPoints", "m11=\"-50\"", "m11=\"nan\"", false, 0},
    {"IsNotThereWhenItIsFlat", "m11=\"-50\"", "m11=\"0\"", false, 0},
};
// clang-format on
class RequestGrid : public testing::TestWithParam<GridCase> {};
TEST_P(RequestGrid, IsOneThatCanBeDrawn)
{
    const Sheet sheet = request_of(line_with(GetParam().what, GetParam().by)).sheet;
    ASSERT_EQ(sheet.grid.has_value(), GetParam().has_grid);
    EXPECT_EQ(sheet.grid ? sheet.grid->subdivisions : 0, GetParam().subdivisions);
}
INSTANTIATE_TEST_SUITE_P(, RequestGrid, testing::ValuesIn(kGrids),
                         [](const auto& row) { return row.param.name; });

struct FaultCase {
    const char* name;
    std::string line;
    const char* sentence; // behind "cannot read the editor's request: "
};
std::string nested(int depth)
{
    std::string line;
    for (int i = 0; i < depth; ++i)
        line += "<a>";
    return line;
}
// clang-format off
const FaultCase kFaults[] = {
    {"NothingAtAll", "", "its line of 0 bytes is no whole XML document: \"\""},
    {"AnHttpRequest", "GET / HTTP/1.1\r",
     "its line of 15 bytes is no whole XML document: \"GET / HTTP/1.1?\""},
    {"Bytes", std::string("\x01\x00\xFF\xFE<", 5),
     "its line of 5 bytes is no whole XML document: \"???" "?<\""},
    {"ALineCutShort", kLine.substr(0, 90),
     "its line of 90 bytes is no whole XML document: \"<?xml version=\"1.0\" encoding=\"UTF-8\" sta...\""},
    {"ADeepOne", nested(20000),
     "its line of 60000 bytes is no whole XML document: \"<a><a><a><a><a><a><a><a><a><a><a><a><a><...\""},
    {"ALongOne", std::string(65537, ' '), "its line has 65537 bytes, more than any request"},
    {"AnotherDocument", "<svg/>", "its outermost element is <svg>, not <vant>"},
    {"ADocumentOfALongName", "<" + std::string(60000, 'x') + "/>",
     "its outermost element is <xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx...>, not <vant>"},
    {"ADocumentOfANameAsLongAsIsShown", "<" + std::string(40, 'x') + "/>",
     "its outermost element is <xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx>, not <vant>"},
    {"ADocumentOfAStrangeName", "<v\xC2\x85\x9Bnt/>", "its outermost element is <v???nt>, not <vant>"},
    {"AnEmptyDocument", "<vant/>", "<vant> has no <viewport_information> in it"},
    {"NoView", line_with("viewport_space_to_model_space_mapping_matrix", "view"),
     "<model_space_information> has no <viewport_space_to_model_space_mapping_matrix> in it"},
    {"NoGrid", line_with("unit_grid_space_to_model_space_mapping_matrix", "grid"),
     "<snapping_information> has no <unit_grid_space_to_model_space_mapping_matrix> in it"},
    {"NoFactor", line_with("<derivational_scale_factor>4</derivational_scale_factor>", ""),
     "<snapping_information> has no <derivational_scale_factor> in it"},
    {"NoWidth", line_with("width=\"1024\" ", ""), "<viewport_information> has no attribute width"},
    {"NoElementOfAMatrix", line_with("m13=\"768\"", ""),
     "<viewport_space_to_model_space_mapping_matrix> has no attribute m13"},
    {"AWordForANumber", line_with("m13=\"768\"", "m13=\"abc\""),
     "m13 of <viewport_space_to_model_space_mapping_matrix> is not a number: \"abc\""},
    {"ADecimalComma", line_with("m00=\"50\"", "m00=\"1,5\""),
     "m00 of <unit_grid_space_to_model_space_mapping_matrix> is not a number: \"1,5\""},
    {"ABlankBeforeANumber", line_with("x=\"0\"", "x=\" 0\""),
     "x of <viewport_information> is not a number: \" 0\""},
    {"APartOfAPixel", line_with("x=\"0\"", "x=\"0.5\""),
     "x of <viewport_information> is not a number: \"0.5\""},
    {"TooLargeANumber", line_with("m13=\"768\"", "m13=\"1e999\""),
     "m13 of <viewport_space_to_model_space_mapping_matrix> is out of range: \"1e999\""},
    {"TooManyPixels", line_with("width=\"1024\"", "width=\"99999999999\""),
     "width of <viewport_information> is out of range: \"99999999999\""},
    {"AnEmptyFactor", line_with("factor>4<", "factor><"),
     "the content of <derivational_scale_factor> is not a number: \"\""},
    {"AViewThatIsNoNumber", line_with("m00=\"1\"", "m00=\"nan\""),
     "<viewport_space_to_model_space_mapping_matrix> is no view: it is not finite, or has no inverse"},
    {"AViewThatIsInfinite", line_with("m13=\"768\"", "m13=\"-inf\""),
     "<viewport_space_to_model_space_mapping_matrix> is no view: it is not finite, or has no inverse"},
    {"AViewThatFlattens", line_with("m11=\"-1\"", "m11=\"0\""),
     "<viewport_space_to_model_space_mapping_matrix> is no view: it is not finite, or has no inverse"},
    {"AWindowOfNoWidth", line_with("width=\"1024\"", "width=\"0\""),
     "<viewport_information> is a window of no size: 0 by 768 pixels"},
    {"AWindowOfLessThanNoHeight", line_with("height=\"768\"", "height=\"-65536\""),
     "<viewport_information> is a window of no size: 1024 by -65536 pixels"},
};
// clang-format on
class RequestFault : public testing::TestWithParam<FaultCase> {};
TEST_P(RequestFault, IsSaidInASentence)
{
    const Result<Request> result = read_request(GetParam().line);
    ASSERT_TRUE(std::holds_alternative<Problem>(result));
    EXPECT_EQ(std::get<Problem>(result).sentence,
              std::string("cannot read the editor's request: ") + GetParam().sentence);
}
INSTANTIATE_TEST_SUITE_P(, RequestFault, testing::ValuesIn(kFaults),
                         [](const auto& row) { return row.param.name; });

} // namespace
