// The places and angles that a shape may snap to, by the settings.
//
// Space:  the sheet.
// Owner:  the scene must outlive it.
#pragma once

#include "sketch/core/snapping.h"

#include <optional>
#include <vector>

namespace vnt::sketch {

class SnapPlaces {
public:
    SnapPlaces(const SnapScene& scene, const std::optional<Grid>& grid, const SnapSettings& settings);

    double reach() const { return reach_; } // sheet pixels
    // What is drawn first, then the grid.
    std::optional<SnapTarget> near(Vec2 p) const { return within(p, reach_); }
    // The place that p is, but for rounding.
    std::optional<SnapTarget> at(Vec2 p) const;
    std::vector<SnapTarget> near_outline(const Ellipse& ellipse) const;
    // The length nearest to this one that is a whole number of steps of a grid of squares, within reach.
    std::optional<double> whole_steps(double length) const;

    // The step nearest to the angle, within its reach.
    std::optional<double> step_near(double angle) const;
    double angle_reach() const { return settings_.angle_reach; }

private:
    std::optional<SnapTarget> within(Vec2 p, double reach) const;
    std::optional<Vec2> crossing_near(Vec2 p, double reach) const;

    const SnapScene& scene_;
    SnapSettings settings_;
    double reach_ = 0;
    std::optional<Affine> grid_to_sheet_; // of the lines that count
};

} // namespace vnt::sketch
