#include "sketch/core/line_fit.h"

#include <algorithm>

namespace vnt::sketch {

void LineMoments::add(Vec2 p)
{
    count_ += 1;
    x_ += p.x;
    y_ += p.y;
    xx_ += p.x * p.x;
    xy_ += p.x * p.y;
    yy_ += p.y * p.y;
}

LineMoments LineMoments::without(const LineMoments& other) const
{
    LineMoments rest;
    rest.count_ = count_ - other.count_;
    rest.x_ = x_ - other.x_;
    rest.y_ = y_ - other.y_;
    rest.xx_ = xx_ - other.xx_;
    rest.xy_ = xy_ - other.xy_;
    rest.yy_ = yy_ - other.yy_;
    return rest;
}

LineMoments LineMoments::with(const LineMoments& other) const
{
    LineMoments nothing;
    return without(nothing.without(other));
}

LineMoments::Scatter LineMoments::scatter() const
{
    return {xx_ - x_ * x_ / count_, xy_ - x_ * y_ / count_, yy_ - y_ * y_ / count_};
}

double LineMoments::square_sum() const
{
    if (count_ < 2)
        return 0;
    const auto [xx, xy, yy] = scatter();
    // The hottest line of the recognition: a plain root is some times faster than hypot, and near enough.
    const double spread = std::sqrt((xx - yy) * (xx - yy) + 4 * xy * xy);
    return std::max(0.0, (xx + yy - spread) / 2);
}

LineFit LineMoments::fit() const
{
    LineFit line;
    if (count_ < 1)
        return line;
    line.centre = {x_ / count_, y_ / count_};
    const auto [xx, xy, yy] = scatter();
    line.direction = unit_at(std::atan2(2 * xy, xx - yy) / 2);
    line.square_sum = square_sum();
    return line;
}

LineFit fit_line(const Path& points)
{
    if (points.empty())
        return {};
    // About the first point, so that far from the origin nothing is lost.
    LineMoments moments;
    for (const Vec2 p : points)
        moments.add(p - points.front());
    LineFit line = moments.fit();
    line.centre = line.centre + points.front();
    if (dot(line.direction, points.back() - points.front()) < 0)
        line.direction = -line.direction;
    return line;
}

Piece piece_on(const LineFit& line, Vec2 first, Vec2 last)
{
    const auto foot = [&](Vec2 p) {
        return line.centre + dot(p - line.centre, line.direction) * line.direction;
    };
    return {foot(first), foot(last)};
}

double largest_distance(const LineFit& line, const Path& points)
{
    double largest = 0;
    for (const Vec2 p : points)
        largest = std::max(largest, std::abs(cross(line.direction, p - line.centre)));
    return largest;
}

} // namespace vnt::sketch
