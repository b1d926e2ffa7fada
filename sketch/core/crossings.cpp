#include "sketch/core/crossings.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace vnt::sketch {
namespace {

// Of the unit circle's radius; so near a miss is a touch.
constexpr double kTouch = 1e-9;
// The sine of the angle between two sides; below it they are parallel.
constexpr double kParallel = 1e-9;
// Of a side, or of a round shape's parameter; rounding must not lose a crossing at an end.
constexpr double kAtEnd = 1e-9;

// Around an ellipse, to find the extremes: closer ones are as good as one.
constexpr std::size_t kSamples = 96;
// The first one; at 0 there is often an extreme itself.
constexpr double kFirstSample = 0.0123;
// Of the largest slope; where there is no more than this all along, the ellipses are the same or concentric.
constexpr double kFlat = 1e-12;
constexpr int kMostHalvings = 60;

// The plane as an ellipse's own unit circle lies in it.
class UnitFrame {
public:
    explicit UnitFrame(const Ellipse& ellipse) : ellipse_(ellipse), along_(unit_at(ellipse.rotation)) {}

    Vec2 direction(Vec2 d) const
    {
        return {dot(d, along_) / ellipse_.major, dot(d, turned_a_quarter(along_)) / ellipse_.minor};
    }
    Vec2 point(Vec2 p) const { return direction(p - ellipse_.centre); }

private:
    Ellipse ellipse_;
    Vec2 along_;
};

bool is_on_side(double t) { return t >= -kAtEnd && t <= 1 + kAtEnd; }

Path crossings(const Side& a, const Side& b)
{
    const Vec2 along = a.end - a.start;
    const Vec2 other = b.end - b.start;
    const double turn = cross(along, other);
    if (!(std::abs(turn) > kParallel * length(along) * length(other)))
        return {};
    const double t = cross(b.start - a.start, other) / turn;
    const double u = cross(b.start - a.start, along) / turn;
    if (!is_on_side(t) || !is_on_side(u))
        return {};
    return {a.start + t * along};
}

Path crossings(const Side& side, const Round& round)
{
    const UnitFrame frame(round.ellipse);
    const Vec2 start = frame.point(side.start);
    const Vec2 along = frame.direction(side.end - side.start);
    const double size = length(along);
    if (!(size > 0))
        return {};
    // From the circle's middle to the line; half the chord above that.
    const double off = std::abs(cross(start, along)) / size;
    const double nearest = -dot(start, along) / (size * size);
    Path found;
    const auto keep = [&](double t) {
        const Vec2 p = side.start + t * (side.end - side.start);
        if (is_on_side(t) && is_on_arc(round, p))
            found.push_back(p);
    };
    if (std::abs(off - 1) <= kTouch) {
        keep(nearest);
    } else if (off < 1) {
        const double half = std::sqrt((1 - off) * (1 + off)) / size;
        keep(nearest - half);
        keep(nearest + half);
    }
    return found;
}

// The points of an ellipse, in the frame of another.
struct Going {
    Vec2 centre, major, minor;

