// The commands in batch runs of the real editor: what the editor saves and renders then.
#include "tests/editor/real/desktop.h"
#include "tests/editor/real/saved_drawing.h"
#include "tests/support/picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

using namespace real_editor_test;

// Every page is as large: 240 x 160 px at 96 dpi, of which 63.5 x 42.333 mm.
constexpr int kWidth = 240;
constexpr int kHeight = 160;
constexpr double kPxPerPt = 4.0 / 3.0;

struct Spot {
    double x, y; // px on the page, y down
};

// The figure: a corner of two lines, which shows when it is turned or mirrored, and a circle.
constexpr Spot kCorner[] = {
    {40,  100},
    {40,  30 },
    {130, 30 }
};
constexpr Spot kCenter{160, 90};
constexpr double kRadius = 24;

// Points of the artwork: its origin is the page's top left corner where there is no grid.
std::string in_points(const Spot& spot)
{
    return "x=\"" + std::to_string(spot.x / kPxPerPt) + "\" y=\"" + std::to_string(-spot.y / kPxPerPt) +
           "\" z=\"0.0\"";
}

std::string line(const Spot& from, const Spot& to)
{
    return "<shape><line><start " + in_points(from) + "/><end " + in_points(to) + "/></line></shape>";
}

std::string answer()
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?><vant>" +
           line(kCorner[0], kCorner[1]) + line(kCorner[1], kCorner[2]) + "<shape><circle><center " +
           in_points(kCenter) + "/><radius>" + std::to_string(kRadius / kPxPerPt) +
           "</radius><angle start=\"0.0\" end=\"6.283185307179586\"/><posture m00=\"1.0\" m01=\"0.0\" "
           "m10=\"0.0\" m11=\"1.0\"/></circle></shape></vant>\n";
}
constexpr std::size_t kStrokes = 3;

// Points of all its lines, less than a pixel apart.
std::vector<Spot> spots_of_the_figure()
{
    std::vector<Spot> spots;
    for (int i = 1; i < 3; ++i) {
        const Spot& from = kCorner[i - 1];
        const Spot& to = kCorner[i];
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        for (double at = 0; at <= length; at += 0.5)
            spots.push_back({from.x + (to.x - from.x) * at / length, from.y + (to.y - from.y) * at / length});
    }
    for (double degrees = 0; degrees < 360; ++degrees) {
        const double angle = degrees * std::numbers::pi / 180;
        spots.push_back({kCenter.x + kRadius * std::cos(angle), kCenter.y + kRadius * std::sin(angle)});
    }
    return spots;
}

struct DocumentCase {
    const char* name;
    std::string size;    // attributes of the outermost element
    std::string content; // what stands in it
    std::string layer;   // the id of what the figure goes into
};

std::string document_of(const DocumentCase& row)
{
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<svg id="root" )" +
           row.size + R"( xmlns="http://www.w3.org/2000/svg"
   xmlns:inkscape="http://www.inkscape.org/namespaces/inkscape"
   xmlns:sodipodi="http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd" xmlns:note="urn:a-note-of-others">
)" + row.content +
           "\n</svg>\n";
}

std::string current(const std::string& id)
{
    return R"(<sodipodi:namedview id="view" inkscape:current-layer=")" + id + R"("/><!-- a comment -->)";
}

std::string layer(const std::string& id, const std::string& attributes, const std::string& content)
{
    return "<g inkscape:groupmode=\"layer\" inkscape:label=\"" + id + "\" id=\"" + id + "\" " + attributes +
           (content.empty() ? "/>" : ">" + content + "</g>");
}

const std::string kPx = R"(width="240" height="160")";
// Beneath the figure, in part.
const std::string kSquare =
    R"(<rect id="square" x="20" y="20" width="60" height="40" fill="#c0d8f0" note:of="us"/>)";
// 20,000 short lines in the page's lowest 30 px.
std::string many_paths()
{
    std::string paths;
    for (int i = 0; i < 20000; ++i) {
        const std::string number = std::to_string(i);
        const std::string start =
            std::to_string(i % 200 * 1.2) + "," + std::to_string(130 + static_cast<double>(i / 200) * 0.3);
        paths += R"(<path id="many)" + number +
                 R"(" style="fill:none;stroke:#c08040;stroke-width:0.2" d="M )" + start + R"( h 0.8"/>)" +
                 "\n";
    }
    return paths;
}

