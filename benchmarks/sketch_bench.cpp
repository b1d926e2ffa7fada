// The sketch application's canvas: what a frame costs with many strokes on the sheet, what a reading costs,
// and whether memory stays flat over drawing and undoing.
#include "sketch/app/sketch_canvas.h"

#include "benchmarks/support.h"
#include "tests/sketch/drawn_strokes.h"

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

using vnt::sketch::Ink;
using vnt::sketch::Kind;
using vnt::sketch::Path;
using vnt::sketch::Reading;
using vnt::sketch::Sheet;

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr double kFrameTarget_ms = 8;
constexpr double kLongTarget_ms = 250;
constexpr double kReadingTarget_ms = 2;
constexpr double kGrowthTarget_kB = 1024;
constexpr int kNever_ms = 1'000'000'000;
constexpr std::uint64_t kSeed = 11;

Path starOutline()
{
    Path outline;
    for (int i = 0; i < 10; ++i)
        outline.push_back((i % 2 == 0 ? 1.0 : 0.4) * vnt::sketch::unit_at(vnt::sketch::kPi / 5 * i));
    return outline;
}

// Strokes of all sorts, a few letters to a hand in size, all over the sheet; every other one a shape.
class Drawing {
public:
    explicit Drawing(int strokes)
    {
        Sheet sheet;
        sheet.width = kWidth;
        sheet.height = kHeight;
        sheet.grid = vnt::sketch::Grid{
            {10, 0, 0, 10, 0, 0},
            5
        };
        model.setSheet(sheet);
        Seeded seeded(kSeed);
        for (int i = 0; i < strokes; ++i)
            add(i, seeded);
        canvas.resize(kWidth, kHeight);
        CanvasSettings settings;
        settings.reducedMotion = true;
        canvas.setSettings(settings);
        canvas.show();
        while (!canvas.windowHandle()->isExposed())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        canvas.repaint();
    }

    SketchModel model;
    SketchCanvas canvas{model};

private:
    void add(int i, Seeded& seeded)
    {
        static const Path kStar = starOutline();
        static const Path kOval = drawn::ellipse(1, 0.6);
        static const Path kBox = drawn::box(1.6, 1);
        const Path* outlines[] = {&kStar, &kOval, &kBox};
        drawn::Hand hand;
        hand.scale = seeded.between(15, 80);
        hand.at = {seeded.between(40, kWidth - 40), seeded.between(40, kHeight - 40)};
        hand.jitter = 1;
        hand.rotation = seeded.between(0, 3);
        hand.points = 100;
        hand.seed = static_cast<std::uint64_t>(i) + 1;
        Ink ink = drawn::stroke(*outlines[i % 3], true, hand);
        std::vector<Reading> readings = vnt::sketch::recognise(ink);
        const auto id = model.addInk(std::move(ink), readings);
        if (i % 2 == 0)
            model.convert(id, readings.front());
    }
};

// The one that all frames are of: making it takes longer than painting it. Gone before the application is.
std::unique_ptr<Drawing> g_drawing;

void send(QWidget& widget, QEvent::Type type, QPointF at)
{
    const bool isMove = type == QEvent::MouseMove;
    const bool isUp = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, at, widget.mapToGlobal(at), isMove ? Qt::NoButton : Qt::LeftButton,
                      isUp ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
}

// How often the canvas was painted: a frame that never came would be the quickest.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QObject& canvas) { canvas.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

    int count = 0;
};

void paintWhatHasChanged(QWidget& widget)
{
    QEvent request(QEvent::UpdateRequest); // as the window system sends it with each frame
    QCoreApplication::sendEvent(widget.window(), &request);
}

// The whole window again, nothing having changed on the sheet.
void whole_frame(benchmark::State& state)
{
    Drawing& drawing = *g_drawing;
    for ([[maybe_unused]] auto _ : state)
        drawing.canvas.repaint();
}

// A move of the mouse, and the frame that shows it.
void frame_while_drawing(benchmark::State& state)
{
    Drawing& drawing = *g_drawing;
    const auto place = [](int i) {
        return QPointF(960 + 400 * std::cos(i * 0.02) * std::cos(i * 0.0031), 540 + 400 * std::sin(i * 0.02));
    };
    int i = 0;
    const PaintCounter paints(drawing.canvas);
    send(drawing.canvas, QEvent::MouseButtonPress, place(0));
    for ([[maybe_unused]] auto _ : state) {
        send(drawing.canvas, QEvent::MouseMove, place(++i));
        paintWhatHasChanged(drawing.canvas);
        if (i % 500 == 0) { // as long as strokes are
            state.PauseTiming();
            send(drawing.canvas, QEvent::MouseButtonRelease, place(i));
            drawing.model.undoStack().undo();
            QCoreApplication::processEvents();
            send(drawing.canvas, QEvent::MouseButtonPress, place(i));
            state.ResumeTiming();
        }
    }
    if (paints.count < i)
        state.SkipWithError("a move was not painted");
    send(drawing.canvas, QEvent::MouseButtonRelease, place(i));
    drawing.model.undoStack().undo();
    QCoreApplication::processEvents();
}

