// The figure that a sketch application sends: primitives, grouped into strokes, grouped into a figure; with
// their evaluation and their text and byte forms.
//
// Space:  model space; a circle's or ellipse's own frame has its origin at the centre and is turned by its
//         posture.
// Units:  angles in radians, counter-clockwise from the local x axis; lengths in model units.
// Shapes: text as in records.h, lines ended by std::endl, flags "0" or "1"; bytes as in records.h, flags and
//         type tags 32 bits, counts 32 bits unsigned before their lists. Type tags stand in the stroke's
//         forms alone.
// Errors: stream state. A count that cannot be read is 0, and a type tag that cannot be read is unknown;
//         counted loops run to their count even when the stream has failed. A primitive whose type does not
//         fit its class (construction prevents it) raises std::bad_cast in copies and stream forms of its
//         stroke.
#pragma once

#include "Source/geometry/records.h"

#include <cstdint>
#include <istream>
#include <list>
#include <ostream>

namespace vnt {

enum PrimType : std::int32_t {
    PRIM_LINE = 0,
    PRIM_CIRCLE = 1,
    PRIM_ELLIPSE = 2,
    PRIM_FREE = 3,
};

// What every primitive is; users look at type and then downcast.
struct PrimInfo {
    PrimType type;

    explicit PrimInfo(PrimType type_value) : type(type_value) {}
    PrimInfo(const PrimInfo&) = default;
    virtual ~PrimInfo() = default;
    PrimInfo& operator=(const PrimInfo&) = default;
};

struct PrimL : PrimInfo {
    Point start;
    Point end;

    PrimL(const Point& start_point, const Point& end_point)
        : PrimInfo(PRIM_LINE), start(start_point), end(end_point)
    {
    }

    // (1 - t) start + t end; t is not clamped.
    Point getEvaluateAt(double t) const;

    // Deliberate: n + 1 points (i / n, 0, 0), whatever the line's ends are.
    // Kept by PrimL.KeepsEvaluatePointsOffTheLine. Depends on it: nothing.
    std::list<Point> getEvaluatePoints(int n) const;

    std::ostream& serialize(std::ostream& out) const; // 48 bytes: start, end
    std::istream& deserialize(std::istream& in);
};

struct PrimC : PrimInfo {
    Point center;
    double radius;
    double start; // angles of an arc's ends
    double end;
    bool is_arc; // false: a full circle
    Matrix posture;

    PrimC(const Point& center_point, double radius_value, double start_angle, double end_angle,
          bool is_arc_flag, const Matrix& posture_matrix)
        : PrimInfo(PRIM_CIRCLE), center(center_point), radius(radius_value), start(start_angle),
          end(end_angle), is_arc(is_arc_flag), posture(posture_matrix)
    {
    }

    // The point at angle t: posture times (radius cos t, radius sin t, 0, 1), plus center. The posture's
    // translation column is added on top of the centre.
    Point getEvaluateAt(double t) const;

    // n + 1 points from start to end. n = 0 divides 0 by 0: one point at the angle NaN.
    std::list<Point> getEvaluatePoints(int n) const;

    std::ostream&
    serialize(std::ostream& out) const; // 180 bytes: center, radius, start, end, is_arc, posture
    std::istream& deserialize(std::istream& in);
};

struct PrimE : PrimInfo {
    Point center;
    double major_radius; // along the local x axis
    double minor_radius; // along the local y axis
    double start;        // parameter angles of an arc's ends
    double end;
    bool is_arc; // false: a full ellipse
    Matrix posture;

    PrimE(const Point& center_point, double major_radius_value, double minor_radius_value, double start_angle,
          double end_angle, bool is_arc_flag, const Matrix& posture_matrix)
        : PrimInfo(PRIM_ELLIPSE), center(center_point), major_radius(major_radius_value),
          minor_radius(minor_radius_value), start(start_angle), end(end_angle), is_arc(is_arc_flag),
          posture(posture_matrix)
    {
    }

