// Paints ink that grows while it is drawn: what has been painted of it is kept, so that a frame of a long stroke
// takes no longer than one of a short one.
#pragma once

#include "sketch/app/line_coverage.h"
#include "sketch/core/ink_line.h"

#include <QColor>
#include <QPainter>
#include <QTransform>

#include <cstddef>

class DrawnInk {
public:
    // To the pixel what paintInk (stroke_painter.h) paints of all of it.
    //
    // ink:    as the last time, with points added to its end.
    // rest:   what follows it for now, and may be other points the next time.
    // width:  of the line at full pressure.
    // within: what lies outside of this rectangle, which is where the painter paints, may be left out.
    void paint(QPainter& painter, const vnt::sketch::Ink& ink, const vnt::sketch::Ink& rest,
               const QTransform& map, const QColor& colour, double width, const QRectF& within);

private:
    void keep(const QPainter& painter, const vnt::sketch::Ink& ink, const QTransform& map, double width);

    LineCoverage m_kept;     // on all pixels that can be painted
    std::size_t m_count = 0; // points of the ink up to which the line is kept
    QTransform m_toDevice;
    double m_width = 0;
};
