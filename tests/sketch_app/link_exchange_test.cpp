// The real plug-in at the other end, over the real port.
#include "tests/host_app/host_program.h"
#include "tests/sketch_app/heard_link.h"

#include <QProcess>

#include <future>

namespace {

using namespace sketch_app_test;
using host_app_test::kDrawnArtwork;
using host_app_test::kLineAnswer;
using host_app_test::kSmallArtwork;
using host_app_test::ProgramEnd;
using host_app_test::Workplace;

const Said kAsked{"waiting", "requested 1024"}; // the usual window

const ProgramEnd kDrawn{0, "DIR/out.svg: 1 new path\n", ""};
const ProgramEnd kNothingDrawn{0, "DIR/out.svg: nothing was drawn; an unchanged copy of DIR/small.svg\n", ""};

// vant-host run at a place of its own, while the link's event loop turns here.
class HostRun {
public:
    HostRun() : end_(std::async(std::launch::async, [this] { return place.run_small(); })) {}

    ProgramEnd end()
    {
        runUntil([this] { return end_.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
        return end_.get();
    }

    const Workplace place;

private:
    std::future<ProgramEnd> end_;
};

QByteArray withoutLineFeed(const char* line)
{
    QByteArray bytes(line);
    bytes.chop(1);
    return bytes;
}

TEST(LinkExchange, DrawsTheAnswer)
{
    HeardLink link(LinkServer::kPort);
    HostRun run;
    ASSERT_TRUE(link.says(kAsked));
    EXPECT_TRUE(link.server.answer(withoutLineFeed(kLineAnswer)));
    EXPECT_EQ(run.end(), kDrawn);
    EXPECT_EQ(run.place.content("out.svg"), kDrawnArtwork);
    EXPECT_TRUE(link.says({"answered", "sent"}));
}

TEST(LinkExchange, DrawsNothingWhenItIsCancelled)
{
    HeardLink link(LinkServer::kPort);
    HostRun run;
    ASSERT_TRUE(link.says(kAsked));
    EXPECT_TRUE(link.server.cancel());
    EXPECT_EQ(run.end(), kNothingDrawn);
    EXPECT_EQ(run.place.content("out.svg"), kSmallArtwork);
}

TEST(LinkExchange, DrawsNothingWhenTheLinkShutsDown)
{
    HeardLink link(LinkServer::kPort);
    HostRun run;
    ASSERT_TRUE(link.says(kAsked));
    link.server.shutDown();
    EXPECT_EQ(run.end(), kNothingDrawn);
    EXPECT_EQ(run.place.content("out.svg"), kSmallArtwork);
}

TEST(LinkExchange, TakesTurns)
{
    HeardLink link(LinkServer::kPort);
    HostRun one;
    ASSERT_TRUE(link.says(kAsked));
    HostRun other;
    ASSERT_TRUE(link.says({"others 1"}));
    EXPECT_TRUE(link.server.cancel());
    EXPECT_TRUE(link.says({"answered", "others 0", "waiting", "requested 1024"}));
    EXPECT_EQ(one.end(), kNothingDrawn);
    EXPECT_TRUE(link.server.answer(withoutLineFeed(kLineAnswer)));
    EXPECT_EQ(other.end(), kDrawn);
    EXPECT_EQ(one.place.content("out.svg"), kSmallArtwork);
    EXPECT_EQ(other.place.content("out.svg"), kDrawnArtwork);
}

TEST(LinkExchange, MissesAnEditorThatIsKilled)
{
    HeardLink link(LinkServer::kPort);
    const Workplace place;
    QProcess editor;
    editor.start(VNT_HOST_PROGRAM, {"run", QString::fromStdString(place.path("small.svg")), "-o",
                                    QString::fromStdString(place.path("out.svg"))});
    ASSERT_TRUE(link.says(kAsked));
    editor.kill();
    EXPECT_TRUE(link.says({"left", "gone"}));
    editor.waitForFinished();
}

// The plug-in's own alert, instead of a wait without end.
TEST(LinkExchange, EndsWhenTheSketchApplicationIsKilled)
{
    needApplication();
    QProcess program;
    program.start(VNT_LISTENING_PROGRAM, {QString::number(LinkServer::kPort)});
    const auto line = [&] {
        runUntil([&] { return program.canReadLine() || program.state() == QProcess::NotRunning; });
        return program.readLine().trimmed();
    };
    ASSERT_EQ(line(), "4910");
    HostRun run;
    ASSERT_EQ(line(), "requested 1024");
    program.kill();
    EXPECT_EQ(run.end().status, 3);
    EXPECT_FALSE(run.place.has("out.svg"));
    program.waitForFinished();
}

} // namespace
