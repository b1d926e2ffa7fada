#include "host/editor/kept_art.h"
#include "tests/editor/kept_samples.h"
#include "tests/host/svg_samples.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <regex>

namespace {

using namespace vnt::host;
using editor_test::numbers_of;
using editor_test::problem_of;
using editor_test::sample_art;
using editor_test::value_of;
using host_test::corner;
using namespace std::string_literals;

KeptArt there_and_back(const KeptArt& art)
{
    return value_of(read_kept_art("kept.svg", value_of(svg_of(art))));
}

std::vector<double> numbers_of_map(const Affine& map) { return {map.a, map.b, map.c, map.d, map.e, map.f}; }

// A path's numbers as they are drawn.
std::vector<std::uint32_t> bits_of(const PathArt& path)
{
    std::vector<std::uint32_t> bits;
    const auto add = [&](const ArtPoint& point) {
        // The two zeros are drawn alike.
        bits.push_back(std::bit_cast<std::uint32_t>(point.h == 0 ? 0 : point.h));
        bits.push_back(std::bit_cast<std::uint32_t>(point.v == 0 ? 0 : point.v));
    };
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (i > 0)
            add(path[i].in);
        add(path[i].p);
        if (i + 1 < path.size())
            add(path[i].out);
    }
    return bits;
}

TEST(KeptArt, IsReadBackAsItWas)
{
    const KeptArt art = sample_art("20261103T130509123Z-4711-001");
    const KeptArt read = there_and_back(art);
    EXPECT_EQ(read.id, art.id);
    EXPECT_EQ(read.made, art.made);
    EXPECT_EQ(read.document, art.document);
    EXPECT_EQ(read.layer_id, art.layer_id);
    EXPECT_EQ(numbers_of_map(read.artwork_to_user), numbers_of_map(art.artwork_to_user));
    EXPECT_EQ(numbers_of(read.paths), numbers_of(art.paths));
}

TEST(KeptArt, OfADocumentWithoutAnythingIsReadBack)
{
    KeptArt art = sample_art("1");
    art.document = {};
    art.layer_id.clear();
    const KeptArt read = there_and_back(art);
    EXPECT_EQ(read.document, DocumentMark());
    EXPECT_EQ(read.layer_id, "");
}

TEST(KeptArt, OfADocumentWithAnyNamesIsReadBack)
{
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    KeptArt art = sample_art("1", "/tmp/" + bytes);
    art.document.root_id = bytes;
    art.document.editor = "\"'<&>";
    art.layer_id = bytes;
    const KeptArt read = there_and_back(art);
    EXPECT_EQ(read.document, art.document);
    EXPECT_EQ(read.layer_id, art.layer_id);
}

struct NumberCase {
    const char* name;
    float number;
};
using Limits = std::numeric_limits<float>;
const NumberCase kNumbers[] = {
    {"Zero",          0                    },
    {"MinusZero",     -0.0F                },
    {"Third",         1.0F / 3             },
    {"Large",         Limits::max()        },
    {"LargeNegative", Limits::lowest()     },
    {"Small",         Limits::min()        },
    {"Smallest",      Limits::denorm_min() },
    {"BelowOne",      1 - Limits::epsilon()},
    {"AboveMillions", 16777217.0F          },
};
class KeptNumber : public testing::TestWithParam<NumberCase> {};
TEST_P(KeptNumber, IsReadBackToTheLastBit)
{
    const float number = GetParam().number;
    KeptArt art = sample_art("1");
    art.paths = {
        {corner(number, 1), corner(2, number)},
        {{{3, 4}, {3, 4}, {number, -number}},      {{number, number}, {-number, number}, {number, number}}       }
    };
    const KeptArt read = there_and_back(art);
    ASSERT_EQ(read.paths.size(), art.paths.size());
    for (std::size_t i = 0; i < art.paths.size(); ++i)
        EXPECT_EQ(bits_of(read.paths[i]), bits_of(art.paths[i]));
}
INSTANTIATE_TEST_SUITE_P(, KeptNumber, testing::ValuesIn(kNumbers),
                         [](const auto& row) { return row.param.name; });

