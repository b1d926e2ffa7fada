// A sketch from the editor's menu to its art, with the keyboard and mouse of a person.
#include "tests/editor/real/editor.h"
#include "tests/editor/real/saved_drawing.h"
#include "tests/editor/real/sketch_application.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <optional>

namespace {

using namespace real_editor_test;
using Files = std::vector<std::string>;

const std::string kAnswer =
    "<vant><shape><line><start x=\"30.0\" y=\"-30.0\" z=\"0.0\"/><end x=\"90.0\" y=\"-60.0\" "
    "z=\"0.0\"/></line></shape></vant>";

constexpr const char* kNothing = "<vant></vant>"; // was drawn

// As the editor itself would save it. Two layers, of which the lower one is the current one.
constexpr const char* kDrawing =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="no"?>
<svg id="root" width="600" height="400" xmlns="http://www.w3.org/2000/svg"
   xmlns:inkscape="http://www.inkscape.org/namespaces/inkscape"
   xmlns:sodipodi="http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd">
  <defs id="defs"/>
  <sodipodi:namedview id="view" showgrid="true" inkscape:zoom="1" inkscape:cx="300" inkscape:cy="200"
     inkscape:window-width="1100" inkscape:window-height="800" inkscape:window-maximized="0"
     inkscape:current-layer="lower">
    <inkscape:grid type="xygrid" id="grid" spacingx="12" spacingy="12" empspacing="4"/>
  </sodipodi:namedview>
  <g id="lower" inkscape:groupmode="layer" inkscape:label="lower"><rect id="r1" width="40" height="30"/></g>
  <g id="upper" inkscape:groupmode="layer" inkscape:label="upper"><rect id="r2" x="50" width="40" height="30"/></g>
</svg>
)";
constexpr const char* kAlready = "A sketch is going on in VANT already for ";
const std::string kHowToPlace =
    "Go to the document of the sketch and choose Extensions > View Utilities > Place VANT sketch.\n";
constexpr const char* kOtherDrawing =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="no"?>
<svg id="another" width="600" height="400" xmlns="http://www.w3.org/2000/svg">
  <defs id="d"/><circle id="c" cx="100" cy="100" r="50"/>
</svg>
)";

class SketchInEditor : public testing::Test {
protected:
    void SetUp() override
    {
        if (const std::string missing = Desktop::missing(); !missing.empty())
            GTEST_SKIP() << missing;
        desktop = std::make_unique<Desktop>();
        desktop->file("one.svg", kDrawing);
        application.emplace();
    }

    void TearDown() override
    {
        if (!desktop || !HasFailure())
            return;
        const std::string name = testing::UnitTest::GetInstance()->current_test_info()->name();
        const std::string picture = std::string(VNT_FAILURES) + "/" + name + ".png";
        std::filesystem::create_directories(VNT_FAILURES);
        desktop->save_picture(picture);
        std::cerr << "the screen at the end: " << picture << "\nthe log:\n" << desktop->log();
    }

    void open()
    {
        editor.emplace(*desktop, Files{desktop->path("one.svg")});
        window = editor->window_of("one.svg");
    }

    // Opens one.svg, chooses Start VANT, and waits until the sketch application has been asked.
    void begin()
    {
        open();
        editor->choose_start();
        application->take_request();
    }

    Change change() const { return change_between(kDrawing, editor->drawing(), View::ignored); }

    void wait_until_placed() const
    {
        wait_until("the art in the document", [this] { return desktop->placed().size() == 1; });
        desktop->wait_for_the_sketch_to_end();
    }

    std::unique_ptr<Desktop> desktop;
    std::optional<SketchApplication> application; // that listens
    std::optional<Editor> editor;
    EditorWindow window;
};

