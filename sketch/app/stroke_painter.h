// Paints strokes: ink as wide as the pen was pressed, shapes even.
//
// Space:  what is painted is in the sheet; the map takes it to where the painter paints. Widths are the
//         painter's.
#pragma once

#include "sketch/app/stroke_art.h"

#include <QColor>
#include <QPainter>
#include <QPen>
#include <QTransform>

struct StrokeLook {
    QColor ink;
    QColor shape;
    double width = 2; // of shapes, and of ink at full pressure
};

// Of ink at this pressure; a hand that hardly presses still leaves a line.
double widthAt(double pressure, double fullWidth);

// Two colours mixed: share 0 is the first, 1 the second.
QColor mixed(const QColor& first, const QColor& second, double share);

QPen roundPen(const QColor& colour, double width);

void paintStroke(QPainter& painter, const StrokeArt& art, const QTransform& map, const StrokeLook& look);

// pressures: one for each place of the line.
// within:    only the pieces that can show in this rectangle, which is where the painter paints. Null: all.
void paintInk(QPainter& painter, const vnt::sketch::Path& line, const std::vector<float>& pressures,
              const QTransform& map, const QColor& colour, double width, const QRectF& within = {});
