// The figure that the editor gets for a sketch, and sketches that are kept as such figures.
//
// Space:  shapes are on the sheet, the figure in the sheet's model space.
// Shapes: docs/protocol.md has the document. Each stroke is one `shape` element; a curve of more segments
//         than one path of the plug-in can have is several.
// Errors: reading gives a sentence; writing cannot fail: what is not finite is left out.
#pragma once

#include "sketch/core/request.h"
#include "sketch/core/stroke.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vnt::sketch {

// The cubics_of a stroke with kAnswerTolerance, as somebody has them already: for ink they take longer than all
// else.
using CubicsOf = std::function<Path(const StrokePtr& stroke)>;

// The document, without its line feed; "<vant></vant>" of no strokes.
//
// Accuracy: the paths that the plug-in makes of it lie within half a sheet pixel of the strokes' cubics_of
//           with kAnswerTolerance. A line, a circle, an ellipse or an arc is sent as such where the plug-in
//           would draw it so well, and as a free curve in groups of four where it would not: small arcs, arcs
//           on a view whose tolerance does not bound them, whole figures too large for four quarters.
std::string answer_of(const std::vector<StrokePtr>& strokes, const Sheet& sheet, const CubicsOf& cubics = {});

// The strokes of a document, one for each `shape` that draws something, on the sheet; without ink and with
// ids from first_id on. They are what the plug-in would draw: several primitives are one path, with a
// straight segment between those that do not meet; straight where all of it is, else a free curve.
//
// document: its one line, as on the wire; more than kMostAnswerBytes is refused. So is what reaches further
//           out than ink may, and what has neither a `shape` nor is an empty `vant`: a document of something
//           else, whatever the link makes of one.
Result<std::vector<Stroke>> strokes_of_answer(std::string_view document, const Sheet& sheet,
                                              StrokeId first_id);

// Sheet pixels; that of the curves that are sent for what is not straight.
constexpr double kAnswerTolerance = 0.25;

// Without the line feed. The largest sketch that has not too many elements has some 67 bytes a point.
constexpr std::size_t kMostAnswerBytes = 128U << 20U;

// Why strokes_of_answer would not begin to read the document; empty when it would.
std::string unreadable_because(std::string_view document);

} // namespace vnt::sketch
