// The window in its looks, and the pictures of it that the documents show.
#include "tests/sketch_app/shown_window.h"

#include <gtest/gtest.h>

#include <QFileInfo>

#include <cstdlib>

namespace {

using namespace sketch_app_test;

constexpr qint64 kMostBytes = 150000;

struct LookCase {
    const char* name;
    ColourChoice colours;
    const char* file;
    QRgb sheet; // its colour
};
const LookCase kLooks[] = {
    {"Light",        ColourChoice::light,            "sketch-light.png",    qRgb(255, 255, 255)},
    {"Dark",         ColourChoice::dark,             "sketch-dark.png",     qRgb(37,  40,  46) },
    {"HighContrast", ColourChoice::highContrastDark, "sketch-contrast.png", qRgb(0,   0,   0)  },
};

Vec2 onSheet(SketchCanvas& canvas, double x, double y)
{
    const QPointF at = canvas.sheetToWidget().map(QPointF(x, y));
    return {at.x(), at.y()};
}

void drawBoat(ShownWindow& shown)
{
    SketchCanvas& canvas = shown.window.canvas();
    const auto at = [&canvas](double x, double y) { return onSheet(canvas, x, y); };
    canvas.setTool(Tool::line);
    shown.draw(linePath(at(330, 480), at(690, 480)));
    canvas.takeOffered();
    shown.draw(linePath(at(500, 470), at(500, 190)));
    canvas.takeOffered();
    canvas.setTool(Tool::circle);
    shown.draw(circlePath(at(790, 190), 62));
    canvas.takeOffered();
    canvas.setTool(Tool::pen);
    Path hull;
    for (int i = 0; i <= 60; ++i) {
        const double t = i / 60.0;
        hull.push_back(at(330 + 360 * t, 480 + 95 * std::sin(t * 3.14159)));
    }
    shown.draw(hull);
    Path sail;
    for (int i = 0; i <= 60; ++i) {
        const double t = i / 60.0;
        sail.push_back(at(508 + 150 * std::sin(t * 3.14159) * (1 - 0.3 * t), 200 + 255 * t));
    }
    shown.draw(sail);
    Path waves;
    for (int i = 0; i <= 120; ++i)
        waves.push_back(at(130 + 6.4 * i, 610 + 14 * std::sin(i / 5.0)));
    shown.draw(waves);
}

class WindowLooks : public testing::TestWithParam<LookCase> {};

// VNT_SKETCH_PICTURES: the folder of the pictures, which tools/update-picture sets.
TEST_P(WindowLooks, ShowTheSheetAndTheEditorThatWaits)
{
    const WindowFiles files;
    ShownWindow shown(files);
    Settings settings = shown.window.settings();
    settings.colours = GetParam().colours;
    settings.motion = MotionChoice::reduced; // the ink has faded at once
    shown.window.applySettings(settings);
    shown.window.resize(1180, 860); // whatever screen there is
    runDueEvents();
    ScriptedEditor editor(shown.port());
    ASSERT_TRUE(editor.send(requestLine()));
    ASSERT_TRUE(runUntil([&] { return shown.window.session().editorWaits(); }));
    runDueEvents();
    drawBoat(shown);
    shown.window.canvas().offerReadings(shown.model().document().strokes()[3]->id);
    runDueEvents();

    const QImage picture = shown.window.grab().toImage();
    const char* const asked = std::getenv("VNT_SKETCH_PICTURES");
    const QString file = (asked == nullptr ? files.path("") : QString(asked) + "/") + GetParam().file;
    ASSERT_TRUE(picture.convertToFormat(QImage::Format_RGB888).save(file));
    EXPECT_LT(QFileInfo(file).size(), kMostBytes);
    const QPoint corner = shown.window.canvas().mapTo(&shown.window, QPoint());
    const QPointF blank = shown.window.canvas().sheetToWidget().map(QPointF(30, 30));
    EXPECT_EQ(picture.pixel(corner + blank.toPoint()), GetParam().sheet);
}
INSTANTIATE_TEST_SUITE_P(, WindowLooks, testing::ValuesIn(kLooks),
                         [](const auto& row) { return row.param.name; });

} // namespace