TEST(KeptNumberOfAnyBits, IsReadBackToTheLastBit)
{
    std::mt19937 random(20261103);
    const auto any = [&] {
        float number = Limits::infinity();
        while (!std::isfinite(number))
            number = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        return number;
    };
    const auto any_point = [&] { return ArtPoint{any(), any()}; };
    KeptArt art = sample_art("1");
    art.paths.clear();
    for (int i = 0; i < 1000; ++i)
        art.paths.push_back({
            {any_point(), any_point(), any_point()},
            {any_point(), any_point(), any_point()},
            {any_point(), any_point(), any_point()}
        });
    const KeptArt read = there_and_back(art);
    ASSERT_EQ(read.paths.size(), art.paths.size());
    for (std::size_t i = 0; i < art.paths.size(); ++i)
        ASSERT_EQ(bits_of(read.paths[i]), bits_of(art.paths[i])) << i;
}

// Placed from the file it is, to the last byte, what it would have been at once.
TEST(KeptArt, IsDrawnAsItWouldHaveBeen)
{
    const auto document = host_test::document_of(host_test::svg(
        "width='210mm' height='297mm' viewBox='3 5 210 297'",
        "<sodipodi:namedview><inkscape:grid type='xygrid' originx='7' originy='0.1' spacingx='0.3' "
        "spacingy='0.7'/></sodipodi:namedview>"
        "<g id='layer1' inkscape:groupmode='layer' transform='rotate(10) scale(0.7)'/>"));
    KeptArt art = sample_art("1");
    art.artwork_to_user = document.artwork_to_user();
    std::mt19937 random(7);
    std::uniform_real_distribution<float> place(-1000, 1000);
    for (int i = 0; i < 100; ++i)
        art.paths.push_back({corner(place(random), place(random)), corner(place(random), place(random))});
    const KeptArt read = there_and_back(art);
    const Placement placement{read.layer_id, read.artwork_to_user};
    EXPECT_EQ(value_of(document.with_paths(read.paths, placement)).text,
              value_of(document.with_paths(art.paths, {art.layer_id, art.artwork_to_user})).text);
}

TEST(KeptArt, LeavesOutWhatIsNeverDrawn)
{
    KeptArt art = sample_art("1");
    const PathArt path = art.paths.front();
    art.paths = {{}, path, {corner(Limits::quiet_NaN(), 0)}, {corner(5, 6)}, {corner(0, Limits::infinity())}};
    EXPECT_EQ(numbers_of(there_and_back(art).paths), numbers_of({path, {corner(5, 6)}}));
}

struct NothingCase {
    const char* name;
    std::vector<PathArt> paths;
};
const NothingCase kNothing[] = {
    {"NoPath",             {}                                },
    {"PathsOfNoSegments",  {{}, {}}                          },
    {"NumbersThatAreNone", {{corner(Limits::quiet_NaN(), 0)}}},
};
class KeptNothing : public testing::TestWithParam<NothingCase> {};
TEST_P(KeptNothing, IsRefused)
{
    KeptArt art = sample_art("1");
    art.paths = GetParam().paths;
    EXPECT_EQ(problem_of(svg_of(art)), "cannot keep the art: there is nothing in it that can be drawn");
}
INSTANTIATE_TEST_SUITE_P(, KeptNothing, testing::ValuesIn(kNothing),
                         [](const auto& row) { return row.param.name; });

TEST(KeptArt, OfAPageWithoutASizeIsRefused)
{
    KeptArt art = sample_art("1");
    art.artwork_to_user.a = std::numeric_limits<double>::infinity();
    EXPECT_EQ(problem_of(svg_of(art)), "cannot keep the art: the document's page has no finite size");
}

TEST(KeptArt, IsADocumentOfItsOwn)
{
    const std::string text = value_of(svg_of(sample_art("1")));
    const auto document = host_test::document_of(text);
    EXPECT_TRUE(document.notes().empty());
    // A user unit is a point, upside down; the page is the art's box with 10 points around it.
    EXPECT_NE(text.find(" d=\"M 0,0 L 10.5,0\""), text.npos);
    EXPECT_NE(text.find(" d=\"M 1,-2 C 3,-4 5,-6 7,-8\""), text.npos);
    EXPECT_NE(text.find("<svg width=\"30.5pt\" height=\"28pt\" viewBox=\"-10 -18 30.5 28\""), text.npos);
}

