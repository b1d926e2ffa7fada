// The markers of places that something snaps to: a shape a kind, so that they can be told without their
// colour.
//
// Space:  widget pixels.
#pragma once

#include "sketch/app/canvas_colours.h"
#include "sketch/core/snapping.h"

#include <QPainter>

QRectF snapMarkBox(QPointF at);

// A square on an end, a diamond on a corner, a circle about a centre, a cross on an intersection, a plus on a
// grid crossing, a wedge where an angle is even.
void paintSnapMark(QPainter& painter, QPointF at, vnt::sketch::SnapKind kind, const CanvasColours& colours);
