#include "sketch/core/curve_fit.h"

#include "sketch/core/cubic_fit.h"

#include <algorithm>
#include <optional>

namespace vnt::sketch {
namespace {

constexpr int kMostSteps = 4; // of Newton on the parameters; later ones gain next to nothing

// Times the tolerance; what is further off than this at first does not come right by new parameters.
constexpr double kHopeless = 6;

constexpr std::size_t kFirstRun = 8; // points, for lack of a segment before

// The direction in which a segment leaves its end.
std::optional<Vec2> heading_out(const Cubic& cubic)
{
    const Vec2 out = unit(cubic[3] - cubic[2]);
    return out == Vec2{} ? std::nullopt : std::optional(out);
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
    void spread_parameters(std::size_t first, std::size_t last)
    {
        const double whole = along_[last] - along_[first];
        const auto steps = static_cast<double>(last - first);
        parameters_.clear();
        for (std::size_t i = first; i <= last; ++i) // steps lost in a long path's sum count evenly
            parameters_.push_back(whole > 0 ? (along_[i] - along_[first]) / whole
                                            : static_cast<double>(i - first) / steps);
    }

    std::optional<Cubic> within_tolerance(std::size_t first, std::size_t last, const Headings& headings)
    {
        const Vec2* points = &path_[first];
        spread_parameters(first, last);
        Cubic cubic = nearest_cubic(points, parameters_, headings);
        double before = kHopeless * tolerance_;
        for (int i = 0;; ++i) {
            const double off = distances_at(cubic, points, parameters_, offs_);
            if (off <= tolerance_ && is_along_pieces(cubic, points, parameters_, offs_, tolerance_))
                return cubic;
            // What one step gained, the next ones will not exceed.
            const bool is_late = i > 0 && off - (kMostSteps - i) * (before - off) > tolerance_;
            if (i == kMostSteps || !(off <= kHopeless * tolerance_) || is_late)
                return std::nullopt;
            before = off;
            step_parameters(cubic, points, parameters_);
            cubic = nearest_cubic(points, parameters_, headings);
        }
    }

    const Path& path_;
    double tolerance_;
    std::vector<double> along_;
    std::vector<double> parameters_;
    std::vector<double> offs_;
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

void turn_back(Course& course)
{
    std::reverse(course.path.begin(), course.path.end());
    for (std::size_t& place : course.sharp)
        place = course.path.size() - 1 - place;
    std::reverse(course.sharp.begin(), course.sharp.end());
}

Path fit_onward(const Course& course, double tolerance, const Headings& headings)
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

// headings: of a course without sharp places.
Path fit_both_ways(Course course, double tolerance, const Headings& headings = {})
{
    const Path onward = fit_onward(course, tolerance, headings);
    turn_back(course);
    const auto back = [](const std::optional<Vec2>& heading) {
        return heading ? std::optional(-*heading) : std::nullopt;
    };
    Path backward = fit_onward(course, tolerance, {back(headings.at_end), back(headings.at_start)});
    if (onward.size() <= backward.size())
        return onward;
    std::reverse(backward.begin(), backward.end());
    return backward;
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
    return fit_both_ways(std::move(course), tolerance, {heading, heading});
}

} // namespace

Path fit_curve(const Path& path, double tolerance, const std::vector<std::size_t>& sharp)
{
    Course course = course_of(path, sharp);
    if (course.path.size() < 2)
        return course.path.empty() ? Path{} : Path(4, course.path.front());
    return fit_both_ways(std::move(course), tolerance);
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
    for (const std::size_t place : sharp)
        inner.push_back(place - begin);
    Course course = course_of(around, inner);
    if (course.path.size() < 2)
        return course.path.empty() ? Path{} : Path(4, course.path.front());
    const bool is_smooth = sharp.empty() && course.path.size() > 3; // there and back is none
    return is_smooth ? fit_ring(std::move(course), tolerance) : fit_both_ways(std::move(course), tolerance);
}

} // namespace vnt::sketch