// Judged by a renderer that knows nothing of us: the black pixels are those of a line from 0,0 to 72,0 points.
TEST(KeptArt, IsShownByAViewer)
{
    const std::string viewer = VNT_RSVG_CONVERT;
    if (viewer.empty())
        GTEST_SKIP() << "rsvg-convert is not installed (Debian: librsvg2-bin)";
    const support::TemporaryFolder folder;
    KeptArt art = sample_art("1");
    art.paths = {
        {corner(0, 0), corner(72, 0)}
    };
    const std::string file = folder.file("kept.svg", value_of(svg_of(art)));
    const std::string png = folder.path("kept.png");
    ASSERT_EQ(std::system((viewer + " -o " + png + " " + file).c_str()), 0);
    // The image's size stands in its header: 92 x 20 points at 96 dots per inch, rounded.
    const std::string image = support::content_of(png);
    const auto number_at = [&](std::size_t at) {
        unsigned number = 0;
        for (std::size_t i = at; i < at + 4; ++i)
            number = number * 256 + static_cast<unsigned char>(image.at(i));
        return number;
    };
    EXPECT_NEAR(number_at(16), 92 * 96 / 72.0, 1);
    EXPECT_NEAR(number_at(20), 20 * 96 / 72.0, 1);
}

struct ChangeCase {
    const char* name;
    std::string from;
    std::string to;
    std::string problem;
};
std::string changed_by_another(const std::string& what)
{
    return "cannot place kept.svg: it was changed by another program, " + what +
           "; open it in an editor, and copy from there what is drawn";
}
const std::string kNotKept =
    "cannot place kept.svg: it is not art that was kept; open it in an editor instead";
