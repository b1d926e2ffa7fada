// vant-host draw, and what its two commands have in common, where no port is needed.
#include "tests/host_app/host_program.h"
#include "tests/host_app/trace_reading.h"
#include "tests/support/sanitized.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <vector>

namespace {

using host_app_test::kSmallArtwork;
using host_app_test::ProgramEnd;
using host_app_test::Stream;
using host_app_test::Workplace;
using Arguments = std::vector<std::string>;

const std::string kUsage = "usage: vant-host ";

class HostDraw : public testing::Test {
protected:
    // Draws the answer to DIR/out.svg.
    ProgramEnd draw(const std::string& answer, const Arguments& arguments = {}) const
    {
        Arguments all = {"draw", answer, "-o", "DIR/out.svg"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return place.run(all);
    }

    Workplace place;
};

// A page of the figure's box, (0, 0) to (100, -50), with 10 points around it; the artwork's origin is (0, 0).
constexpr const char* kNewDocument = R"(<?xml version="1.0" encoding="UTF-8"?>
<svg width="120pt" height="70pt" viewBox="-10 -10 120 70"
    xmlns="http://www.w3.org/2000/svg"
    xmlns:inkscape="http://www.inkscape.org/namespaces/inkscape"
    xmlns:sodipodi="http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd">
  <sodipodi:namedview id="namedview1" showgrid="false" inkscape:current-layer="layer1">
    <inkscape:grid id="grid1" type="xygrid" units="pt" originx="10" originy="10"
        spacingx="25" spacingy="25" empspacing="2"/>
  </sodipodi:namedview>
  <g id="layer1" inkscape:groupmode="layer" inkscape:label="VANT">
    <path id="vant-path1" style="fill:none;stroke:#000000;stroke-width:1" d="M 0,0 L 100,50"/>
  </g>
</svg>
)";

TEST_F(HostDraw, IsDoneWhenNobodyTakesItsMessage)
{
    const std::string command = std::string(VNT_HOST_PROGRAM) + " draw '" + place.path("line.xml") +
                                "' -o '" + place.path("out.svg") + "' >/dev/full 2>/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(place.content("out.svg"), kNewDocument);
}

// A pipe without a writer: the command waits before there is any plug-in to watch over.
TEST_F(HostDraw, IsEndedByItsTimeLimitWhileItReads)
{
    ASSERT_EQ(mkfifo(place.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(
        place.run({"draw", "DIR/pipe", "-o", "DIR/out.svg", "--timeout", "0.2"}),
        (ProgramEnd{4, "",
                    "vant-host: the time of --timeout is up; DIR/out.svg was not made; give it more time, or "
                    "leave --timeout out\n"}));
    EXPECT_FALSE(place.has("out.svg"));
}

TEST_F(HostDraw, MakesANewDocumentAroundTheFigure)
{
    EXPECT_EQ(draw("DIR/line.xml"), (ProgramEnd{0, "DIR/out.svg: 1 new path\n", ""}));
    EXPECT_EQ(place.content("out.svg"), kNewDocument);
    EXPECT_EQ(place.names(), (std::set<std::string>{"line.xml", "out.svg", "small.svg"}));
}

TEST_F(HostDraw, DrawsIntoAnArtworkThatMayBeTheFileToWrite)
{
    EXPECT_EQ(place.run({"draw", "DIR/line.xml", "--into", "DIR/small.svg", "-o", "DIR/small.svg"}),
              (ProgramEnd{0, "DIR/small.svg: 1 new path\n", ""}));
    EXPECT_EQ(place.content("small.svg"), host_app_test::kDrawnArtwork);
}

TEST_F(HostDraw, CopiesTheArtworkUnchangedForAnEmptyFigure)
{
    place.file("empty.xml", "<vant></vant>\n");
    EXPECT_EQ(
        draw("DIR/empty.xml", {"--into", "DIR/small.svg"}),
        (ProgramEnd{0, "DIR/out.svg: the figure has no strokes; an unchanged copy of DIR/small.svg\n", ""}));
    EXPECT_EQ(place.content("out.svg"), kSmallArtwork);
}

TEST_F(HostDraw, MakesAnEmptyDocumentOfAnEmptyFigure)
{
    place.file("empty.xml", "<vant></vant>\n");
    EXPECT_EQ(draw("DIR/empty.xml"),
              (ProgramEnd{0, "DIR/out.svg: the figure has no strokes; an empty document\n", ""}));
    EXPECT_EQ(place.content("out.svg").find("<path"), std::string::npos);
}

TEST_F(HostDraw, LeavesOutAPathThatIsNotFinite)
{
    place.file(
        "far.xml",
        "<vant><shape><line><start x=\"-1e300\" y=\"0\"/><end x=\"0\" y=\"0\"/></line></shape></vant>\n");
    EXPECT_EQ(draw("DIR/far.xml", {"--trace", "DIR/trace.jsonl"}),
              (ProgramEnd{0, "DIR/out.svg: 0 new paths\n",
                          "vant-host: note: path 0 has a coordinate that is not a finite number and is left "
                          "out\n"}));
    EXPECT_EQ(
        host_app_test::path_lines_of(place.content("trace.jsonl")),
        (std::vector<std::string>{
            R"({"call":"NewArt","path":0})",
            R"({"call":"SetPathSegments","path":0,"index":0,"p":["-inf",0],"in":["-inf",0],"out":["-inf",0],"corner":true})",
            R"({"call":"SetPathSegments","path":0,"index":1,"p":[0,0],"in":[0,0],"out":[0,0],"corner":true})"}));
}

TEST_F(HostDraw, TellsOfFivePathsThatItLeavesOutAndCountsTheRest)
{
    std::string figure;
    for (int i = 0; i < 8; ++i)
        figure += "<shape><line><start x=\"1e300\" y=\"0\"/><end x=\"0\" y=\"0\"/></line></shape>";
    place.file("far.xml", "<vant>" + figure + "</vant>\n");
    const ProgramEnd end = draw("DIR/far.xml");
    EXPECT_EQ(end.output, "DIR/out.svg: 0 new paths\n");
    EXPECT_EQ(host_app_test::lines_of(end.errors).size(), 6U);
    EXPECT_TRUE(end.errors.ends_with("vant-host: note: and 3 more like these\n")) << end.errors;
}

TEST_F(HostDraw, TracesTheCallsOfTheDrawing)
{
    ASSERT_EQ(draw("DIR/line.xml", {"--trace", "DIR/trace.jsonl"}).status, 0);
    EXPECT_EQ(place.content("trace.jsonl"),
              R"({"call":"AcquireSuite","name":"AI Document View Suite","version":1010}
{"call":"AcquireSuite","name":"AI Grid Suite","version":1003}
{"call":"AcquireSuite","name":"AI Art Suite","version":1015}
{"call":"AcquireSuite","name":"AI Path Suite","version":1009}
{"call":"AcquireSuite","name":"AI Layer Suite","version":1011}
{"call":"AcquireSuite","name":"AI Document Suite","version":1012}
{"call":"GetNthDocumentView","number":0}
{"call":"GetCurrentLayer"}
{"call":"GetFirstArtOfLayer"}
{"call":"NewArt","path":0}
{"call":"SetPathSegments","path":0,"index":0,"p":[0,0],"in":[0,0],"out":[0,0],"corner":true}
{"call":"SetPathSegments","path":0,"index":1,"p":[100,-50],"in":[100,-50],"out":[100,-50],"corner":true}
)");
}

TEST_F(HostDraw, JoinsAnAnswerOfManyLinesWhenItIsToldTo)
{
    const std::string pretty = VNT_ANSWERS "/every_primitive.pretty.xml";
    ASSERT_EQ(draw(VNT_ANSWERS "/every_primitive.xml").status, 0);
    const std::string drawn = place.content("out.svg");
    EXPECT_EQ(draw(pretty).status, 1);
    EXPECT_EQ(draw(pretty, {"--join"}), (ProgramEnd{0, "DIR/out.svg: 27 new paths\n", ""}));
    EXPECT_EQ(place.content("out.svg"), drawn);
}

// Within a tolerance of 60 points the second line begins where the first ends, and the point between goes.
TEST_F(HostDraw, WeldsWithinItsTolerance)
{
    place.file("gap.xml", "<vant><shape><open_free_curve><bezier_curve>"
                          "<control_point x=\"0\" y=\"0\"/><control_point x=\"10\" y=\"0\"/>"
                          "<control_point x=\"20\" y=\"0\"/><control_point x=\"30\" y=\"0\"/>"
                          "<control_point x=\"80\" y=\"0\"/><control_point x=\"90\" y=\"0\"/>"
                          "<control_point x=\"95\" y=\"0\"/><control_point x=\"99\" y=\"0\"/>"
                          "</bezier_curve></open_free_curve></shape></vant>\n");
    const auto segments = [&](const Arguments& arguments) {
        Arguments all = {"--trace", "DIR/trace.jsonl"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        EXPECT_EQ(draw("DIR/gap.xml", all).status, 0);
        return host_app_test::paths_of(place.content("trace.jsonl")).at(0).size();
    };
    EXPECT_EQ(segments({}), 4U); // two curves and the straight one between them
    EXPECT_EQ(segments({"--tolerance", "49"}), 4U);
    EXPECT_EQ(segments({"--tolerance", "51"}), 3U);
    EXPECT_EQ(segments({"--tolerance=-51"}), 3U);
}

TEST_F(HostDraw, EndsAnEndlessArcWhenTheTimeIsUp)
{
    place.file("arc.xml", "<vant><shape><circular_arc><center x=\"0\" y=\"0\"/><radius>50</radius>"
                          "<angle start=\"0\" end=\"1\"/></circular_arc></shape></vant>\n");
    place.file("out.svg", "an older drawing");
    EXPECT_EQ(
        draw("DIR/arc.xml", {"--tolerance", "0", "--timeout", "1"}),
        (ProgramEnd{4, "",
                    "vant-host: the time of --timeout is up; DIR/out.svg is as it was; give it more time, or "
                    "leave --timeout out\n"}));
    EXPECT_EQ(place.content("out.svg"), "an older drawing");
}

TEST_F(HostDraw, ShowsOnATerminalThatItReads)
{
    place.file("arc.xml", "<vant><shape><circular_arc><center x=\"0\" y=\"0\"/><radius>50</radius>"
                          "<angle start=\"0\" end=\"1\"/></circular_arc></shape></vant>\n");
    const ProgramEnd end =
        place.run({"draw", "DIR/arc.xml", "-o", "DIR/out.svg", "--tolerance", "0", "--timeout", "1.6"},
                  {true, Stream::piped, Stream::terminal, {}});
    EXPECT_EQ(end.status, 4);
    EXPECT_NE(end.errors.find("\r\033[Kvant-host: reading the answer, 1 s"), std::string::npos) << end.errors;
}

TEST_F(HostDraw, EndsWhereTheMemoryIsUsedUp)
{
    if (support::kSanitized)
        GTEST_SKIP() << "a sanitizer's address space cannot be limited";
    place.file("turns.xml", "<vant><shape><circular_arc><center x=\"0\" y=\"0\"/><radius>50</radius>"
                            "<angle start=\"0\" end=\"628318530\"/></circular_arc></shape></vant>\n");
    EXPECT_EQ(draw("DIR/turns.xml", {"--memory", "300"}),
              (ProgramEnd{
                  1, "",
                  "vant-host: not enough memory to draw DIR/turns.xml; DIR/out.svg was not made; allow more "
                  "with --memory, or draw a smaller figure\n"}));
    EXPECT_FALSE(place.has("out.svg"));
}

TEST_F(HostDraw, NeedsNoStandardStreams)
{
    for (const Stream output : {Stream::piped, Stream::closed}) {
        const ProgramEnd end =
            place.run({"draw", "DIR/line.xml", "-o", "DIR/out.svg"}, {false, output, Stream::closed, {}});
        EXPECT_EQ(end.status, 0);
        EXPECT_EQ(place.content("out.svg"), kNewDocument);
    }
}

// ------------------------------------------------------------------------------------------ what cannot be done

struct FailureCase {
    const char* name;
    const char* arguments;
    int status;
    std::string errors;
};

const FailureCase kFailures[] = {
    {"NoCommand",                         "",                                                        2, "vant-host: no command; nothing was done; vant-host --help lists the commands\n"},
    {"AnOptionThatThereIsNot",            "run DIR/small.svg -o DIR/out.svg --fast",                 2,
     "vant-host: unknown option --fast; nothing was done; vant-host run --help lists the options\n"                                                                                     },
    {"AnArtworkThatThereIsNot",           "run DIR/missing.svg -o DIR/out.svg",                      1,
     "vant-host: cannot read the artwork DIR/missing.svg: No such file or directory; DIR/out.svg was not "
     "made; "
     "name an SVG file that can be read\n"                                                                                                                                              },
    {"AnArtworkThatIsAFolder",            "run DIR/folder -o DIR/out.svg",                           1,
     "vant-host: cannot read the artwork DIR/folder: Is a directory; DIR/out.svg was not made; name an SVG "
     "file "
     "that can be read\n"                                                                                                                                                               },
    {"AnArtworkThatIsNoMarkup",           "run DIR/hello.txt -o DIR/out.svg",                        1,
     "vant-host: cannot read DIR/hello.txt as SVG: line 1, column 1: text stands outside the outermost "
     "element; DIR/out.svg was not made; mend it, or save it again from a drawing program\n"                                                                                            },
    {"AnArtworkThatIsNoDrawing",          "run DIR/page.html -o DIR/out.svg",                        1,
     "vant-host: cannot read DIR/page.html as SVG: its outermost element is <html>, which is not SVG's; "
     "DIR/out.svg was not made; choose an SVG file\n"                                                                                                                                   },
    {"AnArtworkToDrawIntoThatThereIsNot", "draw DIR/line.xml --into DIR/missing.svg -o DIR/out.svg", 1,
     "vant-host: cannot read the artwork DIR/missing.svg: No such file or directory; DIR/out.svg was not "
     "made; "
     "name an SVG file that can be read\n"                                                                                                                                              },
    {"AnAnswerThatThereIsNot",            "draw DIR/missing.xml -o DIR/out.svg",                     1,
     "vant-host: cannot read the answer file DIR/missing.xml: No such file or directory; DIR/out.svg was not "
     "made; "
     "name a file that can be read\n"                                                                                                                                                   },
    {"AnAnswerThatTheLinkRefuses",        "draw DIR/open.xml -o DIR/out.svg",                        1,
     "vntClientCom( 203 ) : can't accept\nvant-host: the link refuses the answer DIR/open.xml (its reason "
     "stands "
     "above); DIR/out.svg was not made; docs/protocol.md says what an answer is\n"                                                                                                      },
    {"AFolderThatThereIsNot",             "draw DIR/line.xml -o DIR/missing/out.svg",                1,
     "vant-host: cannot write DIR/missing/out.svg: No such file or directory; DIR/missing/out.svg was not "
     "made; choose another file with -o\n"                                                                                                                                              },
    {"AFolderAsTheFile",                  "draw DIR/line.xml -o DIR/folder",                         1,
     "vant-host: cannot write DIR/folder: Is a directory; DIR/folder is as it was; choose another "
     "file with -o\n"                                                                                                                                                                   },
    {"AFullDisk",                         "draw DIR/line.xml -o /dev/full",                          1,
     "vant-host: cannot write /dev/full: No space left on device; /dev/full is as it was; free space, or "
     "choose "
     "another file with -o\n"                                                                                                                                                           },
    {"ATraceOnAFullDisk",                 "draw DIR/line.xml -o DIR/out.svg --trace /dev/full",      1,
     "vant-host: cannot go on with the trace /dev/full: No space left on device; its last line may be "
     "missing; "
     "DIR/out.svg was not made; free space, or leave --trace out\n"                                                                                                                     },
    {"ATraceThatIsAFolder",               "draw DIR/line.xml -o DIR/out.svg --trace DIR/folder",     1,
     "vant-host: cannot write the trace DIR/folder: Is a directory; DIR/out.svg was not made; name a file "
     "that can be written with --trace\n"                                                                                                                                               },
    {"ATraceOverTheFileToWrite",          "draw DIR/line.xml -o DIR/out.svg --trace DIR/./out.svg",  2,
     "vant-host: cannot write the trace to DIR/./out.svg, which the command needs itself; DIR/out.svg was "
     "not "
     "made; name another file with --trace\n"                                                                                                                                           },
    {"ATraceOverTheAnswer",               "draw DIR/line.xml -o DIR/out.svg --trace DIR/line.xml",   2,
     "vant-host: cannot write the trace to DIR/line.xml, which the command needs itself; DIR/out.svg was not "
     "made; "
     "name another file with --trace\n"                                                                                                                                                 },
    {"ATraceOverTheArtworkToDrawInto",
     "draw DIR/line.xml --into DIR/small.svg -o DIR/out.svg --trace DIR/small.svg",                  2,
     "vant-host: cannot write the trace to DIR/small.svg, which the command needs itself; DIR/out.svg was "
     "not "
     "made; name another file with --trace\n"                                                                                                                                           },
    {"ASketchOverTheArtwork",             "run DIR/small.svg -o DIR/out.svg --art DIR/small.svg",    2,
     "vant-host: cannot write the sketch to DIR/small.svg, which the command needs itself; DIR/out.svg was "
     "not "
     "made; name another file with --art\n"                                                                                                                                             },
    {"ATraceOverTheArtwork",              "run DIR/small.svg -o DIR/out.svg --trace DIR/small.svg",  2,
     "vant-host: cannot write the trace to DIR/small.svg, which the command needs itself; DIR/out.svg was "
     "not "
     "made; name another file with --trace\n"                                                                                                                                           },
};

class Failures : public testing::TestWithParam<FailureCase> {
protected:
    Workplace place;
};

TEST_P(Failures, AreToldAndHarmNothing)
{
    place.file("hello.txt", "hello\n");
    place.file("page.html", "<html/>");
    place.file("open.xml", "<vant><shape>\n");
    std::filesystem::create_directory(place.path("folder"));
    const std::set<std::string> before = place.names();
    EXPECT_EQ(place.run(host_app_test::words(GetParam().arguments)),
              (ProgramEnd{GetParam().status, "", GetParam().errors}));
    EXPECT_EQ(place.names(), before);
    EXPECT_EQ(place.content("small.svg"), kSmallArtwork);
    EXPECT_EQ(place.content("line.xml"), host_app_test::kLineAnswer);
    EXPECT_TRUE(std::filesystem::is_empty(place.path("folder")));
}

INSTANTIATE_TEST_SUITE_P(, Failures, testing::ValuesIn(kFailures),
                         [](const auto& row) { return row.param.name; });

// ------------------------------------------------------------------------------------------------ help

struct HelpCase {
    const char* name;
    Arguments arguments;
    std::string first_line;
};

const HelpCase kHelp[] = {
    {"OfTheProgram",       {"--help"},                kUsage + "run ARTWORK.svg -o OUT.svg [OPTION]..."},
    {"OfTheProgramShort",  {"-h"},                    kUsage + "run ARTWORK.svg -o OUT.svg [OPTION]..."},
    {"OfACommand",         {"draw", "--help"},        kUsage + "draw ANSWER.xml -o OUT.svg [OPTION]..."},
    {"OfACommandByName",   {"help", "draw"},          kUsage + "draw ANSWER.xml -o OUT.svg [OPTION]..."},
    {"BehindOtherOptions", {"run", "--strict", "-h"}, kUsage + "run ARTWORK.svg -o OUT.svg [OPTION]..."},
};

class Help : public testing::TestWithParam<HelpCase> {};

TEST_P(Help, IsPrinted)
{
    const ProgramEnd end = host_app_test::run_host(GetParam().arguments);
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.errors, "");
    EXPECT_EQ(host_app_test::lines_of(end.output).at(0), GetParam().first_line);
}

INSTANTIATE_TEST_SUITE_P(, Help, testing::ValuesIn(kHelp), [](const auto& row) { return row.param.name; });

TEST(Version, IsPrinted)
{
    EXPECT_EQ(host_app_test::run_host({"--version"}), (ProgramEnd{0, "vant-host " VNT_VERSION "\n", ""}));
    EXPECT_EQ(host_app_test::run_host({"run", "--version"}),
              (ProgramEnd{0, "vant-host " VNT_VERSION "\n", ""}));
}

} // namespace
