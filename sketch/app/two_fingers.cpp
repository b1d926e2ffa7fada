#include "sketch/app/two_fingers.h"

#include <QLineF>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kLeastApart = 10; // pixels; nearer fingers say nothing of size and turn

} // namespace

Pinch TwoFingers::moved(QPointF first, QPointF second)
{
    const QLineF before(m_first, m_second);
    const QLineF now(first, second);
    m_first = first;
    m_second = second;

    Pinch pinch;
    pinch.about = now.center();
    pinch.move = now.center() - before.center();
    if (before.length() < kLeastApart || now.length() < kLeastApart)
        return pinch;
    pinch.factor = now.length() / before.length();
    m_twist += std::remainder(before.angle() - now.angle(), 360); // QLineF counts against the clock
    const double beyond = std::max(0.0, std::abs(m_twist) - kTurnStart);
    const double turned = std::copysign(beyond, m_twist);
    pinch.degrees = turned - m_turned;
    m_turned = turned;
    return pinch;
}
