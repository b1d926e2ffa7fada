// Path art as an effect makes it: a list of anchors with their handles.
//
// Space: artwork, y up. Units: points, in single precision as they cross the path suite.
#pragma once

#include <optional>
#include <vector>

namespace vnt::host {

struct ArtPoint {
    float h = 0;
    float v = 0;
    bool operator==(const ArtPoint&) const = default;
};

struct PathSegment {
    ArtPoint p;   // the anchor
    ArtPoint in;  // the handle towards the segment before
    ArtPoint out; // the handle towards the segment after
};

// An open path: n segments are n - 1 curves.
using PathArt = std::vector<PathSegment>;

bool is_finite(const PathArt& path);

// Why a path cannot be drawn: "has no segments"; null when it can.
const char* why_left_out(const PathArt& path);

struct ArtBox {
    double left, bottom, right, top;
};

// The smallest upright box around the curves of all finite paths; none when there is no anchor in them.
//
// Source: a cubic's ends and the zeros of its derivative are its extremes.
std::optional<ArtBox> bounds_of(const std::vector<PathArt>& paths);

} // namespace vnt::host
