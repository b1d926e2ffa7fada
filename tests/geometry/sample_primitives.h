// One primitive of each kind, strokes and figures of them, and how they look in text and in bytes.
#pragma once

#include "Source/geometry/primitives.h"
#include "tests/geometry/wire_bytes.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

namespace sample {

constexpr vnt::Point kOrigin(0, 0, 0);
constexpr vnt::PrimType kUnknownType = static_cast<vnt::PrimType>(7);

// Turns and skews, with a translation; what a point in the plane never meets is NaN.
inline vnt::Matrix odd_posture()
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    vnt::Matrix m;
    m.m00 = 2, m.m01 = 3, m.m02 = kNaN, m.m03 = 10;
    m.m10 = 4, m.m11 = 5, m.m12 = kNaN, m.m13 = 20;
    m.m20 = 6, m.m21 = 7, m.m22 = kNaN, m.m23 = 30;
    m.m30 = m.m31 = m.m32 = m.m33 = kNaN;
    return m;
}

inline vnt::PrimL some_line() { return vnt::PrimL(vnt::Point(1, 2, 3), vnt::Point(4, 5, 6)); }
inline vnt::PrimC some_arc() { return vnt::PrimC(vnt::Point(1, 2, 3), 0.1, 5, 6, true, vnt::Matrix()); }
inline vnt::PrimC some_circle() { return vnt::PrimC(kOrigin, 1, 0, 0, false, vnt::Matrix()); }
inline vnt::PrimE some_ellipse()
{
    return vnt::PrimE(vnt::Point(1, 2, 3), 4, 0.1, 5, 6, false, vnt::Matrix());
}
inline vnt::PrimE some_elliptic_arc() { return vnt::PrimE(kOrigin, 1, 2, 3, 4, true, vnt::Matrix()); }
inline vnt::PrimF some_curve() { return vnt::PrimF({vnt::Point(1, 2, 3), vnt::Point(4, 5, 6)}, true); }
inline vnt::PrimF empty_curve() { return vnt::PrimF({}, false); }

// A line that says of itself that it is something else.
inline vnt::PrimL mistyped_line(vnt::PrimType type)
{
    vnt::PrimL line = some_line();
    line.type = type;
    return line;
}

template <class Kind>
vnt::PrimInfo* copy_of(const Kind& primitive)
{
    return new Kind(primitive);
}
inline vnt::PrimInfo* copy_of(std::nullptr_t) { return nullptr; }

// A stroke of copies of these primitives; nullptr gives a null entry.
template <class... Kinds>
vnt::StrokeInfo stroke_of(const Kinds&... kinds)
{
    vnt::StrokeInfo stroke;
    (stroke.primitives.push_back(copy_of(kinds)), ...);
    return stroke;
}

template <class... Strokes>
vnt::FigPrimInfo figure_of(const Strokes&... strokes)
{
    vnt::FigPrimInfo figure;
    (figure.strokes.push_back(strokes), ...);
    return figure;
}

inline vnt::StrokeInfo stroke_of_every_kind()
{
    return stroke_of(some_line(), some_arc(), some_ellipse(), some_curve());
}

inline const std::string kIdentityText = "1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1";
inline const std::string kLineText = "1 2 3\n4 5 6";
inline const std::string kArcText = "1 2 3\n0.10000000000000000555\n5 6\n1\n" + kIdentityText;
inline const std::string kEllipseText = "1 2 3\n4 0.10000000000000000555\n5 6\n0\n" + kIdentityText;
inline const std::string kCurveText = "2\n1 2 3\n4 5 6\n1";

constexpr std::uint64_t kTenth = 0x3FB999999999999A;
inline const std::string kFirstPoint = wire::point(wire::kOne, wire::kTwo, wire::kThree);
inline const std::string kSecondPoint = wire::point(wire::kFour, wire::kFive, wire::kSix);
inline const std::string kAngles = wire::f64(wire::kFive) + wire::f64(wire::kSix);
inline const std::string kLineBytes = kFirstPoint + kSecondPoint;
inline const std::string kArcBytes =
    kFirstPoint + wire::f64(kTenth) + kAngles + wire::i32(1) + wire::identity();
inline const std::string kEllipseBytes =
    kFirstPoint + wire::f64(wire::kFour) + wire::f64(kTenth) + kAngles + wire::i32(0) + wire::identity();
inline const std::string kCurveBytes = wire::i32(1) + wire::i32(2) + kFirstPoint + kSecondPoint;

} // namespace sample
