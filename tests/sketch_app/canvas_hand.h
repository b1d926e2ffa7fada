// A canvas on no screen, and the hand that draws on it with mouse, pen and fingers: by events as Qt sends
// them.
//
// Space:  the widget's pixels; the sheet lies so that its own are the same, until a test moves it.
#pragma once

#include "sketch/app/sketch_canvas.h"
#include "tests/sketch/drawn_strokes.h"
#include "tests/sketch_app/event_loop.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointingDevice>
#include <QTabletEvent>
#include <QTest>
#include <QWheelEvent>

#include <memory>
#include <string>
#include <vector>

namespace vnt::sketch {

inline std::ostream& operator<<(std::ostream& out, Kind kind) { return out << name_of(kind); }

} // namespace vnt::sketch

namespace sketch_app_test {

using vnt::sketch::Ink;
using vnt::sketch::Kind;
using vnt::sketch::Path;
using vnt::sketch::Reading;
using vnt::sketch::Round;
using vnt::sketch::Sheet;
using vnt::sketch::Straight;
using vnt::sketch::StrokeId;
using vnt::sketch::StrokePtr;
using vnt::sketch::Vec2;

inline QPointF point(Vec2 p) { return {p.x, p.y}; }

// "" when they are the same; QImage does not say where they differ. allowed: by how much a pixel's grey may.
inline std::string difference(const QImage& a, const QImage& b, int allowed = 0)
{
    if (a.size() != b.size())
        return "other sizes";
    int pixels = 0;
    int most = 0;
    QRect where;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const int by = std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y)));
            if (a.pixel(x, y) == b.pixel(x, y) || (by > 0 && by <= allowed))
                continue;
            ++pixels;
            most = std::max(most, by);
            where |= QRect(x, y, 1, 1);
        }
    }
    if (pixels == 0)
        return "";
    return std::to_string(pixels) + " pixels by up to " + std::to_string(most) + " between (" +
           std::to_string(where.left()) + ", " + std::to_string(where.top()) + ") and (" +
           std::to_string(where.right()) + ", " + std::to_string(where.bottom()) + ")";
}

