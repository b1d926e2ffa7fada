// The smallest user of the link: tells a sketch application of a view, waits for its figure, prints it as a
// table.
//
// usage: smallest_exchange [PORT]
#include "Source/vntClientCom/vntClientCom.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

std::string text(const vnt::Point& p)
{
    char buffer[100];
    std::snprintf(buffer, sizeof buffer, "(%g, %g)", p.x, p.y);
    return buffer;
}

std::string angles(bool is_arc, double start, double end)
{
    char buffer[100];
    std::snprintf(buffer, sizeof buffer, "%g to %g%s", start, end, is_arc ? "" : ", whole");
    return buffer;
}

void print_row(int stroke, const char* kind, const std::string& place, const std::string& size)
{
    std::printf("%6d  %-14s  %-22s  %s\n", stroke, kind, place.c_str(), size.c_str());
}

std::string number(double value)
{
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%g", value);
    return buffer;
}

void print(int stroke, const vnt::PrimInfo* primitive)
{
    if (const auto* line = dynamic_cast<const vnt::PrimL*>(primitive))
        print_row(stroke, "line", text(line->start), "to " + text(line->end));
    if (const auto* circle = dynamic_cast<const vnt::PrimC*>(primitive))
        print_row(stroke, circle->is_arc ? "circular arc" : "circle", text(circle->center),
                  "radius " + number(circle->radius) + ", " +
                      angles(circle->is_arc, circle->start, circle->end));
    if (const auto* ellipse = dynamic_cast<const vnt::PrimE*>(primitive))
        print_row(stroke, ellipse->is_arc ? "elliptic arc" : "ellipse", text(ellipse->center),
                  "radii " + number(ellipse->major_radius) + " and " + number(ellipse->minor_radius) + ", " +
                      angles(ellipse->is_arc, ellipse->start, ellipse->end));
    if (const auto* curve = dynamic_cast<const vnt::PrimF*>(primitive))
        print_row(stroke, curve->closed ? "closed curve" : "open curve",
                  curve->points.empty() ? "" : text(curve->points.front()),
                  std::to_string(curve->points.size()) + " control points");
}

} // namespace

int main(int argc, char** argv)
{
    // The link closes descriptor 0 when it ends; nothing precious may be there.
    if (close(0); open("/dev/null", O_RDONLY) != 0)
        return EXIT_FAILURE;
    const auto port = static_cast<unsigned int>(argc > 1 ? std::atoi(argv[1]) : 4910);

    const vnt::ViewportInfo viewport(0, 22, 1024, 768);
    vnt::ModelSpaceInfo model_space{vnt::Matrix(), vnt::Matrix()};
    model_space.viewport_space_to_model_space_mapping_matrix.m11 = -1; // the window's y runs down
    model_space.viewport_space_to_model_space_mapping_matrix.m13 = 768;
    model_space.unit_grid_space_to_model_space_mapping_matrix.m00 = 50;
    model_space.unit_grid_space_to_model_space_mapping_matrix.m11 = 50;
    model_space.derivational_scale_factor = 1;

    vnt::ClientCom link;
    const vnt::FigPrimInfo* figure = link.summonVANT(viewport, model_space, vnt::COM_XML, port, "127.0.0.1");
    if (figure == nullptr) {
        std::fprintf(
            stderr,
            "smallest_exchange: no figure from 127.0.0.1:%u; start a sketch application there first, "
            "vant-peer for example\n",
            port);
        return EXIT_FAILURE;
    }
    std::printf("%6s  %-14s  %-22s  %s\n", "stroke", "primitive", "starts or centre at", "extent");
    int stroke = 0;
    for (const vnt::StrokeInfo& strokes : figure->strokes) {
        ++stroke;
        for (const vnt::PrimInfo* primitive : strokes.primitives)
            print(stroke, primitive);
    }
    std::printf("%d strokes\n", stroke);
    return EXIT_SUCCESS;
}