// The frame after the scale has changed.
void frame_of_another_view(benchmark::State& state)
{
    Drawing& drawing = *g_drawing;
    double scale = 1;
    for ([[maybe_unused]] auto _ : state) {
        scale = scale == 1 ? 0.99 : 1;
        drawing.canvas.setScale(scale);
        drawing.canvas.repaint();
    }
    drawing.canvas.setScale(1);
    drawing.canvas.repaint();
}

// The frame after the hand has moved the sheet by a few pixels.
void frame_while_panning(benchmark::State& state)
{
    Drawing& drawing = *g_drawing;
    int i = 0;
    const auto sendMiddle = [&](QEvent::Type type, QPointF at) {
        QMouseEvent event(type, at, at, Qt::MiddleButton, Qt::MiddleButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&drawing.canvas, &event);
    };
    sendMiddle(QEvent::MouseButtonPress, {900, 500});
    for ([[maybe_unused]] auto _ : state) {
        ++i;
        sendMiddle(QEvent::MouseMove, {900.0 + 6 * (i % 20), 500.0 + 4 * (i % 20)});
        drawing.canvas.repaint();
    }
    sendMiddle(QEvent::MouseMove, {900, 500});
    sendMiddle(QEvent::MouseButtonRelease, {900, 500});
    drawing.canvas.repaint();
}

// All strokes anew, as it is done in parts when a changed view has come to rest.
void all_strokes(benchmark::State& state)
{
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    for ([[maybe_unused]] auto _ : state) {
        image.fill(Qt::white);
        QPainter painter(&image);
        g_drawing->canvas.paintSketch(painter);
    }
}

// A walk all over the sheet that turns at every point, as someone leaves it who blackens a sheet.
QPointF cornerOf(int i)
{
    Seeded seeded(static_cast<std::uint64_t>(i) + 1);
    const QPointF middle(960 + 900 * std::cos(i * 0.0007) * std::cos(i * 0.00031),
                         540 + 500 * std::sin(i * 0.0011));
    return middle + QPointF(seeded.between(-5, 5), seeded.between(-5, 5));
}

std::unique_ptr<Drawing> g_long;
int g_longCorners = 0;

// A stroke of many corners, on a picture.
void long_stroke(benchmark::State& state)
{
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    for ([[maybe_unused]] auto _ : state) {
        image.fill(Qt::white);
        QPainter painter(&image);
        g_long->canvas.paintSketch(painter);
    }
}

// As a frame while drawing, of a stroke that has many corners already.
void frame_of_a_long_stroke(benchmark::State& state)
{
    QWidget& canvas = g_long->canvas;
    const PaintCounter paints(canvas);
    int i = 0;
    for ([[maybe_unused]] auto _ : state) {
        ++i;
        send(canvas, QEvent::MouseMove, cornerOf(g_longCorners++));
        paintWhatHasChanged(canvas);
    }
    if (paints.count < i)
        state.SkipWithError("a move was not painted");
}

// One stroke of so many corners on the sheet, and another one just as long in hand.
void makeLong(int corners)
{
    g_long = std::make_unique<Drawing>(0);
    Ink ink;
    for (int i = 0; i < corners; ++i) {
        const QPointF at = cornerOf(i);
        ink.push_back({at.x(), at.y(), 8.0 * i, 1});
    }
    g_long->model.addInk(std::move(ink), {});
    CanvasSettings settings = g_long->canvas.settings();
    settings.holdMilliseconds = kNever_ms; // other frames are measured before
    g_long->canvas.setSettings(settings);
    paintWhatHasChanged(g_long->canvas);
    send(g_long->canvas, QEvent::MouseButtonPress, cornerOf(0));
    for (g_longCorners = 1; g_longCorners < corners; ++g_longCorners)
        send(g_long->canvas, QEvent::MouseMove, cornerOf(g_longCorners));
    paintWhatHasChanged(g_long->canvas);
}

