// A figure as an SVG document that draws the same with SVG's own lines, arcs and curves.
//
// Shapes: a path element a stroke, a thin black line; arcs are arcs of SVG, seen from above.
// Units:  the figure's, y down.
#pragma once

#include "Source/geometry/primitives.h"

#include <string>

namespace bench {

std::string svg_twin(const vnt::FigPrimInfo& figure);

} // namespace bench
