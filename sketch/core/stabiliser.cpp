#include "sketch/core/stabiliser.h"

#include <algorithm>
#include <cmath>

namespace vnt::sketch {
namespace {

// Times the longest of the last steps; as clean_path (ink.h) has it, which sees the steps behind as well.
constexpr double kSpikeStep = 4;
constexpr double kNoWayOn = 2;
constexpr std::size_t kSteps = 3;

// Of one sample, as long as nothing better is known: 125 a second, as mice send them.
constexpr double kUsualMs = 8;
constexpr double kShortestMs = 0.5;
constexpr double kLongestMs = 50;
// Of the way from the usual time to a new one.
constexpr double kNewTime = 0.1;
// Times the usual; nothing came for so long: the pen rested.
constexpr double kRest = 4;

// At a strength of 1; both are chosen by the corners and the tremor in tests/sketch/stabiliser_test.cpp.
constexpr double kLongestTrail = 24; // screen pixels from the pen to the ink at speed
constexpr double kLowestCutoff = 1;  // Hz, of a pen that hardly moves: at half the strength twice as much
// Hz; the paper's for its speed, "dcutoff".
constexpr double kSpeedCutoff = 1;
// Hz; tremor comes and goes faster than this, and is no speed.
constexpr double kVelocityCutoff = 5;

// Screen pixels; ink that moves less is not seen to move.
constexpr double kLeastMove = 1.0 / 64;

Vec2 place_of(const InkPoint& point) { return {point.x, point.y}; }

double distance(const InkPoint& a, const InkPoint& b) { return sketch::distance(place_of(a), place_of(b)); }

bool is_usable(const InkPoint& sample)
{
    return std::abs(sample.x) <= kFarthest && std::abs(sample.y) <= kFarthest && // false for NaN
           std::isfinite(sample.time_ms) && std::isfinite(sample.pressure);
}

// Of the way to a new value, when so much time has gone by.
double share_after(double milliseconds, double cutoff)
{
    return -std::expm1(-2 * kPi * cutoff * milliseconds / 1000);
}

} // namespace

Stabiliser::Stabiliser(double strength, double view_scale)
    : strength_(strength > 0 ? std::min(strength, 1.0) : 0), view_scale_(view_scale > 0 ? view_scale : 1),
      usual_ms_(kUsualMs)
{
}

Ink Stabiliser::add(const InkPoint& sample)
{
    Ink ink;
    if (!is_usable(sample))
        return ink;
    if (!held_.empty() && !decide(sample, ink)) {
        held_.push_back(sample);
        return ink;
    }
    if (last_ && is_suspicious(sample))
        held_.push_back(sample);
    else
        accept(sample, ink);
    return ink;
}

Ink Stabiliser::finish()
{
    Ink ink;
    release(ink);
    if (last_ && place_of(*drawn_) != place_of(*last_))
        ink.push_back(*last_);
    *this = Stabiliser(strength_, view_scale_);
    return ink;
}

bool Stabiliser::is_suspicious(const InkPoint& sample) const
{
    const double step = distance(*last_, sample);
    return step > 0 && step > kSpikeStep * usual_step();
}

// Decides on what is held, now that next has come. False while it takes one more.
bool Stabiliser::decide(const InkPoint& next, Ink& ink)
{
    const InkPoint& held = held_.front();
    const double farness =
        std::min(distance(*last_, held), distance(held, held_.size() > 1 ? held_[1] : next));
    double usual = usual_step();
    double on = distance(*last_, next);
    if (steps_.empty()) { // a stroke's beginning: the steps behind must tell what is usual here
        on = distance(*last_, held_.size() > 1 ? held_[1] : next);
        if (held_.size() == 1 && farness > kSpikeStep * on)
            return false;
        usual = held_.size() > 1 ? std::max(on, distance(held_[1], next)) : 0;
    }
    if (usual > 0 && farness > kSpikeStep * usual && on <= kNoWayOn * usual)
        held_.erase(held_.begin());
    release(ink);
    return true;
}

void Stabiliser::release(Ink& ink)
{
    for (const InkPoint& sample : held_)
        accept(sample, ink);
    held_.clear();
}

double Stabiliser::usual_step() const
{
    return steps_.empty() ? 0 : *std::max_element(steps_.begin(), steps_.end());
}

void Stabiliser::accept(const InkPoint& sample, Ink& ink)
{
    if (!last_) {
        last_ = smoothed_ = drawn_ = sample;
        ink.push_back(sample);
        return;
    }
    double milliseconds = elapsed_before(sample);
    if (milliseconds > kRest * usual_ms_) {
        follow(*last_, milliseconds - usual_ms_, ink);
        milliseconds = usual_ms_;
    }
    follow(sample, milliseconds, ink);
    if (const double step = distance(*last_, sample); step > 0) {
        if (steps_.size() == kSteps)
            steps_.erase(steps_.begin());
        steps_.push_back(step);
    }
    last_ = sample;
}

// Above 0.
double Stabiliser::elapsed_before(const InkPoint& sample)
{
    const double elapsed = sample.time_ms - last_->time_ms;
    if (!(elapsed > 0))
        return usual_ms_;
    const double usable = std::clamp(elapsed, kShortestMs, kLongestMs);
    if (usable <= kRest * usual_ms_)
        usual_ms_ += kNewTime * (usable - usual_ms_);
    return std::max(elapsed, kShortestMs);
}

void Stabiliser::learn_speed(const InkPoint& sample, double milliseconds)
{
    const Vec2 now = (1000 * view_scale_ / milliseconds) * (place_of(sample) - place_of(*last_));
    if (!speed_) {
        velocity_ = now;
        speed_ = length(now);
        return;
    }
    velocity_ = velocity_ + share_after(milliseconds, kVelocityCutoff) * (now - velocity_);
    *speed_ += share_after(milliseconds, kSpeedCutoff) * (length(velocity_) - *speed_);
}

// Brings the ink nearer to the sample, as far as it comes in the time.
void Stabiliser::follow(const InkPoint& sample, double milliseconds, Ink& ink)
{
    InkPoint next = sample;
    if (strength_ > 0) {
        learn_speed(sample, milliseconds);
        const double cutoff = kLowestCutoff / strength_ + *speed_ / (2 * kPi * kLongestTrail * strength_);
        const Vec2 way = place_of(sample) - place_of(*smoothed_);
        const Vec2 place = place_of(*smoothed_) + share_after(milliseconds, cutoff) * way;
        next.x = place.x;
        next.y = place.y;
        smoothed_ = next;
        if (view_scale_ * distance(*drawn_, next) < kLeastMove)
            return;
    } else if (place_of(*drawn_) == place_of(next)) {
        return;
    }
    drawn_ = next;
    ink.push_back(next);
}

} // namespace vnt::sketch
