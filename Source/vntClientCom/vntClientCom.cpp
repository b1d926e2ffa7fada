#include "Source/vntClientCom/vntClientCom.h"

#include "Source/vntClientCom/number_text.h"

#include <algorithm>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <locale>
#include <memory>
#include <sstream>
#include <utility>
#include <vector>

namespace vnt {
namespace {

const char* const kElementNames[Matrix::kElements] = {"m00", "m01", "m02", "m03", "m10", "m11", "m12", "m13",
                                                      "m20", "m21", "m22", "m23", "m30", "m31", "m32", "m33"};

std::stringstream wire_stream()
{
    std::stringstream stream;
    stream.imbue(std::locale::classic());
    return stream;
}

void write_matrix_attributes(std::ostream& out, const Matrix& matrix)
{
    for (std::size_t index = 0; index < Matrix::kElements; ++index)
        out << ' ' << kElementNames[index] << "=\"" << matrix[index] << '"';
}

std::string cad_information_document(const ViewportInfo& viewport, const ModelSpaceInfo& modelspace)
{
    std::stringstream out = wire_stream();
    out << std::setprecision(16);
    out << R"(<?xml version="1.0" encoding="UTF-8" standalone="no"?>)"
        << "<vant>"
        << "<viewport_information"
        << " height=\"" << viewport.height << "\" width=\"" << viewport.width << "\" x=\"" << viewport.x
        << "\" y=\"" << viewport.y << "\"/>"
        << "<model_space_information>"
        << "<viewport_space_to_model_space_mapping_matrix";
    write_matrix_attributes(out, modelspace.viewport_space_to_model_space_mapping_matrix);
    out << "/>"
        << "<snapping_information>"
        << "<unit_grid_space_to_model_space_mapping_matrix";
    write_matrix_attributes(out, modelspace.unit_grid_space_to_model_space_mapping_matrix);
    out << "/>"
        << "<derivational_scale_factor>" << modelspace.derivational_scale_factor
        << "</derivational_scale_factor>"
        << "</snapping_information>"
        << "</model_space_information>"
        << "</vant>";
    return out.str();
}

// Frees the tree of a parser on every way out.
class TreeOwner {
public:
    explicit TreeOwner(parser& p) : parser_(p) {}
    TreeOwner(const TreeOwner&) = delete;
    TreeOwner& operator=(const TreeOwner&) = delete;
    ~TreeOwner() { delete parser_.root; }

private:
    parser& parser_;
};

bool problem(int line, const char* message)
{
    // One text: the host's settings of the stream do not change the number, nor do others' words come between.
    std::cerr << "vntClientCom( " + std::to_string(line) + " ) : " + message << std::endl;
    return false;
}

// What circles and ellipses have in common; read_radius takes what a child says of their radii.
template <class Arc, class ReadRadius>
void read_arc(const ClientCom& link, const tagrec& node, Arc& arc, ReadRadius read_radius)
{
    for (const tagrec* child : node.children) {
        if (child->tag == "center/")
            arc.center = link.parsePoint(*child);
        read_radius(*child);
        for (const auto& [name, value] : child->attributes) {
            if (name == "start")
                arc.start = link.toDouble(value);
            else if (name == "end")
                arc.end = link.toDouble(value);
        }
        if (child->tag == "posture/")
            arc.posture = link.parseMatrix(*child);
    }
}

constexpr Point kOrigin(0.0, 0.0, 0.0);

} // namespace

FigPrimInfo* ClientCom::summonVANT(const ViewportInfo& viewport, const ModelSpaceInfo& modelspace,
                                   ComType type, unsigned int port, const char* address)
{
    if (connect_server(port, address) != 1)
        return nullptr;
    com_type = type;
    if (!send_CAD_info(viewport, modelspace))
        return nullptr;
    return recieve_figure_primitive_info() == 1 ? &figure : nullptr;
}

bool ClientCom::send_CAD_info(const ViewportInfo& viewport, const ModelSpaceInfo& modelspace)
{
    std::stringstream first = wire_stream();
    std::stringstream second = wire_stream();
    switch (com_type) {
    case COM_TEXT:
        first << viewport;
        *this << first.str();
        second << modelspace;
        *this << second.str();
        break;
    case COM_BINARY:
        viewport.serialize(first);
        send_data(first);
        modelspace.serialize(second);
        send_data(second);
        break;
    default: *this << cad_information_document(viewport, modelspace);
    }
    return true;
}

int ClientCom::recieve_figure_primitive_info()
{
    std::stringstream answer = wire_stream();
    switch (com_type) {
    case COM_TEXT:
        *this >> answer;
        answer >> figure;
        break;
    case COM_BINARY:
        if (recieve_data(answer) == 0)
            return 0;
        figure.deserialize(answer);
        break;
    default: {
        *this >> answer;
        std::string line = answer.str();
        answer = std::stringstream(); // one copy of a large answer less beside its tree
        if (!read_answer(std::move(line)))
            return 0;
    }
    }
    close_socket(data_socket);
    return 1;
}

bool ClientCom::read_answer(std::string line)
{
    parser document;
    const TreeOwner owner(document);
    document.feed(line.data(), line.size());
    line = std::string(); // its memory is free before the figure is built
    if (!checkData(document))
        return false;
    std::vector<tagrec*> shapes;
    document.root->find(shapes, "shape");
    figure.strokes.clear();
    for (const tagrec* shape : shapes) {
        const std::unique_ptr<StrokeInfo> stroke(parseStroke(*shape));
        figure.strokes.emplace_back().primitives.swap(stroke->primitives);
    }
    return true;
}

bool ClientCom::checkData(const parser& p) const
{
    if (p.checkerror())
        return problem(194, "invalid date");
    if (p.acceptable() != 1)
        return problem(203, "can't accept");
    if (p.acceptable() != 1)
        return problem(212, "root is null");
    return true;
}

StrokeInfo* ClientCom::parseStroke(const tagrec& shape) const
{
    auto stroke = std::make_unique<StrokeInfo>();
    for (const tagrec* child : shape.children) {
        const std::string& name = child->tag;
        std::unique_ptr<PrimInfo> primitive;
        if (name == "line")
            primitive.reset(parseLine(*child));
        else if (name == "circle" || name == "circular_arc")
            primitive.reset(parseCircle(*child));
        else if (name == "ellipse" || name == "elliptic_arc")
            primitive.reset(parseEllipse(*child));
        else if (name == "open_free_curve" || name == "closed_free_curve")
            primitive.reset(parseFreeCurve(*child));
        if (primitive != nullptr) {
            stroke->primitives.push_back(nullptr); // first: a throwing push_back must not leak the primitive
            stroke->primitives.back() = primitive.release();
        }
    }
    return stroke.release();
}

PrimL* ClientCom::parseLine(const tagrec& node) const
{
    auto line = std::make_unique<PrimL>(kOrigin, kOrigin);
    for (const tagrec* child : node.children) {
        if (child->tag == "start/")
            line->start = parsePoint(*child);
        if (child->tag == "end/")
            line->end = parsePoint(*child);
    }
    return line.release();
}

PrimC* ClientCom::parseCircle(const tagrec& node) const
{
    auto circle = std::make_unique<PrimC>(kOrigin, 0.0, 0.0, 0.0, false, Matrix());
    read_arc(*this, node, *circle, [&](const tagrec& child) {
        if (child.tag == "radius")
            circle->radius = toDouble(child.text);
    });
    circle->is_arc = node.tag == "circular_arc";
    return circle.release();
}

PrimE* ClientCom::parseEllipse(const tagrec& node) const
{
    auto ellipse = std::make_unique<PrimE>(kOrigin, 0.0, 0.0, 0.0, 0.0, false, Matrix());
    read_arc(*this, node, *ellipse, [&](const tagrec& child) {
        if (child.tag == "major_radius")
            ellipse->major_radius = toDouble(child.text);
        if (child.tag == "minor_radius")
            ellipse->minor_radius = toDouble(child.text);
    });
    ellipse->is_arc = node.tag == "elliptic_arc";
    return ellipse.release();
}

PrimF* ClientCom::parseFreeCurve(const tagrec& node) const
{
    auto curve = std::make_unique<PrimF>(std::list<Point>(), false);
    for (const tagrec* run : node.children) {
        if (run->tag != "bezier_curve")
            continue;
        for (const tagrec* point : run->children) {
            if (point->tag == "control_point/")
                curve->points.push_back(parsePoint(*point));
        }
    }
    curve->closed = node.tag == "closed_free_curve";
    return curve.release();
}

Point ClientCom::parsePoint(const tagrec& node) const
{
    Point point(0.0, 0.0, 0.0);
    for (const auto& [name, value] : node.attributes) {
        if (name == "x")
            point.x = toDouble(value);
        else if (name == "y")
            point.y = toDouble(value);
        else if (name == "z")
            point.z = toDouble(value);
    }
    return point;
}

Matrix ClientCom::parseMatrix(const tagrec& node) const
{
    Matrix matrix;
    for (const auto& [name, value] : node.attributes) {
        const auto* const found = std::find(std::begin(kElementNames), std::end(kElementNames), name);
        if (found != std::end(kElementNames))
            matrix[static_cast<std::size_t>(found - kElementNames)] = toDouble(value);
    }
    return matrix;
}

double ClientCom::toDouble(const std::string& text) const { return number_of_text(text); }

} // namespace vnt
