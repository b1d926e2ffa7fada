// Path art as the d attribute of an SVG path.
#pragma once

#include "host/kit/affine.h"
#include "host/kit/path_art.h"

#include <string>

namespace vnt::host {

class PathDataWriter {
public:
    PathDataWriter(const Affine& artwork_to_layer, const Affine& layer_to_artwork);

    // Appends "M x,y C x1,y1 x2,y2 x,y L x,y ...", absolute, in layer space. A curve whose handles lie on its
    // anchors is an L. The first segment's in and the last one's out belong to no curve and are not written.
    //
    // path:     finite, with a segment at least; false when a coordinate is not finite in layer space: text is
    //           then as it was.
    // Accuracy: read as doubles and taken back to the artwork, a coordinate is the same single precision number.
    //           Where doubles do not hold as much (a point within 2^-49 of the distances that the map adds up),
    //           it is off by no more than that. No coordinate has more digits than this takes, but for one that
    //           a power of two may have more: the slack towards its nearer neighbour holds for both sides.
    bool try_append(std::string& text, const PathArt& path) const;

private:
    bool try_append_point(std::string& text, const ArtPoint& point) const;

    Affine to_layer_;
    Affine to_artwork_;
};

} // namespace vnt::host