TEST_F(SketchInEditor, IsOneStepThatCanBeUndone)
{
    begin();
    application->send(kAnswer);
    wait_until_placed();
    EXPECT_EQ(change(), paths_in("lower", 1));
    const std::string with_art = editor->drawing();
    editor->run_document_action(1, "undo");
    EXPECT_EQ(change(), Change());
    editor->run_document_action(1, "redo");
    EXPECT_EQ(change_between(with_art, editor->drawing(), View::ignored), Change());
    EXPECT_TRUE(editor->is_in_front());
    EXPECT_EQ(editor->dialogs().size(), 0U);
}

TEST_F(SketchInEditor, LeavesTheEditorToThePersonWhileItGoesOn)
{
    begin();
    EXPECT_TRUE(editor->answers());
    editor->draw_rectangle(window);
    wait_until("the rectangle", [&] { return change() == Change{"", {"lower/rect"}}; });
    application->send(kAnswer);
    wait_until_placed();
    EXPECT_EQ(change(), (Change{
                            "", {"lower/rect", "lower/path"}
    }));
    editor->run_document_action(1, "undo");
    EXPECT_EQ(change(), (Change{"", {"lower/rect"}}));
}

TEST_F(SketchInEditor, GoesIntoTheLayerThatWasCurrentAtTheStart)
{
    begin();
    // What is selected last makes its layer the current one; a change, so that there is something to save.
    editor->run_application_action("select-clear");
    editor->run_application_action("select-by-id", "'r2'");
    editor->run_application_action("object-flip-horizontal");
    EXPECT_NE(editor->save(window, desktop->path("one.svg")).find("inkscape:current-layer=\"upper\""),
              std::string::npos);
    application->send(kAnswer);
    wait_until_placed();
    EXPECT_EQ(change().added, paths_in("lower", 1).added);
}

TEST_F(SketchInEditor, IsOneAtATime)
{
    begin();
    editor->choose_start();
    const std::string said = editor->read_dialog();
    const std::string expected =
        kAlready + desktop->path("one.svg") +
        ". Finish it there with Send, or cancel it, and choose Start VANT again. If it "
        "does not answer any more, this ends it: kill -- -";
    EXPECT_EQ(said.substr(0, expected.size()), expected);
    EXPECT_GT(std::stoi(said.substr(expected.size())), 1);
    EXPECT_FALSE(application->is_asked());
    application->send(kAnswer);
    wait_until_placed();
    EXPECT_EQ(change(), paths_in("lower", 1));
}

TEST_F(SketchInEditor, ThatIsRefusedIsTold)
{
    open();
    editor->choose_start();
    application->refuse();
    EXPECT_EQ(
        editor->read_dialog(),
        "the plug-in ended with an alert (VANT Information: Unable to start VANT); the drawing is as it was; "
        "look at what the sketch application says, and try again\n");
    desktop->wait_for_the_sketch_to_end();
    EXPECT_EQ(editor->dialogs().size(), 0U);
    EXPECT_EQ(change(), Change());
}

struct OtherDocumentCase {
    const char* name;
    const char* content;
    std::string dialog;
};
const OtherDocumentCase kOtherDocuments[] = {
    {"AnotherDrawing", kOtherDrawing,
     "The sketch has come back, but this is another document than the one where it began. It is kept. " +
         kHowToPlace},
    {"ACopy",          kDrawing,
     "The sketch has come back, but it is not certain that this is the document where it began. It is "
     "kept. " +
         kHowToPlace},
};
class SketchBesideAnother : public SketchInEditor, public testing::WithParamInterface<OtherDocumentCase> {};
TEST_P(SketchBesideAnother, IsKeptWhenThatIsInFront)
{
    const std::string two = desktop->file("two.svg", GetParam().content);
    editor.emplace(*desktop, Files{desktop->path("one.svg"), two});
    window = editor->window_of("one.svg");
    const EditorWindow other = editor->window_of("two.svg");
    editor->bring_to_front(window);
    editor->choose_start();
    application->take_request();
    editor->bring_to_front(other);
    application->send(kAnswer);
    EXPECT_EQ(editor->read_dialog(), GetParam().dialog);
    desktop->wait_for_the_sketch_to_end();
    EXPECT_EQ(desktop->kept().size(), 1U);
    EXPECT_EQ(editor->save(other, two), GetParam().content);

    editor->bring_to_front(window);
    EXPECT_EQ(change(), Change());
    editor->choose_place();
    wait_until("the art", [&] { return change() == paths_in("lower", 1); });
    EXPECT_EQ(desktop->kept(), Files());
    EXPECT_EQ(desktop->placed().size(), 1U);
    EXPECT_EQ(editor->save(other, two), GetParam().content);
}
INSTANTIATE_TEST_SUITE_P(, SketchBesideAnother, testing::ValuesIn(kOtherDocuments),
                         [](const auto& row) { return row.param.name; });