    // As PrimC's, of the point (major_radius cos t, minor_radius sin t, 0).
    Point getEvaluateAt(double t) const;
    std::list<Point> getEvaluatePoints(int n) const;

    // 188 bytes: center, major_radius, minor_radius, start, end, is_arc, posture
    std::ostream& serialize(std::ostream& out) const;
    std::istream& deserialize(std::istream& in);
};

struct PrimF : PrimInfo {
    std::list<Point> points; // control points of a piecewise cubic Bézier curve, 4 per segment
    bool closed;

    PrimF(const std::list<Point>& control_points, bool closed_flag)
        : PrimInfo(PRIM_FREE), points(control_points), closed(closed_flag)
    {
    }

    // A control point, not a point of the curve: the first for t <= 0, the last for t >= 1, else number
    // floor(n t) of n. (0, 0, 0) where there is no such point: of an empty list, or at NaN.
    Point getEvaluateAt(double t) const;

    // All control points, whatever n is.
    std::list<Point> getEvaluatePoints(int n) const;

    // Deliberate: the flag stands first in the bytes and last in the text.
    // Kept by PrimF.KeepsTheFlagFirstInBytesAndLastInText. Depends on it: peers of exchange types 0 and 1.
    std::ostream& serialize(std::ostream& out) const; // closed, count, then 24 bytes a point
    std::istream& deserialize(std::istream& in);      // empties the points first
};

// The primitives of one stroke, in drawing order.
//
// Owner:  the stroke owns its primitives and deletes them through their base. A null entry is allowed, and
//         stands for a primitive of unknown type.
// Shapes: a null entry is written as the type tag -1 with nothing after it.
struct StrokeInfo {
    static constexpr std::int32_t kNoType = -1;

    std::list<PrimInfo*> primitives;

    StrokeInfo() = default;
    StrokeInfo(const StrokeInfo& other);
    ~StrokeInfo() { clear(); }

    // A deep copy. An entry of unknown type becomes a null entry.
    //
    // Deliberate: does not look for self-assignment, which empties the stroke.
    // Kept by StrokeInfo.KeepsSelfAssignmentEmptying. Depends on it: nothing.
    StrokeInfo& operator=(const StrokeInfo& other);

    // Deletes the primitives and empties the list.
    void clear();

    std::ostream& serialize(std::ostream& out) const; // count, then per primitive its type and its bytes

    // Empties the stroke first; so does operator>>.
    //
    // Deliberate: an unknown type tag gives a null entry and reads nothing more for it.
    // Kept by StrokeInfo.KeepsANullEntryForAnUnknownTypeTag. Depends on it: nothing.
    std::istream& deserialize(std::istream& in);
};

struct FigPrimInfo {
    std::list<StrokeInfo> strokes;

    std::ostream& serialize(std::ostream& out) const; // count, then each stroke's bytes
    std::istream& deserialize(std::istream& in);      // empties the strokes first
};

std::ostream& operator<<(std::ostream& out, const PrimL& line);
std::istream& operator>>(std::istream& in, PrimL& line);
std::ostream& operator<<(std::ostream& out, const PrimC& circle);
std::istream& operator>>(std::istream& in, PrimC& circle);
std::ostream& operator<<(std::ostream& out, const PrimE& ellipse);
std::istream& operator>>(std::istream& in, PrimE& ellipse);
std::ostream& operator<<(std::ostream& out, const PrimF& curve);
std::istream& operator>>(std::istream& in, PrimF& curve);
std::ostream& operator<<(std::ostream& out, const StrokeInfo& stroke);
std::istream& operator>>(std::istream& in, StrokeInfo& stroke);
std::ostream& operator<<(std::ostream& out, const FigPrimInfo& figure);
std::istream& operator>>(std::istream& in, FigPrimInfo& figure);

} // namespace vnt
