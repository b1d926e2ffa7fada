// Two fingers on the view: how it moves, grows and turns between them.
//
// Space:  widget pixels. Units: degrees, clockwise as one sees them.
#pragma once

#include <QPointF>

// One step; all of it about where the fingers' middle is now.
struct Pinch {
    QPointF move;
    double factor = 1;
    double degrees = 0;
    QPointF about;
};

class TwoFingers {
public:
    // Fingers that zoom turn a little without meaning it; below this they do not turn.
    static constexpr double kTurnStart = 8; // degrees

    TwoFingers() = default;
    TwoFingers(int firstId, int secondId, QPointF first, QPointF second)
        : m_firstId(firstId), m_secondId(secondId), m_first(first), m_second(second)
    {
    }

    bool isOfOthers(int firstId, int secondId) const
    {
        return firstId != m_firstId || secondId != m_secondId;
    }
    Pinch moved(QPointF first, QPointF second);

private:
    int m_firstId = -1;
    int m_secondId = -1;
    QPointF m_first;
    QPointF m_second;
    double m_twist = 0;  // since they touched
    double m_turned = 0; // of it, what was let through
};
