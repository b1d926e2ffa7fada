#include "Source/geometry/primitives.h"

#include "Source/geometry/raw_bytes.h"

#include <cmath>
#include <iterator>
#include <memory>
#include <type_traits>

namespace vnt {
namespace {

// posture times (x, y, 0, 1), plus center.
Point placed(const Matrix& posture, const Point& center, double x, double y)
{
    return Point(posture.m00 * x + posture.m01 * y + posture.m03 + center.x,
                 posture.m10 * x + posture.m11 * y + posture.m13 + center.y,
                 posture.m20 * x + posture.m21 * y + posture.m23 + center.z);
}

template <class Arc>
std::list<Point> points_along(const Arc& arc, int n)
{
    std::list<Point> points;
    for (int i = 0; i <= n; ++i)
        points.push_back(arc.getEvaluateAt(arc.start + static_cast<double>(i) / n * (arc.end - arc.start)));
    return points;
}

void write_flag(std::ostream& out, bool flag) { write_raw(out, static_cast<std::uint32_t>(flag ? 1 : 0)); }

void read_flag(std::istream& in, bool& flag)
{
    std::uint32_t value = flag ? 1 : 0;
    read_raw(in, value);
    flag = value != 0;
}

template <class List>
std::uint32_t count_of(const List& list)
{
    return static_cast<std::uint32_t>(list.size());
}

const char* flag_text(bool flag) { return flag ? "1" : "0"; }

// "0" or "1", whatever the stream is set to make of flags.
std::istream& read_text_flag(std::istream& in, bool& flag)
{
    const std::ios::fmtflags before = in.flags();
    in >> std::noboolalpha >> flag;
    in.flags(before);
    return in;
}

std::uint32_t read_raw_count(std::istream& in)
{
    std::uint32_t count = 0;
    read_raw(in, count);
    return count;
}

// An extraction that fails may leave 0 or an extreme; both would be read as something else.
std::int32_t read_text_int(std::istream& in, std::int32_t if_unreadable)
{
    std::int32_t value = if_unreadable;
    return in >> value ? value : if_unreadable;
}

std::unique_ptr<PrimInfo> make_placeholder(std::int32_t type)
{
    const Point origin(0.0, 0.0, 0.0);
    switch (type) {
    case PRIM_LINE: return std::make_unique<PrimL>(origin, origin);
    case PRIM_CIRCLE: return std::make_unique<PrimC>(origin, 0.0, 0.0, 0.0, false, Matrix());
    case PRIM_ELLIPSE: return std::make_unique<PrimE>(origin, 0.0, 0.0, 0.0, 0.0, false, Matrix());
    case PRIM_FREE: return std::make_unique<PrimF>(std::list<Point>(), false);
    default: return nullptr;
    }
}

template <class Kind, class Info>
auto& downcast(Info& primitive)
{
    return dynamic_cast<std::conditional_t<std::is_const_v<Info>, const Kind, Kind>&>(primitive);
}

// Calls action with the primitive as what its type says it is; not at all for an unknown type.
template <class Info, class Action>
void as_its_kind(Info& primitive, Action action)
{
    switch (primitive.type) {
    case PRIM_LINE: return action(downcast<PrimL>(primitive));
    case PRIM_CIRCLE: return action(downcast<PrimC>(primitive));
    case PRIM_ELLIPSE: return action(downcast<PrimE>(primitive));
    case PRIM_FREE: return action(downcast<PrimF>(primitive));
    default: return;
    }
}

// Makes a placeholder of that type, or null, lets fill set its fields, and appends it.
template <class Fill>
void append_filled(std::list<PrimInfo*>& primitives, std::int32_t type, Fill fill)
{
    std::unique_ptr<PrimInfo> made = make_placeholder(type);
    if (made != nullptr)
        as_its_kind(*made, fill);
    primitives.push_back(nullptr); // first: a throwing push_back must not leak the primitive
    primitives.back() = made.release();
}

} // namespace

Point PrimL::getEvaluateAt(double t) const
{
    return Point((1 - t) * start.x + t * end.x, (1 - t) * start.y + t * end.y, (1 - t) * start.z + t * end.z);
}

std::list<Point> PrimL::getEvaluatePoints(int n) const
{
    std::list<Point> points;
    for (int i = 0; i <= n; ++i)
        points.emplace_back(static_cast<double>(i) / n, 0.0, 0.0);
    return points;
}

Point PrimC::getEvaluateAt(double t) const
{
    return placed(posture, center, radius * std::cos(t), radius * std::sin(t));
}

std::list<Point> PrimC::getEvaluatePoints(int n) const { return points_along(*this, n); }

Point PrimE::getEvaluateAt(double t) const
{
    return placed(posture, center, major_radius * std::cos(t), minor_radius * std::sin(t));
}

std::list<Point> PrimE::getEvaluatePoints(int n) const { return points_along(*this, n); }

Point PrimF::getEvaluateAt(double t) const
{
    if (points.empty() || std::isnan(t))
        return Point(0.0, 0.0, 0.0);
    if (t <= 0)
        return points.front();
    if (t >= 1)
        return points.back();
    const auto index = static_cast<std::size_t>(static_cast<double>(points.size()) * t);
    if (index >= points.size())
        return Point(0.0, 0.0, 0.0);
    return *std::next(points.begin(), static_cast<std::ptrdiff_t>(index));
}

std::list<Point> PrimF::getEvaluatePoints(int /*n*/) const { return points; }

std::ostream& PrimL::serialize(std::ostream& out) const
{
    start.serialize(out);
    return end.serialize(out);
}

std::istream& PrimL::deserialize(std::istream& in)
{
    start.deserialize(in);
    return end.deserialize(in);
}

std::ostream& PrimC::serialize(std::ostream& out) const
{
    center.serialize(out);
    write_raw(out, radius);
    write_raw(out, start);
    write_raw(out, end);
    write_flag(out, is_arc);
    return posture.serialize(out);
}

std::istream& PrimC::deserialize(std::istream& in)
{
    center.deserialize(in);
    read_raw(in, radius);
    read_raw(in, start);
    read_raw(in, end);
    read_flag(in, is_arc);
    return posture.deserialize(in);
}

std::ostream& PrimE::serialize(std::ostream& out) const
{
    center.serialize(out);
    write_raw(out, major_radius);
    write_raw(out, minor_radius);
    write_raw(out, start);
    write_raw(out, end);
    write_flag(out, is_arc);
    return posture.serialize(out);
}

std::istream& PrimE::deserialize(std::istream& in)
{
    center.deserialize(in);
    read_raw(in, major_radius);
    read_raw(in, minor_radius);
    read_raw(in, start);
    read_raw(in, end);
    read_flag(in, is_arc);
    return posture.deserialize(in);
}

std::ostream& PrimF::serialize(std::ostream& out) const
{
    write_flag(out, closed);
    write_raw(out, count_of(points));
    for (const Point& point : points)
        point.serialize(out);
    return out;
}

std::istream& PrimF::deserialize(std::istream& in)
{
    points.clear();
    read_flag(in, closed);
    const std::uint32_t count = read_raw_count(in);
    for (std::uint32_t i = 0; i < count; ++i)
        points.emplace_back(0.0, 0.0, 0.0).deserialize(in);
    return in;
}

// Delegates, so that a copy that fails half-way is destroyed with what it has.
StrokeInfo::StrokeInfo(const StrokeInfo& other) : StrokeInfo() { *this = other; }

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): see the declaration
StrokeInfo& StrokeInfo::operator=(const StrokeInfo& other)
{
    clear();
    for (const PrimInfo* source : other.primitives) {
        append_filled(primitives, source != nullptr ? source->type : kNoType, [&](auto& copy) {
            copy = dynamic_cast<const std::remove_reference_t<decltype(copy)>&>(*source);
        });
    }
    return *this;
}

