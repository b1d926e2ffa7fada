#include "sketch/app/running_instance.h"
#include "tests/sketch_app/event_loop.h"
#include "tests/support/descriptors.h"
#include "tests/support/temporary_folder.h"

#include <QElapsedTimer>
#include <QLocalSocket>
#include <QProcess>

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <memory>
#include <vector>

namespace {

using namespace sketch_app_test;

// A user's folder for meeting places, of the test's own.
class RunningInstanceTest : public testing::Test {
protected:
    RunningInstanceTest()
    {
        needApplication();
        std::filesystem::permissions(folder.path(""), std::filesystem::perms::owner_all);
        qputenv("XDG_RUNTIME_DIR", QByteArray::fromStdString(folder.path("")));
        qputenv("DISPLAY", ":7");
        qunsetenv("WAYLAND_DISPLAY");
        qunsetenv("XDG_ACTIVATION_TOKEN");
    }

    std::unique_ptr<QProcess> start(const QStringList& arguments = {})
    {
        auto program = std::make_unique<QProcess>();
        program->start(VNT_STARTING_PROGRAM, arguments);
        return program;
    }

    static QByteArray line(QProcess& program)
    {
        runUntil([&] { return program.canReadLine() || program.state() == QProcess::NotRunning; });
        return program.readLine().trimmed();
    }

