#include "host/kit/svg_path_data.h"

#include "host/kit/svg_decimals.h"

#include <algorithm>
#include <cmath>

namespace vnt::host {
namespace {

// How far a coordinate of the artwork may be off, when terms of this size are added up for it in doubles.
double tolerance_of(float number, double terms)
{
    constexpr double kRounding = 0x1p-49; // of some ten operations, each 2^-53 off
    const double noise = kRounding * terms;
    return std::max(single_precision_slack(number) - noise, noise);
}

// The share of a tolerance that each of two errors may take, which a map's row weights by x and y.
double share(double tolerance, double weight_x, double weight_y)
{
    return tolerance / (std::abs(weight_x) + std::abs(weight_y));
}

} // namespace

PathDataWriter::PathDataWriter(const Affine& artwork_to_layer, const Affine& layer_to_artwork)
    : to_layer_(artwork_to_layer), to_artwork_(layer_to_artwork)
{
}

bool PathDataWriter::try_append_point(std::string& text, const ArtPoint& point) const
{
    const Affine& back = to_artwork_;
    const Vec at = to_layer_({point.h, point.v});
    if (!std::isfinite(at.x) || !std::isfinite(at.y))
        return false;
    const double slack_h =
        share(tolerance_of(point.h, std::abs(back.a * at.x) + std::abs(back.c * at.y) + std::abs(back.e)),
              back.a, back.c);
    const double slack_v =
        share(tolerance_of(point.v, std::abs(back.b * at.x) + std::abs(back.d * at.y) + std::abs(back.f)),
              back.b, back.d);
    // An error of x matters to those coordinates of the artwork that x goes into.
    const auto slack = [&](double into_h, double into_v) {
        if (into_h == 0)
            return slack_v;
        return into_v == 0 ? slack_h : std::min(slack_h, slack_v);
    };
    append_decimal(text, at.x, slack(back.a, back.b));
    text += ',';
    append_decimal(text, at.y, slack(back.c, back.d));
    return true;
}

bool PathDataWriter::try_append(std::string& text, const PathArt& path) const
{
    const std::size_t before = text.size();
    text += "M ";
    bool finite = try_append_point(text, path.front().p);
    for (std::size_t i = 1; finite && i < path.size(); ++i) {
        const PathSegment& from = path[i - 1];
        const PathSegment& to = path[i];
        if (from.out == from.p && to.in == to.p) {
            text += " L ";
        } else {
            text += " C ";
            finite = try_append_point(text, from.out);
            text += ' ';
            finite = finite && try_append_point(text, to.in);
            text += ' ';
        }
        finite = finite && try_append_point(text, to.p);
    }
    if (!finite)
        text.resize(before);
    return finite;
}

} // namespace vnt::host
