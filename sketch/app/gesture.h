// What one does with a tool from when the pen touches until it is lifted.
//
// Space:  places are widget pixels with fractions.
#pragma once

#include <QPointF>
#include <Qt>

class QPainter;
class QRectF;

struct PenSample {
    QPointF at;
    double time_ms = 0;
    double pressure = 1;
    Qt::KeyboardModifiers modifiers;
};

// Many desktops keep Alt with a button held for moving windows; Ctrl does the same here.
constexpr bool suspendsSnapping(Qt::KeyboardModifiers held)
{
    return (held & (Qt::AltModifier | Qt::ControlModifier)) != 0;
}

class Gesture {
public:
    Gesture() = default;
    Gesture(const Gesture&) = delete;
    Gesture& operator=(const Gesture&) = delete;
    virtual ~Gesture() = default;

    virtual void move(const PenSample& sample) = 0;
    // Ends it; nothing is called afterwards.
    virtual void lift(const PenSample& sample) = 0;
    // Ends it as if it had never begun.
    virtual void cancel() = 0;
    // Over the sheet; within is what has to be painted.
    virtual void paint(QPainter& painter, const QRectF& within) const = 0;
    virtual bool isStroke() const { return false; }
};
