// The cutting of arcs as plainly as it can be written: lists, and every step of the bisection. What the
// library computes faster has to agree with this to the last bit.
//
// Errors: nullopt where the bisection never ends. Its bracket can be halved 1075 times at most before nothing
//         of it changes any more; a bisection that goes on past kSteps steps goes on for ever.
#pragma once

#include "Source/geometry/records.h"

#include <list>
#include <optional>

namespace plain {

constexpr int kSteps = 1100;

using Points = std::list<vnt::Point>;

Points get_leg_arc(int quadrant, double radius_x, double radius_y);

std::optional<Points> divide_bezier(const Points& segment, const vnt::Point& ray_origin,
                                    const vnt::Point& ray_point, bool keep_before, double tolerance);

std::optional<Points> conv_arc_to_bezier(const vnt::Point& center, double radius_x, double radius_y,
                                         double start_angle, double end_angle, const vnt::Matrix& posture,
                                         double tolerance);

} // namespace plain
