// An answer from its first byte to its primitives: parser, search and mapping, without a socket. What the mapping
// gives is compared with what the tree says when it is asked from its end, as the last of several values holds.
#include "Source/markup/parser.h"
#include "Source/vntClientCom/vntClientCom.h"
#include "fuzz/figure_model.h"
#include "fuzz/fuzz.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

// Never destroyed: the end of a link closes descriptors that are not its own.
const vnt::ClientCom& mapping()
{
    static const auto* const link = new vnt::ClientCom;
    return *link;
}

using fuzz::require;
using fuzz::word_of;

bool same(double a, double b) { return word_of(a) == word_of(b); }

std::optional<double> attribute(const tagrec& node, const std::string& name)
{
    const auto found = std::find_if(node.attributes.rbegin(), node.attributes.rend(),
                                    [&](const auto& pair) { return pair.first == name; });
    return found == node.attributes.rend() ? std::nullopt : std::optional(mapping().toDouble(found->second));
}

// The last child of that name; null when there is none.
const tagrec* last_child(const tagrec& node, const std::string& name)
{
    const auto found = std::find_if(node.children.rbegin(), node.children.rend(),
                                    [&](const tagrec* child) { return child->tag == name; });
    return found == node.children.rend() ? nullptr : *found;
}

void require_point(const vnt::Point& point, const tagrec* node)
{
    const auto coordinate = [&](const char* name) {
        return node == nullptr ? 0.0 : attribute(*node, name).value_or(0.0);
    };
    require(same(point.x, coordinate("x")) && same(point.y, coordinate("y")) &&
                same(point.z, coordinate("z")),
            "a point");
}

void require_posture(const vnt::Matrix& posture, const tagrec* node)
{
    for (std::size_t i = 0; i < vnt::Matrix::kElements; ++i) {
        const std::string name = "m" + std::to_string(i / 4) + std::to_string(i % 4);
        const double identity = i / 4 == i % 4 ? 1.0 : 0.0;
        require(same(posture[i], node == nullptr ? identity : attribute(*node, name).value_or(identity)),
                "a posture");
    }
}

void require_number_text(double value, const tagrec& node, const char* name)
{
    const tagrec* const child = last_child(node, name);
    require(same(value, child == nullptr ? 0.0 : mapping().toDouble(child->text)), name);
}

double angle(const tagrec& node, const char* name)
{
    for (auto child = node.children.rbegin(); child != node.children.rend(); ++child) {
        if (const std::optional<double> value = attribute(**child, name))
            return *value;
    }
    return 0.0;
}

template <class Arc>
void require_arc(const Arc& arc, const tagrec& node, bool is_arc)
{
    require_point(arc.center, last_child(node, "center/"));
    require_posture(arc.posture, last_child(node, "posture/"));
    require(same(arc.start, angle(node, "start")) && same(arc.end, angle(node, "end")), "angles");
    require(arc.is_arc == is_arc, "an arc's flag");
}

void require_curve(const vnt::PrimF& curve, const tagrec& node)
{
    std::vector<const tagrec*> points;
    for (const tagrec* run : node.children) {
        for (const tagrec* point : run->children) {
            if (run->tag == "bezier_curve" && point->tag == "control_point/")
                points.push_back(point);
        }
    }
    require(curve.points.size() == points.size(), "the number of control points");
    auto point = points.begin();
    for (const vnt::Point& found : curve.points)
        require_point(found, *point++);
    require(curve.closed == (node.tag == "closed_free_curve"), "a closed curve's flag");
}

void require_primitive(const vnt::PrimInfo& primitive, const tagrec& node)
{
    if (node.tag == "line") {
        const auto& line = dynamic_cast<const vnt::PrimL&>(primitive);
        require_point(line.start, last_child(node, "start/"));
        require_point(line.end, last_child(node, "end/"));
    } else if (node.tag == "circle" || node.tag == "circular_arc") {
        const auto& circle = dynamic_cast<const vnt::PrimC&>(primitive);
        require_number_text(circle.radius, node, "radius");
        require_arc(circle, node, node.tag == "circular_arc");
    } else if (node.tag == "ellipse" || node.tag == "elliptic_arc") {
        const auto& ellipse = dynamic_cast<const vnt::PrimE&>(primitive);
        require_number_text(ellipse.major_radius, node, "major_radius");
        require_number_text(ellipse.minor_radius, node, "minor_radius");
        require_arc(ellipse, node, node.tag == "elliptic_arc");
    } else {
        require_curve(dynamic_cast<const vnt::PrimF&>(primitive), node);
    }
}

bool is_primitive(const std::string& name)
{
    static const char* const kNames[] = {"line",         "circle",          "circular_arc",     "ellipse",
                                         "elliptic_arc", "open_free_curve", "closed_free_curve"};
    return std::find(std::begin(kNames), std::end(kNames), name) != std::end(kNames);
}

void require_stroke(const vnt::StrokeInfo& stroke, const tagrec& shape)
{
    auto primitive = stroke.primitives.begin();
    for (const tagrec* child : shape.children) {
        if (!is_primitive(child->tag))
            continue;
        require(primitive != stroke.primitives.end(), "a primitive is missing");
        require_primitive(**primitive++, *child);
    }
    require(primitive == stroke.primitives.end(), "a primitive is too many");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    parser document;
    document.feed(reinterpret_cast<const char*>(data), size);
    const std::unique_ptr<tagrec> root(document.root);
    if (root == nullptr)
        return 0;
    // A refused document is never mapped in an exchange; its tree is as good a one as any other here.
    std::vector<tagrec*> shapes;
    root->find(shapes, "shape");
    vnt::FigPrimInfo figure;
    for (const tagrec* shape : shapes) {
        const std::unique_ptr<vnt::StrokeInfo> stroke(mapping().parseStroke(*shape));
        require_stroke(*stroke, *shape);
        figure.strokes.push_back(*stroke);
    }
    require(fuzz::Flattened(figure).finite, "every number of an answer is finite");
    fuzz::require_copies_and_forms(figure);
    return 0;
}
