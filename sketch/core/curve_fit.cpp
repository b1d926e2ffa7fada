#include "sketch/core/curve_fit.h"

#include <Eigen/Dense>

#include <algorithm>
#include <array>
#include <optional>

namespace vnt::sketch {
namespace {

using Cubic = std::array<Vec2, 4>;

constexpr int kMostSteps = 4; // of Newton on the parameters; later ones gain next to nothing

// Times the tolerance; what is further off than this at first does not come right by new parameters.
constexpr double kHopeless = 6;

// A weight beside that of one point, which holds the controls at the chord's thirds where the points say
// nothing.
constexpr double kHold = 1e-4;

constexpr std::size_t kFirstRun = 8; // points, for lack of a segment before

// The four weights of a cubic's points at t.
std::array<double, 4> weights_at(double t)
{
    const double s = 1 - t;
    return {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
}

// The cubic from end to end of points that come nearest to it at their parameters; along heading at its
// start, if given.
Cubic nearest_cubic(const Vec2* points, const std::vector<double>& parameters, std::optional<Vec2> heading)
{
    const std::size_t last = parameters.size() - 1;
    const Vec2 start = points[0];
    const Vec2 end = points[last];
    // Unknowns: the controls' distances from the chord's thirds, (x, y) each.
    const Vec2 third = start + (1.0 / 3) * (end - start);
    const Vec2 other = start + (2.0 / 3) * (end - start);
    double w11 = kHold, w12 = 0, w22 = kHold;
    Vec2 r1, r2;
    for (std::size_t i = 1; i < last; ++i) {
        const auto w = weights_at(parameters[i]);
        const Vec2 off = points[i] - (w[0] * start + w[1] * third + w[2] * other + w[3] * end);
        w11 += w[1] * w[1];
        w12 += w[1] * w[2];
        w22 += w[2] * w[2];
        r1 = r1 + w[1] * off;
        r2 = r2 + w[2] * off;
    }
    if (!heading) {
        const double determinant = w11 * w22 - w12 * w12;
        return {start, third + (1 / determinant) * (w22 * r1 - w12 * r2),
                other + (1 / determinant) * (w11 * r2 - w12 * r1), end};
    }
    // The first control is start + arm * heading; unknowns: arm, the second control's distance.
    const Vec2 along = *heading;
    const Vec2 from_third = start - third;
    Eigen::Matrix3d a;
    a << w11, w12 * along.x, w12 * along.y, //
        w12 * along.x, w22, 0,              //
        w12 * along.y, 0, w22;
    const Vec2 rest1 = r1 - w11 * from_third;
    const Vec2 rest2 = r2 - w12 * from_third;
    const Eigen::Vector3d x = a.ldlt().solve(Eigen::Vector3d(dot(along, rest1), rest2.x, rest2.y));
    const double shortest = distance(start, end) / 100; // an arm of none has no direction to keep
    if (x[0] >= shortest)
        return {
            start, start + x[0] * along, {other.x + x[1], other.y + x[2]},
                  end
        };
    const Vec2 fixed = shortest * along + from_third;
    return {start, start + shortest * along, other + (1 / w22) * (r2 - w12 * fixed), end};
}

// Newton's step of each parameter towards the foot of its point.
void step_parameters(const Cubic& cubic, const Vec2* points, std::vector<double>& parameters)
{
    const Vec2 a = cubic[1] - cubic[0];
    const Vec2 b = cubic[2] - cubic[1];
    const Vec2 c = cubic[3] - cubic[2];
    for (std::size_t i = 1; i + 1 < parameters.size(); ++i) {
        const double t = parameters[i];
        const double s = 1 - t;
        const Vec2 off = point_of_cubic(cubic.data(), t) - points[i];
        const Vec2 first = (3 * s * s) * a + (6 * s * t) * b + (3 * t * t) * c;
        const Vec2 second = (6 * s) * (b - a) + (6 * t) * (c - b);
        const double slope = dot(first, first) + dot(off, second);
        if (slope > 0)
            parameters[i] = std::clamp(t - dot(off, first) / slope, 0.0, 1.0);
    }
}

double largest_distance(const Cubic& cubic, const Vec2* points, const std::vector<double>& parameters)
{
    double largest = 0;
    for (std::size_t i = 1; i + 1 < parameters.size(); ++i) {
        const Vec2 off = point_of_cubic(cubic.data(), parameters[i]) - points[i];
        largest = std::max(largest, dot(off, off));
    }
    return std::sqrt(largest);
}

class Fitter {
public:
    Fitter(const Path& path, double tolerance) : path_(path), tolerance_(tolerance)
    {
        along_.reserve(path.size());
        along_.push_back(0);
        for (std::size_t i = 1; i < path.size(); ++i)
            along_.push_back(along_.back() + distance(path[i - 1], path[i]));
    }

    // Appends segments from one sharp place to the next.
    void fit(std::size_t first, std::size_t last, Path& curve)
    {
        std::optional<Vec2> heading;
        while (first < last) {
            std::size_t end = first + 1;
            const Cubic cubic = furthest(first, last, heading, end);
            curve.insert(curve.end(), cubic.begin(), cubic.end());
            usual_ = std::max<std::size_t>(end - first, 2);
            first = end;
            const Vec2 out = unit(cubic[3] - cubic[2]);
            heading = out == Vec2{} ? std::nullopt : std::optional(out);
        }
    }

private:
    std::optional<Cubic> within_tolerance(std::size_t first, std::size_t last, std::optional<Vec2> heading)
    {
        const Vec2* points = &path_[first];
        const double whole = along_[last] - along_[first];
        parameters_.clear();
        for (std::size_t i = first; i <= last; ++i)
            parameters_.push_back((along_[i] - along_[first]) / whole);
        Cubic cubic = nearest_cubic(points, parameters_, heading);
        for (int i = 0;; ++i) {
            const double off = largest_distance(cubic, points, parameters_);
            if (off <= tolerance_)
                return cubic;
            if (i == kMostSteps || !(off <= kHopeless * tolerance_))
                return std::nullopt;
            step_parameters(cubic, points, parameters_);
            cubic = nearest_cubic(points, parameters_, heading);
        }
    }

    // The segment from first that goes furthest; end says to where.
    Cubic furthest(std::size_t first, std::size_t last, std::optional<Vec2> heading, std::size_t& end)
    {
        end = first + 1;
        Cubic best = nearest_cubic(&path_[first], {0, 1}, heading);
        std::size_t too_far = last + 1;
        for (std::size_t step = usual_; end < last;) {
            const std::size_t next =
                too_far > last ? std::min(first + step, last) : end + (too_far - end) / 2;
            if (next <= end)
                break;
            if (const std::optional<Cubic> cubic = within_tolerance(first, next, heading)) {
                best = *cubic;
                end = next;
                step *= 2;
            } else {
                too_far = next;
            }
        }
        return best;
    }

    const Path& path_;
    double tolerance_;
    std::vector<double> along_;
    std::vector<double> parameters_;
    std::size_t usual_ = kFirstRun;
};

} // namespace

Vec2 point_of_cubic(const Vec2* segment, double t)
{
    const auto w = weights_at(t);
    return w[0] * segment[0] + w[1] * segment[1] + w[2] * segment[2] + w[3] * segment[3];
}

Path fit_curve(const Path& path, double tolerance, const std::vector<std::size_t>& sharp)
{
    Path distinct;
    std::vector<std::size_t> places; // in distinct, of the path's points
    for (const Vec2 p : path) {
        if (distinct.empty() || distinct.back() != p)
            distinct.push_back(p);
        places.push_back(distinct.size() - 1);
    }
    if (distinct.size() < 2)
        return distinct.empty() ? Path{} : Path(4, distinct.front());
    Path curve;
    Fitter fitter(distinct, tolerance);
    std::size_t first = 0;
    for (const std::size_t place : sharp) {
        if (place >= places.size() || places[place] <= first)
            continue;
        fitter.fit(first, places[place], curve);
        first = places[place];
    }
    fitter.fit(first, distinct.size() - 1, curve);
    return curve;
}

} // namespace vnt::sketch
