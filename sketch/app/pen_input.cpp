#include "sketch/app/pen_input.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QTabletEvent>
#include <QTouchEvent>

#include <algorithm>
#include <vector>

namespace {

// A hand leaves the screen later than its pen.
constexpr qint64 kHandLeaves_ms = 500;
// Some pens go without a word; one that has not moved for as long is on the desk.
constexpr qint64 kPenForgotten_ms = 10'000;

PenInput::Clock steadyClock()
{
    QElapsedTimer timer;
    timer.start();
    return [timer] { return timer.elapsed(); };
}

std::vector<QEventPoint> touching(const QTouchEvent& event)
{
    std::vector<QEventPoint> points;
    for (const QEventPoint& point : event.points()) {
        if (point.state() != QEventPoint::State::Released)
            points.push_back(point);
    }
    return points;
}

} // namespace

PenInput::PenInput(PenTarget& target, QObject* parent)
    : QObject(parent), m_target(target), m_clock(steadyClock())
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool PenInput::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::TabletEnterProximity) {
        m_isPenNear = true;
        penCame();
    } else if (event->type() == QEvent::TabletLeaveProximity) {
        m_isPenNear = false;
        m_penSeen_ms = m_clock();
        if (m_source == Source::tablet) // it never said that it was lifted
            end(m_last);
    }
    return false;
}

bool PenInput::handle(QEvent& event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease: return mouse(static_cast<QMouseEvent&>(event));
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease: return tablet(static_cast<QTabletEvent&>(event));
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel: return touch(static_cast<QTouchEvent&>(event));
    default: return false;
    }
}

void PenInput::forget()
{
    m_source = Source::none;
    m_fingers = m_fingers == Fingers::none ? Fingers::none : Fingers::ignored;
}

PenSample PenInput::sample(QPointF at, double pressure, const QInputEvent& event) const
{
    const double time =
        event.timestamp() != 0 ? static_cast<double>(event.timestamp()) : static_cast<double>(m_clock());
    return {at, time, pressure, event.modifiers()};
}

void PenInput::begin(Source source, Qt::MouseButton button, const PenSample& sample, PenTarget::Use use)
{
    m_source = source;
    m_button = button;
    m_last = sample;
    m_target.penDown(sample, use);
}

void PenInput::move(const PenSample& sample)
{
    m_last = sample;
    m_target.penMoved(sample);
}

void PenInput::end(const PenSample& sample)
{
    m_source = Source::none;
    m_target.penLifted(sample);
}

void PenInput::cancel()
{
    m_source = Source::none;
    m_target.penCancelled();
}

bool PenInput::mouse(QMouseEvent& event)
{
    const PenSample here = sample(event.position(), 1, event);
    if (event.type() == QEvent::MouseMove) {
        if (m_source == Source::mouse && !event.buttons().testFlag(m_button))
            end(m_last); // its release went elsewhere
        else if (m_source == Source::mouse)
            move(here);
        else if (m_source == Source::none)
            m_target.hovered(here.at);
        return true;
    }
    if (event.type() == QEvent::MouseButtonRelease) {
        const bool isIts = m_source == Source::mouse && event.button() == m_button;
        if (isIts)
            end(here);
        return isIts;
    }
    const bool isMiddle = event.button() == Qt::MiddleButton;
    // What a pen or finger has sent already comes again as a mouse on some systems.
    const bool isMade = event.source() != Qt::MouseEventNotSynthesized;
    if (isMade || m_source != Source::none || (event.button() != Qt::LeftButton && !isMiddle))
        return isMade || m_source != Source::none;
    begin(Source::mouse, event.button(), here,
          isMiddle || m_isPanning ? PenTarget::Use::pan : PenTarget::Use::tool);
    return true;
}

bool PenInput::tablet(QTabletEvent& event)
{
    event.accept(); // or it comes again as a mouse
    penCame();
    const PenSample here = sample(event.position(), event.pressure(), event);
    if (event.type() == QEvent::TabletMove) {
        if (m_source == Source::tablet)
            move(here);
        else if (m_source == Source::none)
            m_target.hovered(here.at);
        return true;
    }
    if (event.type() == QEvent::TabletRelease) {
        if (m_source == Source::tablet && (event.button() == m_button || event.buttons() == Qt::NoButton))
            end(here);
        return true;
    }
    if (m_source != Source::none)
        return true;
    // A button of the pen may have been held before the tip came down.
    const Qt::MouseButtons buttons = event.buttons() | event.button();
    PenTarget::Use use = PenTarget::Use::tool;
    if (buttons.testFlag(Qt::MiddleButton) || m_isPanning)
        use = PenTarget::Use::pan;
    else if (buttons.testFlag(Qt::RightButton) || event.pointerType() == QPointingDevice::PointerType::Eraser)
        use = PenTarget::Use::erase;
    begin(Source::tablet, event.button(), here, use);
    return true;
}

void PenInput::penCame()
{
    m_penSeen_ms = m_clock();
    if (m_fingers == Fingers::none)
        return;
    m_fingers = Fingers::ignored;
    if (m_source == Source::finger)
        cancel();
}

bool PenInput::isPenNear() const
{
    if (!m_penSeen_ms)
        return false;
    const qint64 since = m_clock() - *m_penSeen_ms;
    return since < (m_isPenNear ? kPenForgotten_ms : kHandLeaves_ms);
}

bool PenInput::touch(QTouchEvent& event)
{
    const auto* device = event.pointingDevice();
    if (device != nullptr && device->type() == QInputDevice::DeviceType::TouchPad)
        return false;
    event.accept();
    const std::size_t count = touching(event).size();
    if (event.type() == QEvent::TouchCancel || (isPenNear() && m_fingers != Fingers::ignored)) {
        if (m_source == Source::finger)
            cancel();
        m_fingers = Fingers::ignored;
    } else if (count >= 2 || m_fingers == Fingers::two) {
        twoFingers(event);
    } else {
        oneFinger(event);
    }
    if (count == 0 || event.type() == QEvent::TouchCancel)
        m_fingers = Fingers::none;
    return true;
}

void PenInput::oneFinger(const QTouchEvent& event)
{
    for (const QEventPoint& point : event.points()) {
        const PenSample here = sample(point.position(), 1, event);
        const bool isLifted = point.state() == QEventPoint::State::Released;
        if (m_fingers == Fingers::none && m_source == Source::none && !isLifted) {
            m_fingers = Fingers::one;
            m_finger = point.id();
            begin(Source::finger, Qt::NoButton, here,
                  m_target.fingersDraw() && !m_isPanning ? PenTarget::Use::tool : PenTarget::Use::pan);
        } else if (m_source == Source::finger && m_fingers == Fingers::one && point.id() == m_finger) {
            if (isLifted)
                end(here);
            else if (here.at != m_last.at)
                move(here);
        }
    }
}

void PenInput::twoFingers(const QTouchEvent& event)
{
    const std::vector<QEventPoint> points = touching(event);
    if (m_fingers == Fingers::ignored || (m_source != Source::none && m_source != Source::finger))
        return;
    if (m_source == Source::finger)
        cancel();
    if (points.size() < 2) {
        m_fingers = Fingers::ignored;
        return;
    }
    const QPointF first = points[0].position();
    const QPointF second = points[1].position();
    if (m_fingers != Fingers::two || m_pinch.isOfOthers(points[0].id(), points[1].id())) {
        m_fingers = Fingers::two;
        m_pinch = TwoFingers(points[0].id(), points[1].id(), first, second);
        return;
    }
    m_target.pinched(m_pinch.moved(first, second));
}