inline QImage pictureOf(QWidget& widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

// What a mouse does. Moves are sent without turning the event loop: no timer fires between them.
class Mouse {
public:
    explicit Mouse(QWidget& widget) : m_widget(widget) {}

    void press(QPointF at, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {})
    {
        m_button = button;
        send(QEvent::MouseButtonPress, at, button, button, modifiers);
    }
    void move(QPointF at, Qt::KeyboardModifiers modifiers = {})
    {
        send(QEvent::MouseMove, at, Qt::NoButton, m_button, modifiers);
    }
    void release(QPointF at, Qt::KeyboardModifiers modifiers = {})
    {
        send(QEvent::MouseButtonRelease, at, m_button, Qt::NoButton, modifiers);
        m_button = Qt::NoButton;
    }
    // Down at the first place and along all others.
    void drawOn(const Path& path, Qt::MouseButton button = Qt::LeftButton,
                Qt::KeyboardModifiers modifiers = {})
    {
        press(point(path.front()), button, modifiers);
        for (const Vec2 p : path)
            move(point(p), modifiers);
    }
    void draw(const Path& path, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers modifiers = {})
    {
        drawOn(path, button, modifiers);
        release(point(path.back()), modifiers);
    }

private:
    void send(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons buttons,
              Qt::KeyboardModifiers modifiers)
    {
        QMouseEvent event(type, at, m_widget.mapToGlobal(at), button, buttons, modifiers);
        QCoreApplication::sendEvent(&m_widget, &event);
    }

    QWidget& m_widget;
    Qt::MouseButton m_button = Qt::NoButton;
};

// What a pen does.
class Pen {
public:
    using Tip = QPointingDevice::PointerType;

    explicit Pen(QWidget& widget, Tip tip = Tip::Pen)
        : m_widget(widget),
          m_device("pen", 1, QInputDevice::DeviceType::Stylus, tip, QInputDevice::Capability::Pressure, 1, 3)
    {
    }

    void comeNear() { send(*qApp, QEvent::TabletEnterProximity, {}, 0, Qt::NoButton, Qt::NoButton); }
    void goAway() { send(*qApp, QEvent::TabletLeaveProximity, {}, 0, Qt::NoButton, Qt::NoButton); }
    void hover(QPointF at) { send(m_widget, QEvent::TabletMove, at, 0, Qt::NoButton, Qt::NoButton); }
    void press(QPointF at, double pressure = 1, Qt::MouseButtons held = {})
    {
        m_held = held | Qt::LeftButton;
        send(m_widget, QEvent::TabletPress, at, pressure, Qt::LeftButton, m_held);
    }
    void move(QPointF at, double pressure = 1)
    {
        send(m_widget, QEvent::TabletMove, at, pressure, Qt::NoButton, m_held);
    }
    void release(QPointF at)
    {
        send(m_widget, QEvent::TabletRelease, at, 0, Qt::LeftButton, Qt::NoButton);
        m_held = Qt::NoButton;
    }
    void draw(const Path& path, double pressure = 1, Qt::MouseButtons held = {})
    {
        press(point(path.front()), pressure, held);
        for (const Vec2 p : path)
            move(point(p), pressure);
        release(point(path.back()));
    }

private:
    void send(QObject& to, QEvent::Type type, QPointF at, double pressure, Qt::MouseButton button,
              Qt::MouseButtons buttons)
    {
        QTabletEvent event(type, &m_device, at, m_widget.mapToGlobal(at), pressure, 0, 0, 0, 0, 0, {}, button,
                           buttons);
        QCoreApplication::sendEvent(&to, &event);
    }

    QWidget& m_widget;
    QPointingDevice m_device;
    Qt::MouseButtons m_held;
};

inline QPointingDevice& touchScreen()
{
    static QPointingDevice* const device = QTest::createTouchDevice();
    return *device;
}

// Long enough for none to fire while a test runs.
constexpr int kNever = 10'000'000;

class Canvas : public testing::Test {
protected:
    Canvas()
    {
        Sheet sheet;
        sheet.width = 800;
        sheet.height = 600;
        model.setSheet(sheet);
        canvas.resize(800, 600);
        change([](CanvasSettings& settings) {
            settings.holdMilliseconds = kNever;
            settings.takeMilliseconds = kNever;
            settings.stabiliser = 0;
            settings.reducedMotion = true;
            settings.snapToGrid = settings.snapToShapes = settings.snapToAngles = false;
        });
        canvas.show();
        runDueEvents();
    }

    template <class Change>
    void change(Change change)
    {
        CanvasSettings settings = canvas.settings();
        change(settings);
        canvas.setSettings(settings);
    }

    // The hold time passes as soon as the event loop turns, which it does in restUntilOffered() alone.
    void holdBriefly()
    {
        change([](CanvasSettings& settings) { settings.holdMilliseconds = 0; });
    }
    bool restUntilOffered()
    {
        return runUntil([this] { return !canvas.offeredReading().isEmpty(); });
    }

    void key(int code, Qt::KeyboardModifiers modifiers = {})
    {
        keyDown(code, modifiers);
        QKeyEvent up(QEvent::KeyRelease, code, modifiers);
        QCoreApplication::sendEvent(&canvas, &up);
    }
    void keyDown(int code, Qt::KeyboardModifiers modifiers = {})
    {
        QKeyEvent down(QEvent::KeyPress, code, modifiers);
        QCoreApplication::sendEvent(&canvas, &down);
    }

    std::size_t count() const { return model.document().strokes().size(); }
    const StrokePtr& top() const { return model.document().strokes().back(); }
    Kind topKind() const { return count() == 0 ? Kind::ink : top()->kind; }
    std::vector<Kind> kinds() const
    {
        std::vector<Kind> all;
        for (const StrokePtr& stroke : model.document().strokes())
            all.push_back(stroke->kind);
        return all;
    }

    QImage picture() { return pictureOf(canvas); }

    SketchModel model;
    SketchCanvas canvas{model};
    Mouse mouse{canvas};
    Pen pen{canvas};
};

// Strokes of a steady hand that read as what they are.
inline Path circlePath(Vec2 at, double radius)
{
    drawn::Hand hand;
    hand.scale = radius;
    hand.at = at;
    return drawn::path_of(drawn::stroke(drawn::ellipse(1, 1), true, hand));
}

inline Path linePath(Vec2 from, Vec2 to)
{
    Path path;
    for (int i = 0; i <= 40; ++i)
        path.push_back(from + (i / 40.0) * (to - from));
    return path;
}

inline Path boxPath(Vec2 at, double width, double height)
{
    drawn::Hand hand;
    hand.scale = 1;
    hand.at = at;
    return drawn::path_of(drawn::stroke(drawn::box(width, height), true, hand));
}

} // namespace sketch_app_test
