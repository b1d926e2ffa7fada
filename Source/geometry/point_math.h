// The small point formulas, inline, for this folder's own loops; bezier.h offers them to everybody else.
// They stand in no public header: there they would be compiled with flags that may fuse multiply and add.
#pragma once

#include "Source/geometry/records.h"

#include <cmath>

namespace vnt {

inline double distance_of(const Point& a, const Point& b)
{
    const double x = b.x - a.x;
    const double y = b.y - a.y;
    const double z = b.z - a.z;
    return std::sqrt(x * x + y * y + z * z);
}

inline Point weighted_sum(const Point& a, const Point& b, double m, double n)
{
    return Point(n * a.x + m * b.x, n * a.y + m * b.y, n * a.z + m * b.z);
}

inline double signed_area(const Point& a, const Point& b, const Point& c)
{
    return (a.x * b.y + b.x * c.y + c.x * a.y - a.y * b.x - b.y * c.x - c.y * a.x) / 2.0;
}

// The de Casteljau triangle of a cubic, level by level.
struct CubicTriangle {
    Point level1[3];
    Point level2[2];
    Point level3;

    CubicTriangle(const Point control[4], double t)
        : level1{weighted_sum(control[0], control[1], t, 1 - t),
                 weighted_sum(control[1], control[2], t, 1 - t),
                 weighted_sum(control[2], control[3], t, 1 - t)},
          level2{weighted_sum(level1[0], level1[1], t, 1 - t), weighted_sum(level1[1], level1[2], t, 1 - t)},
          level3(weighted_sum(level2[0], level2[1], t, 1 - t))
    {
    }
};

} // namespace vnt