    support::TemporaryFolder folder;
};

TEST_F(RunningInstanceTest, IsTheFirstAndHearsOfTheSecond)
{
    RunningInstance instance(QStringLiteral("vant-test"));
    std::vector<QStringList> heard;
    QObject::connect(&instance, &RunningInstance::startedAgain, &instance,
                     [&](const QStringList& arguments) { heard.push_back(arguments); });
    ASSERT_FALSE(instance.handedOver({}));
    const QStringList arguments{"", "--open", "a b.svg", QString::fromUtf8("Zeichnung \xc3\xa4\xe2\x82\xac"),
                                "\n"};
    const auto second = start(arguments);
    EXPECT_TRUE(runUntil([&] { return !heard.empty(); }));
    EXPECT_EQ(line(*second), "handed over");
    second->waitForFinished();
    EXPECT_EQ(heard, std::vector<QStringList>{arguments});
}

TEST_F(RunningInstanceTest, HearsOfManyArguments)
{
    RunningInstance instance(QStringLiteral("vant-test"));
    std::vector<QStringList> heard;
    QObject::connect(&instance, &RunningInstance::startedAgain, &instance,
                     [&](const QStringList& arguments) { heard.push_back(arguments); });
    ASSERT_FALSE(instance.handedOver({}));
    const QStringList arguments(3000, QString(100, QLatin1Char('x'))); // 600 kB
    const auto second = start(arguments);
    EXPECT_TRUE(runUntil([&] { return !heard.empty(); }));
    EXPECT_EQ(heard, std::vector<QStringList>{arguments});
    EXPECT_EQ(line(*second), "handed over");
    second->waitForFinished();
}

TEST_F(RunningInstanceTest, GetsTheDesktopsLeaveToComeUp)
{
    RunningInstance instance(QStringLiteral("vant-test"));
    QByteArray token;
    QObject::connect(&instance, &RunningInstance::startedAgain, &instance,
                     [&] { token = qgetenv("XDG_ACTIVATION_TOKEN"); });
    ASSERT_FALSE(instance.handedOver({}));
    QProcess second;
    QProcessEnvironment given = QProcessEnvironment::systemEnvironment();
    given.insert("XDG_ACTIVATION_TOKEN", "token-of-the-second");
    second.setProcessEnvironment(given);
    second.start(VNT_STARTING_PROGRAM, {});
    EXPECT_TRUE(runUntil([&] { return !token.isEmpty(); }));
    EXPECT_EQ(token, "token-of-the-second");
    second.waitForFinished();
}

TEST_F(RunningInstanceTest, IsExactlyOneOfManyThatStartTogether)
{
    constexpr int kStarts = 12;
    std::vector<std::unique_ptr<QProcess>> programs;
    for (int i = 0; i < kStarts; ++i)
        programs.push_back(start({QString::number(i)}));
    QProcess* running = nullptr;
    QByteArrayList handedOver;
    for (int i = 0; i < kStarts; ++i) {
        const QByteArray said = line(*programs[static_cast<std::size_t>(i)]);
        if (said == "handed over") {
            handedOver.push_back(QByteArray::number(i));
        } else {
            EXPECT_EQ(said, "running");
            EXPECT_EQ(running, nullptr);
            running = programs[static_cast<std::size_t>(i)].get();
        }
    }
    ASSERT_NE(running, nullptr);
    QByteArrayList heard;
    for (int i = 1; i < kStarts; ++i)
        heard.push_back(line(*running));
    std::sort(heard.begin(), heard.end());
    std::sort(handedOver.begin(), handedOver.end());
    EXPECT_EQ(heard, handedOver);
    EXPECT_EQ(handedOver.size(), kStarts - 1);
    running->kill();
    for (const auto& program : programs)
        program->waitForFinished();
}

TEST_F(RunningInstanceTest, TakesOverTheMeetingPlaceOfOneThatWasKilled)
{
    RunningInstance instance(QStringLiteral("vant-test"));
    const auto first = start();
    ASSERT_EQ(line(*first), "running");
    first->kill();
    first->waitForFinished();
    ASSERT_TRUE(std::filesystem::exists(instance.meetingPlace().toStdString()));
    QElapsedTimer time;
    time.start();
    EXPECT_FALSE(instance.handedOver({}));
    EXPECT_LT(time.elapsed(), 1000);
    bool isHeard = false;
    QObject::connect(&instance, &RunningInstance::startedAgain, &instance, [&] { isHeard = true; });
    const auto second = start();
    EXPECT_TRUE(runUntil([&] { return isHeard; }));
    second->waitForFinished();
}

TEST_F(RunningInstanceTest, MakesRoomWhenItEnds)
{
    auto first = std::make_unique<RunningInstance>(QStringLiteral("vant-test"));
    ASSERT_FALSE(first->handedOver({}));
    first.reset();
    RunningInstance second(QStringLiteral("vant-test"));
    EXPECT_FALSE(second.handedOver({}));
    const auto third = start({"hello"});
    bool isHeard = false;
    QObject::connect(&second, &RunningInstance::startedAgain, &second, [&] { isHeard = true; });
    EXPECT_TRUE(runUntil([&] { return isHeard; }));
    third->waitForFinished();
}

TEST_F(RunningInstanceTest, IsOneForEachDisplayAndName)
{
    RunningInstance one(QStringLiteral("vant-test"));
    RunningInstance other(QStringLiteral("vant-other"));
    qputenv("DISPLAY", ":8");
    RunningInstance display(QStringLiteral("vant-test"));
    qputenv("WAYLAND_DISPLAY", "wayland-0");
    RunningInstance wayland(QStringLiteral("vant-test"));
    for (RunningInstance* instance : {&one, &other, &display, &wayland})
        EXPECT_FALSE(instance->handedOver({}));
}

TEST_F(RunningInstanceTest, IsOpenToItsUserAlone)
{
    RunningInstance instance(QStringLiteral("vant-test"));
    ASSERT_FALSE(instance.handedOver({}));
    struct stat place {};
    ASSERT_EQ(stat(instance.meetingPlace().toLocal8Bit().constData(), &place), 0);
    EXPECT_EQ(place.st_mode & 0777U, 0700U);
    EXPECT_EQ(place.st_uid, getuid());
}

TEST_F(RunningInstanceTest, ThatHangsIsWaitedForAWhile)
{
    const auto first = start();
    ASSERT_EQ(line(*first), "running");
    ::kill(static_cast<pid_t>(first->processId()), SIGSTOP);
    RunningInstance second(QStringLiteral("vant-test"));
    second.setHandOverTime(300);
    QElapsedTimer time;
    time.start();
    EXPECT_FALSE(second.handedOver({}));
    EXPECT_GE(time.elapsed(), 300);
    EXPECT_LT(time.elapsed(), 5000);
    first->kill();
    first->waitForFinished();
}

TEST_F(RunningInstanceTest, IsOnItsOwnWhereTheUserHasNoFolder)
{
    const QByteArray noFolder = QByteArray::fromStdString(folder.file("no-folder", ""));
    for (const char* name : {"XDG_RUNTIME_DIR", "TMPDIR"})
        qputenv(name, noFolder);
    RunningInstance one(QStringLiteral("vant-test"));
    RunningInstance other(QStringLiteral("vant-test"));
    EXPECT_EQ(one.meetingPlace(), "");
    EXPECT_FALSE(one.handedOver({}));
    EXPECT_FALSE(other.handedOver({}));
    qunsetenv("TMPDIR");
}

TEST_F(RunningInstanceTest, DropsWhatIsNoStart)
{
    RunningInstance instance(QStringLiteral("vant-test"));
    int starts = 0;
    QObject::connect(&instance, &RunningInstance::startedAgain, &instance, [&] { ++starts; });
    ASSERT_FALSE(instance.handedOver({}));
    const QByteArray kMessages[] = {
        "GET / HTTP/1.1\r\n\r\n", QByteArray("\x76\x6e\x74\x01\xff\xff\xff\xf0", 8), // endless arguments
    };
    for (const QByteArray& message : kMessages) {
        QLocalSocket other;
        other.connectToServer(instance.meetingPlace());
        ASSERT_TRUE(other.waitForConnected());
        other.write(message);
        EXPECT_TRUE(runUntil([&] { return other.state() == QLocalSocket::UnconnectedState; }));
        EXPECT_EQ(other.readAll(), "");
    }
    EXPECT_EQ(starts, 0);
}

} // namespace
