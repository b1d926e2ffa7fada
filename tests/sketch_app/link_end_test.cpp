// How the link begins and ends: the port, those who wait when the program ends, and a program that dies.
#include "tests/sketch_app/heard_link.h"

#include <QElapsedTimer>
#include <QProcess>

#include <poll.h>

#include <memory>
#include <thread>

namespace {

using namespace sketch_app_test;
using State = LinkServer::State;

bool canConnect(int family, const sockaddr* address, socklen_t size)
{
    const support::Descriptor socket(::socket(family, SOCK_STREAM, 0));
    return ::connect(socket.get(), address, size) == 0;
}

TEST(LinkPort, IsOpenToIPv4sLoopbackAlone)
{
    HeardLink link;
    sockaddr_in address = support::loopback(link.server.port());
    EXPECT_TRUE(canConnect(AF_INET, reinterpret_cast<const sockaddr*>(&address), sizeof address));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK + 1);
    EXPECT_FALSE(canConnect(AF_INET, reinterpret_cast<const sockaddr*>(&address), sizeof address));
    sockaddr_in6 address6{};
    address6.sin6_family = AF_INET6;
    address6.sin6_port = htons(link.server.port());
    address6.sin6_addr = in6addr_loopback;
    EXPECT_FALSE(canConnect(AF_INET6, reinterpret_cast<const sockaddr*>(&address6), sizeof address6));
}

TEST(LinkPort, ThatIsBusyIsSaidWithItsOwner)
{
    needApplication();
    const support::Listener owner;
    const auto port = static_cast<quint16>(owner.port());
    LinkServer server;
    int changes = 0;
    std::vector<QString> log;
    QObject::connect(&server, &LinkServer::stateChanged, &server, [&] { ++changes; });
    QObject::connect(&server, &LinkServer::logged, &server,
                     [&](const QString& line) { log.push_back(line); });
    EXPECT_FALSE(server.listen(port));
    EXPECT_EQ(server.state(), State::closed);
    const QString problem =
        QStringLiteral("Port %1 is in use by link_end_test (process %2), so no editor can reach "
                       "this program. End that program, then try again.")
            .arg(port)
            .arg(getpid());
    EXPECT_EQ(server.problem().toStdString(), problem.toStdString());
    EXPECT_EQ(log, std::vector<QString>{problem});
    EXPECT_EQ(changes, 1);
}

TEST(LinkPort, IsHadWhenItIsFreeAgain)
{
    needApplication();
    auto owner = std::make_unique<support::Listener>();
    const auto port = static_cast<quint16>(owner->port());
    LinkServer server;
    ASSERT_FALSE(server.listen(port));
    owner.reset();
    EXPECT_TRUE(server.listen(port));
    EXPECT_EQ(server.problem(), "");
    EXPECT_EQ(server.state(), State::idle);
}

TEST(LinkPort, IsHadAgainRightAfterAnExchange)
{
    quint16 port = 0;
    {
        HeardLink link;
        port = link.server.port();
        ScriptedEditor editor(port);
        editor.send(requestLine());
        ASSERT_TRUE(link.says({"waiting", "requested 1024"}));
        link.server.cancel();
        // The link closes first, so the port's old connection lingers in the system.
        EXPECT_EQ(editor.receivedToItsEnd(), kEmptyFigure);
        editor.close();
        runDueEvents();
    }
    LinkServer server;
    EXPECT_TRUE(server.listen(port)) << server.problem().toStdString();
}

// ---------------------------------------------------------------------------------------------------- shutting down

TEST(LinkShutDown, AnswersEverybodyWithAnEmptyFigure)
{
    HeardLink link;
    AskingEditor first(link, 1);
    AskingEditor second(link, 2, {"others 1"});
    ScriptedEditor half(link.server.port());
    half.send(requestLine(3).substr(0, 500));
    ScriptedEditor silent(link.server.port());
    runDueEvents();
    ScriptedEditor untaken(link.server.port());
    ::send(untaken.socket(), requestLine(4).data(), requestLine(4).size(), 0);

    link.server.shutDown();
    for (ScriptedEditor* const editor :
         std::initializer_list<ScriptedEditor*>{&first, &second, &half, &silent, &untaken})
        EXPECT_EQ(editor->receivedToItsEnd(), kEmptyFigure);
    EXPECT_EQ(link.said, (Said{"others 0", "closed"}));
    EXPECT_THROW(ScriptedEditor(link.server.port()), std::runtime_error);
    EXPECT_FALSE(link.server.cancel());
}

TEST(LinkShutDown, IsQuickWhenTheEditorsClose)
{
    HeardLink link;
    auto editor = std::make_unique<ScriptedEditor>(link.server.port());
    editor->send(requestLine());
    ASSERT_TRUE(link.says({"waiting", "requested 1024"}));
    const int socket = dup(editor->socket());
    std::thread plugin([socket] {
        pollfd answer{socket, POLLIN, 0};
        poll(&answer, 1, kLimitMilliseconds);
        char line[64];
        while (recv(socket, line, sizeof line, 0) > 0) {
        }
        ::close(socket);
    });
    editor.reset();
    QElapsedTimer time;
    time.start();
    link.server.shutDown();
    EXPECT_LT(time.elapsed(), 400);
    plugin.join();
}