void StrokeInfo::clear()
{
    for (const PrimInfo* primitive : primitives)
        delete primitive;
    primitives.clear();
}

std::ostream& StrokeInfo::serialize(std::ostream& out) const
{
    write_raw(out, count_of(primitives));
    for (const PrimInfo* primitive : primitives) {
        write_raw(out, primitive != nullptr ? std::int32_t{primitive->type} : kNoType);
        if (primitive != nullptr)
            as_its_kind(*primitive, [&](const auto& kind) { kind.serialize(out); });
    }
    return out;
}

std::istream& StrokeInfo::deserialize(std::istream& in)
{
    clear();
    const std::uint32_t count = read_raw_count(in);
    for (std::uint32_t i = 0; i < count; ++i) {
        std::int32_t type = kNoType;
        read_raw(in, type);
        append_filled(primitives, type, [&](auto& primitive) { primitive.deserialize(in); });
    }
    return in;
}

std::ostream& FigPrimInfo::serialize(std::ostream& out) const
{
    write_raw(out, count_of(strokes));
    for (const StrokeInfo& stroke : strokes)
        stroke.serialize(out);
    return out;
}

std::istream& FigPrimInfo::deserialize(std::istream& in)
{
    strokes.clear();
    const std::uint32_t count = read_raw_count(in);
    for (std::uint32_t i = 0; i < count; ++i)
        strokes.emplace_back().deserialize(in);
    return in;
}

