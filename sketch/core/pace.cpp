#include "sketch/core/pace.h"

#include <algorithm>
#include <vector>

namespace vnt::sketch {
namespace {

// Pieces of the way of one length: an octagon has six a side.
constexpr std::size_t kPieces = 48;

// Of these, at either end: a pen that touches or lifts is slow anyway.
constexpr std::size_t kEnds = 4;

// Times the median of the pieces' times; a longer stay is a rest.
// Data: docs/recognition.md, "Rests".
constexpr double kRest = 1.8;

// Standard deviation over the mean of the pieces' times; hands are not that even, programs are.
constexpr double kEven = 0.1;

struct Way {
    std::vector<double> lengths; // from the start, rising
    std::vector<double> times;   // never falling
};

// Empty where the times say nothing.
Way way_of(const Ink& ink)
{
    Way way;
    const InkPoint* before = nullptr;
    for (const InkPoint& point : ink) {
        if (!(std::abs(point.x) <= kFarthest) || !(std::abs(point.y) <= kFarthest))
            continue;
        if (!std::isfinite(point.time_ms) || (before != nullptr && point.time_ms < before->time_ms))
            return {};
        const double step = before == nullptr ? 0 : distance({before->x, before->y}, {point.x, point.y});
        way.lengths.push_back(way.lengths.empty() ? 0 : way.lengths.back() + step);
        way.times.push_back(point.time_ms);
        before = &point;
    }
    return way;
}

// How long each piece of the way took.
std::vector<double> stays_of(const Way& way)
{
    std::vector<double> stays;
    std::size_t next = 1;
    double before = way.times.front();
    for (std::size_t piece = 1; piece <= kPieces; ++piece) {
        const double wanted = way.lengths.back() * static_cast<double>(piece) / kPieces;
        while (next + 1 < way.lengths.size() && way.lengths[next] < wanted)
            ++next;
        const double size = way.lengths[next] - way.lengths[next - 1];
        const double t = size > 0 ? std::clamp((wanted - way.lengths[next - 1]) / size, 0.0, 1.0) : 1;
        const double at = way.times[next - 1] + t * (way.times[next] - way.times[next - 1]);
        stays.push_back(at - before);
        before = at;
    }
    return {stays.begin() + kEnds, stays.end() - kEnds};
}

bool is_made_up(const std::vector<double>& stays)
{
    const auto n = static_cast<double>(stays.size());
    double mean = 0, square = 0;
    for (const double stay : stays)
        mean += stay / n;
    for (const double stay : stays)
        square += (stay - mean) * (stay - mean) / n;
    return !(std::sqrt(square) > kEven * mean);
}

} // namespace

Pace pace_of(const Ink& ink)
{
    const Way way = way_of(ink);
    if (way.lengths.size() < 2 || !(way.lengths.back() > 0) || !(way.times.back() > way.times.front()))
        return {};
    const std::vector<double> stays = stays_of(way);
    if (is_made_up(stays))
        return {};
    std::vector<double> sorted = stays;
    const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
    std::nth_element(sorted.begin(), middle, sorted.end());
    Pace pace{true, 0};
    for (std::size_t i = 1; i + 1 < stays.size(); ++i) {
        if (stays[i] > kRest * *middle && stays[i] >= stays[i - 1] && stays[i] > stays[i + 1])
            ++pace.rests;
    }
    return pace;
}

} // namespace vnt::sketch
