#include "sketch/core/resampling.h"

#include <algorithm>

namespace vnt::sketch {
namespace {

// Of the path's length; a piece at an end that is longer was meant.
constexpr double kLongestHook = 0.04;

// Radians; a hook turns off more sharply than this. Less is the beginning of a curve.
constexpr double kHookTurn = 75 * kPi / 180;

// Samples for looking for hooks: a hook of the greatest length has about eight.
constexpr std::size_t kHookSamples = 128;

// Of the path's length; a longer step is one of a fast mouse, with less than a corner's worth of points about
// it.
constexpr double kLongStep = 1.0 / 32;

// Of a turn by 60°; a path that turns by more at a point has a corner there, however few points it has.
constexpr double kSharpTurnCosine = 0.5;

// Times the step on the other side of a point. A longer arm would swing far out with what turned within little.
constexpr double kLongestArm = 2;

constexpr int kMostAddedPoints = 4; // in a long step

// Along points, from wherever the caller likes: the place at a distance from the start, which only grows.
class Walker {
public:
    explicit Walker(const Path& points) : points_(points) {}

    Vec2 at(double wanted)
    {
        while (next_ + 1 < points_.size() && passed_ + step() < wanted) {
            passed_ += step();
            ++next_;
        }
        const double size = step();
        const double t = size > 0 ? std::clamp((wanted - passed_) / size, 0.0, 1.0) : 0;
        return points_[next_ - 1] + t * (points_[next_] - points_[next_ - 1]);
    }

private:
    double step() const { return distance(points_[next_ - 1], points_[next_]); }

    const Path& points_;
    std::size_t next_ = 1;
    double passed_ = 0;
};

Path spread(const Path& points, std::size_t count, std::size_t steps)
{
    const double whole = path_length(points);
    if (points.size() < 2 || !(whole > 0))
        return points.empty() ? Path{} : Path{points.front()};
    Path even;
    even.reserve(count);
    Walker walker(points);
    for (std::size_t i = 0; i < count; ++i)
        even.push_back(walker.at(whole * static_cast<double>(i) / static_cast<double>(steps)));
    return even;
}

// The arm of a step at one of its points, by how the path goes on behind the point.
Vec2 arm_of(const Path& path, std::size_t at, bool is_start)
{
    const Vec2 in = path[at] - path[at - 1];
    const Vec2 out = path[at + 1] - path[at];
    const Vec2 step = is_start ? out : in;
    const Vec2 before = unit(in);
    const Vec2 behind = unit(out);
    if (!(dot(before, behind) >= kSharpTurnCosine))
        return step;
    const double size = std::min(length(step), kLongestArm * length(is_start ? in : out));
    return size * unit(before + behind);
}

// At the path's ends as much to the other side: the step bends evenly.
Vec2 mirrored(Vec2 arm, Vec2 step) { return (2 * dot(arm, step) / dot(step, step)) * step - arm; }

// Chords of a rounded step, so many that its curve is within flatness of them, or as many as there may be.
//
// Source: off a chord a cubic is by 3/4 of what its legs change at most, over the square of the chords.
int chords_of(const RoundedStep& bend, double flatness)
{
    const Vec2 first = (1.0 / 3) * bend.first; // Bézier's arms
    const Vec2 second = (1.0 / 3) * bend.second;
    const double turn =
        std::max(length(bend.step - second - 2.0 * first), length(2.0 * second + first - bend.step));
    int chords = 1;
    while (chords <= kMostAddedPoints && chords * chords * flatness < 0.75 * turn)
        ++chords;
    return chords;
}

// How many samples at the beginning belong to a hook; 0: there is none.
std::size_t hook_at_start(const Path& even)
{
    const auto longest = static_cast<std::size_t>(kLongestHook * static_cast<double>(even.size()));
    for (std::size_t i = longest; i >= 1; --i) {
        // The hook as a whole against what follows it, over the same length.
        const Vec2 hook = even[i] - even[0];
        const Vec2 rest = even[std::min(i + longest, even.size() - 1)] - even[i];
        const Vec2 before = even[i] - even[i - 1];
        const Vec2 after = even[i + 1] - even[i];
        const bool turns_here = std::abs(turn_between(before, after)) > kHookTurn / 2;
        if (turns_here && std::abs(turn_between(hook, rest)) > kHookTurn)
            return i;
    }
    return 0;
}

} // namespace

Path resample(const Path& path, std::size_t count)
{
    Path even = spread(path, count, count - 1);
    if (even.size() > 1)
        even.back() = path.back();
    return even;
}

Path resample_closed(const Path& path, std::size_t count)
{
    Path around = path;
    if (!around.empty())
        around.push_back(path.front());
    return spread(around, count, count);
}

Path part_of(const Path& path, double from, double to)
{
    Path part;
    double passed = 0;
    for (std::size_t i = 1; i < path.size(); ++i) {
        const double step = distance(path[i - 1], path[i]);
        const auto at = [&](double wanted) {
            return path[i - 1] + ((wanted - passed) / step) * (path[i] - path[i - 1]);
        };
        if (passed >= from && passed <= to)
            part.push_back(path[i - 1]);
        else if (passed < from && passed + step > from)
            part.push_back(at(from));
        if (passed < to && passed + step > to)
            part.push_back(at(to));
        passed += step;
    }
    if (passed >= from && passed <= to)
        part.push_back(path.back());
    return part;
}

Path without_hooks(const Path& path)
{
    Path even = resample(path, kHookSamples);
    if (even.size() < kHookSamples)
        return path;
    const std::size_t first = hook_at_start(even);
    std::reverse(even.begin(), even.end());
    const std::size_t last = hook_at_start(even);
    if (first == 0 && last == 0)
        return path;
    const double step = path_length(path) / (kHookSamples - 1);
    return part_of(path, static_cast<double>(first) * step,
                   static_cast<double>(kHookSamples - 1 - last) * step);
}

Vec2 RoundedStep::at(double t) const
{
    const double s = 1 - t; // Hermite's weights
    return from + (t * t * (3 - 2 * t)) * step + (t * s * s) * first - (t * t * s) * second;
}

RoundedStep rounded_step(const Path& path, std::size_t i)
{
    const Vec2 step = path[i + 1] - path[i];
    Vec2 first = i > 0 ? arm_of(path, i, true) : Vec2{};
    const Vec2 second = i + 2 < path.size() ? arm_of(path, i + 1, false) : mirrored(first, step);
    if (i == 0)
        first = mirrored(second, step);
    return {path[i], step, first, second};
}

Path with_long_steps_rounded(const Path& path)
{
    return with_long_steps_rounded(path, kLongStep * path_length(path));
}

Path with_long_steps_rounded(const Path& path, double longest, double flatness)
{
    const std::size_t n = path.size();
    if (n < 3)
        return path;
    Path rounded{path.front()};
    for (std::size_t i = 0; i + 1 < n; ++i) {
        if (distance(path[i], path[i + 1]) > longest) {
            const RoundedStep bend = rounded_step(path, i);
            const int chords = chords_of(bend, flatness);
            for (int k = 1; k < chords; ++k)
                rounded.push_back(bend.at(static_cast<double>(k) / chords));
        }
        rounded.push_back(path[i + 1]);
    }
    return rounded;
}

} // namespace vnt::sketch
