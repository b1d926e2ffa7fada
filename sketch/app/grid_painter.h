// Paints the sheet's grid: the fine lines faint, each so manieth plain, and fewer of them where they stand
// dense.
#pragma once

#include "sketch/core/sheet.h"

#include <QColor>
#include <QPainter>
#include <QTransform>

// Lines closer than this would be a grey. Painter's pixels.
constexpr double kLeastGridStep = 5;

// Every how manieth line of a family is painted, that are this many pixels apart: 1, or subdivisions times 1,
// 2, 5, 10, 20 and so on.
int gridStep(double pixelsApart, int subdivisions);

struct GridColours {
    QColor fine;
    QColor main;
};

// On the sheet only. screen: all that shows; within: the part that is painted now, to which the painter
// clips.
void paintGrid(QPainter& painter, const vnt::sketch::Sheet& sheet, const QTransform& sheetToWidget,
               const QRectF& screen, const QRectF& within, const GridColours& colours);
