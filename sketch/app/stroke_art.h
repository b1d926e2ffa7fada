// Strokes made ready to be painted, and to be hit.
//
// Space:  the sheet.
// Owner:  of each stroke as much is kept as it is there; what is taken away leaves nothing behind.
#pragma once

#include "sketch/core/ink_line.h"
#include "sketch/core/sketch_document.h"

#include <QRectF>

#include <memory>
#include <unordered_map>
#include <vector>

QRectF boxOf(const vnt::sketch::Path& places); // of a line's, or of the points that hold a curve
bool isClosed(const vnt::sketch::Shape& shape);

struct StrokeArt {
    explicit StrokeArt(vnt::sketch::StrokePtr stroke);

    bool isInk() const { return std::holds_alternative<std::monostate>(stroke->shape); }
    // From p to the stroke as it is seen; infinite when it is further than reach from its box.
    double distanceFrom(vnt::sketch::Vec2 p, double reach) const;
    // Whether something that moves from a to b comes within reach of it.
    bool isCrossed(vnt::sketch::Vec2 a, vnt::sketch::Vec2 b, double reach) const;

    vnt::sketch::StrokePtr stroke;
    vnt::sketch::Path curve;      // of its shape, cubic segments of 4 points each; empty for ink
    vnt::sketch::Path line;       // within a tenth of a pixel of what is seen; of ink, what is seen
    std::vector<float> pressures; // of ink: at each place of line
    QRectF box;                   // of what is seen, without the width of a pen
};

class StrokeArts {
public:
    using Arts = std::vector<std::unique_ptr<StrokeArt>>;

    const Arts& all() const { return m_arts; } // in the document's order
    const StrokeArt* find(vnt::sketch::StrokeId id) const;
    const StrokeArt* topmostAt(vnt::sketch::Vec2 p, double reach) const;
    QRectF box() const; // of all; null when there are none

    void reset(const std::vector<vnt::sketch::StrokePtr>& strokes);
    const StrokeArt& insert(std::size_t index, const vnt::sketch::StrokePtr& stroke);
    void take(vnt::sketch::StrokeId id);
    const StrokeArt* replace(const vnt::sketch::StrokePtr& stroke);

private:
    Arts m_arts;
    std::unordered_map<vnt::sketch::StrokeId, StrokeArt*> m_ofId;
};
