#include "sketch/core/recognition.h"

#include "sketch/core/free_curve.h"
#include "sketch/core/regular_shapes.h"
#include "sketch/core/signs.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace vnt::sketch {
namespace {

// All data below: docs/recognition.md; a section's name stands in quotes. Limits are where a sign is as
// likely as not; those on how a stroke deviates grow with the tolerance.

// Root mean square distance over length. "Lines".
constexpr double kLineUnevenness = 0.042;
// Excess of the path's length over the line's. "Lines".
constexpr double kLineDetour = 0.12;
// Root mean square distance from the best parabola over length. "Lines".
constexpr double kLineRipple = 0.025;

// Gap over the way around. "Gaps".
constexpr double kRoundGap = 0.14;
constexpr double kSidedGap = 0.22;
constexpr double kFewSidedGap = 0.13; // of triangles and quadrilaterals, whose sides are longer

// What a body lacks of filling its hull. "Hulls".
constexpr double kRoundHollow = 0.12;
constexpr double kSidedHollow = 0.15;
constexpr double kFewSidedHollow = 0.32;
// Excess of the loop's length over its hull's. "Hulls".
constexpr double kDetourAround = 0.16;

// Root mean square distance from the ellipse over its radius, when made round. "Ovals".
constexpr double kOvalError = 0.12;

// Errors of the best chains over those of a circle's: 1 is round. "Sides".
constexpr double kTriangleBend = 0.50;
constexpr double kQuadrilateralBend = 0.57;
constexpr double kPolygonBend = 0.60;
// Share of all turning at the corners; above it that speaks against round. "Sides".
constexpr double kTurnAtCorners = 0.715;
constexpr double kTurnWeight = 2.9;          // beside the logarithm of the bend
constexpr double kCornerWeight = 0.15;       // of each corner that is seen; one says nothing
constexpr std::size_t kMostCornersToSay = 4; // and more than these no more
// Rests of the pen as they are as likely on a circle; "Rests".
constexpr double kRestsOfEither = 4;
constexpr std::size_t kMostRestsToSay = 8;
constexpr double kRestWeight = 0.1;
constexpr double kPolygonSlope = 10; // how surely: the logistic function's slope at the limit
// Of a triangle's likelihood, when four corners are seen. "Fourth corners".
constexpr double kFourthCorner = 0.3;
constexpr double kCornerAtJoin = 60 * kPi / 180; // radians by which a loop turns where it is closed
// A polygon has as few sides as come within this factor of the straightest.
constexpr double kFewerSides = 1.15;

// Smaller over larger half axis. "Circles and ellipses".
constexpr double kCircleRatio = 0.69;
constexpr double kCircleSlope = 25;

// How far the corners have to move, over the diagonal. "Rectangles".
constexpr double kRightSkew = 0.12;
// Longer over shorter sides. "Rectangles".
constexpr double kSquareElongation = 1.20;
constexpr double kSquareSlope = 15;

// Error over that of a curve that turns as much. "Straight pieces".
constexpr double kPiecesBend = 0.33;
// Of that limit: added when all corners are seen, taken away when none is.
constexpr double kCornersForPieces = 0.25;
constexpr std::size_t kMostPieces = 24;
// Of an arc's likelihood, for each corner seen on it but one, which a tremor may make.
constexpr double kArcWithACorner = 0.5;

// Root mean square distance over the path's length. "Arcs".
constexpr double kArcError = 0.013;
// The same of a circle; below it an arc is a circle's, however much better an ellipse does.
constexpr double kCircularEnough = 0.005;
// The ellipse's error over the circle's.
constexpr double kEllipseGain = 0.5;
constexpr double kLeastEllipticSweep = kPi / 2;

constexpr double kFreeScore = 0.5;
// A closed stroke's other readings are there to be chosen, unlikely as they may be.
constexpr double kLeastScore = 0.01;
// A special shape's general one stands right behind it.
constexpr double kBehind = 0.95;

// From 1 for a value of 0 over a half at the limit towards 0.
double belief(double value, double limit)
{
    const double ratio = std::max(0.0, value) / limit;
    return 1 / (1 + ratio * ratio * ratio * ratio);
}

double logistic(double x) { return 1 / (1 + std::exp(-x)); }

// The likelier of two that share a score keeps all of it, the other its odds.
double share(double score, double likelihood) { return score * std::min(1.0, 2 * likelihood); }

class Recogniser {
public:
    Recogniser(const Signs& signs, const RecognitionSettings& settings)
        : signs_(signs), settings_(settings), ease_(settings.tolerance > 0 ? settings.tolerance : 1e-9)
    {
    }

