// The window in each of its languages. English comes first: a language stays under the one that is chosen after it.
#include "tests/sketch_app/shown_window.h"

#include <gtest/gtest.h>

#include <QMenuBar>

#include <map>
#include <string>

namespace {

using namespace sketch_app_test;

struct LanguageCase {
    const char* name;
    const char* language;
    const char* state; // while no editor has asked
    const char* left;  // of the sketch that was left
};
const LanguageCase kLanguages[] = {
    {"English", "en", "Waiting for the editor: choose Start VANT there.",                   " with 1 stroke was not finished."},
    {"German",  "de", "Warten auf das Zeichenprogramm: wählen Sie dort „Start VANT“.",
     " mit 1 Strich wurde nicht fertig."                                                                                      },
};

class Languages : public testing::TestWithParam<LanguageCase> {
protected:
    Languages() { installTranslations(QString::fromLatin1(GetParam().language)); }
};

TEST_P(Languages, AreOfTheWholeWindow)
{
    const WindowFiles files;
    ShownWindow(files).drawLine();
    ShownWindow shown(files);
    EXPECT_EQ(shown.window.linkPanel().stateText().toStdString(), GetParam().state);
    EXPECT_NE(shown.notice("recover").find(GetParam().left), std::string::npos) << shown.notice("recover");
}

// Alt and the underlined letter: a second one with the same letter would take the focus instead of acting.
TEST_P(Languages, UnderlineNoLetterTwice)
{
    const WindowFiles files;
    ShownWindow(files).drawLine();
    ShownWindow shown(files);
    ScriptedEditor editor(shown.port());
    shown.drawLine();
    editor.send(requestLine());
    ASSERT_TRUE(runUntil([&] { return !shown.notice("howToGoOn").empty(); }));
    runDueEvents();
    std::map<std::string, std::string> texts; // of a letter
    const auto note = [&texts](const QString& text) {
        const std::string key = QKeySequence::mnemonic(text).toString().toStdString();
        EXPECT_FALSE(key.empty()) << text.toStdString();
        EXPECT_TRUE(texts.try_emplace(key, text.toStdString()).second)
            << key << " is of " << texts[key] << " and of " << text.toStdString();
    };
    for (const QAction* menu : shown.window.menuBar()->actions())
        note(menu->text());
    for (const QPushButton* button : shown.window.findChildren<QPushButton*>()) {
        if (button->isVisible())
            note(button->text());
    }
    EXPECT_EQ(texts.size(), 11U) << "six menus, three answers to one question, two to the other";
}
INSTANTIATE_TEST_SUITE_P(, Languages, testing::ValuesIn(kLanguages),
                         [](const auto& row) { return row.param.name; });

} // namespace
