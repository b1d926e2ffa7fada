// The program as it is started: by hand, by the plug-in's host, a second time; and how it ends.
#include "tests/sketch_app/shown_window.h"

#include <gtest/gtest.h>

#include <QProcess>

#include <csignal>
#include <memory>
#include <string>

namespace {

using namespace sketch_app_test;

struct Ended {
    int status = -1;
    std::string output, errors;
};

class Programs : public testing::Test {
protected:
    std::unique_ptr<QProcess> start(const QString& program, const QStringList& arguments) const
    {
        auto process = std::make_unique<QProcess>();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* place :
             {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_RUNTIME_DIR", "TMPDIR"})
            environment.insert(place, files.path(""));
        environment.insert("LANGUAGE", "en");
        process->setProcessEnvironment(environment);
        process->start(program, arguments);
        return process;
    }
    std::unique_ptr<QProcess> sketch(const QStringList& arguments) const
    {
        return start(VNT_SKETCH_PROGRAM, arguments);
    }
    static Ended endOf(QProcess& process)
    {
        EXPECT_TRUE(runUntil([&] { return process.state() == QProcess::NotRunning; }));
        const bool isOrderly = process.exitStatus() == QProcess::NormalExit;
        return {isOrderly ? process.exitCode() : -1, process.readAllStandardOutput().toStdString(),
                process.readAllStandardError().toStdString()};
    }

    WindowFiles files;
};

struct UsageCase {
    const char* name;
    QStringList arguments;
    int status;
    const char* output; // begins with
    const char* errors;
};
const UsageCase kUsages[] = {
    {"HelpIsPrinted",          {"--help"},                   0, "usage: vant-sketch ",           ""                     },
    {"VersionIsPrinted",       {"--version"},                0, "vant-sketch " VNT_VERSION "\n", ""                     },
    {"UnknownOptionIsRefused", {"--what"},                   2, "",                              "vant-sketch: unknown "},
    {"NoAngleIsRefused",       {"--sheet-rotation", "much"}, 2, "",                              "vant-sketch: "        },
    {"TwoFilesAreRefused",     {"a.xml", "b.xml"},           2, "",                              "vant-sketch: "        },
};
class ProgramUsages : public Programs, public testing::WithParamInterface<UsageCase> {};
TEST_P(ProgramUsages, EndAtOnce)
{
    const Ended end = endOf(*sketch(GetParam().arguments));
    EXPECT_EQ(end.status, GetParam().status);
    EXPECT_EQ(end.output.substr(0, std::string(GetParam().output).size()), GetParam().output);
    EXPECT_EQ(end.errors.substr(0, std::string(GetParam().errors).size()), GetParam().errors) << end.errors;
    EXPECT_EQ(end.errors.empty(), *GetParam().errors == '\0');
}
INSTANTIATE_TEST_SUITE_P(, ProgramUsages, testing::ValuesIn(kUsages),
                         [](const auto& row) { return row.param.name; });

TEST_F(Programs, SayThatThereIsNoDisplay)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        environment.remove(name);
    process.setProcessEnvironment(environment);
    process.start(VNT_SKETCH_PROGRAM, {});
    const Ended end = endOf(process);
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.errors.substr(0, 33), "vant-sketch: there is no display ") << end.errors;
}

TEST_F(Programs, HandOverToTheOneThatRunsAndEndOnASignal)
{
    const auto first = sketch({"--no-link"});
    const std::string settings = files.folder.path("vant/vant-sketch/settings.ini");
    // Ends as soon as the first one runs, which may be before or after it is ready to be told.
    Ended second;
    ASSERT_TRUE(runUntil([&] { return first->state() == QProcess::Running; }));
    ASSERT_TRUE(runUntil([&] { return QFile::exists(files.path("vant/vant-sketch/sketches/earlier")); }))
        << "the first has made its window";
    second = endOf(*sketch({"--sheet-rotation", "15"}));
    EXPECT_EQ(second.status, 0) << second.errors;
    EXPECT_EQ(first->state(), QProcess::Running);
    first->terminate();
    EXPECT_EQ(endOf(*first).status, 0);
    EXPECT_TRUE(QFile::exists(QString::fromStdString(settings))) << "it ended as if its window were closed";
}

TEST_F(Programs, AnswerTheEditorBeforeASignalEndsThem)
{
    const QString out = files.path("out.svg");
    const auto host = start(
        VNT_HOST_PROGRAM, {"run", VNT_ARTWORK, "-o", out, "--launch", VNT_SKETCH_PROGRAM, "--timeout", "60"});
    const QString log = files.path("vant/vant-sketch.log");
    const auto logged = [&] {
        return QFile::exists(log) ? support::content_of(log.toStdString()) : std::string();
    };
    ASSERT_TRUE(runUntil([&] { return logged().find("an editor asks for a sketch") != std::string::npos; }))
        << host->readAllStandardError().toStdString();
    const std::string entry = logged(); // "time [process] text"
    const int process = std::stoi(entry.substr(entry.find('[') + 1));
    ASSERT_EQ(::kill(process, SIGTERM), 0);
    const Ended end = endOf(*host);
    EXPECT_EQ(end.status, 0) << end.errors;
    EXPECT_TRUE(runUntil([&] { return ::kill(process, 0) != 0; })) << "the program goes as well";
}

// The plug-in, run by its host, and the window: what is drawn here is path art there.
TEST_F(Programs, GiveThePlugInWhatIsDrawn)
{
    WindowSetup setup = files.setup();
    setup.port = LinkServer::kPort;
    ShownWindow shown(setup);
    const std::string out = files.folder.path("out.svg");
    const auto host =
        start(VNT_HOST_PROGRAM, {"run", VNT_ARTWORK, "-o", QString::fromStdString(out), "--timeout", "60"});
    ASSERT_TRUE(runUntil([&] { return shown.window.session().editorWaits(); }))
        << shown.window.linkPanel().stateText().toStdString() << host->readAllStandardError().toStdString();
    runDueEvents();
    SketchCanvas& canvas = shown.window.canvas();
    QTest::keyClick(&canvas, Qt::Key_C);
    shown.draw(circlePath({300, 250}, 90));
    canvas.takeOffered();
    QTest::keyClick(&canvas, Qt::Key_P);
    shown.draw(linePath({120, 420}, {480, 440}));
    ASSERT_EQ(shown.count(), 2U);
    QTest::keyClick(&canvas, Qt::Key_Return, Qt::ControlModifier);
    const Ended end = endOf(*host);
    EXPECT_EQ(end.status, 0) << end.errors;
    EXPECT_NE(end.output.find("2 new paths"), std::string::npos) << end.output;
    EXPECT_NE(support::content_of(out), support::content_of(VNT_ARTWORK));
}

} // namespace
