// The program and the link, which is what reads its answers.
#include "Source/vntClientCom/vntClientCom.h"
#include "tests/peer/peer_program.h"
#include "tests/support/child_process.h"
#include "tests/support/descriptors.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <string>

namespace {

using namespace peer_test;
using support::content_of;
using support::TemporaryFolder;

// What a figure consists of: "strokes=2 lines=3 ...".
std::string summary(const vnt::FigPrimInfo* figure)
{
    if (figure == nullptr)
        return "no figure";
    std::map<std::string, int> counts;
    std::size_t longest_stroke = 0;
    for (const vnt::StrokeInfo& stroke : figure->strokes) {
        longest_stroke = std::max(longest_stroke, stroke.primitives.size());
        for (const vnt::PrimInfo* primitive : stroke.primitives) {
            if (const auto* circle = dynamic_cast<const vnt::PrimC*>(primitive))
                ++counts[circle->is_arc ? "circular_arc" : "circle"];
            else if (const auto* ellipse = dynamic_cast<const vnt::PrimE*>(primitive))
                ++counts[ellipse->is_arc ? "elliptic_arc" : "ellipse"];
            else if (const auto* curve = dynamic_cast<const vnt::PrimF*>(primitive))
                ++counts[curve->closed ? "closed_free_curve" : "open_free_curve"];
            else
                ++counts["line"];
        }
    }
    std::string text =
        "strokes=" + std::to_string(figure->strokes.size()) + " longest=" + std::to_string(longest_stroke);
    for (const auto& [name, count] : counts)
        text += " " + name + "=" + std::to_string(count);
    return text;
}

struct LinkEnd {
    std::string figure;
    std::string errors; // what the link wrote to standard error
};

// One exchange of the link, in a process whose descriptors are not needed any more.
LinkEnd exchange_with_link(unsigned int port, const TemporaryFolder& folder)
{
    const std::string errors = folder.path("errors");
    const std::string figure = folder.path("figure");
    const auto body = [&] {
        support::ParkedInput::park();
        dup2(open(errors.c_str(), O_CREAT | O_WRONLY, 0600), 2);
        const vnt::ViewportInfo viewport{0, 22, 1024, 768};
        vnt::ModelSpaceInfo modelspace{vnt::Matrix(), vnt::Matrix()};
        modelspace.derivational_scale_factor = 1;
        vnt::ClientCom link;
        std::ofstream(figure) << summary(
            link.summonVANT(viewport, modelspace, vnt::COM_XML, port, "127.0.0.1"));
        return 0;
    };
    const support::ChildEnd end = support::run_in_child(body, static_cast<int>(kLimit.count()) * 1000);
    EXPECT_TRUE(end.ended);
    EXPECT_EQ(end.status, 0);
    return {content_of(figure), content_of(errors)};
}

struct LinkCase {
    const char* name;
    std::vector<std::string> arguments; // "ANSWERS/..." are the example answers, "EMPTY" an empty line
    std::string figure;
    std::string errors;
};

const std::string kEveryPrimitive =
    "strokes=27 longest=4 circle=2 circular_arc=4 closed_free_curve=2 ellipse=1 elliptic_arc=5 line=17 "
    "open_free_curve=6";

const LinkCase kLinks[] = {
    {"EveryPrimitiveIsRead",       {"--answer", "ANSWERS/every_primitive.xml"}, kEveryPrimitive,                ""                                    },
    {"TheJoinedTwinIsTheSame",
     {"--join", "--answer", "ANSWERS/every_primitive.pretty.xml"},
     kEveryPrimitive,                                                                                           ""                                    },
    {"ADrippedAnswerIsTheSame",
     {"--fault", "drip", "--answer", "ANSWERS/every_primitive.xml"},
     kEveryPrimitive,                                                                                           ""                                    },
    {"OfTwoAnswersTheFirstIsRead",
     {"--fault", "two-answers", "--answer", "ANSWERS/every_primitive.xml"},
     kEveryPrimitive,                                                                                           ""                                    },
    {"AHugeAnswerIsRead",          {"--fault", "huge"},                         "strokes=64 longest=1 line=64", ""                                    },
    {"GarbageIsRefused",           {"--fault", "garbage"},                      "no figure",                    "vntClientCom( 194 ) : invalid date\n"},
    {"AResetIsAnAnswerWithoutEnd", {"--fault", "reset"},                        "no figure",                    "vntClientCom( 203 ) : can't accept\n"},
    {"AnEmptyAnswerIsRefused",     {"--answer", "EMPTY"},                       "no figure",                    "vntClientCom( 203 ) : can't accept\n"},
};

class PeerAndLink : public testing::TestWithParam<LinkCase> {};

TEST_P(PeerAndLink, AgreeOnTheAnswer)
{
    const TemporaryFolder folder;
    std::vector<std::string> arguments = {"--port", "0", "--save-request", folder.path("request")};
    for (std::string argument : GetParam().arguments) {
        if (argument.compare(0, 7, "ANSWERS") == 0)
            argument.replace(0, 7, VNT_ANSWERS);
        if (argument == "EMPTY")
            argument = folder.file("empty", "\n");
        arguments.push_back(argument);
    }
    Program program(arguments);
    const LinkEnd link = exchange_with_link(program.port(), folder);
    EXPECT_EQ(link.figure, GetParam().figure);
    EXPECT_EQ(link.errors, GetParam().errors);
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.errors, "");
    const std::string request = content_of(folder.path("request"));
    EXPECT_EQ(request.substr(0, 62), "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?><vant><v");
    EXPECT_EQ(request.substr(request.size() - 8), "</vant>\n");
}

INSTANTIATE_TEST_SUITE_P(, PeerAndLink, testing::ValuesIn(kLinks),
                         [](const auto& row) { return row.param.name; });

} // namespace