// clang-format off
const DocumentCase kDocuments[] = {
    {"InPixels", kPx, current("layer1") + layer("layer1", "", kSquare), "layer1"},
    {"InMillimetres", R"(width="63.5mm" height="42.333333mm" viewBox="0 0 63.5 42.333333")",
     current("layer1") + layer("layer1", "", R"(<rect id="r" x="5" y="5" width="16" height="10" fill="#c0d8f0"/>)"),
     "layer1"},
    {"InAViewBoxThatIsScaledAndMoved", R"(width="240" height="160" viewBox="100 50 120 80")",
     current("layer1") + layer("layer1", "", R"(<rect id="r" x="110" y="60" width="30" height="20" fill="#c0d8f0"/>)"),
     "layer1"},
    {"InALayerThatIsTurnedAndScaled", kPx,
     current("layer1") + layer("layer1", "transform='translate(30,-20) rotate(30) scale(0.5)'", kSquare), "layer1"},
    {"InALayerOfALayer", kPx,
     current("inner") + layer("outer", "transform='matrix(2,0,0,-2,10,150)'",
     layer("inner", "transform='rotate(-40) translate(7,5)'", kSquare) + R"(<circle id="c" cx="100" cy="9" r="5"/>)"),
     "inner"},
    {"InALayerThatIsAnEmptyTag", kPx, kSquare + current("layer1") + layer("layer1", "", ""), "layer1"},
    {"WithoutALayer", kPx, kSquare, "root"},
    {"AboveTwentyThousandPaths", kPx, current("layer1") + layer("layer1", "", kSquare + many_paths()), "layer1"},
};
// clang-format on

class BatchDrawing : public testing::TestWithParam<DocumentCase> {
protected:
    void SetUp() override
    {
        if (const std::string missing = Desktop::missing(); !missing.empty())
            GTEST_SKIP() << missing;
        desktop = std::make_unique<Desktop>();
    }

    std::unique_ptr<Desktop> desktop;
};

// Only a line's own pixels, those that it touches and what smoothing leaves around them.
constexpr double kNear = 2.5;
constexpr int kLeastInk = 96;

TEST_P(BatchDrawing, HasTheFigureWhereItWasSketchedAndNothingElseThatIsNew)
{
    const auto peer = desktop->start(
        {VNT_PEER_PROGRAM, "--answer", desktop->file("answer.xml", answer()), "--timeout", "600"}, "peer");
    wait_until("vant-peer", [&] { return peer->output().find('\n') != std::string::npos; });
    desktop->file("drawing.svg", document_of(GetParam()));

    const auto save = [&](const std::string& name) {
        return "export-type:svg;export-filename:" + desktop->path(name + ".svg") +
               ";export-do;export-type:png;export-area-page;export-dpi:96;export-filename:" +
               desktop->path(name + ".png") + ";export-do;";
    };
    const Ended batch =
        desktop->run({"inkscape", "--app-id-tag=batch", "--batch-process",
                      "--actions=" + save("before") + "org.vant.start.noprefs;" + save("after"),
                      desktop->path("drawing.svg")},
                     std::chrono::seconds(200));

    EXPECT_EQ(batch.status, 0);
    EXPECT_EQ(peer->end(), 0);
    EXPECT_EQ(change_between(desktop->content("before.svg"), desktop->content("after.svg"), View::compared),
              paths_in(GetParam().layer, kStrokes))
        << desktop->log();
    EXPECT_EQ(desktop->kept(), std::vector<std::string>());
    EXPECT_EQ(desktop->placed().size(), 1U);
    EXPECT_EQ(desktop->log(), "");

    const support::Picture before(desktop->path("before.png"));
    const support::Picture after(desktop->path("after.png"));
    ASSERT_EQ(after.width(), kWidth);
    ASSERT_EQ(after.height(), kHeight);
    std::vector<bool> is_near(static_cast<std::size_t>(kWidth * kHeight), false);
    for (const Spot& spot : spots_of_the_figure()) {
        int most = 0;
        for (int y = static_cast<int>(spot.y - kNear); y <= static_cast<int>(spot.y + kNear); ++y) {
            for (int x = static_cast<int>(spot.x - kNear); x <= static_cast<int>(spot.x + kNear); ++x) {
                if (std::hypot(x + 0.5 - spot.x, y + 0.5 - spot.y) > kNear)
                    continue;
                is_near[static_cast<std::size_t>(y * kWidth + x)] = true;
                if (std::hypot(x + 0.5 - spot.x, y + 0.5 - spot.y) <= 1)
                    most = std::max(most, after.difference(before, x, y));
            }
        }
        ASSERT_GE(most, kLeastInk) << "no ink at " << spot.x << ", " << spot.y;
    }
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            if (is_near[static_cast<std::size_t>(y * kWidth + x)])
                continue;
            ASSERT_LE(after.difference(before, x, y), 2) << "something else at " << x << ", " << y;
        }
    }
}
INSTANTIATE_TEST_SUITE_P(, BatchDrawing, testing::ValuesIn(kDocuments),
                         [](const auto& row) { return row.param.name; });

} // namespace
