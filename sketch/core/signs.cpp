#include "sketch/core/signs.h"

#include "sketch/core/corners.h"
#include "sketch/core/ellipse_fit.h"
#include "sketch/core/regular_shapes.h"
#include "sketch/core/resampling.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <utility>

namespace vnt::sketch {
namespace {

// Points of an even path: the corners of a zigzag of 20 legs still have 6 points between them.
constexpr std::size_t kEvenPoints = 128;

// Points of the loop for closed chains: an octagon has 12 a side.
constexpr std::size_t kLoopPoints = 96;

// Points at which turning is measured: a hand's corner is rounded over about two of them.
constexpr std::size_t kTurnPoints = 64;

// Loop points on either side of the join, on which the turn there is measured.
constexpr std::size_t kJoinArm = 6;

// Of the turning points, counted as corners: three for each of an octagon's.
constexpr std::size_t kCornerPoints = 24;

// Of the extent: a bend of straight pieces is worth a corner when the pieces without it would lie further
// off.
// Data: docs/recognition.md, "Straight pieces".
constexpr double kWorthACorner = 0.010;

// Of the way around: ends that are nearer to one another are meant to meet.
// Data: docs/recognition.md, "Gaps".
constexpr double kJoined = 0.05;

// Of the larger half axis; a body that is thinner has no area to speak of.
constexpr double kThinnest = 0.02;

// The sum of the squared distances, across the line, from the best parabola along it.
// Source: the distances have neither a mean nor a slope along the line of total least squares, so what the parabola
// takes away is their part along u² less its own mean and slope.
double square_sum_from_parabola(const LineFit& line, const Path& points)
{
    const auto along = [&](Vec2 p) { return dot(p - line.centre, line.direction); };
    double second = 0;
    double third = 0;
    for (const Vec2 p : points) {
        const double u = along(p);
        second += u * u;
        third += u * u * u;
    }
    const double mean = second / static_cast<double>(points.size());
    const double slope = second > 0 ? third / second : 0;
    double with_bend = 0;
    double bend = 0;
    for (const Vec2 p : points) {
        const double u = along(p);
        const double shape = u * u - slope * u - mean;
        with_bend += shape * cross(line.direction, p - line.centre);
        bend += shape * shape;
    }
    return bend > 0 ? std::max(0.0, line.square_sum - with_bend * with_bend / bend) : line.square_sum;
}

LineSigns measure_line(const Path& even, double way)
{
    LineSigns signs;
    signs.fit = fit_line(even);
    const Piece piece = piece_on(signs.fit, even.front(), even.back());
    const double size = distance(piece.start, piece.end);
    signs.unevenness = std::sqrt(signs.fit.square_sum / static_cast<double>(even.size())) / size;
    signs.detour = way / size - 1;
    signs.ripple =
        std::sqrt(square_sum_from_parabola(signs.fit, even) / static_cast<double>(even.size())) / size;
    return signs;
}

ChainSigns measure_pieces(const Signs& signs)
{
    ChainSigns pieces;
    pieces.is_closed = signs.has_body && signs.body.closing.gap < kJoined;
    const Path even = pieces.is_closed ? resample(signs.body.closing.loop, kEvenPoints) : signs.even;
    pieces.corners = find_corners(even).size() - 2;
    const double off = kWorthACorner * extent_of(signs.even);
    pieces.chain = fit_open_chain(even, off * off * static_cast<double>(even.size()));
    const double curve = chain_error_of_curve(pieces.chain);
    pieces.bend = curve > 0 ? pieces.chain.root_mean_square / curve : 1;
    if (pieces.is_closed)
        pieces.chain = with_ends_joined(std::move(pieces.chain));
    return pieces;
}

// Of all turning along the loop the share at kCornerPoints of kTurnPoints places, where it turns most; each
// place with its two neighbours, so that a corner between two points counts as one.
double share_at_corners(const Path& loop)
{
    const Path around = resample_closed(loop, kTurnPoints);
    const std::size_t n = around.size();
    std::vector<double> turns(n);
    for (std::size_t i = 0; i < n; ++i)
        turns[i] = turn_between(around[i] - around[(i + n - 1) % n], around[(i + 1) % n] - around[i]);
    std::vector<double> sizes(n);
    for (std::size_t i = 0; i < n; ++i)
        sizes[i] = std::abs(turns[(i + n - 1) % n] + turns[i] + turns[(i + 1) % n]);
    std::sort(sizes.begin(), sizes.end(), std::greater<>());
    const double all = std::accumulate(sizes.begin(), sizes.end(), 0.0);
    const auto most = sizes.begin() + static_cast<std::ptrdiff_t>(std::min(kCornerPoints, n));
    return all > 0 ? std::accumulate(sizes.begin(), most, 0.0) / all : 1;
}

// Between what leads to the loop's end and what leads away from its start.
double turn_at_join(const Path& loop)
{
    const std::size_t last = loop.size() - 1;
    return std::abs(turn_between(loop[last] - loop[last - kJoinArm], loop[kJoinArm] - loop[0]));
}

// How often the loop goes around its middle, at least once.
double turns_of(const Path& loop, Vec2 middle)
{
    Path closed = loop;
    closed.push_back(loop.front());
    return std::max(1.0, std::round(std::abs(turn_about(middle, closed)) / (2 * kPi)));
}

bool measure_body(const Path& path, BodySigns& signs)
{
    signs.closing = close_path(resample(with_long_steps_rounded(path), kEvenPoints));
    const Path& loop = signs.closing.loop;
    signs.hull = hull_of(loop);
    signs.axes = moment_axes(signs.hull);
    if (!(signs.axes.minor > kThinnest * signs.axes.major))
        return false;
    const double turns = turns_of(loop, signs.axes.centroid);
    signs.fill = std::abs(signed_area(loop)) / (turns * signed_area(signs.hull));
    signs.way = path_length(loop, true) / (turns * path_length(signs.hull, true));

    signs.round_loop = resample(made_round(loop, signs.axes), kLoopPoints);
    const std::optional<EllipseFit> oval = fit_ellipse(signs.round_loop);
    signs.oval_error = oval ? oval->root_mean_square : 1;
    signs.chains = fit_closed_chains(signs.round_loop, kMostSides);
    for (Chain& chain : signs.chains) {
        signs.bends.push_back(chain.root_mean_square / chain_error_of_circle(chain.corners.size()));
        chain.corners = made_unround(chain.corners, signs.axes);
    }
    signs.corners = find_corners(signs.round_loop).size() - 2;
    signs.turn_at_join = turn_at_join(signs.round_loop);
    signs.turn_at_corners = share_at_corners(signs.round_loop);
    return true;
}

} // namespace

Signs measure(const Ink& ink)
{
    Signs signs;
    const Path clean = clean_path(ink);
    signs.path = without_hooks(clean);
    signs.diagonal = box_of(signs.path).diagonal();
    if (!(signs.diagonal > 0))
        return signs;
    signs.has_extent = true;
    signs.pace = pace_of(ink);
    // The limits were chosen on strokes that were evenly spread as soon as a hook was taken off them.
    const Path measured = signs.path == clean ? clean : resample(signs.path, kEvenPoints);
    signs.even = resample(measured, kEvenPoints);
    signs.length = path_length(signs.even);
    signs.line = measure_line(signs.even, signs.length);
    signs.has_body = measure_body(measured, signs.body);
    signs.pieces = measure_pieces(signs);
    return signs;
}

} // namespace vnt::sketch
