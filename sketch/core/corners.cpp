#include "sketch/core/corners.h"

#include "sketch/core/resampling.h"

#include <algorithm>
#include <numeric>

namespace vnt::sketch {
namespace {

// Points on the path's extent: ShortStraw's density, but for its box, which grows when a stroke is turned.
constexpr double kPointsOnExtent = 40;

// So long a path is a scribble; its corners are looked for more coarsely.
constexpr std::size_t kMostPoints = 1000;

// Points from the middle of a straw to its ends: ShortStraw's window.
constexpr std::size_t kHalfStraw = 3;

// Of the median straw; a shorter one is bent: ShortStraw's threshold.
constexpr double kBentStraw = 0.95;

// Of the way along the path; a chord that is longer runs beside a straight path: ShortStraw's test.
constexpr double kStraight = 0.95;

// Points from a corner to the two arms on which it is measured, far and near: IStraw's windows.
constexpr std::size_t kFarArm = 12;
constexpr std::size_t kNearArm = 4;

// Degrees: on a curve the angle between near arms is that much wider than between far ones: IStraw's fit to
// its data.
double wider_on_a_curve(double far_angle) { return 10 + 800 / (far_angle + 35); }

double degrees_between(Vec2 a, Vec2 b) { return std::abs(turn_between(a, b)) * 180 / kPi; }

std::vector<double> straws_of(const Path& even)
{
    const std::size_t last = even.size() - 1;
    std::vector<double> straws(even.size());
    for (std::size_t i = 0; i <= last; ++i) {
        const std::size_t from = i >= kHalfStraw ? i - kHalfStraw : 0;
        const std::size_t to = std::min(i + kHalfStraw, last);
        // One that an end has cut short counts as much as a whole one.
        straws[i] = to > from
                        ? distance(even[from], even[to]) * (2.0 * kHalfStraw) / static_cast<double>(to - from)
                        : 0;
    }
    return straws;
}

std::vector<std::size_t> short_straws(const std::vector<double>& straws)
{
    std::vector<double> sorted = straws;
    std::nth_element(sorted.begin(), sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2),
                     sorted.end());
    const double threshold = kBentStraw * sorted[sorted.size() / 2];
    const std::size_t last = straws.size() - 1;
    std::vector<std::size_t> places{0};
    for (std::size_t i = 1; i < last; ++i) {
        if (!(straws[i] < threshold))
            continue;
        std::size_t shortest = i;
        for (; i < last && straws[i] < threshold; ++i) {
            if (straws[i] < straws[shortest])
                shortest = i;
        }
        // Bent over no more than an end takes: the path's end, which is a corner anyway.
        if (shortest > kHalfStraw / 2 && shortest + kHalfStraw / 2 < last)
            places.push_back(shortest);
    }
    places.push_back(last);
    return places;
}

bool is_straight(const Path& even, std::size_t from, std::size_t to)
{
    double way = 0;
    for (std::size_t i = from; i < to; ++i)
        way += distance(even[i], even[i + 1]);
    return distance(even[from], even[to]) >= kStraight * way;
}

// IStraw's test: near a corner the angle is as narrow as further away, on a curve it opens.
bool is_curve(const Path& even, std::size_t before, std::size_t place, std::size_t after)
{
    const std::size_t arm = std::min({kFarArm, place - before, after - place});
    const std::size_t near_arm = std::max<std::size_t>(1, arm * kNearArm / kFarArm);
    if (near_arm == arm)
        return false;
    const double far_angle =
        degrees_between(even[place - arm] - even[place], even[place + arm] - even[place]);
    const double near_angle =
        degrees_between(even[place - near_arm] - even[place], even[place + near_arm] - even[place]);
    return near_angle - far_angle > wider_on_a_curve(far_angle);
}

// Takes out each inner place that a test of it between its neighbours finds.
template <class Test>
void remove_where(std::vector<std::size_t>& places, const Test& test)
{
    for (std::size_t i = 1; i + 1 < places.size();) {
        if (test(places[i - 1], places[i], places[i + 1]))
            places.erase(places.begin() + static_cast<std::ptrdiff_t>(i));
        else
            ++i;
    }
}

// The path's own point that is nearest, along the path, to each of so many even places.
std::vector<std::size_t> points_at(const Path& path, const std::vector<std::size_t>& places,
                                   std::size_t count)
{
    const double step = path_length(path) / static_cast<double>(count - 1);
    std::vector<std::size_t> points;
    double passed = 0;
    std::size_t at = 0;
    for (const std::size_t place : places) {
        const double wanted = step * static_cast<double>(place);
        while (at + 1 < path.size()) {
            const double next = passed + distance(path[at], path[at + 1]);
            if (std::abs(next - wanted) > std::abs(passed - wanted))
                break;
            passed = next;
            ++at;
        }
        if (points.empty() || points.back() < at)
            points.push_back(at);
    }
    return points;
}

// The point in the middle, along the path, of the longest stretch from one place to the next.
std::size_t middle_of_longest_stretch(const Path& path, const std::vector<std::size_t>& places)
{
    std::vector<double> along{0};
    for (std::size_t i = 1; i < path.size(); ++i)
        along.push_back(along.back() + distance(path[i - 1], path[i]));
    std::size_t best = 1;
    for (std::size_t i = 2; i < places.size(); ++i) {
        if (along[places[i]] - along[places[i - 1]] > along[places[best]] - along[places[best - 1]])
            best = i;
    }
    const double wanted = (along[places[best - 1]] + along[places[best]]) / 2;
    return static_cast<std::size_t>(std::lower_bound(along.begin(), along.end(), wanted) - along.begin());
}

} // namespace

std::vector<std::size_t> find_corners(const Path& path)
{
    const double extent = extent_of(path);
    if (path.size() < 3 || !(extent > 0)) {
        std::vector<std::size_t> all(path.size());
        std::iota(all.begin(), all.end(), std::size_t{0});
        return all;
    }
    const double points = std::min(path_length(path) / extent * kPointsOnExtent, double{kMostPoints - 1});
    const Path even =
        resample(path, std::max<std::size_t>(static_cast<std::size_t>(points) + 1, 2 * kHalfStraw + 1));
    std::vector<std::size_t> places = short_straws(straws_of(even));
    remove_where(places, [&](std::size_t before, std::size_t, std::size_t after) {
        return is_straight(even, before, after);
    });
    remove_where(places, [&](std::size_t before, std::size_t place, std::size_t after) {
        return is_curve(even, before, place, after);
    });
    return points_at(path, places, even.size());
}

std::vector<std::size_t> find_closed_corners(const Path& path)
{
    const std::size_t n = path.size();
    if (n < 3)
        return find_corners(path);
    const auto around_from = [&](std::size_t begin) {
        Path around;
        around.reserve(n + 1);
        for (std::size_t i = 0; i <= n; ++i)
            around.push_back(path[(begin + i) % n]);
        return around;
    };
    // Found from the path's own beginning, then again from where no corner is near: the ends are none then.
    const std::size_t begin = middle_of_longest_stretch(around_from(0), find_corners(around_from(0)));
    std::vector<std::size_t> corners = find_corners(around_from(begin));
    corners = {corners.begin() + 1, corners.end() - 1};
    for (std::size_t& corner : corners)
        corner = (begin + corner) % n;
    std::sort(corners.begin(), corners.end());
    return corners;
}

} // namespace vnt::sketch
