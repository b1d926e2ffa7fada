#include "benchmarks/svg_twin.h"

#include <charconv>
#include <cmath>
#include <iterator>
#include <list>

namespace bench {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kDegrees = 180 / kPi;

// An ellipse as the radii and the turn of its axes.
struct Axes {
    double major, minor, turn;
    bool is_mirrored;
};

// Of the ellipse u cos t + v sin t. Source: the singular values of the matrix (u v).
Axes axes_of(double ux, double uy, double vx, double vy)
{
    const double half_sum = (ux * ux + uy * uy + vx * vx + vy * vy) / 2;
    const double half_difference = (ux * ux + vx * vx - uy * uy - vy * vy) / 2;
    const double mixed = ux * uy + vx * vy;
    const double root = std::hypot(half_difference, mixed);
    return {std::sqrt(half_sum + root), std::sqrt(std::fmax(half_sum - root, 0)),
            std::atan2(mixed, half_difference) / 2, ux * vy - uy * vx < 0};
}

class Writer {
public:
    std::string document(const vnt::FigPrimInfo& figure)
    {
        text_ +=
            R"(<svg xmlns="http://www.w3.org/2000/svg" width="1000" height="1000" viewBox="-2000 -2000 4000 4000">)"
            "\n";
        for (const vnt::StrokeInfo& stroke : figure.strokes) {
            text_ += R"(<path style="fill:none;stroke:#000000;stroke-width:1" d=")";
            for (const vnt::PrimInfo* primitive : stroke.primitives)
                add(*primitive);
            text_ += "\"/>\n";
        }
        text_ += "</svg>\n";
        return std::move(text_);
    }

private:
    void number(double value)
    {
        char buffer[32];
        text_.append(buffer,
                     std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 9).ptr);
        text_ += ' ';
    }

    void point(const char* command, const vnt::Point& at)
    {
        text_ += command;
        number(at.x);
        number(-at.y);
    }

    template <class Arc>
    void arc(const Arc& arc, double radius_x, double radius_y)
    {
        const vnt::Matrix& m = arc.posture;
        const Axes axes = axes_of(m.m00 * radius_x, m.m10 * radius_x, m.m01 * radius_y, m.m11 * radius_y);
        const double start = arc.is_arc ? arc.start : 0;
        const double end = arc.is_arc ? arc.end : 2 * kPi;
        const double middle = (start + end) / 2; // two halves: neither is more than half a turn
        point("M ", arc.getEvaluateAt(start));
        for (const double to : {middle, end}) {
            text_ += "A ";
            number(axes.major);
            number(axes.minor);
            number(-axes.turn * kDegrees);
            text_ += axes.is_mirrored ? "0 1 " : "0 0 ";
            point("", arc.getEvaluateAt(to));
        }
    }

    void free_curve(const std::list<vnt::Point>& points)
    {
        for (auto at = points.begin(); std::distance(at, points.end()) >= 4;) {
            point("M ", *at++);
            point("C ", *at++);
            point("", *at++);
            point("", *at++);
        }
    }

    void add(const vnt::PrimInfo& primitive)
    {
        if (const auto* line = dynamic_cast<const vnt::PrimL*>(&primitive)) {
            point("M ", line->start);
            point("L ", line->end);
        } else if (const auto* circle = dynamic_cast<const vnt::PrimC*>(&primitive)) {
            arc(*circle, circle->radius, circle->radius);
        } else if (const auto* ellipse = dynamic_cast<const vnt::PrimE*>(&primitive)) {
            arc(*ellipse, ellipse->major_radius, ellipse->minor_radius);
        } else if (const auto* curve = dynamic_cast<const vnt::PrimF*>(&primitive)) {
            free_curve(curve->points);
        }
    }

    std::string text_;
};

} // namespace

std::string svg_twin(const vnt::FigPrimInfo& figure) { return Writer().document(figure); }

} // namespace bench
