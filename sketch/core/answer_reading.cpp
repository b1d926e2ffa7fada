// The strokes of a document; see answer.h.
#include "Source/geometry/primitives.h"
#include "Source/vntClientCom/vntClientCom.h"
#include "sketch/core/answer.h"
#include "sketch/core/arc_element.h"
#include "sketch/core/shape_kind.h"
#include "sketch/core/shape_outline.h"

#include <pugixml.hpp>

#include <algorithm>
#include <optional>
#include <utility>

namespace vnt::sketch {
namespace {

// Of a document. In memory an ordinary one takes some ten times its text; one of elements and attributes
// without a name, a hundred times.
constexpr std::ptrdiff_t kMostTags = 2'000'000;
constexpr std::ptrdiff_t kMostBlanks = 6'000'000; // each may begin an attribute

// Sheet pixels; places that are nearer to one another are one.
constexpr double kSamePlace = 1e-6;

// Sheet pixels; how far a round part of a longer curve may lie from itself.
constexpr double kCurveTolerance = 0.01;

// The link's reading of a document that did not come over a connection.
class FigureReader : public ClientCom {
public:
    FigureReader()
    {
        // The link closes what stands here at its end: the process's own descriptor 0, if nothing else does.
        data_socket = -1;
        listen_socket = -1;
    }
    using ClientCom::figure;
};

Vec2 place_of(const Point& point) { return {point.x, point.y}; }

bool is_same_place(Vec2 a, Vec2 b) { return distance(a, b) <= kSamePlace; }

// Continues the curve to a place, unless it is there, or has not begun.
void join(Path& curve, Vec2 to)
{
    if (curve.empty() || curve.back() == to)
        return;
    const Vec2 from = curve.back();
    curve.insert(curve.end(), {from, from, to, to});
}

// The segments of a free curve, as the plug-in counts its points: in fours, where a start that is nearer to
// the end before it than the weld is left out, and any other is reached by a straight segment. Of what is
// left over the first point alone is drawn.
Path segments_of(const std::list<Point>& points, double weld)
{
    Path segments;
    std::size_t rest = points.size();
    for (auto it = points.begin(); it != points.end();) {
        Vec2 start = place_of(*it);
        if (!segments.empty() && distance(segments.back(), start) < std::abs(weld))
            start = segments.back();
        join(segments, start);
        if (rest < 4)
            break;
        segments.push_back(start);
        ++it;
        for (int i = 0; i < 3; ++i, ++it)
            segments.push_back(place_of(*it));
        rest -= 4;
    }
    return segments;
}

// What a primitive draws, in model space; none of one that draws nothing.
std::optional<Shape> shape_of(const PrimInfo* primitive, double weld)
{
    const auto posture_of = [](const Matrix& m) { return Affine{m.m00, m.m10, m.m01, m.m11, 0, 0}; };
    if (const auto* line = dynamic_cast<const PrimL*>(primitive))
        return Straight{
            {place_of(line->start), place_of(line->end)},
            false
        };
    if (const auto* circle = dynamic_cast<const PrimC*>(primitive))
        return shape_of(place_of(circle->center), circle->radius, circle->radius, circle->start, circle->end,
                        posture_of(circle->posture));
    if (const auto* ellipse = dynamic_cast<const PrimE*>(primitive))
        return shape_of(place_of(ellipse->center), ellipse->major_radius, ellipse->minor_radius,
                        ellipse->start, ellipse->end, posture_of(ellipse->posture));
    if (const auto* free = dynamic_cast<const PrimF*>(primitive)) {
        Path segments = segments_of(free->points, weld);
        if (!segments.empty())
            return Curve{std::move(segments), free->closed};
    }
    return std::nullopt;
}

// The curve, or what it is when its segments have their controls on their ends: straight pieces.
Shape straightened(Curve curve)
{
    const Path& points = curve.points;
    curve.closed = curve.closed && is_same_place(points.front(), points.back());
    Straight straight{{points.front()}, curve.closed};
    for (std::size_t i = 0; i < points.size(); i += 4) {
        if (points[i] != points[i + 1] || points[i + 2] != points[i + 3])
            return curve;
        if (!is_same_place(straight.corners.back(), points[i + 3]))
            straight.corners.push_back(points[i + 3]);
    }
    if (straight.closed && straight.corners.size() > 1)
        straight.corners.pop_back();
    if (straight.corners.size() == 1) {
        straight.corners.push_back(straight.corners.front());
        straight.closed = false;
    }
    return straight;
}

// One shape of parts that are drawn one after the other.
Shape joined(const std::vector<Shape>& parts)
{
    if (parts.size() == 1) {
        const auto* curve = std::get_if<Curve>(&parts.front());
        return curve != nullptr ? straightened(*curve) : parts.front();
    }
    Path all;
    for (const Shape& part : parts) {
        const Path segments = cubics_of(part, kCurveTolerance);
        if (!all.empty() && !is_same_place(all.back(), segments.front()))
            join(all, segments.front());
        all.insert(all.end(), segments.begin(), segments.end());
    }
    for (std::size_t i = 4; i < all.size(); i += 4) {
        // A straight segment stays one.
        all[i] = all[i - 1];
        if (is_same_place(all[i], all[i + 1]))
            all[i + 1] = all[i];
    }
    return straightened({all, true});
}

bool is_within_reach(const Shape& shape)
{
    const auto is_near = [](Vec2 p) { return std::abs(p.x) <= kFarthest && std::abs(p.y) <= kFarthest; };
    if (const auto* round = std::get_if<Round>(&shape)) {
        const Vec2 size{round->ellipse.major, round->ellipse.minor};
        return is_near(round->ellipse.centre) && is_near(size) && std::isfinite(round->start) &&
               std::isfinite(round->sweep) && std::isfinite(round->ellipse.rotation);
    }
    const Path cubics = cubics_of(shape, kCurveTolerance);
    return std::all_of(cubics.begin(), cubics.end(), is_near);
}

// Of a document without shapes: nothing is in it that would be lost when it is written anew.
bool is_empty_sketch(std::string_view document)
{
    pugi::xml_document read;
    if (!read.load_buffer(document.data(), document.size(), pugi::parse_minimal, pugi::encoding_utf8))
        return false;
    const pugi::xml_node root = read.document_element();
    const auto is_element = [](pugi::xml_node node) { return node.type() == pugi::node_element; };
    return root.name() == std::string_view("vant") && !root.find_child(is_element);
}

Problem problem_of(const std::string& why) { return {"cannot read the figure: " + why}; }

} // namespace

std::string unreadable_because(std::string_view document)
{
    if (document.size() > kMostAnswerBytes)
        return "it has more than " + std::to_string(kMostAnswerBytes >> 20U) + " MiB";
    if (document.find('\n') != document.npos)
        return "it has more than one line";
    if (std::count(document.begin(), document.end(), '<') > kMostTags ||
        std::count(document.begin(), document.end(), ' ') > kMostBlanks)
        return "it has more elements than a sketch";
    return {};
}

Result<std::vector<Stroke>> strokes_of_answer(std::string_view document, const Sheet& sheet,
                                              StrokeId first_id)
{
    if (document.ends_with('\n'))
        document.remove_suffix(1);
    if (const std::string why = unreadable_because(document); !why.empty())
        return problem_of(why);
    const std::optional<Affine> model_to_sheet = try_inverse(sheet.sheet_to_model);
    if (!model_to_sheet)
        return problem_of("the sheet has no place in the artwork");
    FigureReader reader;
    if (!reader.read_answer(std::string(document)))
        return problem_of("it was cut off, or is not written as a figure is");
    if (reader.figure.strokes.empty() && !is_empty_sketch(document))
        return problem_of("it holds no sketch");

    std::vector<Stroke> strokes;
    std::size_t number = 0; // of the shape, for people
    for (const StrokeInfo& info : reader.figure.strokes) {
        ++number;
        std::vector<Shape> parts;
        for (const PrimInfo* primitive : info.primitives) {
            const std::optional<Shape> part = shape_of(primitive, sheet.tolerance);
            if (!part)
                continue;
            parts.push_back(mapped(*part, *model_to_sheet));
            if (!is_within_reach(parts.back()))
                return problem_of("its shape " + std::to_string(number) + " reaches too far out");
        }
        if (parts.empty())
            continue;
        Stroke& stroke = strokes.emplace_back();
        stroke.id = first_id++;
        stroke.shape = joined(parts);
        stroke.kind = kind_of(stroke.shape);
    }
    return strokes;
}

} // namespace vnt::sketch
