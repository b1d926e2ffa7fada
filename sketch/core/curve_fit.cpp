#include "sketch/core/curve_fit.h"

#include "sketch/core/cubic_fit.h"

#include <algorithm>
#include <optional>

namespace vnt::sketch {
namespace {

constexpr int kMostSteps = 12; // of Newton on the parameters; more of them cost more than they gain

// Times the tolerance; what is further off than this at first does not come right by new parameters.
constexpr double kHopeless = 6;

constexpr std::size_t kFirstRun = 8; // points, for lack of a segment before

// Of a run's parameters for a part of it: a smaller part has too little of the digits.
constexpr double kMostScale = 1e9;

// The direction in which a segment leaves its end.
std::optional<Vec2> heading_out(const Cubic& cubic)
{
    const Vec2 out = unit(cubic[3] - cubic[2]);
    return out == Vec2{} ? std::nullopt : std::optional(out);
}

// The distances along a path to its points.
std::vector<double> distances_along(const Path& path)
{
    std::vector<double> along(path.size(), 0);
    for (std::size_t i = 1; i < path.size(); ++i)
        along[i] = along[i - 1] + distance(path[i - 1], path[i]);
    return along;
}

class Fitter {
public:
    Fitter(const Path& path, double tolerance)
        : path_(path), tolerance_(tolerance), along_(distances_along(path))
    {
    }

    // Appends segments from one sharp place to the next, or between places with given headings.
    void fit(std::size_t first, std::size_t last, Headings headings, Path& curve)
    {
        while (first < last) {
            std::size_t end = first + 1;
            const Cubic cubic = furthest(first, last, headings, end);
            curve.insert(curve.end(), cubic.begin(), cubic.end());
            first = end;
            headings.at_start = heading_out(cubic);
        }
    }

    // The segment from first that goes furthest; end says to where. Only at last it keeps the heading there.
    Cubic furthest(std::size_t first, std::size_t last, const Headings& headings, std::size_t& end)
    {
        const auto up_to = [&](std::size_t to) {
            return Headings{headings.at_start, to == last ? headings.at_end : std::nullopt};
        };
        parameters_.clear(); // those of another run
        end = first + 1;
        Cubic best = cubic_along_piece(path_[first], path_[end], up_to(end), tolerance_);
        std::size_t too_far = last + 1;
        for (std::size_t step = usual_; end < last;) {
            const std::size_t next =
                too_far > last ? std::min(first + step, last) : end + (too_far - end) / 2;
            if (next <= end)
                break;
            if (const std::optional<Cubic> cubic = within_tolerance(first, next, up_to(next))) {
                best = *cubic;
                end = next;
                step *= 2;
            } else {
                too_far = next;
            }
        }
        usual_ = std::max<std::size_t>(end - first, 2);
        return best;
    }

private:
    // By the way along the path.
    void spread_parameters(std::size_t first, std::size_t last)
    {
        const double whole = along_[last] - along_[first];
        const auto steps = static_cast<double>(last - first);
        parameters_.resize(last - first + 1);
        for (std::size_t i = first; i <= last; ++i) // steps lost in a long path's sum count evenly
            parameters_[i - first] =
                whole > 0 ? (along_[i] - along_[first]) / whole : static_cast<double>(i - first) / steps;
    }

    // From the parameters of the run from first that was tried last, whether that came right or not: they are
    // as good a beginning as a step or two. Beyond its end they go on as in its second half. False: they say
    // nothing.
    bool carry_parameters(std::size_t first, std::size_t last)
    {
        if (parameters_.empty())
            return false;
        const std::size_t known = parameters_.size() - 1;
        const std::size_t half = known / 2;
        const double pace = (1 - parameters_[half]) / (along_[first + known] - along_[first + half]);
        const auto beyond = [&](std::size_t to) {
            return 1 + pace * (along_[first + to] - along_[first + known]);
        };
        const std::size_t count = last - first;
        const double scale = 1 / (count > known ? beyond(count) : parameters_[count]);
        if (!(scale > 0 && scale < kMostScale))
            return false;
        parameters_.resize(count + 1);
        for (std::size_t i = known + 1; i < count; ++i)
            parameters_[i] = beyond(i);
        for (std::size_t i = 1; i < count; ++i)
            parameters_[i] = std::min(scale * parameters_[i], 1.0);
        parameters_[count] = 1;
        return true;
    }