void reading(benchmark::State& state)
{
    drawn::Hand hand;
    hand.points = 500;
    hand.jitter = 2;
    const Ink ink = drawn::stroke(drawn::ellipse(1, 0.7), true, hand);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(vnt::sketch::recognise(ink));
}

double residentKilobytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmRSS:", 0) == 0)
            return std::stod(line.substr(6));
    }
    throw std::runtime_error("/proc/self/status does not say how much memory is resident");
}

// By how many kilobytes the process grows over strokes that are drawn and undone, each seen.
double growth(int strokes)
{
    Drawing drawing(10);
    const auto drawAndUndo = [&](int i) {
        const QPointF at(300 + i % 1000, 300 + i % 400);
        send(drawing.canvas, QEvent::MouseButtonPress, at);
        for (int k = 0; k < 60; ++k)
            send(drawing.canvas, QEvent::MouseMove, at + QPointF(2 * k, 30 * std::sin(k * 0.2)));
        send(drawing.canvas, QEvent::MouseButtonRelease, at + QPointF(120, 0));
        QCoreApplication::processEvents();
        drawing.model.undoStack().undo();
        QCoreApplication::processEvents();
    };
    for (int i = 0; i < strokes / 10; ++i) // what is taken once
        drawAndUndo(i);
    const double before = residentKilobytes();
    for (int i = 0; i < strokes; ++i)
        drawAndUndo(i);
    return residentKilobytes() - before;
}

void program(int argc, char** argv)
{
    const bench::Effort effort = bench::start(argc, argv, "the sketch application's canvas");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const int strokes = effort == bench::Effort::smoke ? 50 : 2000;
    const auto add = [&](const char* name, void (*run)(benchmark::State&)) {
        benchmark::RegisterBenchmark(name, run)->Unit(benchmark::kMillisecond);
        return std::string(name);
    };
    g_drawing = std::make_unique<Drawing>(strokes);
    const std::string whole = add("whole_frame", whole_frame);
    const std::string drawing = add("frame_while_drawing", frame_while_drawing);
    const std::string panning = add("frame_while_panning", frame_while_panning);
    const std::string view = add("frame_of_another_view", frame_of_another_view);
    const std::string all = add("all_strokes", all_strokes);
    benchmark::RegisterBenchmark("reading", reading)->Unit(benchmark::kMillisecond);
    const int corners = effort == bench::Effort::smoke ? 2000 : 150'000;
    makeLong(corners);
    const std::string longFrame = add("frame_of_a_long_stroke", frame_of_a_long_stroke);
    const std::string longStroke = add("long_stroke", long_stroke);
    const bench::Medians medians = bench::run_registered();
    g_drawing.reset();
    g_long.reset();
    const auto milliseconds = [&](const std::string& name) { return 1000 * medians.of(name); };

    std::cout
        << "## The sketch application's canvas\n\n"
        << "A window of " << kWidth << " by " << kHeight << " pixels on no screen, " << strokes
        << " strokes of 100 points on the sheet, every other one a shape, and a grid. Milliseconds.\n\n";
    bench::Table frames({"frame", "milliseconds"});
    frames.add({"the whole window, nothing changed", bench::at_most(milliseconds(whole), kFrameTarget_ms)});
    frames.add({"while a stroke is drawn", bench::at_most(milliseconds(drawing), kFrameTarget_ms)});
    frames.add({"while one of " + std::to_string(corners) + " corners is drawn",
                bench::at_most(milliseconds(longFrame), kFrameTarget_ms)});
    frames.add({"while the sheet is panned", bench::at_most(milliseconds(panning), kFrameTarget_ms)});
    frames.add({"after a change of scale", bench::at_most(milliseconds(view), kFrameTarget_ms)});
    std::cout
        << frames.text()
        << "\nAll strokes painted anew, in parts between other events, when a changed view has come to rest: "
        << bench::fixed(milliseconds(all), 0) << " milliseconds.\n"
        << "\nA stroke of " << corners
        << " corners painted anew: " << bench::at_most(milliseconds(longStroke), kLongTarget_ms)
        << " milliseconds.\n"
        << "\nOne reading of a stroke of 500 points: "
        << bench::at_most(milliseconds("reading"), kReadingTarget_ms) << " milliseconds.\n";
    const int undone = effort == bench::Effort::smoke ? 100 : 10'000;
    std::cout << "\nMemory after " << undone << " strokes drawn and undone, over that after the first tenth: "
              << bench::at_most(growth(undone), kGrowthTarget_kB) << " kB more.\n";
}

} // namespace

int main(int argc, char** argv) { return bench::run_program(argc, argv, program); }
