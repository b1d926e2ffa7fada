// The straight line through points, by total least squares.
//
// Space:  the sheet.
// Errors: nothing throws or reports. Of points without an extent the direction is along x.
// Source: the line goes through the centroid along the scatter matrix's larger eigenvector, and the sum of
//         the squared distances is the smaller eigenvalue: K. Pearson, On Lines and Planes of Closest Fit
//         (1901).
#pragma once

#include "sketch/core/plane.h"

#include <cstddef>
#include <vector>

namespace vnt::sketch {

struct LineFit {
    Vec2 centre;
    Vec2 direction{1, 0};  // of length 1, from the first point towards the last
    double square_sum = 0; // of the points' distances
};

// Sums over points, from which a line is fitted without looking at them again.
class LineMoments {
public:
    void add(Vec2 p);
    // Takes away what was added to the other one.
    LineMoments without(const LineMoments& other) const;
    LineMoments with(const LineMoments& other) const;

    double count() const { return count_; }
    double square_sum() const;
    LineFit fit() const;

private:
    struct Scatter {
        double xx, xy, yy;
    };
    Scatter scatter() const;

    double count_ = 0, x_ = 0, y_ = 0, xx_ = 0, xy_ = 0, yy_ = 0;
};

LineFit fit_line(const Path& points);

// The two ends of the line: where the first and the last point come to lie on it.
struct Piece {
    Vec2 start;
    Vec2 end;
};
Piece piece_on(const LineFit& line, Vec2 first, Vec2 last);

// The largest distance of a point from the line without ends.
double largest_distance(const LineFit& line, const Path& points);

} // namespace vnt::sketch
