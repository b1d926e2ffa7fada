#include "sketch/core/sketch_document.h"

#include <algorithm>
#include <utility>

namespace vnt::sketch {

std::optional<std::size_t> SketchDocument::index_of(StrokeId id, std::size_t probably) const
{
    if (probably < ids_.size() && ids_[probably] == id)
        return probably;
    if (!present_.contains(id))
        return std::nullopt;
    const auto found = std::find(ids_.rbegin(), ids_.rend(), id);
    return static_cast<std::size_t>(ids_.rend() - found) - 1;
}

StrokePtr SketchDocument::find(StrokeId id) const
{
    const std::optional<std::size_t> index = index_of(id);
    return index ? strokes_[*index] : nullptr;
}

bool SketchDocument::insert(std::size_t index, StrokePtr stroke)
{
    if (!stroke || stroke->id > kLargestStrokeId || !present_.insert(stroke->id).second)
        return false;
    const auto place = static_cast<std::ptrdiff_t>(std::min(index, strokes_.size()));
    last_id_ = std::max(last_id_, stroke->id);
    ids_.insert(ids_.begin() + place, stroke->id);
    strokes_.insert(strokes_.begin() + place, std::move(stroke));
    return true;
}

StrokePtr SketchDocument::take(StrokeId id, std::size_t probably)
{
    const std::optional<std::size_t> index = index_of(id, probably);
    if (!index)
        return nullptr;
    const auto place = static_cast<std::ptrdiff_t>(*index);
    StrokePtr stroke = std::move(strokes_[*index]);
    strokes_.erase(strokes_.begin() + place);
    ids_.erase(ids_.begin() + place);
    present_.erase(id);
    return stroke;
}

bool SketchDocument::replace(StrokePtr stroke, std::size_t probably)
{
    const std::optional<std::size_t> index = stroke ? index_of(stroke->id, probably) : std::nullopt;
    if (!index)
        return false;
    strokes_[*index] = std::move(stroke);
    return true;
}

void SketchDocument::clear()
{
    strokes_.clear();
    ids_.clear();
    present_.clear();
}

} // namespace vnt::sketch
