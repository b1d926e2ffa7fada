// A stroke of a sketch: the ink as it was drawn, and what it is taken for now.
//
// Space:  the sheet.
// Owner:  strokes are never changed once they are made: a document, its undo steps and its journal share them.
#pragma once

#include "sketch/core/ink.h"
#include "sketch/core/reading.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace vnt::sketch {

using StrokeId = std::uint64_t; // unique in a sketch, and not used again

struct Stroke {
    StrokeId id = 0;
    Ink ink;                       // empty for what was not drawn here: opened, or duplicated from such
    std::vector<Reading> readings; // the other readings that Tab offers, best first; may be empty
    Kind kind = Kind::ink;
    Shape shape; // monostate: it is its ink
};

using StrokePtr = std::shared_ptr<const Stroke>;

} // namespace vnt::sketch
