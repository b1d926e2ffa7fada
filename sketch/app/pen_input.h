// Makes one pen of mouse, pen and fingers: it touches, moves and is lifted; or two fingers on the view.
//
// While a pen is near, and half a second after, fingers count as the hand that rests on the screen, and what
// one of them has begun goes. Two fingers end what the first one has begun.
// Space:  the widget's pixels, with fractions.
#pragma once

#include "sketch/app/gesture.h"
#include "sketch/app/two_fingers.h"

#include <QObject>
#include <QPointingDevice>

#include <functional>
#include <optional>

class QInputEvent;
class QMouseEvent;
class QTabletEvent;
class QTouchEvent;

class PenTarget {
public:
    enum class Use { tool, erase, pan };

    virtual ~PenTarget() = default;
    virtual void penDown(const PenSample& sample, Use use) = 0;
    virtual void penMoved(const PenSample& sample) = 0;
    virtual void penLifted(const PenSample& sample) = 0;
    virtual void penCancelled() = 0;
    virtual void hovered(QPointF at) = 0;
    virtual void pinched(const Pinch& pinch) = 0;
    virtual bool fingersDraw() const = 0;
};

class PenInput : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<qint64()>; // milliseconds, never backwards

    explicit PenInput(PenTarget& target, QObject* parent = nullptr);

    // For tests. The events' own times go before it, but for what a pen that has gone leaves behind.
    void setClock(Clock clock) { m_clock = std::move(clock); }
    void setPanning(bool isPanning) { m_isPanning = isPanning; } // the left button pans: Space is held
    // Whether the event was one of these, and has been dealt with.
    bool handle(QEvent& event);
    // What began goes on without its device: the widget was hidden, or what is drawn was ended otherwise.
    void forget();

    bool eventFilter(QObject* watched, QEvent* event) override; // of the application: pens that come and go

private:
    enum class Source { none, mouse, tablet, finger };
    enum class Fingers { none, one, two, ignored }; // ignored: until all are lifted

    bool mouse(QMouseEvent& event);
    bool tablet(QTabletEvent& event);
    bool touch(QTouchEvent& event);
    void oneFinger(const QTouchEvent& event);
    void twoFingers(const QTouchEvent& event);
    void penCame();
    bool isPenNear() const;
    PenSample sample(QPointF at, double pressure, const QInputEvent& event) const;
    void begin(Source source, Qt::MouseButton button, const PenSample& sample, PenTarget::Use use);
    void move(const PenSample& sample);
    void end(const PenSample& sample);
    void cancel();

    PenTarget& m_target;
    Clock m_clock;
    bool m_isPanning = false;
    Source m_source = Source::none;
    Qt::MouseButton m_button = Qt::NoButton; // that began it
    PenSample m_last;
    Fingers m_fingers = Fingers::none;
    int m_finger = 0; // the one that draws
    TwoFingers m_pinch;
    bool m_isPenNear = false;
    std::optional<qint64> m_penSeen_ms;
};