// clang-format off
const ChangeCase kChanges[] = {
    {"IsNotKeptWithoutOurAttributes", "urn:vant:kept-art", "urn:other", kNotKept},
    {"OfALaterVersion", "vant:version=\"1\"", "vant:version=\"2\"",
     "cannot place kept.svg: it was kept by a later version of this program; use that"},
    {"WithoutAnAttribute", "vant:layer=", "vant:player=", changed_by_another("the attribute layer is missing")},
    {"WithBytesThatWeDoNotWrite", "vant:layer=\"", "vant:layer=\"%",
     changed_by_another("the attribute layer is not as it was written")},
    {"WithAMapOfFiveNumbers", " 0.1 ", " ", changed_by_another("\"\" stands where a number should be")},
    {"WithAMapOfSevenNumbers", " 0.1 ", " 0.1 0 ", changed_by_another("the attribute artwork-to-user is no map")},
    {"WithAMapThatIsNotFinite", " 0.1 ", " inf ", changed_by_another("the attribute artwork-to-user is no map")},
    {"WithATimeThatIsNone", "vant:taken-at=\"", "vant:taken-at=\"x",
     changed_by_another("\"x1700000001000000000\" stands where a number should be")},
    {"WithAnIdThatIsNone", "vant:ids=\"0", "vant:ids=\"g",
     changed_by_another("\"g000000000000001\" stands where a number should be")},
    {"WithIdsOutOfOrder", "vant:ids=\"0", "vant:ids=\"f",
     ""}, // still in order: f000000000000001 is less than fedcba9876543210
    {"WithIdsThatGoDown", "vant:ids=\"00", "vant:ids=\"ff", changed_by_another("its ids are not in order")},
    {"WithARelativePath", "\"M 0,0", "\"m 0,0", changed_by_another("a path does not begin with M")},
    {"WithAnotherCommand", " L ", " H ", changed_by_another("a path has \"H\" in place of L or C")},
    {"WithAClosedPath", " L 10.5,0", " L 10.5,0 z", changed_by_another("a path has \"z\" in place of L or C")},
    {"WithAPointOfOneNumber", " L 10.5,0", " L 10.5", changed_by_another("\"10.5\" stands where a point should be")},
    {"WithAPointTooFew", " 5,-6 7,-8", " 5,-6", changed_by_another("\"\" stands where a point should be")},
    {"WithTwoBlanks", " L 10", " L  10", changed_by_another("\"\" stands where a point should be")},
    {"WithANumberThatIsNone", "10.5,0", "10.5x,0", changed_by_another("\"10.5x\" stands where a number should be")},
    {"WithANumberOutOfRange", "10.5,0", "1e39,0", changed_by_another("the point 1e39,0 is out of range")},
    {"WithANumberThatIsNotFinite", "10.5,0", "nan,0", changed_by_another("the point nan,0 is out of range")},
    {"WithAnEmptyPath", "M 0,0 L 10.5,0", "", changed_by_another("a path does not begin with M")},
    {"WithAPathThatWasMoved", "<path ", "<path transform=\"scale(2)\" ", changed_by_another("it has a transform")},
    {"WithALayerThatWasMoved", "<g ", "<g transform=\"scale(2)\" ", changed_by_another("it has a transform")},
    {"WithAnotherObject", "</g>", "<rect/></g>", changed_by_another("there is something else than paths in it")},
    {"WithAnotherObjectBesideTheLayer", "</g>", "</g><rect/>",
     changed_by_another("it has an element that is no part of it")},
    {"WithAnotherLayer", "</g>", "</g><g/>", changed_by_another("it has an element that is no part of it")},
    {"ThatIsCutShort", "</svg>", "",
     "cannot read kept.svg as SVG: line 27, column 1: the element <svg> is not ended; mend it, or save it again from a "
     "drawing program"},
    {"WithACommentIsAsItWas", "</g>", "<!-- mine --></g>", ""},
    {"WithAnAttributeOfAnotherIsAsItWas", "<g ", "<g class=\"a\" ", ""},
};
// clang-format on
class ChangedArt : public testing::TestWithParam<ChangeCase> {};
TEST_P(ChangedArt, IsReadAsItWasOrRefused)
{
    std::string text = value_of(svg_of(sample_art("1")));
    const std::size_t at = text.find(GetParam().from);
    ASSERT_NE(at, text.npos);
    text.replace(at, GetParam().from.size(), GetParam().to);
    EXPECT_EQ(problem_of(read_kept_art("kept.svg", text)), GetParam().problem);
}
INSTANTIATE_TEST_SUITE_P(, ChangedArt, testing::ValuesIn(kChanges),
                         [](const auto& row) { return row.param.name; });

TEST(ChangedArtOfNoPath, IsRefused)
{
    std::string text = value_of(svg_of(sample_art("1")));
    text = std::regex_replace(text, std::regex("<path[^>]*>"), "");
    EXPECT_EQ(problem_of(read_kept_art("kept.svg", text)), changed_by_another("there is no path in it"));
}

TEST(ArtId, IsMadeOfTheTimeInUtcAndTheProcess)
{
    ASSERT_EQ(setenv("TZ", "HERE-5:30", 1), 0);
    tzset();
    const std::time_t before = std::time(nullptr);
    const std::string id = make_art_id();
    const std::time_t after = std::time(nullptr);
    unsetenv("TZ");
    tzset();
    ASSERT_TRUE(std::regex_match(id, std::regex(R"(\d{8}T\d{9}Z-)" + std::to_string(getpid()) + R"(-\d{3})")))
        << id;
    tm utc{};
    ASSERT_NE(strptime(id.c_str(), "%Y%m%dT%H%M%S", &utc), nullptr);
    EXPECT_GE(timegm(&utc), before);
    EXPECT_LE(timegm(&utc), after);
}

TEST(ArtId, IsAnotherEachTimeAndInOrder)
{
    std::vector<std::string> ids;
    for (int i = 0; i < 50; ++i)
        ids.push_back(make_art_id());
    for (std::size_t i = 1; i < ids.size(); ++i)
        EXPECT_LT(ids[i - 1], ids[i]);
}

} // namespace
