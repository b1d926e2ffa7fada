// Answers as a whole, read and refused, and whole exchanges over TCP.
#include "tests/support/child_process.h"
#include "tests/support/continental_numbers.h"
#include "tests/support/piecewise_sender.h"
#include "tests/support/scripted_peer.h"
#include "tests/vntClientCom/exchange_samples.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <thread>

using support::ContinentalNumbers;
using support::describe;
using support::Descriptor;
using support::is_open;
using support::ParkedInput;
using support::PiecewiseSender;
using support::receive_exactly;
using support::ScriptedPeer;
using support::SocketPair;
using namespace exchange_samples;
using namespace std::string_literals;

namespace {

TEST(Receiving, ReadsADocumentWhateverTheLocale)
{
    const ContinentalNumbers locale;
    const Outcome outcome = receive(kExampleAnswer + "\n");
    EXPECT_EQ(outcome.result, 1);
    EXPECT_NE(outcome.figure.find("1,5707963267948966"), std::string::npos); // describe() speaks the locale
}

TEST(Receiving, TakesAnUnknownTypeForADocument)
{
    const Outcome outcome = receive(kExampleAnswer + "\n", static_cast<vnt::ComType>(5));
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.figure, kExampleFigure);
}

struct RefusedCase {
    const char* name;
    std::string document;
    std::string problem;
};

const RefusedCase kRefused[] = {
    {"AnEmptyLine",                "",                                 kIncomplete},
    {"AnOpenElement",              "<vant><shape></shape>",            kIncomplete},
    {"AnOpenTag",                  "<vant></vant",                     kIncomplete},
    {"AnOpenQuote",                "<vant a=\"></vant>",               kIncomplete},
    {"AnOpenComment",              "<vant></vant><!-- --->",           kIncomplete},
    {"AClosedRoot",                "<vant></vant></>",                 kIncomplete},
    {"AClosedRootAndMore",         "<vant></vant></>x",                kInvalid   },
    {"AWrongEndTag",               "<vant></want>",                    kInvalid   },
    {"AnEndTagWithABlank",         "<vant></vant >",                   kInvalid   },
    {"AnEndTagWithoutItsStart",    "</vant>",                          kInvalid   },
    {"AnEmptyTag",                 "<vant><></vant>",                  kInvalid   },
    {"CharacterData",              "<vant><![CDATA[x]]></vant>",       kInvalid   },
    {"HalfACommentsStart",         "<vant><!-x--></vant>",             kInvalid   },
    {"ALateFault",                 kExampleAnswer + "</vant>",         kInvalid   },
    {"TheAnswerOfAnotherProtocol", "HTTP/1.1 400 Bad Request\r<html>", kIncomplete},
};

class Refused : public testing::TestWithParam<RefusedCase> {};

TEST_P(Refused, SaysWhyAndKeepsTheFigureAndTheConnection)
{
    ParkedInput parked;
    SocketPair pair;
    TestLink link(pair.link.release());
    link.figure.strokes.emplace_back();
    support::send_all(pair.peer.get(), GetParam().document + "\n");
    testing::internal::CaptureStderr();
    const int result = link.recieve_figure_primitive_info();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), GetParam().problem);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(describe(link.figure), "[]");
    EXPECT_TRUE(is_open(link.data_socket));
}

INSTANTIATE_TEST_SUITE_P(, Refused, testing::ValuesIn(kRefused),
                         [](const auto& row) { return row.param.name; });

TEST(ClientComCheck, KeepsTheProblemLines)
{
    ParkedInput parked;
    const TestLink link;
    const auto problem = [&](const std::string& document) {
        parser p;
        p.feed(document.data(), document.size());
        const std::unique_ptr<tagrec> tree(p.root);
        testing::internal::CaptureStderr();
        const bool usable = link.checkData(p);
        return testing::internal::GetCapturedStderr() + (usable ? "usable" : "refused");
    };
    EXPECT_EQ(problem("<>"), "vntClientCom( 194 ) : invalid date\nrefused");
    EXPECT_EQ(problem("<a>"), "vntClientCom( 203 ) : can't accept\nrefused");
    EXPECT_EQ(problem(""),
              "vntClientCom( 203 ) : can't accept\nrefused"); // the root is null, and not asked for
    EXPECT_EQ(problem("<a></a>"), "usable");
}

TEST(ClientComCheck, WritesTheSameLineWhateverStandardErrorIsSetTo)
{
    ParkedInput parked;
    const TestLink link;
    parser p;
    p.step('<');
    p.step('>');
    const std::unique_ptr<tagrec> tree(p.root);
    const std::ios::fmtflags before = std::cerr.flags();
    testing::internal::CaptureStderr();
    std::cerr << std::hex << std::showpos << std::showbase;
    const bool usable = link.checkData(p);
    std::cerr.flags(before);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), kInvalid);
    EXPECT_FALSE(usable);
}

