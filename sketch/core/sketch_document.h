// The strokes of a sketch, the lowest first.
//
// Errors: what is asked of a stroke that is not there is none, or false; nothing throws.
#pragma once

#include "sketch/core/stroke.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace vnt::sketch {

// No stroke has a larger id, so that there is always a new one.
constexpr StrokeId kLargestStrokeId = StrokeId{1} << 62U;

// Searches run from the top, where one draws and undoes.
class SketchDocument {
public:
    const std::vector<StrokePtr>& strokes() const { return strokes_; }
    // An id that no stroke of this document has had.
    StrokeId new_id() { return ++last_id_; }
    StrokePtr find(StrokeId id) const; // null when there is none
    std::optional<std::size_t> index_of(StrokeId id) const;

    // At the index, or on top where that is past the end. False when its id is there already or too large, or
    // it is null.
    bool insert(std::size_t index, StrokePtr stroke);
    // The stroke that was there, null when there was none.
    StrokePtr take(StrokeId id);
    // In the place of the one with the same id. False when there is none, or it is null.
    bool replace(StrokePtr stroke);
    // Ids that were here are not given again after it either.
    void clear();

private:
    std::vector<StrokePtr> strokes_;
    std::vector<StrokeId>
        ids_;              // of strokes_: side by side they are looked through without going to the strokes
    StrokeId last_id_ = 0; // the largest id that was ever here, or was given
};

} // namespace vnt::sketch
