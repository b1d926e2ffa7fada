#include "sketch/core/polygon_fit.h"

#include "sketch/core/line_fit.h"

#include <algorithm>
#include <limits>

namespace vnt::sketch {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Of a side's points, at each of its ends: these are left out when the side is fitted again, since hands
// round corners.
constexpr double kRounding = 0.15;

// The sine of the angle between two sides; below it they do not meet where the corner is.
constexpr double kParallel = 0.1;

// Of the two sides' lengths together: a corner that would come to lie further away from where the sides meet
// stays there.
constexpr double kFurthestCorner = 0.35;

// Radians; where a closed stroke begins in the middle of a side, its last side goes on in the first within
// this.
constexpr double kGoesOn = 25 * kPi / 180;

// Of what a side's points go further than from its start to its end, as if they were so far off it: there and
// back again on a line is no side.
constexpr double kDetour = 0.25;

// Of the points' squared extents: by so little a longer run may come out cheaper than a shorter one, as sums are
// rounded.
constexpr double kRounded = 1e-12;

// By so much the squared distances of a longer run may come out less than those of a shorter one in it.
double slack_of(const Path& points)
{
    const double extent = extent_of(points);
    return kRounded * extent * extent * static_cast<double>(points.size());
}

// The lines through any run of points, each in the same short time.
class Runs {
public:
    // Twice around when closed, so that a run may go through the first point.
    Runs(const Path& points, bool closed) : count_(points.size()), origin_(points.front())
    {
        const std::size_t all = closed ? 2 * count_ : count_;
        sums_.reserve(all + 1);
        sums_.emplace_back();
        for (std::size_t i = 0; i < all; ++i) {
            sums_.push_back(sums_.back());
            sums_.back().add(points[i % count_] - origin_);
        }
    }

    // From first to last, both included; first below the number of points, last at most one turn later.
    LineMoments run(std::size_t first, std::size_t last) const
    {
        return sums_[last + 1].without(sums_[first]);
    }

    LineFit line(std::size_t first, std::size_t last) const
    {
        LineFit line = run(first, last).fit();
        line.centre = line.centre + origin_;
        return line;
    }

private:
    std::size_t count_;
    Vec2 origin_;
    std::vector<LineMoments> sums_;
};

// The side of the corner from first to last, without what is rounded at its ends.
LineFit side_line(const Runs& runs, std::size_t first, std::size_t last)
{
    const auto off = static_cast<std::size_t>(kRounding * static_cast<double>(last - first));
    return runs.line(first + off, last - off);
}

Vec2 corner_between(const LineFit& before, const LineFit& after, Vec2 meeting, double sides_length)
{
    const double sine = cross(before.direction, after.direction);
    if (std::abs(sine) < kParallel)
        return meeting;
    const double t = cross(after.centre - before.centre, after.direction) / sine;
    const Vec2 corner = before.centre + t * before.direction;
    return distance(corner, meeting) <= kFurthestCorner * sides_length ? corner : meeting;
}

Chain closed_chain(const Path& points, const Runs& runs, std::vector<std::size_t> meetings, double square_sum)
{
    const std::size_t n = points.size();
    for (std::size_t& meeting : meetings)
        meeting %= n;
    std::sort(meetings.begin(), meetings.end());
    Chain chain;
    const std::size_t sides = meetings.size();
    std::vector<LineFit> lines;
    std::vector<double> lengths;
    for (std::size_t i = 0; i < sides; ++i) {
        const std::size_t last = i + 1 < sides ? meetings[i + 1] : meetings[0] + n;
        lines.push_back(side_line(runs, meetings[i], last));
        lengths.push_back(distance(points[meetings[i]], points[last % n]));
    }
    for (std::size_t i = 0; i < sides; ++i) {
        const std::size_t before = (i + sides - 1) % sides;
        chain.corners.push_back(
            corner_between(lines[before], lines[i], points[meetings[i]], lengths[before] + lengths[i]));
    }
    chain.meetings = std::move(meetings);
    chain.root_mean_square = std::sqrt(square_sum / static_cast<double>(n));
    return chain;
}

// What the best chains from one point around to it again cost, by their number of sides, and where their
// sides meet.
class ClosedSearch {
public:
    // costs: of the run from a point to another, a row for each to; twice around, so that a run may go through
    //        the first point.
    // slack: by so much a longer run may cost less than a shorter one to the same point.
    ClosedSearch(const std::vector<double>& costs, std::size_t n, double slack, std::size_t start,
                 std::size_t most_sides)
        : n_(n), start_(start), from_((most_sides + 1) * (n + 1), 0)
    {
        std::vector<double> before(n + 1, kInfinity), now(n + 1);
        before[0] = 0;
        for (std::size_t sides = 1; sides <= most_sides; ++sides) {
            std::fill(now.begin(), now.end(), kInfinity);
            for (std::size_t end = sides; end <= n; ++end) {
                const double* cost_from = &costs[(start + end) % n * (2 * n) + start];
                double least = kInfinity;
                std::size_t from = 0;
                // The longer the last side the dearer: beyond the best chain so far none is better.
                for (std::size_t middle = end; middle-- > sides - 1 && cost_from[middle] <= least + slack;) {
                    const double cost = before[middle] + cost_from[middle];
                    if (cost <= least) {
                        least = cost;
                        from = middle;
                    }
                }
                now[end] = least;
                from_[sides * (n + 1) + end] = from;
            }
            totals_.push_back(now[n]);
            before.swap(now);
        }
    }

