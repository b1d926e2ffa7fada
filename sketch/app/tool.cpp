#include "sketch/app/tool.h"

#include <algorithm>

using vnt::sketch::Ink;
using vnt::sketch::Kind;
using vnt::sketch::Reading;
using vnt::sketch::RecognitionSettings;

namespace {

// In the order in which they are offered; of polygons the likeliest is first.
std::vector<Kind> kindsOf(Tool tool)
{
    switch (tool) {
    case Tool::line: return {Kind::line};
    case Tool::polyline: return {Kind::polyline};
    case Tool::triangle: return {Kind::triangle};
    case Tool::rectangle: return {Kind::rectangle, Kind::square};
    case Tool::polygon:
        return {Kind::polygon, Kind::triangle, Kind::quadrilateral, Kind::rectangle, Kind::square};
    case Tool::circle: return {Kind::circle};
    case Tool::arc: return {Kind::arc, Kind::elliptic_arc};
    case Tool::ellipse: return {Kind::ellipse};
    case Tool::ellipticArc: return {Kind::elliptic_arc, Kind::arc};
    case Tool::freeCurve: return {Kind::free_curve};
    case Tool::pen:
    case Tool::eraser:
    case Tool::select:
    case Tool::hand: break;
    }
    return {};
}

} // namespace

bool draws(Tool tool) { return tool == Tool::pen || forcesReading(tool); }

bool forcesReading(Tool tool) { return !kindsOf(tool).empty(); }

std::vector<Reading> toolReadings(Tool tool, const Ink& ink, const RecognitionSettings& settings)
{
    if (!forcesReading(tool))
        return vnt::sketch::recognise(ink, settings);
    const std::vector<Kind> kinds = kindsOf(tool);
    RecognitionSettings every = settings;
    every.least_size_px = 0;
    std::vector<Reading> readings = vnt::sketch::recognise(ink, every);
    const auto rank = [&](const Reading& reading) {
        return reading.kind == Kind::ink ? kinds.end() : std::find(kinds.begin(), kinds.end(), reading.kind);
    };
    std::erase_if(readings, [&](const Reading& reading) {
        return reading.kind != Kind::ink && rank(reading) == kinds.end();
    });
    if (tool != Tool::polygon)
        std::stable_sort(readings.begin(), readings.end(),
                         [&](const Reading& a, const Reading& b) { return rank(a) < rank(b); });
    return readings;
}
