// A main window on no screen, with files of its own, a link on a free port, and the hand that draws in it.
#pragma once

#include "sketch/app/link_panel.h"
#include "sketch/app/main_window.h"
#include "sketch/app/notice_area.h"
#include "sketch/app/sketch_canvas.h"
#include "sketch/app/status_panel.h"
#include "sketch/app/translations.h"
#include "tests/sketch_app/canvas_hand.h"
#include "tests/sketch_app/scripted_editor.h"
#include "tests/support/temporary_folder.h"

#include <QAction>
#include <QPushButton>

namespace sketch_app_test {

struct WindowFiles {
    support::TemporaryFolder folder;

    WindowSetup setup() const
    {
        WindowSetup setup;
        setup.settingsFile = path("settings.ini");
        setup.journalFolder = path("sketches");
        setup.logFile = path("log");
        setup.port = 0;
        return setup;
    }
    QString path(const std::string& name) const { return QString::fromStdString(folder.path(name)); }
};

class ShownWindow {
public:
    explicit ShownWindow(const WindowFiles& files) : ShownWindow(files.setup()) {}
    explicit ShownWindow(const WindowSetup& setup) : window(setup)
    {
        window.begin();
        window.show();
        runDueEvents();
    }

    SketchModel& model() { return window.session().model(); }
    std::size_t count() { return model().document().strokes().size(); }
    quint16 port() { return window.session().link().port(); }

    QAction& action(const char* name) { return *window.findChild<QAction*>(name); }
    void choose(const char* name) { action(name).trigger(); }

    void draw(const Path& path)
    {
        Mouse mouse(window.canvas());
        mouse.draw(path);
    }
    void drawLine() { draw(linePath({100, 100}, {300, 180})); }

    // The sentence of a notice; empty when it is not shown.
    std::string notice(const char* name)
    {
        const NoticeBar* const bar = window.notices().find(name);
        return bar == nullptr ? std::string() : bar->text().toStdString();
    }
    // Presses the button of a notice; false when there is none with that text.
    bool press(const char* name, const QString& text)
    {
        NoticeBar* const bar = window.notices().find(name);
        const auto buttons = bar == nullptr ? QList<QPushButton*>() : bar->findChildren<QPushButton*>();
        for (QPushButton* button : buttons) {
            if (button->text().remove('&') == text) {
                button->click();
                return true;
            }
        }
        return false;
    }

    MainWindow window;
};

} // namespace sketch_app_test
