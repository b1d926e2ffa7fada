// Strokes that change little by little, and what their readings score.
#pragma once

#include "sketch/core/recognition.h"
#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

#include <vector>

namespace scored {

using vnt::sketch::Ink;
using vnt::sketch::Kind;
using vnt::sketch::Path;
using vnt::sketch::Reading;
using vnt::sketch::Vec2;

inline double score_of(const std::vector<Reading>& readings, Kind kind)
{
    for (const Reading& reading : readings) {
        if (reading.kind == kind)
            return reading.score;
    }
    ADD_FAILURE() << "there is no " << name_of(kind);
    return -1;
}

inline double score_of(const Ink& ink, Kind kind) { return score_of(recognise(ink), kind); }

inline Ink drawn_open(const Path& outline)
{
    drawn::Hand hand;
    hand.points = 300;
    return drawn::stroke(outline, false, hand);
}

inline Ink drawn_closed(const Path& outline, double more = 0, double start = 0.03)
{
    drawn::Hand hand;
    hand.points = 300;
    hand.more = more;
    hand.start = start;
    return drawn::stroke(outline, true, hand);
}

// Of a polygon and a circle so much of the polygon.
inline Ink blunt(int sides, double share)
{
    Path outline;
    for (const Vec2 p : vnt::sketch::resample_closed(drawn::regular(sides), 720))
        outline.push_back(share * p + (1 - share) * unit(p));
    return drawn_closed(outline);
}

} // namespace scored