std::ostream& operator<<(std::ostream& out, const PrimL& line)
{
    return out << line.start << std::endl << line.end;
}

std::istream& operator>>(std::istream& in, PrimL& line) { return in >> line.start >> line.end; }

std::ostream& operator<<(std::ostream& out, const PrimC& circle)
{
    return out << circle.center << std::endl
               << circle.radius << std::endl
               << circle.start << " " << circle.end << std::endl
               << flag_text(circle.is_arc) << std::endl
               << circle.posture;
}

std::istream& operator>>(std::istream& in, PrimC& circle)
{
    in >> circle.center >> circle.radius >> circle.start >> circle.end;
    return read_text_flag(in, circle.is_arc) >> circle.posture;
}

std::ostream& operator<<(std::ostream& out, const PrimE& ellipse)
{
    return out << ellipse.center << std::endl
               << ellipse.major_radius << " " << ellipse.minor_radius << std::endl
               << ellipse.start << " " << ellipse.end << std::endl
               << flag_text(ellipse.is_arc) << std::endl
               << ellipse.posture;
}

std::istream& operator>>(std::istream& in, PrimE& ellipse)
{
    in >> ellipse.center >> ellipse.major_radius >> ellipse.minor_radius >> ellipse.start >> ellipse.end;
    return read_text_flag(in, ellipse.is_arc) >> ellipse.posture;
}

std::ostream& operator<<(std::ostream& out, const PrimF& curve)
{
    out << count_of(curve.points) << std::endl;
    for (const Point& point : curve.points)
        out << point << std::endl;
    return out << flag_text(curve.closed);
}

std::istream& operator>>(std::istream& in, PrimF& curve)
{
    curve.points.clear();
    const std::int32_t count = read_text_int(in, 0);
    for (std::int32_t i = 0; i < count; ++i)
        in >> curve.points.emplace_back(0.0, 0.0, 0.0);
    return read_text_flag(in, curve.closed);
}

std::ostream& operator<<(std::ostream& out, const StrokeInfo& stroke)
{
    out << count_of(stroke.primitives) << std::endl;
    for (auto entry = stroke.primitives.begin(); entry != stroke.primitives.end(); ++entry) {
        if (entry != stroke.primitives.begin())
            out << std::endl;
        out << (*entry != nullptr ? std::int32_t{(*entry)->type} : StrokeInfo::kNoType) << std::endl;
        if (*entry != nullptr)
            as_its_kind(**entry, [&](const auto& kind) { out << kind; });
    }
    return out;
}

std::istream& operator>>(std::istream& in, StrokeInfo& stroke)
{
    stroke.clear();
    const std::int32_t count = read_text_int(in, 0);
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int32_t type = read_text_int(in, StrokeInfo::kNoType);
        append_filled(stroke.primitives, type, [&](auto& primitive) { in >> primitive; });
    }
    return in;
}

std::ostream& operator<<(std::ostream& out, const FigPrimInfo& figure)
{
    out << count_of(figure.strokes) << std::endl;
    for (const StrokeInfo& stroke : figure.strokes)
        out << stroke << std::endl;
    return out;
}

std::istream& operator>>(std::istream& in, FigPrimInfo& figure)
{
    figure.strokes.clear();
    const std::int32_t count = read_text_int(in, 0);
    for (std::int32_t i = 0; i < count; ++i)
        in >> figure.strokes.emplace_back();
    return in;
}

} // namespace vnt