// Every beginning of a document is refused, or is a document itself; nothing crashes or leaks.
TEST(Receiving, RefusesEveryTruncation)
{
    for (std::size_t size = 0; size < kExampleAnswer.size(); ++size) {
        const Outcome outcome = receive(kExampleAnswer.substr(0, size) + "\n");
        const bool before_the_root = size > 0 && kExampleAnswer.find("<vant>") == size;
        EXPECT_EQ(outcome.result, before_the_root ? 1 : 0) << "at byte " << size;
        EXPECT_EQ(outcome.problems, before_the_root ? "" : kIncomplete) << "at byte " << size;
    }
}

TEST(Receiving, OfAMillionNestedShapesUsesNoStack)
{
    const auto end = support::run_in_child(
        [] {
            constexpr int kDepth = 1000000;
            std::string document;
            for (int i = 0; i < kDepth; ++i)
                document += "<shape>";
            for (int i = 0; i < kDepth; ++i)
                document += "</shape>";
            ParkedInput::park();
            SocketPair pair;
            TestLink link(pair.link.release());
            std::thread peer([&] { support::send_all(pair.peer.get(), document + "\n"); });
            const int result = link.recieve_figure_primitive_info();
            peer.join();
            return result == 1 && link.figure.strokes.size() == kDepth ? 7 : 8;
        },
        100000);
    EXPECT_EQ(end.status, 7);
}

TEST(ClientComText, KeepsReadingOneLineOfAFigure)
{
    ParkedInput parked;
    SocketPair pair;
    TestLink link(pair.link.release(), vnt::COM_TEXT);
    const int number = link.data_socket;
    support::send_all(pair.peer.get(), "1\n1\n0\n1 2 3\n4 5 6\n");
    EXPECT_EQ(link.recieve_figure_primitive_info(), 1);
    EXPECT_EQ(describe(link.figure), "[]"); // one stroke, whose own count is on the next line
    EXPECT_FALSE(is_open(number));
}

TEST(ClientComText, ReadsAFigureThatStandsOnOneLine)
{
    const ContinentalNumbers locale;
    const Outcome outcome = receive("1 2 0 1.5 2 3 4 5 6 3 1 7 8 9 1\n", vnt::COM_TEXT);
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.figure, "[line(1,5,2,3 4,5,6) closed(7,8,9)]");
}

TEST(ClientComText, TakesAnythingForAFigure)
{
    const Outcome outcome = receive("no figure at all\n", vnt::COM_TEXT);
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.figure, "");
}

std::string block(const std::string& bytes)
{
    std::string length = "\0\0\0\0"s;
    length[2] = static_cast<char>(bytes.size() / 256);
    length[3] = static_cast<char>(bytes.size() % 256);
    return length + bytes;
}

std::string figure_bytes()
{
    vnt::FigPrimInfo figure;
    figure.strokes.emplace_back().primitives.push_back(
        new vnt::PrimL(vnt::Point(1, 2, 3), vnt::Point(4, 5, 6)));
    std::ostringstream out;
    figure.serialize(out);
    return out.str();
}

TEST(ClientComBinary, ReadsAFigure)
{
    const Outcome outcome = receive(block(figure_bytes()), vnt::COM_BINARY);
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.figure, "[line(1,2,3 4,5,6)]");
    EXPECT_FALSE(outcome.connection_open);
}

TEST(ClientComBinary, RefusesABlockWithoutALength)
{
    const Outcome outcome = receive("\0\0"s, vnt::COM_BINARY);
    EXPECT_EQ(outcome.result, 0);
    EXPECT_TRUE(outcome.connection_open);
}

TEST(ClientComBinary, TakesAnEmptyBlockForAnEmptyFigure)
{
    const Outcome outcome = receive("\0\0\0\0"s, vnt::COM_BINARY);
    EXPECT_EQ(outcome.result, 1);
    EXPECT_EQ(outcome.figure, "");
}

class Exchange : public testing::TestWithParam<std::size_t> {};

TEST_P(Exchange, SendsTheViewAndBringsTheFigure)
{
    ParkedInput parked;
    TestLink link;
    std::string request;
    ScriptedPeer peer([&](Descriptor& connection) {
        request = support::receive_line(connection.get());
        PiecewiseSender sender(connection.get(), link.data_socket, kExampleAnswer + "\n", GetParam());
    });
    vnt::FigPrimInfo* const figure =
        link.summonVANT(kViewport, model_space(), vnt::COM_XML, peer.port(), "127.0.0.1");
    const bool closed = !is_open(link.data_socket);
    peer.finish();
    EXPECT_EQ(request, kExampleDocument);
    ASSERT_EQ(figure, &link.figure);
    EXPECT_EQ(describe(*figure), kExampleFigure);
    EXPECT_TRUE(closed);
    EXPECT_EQ(link.com_type, vnt::COM_XML);
}

