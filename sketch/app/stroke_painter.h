// Paints strokes: ink as wide as the pen was pressed, shapes even; all ends and corners are round.
//
// Space:  what is painted is in the sheet; the map takes it to where the painter paints. Widths are the
//         painter's. The painter's own map scales evenly.
#pragma once

#include "sketch/app/line_coverage.h"
#include "sketch/app/stroke_art.h"

#include <QColor>
#include <QPainter>
#include <QTransform>

#include <vector>

struct StrokeLook {
    QColor ink;
    QColor shape;
    double width = 2; // of shapes, and of ink at full pressure
};

// Of ink at this pressure; a hand that hardly presses still leaves a line.
double widthAt(double pressure, double fullWidth);

// Two colours mixed: share 0 is the first, 1 the second.
QColor mixed(const QColor& first, const QColor& second, double share);

// within: what lies outside of this rectangle, which is where the painter paints, may be left out. Null: nothing.
// This holds for all that follow.
void paintStroke(QPainter& painter, const StrokeArt& art, const QTransform& map, const StrokeLook& look,
                 const QRectF& within = {});

// pressures: one for each place of the line.
void paintInk(QPainter& painter, const vnt::sketch::Path& line, const std::vector<float>& pressures,
              const QTransform& map, const QColor& colour, double width, const QRectF& within = {});

// Cubic segments of 4 points each.
void paintCurve(QPainter& painter, const vnt::sketch::Path& cubics, const QTransform& map,
                const QColor& colour, double width, const QRectF& within = {});

struct DashedPen {
    double width = 2;
    double dash = 8;
    double gap = 5;
};
void paintDashedCurve(QPainter& painter, const vnt::sketch::Path& cubics, const QTransform& map,
                      const QColor& colour, const DashedPen& pen, const QRectF& within = {});

// Ink by parts, in pixels of the painter's device: those that can be painted, the line, and what it covers.
QRect paintedPixels(const QPainter& painter, const QRectF& within = {});
std::vector<LinePoint> linePoints(const QPainter& painter, const vnt::sketch::Path& line,
                                  const std::vector<float>& pressures, const QTransform& map, double width);
void paintCoverage(QPainter& painter, const LineCoverage& coverage, const QColor& colour);
