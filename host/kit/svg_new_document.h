// A new SVG document to draw into.
#pragma once

#include "host/kit/path_art.h"

#include <string>

namespace vnt::host {

// An empty document whose page is box with a margin around it. Its artwork's origin is where box has it, and a
// user unit is a point, so that coordinates in it are those of the artwork with y turned down.
//
// Units: points.
std::string make_svg_document(const ArtBox& box, double margin);

} // namespace vnt::host