TEST_F(SketchInEditor, IsKeptWhenTheEditorHasEnded)
{
    begin();
    editor->quit();
    application->send(kAnswer);
    desktop->wait_for_the_sketch_to_end();
    EXPECT_EQ(desktop->kept().size(), 1U);
    open();
    editor->choose_place();
    wait_until("the art", [&] { return change() == paths_in("lower", 1); });
    EXPECT_EQ(desktop->kept(), Files());
}

TEST_F(SketchInEditor, IsOfferedAtTheNextStartAndOnce)
{
    begin();
    editor->quit();
    application->send(kAnswer);
    desktop->wait_for_the_sketch_to_end();
    ASSERT_EQ(desktop->kept().size(), 1U);
    for (const bool is_offered : {true, false}) {
        open();
        editor->choose_start();
        if (is_offered) {
            EXPECT_EQ(editor->read_dialog(),
                      "A sketch that could not be placed is kept (" + desktop->kept().front() +
                          "). Extensions > View Utilities > Place VANT sketch puts it into the "
                          "current layer.\n");
        }
        application->take_request();
        EXPECT_EQ(editor->dialogs().size(), 0U);
        application->send(kNothing);
        desktop->wait_for_the_sketch_to_end();
        editor->quit();
    }
    EXPECT_EQ(desktop->content("one.svg"), kDrawing);
}

TEST_F(SketchInEditor, ComesToTheEditorThatBeganIt)
{
    begin();
    const std::string two = desktop->file("two.svg", kDrawing);
    const Editor other(*desktop, Files{two}, "other");
    EXPECT_TRUE(other.is_in_front());
    application->send(kAnswer);
    wait_until_placed();
    EXPECT_EQ(change(), paths_in("lower", 1));
    EXPECT_EQ(other.save(other.window_of("two.svg"), two), kDrawing);
    EXPECT_TRUE(editor->is_in_front());
}

TEST_F(SketchInEditor, WithoutASketchApplicationSaysWhereToGetOne)
{
    application.reset();
    open();
    editor->choose_start();
    EXPECT_EQ(
        editor->read_dialog(),
        "There is no sketch application: none listens on 127.0.0.1:4910, and vant-sketch is not installed. "
        "Install the package vant-sketch, or start your sketch application, and choose Start VANT again.\n");
    desktop->wait_for_the_sketch_to_end();
    EXPECT_EQ(change(), Change());
}

TEST_F(SketchInEditor, StartsTheSketchApplicationThatIsInstalled)
{
    application.reset();
    desktop->add_program("bin/vant-sketch", "exec " VNT_PEER_PROGRAM " --timeout 60 --answer " +
                                                desktop->file("answer.xml", kAnswer + "\n"));
    open();
    editor->choose_start();
    wait_until_placed();
    EXPECT_EQ(change(), paths_in("lower", 1));
}

TEST_F(SketchInEditor, TellsTheSketchApplicationThatItStartsHowTheSheetIsTurned)
{
    application.reset();
    desktop->add_program("bin/vant-sketch", "echo \"$@\" >" + desktop->path("arguments") +
                                                "\nexec " VNT_PEER_PROGRAM " --timeout 60 --answer " +
                                                desktop->file("answer.xml", kAnswer + "\n"));
    open();
    editor->run_window_action(window, "canvas-rotate-cw"); // by the 15 degrees of its settings
    editor->choose_start();
    wait_until_placed();
    EXPECT_EQ(desktop->content("arguments"), "--sheet-rotation 15\n");
    EXPECT_EQ(change(), paths_in("lower", 1));
}

