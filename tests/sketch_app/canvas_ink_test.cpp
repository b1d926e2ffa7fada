// Where ink lands, to fractions of a pixel, at whatever scale the screen has (see canvas.cmake), and that
// what is painted piece by piece is what is painted at once.
#include "sketch/core/answer.h"
#include "sketch/core/shape_outline.h"
#include "tests/sketch_app/canvas_hand.h"

#include <QPaintEvent>
#include <QRegion>

#include <cmath>
#include <utility>

namespace {

using namespace sketch_app_test;

// Black on white, so that a pixel's darkness is how much of it is covered.
CanvasColours blackOnWhite()
{
    CanvasColours colours = CanvasColours::light();
    colours.sheet = colours.grid = colours.mainGrid = colours.desk = Qt::white;
    colours.ink = colours.shape = Qt::black;
    return colours;
}

double darkness(const QImage& image, int x, int y) { return (255 - qGray(image.pixel(x, y))) / 255.0; }

struct Cut {
    double middle = 0; // of what is dark, in widget pixels
    double width = 0;
};

// Down through the picture, or across it.
Cut cutThrough(const QImage& image, double at, bool isDown)
{
    const double ratio = image.devicePixelRatio();
    const int fixed = static_cast<int>(std::floor(at * ratio));
    Cut cut;
    for (int i = 0; i < (isDown ? image.height() : image.width()); ++i) {
        const double dark = isDown ? darkness(image, fixed, i) : darkness(image, i, fixed);
        cut.middle += dark * (i + 0.5);
        cut.width += dark;
    }
    cut.middle /= cut.width * ratio;
    cut.width /= ratio;
    return cut;
}

// Pixels; what the raster engine's own rounding leaves, most of it where the screen's scale is no whole
// number.
constexpr double kCoverage = 0.05;

class CanvasInk : public Canvas {
protected:
    CanvasInk() { canvas.setColours(blackOnWhite()); }
};

TEST_F(CanvasInk, LandsWhereThePenIsToFractionsOfAPixel)
{
    for (const double y : {100.0, 140.25, 180.5, 220.75, 260.1}) {
        model.reset({});
        mouse.draw(linePath({50, y}, {250, y}));
        const Cut cut = cutThrough(picture(), 150, true);
        EXPECT_NEAR(cut.middle, y, kCoverage);
        EXPECT_NEAR(cut.width, 2, kCoverage);
        ASSERT_EQ(count(), 1U);
        EXPECT_EQ(top()->ink.back().x, 250);
        EXPECT_EQ(top()->ink.back().y, y);
    }
    for (const double x : {300.25, 340.6}) {
        model.reset({});
        mouse.draw(linePath({x, 50}, {x, 250}));
        EXPECT_NEAR(cutThrough(picture(), 150, false).middle, x, kCoverage);
    }
}

TEST_F(CanvasInk, LandsThereInAViewThatIsScaledAndMovedAsWell)
{
    for (const double scale : {0.37, 2.5}) {
        canvas.setScale(scale);
        model.reset({});
        mouse.draw(linePath({50, 180.3}, {250, 180.3}));
        EXPECT_NEAR(cutThrough(picture(), 150, true).middle, 180.3, kCoverage);
    }
    canvas.setRotation(90);
    model.reset({});
    mouse.draw(linePath({50, 180.3}, {250, 180.3}));
    EXPECT_NEAR(cutThrough(picture(), 150, true).middle, 180.3, kCoverage);
}

TEST_F(CanvasInk, IsUnderThePenBeforeThePenIsLifted)
{
    change([](CanvasSettings& settings) { settings.stabiliser = 0.6; });
    mouse.press({100, 100});
    for (int x = 100; x <= 200; x += 4) {
        mouse.move({x + 0.5, 100.5});
        const QImage seen = picture();
        const double ratio = seen.devicePixelRatio();
        EXPECT_GT(darkness(seen, static_cast<int>((x + 0.5) * ratio), static_cast<int>(100.5 * ratio)), 0.9)
            << x;
    }
}

TEST_F(CanvasInk, LooksTheSameWhenThePenIsLifted)
{
    mouse.drawOn(circlePath({300, 200}, 80));
    const QImage drawn = picture();
    mouse.release({380, 200});
    ASSERT_EQ(count(), 1U);
    EXPECT_EQ(difference(drawn, picture()), "");
}

TEST_F(CanvasInk, IsTheLineThatTheEditorGets)
{
    Path fast;
    for (int i = 0; i <= 9; ++i)
        fast.push_back(Vec2{300, 300} + 200 * vnt::sketch::unit_at(0.6 * i));
    mouse.drawOn(fast);
    const QImage drawn = picture();
    mouse.release(point(fast.back()));
    const auto read = vnt::sketch::strokes_of_answer(
        vnt::sketch::answer_of(model.document().strokes(), model.sheet()), model.sheet(), 1);
    const auto* const strokes = std::get_if<std::vector<vnt::sketch::Stroke>>(&read);
    ASSERT_NE(strokes, nullptr);
    ASSERT_EQ(strokes->size(), 1U);
    const Path sent = vnt::sketch::flattened(vnt::sketch::cubics_of(strokes->front(), 0.1), 0.1);
    ASSERT_GT(sent.size(), 50U);
    const QImage lifted = picture();
    for (const QImage& seen : {drawn, lifted}) {
        const double ratio = seen.devicePixelRatio();
        for (const Vec2 p : sent)
            EXPECT_GT(darkness(seen, static_cast<int>(p.x * ratio), static_cast<int>(p.y * ratio)), 0.2)
                << p.x << ' ' << p.y;
    }
}

// What a widget is asked to paint.
class PaintedRegion : public QObject {
public:
    explicit PaintedRegion(QWidget& widget) : m_widget(widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            m_region |= static_cast<QPaintEvent*>(event)->region();
        return false;
    }
    // Since the last call, as the window does it with each frame.
    QRegion paint()
    {
        QEvent request(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(m_widget.window(), &request);
        return std::exchange(m_region, {});
    }
    void forget() { m_region = {}; }

private:
    QWidget& m_widget;
    QRegion m_region;
};

// How many pixels changed where nothing was painted.
int changedOutside(const QRegion& region, const QImage& before, const QImage& after)
{
    const double ratio = after.devicePixelRatio();
    int changed = 0;
    for (int y = 0; y < after.height(); ++y)
        for (int x = 0; x < after.width(); ++x) {
            const QPoint at(static_cast<int>(x / ratio), static_cast<int>(y / ratio));
            const int by = std::abs(qGray(after.pixel(x, y)) - qGray(before.pixel(x, y)));
            changed += by > 8 && !region.contains(at) ? 1 : 0;
        }
    return changed;
}

// The line between few points changes behind the pen as well, and so does what a spike stood for.
TEST_F(CanvasInk, OfAFastPenIsPaintedWhereverItChanges)
{
    change([](CanvasSettings& settings) { settings.inkWidth = 5; });
    PaintedRegion painted(canvas);
    mouse.press({300, 300});
    QImage before = picture();
    painted.forget();
    for (int i = 1; i <= 60; ++i) {
        const double far = i % 11 == 7 ? 280 : 20 + 3 * i;
        mouse.move(QPointF(300 + far * std::cos(0.5 * i), 300 + far * std::sin(0.5 * i)));
        const QRegion region = painted.paint();
        const QImage after = picture();
        painted.forget();
        EXPECT_EQ(changedOutside(region, before, after), 0) << "after move " << i;
        before = after;
    }
}

TEST_F(CanvasInk, ShowsHowHardThePenPresses)
{
    change([](CanvasSettings& settings) { settings.inkWidth = 8; });
    pen.draw(linePath({50, 100}, {250, 100}), 1);
    EXPECT_NEAR(cutThrough(picture(), 150, true).width, 8, kCoverage);
    model.reset({});
    pen.draw(linePath({50, 100}, {250, 100}), 0.5);
    EXPECT_NEAR(cutThrough(picture(), 150, true).width, 8 * (0.25 + 0.75 * 0.5), kCoverage);
    ASSERT_EQ(count(), 1U);
}

TEST_F(CanvasInk, OfATouchAloneIsADot)
{
    change([](CanvasSettings& settings) { settings.inkWidth = 8; });
    mouse.draw({
        {100, 100}
    });
    ASSERT_EQ(count(), 1U);
    const QImage seen = picture();
    EXPECT_GT(darkness(seen, static_cast<int>(100 * seen.devicePixelRatio()),
                       static_cast<int>(100 * seen.devicePixelRatio())),
              0.99);
}

// Long enough for what is drawn to be kept; with crossings, spikes, and every pressure.
TEST_F(CanvasInk, OfALongStrokeLooksTheSameWhenThePenIsLifted)
{
    change([](CanvasSettings& settings) { settings.inkWidth = 7; });
    PaintedRegion painted(canvas);
    const auto place = [](int i) {
        const double far = i % 101 == 50 ? 300 : 40 + 0.2 * i;
        return QPointF(400 + far * std::cos(0.31 * i), 300 + far * std::sin(0.29 * i));
    };
    pen.press(place(0), 0.5);
    for (int i = 1; i <= 900; ++i) {
        pen.move(place(i), 0.5 + 0.5 * std::sin(0.1 * i));
        painted.paint();
    }
    const QImage drawn = picture();
    const QImage again = picture();
    EXPECT_EQ(difference(drawn, again), "");
    pen.release(place(900));
    ASSERT_EQ(count(), 1U);
    ASSERT_GT(top()->ink.size(), 800U);
    EXPECT_EQ(difference(drawn, picture()), "");
}

TEST_F(CanvasInk, OfALongStrokeGoesWhenItIsCancelled)
{
    const QImage empty = picture();
    mouse.press({100, 100});
    for (int i = 1; i <= 400; ++i)
        mouse.move({100.0 + i, 100.0 + i % 50});
    EXPECT_NE(difference(empty, picture()), "");
    key(Qt::Key_Escape);
    EXPECT_EQ(difference(empty, picture()), "");
    mouse.draw(linePath({50, 300}, {400, 300}));
    EXPECT_EQ(darkness(picture(), 200, 120), 0) << "what was cancelled does not come back";
}

// Every kind of change, each seen before the next: what is painted in pieces must be what is painted at once.
TEST_F(CanvasInk, IsTheSameInPiecesAsAtOnce)
{
    canvas.setColours(CanvasColours::light());
    Sheet sheet = model.sheet();
    sheet.grid = vnt::sketch::Grid{
        {9.7, 0, 0, 9.7, 3, 4},
        5
    };
    model.setSheet(sheet);
    const auto expectWhole = [&](const char* after, int allowed = 0) {
        const QImage pieces = picture();
        canvas.setColours(CanvasColours::light()); // all is painted anew
        EXPECT_EQ(difference(pieces, picture(), allowed), "") << after;
    };
    for (int i = 0; i < 12; ++i) {
        mouse.draw(circlePath({200.0 + 30 * i, 250}, 60));
        picture();
    }
    expectWhole("drawing");
    canvas.offerReadings(5);
    picture();
    canvas.takeOffered();
    expectWhole("converting");
    model.undoStack().undo();
    picture();
    model.remove({3, 7});
    expectWhole("removing");
    model.undoStack().undo();
    expectWhole("undoing");
    mouse.press({400, 300}, Qt::MiddleButton);
    for (const QPointF to : {QPointF(420, 330), QPointF(370, 310), QPointF(300, 210)}) {
        mouse.move(to);
        picture();
    }
    mouse.release({300, 210});
    expectWhole("panning", 1); // a place that was added up is another in its last bit
    canvas.setScale(1.7);
    canvas.setRotation(30);
    picture();
    mouse.draw(circlePath({300, 250}, 60));
    model.undoStack().undo();
    expectWhole("turning");
}

// More strokes than can be painted within a frame.
class CanvasOfManyStrokes : public CanvasInk {
protected:
    CanvasOfManyStrokes()
    {
        const QTransform toSheet = canvas.sheetToWidget().inverted();
        for (int i = 0; i < 300; ++i) {
            vnt::sketch::Ink ink; // without a hand, whose readings would take most of the time
            for (const auto& point : circlePath({100.0 + 2 * i, 300.0 - i % 100}, 60)) {
                const QPointF at = toSheet.map(QPointF(point.x, point.y));
                ink.push_back({at.x(), at.y(), 0, 1});
            }
            model.addInk(std::move(ink), {});
        }
        pictureAtOnce();
    }
    QImage pictureAtOnce()
    {
        canvas.setColours(blackOnWhite());
        return picture();
    }
};

TEST_F(CanvasOfManyStrokes, ShowAnotherViewAtOnceAndSharpWhenItRests)
{
    canvas.setScale(2.3);
    const QImage first = picture();
    ASSERT_TRUE(runUntil([&] { return difference(picture(), first) != ""; })) << "it never became sharp";
    const QImage sharp = picture();
    EXPECT_EQ(difference(sharp, pictureAtOnce()), "");
    // What is shown first is the same, only coarser: as dark, all in all.
    const auto dark = [](const QImage& image) {
        double sum = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                sum += darkness(image, x, y);
        }
        return sum;
    };
    EXPECT_GT(dark(first), 0.5 * dark(sharp));
}

TEST_F(CanvasOfManyStrokes, ShowWhatChangesBeforeTheViewRests)
{
    canvas.setScale(2.3);
    model.remove({300});
    const QImage removed = picture();
    EXPECT_EQ(difference(removed, pictureAtOnce()), "");
    canvas.rotateBy(10);
    picture();
    canvas.setScale(1.1);
    mouse.draw(linePath({50, 50}, {300, 120}));
    const QImage drawn = picture();
    EXPECT_EQ(difference(drawn, pictureAtOnce()), "");
}

TEST_F(CanvasOfManyStrokes, StayWhereTheyAreWhenTheWindowGrows)
{
    canvas.resize(901, 655);
    const QImage grown = picture();
    EXPECT_EQ(difference(grown, pictureAtOnce(), 1), "");
    canvas.resize(500, 431);
    const QImage shrunk = picture();
    EXPECT_EQ(difference(shrunk, pictureAtOnce(), 1), "");
}

} // namespace
