// Whoever is no editor, or a broken one: refused in words, with the editors' turns and the memory untouched.
#include "tests/sketch_app/heard_link.h"
#include "tests/support/sanitized.h"
#include "tests/support/temporary_folder.h"

#include <sys/resource.h>

#include <algorithm>
#include <list>
#include <sstream>
#include <vector>

namespace {

using namespace sketch_app_test;
using State = LinkServer::State;

constexpr std::size_t kMost = static_cast<std::size_t>(LinkServer::kMostRequestBytes);

struct RefusalCase {
    const char* name;
    std::string sent;
    const char* received; // until the link closes
    const char* logged;
};
// clang-format off
const RefusalCase kRefusals[] = {
    {"ARequestOfAWebPage", "GET / HTTP/1.1\r\nHost: 127.0.0.1:4910\r\n\r\n", "",
     "it is no editor's request: it begins with \"GET\""},
    {"AWebPagesFormWithARequestInIt",
     "POST / HTTP/1.1\r\nContent-Type: text/plain\r\n\r\n" + requestLine(), "", "begins with \"POST\""},
    {"ASecureConnection", std::string("\x16\x03\x01\x02\x00\x01\x00\x01", 8), "", "begins with a byte that is no text"},
    {"Text", "hello\n", "", "begins with \"hello\""},
    {"TextBehindBlanks", " \t hello", "", "begins with \"hello\""},
    {"ALongWordOfWhichLittleIsLogged", "correcthorsebatterystaple\n", "", "begins with \"correcth\""},
    {"AnEmptyLine", "\n", kEmptyFigure, "is refused: "},
    {"ALineThatIsNoXml", "<vant><\n", kEmptyFigure, "is refused: "},
    {"AnotherDocument", "<svg></svg>\n", kEmptyFigure, "is refused: "},
    {"ARequestWithoutAView", "<vant><viewport_information height=\"768\" width=\"1024\" x=\"0\" y=\"22\"/></vant>\n",
     kEmptyFigure, "is refused: "},
};
// clang-format on
class LinkRefusal : public testing::TestWithParam<RefusalCase> {};

// With an editor that waits, whose turn must not suffer.
TEST_P(LinkRefusal, IsToldInTheLogAlone)
{
    HeardLink link;
    AskingEditor editor(link);
    ScriptedEditor other(link.server.port());
    other.send(GetParam().sent);
    EXPECT_EQ(other.receivedToItsEnd(), GetParam().received);
    EXPECT_TRUE(link.hasLogged(GetParam().logged)) << testing::PrintToString(link.log);
    EXPECT_TRUE(link.said.empty());
    EXPECT_TRUE(link.server.cancel());
    EXPECT_EQ(editor.receivedToItsEnd(), kEmptyFigure);
}

TEST_P(LinkRefusal, IsTheSameByteByByte)
{
    HeardLink link;
    ScriptedEditor other(link.server.port());
    other.sendInPieces(GetParam().sent, 1);
    EXPECT_EQ(other.receivedToItsEnd(), GetParam().received);
    EXPECT_TRUE(link.said.empty());
    EXPECT_EQ(link.server.state(), State::idle);
}
INSTANTIATE_TEST_SUITE_P(, LinkRefusal, testing::ValuesIn(kRefusals),
                         [](const auto& row) { return row.param.name; });

TEST(LinkLog, HasOneLineEachWithoutControlCharacters)
{
    HeardLink link;
    ScriptedEditor other(link.server.port());
    other.send("<vant \x1b[2J\x07\r" + std::string(5000, 'x') + "\n");
    EXPECT_EQ(other.receivedToItsEnd(), kEmptyFigure);
    ASSERT_TRUE(link.hasLogged("is refused"));
    for (const std::string& line : link.log) {
        EXPECT_LE(line.size(), 303U);
        EXPECT_TRUE(std::all_of(line.begin(), line.end(), [](char c) { return c >= ' ' && c <= '~'; }))
            << line;
    }
}

// -------------------------------------------------------------------------------------------- in pieces and time

TEST(SilentConnection, IsAnsweredAndClosedWhenItsTimeIsUp)
{
    HeardLink link;
    link.server.setRequestTime(100);
    ScriptedEditor silent(link.server.port());
    EXPECT_EQ(silent.receivedToItsEnd(), kEmptyFigure);
    EXPECT_TRUE(link.hasLogged("nothing came of its request within 0.1 s"));
    EXPECT_TRUE(link.said.empty());
}

TEST(DrippingConnection, IsAnsweredAndClosedWhenItsTimeIsUp)
{
    HeardLink link;
    link.server.setRequestTime(300);
    ScriptedEditor drip(link.server.port());
    const std::string line = requestLine();
    std::size_t sent = 0;
    EXPECT_TRUE(runUntil([&] {
        if (sent + 1 < line.size()) // it would take for ever, not just to the line feed
            ::send(drip.socket(), &line[sent++ % 100], 1, MSG_NOSIGNAL);
        return drip.isOver();
    }));
    EXPECT_EQ(drip.received(), kEmptyFigure);
    EXPECT_TRUE(link.hasLogged("only a part came of its request within 0.3 s"));
}

// As when the machine has slept: the timer fires before the bytes are seen.
TEST(RequestThatCameInTime, CountsThoughItIsReadLate)
{
    HeardLink link;
    link.server.setRequestTime(50);
    ScriptedEditor editor(link.server.port());
    ASSERT_TRUE(runUntil([&] { return !link.server.findChildren<QObject*>().isEmpty(); }));
    ::send(editor.socket(), requestLine().data(), requestLine().size(), 0);
    const QDeadlineTimer asleep(100);
    while (!asleep.hasExpired()) {
    }
    const std::size_t before = link.log.size();
    const QDeadlineTimer limit(kLimitMilliseconds);
    while (link.log.size() == before && !limit.hasExpired())
        QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers); // timers alone
    EXPECT_TRUE(link.says({"waiting", "requested 1024"}));
}

