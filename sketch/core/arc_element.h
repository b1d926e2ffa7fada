// A circle, an ellipse or an arc as the figure has it, and where it is as good as the shape that it stands
// for.
//
// Space:  model space; an element's own frame has its origin at the centre and is turned by its posture.
// Units:  angles in radians from local x towards local y: polar angles, on an ellipse too.
// Errors: nothing throws or reports.
#pragma once

#include "sketch/core/affine.h"
#include "sketch/core/answer_numbers.h"
#include "sketch/core/reading.h"
#include "sketch/core/sheet.h"

#include <optional>

namespace vnt::sketch {

struct ArcElement {
    bool is_whole = false;
    bool is_circle = false;
    Vec2 centre;
    double radius_x = 0; // both are the radius of a circle
    double radius_y = 0;
    double start = 0;
    double end = 0;
    // Upper left of the posture. An arc that runs the other way is turned over, about its local x axis, so
    // that its angles run upward and it still begins where it began.
    Affine posture;
    bool is_turned_over = false;
};

// model: the shape in model space.
ArcElement element_of(const Round& model, const Decimals& decimals);

// Whether the path that the plug-in makes of the element may stand for the shape on the sheet.
//
// Accuracy: what it lies off the shape by is no more than kMostOff, and its ends no more than kMostGap.
// Source:   whole figures are four quarters, which lie outside by kQuarterOff of their radius; of arcs the
//           plug-in's own cuts are looked at.
bool is_drawn_well(const ArcElement& element, const Round& shape, const Sheet& sheet,
                   const Affine& model_to_sheet);

// The shape in model space of what an element says; none of one that draws nothing.
//
// radius_x, radius_y: 0 or below 0 as the plug-in takes them. Flat ones give a Curve.
// start, end:         more than a whole turn is a whole turn.
// posture:            as in ArcElement, but any.
std::optional<Shape> shape_of(Vec2 centre, double radius_x, double radius_y, double start, double end,
                              const Affine& posture);

constexpr double kQuarterOff = 2.73e-4;
constexpr double kMostOff = 0.4; // sheet pixels
constexpr double kMostGap = 0.1; // sheet pixels, along the shape

} // namespace vnt::sketch
