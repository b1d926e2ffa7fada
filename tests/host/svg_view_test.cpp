#include "host/kit/svg_view.h"
#include "tests/host/svg_samples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace vnt::host;
using host_test::document_of;
using host_test::with_named_view;

const std::string kWindow = "inkscape:window-width='800' inkscape:window-height='600' inkscape:window-x='10' "
                            "inkscape:window-y='-20' ";

struct WindowCase {
    const char* name;
    std::string attributes;
    std::optional<ViewOptions::Window> option;
    WindowRect window;
};
constexpr double kHuge = 1e300;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
// clang-format off
const WindowCase kWindows[] = {
    {"IsTheDocuments", kWindow, {}, {10, -20, 810, 580}},
    {"IsAUsualOneWithoutARecord", "", {}, {0, 22, 1024, 790}},
    {"IsAUsualOneWithoutItsHeight", "inkscape:window-width='800'", {}, {0, 22, 1024, 790}},
    {"IsAUsualOneWithoutASize", "inkscape:window-width='0' inkscape:window-height='600'", {},
     {0, 22, 1024, 790}},
    {"MayHaveNoPlace", "inkscape:window-width='8' inkscape:window-height='6'", {}, {0, 22, 8, 28}},
    {"IsTheOption", kWindow, ViewOptions::Window{1, 2, 30, 40}, {1, 2, 31, 42}},
    {"IsRoundedToPixels", "", ViewOptions::Window{1.4, -1.6, 30.3, 40.7}, {1, -2, 31, 39}},
    {"HasAPixelAtLeast", "", ViewOptions::Window{5, 5, 0, -3}, {5, 5, 6, 6}},
    {"HasAPixelForWhatIsNoNumber", kWindow, ViewOptions::Window{kNan, kNan, kNan, kNan}, {0, 0, 1, 1}},
    {"FitsInto16Bits", "", ViewOptions::Window{-40000, 40000, kHuge, kHuge}, {-32768, 32766, 32767, 32767}},
};
// clang-format on
class SvgWindow : public testing::TestWithParam<WindowCase> {};
TEST_P(SvgWindow, IsTold)
{
    ViewOptions options;
    options.window = GetParam().option;
    const WindowRect window = document_of(with_named_view(GetParam().attributes)).view(options).window;
    EXPECT_EQ(window.left, GetParam().window.left);
    EXPECT_EQ(window.top, GetParam().window.top);
    EXPECT_EQ(window.right, GetParam().window.right);
    EXPECT_EQ(window.bottom, GetParam().window.bottom);
}
INSTANTIATE_TEST_SUITE_P(, SvgWindow, testing::ValuesIn(kWindows),
                         [](const auto& row) { return row.param.name; });

