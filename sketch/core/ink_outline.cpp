#include "sketch/core/ink_outline.h"

#include "sketch/core/curve_fit.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace vnt::sketch {
namespace {

// Places that one straight piece may stand for at most: to look at more takes longer than it saves.
constexpr std::size_t kMostStoodFor = 32;

// Of the shorter piece at a joint that the inner side may be shortened by; beyond it the side would turn back.
constexpr double kMostShortened = 0.5;

// Of the tolerance that fewer discs may take: a curve fits the more closely to the corners that they leave, and needs
// more segments again.
constexpr double kForFewer = 0.25;

// Radians; where pieces turn by more, their sides do not go on as one curve.
constexpr double kMostTurn = kPi / 6;

// Of the distance of two discs that their radii may differ by; above it the larger holds the other but for a hair.
constexpr double kSteepest = 0.999;

struct Disc {
    Vec2 place;
    double radius = 0;
};

double distance(const Disc& a, const Disc& b) { return sketch::distance(a.place, b.place); }

// Whether a straight piece between the two, as broad as they are, is within tolerance of the disc.
bool stands_for(const Disc& from, const Disc& to, const Disc& disc, double tolerance)
{
    const Vec2 along = to.place - from.place;
    const double square = dot(along, along);
    if (!(square > 0))
        return false;
    const double share = dot(disc.place - from.place, along) / square;
    if (share < 0 || share > 1)
        return false;
    const double radius = from.radius + share * (to.radius - from.radius);
    return sketch::distance(disc.place, from.place + share * along) + std::abs(disc.radius - radius) <=
           tolerance;
}

// Fewer discs that say the same.
std::vector<Disc> simplified(const std::vector<Disc>& discs, double tolerance)
{
    std::vector<Disc> few{discs.front()};
    for (std::size_t at = 0; at + 1 < discs.size();) {
        std::size_t next = at + 1;
        const auto reaches = [&](std::size_t to) {
            return std::all_of(discs.begin() + static_cast<std::ptrdiff_t>(at) + 1,
                               discs.begin() + static_cast<std::ptrdiff_t>(to), [&](const Disc& disc) {
                                   return stands_for(discs[at], discs[to], disc, tolerance);
                               });
        };
        while (next + 1 < discs.size() && next - at < kMostStoodFor && reaches(next + 1))
            ++next;
        few.push_back(discs[next]);
        at = next;
    }
    return few;
}

// By how much the sides of a piece are off when they are drawn straight across, from one disc to the other: they
// lean by as much as its breadth changes.
double lean_error(const Disc& a, const Disc& b)
{
    const double lean = (b.radius - a.radius) / distance(a, b);
    return std::max(a.radius, b.radius) * lean * lean / 2;
}

// Whether the sides go on there as one curve.
bool is_smooth(const Disc& before, const Disc& at, const Disc& after, double tolerance)
{
    const double turn = std::abs(turn_between(at.place - before.place, after.place - at.place));
    if (turn > kMostTurn || at.radius * (1 - std::cos(turn / 2)) > tolerance)
        return false;
    const double least = std::min(distance(before, at), distance(at, after));
    return at.radius * std::tan(turn / 2) <= kMostShortened * least;
}

// Where the side on the left passes a disc.
Vec2 beside(const std::vector<Disc>& discs, std::size_t i, std::size_t first, std::size_t last)
{
    const Vec2 before = i > first ? unit(discs[i].place - discs[i - 1].place) : Vec2{};
    const Vec2 after = i < last ? unit(discs[i + 1].place - discs[i].place) : Vec2{};
    return -discs[i].radius * turned_a_quarter(unit(before + after));
}

OutlinePart smooth_part(const std::vector<Disc>& discs, std::size_t first, std::size_t last, double tolerance)
{
    Path there;
    Path back;
    for (std::size_t i = first; i <= last; ++i) {
        const Vec2 off = beside(discs, i, first, last);
        there.push_back(discs[i].place + off);
        back.push_back(discs[i].place - off);
    }
    std::reverse(back.begin(), back.end());
    OutlinePart part;
    part.there = fit_curve(there, tolerance);
    part.back = fit_curve(back, tolerance);
    part.at_start.radius = discs[first].radius;
    part.at_end.radius = discs[last].radius;
    return part;
}

// The hull of two discs, neither of which holds the other.
OutlinePart straight_part(const Disc& from, const Disc& to)
{
    const double narrowing = (from.radius - to.radius) / distance(from, to);
    const Vec2 along = unit(to.place - from.place);
    const Vec2 ahead = narrowing * along;
    const Vec2 right = std::sqrt(1 - narrowing * narrowing) * turned_a_quarter(along);
    const auto piece = [](Vec2 a, Vec2 b) {
        return Path{a, a + (1.0 / 3) * (b - a), b - (1.0 / 3) * (b - a), b};
    };
    OutlinePart part;
    part.there = piece(from.place + from.radius * (ahead - right), to.place + to.radius * (ahead - right));
    part.back = piece(to.place + to.radius * (ahead + right), from.place + from.radius * (ahead + right));
    part.at_start = {from.radius, narrowing > 0};
    part.at_end = {to.radius, narrowing < 0};
    return part;
}

// Puts the discs' parts together, from the first disc on.
class Outline {
public:
    Outline(std::vector<Disc> discs, double tolerance) : discs_(std::move(discs)), tolerance_(tolerance) {}

    std::vector<OutlinePart> all()
    {
        for (std::size_t i = 1; i < discs_.size(); ++i) {
            const Disc& before = discs_[i - 1];
            const Disc& here = discs_[i];
            const bool is_last = i + 1 == discs_.size();
            if (holds(before, here) || holds(here, before)) {
                finish(i - 1);
                begin(i, false);
            } else if (lean_error(before, here) > tolerance_) {
                if (first_ + 1 < i) // else this part covers the disc as well
                    finish(i - 1);
                parts_.push_back(straight_part(before, here));
                begin(i, true);
            } else if (!is_last && !is_smooth(before, here, discs_[i + 1], tolerance_)) {
                finish(i);
                begin(i, true);
            }
        }
        finish(discs_.size() - 1);
        return std::move(parts_);
    }

private:
    static bool holds(const Disc& a, const Disc& b)
    {
        return a.radius - b.radius >= kSteepest * distance(a, b);
    }

    void begin(std::size_t i, bool is_covered)
    {
        first_ = i;
        is_covered_ = is_covered;
    }

    void finish(std::size_t last)
    {
        if (last == first_ + 1) {
            parts_.push_back(straight_part(discs_[first_], discs_[last]));
        } else if (last > first_) {
            parts_.push_back(smooth_part(discs_, first_, last, tolerance_));
        } else if (!is_covered_) {
            parts_.emplace_back();
            parts_.back().at_start.radius = discs_[first_].radius;
            parts_.back().middle = discs_[first_].place;
        }
        is_covered_ = true;
    }

    const std::vector<Disc> discs_;
    double tolerance_;
    std::vector<OutlinePart> parts_;
    std::size_t first_ = 0;   // of the part that is being put together
    bool is_covered_ = false; // that one, by the part before
};

} // namespace

std::vector<OutlinePart> ink_outline(const Path& places, const std::vector<double>& radii, double tolerance)
{
    std::vector<Disc> discs;
    for (std::size_t i = 0; i < places.size(); ++i)
        discs.push_back({places[i], radii[i]});
    return discs.empty() ? std::vector<OutlinePart>()
                         : Outline(simplified(discs, kForFewer * tolerance), tolerance).all();
}

} // namespace vnt::sketch
