// Strokes for fitting free curves to, and how far a curve is from its stroke, measured densely both ways.
//
// Units: sheet pixels.
#pragma once

#include "sketch/core/plane.h"

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

// Strokes of one sort: clean paths.
struct StrokeSet {
    std::string name;
    std::vector<vnt::sketch::Path> paths;
};

// As pens and mice leave them, so many of each sort, from a seed.
std::vector<StrokeSet> synthetic_strokes(std::size_t count);

// Adds the drawings of a file, see hand_drawings.h, a set for each label.
// Errors: std::runtime_error.
void add_drawn_strokes(std::vector<StrokeSet>& sets, const std::string& file);

// The largest distances, each place looked for where the other runs at that time, not where it comes by
// later, as long as it is near there.
struct Deviation {
    double of_points = 0; // of a stroke from the curve
    double of_path = 0;   // of all of a path's places, between the points as well, from the curve
    double of_curve = 0;  // of the curve's places from the path
};
Deviation deviation_of(const vnt::sketch::Path& points, const vnt::sketch::Path& path,
                       const vnt::sketch::Path& curve);

// Takes "NAME VALUE" out of the words. Empty: it is not there.
// Errors: std::runtime_error when the value is missing.
std::string take_option(std::vector<char*>& words, const std::string& name);

} // namespace bench
