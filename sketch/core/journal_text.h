// The changes to a sketch as lines of text, and the sketch that such lines make.
//
// Shapes: a line a change: "insert INDEX STROKE", "take ID", "replace STROKE", "clear", "sheet ...", "draw ...",
//         "lift", in words with one blank between them; or several with ";" between them, that are there all or
//         not at all however the writing ends. Numbers have the fewest digits that give the same double again.
//         The first line names the format and its version.
//           STROKE   ID KIND SHAPE ink COUNT (x y time pressure)... readings COUNT (KIND score SHAPE)...
//           SHAPE    none | straight open|closed COUNT (x y)... | curve open|closed COUNT (x y)...
//                    | round centre.x centre.y major minor rotation start sweep
//           sheet    width height a b c d e f tolerance none | grid subdivisions a b c d e f [placed]
//                    [map a b c d e f]
//           draw     COUNT (x y time pressure)... rest COUNT (x y time pressure)...
//         A sheet with a map is another view: every stroke goes where the map takes it. On one that is placed the
//         strokes have their place in the artwork.
//         What is drawn is of a stroke that is in progress: more of its ink, and the rest that this would end
//         with (instead of the rest before). A lift ends it: it is inserted in the same line, or was cancelled.
//         Where the text ends before that, it is a stroke of ink above all others.
//         The other readings stand in it as they are, so that Tab offers the same ones after a crash.
// Errors: a change that is malformed, or does not fit what stands before it, is passed over: what came before
//         stands, and what comes behind is read. The last line without a line feed was cut off, and is passed
//         over as well. Behind a change that was passed over, a stroke for a place above the top comes on top.
//         Counts that the text has no room for are malformed: memory grows with the text, not with what it
//         says.
#pragma once

#include "sketch/core/sheet.h"
#include "sketch/core/sketch_document.h"

#include <string>
#include <string_view>

namespace vnt::sketch {

// Each with its line feed.
//
// All numbers in a journal but the sheet's tolerance are finite: points of the ink that are not are left out, and
// a shape that is not, that goes further than kFarthest (ink.h) from the origin, or that draws nothing (of fewer
// than two corners, of no size, a curve that is not made of fours), is written as none, a sheet that is not finite as
// the one of no editor, such a grid not at all.
std::string journal_head();
std::string journal_insert(std::size_t index, const Stroke& stroke);
std::string journal_take(StrokeId id);
std::string journal_replace(const Stroke& stroke);
std::string journal_clear();
// map: of every stroke onto the sheet; one that cannot be inverted is left out.
std::string journal_sheet(const Sheet& sheet, const Affine& map = {}, bool placed = false);
std::string journal_draw(const Ink& more, const Ink& rest);
std::string journal_lift();
// The lines of several changes as the one line of them all.
std::string journal_together(std::string lines);

struct JournalReading {
    SketchDocument document;
    Sheet sheet;
    bool placed = false;     // as the last sheet says
    StrokeId unfinished = 0; // the topmost stroke, when it was still being drawn; else 0
    bool whole = true;       // false: something could not be read, be it a last line that was cut off
    bool known = false;      // the first line names a format that this program reads
    std::size_t skipped = 0; // changes in whole lines that were passed over
};
JournalReading read_journal(std::string_view text);

} // namespace vnt::sketch