    std::optional<Cubic> within_tolerance(std::size_t first, std::size_t last, const Headings& headings)
    {
        if (!carry_parameters(first, last))
            spread_parameters(first, last);
        const Run run{&path_[first], last - first};
        Cubic cubic = nearest_cubic(run, control_sums(run, parameters_), headings);
        double before = kHopeless * tolerance_;
        for (int i = 0;; ++i) {
            take_step(run, cubic, parameters_, step_);
            const double off = std::sqrt(step_.largest_square);
            if (!step_.is_number || !(off <= kHopeless * tolerance_))
                return std::nullopt;
            if (off <= tolerance_) {
                // What leaves the pieces between near points does so for the lack of points.
                const bool is_near = is_along_pieces(run, cubic, parameters_, step_.squares, tolerance_);
                return is_near ? std::optional(cubic) : std::nullopt;
            }
            // What one step gained, the next ones will not exceed.
            if (i == kMostSteps || (i > 0 && off - (kMostSteps - i) * (before - off) > tolerance_))
                return std::nullopt;
            before = off;
            parameters_.swap(step_.parameters);
            cubic = nearest_cubic(run, step_.sums, headings);
        }
    }

    const Path& path_;
    double tolerance_;
    std::vector<double> along_;
    std::vector<double> parameters_;
    Step step_;
    std::size_t usual_ = kFirstRun;
};

// A path without repetitions, and where its curve may turn at once: inner points, rising.
struct Course {
    Path path;
    std::vector<std::size_t> sharp;
};

Course course_of(const Path& path, const std::vector<std::size_t>& sharp)
{
    Course course;
    std::vector<std::size_t> places; // in the course, of the path's points
    for (const Vec2 p : path) {
        if (course.path.empty() || course.path.back() != p)
            course.path.push_back(p);
        places.push_back(course.path.size() - 1);
    }
    for (const std::size_t place : sharp) {
        if (place < places.size() && places[place] + 1 < course.path.size() &&
            places[place] > (course.sharp.empty() ? 0 : course.sharp.back()))
            course.sharp.push_back(places[place]);
    }
    return course;
}

// headings: of a course without sharp places.
Path fit_course(const Course& course, double tolerance, const Headings& headings = {})
{
    Path curve;
    Fitter fitter(course.path, tolerance);
    std::size_t first = 0;
    for (const std::size_t place : course.sharp) {
        fitter.fit(first, place, {}, curve);
        first = place;
    }
    fitter.fit(first, course.path.size() - 1, headings, curve);
    return curve;
}

// A smooth closed course begins where its first segment ended when it was begun anywhere, with the direction
// that the segment had there.
Path fit_ring(Course course, double tolerance)
{
    Path& path = course.path;
    const std::size_t last = path.size() - 1;
    std::size_t end = 0;
    const Cubic cubic = Fitter(path, tolerance).furthest(0, last, {}, end);
    end %= last;
    path.pop_back();
    std::rotate(path.begin(), path.begin() + static_cast<std::ptrdiff_t>(end), path.end());
    path.push_back(path.front());
    const std::optional<Vec2> heading = heading_out(cubic);
    return fit_course(course, tolerance, {heading, heading});
}

} // namespace

Path fit_curve(const Path& path, double tolerance, const std::vector<std::size_t>& sharp)
{
    Course course = course_of(path, sharp);
    if (course.path.size() < 2)
        return course.path.empty() ? Path{} : Path(4, course.path.front());
    return fit_course(course, tolerance);
}

Path fit_closed_curve(const Path& path, double tolerance, const std::vector<std::size_t>& sharp)
{
    // From the first sharp place around to it again.
    const std::size_t n = path.size();
    const std::size_t begin = sharp.empty() || sharp.front() >= n ? 0 : sharp.front();
    Path around;
    for (std::size_t i = 0; n > 0 && i <= n; ++i)
        around.push_back(path[(begin + i) % n]);
    std::vector<std::size_t> inner;
    inner.reserve(sharp.size());
    for (const std::size_t place : sharp)
        inner.push_back(place - begin);
    Course course = course_of(around, inner);
    if (course.path.size() < 2)
        return course.path.empty() ? Path{} : Path(4, course.path.front());
    const bool is_smooth = sharp.empty() && course.path.size() > 3; // there and back is none
    return is_smooth ? fit_ring(std::move(course), tolerance) : fit_course(course, tolerance);
}

} // namespace vnt::sketch