TEST(ConnectionThatEndsWithinItsRequest, IsRefused)
{
    HeardLink link;
    ScriptedEditor half(link.server.port());
    half.send(requestLine().substr(0, 500));
    half.endSending();
    EXPECT_EQ(half.receivedToItsEnd(), kEmptyFigure);
    EXPECT_TRUE(link.hasLogged("it ended within its request"));
    ScriptedEditor probe(link.server.port());
    probe.close();
    EXPECT_TRUE(link.hasLogged("it ended without a request"));
    EXPECT_TRUE(link.said.empty());
}

TEST(ConnectionThatIsResetWithinItsRequest, IsForgotten)
{
    HeardLink link;
    ScriptedEditor half(link.server.port());
    half.send(requestLine().substr(0, 500));
    half.reset();
    EXPECT_TRUE(link.hasLogged("has left"));
    EXPECT_TRUE(link.said.empty());
    ScriptedEditor editor(link.server.port());
    editor.send(requestLine());
    EXPECT_TRUE(link.says({"waiting", "requested 1024"}));
}

// ------------------------------------------------------------------------------------------------------ bounds

TEST(LongLine, OfAllTheBytesThatAreTakenIsRead)
{
    HeardLink link;
    ScriptedEditor editor(link.server.port());
    // What is read of it is another's business; here it must get so far.
    ASSERT_TRUE(editor.send("<" + std::string(kMost - 1, ' ') + "\n"));
    EXPECT_EQ(editor.receivedToItsEnd(), kEmptyFigure);
    EXPECT_TRUE(link.hasLogged("cannot read the editor's request"));
}

TEST(LongLine, OfOneByteMoreIsRefused)
{
    HeardLink link;
    ScriptedEditor editor(link.server.port());
    editor.send("<" + std::string(kMost, ' '));
    EXPECT_EQ(editor.receivedToItsEnd(), kEmptyFigure);
    EXPECT_TRUE(link.hasLogged("its line is longer than 16777216 bytes"));
    EXPECT_TRUE(link.said.empty());
}

