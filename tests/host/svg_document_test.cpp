#include "host/kit/svg_document.h"
#include "host/kit/svg_new_document.h"
#include "tests/host/svg_samples.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <regex>
#include <string>

namespace {

using namespace vnt::host;
using host_test::corner;
using host_test::document_of;
using host_test::drawn;
using host_test::problem_of;
using host_test::svg;

std::string content_of(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string corpus(const std::string& name) { return content_of(VNT_SVG_CORPUS "/" + name + ".svg"); }

// In px from the artwork's origin: a line from (40, 30) to (80, 30), and a curve by (100, 30) and (100, 60) to
// (80, 60).
const PathArt kSample = {
    corner(30, -22.5F), {{60, -22.5F}, {60, -22.5F}, {75, -22.5F}},
      {{60, -45},    {75, -45},    {60, -45}   }
};
const std::array<Vec, 5> kSamplePx = {
    {{40, 30}, {80, 30}, {100, 30}, {100, 60}, {80, 60}}
};

struct CorpusCase {
    const char* name;     // of the file
    const char* element;  // that the new ones are
    const char* behind;   // what stands right behind what was added
    Affine page_to_layer; // by hand from the document's width, viewBox and transforms
    double stroke_width;
    Vec origin;          // of the artwork, px on the page
    bool is_seen = true; // the sample, by a renderer
};
constexpr double kMm = 25.4 / 96;
constexpr double kPt = 4.0 / 3;
const double kCos30 = std::sqrt(3.0) / 2;
const double kRoot2 = std::sqrt(2.0);
const Affine kPx;
// clang-format off
const CorpusCase kCorpus[] = {
    {"plain_px", "path", "\n  </g>\n</svg>", kPx, kPt, {}},
    {"millimetres", "path", "\n  </g>", Affine::scaling(kMm, kMm), kPt * kMm, {}},
    {"inches_and_picas", "path", "\n  </g>", Affine::scaling(1 / 48.0, 1 / 48.0), kPt / 48, {}},
    {"points_and_centimetres", "path", "\n  </g>", {0.5, 0, 0, 0.5, -10, -20}, kPt / 2, {}},
    {"scaled_view_box", "path", "\n  </g>", {1, 0, 0, 1, 180, 60}, kPt, {}},
    // The turn back by 30 degrees about (50, 50).
    {"rotated_layer", "path", "\n  </g>", {kCos30, -0.5, 0.5, kCos30, 25 - 50 * kCos30, 75 - 50 * kCos30},
     kPt, {}},
    {"quarter_turned_layer", "path", "\n  </g>", {0, -1, 1, 0, 0, 100}, kPt, {}},
    // page = (2 (x + y) + 10, 105 - y)
    {"skewed_sub_layer", "path", "\n    </g>\n    <path id=\"p2\"", {0.5, 0, 1, -1, -110, 105}, kPt / kRoot2,
     {}},
    {"hidden_and_locked_layer", "path", "\n    </g>\n  </g>", kPx, kPt, {}, false},
    {"topmost_of_two_layers", "path", "\n  </g>\n  <g id=\"no_layer\"/>", kPx, kPt, {}},
    {"root_as_layer", "path", "\n</svg>\n", kPx, kPt, {}},
    {"root_is_an_empty_tag", "path", "\n</svg>\n<!-- nothing -->\n", kPx, kPt, {}},
    {"no_layers", "path", "\n</svg>\n", kPx, kPt, {}},
    {"prefixed_names", "svg:path", "\n  </svg:g>\n  <svg:g id=\"other\">", kPx, kPt, {}},
    {"empty_tag_layer_one_attribute_a_line", "path", "\n\t</g>\n</svg>", kPx, kPt, {}},
    {"carriage_returns", "path", "\r\n  </g>\r\n</svg>", kPx, kPt, {}},
    {"old_line_ends", "path", "\r  </g>\r</svg>", kPx, kPt, {}},
    {"byte_order_mark", "path", "\n  </g>", kPx, kPt, {}},
    {"entities", "path", "\n  </g>\n  <g id=\"last\"", kPx, kPt, {}},
    {"cdata_and_comments", "path", "\n  </g>\n  <script", kPx, kPt, {}},
    {"foreign_namespaces", "path", "\n  </g>\n  <x:g id=\"wrong\"", kPx, kPt, {}},
    {"minified", "path", "</g><g id=\"c\"/>", kPx, kPt, {}},
    {"preserved_blanks", "path", "</g>", kPx, kPt, {}},
    {"odd_markup", "path", "</g\n  ><path id=\"after\"", kPx, kPt, {}},
    {"no_size", "path", "\n  </g>", kPx, kPt, {}},
    {"per_cent_size", "path", "\n  </g>", kPx, kPt, {}},
    {"letterbox", "path", "\n  </g>", {1, 0, 0, 1, -150, 0}, kPt, {}},
    {"stretched", "path", "\n  </g>", {0.5, 0, 0, 1, 0, 0}, kPt / kRoot2, {}},
    // A square of 50 in 100 x 50 at (20, 10), against its right side, and twice as large in the layer.
    {"nested_svg", "path", "\n    </g>\n  </svg>", {0.5, 0, 0, 0.5, -35, -5}, kPt / 2, {}},
    {"grid_with_an_origin", "path", "\n  </g>", {kMm, 0, 0, kMm, 50, 25}, kPt * kMm, {10 / kMm, 20 / kMm}},
    {"latin_1", "path", "\n  </g>", kPx, kPt, {}},
    {"names_beyond_ascii", "path", "\n  </g>", kPx, kPt, {}},
    {"ids_that_are_taken", "path", "\n  </g>", kPx, kPt, {}},
    {"text_at_the_end_of_the_layer", "path", "</g>", kPx, kPt, {}},
    {"current_layer_that_is_not_drawn", "path", "</g>", kPx, kPt, {}},
    {"current_layer_that_is_a_path", "path", "</g>", kPx, kPt, {}},
    {"transform_that_means_nothing", "path", "\n  </g>", kPx, kPt, {}},
    {"layer_that_hides_lines", "path", "\n  </g>\n</svg>", kPx, kPt, {}},
    // user = page + (5, 10), in mm; layer = 2 (user - (2, 3))
    {"saved_by_inkscape", "path", "\n    </g>\n    <text\n", {2 * kMm, 0, 0, 2 * kMm, 6, 14}, kPt * 2 * kMm,
     {10 / kMm, 20 / kMm}},
};
// clang-format on
class SvgCorpus : public testing::TestWithParam<CorpusCase> {
protected:
    const std::string before = corpus(GetParam().name);
    const SvgDocument document = document_of(before);
};

// The part of text that before does not have, when all the rest is before, in order; the / of an empty tag is
// all that may be missing.
std::string added_to(const std::string& before, const std::string& text)
{
    const auto front = std::mismatch(before.begin(), before.end(), text.begin(), text.end());
    const auto back = std::mismatch(before.rbegin(), before.rend(), text.rbegin(), text.rend());
    const auto same_in_front = front.first - before.begin();
    const auto same_behind = back.first - before.rbegin();
    const auto size = static_cast<std::ptrdiff_t>(before.size());
    const bool was_empty_tag =
        same_in_front + 1 < size && before.compare(static_cast<std::size_t>(same_in_front), 2, "/>") == 0;
    if (same_in_front + same_behind < size - (was_empty_tag ? 1 : 0))
        return "(the old text is not there)";
    const auto rest = was_empty_tag ? size - same_in_front - 1 : size - same_in_front;
    return text.substr(static_cast<std::size_t>(same_in_front),
                       text.size() - static_cast<std::size_t>(same_in_front + rest));
}

// Takes the elements with these ids out of text.
std::string without(std::string text, const std::string& element, const std::vector<std::string>& ids)
{
    for (const std::string& id : ids) {
        const std::size_t begin = text.find("<" + element + " id=\"" + id + "\"");
        const std::size_t end = begin == text.npos ? text.npos : text.find("/>", begin);
        if (end == text.npos)
            return "(" + id + " is not there)";
        text.erase(begin, end + 2 - begin);
    }
    return text;
}

TEST_P(SvgCorpus, HasEveryOldByteAndNewPaths)
{
    const DrawnText result = drawn(document, {kSample, kSample});
    const std::string added = added_to(before, without(result.text, GetParam().element, result.ids));
    // What is left are blanks, and the tags of a layer that had one.
    EXPECT_TRUE(std::regex_match(added, std::regex("(>[ \t\r\n]*</[a-z:]+)?[ \t\r\n]*"))) << added;
}

TEST_P(SvgCorpus, HasThePathsOnTopOfTheLayer)
{
    const DrawnText result = drawn(document, {kSample, kSample});
    const std::size_t last = result.text.find("id=\"" + result.ids.at(1) + "\"");
    ASSERT_NE(last, result.text.npos);
    const std::size_t end = result.text.find("/>", last) + 2;
    EXPECT_EQ(result.text.substr(end, std::string(GetParam().behind).size()), GetParam().behind);
    EXPECT_LT(result.text.find("id=\"" + result.ids.at(0) + "\""), last);
}

// The text of an attribute of the element with this id.
std::string attribute_of(const std::string& text, const std::string& id, const std::string& name)
{
    const std::size_t element = text.find("id=\"" + id + "\"");
    const std::size_t begin = text.find(" " + name + "=\"", element) + name.size() + 3;
    return text.substr(begin, text.find('"', begin) - begin);
}

TEST_P(SvgCorpus, HasThePathWhereItBelongs)
{
    const DrawnText result = drawn(document, {kSample});
    const std::string data = attribute_of(result.text, result.ids.at(0), "d");
    std::array<double, 10> n{};
    ASSERT_EQ(std::sscanf(data.c_str(), "M %lf,%lf L %lf,%lf C %lf,%lf %lf,%lf %lf,%lf", &n[0], &n[1], &n[2],
                          &n[3], &n[4], &n[5], &n[6], &n[7], &n[8], &n[9]),
              10)
        << data;
    constexpr double kSinglePrecision = 1e-5; // of numbers below 256, as they are told and written
    for (std::size_t i = 0; i < kSamplePx.size(); ++i) {
        const Vec there = GetParam().page_to_layer(
            {GetParam().origin.x + kSamplePx[i].x, GetParam().origin.y + kSamplePx[i].y});
        EXPECT_NEAR(n[2 * i], there.x, kSinglePrecision) << data;
        EXPECT_NEAR(n[2 * i + 1], there.y, kSinglePrecision) << data;
    }
    const std::string style = attribute_of(result.text, result.ids.at(0), "style");
    const std::string start = "fill:none;stroke:#000000;stroke-width:";
    ASSERT_EQ(style.substr(0, start.size()), start);
    EXPECT_NEAR(std::strtod(style.c_str() + start.size(), nullptr), GetParam().stroke_width, 1e-7);
}

TEST_P(SvgCorpus, ComesBackAsItWasWithoutPaths)
{
    EXPECT_EQ(drawn(document, {}).text, before);
    EXPECT_EQ(drawn(document, {PathArt()}).text, before);
    EXPECT_EQ(document.bytes(), before);
}

TEST_P(SvgCorpus, CanBeDrawnIntoAgain)
{
    const std::string once = drawn(document, {kSample}).text;
    const DrawnText twice = drawn(document_of(once), {kSample});
    const std::string added = added_to(once, without(twice.text, GetParam().element, twice.ids));
    EXPECT_EQ(added.find_first_not_of(" \t\r\n"), added.npos) << added;
}

// The picture that the renderer makes of text; empty when it fails.
std::string picture_of(const std::string& text)
{
    const std::string path =
        (std::filesystem::temp_directory_path() / ("vant-svg-" + std::to_string(getpid()))).string();
    std::ofstream(path + ".svg", std::ios::binary) << text;
    const int status = std::system((VNT_RSVG_CONVERT " -o '" + path + ".png' '" + path + ".svg'").c_str());
    const std::string picture = status == 0 ? content_of(path + ".png") : "";
    std::filesystem::remove(path + ".svg");
    std::filesystem::remove(path + ".png");
    return picture;
}

TEST_P(SvgCorpus, ShowsThePathInARenderer)
{
    if (std::string(VNT_RSVG_CONVERT).empty())
        GTEST_SKIP() << "rsvg-convert is missing (Debian: librsvg2-bin)";
    const std::string without = picture_of(before);
    const std::string with = picture_of(drawn(document, {kSample}).text);
    EXPECT_NE(without, "");
    EXPECT_NE(with, "");
    EXPECT_EQ(with != without, GetParam().is_seen);
}
INSTANTIATE_TEST_SUITE_P(, SvgCorpus, testing::ValuesIn(kCorpus),
                         [](const auto& row) { return row.param.name; });

TEST(SvgCorpusFolder, HoldsNothingThatIsNotTested)
{
    std::size_t files = 0;
    for (const auto& file : std::filesystem::directory_iterator(VNT_SVG_CORPUS)) {
        if (file.path().extension() != ".svg")
            continue;
        ++files;
        EXPECT_TRUE(std::any_of(std::begin(kCorpus), std::end(kCorpus), [&](const CorpusCase& row) {
            return file.path().filename() == std::string(row.name) + ".svg";
        })) << file.path();
    }
    EXPECT_EQ(files, std::size(kCorpus));
}

// As it was saved, with nothing changed by hand.
TEST(SvgSavedByTheEditor, TellsItsViewGridAndLayer)
{
    const SvgDocument document = document_of(corpus("saved_by_inkscape"));
    EXPECT_EQ(document.notes(), std::vector<std::string>{});
    EXPECT_TRUE(document.grid().is_shown);
    EXPECT_EQ(document.grid().subdivisions, 4);
    EXPECT_FLOAT_EQ(document.grid().spacing, 20 * 72 / 25.4F); // 4 steps of 5 mm
    const DocumentView view = document.view();
    EXPECT_EQ(view.zoom, 1.5);
    const Vec middle = view.view_to_artwork(
        {(view.window.right - view.window.left) / 2.0, (view.window.bottom - view.window.top) / 2.0});
    EXPECT_NEAR(middle.x, 0.75 * (150 - 10 / kMm), 1e-9);  // the origin is a crossing of the grid, 10 mm and
    EXPECT_NEAR(middle.y, -0.75 * (110 - 20 / kMm), 1e-9); // 20 mm from the page's corner
}

struct UnreadableCase {
    const char* name;
    std::string text;
    const char* why;
};
// clang-format off
const UnreadableCase kUnreadable[] = {
    {"AnEmptyFile", "", "it is empty"},
    {"APicture", std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16),
     "line 1, column 1: the bytes are no UTF-8; mend it, or save it again from a drawing program"},
    {"ACompressedFile", "\x1F\x8B\x08",
     "it is compressed; unpack it first (gunzip < drawing.svgz > drawing.svg)"},
    {"Utf16", std::string("\xFF\xFE<\0s\0", 6), "it is not in UTF-8; save it in that encoding"},
    {"Utf16WithoutAMark", std::string("\0<\0s", 4), "it is not in UTF-8; save it in that encoding"},
    {"AnotherEncoding", "<?xml version='1.0' encoding='EUC-JP'?><svg/>",
     "its encoding is not UTF-8; save it in that encoding"},
    {"WhatIsNotWellFormed", "<svg xmlns='http://www.w3.org/2000/svg'>\n  <g>\n</svg>",
     "line 3, column 1: the end tag </svg> stands where </g> is due; mend it, or save it again from a "
     "drawing program"},
    {"WhatIsCutShort", "<svg xmlns='http://www.w3.org/2000/svg'><g>",
     "line 1, column 44: the element <g> is not ended; mend it, or save it again from a drawing program"},
    {"AWebPage", "<html xmlns='http://www.w3.org/1999/xhtml'/>",
     "its outermost element is <html>, which is not SVG's; choose an SVG file"},
    {"AnSvgOfAnotherNamespace", "<svg xmlns='http://example.com'/>",
     "its outermost element is <svg>, which is not SVG's; choose an SVG file"},
    {"APrefixThatIsBoundToNothing", "<svg:svg/>",
     "its outermost element is <svg:svg>, which is not SVG's; choose an SVG file"},
};
// clang-format on
class SvgUnreadable : public testing::TestWithParam<UnreadableCase> {};
TEST_P(SvgUnreadable, IsRefusedWithItsReason)
{
    EXPECT_EQ(problem_of(GetParam().text), std::string("cannot read drawing.svg as SVG: ") + GetParam().why);
}
INSTANTIATE_TEST_SUITE_P(, SvgUnreadable, testing::ValuesIn(kUnreadable),
                         [](const auto& row) { return row.param.name; });

TEST(SvgDocumentRead, TakesAnSvgElementWithoutANamespace)
{
    EXPECT_EQ(drawn(document_of("<svg><g id='a'/></svg>"), {{corner(0, 0)}}).text,
              "<svg><g id='a'/><path id=\"vant-path1\" "
              "style=\"fill:none;stroke:#000000;stroke-width:1.3333333\" d=\"M 0,0\"/></svg>");
}

TEST(SvgDocumentPaths, AreLeftOutWithANoteWhenTheyAreEmptyOrNotFinite)
{
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    const DrawnText result = drawn(document_of(svg("", "")),
                                   {
                                       {  },
                                       {             corner(1, 2)},
                                       {            corner(3, 4), corner(kNan, 0)},
                                       { corner(5,   6)}
    });
    EXPECT_EQ(result.ids, (std::vector<std::string>{"", "vant-path1", "", "vant-path2"}));
    EXPECT_EQ(result.notes, (std::vector<std::string>{
                                "path 0 has no segments and is left out",
                                "path 2 has a coordinate that is not a finite number and is left out"}));
    EXPECT_EQ(result.text.find("nan"), std::string::npos);
}

TEST(SvgDocumentPaths, AreLeftOutWhenTheLayerIsTooFine)
{
    const std::string text = svg("", "<g inkscape:groupmode='layer' transform='scale(1e-290 1e290)'></g>");
    const DrawnText result = drawn(document_of(text), {{corner(1e30F, 2)}});
    EXPECT_EQ(result.ids, std::vector<std::string>{""});
    EXPECT_EQ(result.notes,
              std::vector<std::string>{"path 0 does not fit into the layer's coordinates and is left out"});
    EXPECT_EQ(result.text, text);
}

TEST(SvgDocumentPaths, HaveIdsThatNothingInTheDocumentHasOrRefersTo)
{
    EXPECT_EQ(drawn(document_of(corpus("ids_that_are_taken")), {kSample, kSample}).ids,
              (std::vector<std::string>{"vant-path13", "vant-path14"}));
}

TEST(SvgDocumentPaths, HaveIdsOfTheirOwnAlsoNearTheLastOnesThatAreCounted)
{
    const DrawnText first =
        drawn(document_of(svg("", "<g id='vant-path999999999999998'/>")), {kSample, kSample});
    EXPECT_EQ(first.ids, (std::vector<std::string>{"vant-path999999999999999", "vant-path1000000000000000"}));
    EXPECT_EQ(drawn(document_of(first.text), {kSample}).ids,
              std::vector<std::string>{"vant-path1000000000000001"});
}

TEST(SvgDocumentPaths, AreNotCountedOnFromNumbersTooLargeToCountOn)
{
    for (const char* const id : {"vant-path999999999999999", "vant-path18446744073709551615",
                                 "vant-path18446744073709551616", "vant-path99999999999999999999999"})
        EXPECT_EQ(drawn(document_of(svg("", std::string("<g id='") + id + "'/>")), {kSample}).ids,
                  std::vector<std::string>{"vant-path1"})
            << id;
}

TEST(SvgDocumentNotes, SayWhatWasNotedOfTheLayer)
{
    EXPECT_EQ(document_of(corpus("plain_px")).notes(), std::vector<std::string>{});
    EXPECT_EQ(document_of(corpus("hidden_and_locked_layer")).notes().size(), 2U);
    EXPECT_EQ(document_of(svg("", "<g id='l' inkscape:groupmode='layer' display='none'/>")).notes(),
              std::vector<std::string>{
                  "the layer \"l\" is hidden; the new paths are in it all the same, and show when it does"});
}

TEST(SvgDocumentPaths, LieInTheirOrderUpwards)
{
    const std::string text = drawn(document_of(svg("", "\n  ")), {{corner(1, 0)}, {corner(2, 0)}}).text;
    const std::string start = " style=\"fill:none;stroke:#000000;stroke-width:1.3333333\" d=\"M ";
    EXPECT_NE(text.find("\n    <path id=\"vant-path1\"" + start +
                        "1.3333333,0\"/>\n    <path id=\"vant-path2\"" + start + "2.6666667,0\"/>\n  </svg>"),
              text.npos)
        << text;
}

TEST(SvgDocumentPaths, CanBeManyInADocumentOfMany)
{
    std::string body;
    for (int i = 0; i < 20'000; ++i)
        body += "<path id='p" + std::to_string(i) + "' d='M 0,0 L 1,1'/>\n";
    const DrawnText result = drawn(document_of(svg("", body)), std::vector<PathArt>(20'000, kSample));
    EXPECT_EQ(result.ids.back(), "vant-path20000");
}

TEST(NewSvgDocument, HasTheArtworksOriginWhereTheBoxHasIt)
{
    const SvgDocument document = document_of(make_svg_document({-10, 20, 110.5, 80}, 5));
    const Affine& map = document.artwork_to_layer();
    EXPECT_NEAR(map.a, 1, 1e-15); // pt there and back
    EXPECT_NEAR(map.d, -1, 1e-15);
    EXPECT_NEAR(map.e, 0, 1e-12);
    EXPECT_NEAR(map.f, 0, 1e-12);
    EXPECT_FALSE(document.grid().is_shown);
    const DocumentView view = document.view();
    const Vec middle = view.view_to_artwork(
        {(view.window.right - view.window.left) / 2.0, (view.window.bottom - view.window.top) / 2.0});
    EXPECT_NEAR(middle.x, 50.25, 1e-9); // the page's
    EXPECT_NEAR(middle.y, 50, 1e-9);
}

TEST(NewSvgDocument, HoldsThePathsAsTheyAre)
{
    const std::string text = drawn(document_of(make_svg_document({0, -45, 75, 0}, 10)), {kSample}).text;
    EXPECT_NE(text.find("width=\"95pt\" height=\"65pt\" viewBox=\"-10 -10 95 65\""), text.npos) << text;
    EXPECT_NE(text.find("stroke-width:1\" d=\"M 30,22.5 L 60,22.5 C 75,22.5 75,45 60,45\""), text.npos)
        << text;
}

TEST(NewSvgDocument, HasAPageAlsoForASinglePoint)
{
    EXPECT_NE(make_svg_document({3, 4, 3, 4}, 0).find("width=\"1pt\" height=\"1pt\" viewBox=\"3 -4 1 1\""),
              std::string::npos);
}

TEST(NewSvgDocument, IsSvgForTheLargestBox)
{
    constexpr double kMost = std::numeric_limits<float>::max();
    const SvgDocument document = document_of(make_svg_document({-kMost, -kMost, kMost, kMost}, 10));
    EXPECT_EQ(drawn(document, {{corner(static_cast<float>(kMost), 0)}}).notes, std::vector<std::string>{});
}

} // namespace