    std::vector<Reading> all()
    {
        if (signs_.has_body)
            add_sided();
        add_polyline();
        if (signs_.has_body)
            add_round();
        add_arcs();
        add_line();
        add_free_curve();
        return std::move(readings_);
    }

private:
    void add(Kind kind, double score, Shape shape)
    {
        readings_.push_back({kind, std::clamp(score, kLeastScore, 1.0), std::move(shape)});
    }

    // How likely the stroke is a line, from its deviation alone.
    double straight() const
    {
        return std::min({belief(signs_.line.unevenness, ease_ * kLineUnevenness),
                         belief(signs_.line.detour, ease_ * kLineDetour),
                         belief(signs_.line.ripple, ease_ * kLineRipple)});
    }

    void add_line()
    {
        const Piece piece = piece_on(signs_.line.fit, signs_.even.front(), signs_.even.back());
        add(Kind::line, straight(),
            Straight{
                {piece.start, piece.end},
                false
        });
    }

    void add_polyline()
    {
        const Chain& chain = signs_.pieces.chain;
        if (chain.corners.size() < 3)
            return;
        const double few = chain.corners.size() <= kMostPieces + 1 ? 1 : 0;
        const double joints = static_cast<double>(chain.corners.size() - (signs_.pieces.is_closed ? 0 : 2));
        const double seen = std::min(1.0, static_cast<double>(signs_.pieces.corners) / std::max(1.0, joints));
        const double limit = kPiecesBend * (1 + kCornersForPieces * (2 * seen - 1));
        double score = std::min({belief(signs_.pieces.bend, ease_ * limit), few, 1 - straight()});
        // Closed figures are made of straight pieces as well, and say more.
        const double sided = best_so_far();
        if (sided > kFreeScore)
            score = std::min(score, sided);
        add(Kind::polyline, kBehind * kBehind * kBehind * score,
            Straight{chain.corners, signs_.pieces.is_closed});
    }

    double best_so_far() const
    {
        double best = 0;
        for (const Reading& reading : readings_)
            best = std::max(best, reading.score);
        return best;
    }

    // Neither straight nor of straight pieces, nor closed.
    double bent() const
    {
        double likelihood = std::min(1 - straight(), 1 - belief(signs_.pieces.bend, kPiecesBend / 2));
        if (signs_.pieces.corners > 1)
            likelihood *= std::pow(kArcWithACorner, static_cast<double>(signs_.pieces.corners - 1));
        if (signs_.has_body) {
            likelihood = std::min(likelihood, 1 - belief(signs_.body.closing.gap, kRoundGap));
            if (signs_.body.closing.gap < kSidedGap)
                likelihood = std::min(likelihood, round());
        }
        return likelihood;
    }

    void add_arcs()
    {
        const auto circle = fit_circle(signs_.even);
        const auto oval = fit_ellipse(signs_.even);
        // Whether the ellipse explains what the circle does not.
        double elliptic = 0;
        if (circle && oval) {
            elliptic = std::min(
                belief(oval->root_mean_square / std::max(circle->root_mean_square, 1e-12), kEllipseGain),
                1 - belief(circle->root_mean_square / signs_.length, kCircularEnough));
        }
        if (circle) {
            const Round arc = arc_along(as_ellipse(*circle), signs_.even);
            add(Kind::arc, share(arc_score(circle->root_mean_square, arc), 1 - elliptic), arc);
        }
        if (oval) {
            const Round arc = arc_along(oval->ellipse, signs_.even);
            const double wide = std::abs(arc.sweep) >= kLeastEllipticSweep ? 1 : 0;
            add(Kind::elliptic_arc, wide * share(arc_score(oval->root_mean_square, arc), elliptic), arc);
        }
    }

    double arc_score(double error, const Round& arc) const
    {
        const double around = length_of(arc);
        return std::min({belief(error / signs_.length, ease_ * kArcError),
                         belief(signs_.length / std::max(around, 1e-12) - 1, ease_ * kDetourAround), bent()});
    }

    double closed(double limit) const { return belief(signs_.body.closing.gap, limit); }

    double filled(double limit) const
    {
        return std::min(belief(1 - signs_.body.fill, ease_ * limit),
                        belief(signs_.body.way - 1, ease_ * kDetourAround));
    }

    double triangular() const
    {
        const double likelihood = belief(signs_.body.bend(3), kTriangleBend);
        return corners_seen() > 3 ? kFourthCorner * likelihood : likelihood;
    }

    // With the one at which the ends meet.
    std::size_t corners_seen() const
    {
        return signs_.body.corners + (signs_.body.turn_at_join > kCornerAtJoin ? 1 : 0);
    }