    // At the parameter whose cosine and sine these are.
    Vec2 at(Vec2 turn) const { return centre + turn.x * major + turn.y * minor; }
    // How far outside the other ellipse, in its radii, but for a factor that is never 0.
    double outside(double t) const
    {
        const double r = length(at(unit_at(t)));
        return (r - 1) * (r + 1);
    }
    // Half the derivative of that.
    double slope(Vec2 turn) const { return dot(at(turn), turn.x * minor - turn.y * major); }
};

double parameter_of_sample(std::size_t i)
{
    return kFirstSample + 2 * kPi * static_cast<double>(i) / kSamples;
}

const Path& samples()
{
    static const Path turns = [] {
        Path path;
        for (std::size_t i = 0; i < kSamples; ++i)
            path.push_back(unit_at(parameter_of_sample(i)));
        return path;
    }();
    return turns;
}

// Where the function crosses 0, between a place where it is on one side and one where it is on the other.
// Source: false position with the Illinois rule, M. Dowell, P. Jarratt, A Modified Regula Falsi Method for
//         Computing the Root of an Equation (BIT 1971).
template <class Function>
double root_between(const Function& f, double a, double b)
{
    double fa = f(a);
    double fb = f(b);
    for (int i = 0; i < kMostHalvings && fa != fb; ++i) {
        const double t = b - fb * (b - a) / (fb - fa);
        const double ft = f(t);
        if (ft == 0 ||
            std::abs(t - b) <= 4 * std::numeric_limits<double>::epsilon() * std::max(1.0, std::abs(t)))
            return t;
        if ((ft < 0) == (fb < 0)) {
            fa /= 2;
        } else {
            a = b;
            fa = fb;
        }
        b = t;
        fb = ft;
    }
    return b;
}

// The parameters at which the distance is largest or least, rising; none when it is the same all around.
std::vector<double> extremes_of(const Going& going)
{
    double steepest = 0;
    double slopes[kSamples + 1];
    for (std::size_t i = 0; i < kSamples; ++i) {
        slopes[i] = going.slope(samples()[i]);
        steepest = std::max(steepest, std::abs(slopes[i]));
    }
    slopes[kSamples] = slopes[0]; // rounding must not make it another
    std::vector<double> extremes;
    const double size =
        dot(going.centre, going.centre) + dot(going.major, going.major) + dot(going.minor, going.minor);
    if (!(steepest > kFlat * size))
        return extremes;
    for (std::size_t i = 0; i < kSamples; ++i)
        if ((slopes[i] < 0) != (slopes[i + 1] < 0))
            extremes.push_back(root_between([&](double t) { return going.slope(unit_at(t)); },
                                            parameter_of_sample(i), parameter_of_sample(i + 1)));
    return extremes;
}

bool is_circle(const Ellipse& ellipse) { return ellipse.major == ellipse.minor; }

Path crossings_of_circles(const Ellipse& first, const Ellipse& second)
{
    const double apart = distance(first.centre, second.centre);
    const double least = std::abs(first.major - second.major);
    const double most = first.major + second.major;
    const double touch = kTouch * std::max(first.major, second.major);
    if (!(apart > touch) || !(apart >= least - touch) || !(apart <= most + touch))
        return {};
    const Vec2 along = unit(second.centre - first.centre);
    const double side = first.major > second.major ? 1 : -1; // where the inner one touches the outer one
    if (std::abs(apart - least) <= touch)
        return {first.centre + (side * first.major) * along};
    if (std::abs(apart - most) <= touch)
        return {first.centre + first.major * along};
    const double foot = (apart + side * (least / apart) * most) / 2; // from the first centre to the chord
    const double half = std::sqrt((first.major - foot) * (first.major + foot));
    const Vec2 off = half * turned_a_quarter(along);
    return {first.centre + foot * along - off, first.centre + foot * along + off};
}

// By the circles about and within them.
bool are_apart(const Ellipse& first, const Ellipse& second)
{
    const double apart = distance(first.centre, second.centre);
    const double slack = 1 + kTouch;
    return apart > slack * (first.major + second.major) || slack * (apart + first.major) < second.minor ||
           slack * (apart + second.major) < first.minor;
}

Path crossings(const Round& first, const Round& second)
{
    if (are_apart(first.ellipse, second.ellipse))
        return {};
    if (is_circle(first.ellipse) && is_circle(second.ellipse)) {
        Path found = crossings_of_circles(first.ellipse, second.ellipse);
        std::erase_if(found, [&](Vec2 p) { return !is_on_arc(first, p) || !is_on_arc(second, p); });
        return found;
    }
    const bool swapped = first.ellipse.major > second.ellipse.major;
    const Round& small = swapped ? second : first;
    const Round& large = swapped ? first : second;
    const UnitFrame frame(large.ellipse);
    const Vec2 along = unit_at(small.ellipse.rotation);
    const Going going{frame.point(small.ellipse.centre), frame.direction(small.ellipse.major * along),
                      frame.direction(small.ellipse.minor * turned_a_quarter(along))};
    const std::vector<double> extremes = extremes_of(going);
    Path found;
    const auto keep = [&](double t) {
        const Vec2 p = small.ellipse.at(t);
        if (is_on_arc(small, p) && is_on_arc(large, p))
            found.push_back(p);
    };
    for (std::size_t i = 0; i < extremes.size(); ++i) {
        const bool is_last = i + 1 == extremes.size();
        const double here = extremes[i];
        const double next = is_last ? extremes[0] + 2 * kPi : extremes[i + 1];
        const double f = going.outside(here);
        const double g = going.outside(next);
        if (std::abs(f) <= 2 * kTouch)
            keep(here);
        else if (std::abs(g) > 2 * kTouch && (f < 0) != (g < 0))
            keep(root_between([&](double t) { return going.outside(t); }, here, next));
    }
    return found;
}

Path crossings(const Round& round, const Side& side) { return crossings(side, round); }

} // namespace

bool is_whole(const Round& round) { return std::abs(round.sweep) >= 2 * kPi - kAtEnd; }

bool is_on_arc(const Round& round, Vec2 p)
{
    const double from_start = round.ellipse.parameter_of(p) - round.start;
    const double way = within_a_turn(round.sweep < 0 ? -from_start : from_start);
    return way <= std::abs(round.sweep) + kAtEnd || way >= 2 * kPi - kAtEnd;
}

Box box_of(const Trace& trace)
{
    if (const auto* const side = std::get_if<Side>(&trace))
        return box_of(Path{side->start, side->end});
    const Ellipse& ellipse = std::get<Round>(trace).ellipse;
    const Vec2 along = unit_at(ellipse.rotation);
    const Vec2 half{std::hypot(ellipse.major * along.x, ellipse.minor * along.y),
                    std::hypot(ellipse.major * along.y, ellipse.minor * along.x)};
    return {ellipse.centre - half, ellipse.centre + half};
}

double least_distance(Vec2 p, const Trace& trace)
{
    if (const auto* const side = std::get_if<Side>(&trace))
        return distance_from_piece(p, side->start, side->end);
    // The frame shrinks nothing by more than the smaller half axis.
    const Ellipse& ellipse = std::get<Round>(trace).ellipse;
    return std::abs(length(UnitFrame(ellipse).point(p)) - 1) * std::min(ellipse.major, ellipse.minor);
}

Path crossings_of(const Trace& a, const Trace& b)
{
    return std::visit([](const auto& one, const auto& other) { return crossings(one, other); }, a, b);
}

} // namespace vnt::sketch
