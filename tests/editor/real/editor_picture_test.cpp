// The example answer over the example artwork in the real editor, and the picture of it that the documents show.
#include "tests/editor/real/editor.h"
#include "tests/editor/real/saved_drawing.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace {

using namespace real_editor_test;

constexpr std::size_t kStrokes = 27; // of the answer
constexpr std::uintmax_t kMostBytes = 150000;

// VNT_EDITOR_PICTURE: the file of the picture, which tools/update-picture sets.
TEST(EditorPicture, ShowsTheExampleAnswerOverTheExampleArtwork)
{
    if (const std::string missing = Desktop::missing(); !missing.empty())
        GTEST_SKIP() << missing;
    const Desktop desktop;
    const std::string artwork = support::content_of(VNT_EXAMPLES "/artwork/harbour.svg");
    const Editor editor(desktop, {desktop.file("harbour.svg", artwork)});
    const EditorWindow window = editor.window_of("harbour.svg");
    const std::string before = editor.drawing();
    const auto peer = desktop.start(
        {VNT_PEER_PROGRAM, "--timeout", "100", "--answer", VNT_EXAMPLES "/answers/every_primitive.xml"},
        "peer");
    wait_until("vant-peer", [&] { return peer->output().find('\n') != std::string::npos; });
    editor.choose_start();
    wait_until("the art in the document", [&] { return desktop.placed().size() == 1; });
    desktop.wait_for_the_sketch_to_end();
    EXPECT_EQ(change_between(before, editor.drawing(), View::ignored), paths_in("layer2", kStrokes));

    editor.run_window_action(window, "canvas-show-grid"); // which hides it
    editor.run_window_action(window, "canvas-zoom-page");
    EXPECT_TRUE(editor.answers()); // it has done that, and shown it
    const char* const asked = std::getenv("VNT_EDITOR_PICTURE");
    const std::string picture = asked == nullptr ? desktop.path("inkscape.png") : asked;
    const Ended taken =
        desktop.run({"import", "-window", window.id, "+dither", "-colors", "256", "PNG8:" + picture});
    ASSERT_EQ(taken.status, 0);
    EXPECT_LT(std::filesystem::file_size(picture), kMostBytes);
}

} // namespace
