#include "sketch/app/sketch_files.h"

#include "tests/support/full_disk.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <QFile>

#include <sys/stat.h>

#include <memory>
#include <string>

namespace {

using namespace vnt::sketch;
using support::FullDisk;

QString own(const std::string& path) { return QString::fromStdString(path); }

std::vector<StrokePtr> aLineAndACircle()
{
    Stroke line;
    line.id = 1;
    line.kind = Kind::line;
    line.shape = Straight{
        {{100, 100}, {300, 200}},
        false
    };
    Stroke circle;
    circle.id = 2;
    circle.kind = Kind::circle;
    circle.shape = Round{
        {{400, 300}, 80, 80, 0},
        0, 2 * kPi
    };
    return {std::make_shared<const Stroke>(line), std::make_shared<const Stroke>(circle)};
}

std::vector<Stroke> strokesIn(const std::string& file)
{
    auto read = readSketch(own(file), Sheet());
    if (const auto* problem = std::get_if<FileProblem>(&read))
        ADD_FAILURE() << problem->sentence.toStdString();
    return std::holds_alternative<FileProblem>(read) ? std::vector<Stroke>()
                                                     : std::get<std::vector<Stroke>>(std::move(read));
}

TEST(SketchFiles, ComeBackToTheSamePlaceOnTheSheet)
{
    const support::TemporaryFolder folder;
    const std::string file = folder.path("sketch.xml");
    ASSERT_EQ(writeSketch(own(file), aLineAndACircle(), Sheet()).sentence, "");
    const std::vector<Stroke> strokes = strokesIn(file);
    ASSERT_EQ(strokes.size(), 2U);
    const auto& line = std::get<Straight>(strokes[0].shape);
    constexpr double kBound = 1e-9; // sheet pixels: there and back again in double precision
    EXPECT_NEAR(line.corners.at(1).x, 300, kBound);
    EXPECT_NEAR(line.corners.at(1).y, 200, kBound);
    EXPECT_EQ(folder.names(), std::set<std::string>{"sketch.xml"}) << "nothing stays beside it";
}

TEST(SketchFiles, AreAnswersOfOneLine)
{
    const support::TemporaryFolder folder;
    const std::string file = folder.path("sketch.xml");
    ASSERT_EQ(writeSketch(own(file), {aLineAndACircle()[0]}, Sheet()).sentence, "");
    const std::string content = support::content_of(file);
    EXPECT_EQ(content.find('\n'), content.size() - 1);
    EXPECT_NE(content.find("<line><start "), std::string::npos) << content;
}

TEST(SketchFiles, MayBeLaidOutForReading)
{
    const support::TemporaryFolder folder;
    const std::string file = folder.file("laid-out.xml", "<vant>\n  <shape>\n    <line>\n"
                                                         "      <start x=\"0\" y=\"0\" z=\"0\"/>\n"
                                                         "      <end x=\"75\" y=\"0\" z=\"0\"/>\n"
                                                         "    </line>\n  </shape>\n</vant>\n");
    EXPECT_EQ(strokesIn(file).size(), 1U);
}

TEST(SketchFiles, MayBeEmpty)
{
    const support::TemporaryFolder folder;
    const std::string file = folder.path("empty.xml");
    ASSERT_EQ(writeSketch(own(file), {}, Sheet()).sentence, "");
    EXPECT_TRUE(strokesIn(file).empty());
    EXPECT_TRUE(
        strokesIn(folder.file("own.xml", "<?xml version=\"1.0\"?>\n<!-- none -->\n<vant/>\n")).empty());
}

TEST(SketchFiles, MayHaveAnyRootAroundTheirShapes)
{
    const support::TemporaryFolder folder;
    const std::string content = "<figure><shape><line><start x=\"0\" y=\"0\"/><end x=\"9\" y=\"0\"/></line>"
                                "</shape></figure>";
    EXPECT_EQ(strokesIn(folder.file("any.xml", content)).size(), 1U);
}

TEST(SketchFiles, OfTheExamplesAreRead)
{
    EXPECT_EQ(strokesIn(VNT_ANSWERS "/every_primitive.xml").size(), 27U);
}

struct BadCase {
    const char* name;
    const char* content; // null: there is no such file
    const char* says;
};
const BadCase kBad[] = {
    {"AMissingFile",    nullptr,                                                                          "No such file"            },
    {"AnUnclosedShape", "<vant><shape>\n",                                                                "The sketch is as it was."},
    {"NoMarkupAtAll",   "\x89PNG\r\n\x1a\n",                                                              "The sketch is as it was."},
    {"APicture",
     "<?xml version=\"1.0\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\"><path d=\"M0 0L9 9\"/></svg>\n", "it holds no sketch"      },
    {"AnEmptyPicture",  "<svg></svg>",                                                                    "it holds no sketch"      },
    {"ARequest",
     "<?xml version=\"1.0\"?><vant><viewport_information height=\"768\" width=\"1024\" x=\"0\" "
     "y=\"22\"/></vant>",                                                                                 "it holds no sketch"      },
};
class BadSketchFiles : public testing::TestWithParam<BadCase> {};
TEST_P(BadSketchFiles, AreToldWithTheirNames)
{
    const support::TemporaryFolder folder;
    const std::string file = folder.path("bad.xml");
    if (GetParam().content != nullptr)
        folder.file("bad.xml", GetParam().content);
    const auto read = readSketch(own(file), Sheet());
    ASSERT_TRUE(std::holds_alternative<FileProblem>(read));
    const std::string sentence = std::get<FileProblem>(read).sentence.toStdString();
    EXPECT_NE(sentence.find("Cannot open " + file + ": "), std::string::npos) << sentence;
    EXPECT_NE(sentence.find(GetParam().says), std::string::npos) << sentence;
}
INSTANTIATE_TEST_SUITE_P(, BadSketchFiles, testing::ValuesIn(kBad),
                         [](const auto& row) { return row.param.name; });

TEST(SketchFiles, AreAsTheyWereWhenTheDiskIsFull)
{
    const support::TemporaryFolder folder;
    const std::string file = folder.file("sketch.xml", "before");
    QString sentence;
    {
        const FullDisk full(100);
        sentence = writeSketch(own(file), aLineAndACircle(), Sheet()).sentence;
    }
    EXPECT_TRUE(sentence.startsWith("Cannot write " + own(file) + ": ")) << sentence.toStdString();
    EXPECT_EQ(support::content_of(file), "before");
    EXPECT_EQ(folder.names(), std::set<std::string>{"sketch.xml"});
}

// Opening a pipe would wait for somebody who writes to it.
TEST(SketchFiles, AreNotReadFromAPipeOrAFolder)
{
    const support::TemporaryFolder folder;
    const std::string pipe = folder.path("pipe.xml");
    ASSERT_EQ(mkfifo(pipe.c_str(), S_IRUSR | S_IWUSR), 0);
    for (const std::string& file : {pipe, folder.path("")}) {
        const auto read = readSketch(own(file), Sheet());
        ASSERT_TRUE(std::holds_alternative<FileProblem>(read)) << file;
        EXPECT_EQ(std::get<FileProblem>(read).sentence.toStdString(),
                  "Cannot open " + file + ": it is no ordinary file. The sketch is as it was.");
    }
}

TEST(SketchFiles, AreNotWrittenWhereTheyCouldNotBeReadAgain)
{
    Path corners;
    for (int i = 0; i < 600'000; ++i)
        corners.push_back({static_cast<double>(i % 1000), static_cast<double>(i % 7)});
    Stroke large;
    large.id = 1;
    large.kind = Kind::polyline;
    large.shape = Straight{corners, false};
    const support::TemporaryFolder folder;
    const std::string file = folder.file("sketch.xml", "before");
    const QString sentence =
        writeSketch(own(file), {std::make_shared<const Stroke>(large)}, Sheet()).sentence;
    EXPECT_TRUE(
        sentence.startsWith("Cannot write " + own(file) + ": the sketch is too large to be opened again."))
        << sentence.toStdString();
    EXPECT_EQ(support::content_of(file), "before");
}

} // namespace