TEST_F(SketchInEditor, ComesToADocumentThatWasNeverSaved)
{
    open();
    editor->run_window_action(window, "document-new");
    const EditorWindow created = editor->window_of("New document 1");
    editor->bring_to_front(created);
    const std::string before = editor->drawing();
    editor->choose_start();
    application->take_request();
    editor->draw_rectangle(created);
    wait_until("the rectangle", [&] { return editor->drawing().find("<rect") != std::string::npos; });
    application->send(kAnswer);
    wait_until_placed();
    EXPECT_EQ(change_between(before, editor->drawing(), View::ignored),
              (Change{
                  "", {"layer1/rect", "layer1/path"}
    }));
    editor->bring_to_front(window);
    EXPECT_EQ(change(), Change());
}

// An extension of somebody who likes it better so.
constexpr const char* kWaitingExtension = R"(<?xml version="1.0" encoding="UTF-8"?>
<inkscape-extension xmlns="http://www.inkscape.org/namespace/inkscape/extension">
  <name>Start VANT and wait</name>
  <id>org.vant.wait</id>
  <effect needs-live-preview="false" implements-custom-gui="true">
    <object-type>all</object-type>
    <effects-menu><submenu name="View Utilities"/></effects-menu>
  </effect>
  <script><command location="inx">vant-wait</command></script>
</inkscape-extension>
)";
TEST_F(SketchInEditor, MayBeWaitedFor)
{
    desktop->file("profile/extensions/vant/vant-wait.inx", kWaitingExtension);
    desktop->add_program("profile/extensions/vant/vant-wait",
                         "exec " VNT_HOST_PROGRAM " extension --wait \"$@\"");
    open();
    editor->choose_last();
    application->take_request();
    EXPECT_FALSE(editor->answers());
    application->send(kAnswer);
    wait_until_placed();
    EXPECT_TRUE(editor->answers());
    EXPECT_EQ(change(), paths_in("lower", 1));
    editor->run_document_action(1, "undo");
    EXPECT_EQ(change(), Change());
    EXPECT_EQ(editor->dialogs().size(), 0U);
}

struct RequestCase {
    const char* name;
    std::vector<std::string> actions; // of the window, before the sketch begins
    std::vector<std::string> parts;   // of the request
};
const RequestCase kRequests[] = {
    {"TheWindowsOwnZoom",
     {"canvas-zoom-2-1"},
     {R"(<viewport_space_to_model_space_mapping_matrix m00="0.375" )"}},
    {"TheDocumentsGridWhileTheEditorSnapsToIt",
     {"snap-global-toggle"},
     {R"(<unit_grid_space_to_model_space_mapping_matrix m00="9" )",
      "<derivational_scale_factor>4</derivational_scale_factor>"}     },
    {"NoGridWhileTheEditorDoesNotSnap",
     {},
     {R"(<unit_grid_space_to_model_space_mapping_matrix m00="50" )",
      "<derivational_scale_factor>2</derivational_scale_factor>"}     },
};
class RequestOfTheEditor : public SketchInEditor, public testing::WithParamInterface<RequestCase> {};
TEST_P(RequestOfTheEditor, TellsOf)
{
    open();
    ASSERT_FALSE(editor->window_state(window, "snap-global-toggle"));
    for (const std::string& action : GetParam().actions)
        editor->run_window_action(window, action);
    editor->choose_start();
    const std::string request = application->take_request();
    for (const std::string& part : GetParam().parts)
        EXPECT_NE(request.find(part), std::string::npos) << part << "\nis not in " << request;
    application->send(kNothing);
    desktop->wait_for_the_sketch_to_end();
    EXPECT_EQ(editor->dialogs().size(), 0U);
}
INSTANTIATE_TEST_SUITE_P(, RequestOfTheEditor, testing::ValuesIn(kRequests),
                         [](const auto& row) { return row.param.name; });

} // namespace
