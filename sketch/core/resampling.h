// Paths with their points spread evenly, and without what a hand adds at its ends.
//
// Space:  the sheet, y down.
// Errors: nothing throws or reports. A path of one point, or of no length, is returned as that point alone.
// Source: the even spacing is that of J. O. Wobbrock, A. D. Wilson, Y. Li, Gestures without Libraries,
//         Toolkits or Training (UIST 2007), taken along the whole path at once, so that no rounding adds up.
#pragma once

#include "sketch/core/plane.h"

#include <cstddef>

namespace vnt::sketch {

// count points (at least 2) at even distances along the path, its two ends among them.
Path resample(const Path& path, std::size_t count);

// count points at even distances around the closed path: the last is one distance before the first.
Path resample_closed(const Path& path, std::size_t count);

// The path from one distance along it to another, with its own points between.
Path part_of(const Path& path, double from, double to);

// The path without hooks: short pieces at its ends that turn off sharply, which a pen leaves when it touches
// and lifts. What is left always keeps most of the path.
Path without_hooks(const Path& path);

// The path with points added on a curve through it where its steps are long and it bends little: a mouse that
// is moved fast leaves few points, and what they stand on was no polygon.
//
// Source: E. Catmull, R. Rom, A Class of Local Interpolating Splines (1974), with arms along the path at
//         sharp turns, and short ones beside short steps: who moves slowly at a point turns there.
Path with_long_steps_rounded(const Path& path);
// The same for each step that is longer than longest, with no more points than its curve takes to be within
// flatness of its chords. 0: with all.
Path with_long_steps_rounded(const Path& path, double longest, double flatness = 0);

// The curve that a long step is rounded to.
struct RoundedStep {
    Vec2 from;
    Vec2 step;
    Vec2 first, second; // its arms, as Hermite has them

    Vec2 at(double t) const; // t from 0 to 1
};

// From point i to the next of a path of at least three points.
RoundedStep rounded_step(const Path& path, std::size_t i);

} // namespace vnt::sketch
