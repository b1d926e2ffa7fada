#include "sketch/app/drawn_ink.h"

#include "sketch/app/stroke_painter.h"

#include <algorithm>

using vnt::sketch::Ink;
using vnt::sketch::InkLine;
using vnt::sketch::kAroundPart;

namespace {

// Points that are kept at a time; a short stroke is painted whole.
constexpr std::size_t kPart = 128;

} // namespace

void DrawnInk::keep(const QPainter& painter, const Ink& ink, const QTransform& map, double width)
{
    const QTransform toDevice = map * painter.deviceTransform();
    const QRect pixels = paintedPixels(painter);
    if (m_count > ink.size() || toDevice != m_toDevice || width != m_width || pixels != m_kept.pixels()) {
        m_kept.reset(pixels);
        m_count = 0;
        m_toDevice = toDevice;
        m_width = width;
    }
    for (; m_count + kPart + kAroundPart <= ink.size(); m_count += kPart) {
        const InkLine part = vnt::sketch::ink_line_part(ink, m_count, m_count + kPart);
        const std::vector<LinePoint> points = linePoints(painter, part.places, part.pressures, map, width);
        m_kept.add(points.data(), points.size());
    }
}

void DrawnInk::paint(QPainter& painter, const Ink& ink, const Ink& rest, const QTransform& map,
                     const QColor& colour, double width, const QRectF& within)
{
    if (ink.size() >= kPart + kAroundPart)
        keep(painter, ink, map, width);
    else
        *this = {};
    const std::size_t from = m_count - std::min(m_count, kAroundPart);
    Ink end(ink.begin() + static_cast<std::ptrdiff_t>(from), ink.end());
    end.insert(end.end(), rest.begin(), rest.end());
    const InkLine line = vnt::sketch::ink_line_part(end, m_count - from, end.size());
    const std::vector<LinePoint> points = linePoints(painter, line.places, line.pressures, map, width);
    const QRect pixels = paintedPixels(painter, within);
    LineCoverage coverage = m_count > 0 ? m_kept.part(pixels) : LineCoverage(pixels);
    coverage.add(points.data(), points.size());
    paintCoverage(painter, coverage, colour);
}
