#include "sketch/core/snap_places.h"

#include <algorithm>
#include <cmath>

namespace vnt::sketch {
namespace {

// Of the reach.
constexpr double kSamePlace = 1e-6;
// Of a grid's step; by how much its two steps may differ, or be off a right angle, in a grid of squares.
constexpr double kSquareGrid = 1e-6;

Vec2 step_x(const Affine& grid) { return grid.linear({1, 0}); }
Vec2 step_y(const Affine& grid) { return grid.linear({0, 1}); }

// The smaller distance between neighbouring lines.
double spacing_of(const Affine& grid)
{
    return std::abs(grid.determinant()) / std::max(length(step_x(grid)), length(step_y(grid)));
}

// By the lines that are far enough apart to be meant.
std::optional<Affine> usable(const Grid& grid, double view_scale)
{
    const double main = std::max(1, grid.subdivisions);
    for (const double steps : {1.0, main}) {
        const Affine lines = grid.grid_to_sheet * Affine{steps, 0, 0, steps, 0, 0};
        if (spacing_of(lines) * view_scale >= kLeastGridStepPx && try_inverse(lines))
            return lines;
    }
    return std::nullopt;
}

} // namespace

SnapPlaces::SnapPlaces(const SnapScene& scene, const std::optional<Grid>& grid, const SnapSettings& settings)
    : scene_(scene), settings_(settings)
{
    if (!(settings.view_scale > 0) || !(settings.reach_px > 0))
        return;
    reach_ = settings.reach_px / settings.view_scale;
    if (settings.to_grid && grid)
        grid_to_sheet_ = usable(*grid, settings.view_scale);
}

std::optional<SnapTarget> SnapPlaces::at(Vec2 p) const { return within(p, kSamePlace * reach_); }

std::optional<SnapTarget> SnapPlaces::within(Vec2 p, double reach) const
{
    if (!(reach_ > 0))
        return std::nullopt;
    if (settings_.to_shapes)
        if (const std::optional<SnapTarget> target = scene_.nearest(p, reach))
            return target;
    if (const std::optional<Vec2> crossing = crossing_near(p, reach))
        return SnapTarget{*crossing, SnapKind::grid};
    return std::nullopt;
}

std::optional<Vec2> SnapPlaces::crossing_near(Vec2 p, double reach) const
{
    if (!grid_to_sheet_)
        return std::nullopt;
    const Vec2 in_grid = (*try_inverse(*grid_to_sheet_))(p);
    const Vec2 rounded{std::round(in_grid.x), std::round(in_grid.y)};
    std::optional<Vec2> best;
    // In a slanted grid a neighbour may be the nearest.
    for (int dx = -1; dx <= 1; ++dx)
        for (int dy = -1; dy <= 1; ++dy) {
            const Vec2 crossing = (*grid_to_sheet_)(rounded + Vec2{1.0 * dx, 1.0 * dy});
            const double off = distance(p, crossing);
            if (off <= reach && (!best || off < distance(p, *best)))
                best = crossing;
        }
    return best;
}

std::vector<SnapTarget> SnapPlaces::near_outline(const Ellipse& ellipse) const
{
    if (!(reach_ > 0) || !settings_.to_shapes)
        return {};
    return scene_.near_outline(ellipse, reach_);
}

std::optional<double> SnapPlaces::whole_steps(double size) const
{
    if (!grid_to_sheet_)
        return std::nullopt;
    const Vec2 x = step_x(*grid_to_sheet_);
    const Vec2 y = step_y(*grid_to_sheet_);
    const double step = length(x);
    if (std::abs(length(y) - step) > kSquareGrid * step || std::abs(dot(x, y)) > kSquareGrid * step * step)
        return std::nullopt;
    const double whole = std::max(1.0, std::round(size / step)) * step;
    return std::abs(whole - size) <= reach_ ? std::optional(whole) : std::nullopt;
}

std::optional<double> SnapPlaces::step_near(double angle) const
{
    if (!settings_.to_angles || !(settings_.angle_step > 0))
        return std::nullopt;
    const double step = std::round(angle / settings_.angle_step) * settings_.angle_step;
    return std::abs(angle - step) <= settings_.angle_reach ? std::optional(step) : std::nullopt;
}

} // namespace vnt::sketch
