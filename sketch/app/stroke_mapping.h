// Strokes under a map, each mapped once: what shared a stroke shares the mapped one.
//
// Owner:  holds the strokes that it was given, so that none is taken for a later one.
#pragma once

#include "sketch/core/affine.h"
#include "sketch/core/stroke.h"

#include <unordered_map>
#include <vector>

class StrokeMapping {
public:
    explicit StrokeMapping(const vnt::sketch::Affine& map) : m_map(map) {}

    bool movesNothing() const { return m_map == vnt::sketch::Affine(); }
    // With the same id; null for null. The stroke itself when the map moves nothing.
    vnt::sketch::StrokePtr operator()(const vnt::sketch::StrokePtr& stroke);
    void apply(std::vector<vnt::sketch::StrokePtr>& strokes);

private:
    vnt::sketch::Affine m_map;
    std::unordered_map<vnt::sketch::StrokePtr, vnt::sketch::StrokePtr> m_mapped;
};
