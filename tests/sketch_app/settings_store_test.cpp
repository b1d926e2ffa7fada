#include "sketch/app/settings_store.h"

#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

QString own(const std::string& path) { return QString::fromStdString(path); }

TEST(SettingsStores, GiveBackWhatWasSaved)
{
    const support::TemporaryFolder folder;
    Settings settings;
    settings.canvas.convertAlways = true;
    settings.canvas.holdMilliseconds = 800;
    settings.canvas.tolerance = 1.75;
    settings.canvas.leastSizePx = 33;
    settings.canvas.stabiliser = 0.6;
    settings.canvas.inkWidth = 3.5;
    settings.canvas.snapToGrid = settings.canvas.snapToShapes = settings.canvas.snapToAngles = false;
    settings.canvas.fingersDraw = false;
    settings.colours = ColourChoice::highContrastLight;
    settings.motion = MotionChoice::reduced;
    settings.language = "de";
    settings.ownGrid = 25;
    settings.picture = {PictureArea::sketch, 3, true, 1.5};
    SettingsStore(own(folder.path("new/settings.ini"))).save(settings);

    const Settings again = SettingsStore(own(folder.path("new/settings.ini"))).load();
    EXPECT_TRUE(again.canvas.convertAlways);
    EXPECT_EQ(again.canvas.holdMilliseconds, 800);
    EXPECT_EQ(again.canvas.tolerance, 1.75);
    EXPECT_EQ(again.canvas.leastSizePx, 33);
    EXPECT_EQ(again.canvas.stabiliser, 0.6);
    EXPECT_EQ(again.canvas.inkWidth, 3.5);
    EXPECT_FALSE(again.canvas.snapToGrid || again.canvas.snapToShapes || again.canvas.snapToAngles);
    EXPECT_FALSE(again.canvas.fingersDraw);
    EXPECT_EQ(again.colours, ColourChoice::highContrastLight);
    EXPECT_EQ(again.motion, MotionChoice::reduced);
    EXPECT_EQ(again.language, "de");
    EXPECT_EQ(again.ownGrid, 25);
    EXPECT_EQ(again.picture.area, PictureArea::sketch);
    EXPECT_EQ(again.picture.scale, 3);
    EXPECT_TRUE(again.picture.transparent);
    EXPECT_EQ(again.picture.lineWidth, 1.5);
}

struct FileCase {
    const char* name;
    const char* content; // of the file's group [canvas]
    double tolerance;
    int hold;
    bool snaps;
};
const FileCase kFiles[] = {
    {"NothingThereIsTheDefault",     "",                                      1,   500,  true },
    {"TextForANumberIsTheDefault",   "tolerance=wide\nholdMilliseconds=ages", 1,   500,  true },
    {"WhatIsTooLargeIsTheLargest",   "tolerance=99\nholdMilliseconds=100000", 3,   3000, true },
    {"WhatIsTooSmallIsTheSmallest",  "tolerance=-4\nholdMilliseconds=1",      0,   150,  true },
    {"NoNumberAtAllIsTheDefault",    "tolerance=nan\nsnapToGrid=perhaps",     1,   500,  true },
    {"WhatIsInRangeCounts",          "tolerance=0.5\nsnapToGrid=false",       0.5, 500,  false},
    {"BytesThatAreNoTextAreNothing", "tolerance=\x01\xff\xfe",                1,   500,  true },
};
class SettingsFiles : public testing::TestWithParam<FileCase> {};
TEST_P(SettingsFiles, AreReadWithCare)
{
    const support::TemporaryFolder folder;
    const std::string file =
        folder.file("settings.ini", std::string("[canvas]\n") + GetParam().content + "\n");
    const Settings settings = SettingsStore(own(file)).load();
    EXPECT_EQ(settings.canvas.tolerance, GetParam().tolerance);
    EXPECT_EQ(settings.canvas.holdMilliseconds, GetParam().hold);
    EXPECT_EQ(settings.canvas.snapToGrid, GetParam().snaps);
}
INSTANTIATE_TEST_SUITE_P(, SettingsFiles, testing::ValuesIn(kFiles),
                         [](const auto& row) { return row.param.name; });

} // namespace
