#include "host/app/editor_options.h"
#include "tests/host_app/host_program.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::host;
using host_app_test::words;

std::string said(const EditorOptions& options)
{
    std::string text = options.document;
    const auto add = [&](const char* name, const std::optional<std::string>& value) {
        if (value)
            text += std::string(" ") + name + "=" + *value;
    };
    text += options.wait ? " wait" : "";
    if (options.timeout)
        text += " ns=" + std::to_string(options.timeout->count());
    add("launch", options.launch);
    add("plugin", options.plugin);
    add("out", options.out);
    add("art", options.art);
    text += options.user ? " user" : "";
    if (!options.spool.empty())
        text += options.spool + " lock=" + std::to_string(options.lock) + " editor=" + options.editor;
    return text;
}

struct OptionsCase {
    const char* name;
    const char* command;
    const char* arguments;
    EditorCommand chosen;
    const char* read;
};
// clang-format off
const OptionsCase kOptions[] = {
    {"ADocument", "extension", "a.svg", EditorCommand::extension, "a.svg"},
    {"SelectedObjects", "extension", "--id=r1 --id=r2 a.svg", EditorCommand::extension, "a.svg"},
    {"SelectedNodes", "extension", "--id=p --selected-nodes=p:0:2 --selected-nodes=p:0:1 a.svg",
     EditorCommand::extension, "a.svg"},
    {"SelectedNodesForPlace", "place", "--id=p --selected-nodes=p:0:2 a.svg", EditorCommand::place, "a.svg"},
    {"Wait", "extension", "--wait --launch vant-sketch --plugin p.so a.svg", EditorCommand::extension,
     "a.svg wait launch=vant-sketch plugin=p.so"},
    {"ATimeLimit", "extension", "--timeout 0.5 a.svg", EditorCommand::extension, "a.svg ns=500000000"},
    {"AFileToPlaceInto", "place", "a.svg -o b.svg --art c.svg", EditorCommand::place, "a.svg out=b.svg art=c.svg"},
    {"AList", "place", "--list", EditorCommand::list, ""},
    {"AnAgent", "agent", "spool --lock 7 --editor 4711-9", EditorCommand::agent,
     "spool lock=7 editor=4711-9"},
    {"InstallForAll", "install", "", EditorCommand::install, ""},
    {"UninstallForAUser", "uninstall", "--user", EditorCommand::uninstall, " user"},
    {"Help", "place", "--help", EditorCommand::help, ""},
};
// clang-format on
class EditorOptionsOf : public testing::TestWithParam<OptionsCase> {};
TEST_P(EditorOptionsOf, ACommandLine)
{
    const auto read = read_editor_options(GetParam().command, words(GetParam().arguments));
    ASSERT_TRUE(std::holds_alternative<EditorOptions>(read))
        << std::get<vnt::program::Problem>(read).sentence;
    EXPECT_EQ(std::get<EditorOptions>(read).command, GetParam().chosen);
    EXPECT_EQ(said(std::get<EditorOptions>(read)), GetParam().read);
}
INSTANTIATE_TEST_SUITE_P(, EditorOptionsOf, testing::ValuesIn(kOptions),
                         [](const auto& row) { return row.param.name; });

struct RefusalCase {
    const char* name;
    const char* command;
    const char* arguments;
    const char* sentence;
};
// clang-format off
const RefusalCase kRefusals[] = {
    {"NoDocument", "extension", "--wait",
     "no file to work on; nothing was done; name it, as in vant-host extension drawing.svg"},
    {"TwoDocuments", "place", "a.svg b.svg",
     "unexpected argument b.svg; nothing was done; vant-host place --help tells what there is"},
    {"AnUnknownOption", "install", "--everywhere",
     "unknown option --everywhere; nothing was done; vant-host install --help lists the options"},
    {"AFileForInstall", "install", "a.svg",
     "unexpected argument a.svg; nothing was done; vant-host install --help tells what there is"},
};
// clang-format on
class RefusedEditorOptions : public testing::TestWithParam<RefusalCase> {};
TEST_P(RefusedEditorOptions, SayWhy)
{
    const auto read = read_editor_options(GetParam().command, words(GetParam().arguments));
    ASSERT_TRUE(std::holds_alternative<vnt::program::Problem>(read));
    EXPECT_EQ(std::get<vnt::program::Problem>(read).status, vnt::program::kWrongUsage);
    EXPECT_EQ(std::get<vnt::program::Problem>(read).sentence, GetParam().sentence);
}
INSTANTIATE_TEST_SUITE_P(, RefusedEditorOptions, testing::ValuesIn(kRefusals),
                         [](const auto& row) { return row.param.name; });

} // namespace
