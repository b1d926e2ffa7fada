// The legs of an elliptic arc one by one, in fixed arrays; conv_arc_to_bezier places them and makes its list.
//
// Space:  the ellipse's own frame, origin at its centre, z = 0.
// Units:  as in bezier.h, which says the rest about angles and tolerances too.
#pragma once

#include "Source/geometry/records.h"

#include <cstdint>

namespace vnt {

// divide_bezier on an array. False: nothing is left, and the segment has no meaning.
bool cut_cubic(Point segment[4], const Point& ray_origin, const Point& ray_point, bool keep_before,
               double tolerance);

// A cubic segment in its frame's plane.
struct Leg {
    double x[4];
    double y[4];
};

// One quarter of an ellipse, as get_leg_arc.
Leg leg_of_quadrant(int quadrant, double radius_x, double radius_y);

// Walks along an arc and cuts its first and its last leg.
class ArcLegs {
public:
    ArcLegs(double radius_x, double radius_y, double start_angle, double end_angle, double tolerance);

    // The next leg that has something to draw; false after the last.
    bool next(Leg& leg);

private:
    // Where an angle lies. Rounding can make the quadrant 0 or 5.
    struct Place {
        std::int64_t turn;
        int quadrant;
        double part; // of its quadrant, from 0 to below 1
    };
    static Place place_of(double angle, std::int64_t turn);

    bool is_at(const Place& place) const { return turn_ == place.turn && quadrant_ == place.quadrant; }
    bool cut(Leg& leg, double angle, double part, bool keep_before) const;

    double radius_x_;
    double radius_y_;
    double start_angle_;
    double end_angle_;
    double tolerance_;
    Place first_{0, 0, 0.0};
    Place last_{-1, 0, 0.0}; // before the first: nothing to draw
    std::int64_t turn_ = 0;
    int quadrant_ = 0;
};

} // namespace vnt