TEST(LinkShutDown, WaitsForASlowEditorButNotForEver)
{
    HeardLink link;
    AskingEditor editor(link);
    ASSERT_TRUE(link.server.answer(QByteArray(32 * 1024 * 1024, ' ')));
    ASSERT_TRUE(link.server.isSending());
    QElapsedTimer time;
    time.start();
    link.server.shutDown();
    EXPECT_GE(time.elapsed(), LinkServer::kShutDownMilliseconds);
    EXPECT_LT(time.elapsed(), 2 * LinkServer::kShutDownMilliseconds);
    // Half an answer must not look like one that still comes.
    EXPECT_TRUE(editor.receivedToItsEnd().ends_with("[reset]"));
    EXPECT_EQ(link.server.state(), State::closed);
}

TEST(LinkShutDown, TellsOfAnAnswerThatIsHandedOverWithinIt)
{
    HeardLink link;
    AskingEditor editor(link);
    ASSERT_TRUE(link.server.answer(QByteArray(32 * 1024 * 1024, ' ')));
    ASSERT_TRUE(link.server.isSending());
    std::thread plugin([&editor] {
        while (!editor.isOver()) {
            pollfd answer{editor.socket(), POLLIN, 0};
            poll(&answer, 1, kLimitMilliseconds);
        }
    });
    link.server.shutDown();
    plugin.join();
    EXPECT_EQ(editor.received().size(), 32U * 1024 * 1024 + 1);
    EXPECT_FALSE(editor.isReset());
    EXPECT_TRUE(link.says({"answered", "closed"}));
}

TEST(LinkShutDown, IsWhatItsDestructionDoes)
{
    auto link = std::make_unique<HeardLink>();
    ScriptedEditor editor(link->server.port());
    editor.send(requestLine());
    ASSERT_TRUE(link->says({"waiting", "requested 1024"}));
    link.reset();
    EXPECT_EQ(editor.receivedToItsEnd(), kEmptyFigure);
}

TEST(LinkShutDown, LetsItListenAgain)
{
    HeardLink link;
    const quint16 port = link.server.port();
    link.server.shutDown();
    link.server.shutDown();
    ASSERT_TRUE(link.says({"closed"}));
    ASSERT_TRUE(link.server.listen(port));
    ScriptedEditor editor(port);
    editor.send(requestLine());
    EXPECT_TRUE(link.says({"idle", "waiting", "requested 1024"}));
}

// --------------------------------------------------------------------------------------------------------- death

class ListeningProgram {
public:
    explicit ListeningProgram(quint16 port)
    {
        needApplication();
        program.start(VNT_LISTENING_PROGRAM, {QString::number(port)});
        line_ = line();
    }
    ~ListeningProgram() { kill(); }

    quint16 port() const { return line_.toUShort(); }

    QByteArray line()
    {
        runUntil([this] { return program.canReadLine() || program.state() == QProcess::NotRunning; });
        return program.readLine().trimmed();
    }

    void kill()
    {
        program.kill();
        program.waitForFinished();
    }

    QProcess program;

private:
    QByteArray line_;
};

TEST(LinkProgramThatIsKilled, EndsItsEditorsWaitWithAReset)
{
    ListeningProgram link(0);
    ScriptedEditor editor(link.port());
    editor.send(requestLine());
    ASSERT_EQ(link.line(), "requested 1024");
    ScriptedEditor second(link.port());
    second.send(requestLine());
    ASSERT_TRUE(runUntil([&] { return support::bytes_waiting(second.socket()) == 0; }));
    link.kill();
    EXPECT_EQ(editor.receivedToItsEnd(), "[reset]");
    EXPECT_EQ(second.receivedToItsEnd(), "[reset]");
}

TEST(LinkProgramThatIsKilled, CanBeStartedAgainAtOnce)
{
    ListeningProgram first(0);
    ScriptedEditor editor(first.port());
    editor.send(requestLine());
    ASSERT_EQ(first.line(), "requested 1024");
    first.kill();
    ListeningProgram again(first.port());
    EXPECT_EQ(again.port(), first.port());
}

TEST(LinkProgramOnABusyPort, NamesTheOther)
{
    ListeningProgram first(0);
    ListeningProgram second(first.port());
    second.program.waitForFinished();
    EXPECT_EQ(second.program.exitCode(), 1);
    LinkServer server;
    EXPECT_FALSE(server.listen(first.port()));
    const QString owner = QStringLiteral("listening_program (process %1)").arg(first.program.processId());
    EXPECT_TRUE(server.problem().contains(owner)) << server.problem().toStdString();
}

} // namespace