    double total(std::size_t sides) const { return totals_[sides - 1]; }

    std::vector<std::size_t> meetings(std::size_t sides) const
    {
        std::vector<std::size_t> all;
        for (std::size_t end = n_; sides > 0; --sides) {
            end = from_[sides * (n_ + 1) + end];
            all.push_back(start_ + end);
        }
        return all;
    }

private:
    std::size_t n_;
    std::size_t start_;
    std::vector<std::size_t> from_;
    std::vector<double> totals_;
};

std::size_t furthest_from_the_middle(const Path& points)
{
    Vec2 centroid;
    for (const Vec2 p : points)
        centroid = centroid + (1 / static_cast<double>(points.size())) * (p - points.front());
    centroid = centroid + points.front();
    const auto nearer = [&](Vec2 a, Vec2 b) { return distance(a, centroid) < distance(b, centroid); };
    return static_cast<std::size_t>(std::max_element(points.begin(), points.end(), nearer) - points.begin());
}

} // namespace

std::vector<Chain> fit_closed_chains(const Path& points, std::size_t most_sides)
{
    const std::size_t n = points.size();
    if (n < most_sides || most_sides < 3)
        return {};
    const Runs runs(points, true);
    std::vector<double> costs(n * 2 * n, kInfinity); // see ClosedSearch
    for (std::size_t first = 0; first < n; ++first) {
        for (std::size_t steps = 1; steps < n; ++steps) {
            double* cost_from = &costs[(first + steps) % n * (2 * n) + first];
            cost_from[0] = cost_from[n] = runs.run(first, first + steps).square_sum();
        }
    }
    const double slack = slack_of(points);
    const ClosedSearch once(costs, n, slack, furthest_from_the_middle(points), most_sides);
    std::vector<Chain> chains;
    for (std::size_t sides = 3; sides <= most_sides; ++sides) {
        // A corner must lie where the search starts. Again from the middle of what was found, which is more
        // surely one.
        std::vector<std::size_t> meetings = once.meetings(sides);
        double total = once.total(sides);
        const ClosedSearch again(costs, n, slack, meetings[meetings.size() / 2] % n, sides);
        if (again.total(sides) < total) {
            meetings = again.meetings(sides);
            total = again.total(sides);
        }
        chains.push_back(closed_chain(points, runs, std::move(meetings), total));
    }
    return chains;
}