INSTANTIATE_TEST_SUITE_P(InPiecesOf, Exchange, testing::Values(1, 2, 3, 5, support::kAllAtOnce),
                         testing::PrintToStringParamName());

TEST(ExchangeEnd, WhereNobodyListensIsNullAndStoresNoType)
{
    ParkedInput parked;
    TestLink link;
    EXPECT_EQ(link.summonVANT(kViewport, model_space(), vnt::COM_XML, support::unused_port(), "127.0.0.1"),
              nullptr);
    EXPECT_EQ(link.com_type, vnt::COM_TEXT);
}

TEST(ExchangeEnd, AtABadAddressIsNull)
{
    ParkedInput parked;
    TestLink link;
    EXPECT_EQ(link.summonVANT(kViewport, model_space(), vnt::COM_XML, 4910, "localhost"), nullptr);
}

TEST(ExchangeEnd, OfARefusedAnswerIsNull)
{
    ParkedInput parked;
    TestLink link;
    ScriptedPeer peer([](Descriptor& connection) {
        support::receive_line(connection.get());
        support::send_all(connection.get(), "<vant></want>\n");
    });
    testing::internal::CaptureStderr();
    EXPECT_EQ(link.summonVANT(kViewport, model_space(), vnt::COM_XML, peer.port(), "127.0.0.1"), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), kInvalid);
    EXPECT_TRUE(is_open(link.data_socket));
}

TEST(ExchangeEnd, OfAResetConnectionIsNull)
{
    ParkedInput parked;
    TestLink link;
    ScriptedPeer peer([](Descriptor& connection) {
        support::receive_line(connection.get());
        const linger at_once{1, 0};
        setsockopt(connection.get(), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
        connection.reset(-1);
    });
    testing::internal::CaptureStderr();
    EXPECT_EQ(link.summonVANT(kViewport, model_space(), vnt::COM_XML, peer.port(), "127.0.0.1"), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), kIncomplete);
}

TEST(ExchangeEnd, LeavesASecondAnswerUnread)
{
    ParkedInput parked;
    TestLink link;
    int end = 0; // of the connection, as the peer sees it
    ScriptedPeer peer([&](Descriptor& connection) {
        support::receive_line(connection.get());
        support::send_all(connection.get(), "<a><shape></shape></a>\n<b></b>\n");
        char byte = 0;
        if (recv(connection.get(), &byte, 1, 0) < 0)
            end = errno;
    });
    const vnt::FigPrimInfo* const figure =
        link.summonVANT(kViewport, model_space(), vnt::COM_XML, peer.port(), "127.0.0.1");
    peer.finish();
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(describe(*figure), "[]");
    EXPECT_EQ(end, ECONNRESET); // as a close with bytes unread makes it
}

TEST(ExchangeEnd, OfASecondExchangeReplacesTheFigure)
{
    ParkedInput parked;
    TestLink link;
    for (const int strokes : {2, 1}) {
        ScriptedPeer peer([&](Descriptor& connection) {
            support::receive_line(connection.get());
            std::string shapes;
            for (int i = 0; i < strokes; ++i)
                shapes += "<shape></shape>";
            support::send_all(connection.get(), shapes + "\n");
        });
        const vnt::FigPrimInfo* const figure =
            link.summonVANT(kViewport, model_space(), vnt::COM_XML, peer.port(), "127.0.0.1");
        ASSERT_NE(figure, nullptr);
        EXPECT_EQ(figure->strokes.size(), static_cast<std::size_t>(strokes));
    }
}

TEST(ExchangeOfText, RunsOverTcp)
{
    ParkedInput parked;
    TestLink link;
    std::string request;
    ScriptedPeer peer([&](Descriptor& connection) {
        for (int line = 0; line < 10; ++line)
            request += support::receive_line(connection.get());
        support::send_all(connection.get(), "1 1 0 1 2 3 4 5 6\n");
    });
    const vnt::FigPrimInfo* const figure =
        link.summonVANT(kViewport, model_space(), vnt::COM_TEXT, peer.port(), "127.0.0.1");
    peer.finish();
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(describe(*figure), "[line(1,2,3 4,5,6)]");
    EXPECT_EQ(request,
              "0 22 1024 768\n1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n\n");
}

TEST(ExchangeOfBytes, RunsOverTcp)
{
    ParkedInput parked;
    TestLink link;
    std::string request;
    ScriptedPeer peer([&](Descriptor& connection) {
        request = receive_exactly(connection.get(), 4 + 16 + 4 + 256);
        support::send_all(connection.get(), block(figure_bytes()));
    });
    const vnt::FigPrimInfo* const figure =
        link.summonVANT(kViewport, model_space(), vnt::COM_BINARY, peer.port(), "127.0.0.1");
    peer.finish();
    ASSERT_NE(figure, nullptr);
    EXPECT_EQ(describe(*figure), "[line(1,2,3 4,5,6)]");
    EXPECT_EQ(request.size(), 280u);
}

} // namespace
