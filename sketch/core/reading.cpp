#include "sketch/core/reading.h"

namespace vnt::sketch {

const char* name_of(Kind kind)
{
    switch (kind) {
    case Kind::line: return "line";
    case Kind::polyline: return "polyline";
    case Kind::triangle: return "triangle";
    case Kind::square: return "square";
    case Kind::rectangle: return "rectangle";
    case Kind::quadrilateral: return "quadrilateral";
    case Kind::polygon: return "polygon";
    case Kind::circle: return "circle";
    case Kind::arc: return "arc";
    case Kind::ellipse: return "ellipse";
    case Kind::elliptic_arc: return "elliptic arc";
    case Kind::free_curve: return "free curve";
    case Kind::ink: break;
    }
    return "ink";
}

} // namespace vnt::sketch
