// What is drawn already, ready to be asked what is near: ends, corners, centres and intersections.
//
// Space:  the sheet.
// Errors: nothing throws or reports; shapes that are not finite, or have no size, are passed over.
#pragma once

#include "sketch/core/crossings.h"
#include "sketch/core/reading.h"

#include <optional>
#include <vector>

namespace vnt::sketch {

enum class SnapKind { end, corner, centre, intersection, grid, angle };

// For people: "end", "grid crossing".
const char* name_of(SnapKind kind);

struct SnapTarget {
    Vec2 at;
    SnapKind kind = SnapKind::grid;
};

// Of free curves the ends alone, never the inside; of ink nothing, as it has no shape (who wants its ends gives a
// Straight or a Curve between them). Of round shapes the centre, of closed straight ones too when it is plain to
// see: when all corners lie on one circle about it, as a rectangle's do.
class SnapScene {
public:
    SnapScene() = default;
    // shapes: those that may be snapped to; without the one that is being drawn.
    explicit SnapScene(const std::vector<Shape>& shapes);

    // The nearest target of what is drawn within reach: ends, corners and centres before intersections of
    // straight and round shapes at the same distance. Intersections are found when they are asked for: however
    // many there are, none is left out but where more than 24 lines come together within reach.
    std::optional<SnapTarget> nearest(Vec2 p, double reach) const;

    // The targets within reach of an ellipse's outline, in no order. Intersections are looked for among the first
    // 64 sides and round shapes that come so near.
    std::vector<SnapTarget> near_outline(const Ellipse& ellipse, double reach) const;

private:
    void add_shape(std::monostate) {}
    void add_shape(const Straight& straight);
    void add_shape(const Round& round);
    void add_shape(const Curve& curve);
    void add_place(Vec2 at, SnapKind kind);
    void add_trace(const Trace& trace);
    void sort();

    struct Boxed {
        Box box;
        Trace trace;
    };
    std::vector<SnapTarget> places_; // by x
    std::vector<Boxed> traces_;      // by their boxes' least x
};

} // namespace vnt::sketch
