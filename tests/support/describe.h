// A figure as one readable text, for comparison in tests: line(0,0,0 1,2,0) circle(c=0,0,0 r=5 0..6.28) ...
#pragma once

#include "Source/geometry/primitives.h"

#include <sstream>
#include <string>

namespace support {

inline std::string describe(const vnt::Point& p)
{
    std::ostringstream out;
    out.precision(17);
    out << p.x << ',' << p.y << ',' << p.z;
    return out.str();
}

// Only what differs from the identity.
inline std::string describe(const vnt::Matrix& matrix)
{
    std::ostringstream out;
    out.precision(17);
    const vnt::Matrix identity;
    for (std::size_t i = 0; i < vnt::Matrix::kElements; ++i) {
        if (!(matrix[i] == identity[i]))
            out << " m" << i / 4 << i % 4 << '=' << matrix[i];
    }
    return out.str();
}

inline std::string describe(const vnt::PrimInfo* primitive)
{
    std::ostringstream out;
    out.precision(17);
    if (primitive == nullptr)
        return "null";
    if (const auto* line = dynamic_cast<const vnt::PrimL*>(primitive)) {
        out << "line(" << describe(line->start) << ' ' << describe(line->end) << ')';
    } else if (const auto* circle = dynamic_cast<const vnt::PrimC*>(primitive)) {
        out << (circle->is_arc ? "circular_arc(" : "circle(") << describe(circle->center)
            << " r=" << circle->radius << ' ' << circle->start << ".." << circle->end
            << describe(circle->posture) << ')';
    } else if (const auto* ellipse = dynamic_cast<const vnt::PrimE*>(primitive)) {
        out << (ellipse->is_arc ? "elliptic_arc(" : "ellipse(") << describe(ellipse->center)
            << " r=" << ellipse->major_radius << ',' << ellipse->minor_radius << ' ' << ellipse->start << ".."
            << ellipse->end << describe(ellipse->posture) << ')';
    } else if (const auto* curve = dynamic_cast<const vnt::PrimF*>(primitive)) {
        out << (curve->closed ? "closed(" : "open(");
        for (const vnt::Point& point : curve->points)
            out << (&point == &curve->points.front() ? "" : " ") << describe(point);
        out << ')';
    }
    return out.str();
}

inline std::string describe(const vnt::StrokeInfo& stroke)
{
    std::string text;
    for (const vnt::PrimInfo* primitive : stroke.primitives)
        text += (text.empty() ? "" : " ") + describe(primitive);
    return "[" + text + "]";
}

inline std::string describe(const vnt::FigPrimInfo& figure)
{
    std::string text;
    for (const vnt::StrokeInfo& stroke : figure.strokes)
        text += describe(stroke);
    return text;
}

} // namespace support
