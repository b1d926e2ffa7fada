// Sketches that are kept, placed on the command line.
#include "tests/editor/kept_samples.h"
#include "tests/host_app/host_program.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace host_app_test;

const std::string kOlder = "20261103T140509000Z-4711-001";
const std::string kNewer = "20261104T140509000Z-4711-001";

class Place : public testing::Test {
protected:
    Place() : before_(std::filesystem::current_path())
    {
        for (const char* const name : {"real.svg", "other.svg"})
            place.file(name, kSmallArtwork);
        std::filesystem::current_path(place.path("."));
    }
    ~Place() override { std::filesystem::current_path(before_); }

    ProgramEnd run(const std::vector<std::string>& arguments) const
    {
        Surroundings surroundings;
        surroundings.environment = {"XDG_DATA_HOME=" + place.path("data"),
                                    "XDG_STATE_HOME=" + place.path("state")};
        return place.run(arguments, surroundings);
    }

    // A sketch for a document of the folder: one line from (0, 0) to (x, 0) in user units.
    void keep(const std::string& id, const std::string& document, float x) const
    {
        vnt::host::KeptArt art = editor_test::sample_art(id, place.path(document));
        art.layer_id.clear();
        art.artwork_to_user = {};
        art.paths = {
            {{{0, 0}, {0, 0}, {0, 0}}, {{x, 0}, {x, 0}, {x, 0}}}
        };
        std::filesystem::create_directories(place.path("data/vant/sketches"));
        place.file("data/vant/sketches/" + id + ".svg", editor_test::value_of(vnt::host::svg_of(art)));
    }
    bool is_there(const std::string& id, const std::string& folder = "") const
    {
        return std::filesystem::exists(place.path("data/vant/sketches/" + folder + id + ".svg"));
    }

    Workplace place;

private:
    std::filesystem::path before_;
};

struct NamingCase {
    const char* name;
    const char* document; // DIR is the folder, which is also the present one
};
const NamingCase kNamings[] = {
    {"ByItsWholeName",       "DIR/real.svg"           },
    {"ByItsNameInTheFolder", "real.svg"               },
    {"ByARoundaboutName",    "./../DIRNAME/./real.svg"},
};
class PlaceNamed : public Place, public testing::WithParamInterface<NamingCase> {};
TEST_P(PlaceNamed, TakesTheSketchOfThatDocument)
{
    keep(kOlder, "real.svg", 11);
    keep(kNewer, "other.svg", 22);
    const std::string own = std::filesystem::path(place.path("x")).parent_path().filename().string();
    EXPECT_EQ(run({"place", replaced(GetParam().document, "DIRNAME", own), "-o", "DIR/out.svg"}).status, 0);
    EXPECT_NE(place.content("out.svg").find("L 11,0"), std::string::npos) << place.content("out.svg");
    EXPECT_FALSE(is_there(kOlder));
    EXPECT_TRUE(is_there(kOlder, "placed/"));
    EXPECT_TRUE(is_there(kNewer));
}
INSTANTIATE_TEST_SUITE_P(, PlaceNamed, testing::ValuesIn(kNamings),
                         [](const auto& row) { return row.param.name; });

TEST_F(Place, TakesTheNewestOfAllForADocumentWithoutAnyOfItsOwn)
{
    keep(kOlder, "elsewhere.svg", 11);
    keep(kNewer, "elsewhere.svg", 22);
    EXPECT_EQ(run({"place", "DIR/real.svg", "-o", "DIR/real.svg"}).status, 0);
    EXPECT_NE(place.content("real.svg").find("L 22,0"), std::string::npos) << place.content("real.svg");
}

TEST_F(Place, LeavesASketchThatIsNamedWhereItIs)
{
    keep(kOlder, "real.svg", 11);
    EXPECT_EQ(run({"place", "DIR/real.svg", "-o", "DIR/out.svg", "--art",
                   "DIR/data/vant/sketches/" + kOlder + ".svg"})
                  .status,
              0);
    EXPECT_TRUE(is_there(kOlder));
}

TEST_F(Place, ListsWhatIsKeptTheOldestFirst)
{
    EXPECT_EQ(run({"place", "--list"}), (ProgramEnd{0, "no sketch is kept\n", ""}));
    keep(kNewer, "other.svg", 22);
    keep(kOlder, "real.svg", 11);
    const auto line = [](const std::string& id, const std::string& document) {
        return "DIR/data/vant/sketches/" + id + ".svg  2026-11-03T14:05:09+01:00  1 paths for DIR/" +
               document + "\n";
    };
    EXPECT_EQ(run({"place", "--list"}),
              (ProgramEnd{0, line(kOlder, "real.svg") + line(kNewer, "other.svg"), ""}));
}

TEST_F(Place, SaysThatNothingIsKept)
{
    EXPECT_EQ(
        run({"place", "DIR/real.svg", "-o", "DIR/out.svg"}),
        (ProgramEnd{1, "",
                    "vant-host: no sketch is kept; DIR/out.svg was not made; name a file with --art\n"}));
}

} // namespace
