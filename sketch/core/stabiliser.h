// Steadies a pen while it draws: spikes go, tremor is smoothed, the ink still ends where the pen was lifted.
//
// Space:  whatever space the samples are in; times in milliseconds.
// Errors: nothing throws; samples that are not finite, or further than kFarthest (ink.h) from the origin, are
//         dropped. Times that are missing (0), equal or run backwards are taken for one sample's usual time.
// Source: G. Casiez, N. Roussel, D. Vogel, 1€ Filter: A Simple Speed-based Low-pass Filter for Noisy Input in
//         Interactive Systems (CHI 2012): the cutoff rises with the speed, so the ink trails the pen by a bounded
//         length. A pen slows down in a corner, and the ink comes close there before it turns; a string that is
//         pulled would cut every corner by much of its length. Two things differ: the speed is that of the pen
//         whichever way it goes, as a direction's would fall in a sharp turn just where the ink must follow;
//         and where nothing comes for a while (a mouse that rests), the pen has rested at its last sample.
#pragma once

#include "sketch/core/ink.h"

#include <optional>
#include <vector>

namespace vnt::sketch {

class Stabiliser {
public:
    // strength:   from 0 (every sample that is no spike stands as it comes) to 1 (the steadiest).
    // view_scale: screen pixels a unit of the samples' space; hands shake by screen pixels.
    explicit Stabiliser(double strength = 0, double view_scale = 1);

    // The ink that a sample adds: none while it may still be a spike, or moves nothing; several when the wait
    // is over. The second sample of a stroke waits for the third, and one that lies suspiciously far off for
    // its next one.
    Ink add(const InkPoint& sample);
    // What is still owed when the pen is lifted: the ink comes to an end at the last sample. The next sample
    // begins another stroke.
    Ink finish();

private:
    void accept(const InkPoint& sample, Ink& ink);
    void follow(const InkPoint& sample, double milliseconds, Ink& ink);
    void learn_speed(const InkPoint& sample, double milliseconds);
    void release(Ink& ink);
    bool is_suspicious(const InkPoint& sample) const;
    bool decide(const InkPoint& next, Ink& ink);
    double elapsed_before(const InkPoint& sample);
    double usual_step() const;

    double strength_;
    double view_scale_;
    double usual_ms_;              // between samples
    std::vector<InkPoint> held_;   // samples not yet decided
    std::optional<InkPoint> last_; // accepted
    std::optional<InkPoint> smoothed_;
    std::optional<InkPoint> drawn_; // the ink's end
    std::vector<double> steps_;     // the last lengths between accepted samples
    Vec2 velocity_;                 // screen pixels a second
    std::optional<double> speed_;
};

} // namespace vnt::sketch