Chain fit_open_chain(const Path& points, double price)
{
    const std::size_t n = points.size();
    if (n < 2)
        return {};
    const Runs runs(points, false);
    std::vector<double> best(n, kInfinity);
    std::vector<std::size_t> from(n, 0);
    best[0] = 0;
    const double step = path_length(points) / static_cast<double>(n - 1);
    const double slack = slack_of(points);
    for (std::size_t end = 1; end < n; ++end) {
        for (std::size_t start = end; start-- > 0;) {
            const double off = runs.run(start, end).square_sum();
            if (off + price > best[end] + slack)
                break; // the longer the last side the dearer: none of the rest is better
            const auto steps = static_cast<double>(end - start);
            const double detour = kDetour * (steps * step - distance(points[start], points[end]));
            const double cost = best[start] + off + steps * detour * detour + price;
            if (cost <= best[end]) {
                best[end] = cost;
                from[end] = start;
            }
        }
    }
    Chain chain;
    for (std::size_t end = n - 1; end > 0; end = from[end])
        chain.meetings.push_back(end);
    chain.meetings.push_back(0);
    std::reverse(chain.meetings.begin(), chain.meetings.end());
    const auto sides = static_cast<double>(chain.meetings.size() - 1);
    chain.root_mean_square = std::sqrt(std::max(0.0, best[n - 1] - sides * price) / static_cast<double>(n));
    std::vector<LineFit> lines;
    for (std::size_t i = 1; i < chain.meetings.size(); ++i)
        lines.push_back(side_line(runs, chain.meetings[i - 1], chain.meetings[i]));
    chain.corners.push_back(piece_on(lines.front(), points.front(), points.front()).start);
    for (std::size_t i = 1; i < lines.size(); ++i) {
        const Vec2 meeting = points[chain.meetings[i]];
        const double around = distance(points[chain.meetings[i - 1]], meeting) +
                              distance(meeting, points[chain.meetings[i + 1]]);
        chain.corners.push_back(corner_between(lines[i - 1], lines[i], meeting, around));
    }
    chain.corners.push_back(piece_on(lines.back(), points.back(), points.back()).end);
    return chain;
}

Chain with_ends_joined(Chain chain)
{
    const std::size_t n = chain.corners.size();
    if (n < 4)
        return chain;
    const auto side = [&](std::size_t i) {
        return LineFit{chain.corners[i], unit(chain.corners[i + 1] - chain.corners[i]), 0};
    };
    const LineFit last = side(n - 2);
    const LineFit first = side(0);
    const double around =
        distance(chain.corners[n - 2], chain.corners[n - 1]) + distance(chain.corners[0], chain.corners[1]);
    const Vec2 meeting = middle(chain.corners.front(), chain.corners.back());
    chain.corners.pop_back();
    if (std::abs(turn_between(last.direction, first.direction)) < kGoesOn)
        chain.corners.erase(chain.corners.begin());
    else
        chain.corners.front() = corner_between(last, first, meeting, around);
    chain.meetings.clear();
    return chain;
}

double chain_error_of_circle(std::size_t sides)
{
    const double a = kPi / static_cast<double>(sides);
    const double mean = std::sin(a) / a;
    return std::sqrt(0.5 + std::sin(2 * a) / (4 * a) - mean * mean);
}

double chain_error_of_curve(const Chain& chain)
{
    const std::size_t sides = chain.corners.size() - 1;
    if (chain.corners.size() < 3)
        return 0;
    std::vector<double> turns(sides + 1, 0.0); // at each corner
    for (std::size_t i = 1; i < sides; ++i)
        turns[i] = std::abs(
            turn_between(chain.corners[i] - chain.corners[i - 1], chain.corners[i + 1] - chain.corners[i]));
    turns[0] = turns[1];
    turns[sides] = turns[sides - 1];
    double sum = 0, points = 0;
    for (std::size_t i = 0; i < sides; ++i) {
        const double error = distance(chain.corners[i], chain.corners[i + 1]) * (turns[i] + turns[i + 1]) /
                             2 / (12 * std::sqrt(5.0));
        const auto count = static_cast<double>(chain.meetings[i + 1] - chain.meetings[i]);
        sum += count * error * error;
        points += count;
    }
    return std::sqrt(sum / points);
}

} // namespace vnt::sketch