    double four_sided() const { return belief(signs_.body.bend(4), kQuadrilateralBend); }

    // Straight sides show best in many: four to six lie as well in the flat stretches of a hand's circle.
    double least_bend() const
    {
        return std::min(signs_.body.bend(kMostSides - 1), signs_.body.bend(kMostSides));
    }

    // Rather than many-sided: a sum of what speaks for a circle.
    double round() const
    {
        const BodySigns& body = signs_.body;
        const double bend = std::log(std::max(least_bend(), 1e-9) / kPolygonBend);
        const double turn = kTurnWeight * (kTurnAtCorners - body.turn_at_corners);
        const auto seen = static_cast<double>(std::min(body.corners, kMostCornersToSay));
        return logistic(kPolygonSlope * (bend + turn + kCornerWeight * (1 - seen) + unresting()));
    }

    // Above 0 where the pen went on as along a circle, below where it rested as at corners.
    double unresting() const
    {
        if (!signs_.pace.is_known)
            return 0;
        const auto rests = static_cast<double>(std::min(signs_.pace.rests, kMostRestsToSay));
        return (kRestsOfEither - rests) * (rests > kRestsOfEither ? kRestWeight : kRestWeight / 2);
    }

    void add_sided()
    {
        const BodySigns& body = signs_.body;
        const double few = std::min(closed(kFewSidedGap), filled(kFewSidedHollow));
        add(Kind::triangle, std::min({few, belief(body.bend(3), ease_ * kTriangleBend), triangular()}),
            Straight{body.chain(3).corners, true});
        add_four(std::min({few, belief(body.bend(4), ease_ * kQuadrilateralBend), 1 - triangular()}));

        std::size_t sides = 5;
        const double straightest = *std::min_element(body.bends.begin() + 2, body.bends.end());
        while (body.bend(sides) > kFewerSides * straightest)
            ++sides;
        const double many = std::min(
            {closed(kSidedGap), filled(kSidedHollow), 1 - round(), 1 - triangular(), 1 - four_sided()});
        add(Kind::polygon, many, Straight{body.chain(sides).corners, true});
    }

    void add_four(double score)
    {
        const Path& corners = signs_.body.chain(4).corners;
        const double right = belief(skew_of(corners), kRightSkew);
        const double equal = logistic(kSquareSlope * (kSquareElongation - elongation_of(corners)));
        const double behind = right > 0.5 ? kBehind : 1;
        add(Kind::square, share(share(score, right), equal), square_of(corners));
        add(Kind::rectangle, share(score, right) * (equal > 0.5 ? kBehind : 1), rectangle_of(corners));
        add(Kind::quadrilateral, score * behind * behind, Straight{corners, true});
    }

    void add_round()
    {
        const BodySigns& body = signs_.body;
        const double score =
            std::min({closed(kRoundGap), filled(kRoundHollow), belief(body.oval_error, ease_ * kOvalError),
                      round(), 1 - triangular(), 1 - four_sided()});
        const double ratio = body.axes.minor / body.axes.major;
        const double circular = logistic(kCircleSlope * (ratio - kCircleRatio));
        const Path& loop = body.closing.loop;
        if (const auto circle = fit_circle(loop))
            add(Kind::circle, share(score, circular), whole_round(as_ellipse(*circle), loop));
        if (const auto oval = fit_ellipse(loop))
            add(Kind::ellipse, share(score, 1 - circular), whole_round(oval->ellipse, loop));
    }

    void add_free_curve()
    {
        const double tolerance = ease_ * settings_.curve_tolerance_px / settings_.view_scale;
        add(Kind::free_curve, kFreeScore, free_curve_of(signs_, tolerance));
    }

    const Signs& signs_;
    const RecognitionSettings& settings_;
    double ease_;
    std::vector<Reading> readings_;
};

Reading ink_itself() { return {Kind::ink, 0, std::monostate{}}; }

} // namespace

std::vector<Reading> recognise(const Ink& ink, const RecognitionSettings& settings)
{
    const Signs signs = measure(ink);
    const bool is_small = signs.diagonal * settings.view_scale < settings.least_size_px;
    std::vector<Reading> readings;
    if (signs.has_extent && (!is_small || settings.forced))
        readings = Recogniser(signs, settings).all();
    if (settings.forced)
        std::erase_if(readings, [&](const Reading& reading) { return reading.kind != *settings.forced; });
    std::stable_sort(readings.begin(), readings.end(),
                     [](const Reading& a, const Reading& b) { return a.score > b.score; });
    readings.push_back(ink_itself());
    return readings;
}

} // namespace vnt::sketch
