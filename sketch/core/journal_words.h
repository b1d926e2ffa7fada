// The words of a journal that its writer and its reader share.
#pragma once

#include "sketch/core/ink.h"
#include "sketch/core/reading.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string_view>

namespace vnt::sketch {

constexpr std::string_view kJournalHead = "vant-sketch-journal 1";

// Between changes that are made together; no word has it in it.
constexpr char kTogether = ';';

// Words of files that are kept: they stay, whatever people are shown (name_of).
struct KindWord {
    Kind kind;
    std::string_view word;
};
constexpr KindWord kKindWords[] = {
    {Kind::line,          "line"         },
    {Kind::polyline,      "polyline"     },
    {Kind::triangle,      "triangle"     },
    {Kind::square,        "square"       },
    {Kind::rectangle,     "rectangle"    },
    {Kind::quadrilateral, "quadrilateral"},
    {Kind::polygon,       "polygon"      },
    {Kind::circle,        "circle"       },
    {Kind::arc,           "arc"          },
    {Kind::ellipse,       "ellipse"      },
    {Kind::elliptic_arc,  "elliptic-arc" },
    {Kind::free_curve,    "free-curve"   },
    {Kind::ink,           "ink"          },
};

inline bool are_finite(std::initializer_list<double> numbers)
{
    return std::all_of(numbers.begin(), numbers.end(), [](double number) { return std::isfinite(number); });
}

inline bool are_near(const Path& path)
{
    return std::all_of(path.begin(), path.end(), [](Vec2 p) {
        return std::abs(p.x) <= kFarthest && std::abs(p.y) <= kFarthest; // false for NaN
    });
}

// Whether a journal may hold it: no further than kFarthest (ink.h) from the origin, and drawing something.
inline bool is_kept(const Straight& shape) { return shape.corners.size() >= 2 && are_near(shape.corners); }
inline bool is_kept(const Curve& shape)
{
    return !shape.points.empty() && shape.points.size() % 4 == 0 && are_near(shape.points);
}
inline bool is_kept(const Round& shape)
{
    const Ellipse& e = shape.ellipse;
    return are_near({
               e.centre, {e.major, e.minor}
    }) &&
           are_finite({e.rotation, shape.start, shape.sweep}) && e.major > 0 && e.minor > 0;
}
inline bool is_kept(std::monostate) { return true; }

} // namespace vnt::sketch