struct ViewCase {
    const char* name;
    std::string text;
    ViewOptions options;
    double step; // points for a pixel
    double h, v; // of the window's middle, points
};
std::string in_window(const std::string& attributes, const std::string& children = "")
{
    return with_named_view(kWindow + attributes, children);
}
// clang-format off
const ViewCase kViews[] = {
    {"IsTheDocuments", in_window("inkscape:zoom='1.5' inkscape:cx='40' inkscape:cy='60'"), {}, 0.5, 30, -45},
    {"IsNeverTurned",
     in_window("inkscape:zoom='1.5' inkscape:cx='40' inkscape:cy='60' inkscape:rotation='33'"), {}, 0.5, 30,
     -45},
    {"HasTheOptionsZoom", in_window("inkscape:zoom='1.5' inkscape:cx='40' inkscape:cy='60'"), {{}, 3, {}},
     0.25, 30, -45},
    {"HasTheOptionsCenter", in_window("inkscape:zoom='1.5' inkscape:cx='40' inkscape:cy='60'"),
     {{}, {}, Vec{8, 4}}, 0.5, 6, -3},
    {"FitsThePageWithoutARecord", in_window(""), {}, 0.1875, 75, -37.5}, // 200 x 100 px in 800 x 600
    {"FitsThePageInTheOptionsWindow", in_window(""), {ViewOptions::Window{0, 0, 100, 100}, {}, {}}, 1.5, 75,
     -37.5},
    {"NeedsBothPartsOfItsCenter", in_window("inkscape:zoom='1.5' inkscape:cx='40'"), {}, 0.5, 75, -37.5},
    {"TakesNoZoomOfNothing", in_window("inkscape:zoom='0'"), {}, 0.1875, 75, -37.5},
    {"TakesNoNegativeZoom", in_window("inkscape:zoom='-2'"), {}, 0.1875, 75, -37.5},
    {"TakesNoZoomThatIsNoNumber", in_window("inkscape:zoom='2x'"), {}, 0.1875, 75, -37.5},
    {"HasTheEditorsSmallestZoom", in_window("inkscape:zoom='1e-9'"), {}, 75, 75, -37.5},
    {"HasTheEditorsLargestZoom", in_window("inkscape:zoom='1e9'"), {}, 0.75 / 256, 75, -37.5},
    {"IsSeenFromTheGridsOrigin",
     in_window("inkscape:zoom='1.5' inkscape:cx='40' inkscape:cy='60'",
               "<inkscape:grid type='xygrid' originx='16' originy='20'/>"),
     {}, 0.5, 18, -30},
    {"CountsPixelsOfThePageNotUserUnits",
     host_test::svg("width='400' height='300' viewBox='100 50 200 150'",
                    "<sodipodi:namedview " + kWindow + "inkscape:zoom='1' inkscape:cx='200' inkscape:cy='150'/>"),
     {}, 0.75, 150, -112.5},
    {"TurnsToThePageWhenItsCenterIsTooFar",
     in_window("inkscape:zoom='1.5' inkscape:cx='1e9' inkscape:cy='60'"), {}, 0.1875, 75, -37.5},
    {"TurnsToThePageWhenItsCenterOverflows",
     in_window("inkscape:zoom='1.5' inkscape:cx='1e300' inkscape:cy='0'"), {}, 0.1875, 75, -37.5},
    {"TurnsToTheOriginWhenThatIsTooFarFromThePage",
     in_window("inkscape:zoom='1.5'", "<inkscape:grid type='xygrid' originx='1e12'/>"), {}, 0.75, 0, 0},
    {"FitsThePageForACenterThatIsNoNumber",
     in_window("inkscape:zoom='1.5' inkscape:cx='40' inkscape:cy='60'"),
     {{}, {}, Vec{kNan, 4}}, 0.1875, 75, -37.5},
    {"FitsThePageForACenterThatIsNoNumberDownwards",
     in_window(""), {{}, {}, Vec{4, kNan}}, 0.1875, 75, -37.5},
    {"FitsThePageForACenterAtInfinity", in_window(""), {{}, {}, Vec{-HUGE_VAL, 0}}, 0.1875, 75, -37.5},
    {"TakesNoZoomOfTheOptionsThatIsNoNumber",
     in_window("inkscape:zoom='1.5'"), {{}, kNan, {}}, 0.1875, 75, -37.5},
    {"MayBeFarWhenItIsCoarse", in_window("inkscape:zoom='0.01' inkscape:cx='1e9' inkscape:cy='0'"), {}, 75,
     7.5e8, 0},
};
// clang-format on
class SvgView : public testing::TestWithParam<ViewCase> {};
TEST_P(SvgView, MapsTheWindowToTheArtwork)
{
    const DocumentView view = document_of(GetParam().text).view(GetParam().options);
    const Affine& map = view.view_to_artwork;
    EXPECT_DOUBLE_EQ(map.a, GetParam().step);
    EXPECT_DOUBLE_EQ(map.d, -GetParam().step);
    EXPECT_EQ(map.b, 0);
    EXPECT_EQ(map.c, 0);
    EXPECT_DOUBLE_EQ(view.zoom, 0.75 / GetParam().step);
    const Vec middle =
        map({(view.window.right - view.window.left) / 2.0, (view.window.bottom - view.window.top) / 2.0});
    EXPECT_NEAR(middle.x, GetParam().h,
                1e-9); // the middle is a difference of numbers up to 1e3, or 1e9 exactly
    EXPECT_NEAR(middle.y, GetParam().v, 1e-9);
}
INSTANTIATE_TEST_SUITE_P(, SvgView, testing::ValuesIn(kViews),
                         [](const auto& row) { return row.param.name; });

// An effect takes the difference of two points of the view in single precision for its tolerance.
TEST(SvgViews, AreToldApartInSinglePrecision)
{
    for (const ViewCase& row : kViews) {
        const Affine map = document_of(row.text).view(row.options).view_to_artwork;
        const auto h = [&](double x) { return static_cast<float>(map({x, 0}).x); };
        const auto v = [&](double y) { return static_cast<float>(map({0, y}).y); };
        EXPECT_GT(h(100) - h(0), 0) << row.name;
        EXPECT_LT(v(100) - v(0), 0) << row.name;
        EXPECT_NEAR((h(100) - h(0)) / 100, row.step, row.step * 0.08) << row.name; // 2 times 4 pixels of 100
    }
}

TEST(SvgViews, SayThatTheyWereGivenUp)
{
    EXPECT_EQ(document_of(in_window("inkscape:cx='0' inkscape:cy='0'")).view().notes,
              std::vector<std::string>{});
    EXPECT_EQ(
        document_of(in_window("inkscape:cx='1e12' inkscape:cy='0'")).view().notes,
        std::vector<std::string>{"the view lies too far from the artwork's origin, or too near to the page; "
                                 "the whole page is taken for it"});
    EXPECT_EQ(
        document_of(in_window("inkscape:zoom='1.5'", "<inkscape:grid type='xygrid' originx='1e12'/>"))
            .view()
            .notes,
        std::vector<std::string>{"the view lies too far from the artwork's origin, or too near to the page; "
                                 "what lies around that origin, in full size, is taken for it"});
}

TEST(SvgSheetRotation, IsToldBesideAViewThatIsNot)
{
    const DocumentView view = document_of(with_named_view(kWindow + "inkscape:rotation='-33.5'")).view();
    EXPECT_EQ(view.sheet_rotation, -33.5);
    EXPECT_EQ(view.view_to_artwork.b, 0);
    EXPECT_EQ(view.view_to_artwork.c, 0);
    EXPECT_EQ(document_of(with_named_view(kWindow)).view().sheet_rotation, 0);
}

} // namespace
