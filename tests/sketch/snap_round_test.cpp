#include "sketch/core/snapping.h"

#include "tests/sketch/snap_cases.h"

#include <gtest/gtest.h>

namespace {

using namespace snaps;

// clang-format off
const SnapCase kCircles[] = {
    {"GoesToACentre",          Kind::circle, circle({3, 4}, 50), {place({0, 0})}, 0, circle({0, 0}, 50), "end"},
    {"GoesThroughWhatIsNear",  Kind::circle, circle({0, 0}, 50), {place({33, 44})}, 0, circle({0, 0}, 55), "end"},
    {"GoesThroughTheNearest",  Kind::circle, circle({0, 0}, 50), {place({33, 44}), place({-52, 0}), place({0, 57})}, 0, circle({0, 0}, 52), "end"},
    {"GoesThroughACrossing",   Kind::circle, circle({0, 0}, 60), {line({-40, -13}, {140, 93}), line({50, -90}, {50, 170})}, 0, circle({0, 0}, std::hypot(50, 40)), "intersection"},
    {"GoesToBoth",             Kind::circle, circle({3, 4}, 50), {place({0, 0}), place({52, 0})}, 0, circle({0, 0}, 52), "end, end"},
    {"IsWholeStepsOfTheGrid",  Kind::circle, circle({98, 203}, 53), {}, 20, circle({100, 200}, 60), "grid crossing, grid crossing"},
    {"IsOneStepAtLeast",       Kind::circle, circle({98, 203}, 15), {}, 20, circle({100, 200}, 20), "grid crossing, grid crossing"},
    {"GoesThroughThingsFirst", Kind::circle, circle({98, 203}, 53), {place({100, 254})}, 20, circle({100, 200}, 54), "grid crossing, end"},
    {"DoesNotShrinkToItsCentre", Kind::circle, circle({1, 0}, 6), {place({0, 0})}, 0, circle({0, 0}, 6), "end"},
    {"BeyondReachStays",       Kind::circle, circle({9, 0}, 50), {place({0, 0}), place({9, 58.5})}, 0, circle({9, 0}, 50), ""},
};

const SnapCase kEllipses[] = {
    {"GoesToACentre",          Kind::ellipse, ellipse({3, 4}, 50, 30, 0.6), {place({0, 0})}, 0, ellipse({0, 0}, 50, 30, 0.6), "end"},
    {"TurnsToAStep",           Kind::ellipse, ellipse({3, 4}, 50, 30, 32 * kDegree), {}, 0, ellipse({3, 4}, 50, 30, 30 * kDegree), "angle"},
    {"TurnsToUprightFromBelow", Kind::ellipse, ellipse({3, 4}, 50, 30, 178 * kDegree), {}, 0, Round{{{3, 4}, 50, 30, 0}, 0.5 + kPi, 2 * kPi}, "angle"},
    {"StretchesToWhatIsNear",  Kind::ellipse, ellipse({0, 0}, 50, 30, 0), {place({53, 0})}, 0, ellipse({0, 0}, 53, 30, 0), "end, angle"},
    {"StretchesAcross",        Kind::ellipse, ellipse({0, 0}, 50, 30, 0), {place({0, -27})}, 0, ellipse({0, 0}, 50, 27, 0), "end, angle"},
    {"StretchesBothWays",      Kind::ellipse, ellipse({0, 0}, 50, 30, 0), {place({0, -27}), place({53, 0})}, 0, ellipse({0, 0}, 53, 27, 0), "end, end, angle"},
    // x = 40, y = 20 lies on x²/a² + y²/30² = 1 for a = 40 / √(1 - 4/9).
    {"GoesThroughWhatIsBeside", Kind::ellipse, ellipse({0, 0}, 50, 30, 0), {place({40, 20})}, 0, ellipse({0, 0}, 40 / std::sqrt(5.0 / 9), 30, 0), "end, angle"},
    {"IsWholeStepsOfTheGrid",  Kind::ellipse, ellipse({98, 203}, 53, 26, 0), {}, 20, ellipse({100, 200}, 60, 20, 0), "grid crossing, grid crossing, grid crossing, angle"},
    // The longer half axis becomes the shorter one: every point keeps its place.
    {"MayStandUpright",        Kind::ellipse, ellipse({0, 0}, 50, 48, 0), {place({0, 55})}, 0, Round{{{0, 0}, 55, 50, kPi / 2}, 0.5 - kPi / 2, 2 * kPi}, "end, angle"},
};

const SnapCase kArcs[] = {
    {"GoesWithBothEnds",       Kind::arc, arc({0, 0}, 50, 10, 70), {place(52 * unit_at(10 * kDegree)), place(52 * unit_at(70 * kDegree))}, 0, arc({0, 0}, 52, 10, 70), "end, end"},
    {"KeepsItsBend",           Kind::arc, arc({0, 0}, 50, 0, 90), {place({54, 0}), place({0, 54})}, 0, arc({0, 0}, 54, 0, 90), "end, end"},
    {"GoesWithOneEndTheOtherStays", Kind::arc, arc({0, 0}, 50, 180, 0), {place({54, 0})}, 0, arc({2, 0}, 52, 180, 0), "end"},
    {"GoesToItsCentre",        Kind::arc, arc({3, 4}, 50, 10, 100), {place({0, 0})}, 0, arc({0, 0}, 50, 10, 100), "end"},
    {"GoesToItsCentreAndAngles", Kind::arc, arc({3, 4}, 50, 2, 88), {place({0, 0})}, 0, arc({0, 0}, 50, 0, 90), "angle, angle, end"},
    {"GoesToItsCentreAndBothEnds", Kind::arc, arc({3, 4}, 50, 10, 100), {place({0, 0}), place(52 * unit_at(9 * kDegree)), place(52 * unit_at(104 * kDegree))}, 0, arc({0, 0}, 52, 9, 104), "end, end, end"},
    {"TurnsItsEndsToSteps",    Kind::arc, arc({3, 4}, 50, 2, -88), {}, 0, arc({3, 4}, 50, 0, -90), "angle, angle"},
    {"StaysWithShallowBends",  Kind::arc, arc({3, 4}, 500, 10, 20), {place({0, 0})}, 0, arc({3, 4}, 500, 10, 20), ""},
    {"NearlyClosedDoesNotClose", Kind::arc, arc({0, 0}, 50, 5, 355), {place({47, 0})}, 0, arc({47 - 50 * std::cos(5 * kDegree), -50 * std::sin(5 * kDegree)}, 50, 5, 355), "end"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Circle, Snapping, testing::ValuesIn(kCircles), kName);
INSTANTIATE_TEST_SUITE_P(Ellipse, Snapping, testing::ValuesIn(kEllipses), kName);
INSTANTIATE_TEST_SUITE_P(Arc, Snapping, testing::ValuesIn(kArcs), kName);

} // namespace
