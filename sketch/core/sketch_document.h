// The strokes of a sketch, the lowest first.
//
// Errors: what is asked of a stroke that is not there is none, or false; nothing throws.
#pragma once

#include "sketch/core/stroke.h"

#include <cstddef>
#include <optional>
#include <unordered_set>
#include <vector>

namespace vnt::sketch {

// No stroke has a larger id, so that there is always a new one.
constexpr StrokeId kLargestStrokeId = StrokeId{1} << 62U;

// Searches run from the top, where one draws and undoes; whoever knows where a stroke probably is, and says so,
// saves the search. Whether an id is there at all is known without one.
class SketchDocument {
public:
    const std::vector<StrokePtr>& strokes() const { return strokes_; }
    const std::vector<StrokeId>& ids() const { return ids_; } // of each of them
    // An id that no stroke of this document has had.
    StrokeId new_id() { return ++last_id_; }
    bool has(StrokeId id) const { return present_.contains(id); }
    StrokePtr find(StrokeId id) const; // null when there is none
    std::optional<std::size_t> index_of(StrokeId id, std::size_t probably = kTop) const;

    // At the index, or on top where that is past the end. False when its id is there already or too large, or
    // it is null.
    bool insert(std::size_t index, StrokePtr stroke);
    // The stroke that was there, null when there was none.
    StrokePtr take(StrokeId id, std::size_t probably = kTop);
    // In the place of the one with the same id. False when there is none, or it is null.
    bool replace(StrokePtr stroke, std::size_t probably = kTop);
    // Ids that were here are not given again after it either.
    void clear();

private:
    static constexpr std::size_t kTop = static_cast<std::size_t>(-1);

    std::vector<StrokePtr> strokes_;
    // Of strokes_: side by side they are looked through without going to the strokes.
    std::vector<StrokeId> ids_;
    std::unordered_set<StrokeId> present_;
    StrokeId last_id_ = 0; // the largest id that was ever here, or was given
};

} // namespace vnt::sketch
