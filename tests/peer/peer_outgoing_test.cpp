#include "Source/markup/parser.h"
#include "tools/peer/outgoing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

namespace {

using namespace vnt::peer;
using namespace std::chrono_literals;

std::vector<std::string> pieces_of(Fault fault, const std::string& answer)
{
    Outgoing outgoing(fault, answer);
    std::vector<std::string> pieces;
    for (std::string_view piece = outgoing.next(); !piece.empty(); piece = outgoing.next())
        pieces.emplace_back(piece);
    EXPECT_TRUE(outgoing.next().empty());
    return pieces;
}

std::string bytes_of(Fault fault, const std::string& answer)
{
    const auto pieces = pieces_of(fault, answer);
    return std::accumulate(pieces.begin(), pieces.end(), std::string());
}

struct PieceCase {
    const char* name;
    Fault fault;
    std::string answer;
    std::vector<std::string> pieces;
};

const PieceCase kPieces[] = {
    {"AnAnswerIsItsLineAndALineFeed",      Fault::none,                "<a/>",   {"<a/>\n"}                },
    {"AnEmptyAnswerIsALineFeed",           Fault::none,                "",       {"\n"}                    },
    {"TwoAnswersAreTwoEqualLines",         Fault::two_answers,         "<a/>",   {"<a/>\n<a/>\n"}          },
    {"HalfALineHasNoLineFeed",             Fault::close_mid_line,      "<abc/>", {"<ab"}                   },
    {"HalfAnOddLineIsTheSmallerHalf",      Fault::close_mid_line,      "<ab/>",  {"<a"}                    },
    {"HalfAnEmptyLineIsNothing",           Fault::close_mid_line,      "",       {}                        },
    {"DripsAreSingleBytes",                Fault::drip,                "<a/>",   {"<", "a", "/", ">", "\n"}},
    {"RefusingSendsNothing",               Fault::refuse,              "<a/>",   {}                        },
    {"ClosingBeforeTheAnswerSendsNothing", Fault::close_before_answer, "<a/>",   {}                        },
    {"StallingSendsNothing",               Fault::stall,               "<a/>",   {}                        },
    {"ResettingSendsNothing",              Fault::reset,               "<a/>",   {}                        },
};

class PeerOutgoing : public testing::TestWithParam<PieceCase> {};

TEST_P(PeerOutgoing, HasThesePieces)
{
    EXPECT_EQ(pieces_of(GetParam().fault, GetParam().answer), GetParam().pieces);
}

INSTANTIATE_TEST_SUITE_P(, PeerOutgoing, testing::ValuesIn(kPieces),
                         [](const auto& row) { return row.param.name; });

// The whole tree of a line, as the link would read it.
struct Document {
    parser reader;
    std::unique_ptr<tagrec> root;

    explicit Document(const std::string& line)
    {
        reader.feed(line.data(), line.size());
        root.reset(reader.root);
    }

    std::size_t count(const char* name) const
    {
        std::vector<tagrec*> found;
        root->find(found, name);
        return found.size();
    }
};

TEST(PeerGarbage, IsOneLineOfEveryByte)
{
    const std::string line = bytes_of(Fault::garbage, "");
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    for (int byte = 0; byte < 256; ++byte)
        EXPECT_NE(line.find(static_cast<char>(byte)), std::string::npos) << byte;
}

TEST(PeerGarbage, IsRefusedByTheParser)
{
    const std::string line = bytes_of(Fault::garbage, "");
    EXPECT_TRUE(Document(line.substr(0, line.size() - 1)).reader.checkerror());
}

TEST(PeerHuge, IsOneWellFormedLineOfSixtyFourMebibytes)
{
    std::string line = bytes_of(Fault::huge, "");
    EXPECT_GE(line.size(), std::size_t{64} * 1024 * 1024);
    ASSERT_EQ(line.find('\n'), line.size() - 1);
    line.pop_back();
    const Document document(line);
    EXPECT_EQ(document.reader.acceptable(), 1);
    EXPECT_EQ(document.count("shape"), 64U);
    EXPECT_EQ(document.count("start/"), 64U);
    EXPECT_EQ(document.count("end/"), 64U);
}

TEST(PeerHuge, IsNeverInMemoryAtOnce)
{
    constexpr std::size_t kMost = std::size_t{1024} * 1024 + 200; // the blanks and a stroke
    Outgoing outgoing(Fault::huge, "");
    for (std::string_view piece = outgoing.next(); !piece.empty(); piece = outgoing.next())
        ASSERT_LE(piece.size(), kMost);
}

struct PauseCase {
    const char* name;
    Fault fault;
    std::size_t answer_size;
    std::chrono::nanoseconds pause;
};

const PauseCase kPauses[] = {
    {"GoodMannersDoNotPause",         Fault::none, 9,    0ns  },
    {"AShortDripPausesAMillisecond",  Fault::drip, 9,    1ms  },
    {"AnEmptyDripPausesAMillisecond", Fault::drip, 0,    1ms  },
    {"ALongDripIsOverInTwoSeconds",   Fault::drip, 9999, 200us},
};

class PeerPause : public testing::TestWithParam<PauseCase> {};

TEST_P(PeerPause, DependsOnTheSize)
{
    const Outgoing outgoing(GetParam().fault, std::string(GetParam().answer_size, 'x'));
    EXPECT_EQ(outgoing.pause(), GetParam().pause);
}

INSTANTIATE_TEST_SUITE_P(, PeerPause, testing::ValuesIn(kPauses),
                         [](const auto& row) { return row.param.name; });

} // namespace
