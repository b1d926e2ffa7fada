#include "sketch/app/outline_text.h"

#include <algorithm>
#include <cmath>
#include <utility>

using vnt::sketch::OutlinePart;
using vnt::sketch::Path;
using vnt::sketch::RoundEnd;
using vnt::sketch::Vec2;

namespace {

constexpr double kSteps = 100; // a pixel

// From the middle of a step; where controls are as near to the straight piece, it is one.
constexpr double kStraight = 0.5 / kSteps;

// Radius of a round end whose tip is off by no more than a tenth of a pixel where its ends are rounded.
constexpr double kSmall = 0.5;

Vec2 rounded(Vec2 p) { return {std::round(p.x * kSteps) / kSteps, std::round(p.y * kSteps) / kSteps}; }

// ".5", "-3.25", "12"
QByteArray digitsOf(double number)
{
    QByteArray digits = shortDigits(number, 2);
    if (digits.startsWith("0."))
        digits.remove(0, 1);
    else if (digits.startsWith("-0."))
        digits.remove(1, 1);
    return digits;
}

// Relative to where the last piece has ended, as it was written: what is rounded does not add up.
class PathText {
public:
    void moveTo(Vec2 p)
    {
        m_at = rounded(p);
        m_text += "M" + digitsOf(m_at.x);
        number(m_at.y);
        m_command = 'M';
    }

    void goAlong(const Path& cubics)
    {
        for (std::size_t i = 0; i + 3 < cubics.size(); i += 4) {
            if (isStraight(&cubics[i])) {
                command('l');
                place(cubics[i + 3]);
            } else {
                command('c');
                place(cubics[i + 1]);
                place(cubics[i + 2]);
                place(cubics[i + 3]);
            }
            m_at = rounded(cubics[i + 3]);
        }
    }

    // Through its tip: of an arc of half a turn alone that would be off by the root of what its ends are.
    void goAround(const RoundEnd& end, Vec2 from, Vec2 to)
    {
        if (end.radius <= kSmall) {
            arc(end.radius, end.is_long, to);
            return;
        }
        arc(end.radius, false, tipOf(end, from, to));
        arc(end.radius, false, to);
    }

    void close()
    {
        m_text += 'z';
        m_command = 'z';
    }

    QByteArray text() && { return std::move(m_text); }

private:
    static Vec2 tipOf(const RoundEnd& end, Vec2 from, Vec2 to)
    {
        const double half = distance(from, to) / 2;
        const double depth = std::sqrt(std::max(0.0, end.radius * end.radius - half * half));
        const Vec2 outwards = -1 * turned_a_quarter(unit(to - from));
        return middle(from, to) + (end.radius + (end.is_long ? depth : -depth)) * outwards;
    }

    void arc(double radius, bool isLong, Vec2 to)
    {
        command('a');
        number(radius);
        number(radius);
        m_text += isLong ? " 0 1 1" : " 0 0 1";
        place(to);
        m_at = rounded(to);
    }

    static bool isStraight(const Vec2* cubic)
    {
        return distance_from_piece(cubic[1], cubic[0], cubic[3]) <= kStraight &&
               distance_from_piece(cubic[2], cubic[0], cubic[3]) <= kStraight;
    }

    // A command stands for those like it that follow.
    void command(char letter)
    {
        if (letter != m_command)
            m_text += letter;
        m_command = letter;
    }

    void place(Vec2 p)
    {
        const Vec2 step = rounded(p) - m_at;
        number(step.x);
        number(step.y);
    }

    void number(double value)
    {
        const QByteArray digits = digitsOf(value);
        const char last = m_text.back();
        const bool isFirst = last >= 'a' && last <= 'z';
        if (!isFirst && !digits.startsWith('-'))
            m_text += ' ';
        m_text += digits;
    }

    QByteArray m_text;
    char m_command = 0;
    Vec2 m_at;
};

} // namespace

QByteArray shortDigits(double number, int decimals)
{
    QByteArray digits = QByteArray::number(number, 'f', decimals);
    while (digits.endsWith('0'))
        digits.chop(1);
    if (digits.endsWith('.'))
        digits.chop(1);
    return digits == "-0" ? "0" : digits;
}

QByteArray outlineText(const std::vector<OutlinePart>& parts)
{
    PathText text;
    for (const OutlinePart& part : parts) {
        if (part.there.empty()) {
            const Vec2 radius{part.at_start.radius, 0};
            text.moveTo(part.middle - radius);
            text.goAround(part.at_start, part.middle - radius, part.middle + radius);
            text.goAround(part.at_start, part.middle + radius, part.middle - radius);
        } else {
            text.moveTo(part.there.front());
            text.goAlong(part.there);
            text.goAround(part.at_end, part.there.back(), part.back.front());
            text.goAlong(part.back);
            text.goAround(part.at_start, part.back.back(), part.there.front());
        }
        text.close();
    }
    return std::move(text).text();
}