std::size_t residentBytes()
{
    std::istringstream counts(support::content_of("/proc/self/statm"));
    std::size_t total = 0;
    std::size_t resident = 0;
    counts >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

TEST(LongLines, ThatComeTogetherTakeBoundedMemory)
{
    if (support::kSanitized)
        GTEST_SKIP() << "a sanitizer keeps what is freed";
    HeardLink link;
    std::list<ScriptedEditor> editors;
    for (int i = 0; i < LinkServer::kMostAsking; ++i)
        editors.emplace_back(link.server.port());
    const std::string piece = "<" + std::string(std::size_t{1024} * 1024 - 1, ' ');
    const std::size_t before = residentBytes();
    std::size_t most = before;
    std::size_t sent = 0;
    for (std::size_t i = 0; i < kMost; i += piece.size()) {
        for (ScriptedEditor& editor : editors)
            sent += editor.send(piece) ? piece.size() : 0;
        most = std::max(most, residentBytes());
    }
    most = std::max(most, residentBytes());
    EXPECT_GT(sent, 2 * kMost);
    EXPECT_LT(most - before, 6 * kMost); // two lines, and what is being moved to a larger place; else 16
    EXPECT_TRUE(link.hasLogged("too much is sent at once"));
    ScriptedEditor editor(link.server.port());
    editor.send(requestLine());
    EXPECT_TRUE(link.says({"waiting", "requested 1024"}));
}

TEST(LongLines, OneAfterTheOtherLeaveNothingBehind)
{
    if (support::kSanitized)
        GTEST_SKIP() << "a sanitizer keeps what is freed";
    HeardLink link;
    const auto refusals = [&](int count) {
        for (int i = 0; i < count; ++i) {
            ScriptedEditor editor(link.server.port());
            editor.send("<" + std::string(kMost, ' '));
            EXPECT_EQ(editor.receivedToItsEnd(), kEmptyFigure);
        }
    };
    refusals(2);
    const std::size_t before = residentBytes();
    refusals(10);
    EXPECT_LT(residentBytes(), before + kMost / 2);
}

TEST(SilentConnections, MakeRoomForAnEditor)
{
    HeardLink link;
    std::list<ScriptedEditor> silent;
    for (int i = 0; i < LinkServer::kMostAsking; ++i) {
        silent.emplace_back(link.server.port());
        silent.back().send("<");
    }
    ScriptedEditor editor(link.server.port());
    EXPECT_EQ(silent.front().receivedToItsEnd(), kEmptyFigure);
    EXPECT_TRUE(link.hasLogged("16 newer ones have not asked yet either"));
    editor.send(requestLine());
    EXPECT_TRUE(link.says({"waiting", "requested 1024"}));
    silent.pop_front();
    for (ScriptedEditor& other : silent)
        EXPECT_FALSE(other.isOver());
}

TEST(WaitingEditors, AreTurnedAwayWhenTheyAreTooMany)
{
    HeardLink link;
    std::list<ScriptedEditor> editors;
    for (int i = 0; i < LinkServer::kMostWaiting; ++i) {
        editors.emplace_back(link.server.port());
        editors.back().send(requestLine(i + 1));
    }
    ASSERT_TRUE(runUntil([&] { return link.server.othersWaiting() == LinkServer::kMostWaiting - 1; }));
    ScriptedEditor tooMany(link.server.port());
    tooMany.send(requestLine());
    EXPECT_EQ(tooMany.receivedToItsEnd(), kEmptyFigure);
    EXPECT_EQ(link.server.othersWaiting(), LinkServer::kMostWaiting - 1);
    EXPECT_TRUE(link.hasLogged("16 editors wait already"));
}

TEST(EndlessTalker, BehindItsRequestLosesItsTurn)
{
    HeardLink link;
    AskingEditor editor(link);
    editor.send(std::string(std::size_t{2} * 1024 * 1024, 'x'));
    EXPECT_TRUE(link.says({"left", "gone"}));
    EXPECT_EQ(editor.receivedToItsEnd(), kEmptyFigure);
}

std::size_t openDescriptors()
{
    const auto entries = std::filesystem::directory_iterator("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

TEST(ManyConnections, LeaveNothingOpen)
{
    HeardLink link;
    runDueEvents();
    const std::size_t before = openDescriptors();
    for (int i = 0; i < 300; ++i) {
        ScriptedEditor other(link.server.port());
        other.send(i % 3 == 0 ? "GET / HTTP/1.1\r\n\r\n" : i % 3 == 1 ? "<vant>" : "<svg/>\n");
        if (i % 2 == 0)
            other.reset();
        runDueEvents();
        EXPECT_LE(openDescriptors(), before + 50) << i;
    }
    EXPECT_TRUE(runUntil([&] { return runDueEvents(), openDescriptors() == before; }));
    EXPECT_TRUE(runUntil([&] { return runDueEvents(), link.server.findChildren<QObject*>().isEmpty(); }));
    EXPECT_TRUE(link.said.empty());
}

// Takes every descriptor that the process may have.
class AllDescriptors {
public:
    AllDescriptors()
    {
        getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit few{64, before_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &few);
        do
            taken_.emplace_back(dup(STDOUT_FILENO));
        while (taken_.back().get() >= 0);
    }
    AllDescriptors(const AllDescriptors&) = delete;
    AllDescriptors& operator=(const AllDescriptors&) = delete;
    ~AllDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }

private:
    rlimit before_{};
    std::vector<support::Descriptor> taken_;
};

TEST(SystemWithoutDescriptors, IsWaitedFor)
{
    if (support::kSanitized)
        GTEST_SKIP() << "a sanitizer looks at objects through a pipe of its own";
    HeardLink link;
    ScriptedEditor editor(link.server.port()); // in the line of those that are not taken yet
    ::send(editor.socket(), requestLine().data(), requestLine().size(), 0);
    {
        const AllDescriptors taken;
        EXPECT_TRUE(link.hasLogged("a connection could not be taken"));
        EXPECT_TRUE(link.said.empty());
    }
    EXPECT_TRUE(link.says({"waiting", "requested 1024"}));
    EXPECT_LT(link.log.size(), 5U);
}

} // namespace
