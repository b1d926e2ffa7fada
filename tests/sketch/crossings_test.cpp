#include "sketch/core/crossings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using namespace vnt::sketch;

constexpr double kRounding = 1e-9;

Trace side(Vec2 start, Vec2 end) { return Side{start, end}; }
Trace ellipse(Vec2 centre, double major, double minor, double rotation = 0, double start = 0,
              double sweep = 2 * kPi)
{
    return Round{
        {centre, major, minor, rotation},
        start, sweep
    };
}
Trace circle(Vec2 centre, double radius, double start = 0, double sweep = 2 * kPi)
{
    return ellipse(centre, radius, radius, 0, start, sweep);
}

// By x, then by y; within rounding the same x is the same.
Path in_order(Path path)
{
    std::sort(path.begin(), path.end(),
              [](Vec2 a, Vec2 b) { return std::abs(a.x - b.x) > 1e-6 ? a.x < b.x : a.y < b.y; });
    return path;
}

struct CrossingCase {
    const char* name;
    Trace a, b;
    Path expected; // by x, then by y
};
const double kHalfRoot = std::sqrt(0.5);
// clang-format off
const CrossingCase kCrossings[] = {
    {"SidesCross",                    side({0, 0}, {4, 4}),    side({0, 4}, {4, 0}),   {{2, 2}}},
    {"SidesMeetAtAnEnd",              side({0, 0}, {4, 0}),    side({4, 0}, {4, 9}),   {{4, 0}}},
    {"ASideEndsOnAnother",            side({0, 0}, {4, 0}),    side({1, 0}, {1, 9}),   {{1, 0}}},
    {"SidesThatEndBeforeDoNot",       side({0, 0}, {4, 0}),    side({1, 1}, {1, 9}),   {}},
    {"ParallelSidesDoNot",            side({0, 0}, {4, 0}),    side({0, 1}, {4, 1}),   {}},
    {"SidesOnOneLineDoNot",           side({0, 0}, {4, 0}),    side({2, 0}, {9, 0}),   {}},
    {"ASideOfNoLengthDoesNot",        side({2, 0}, {2, 0}),    side({0, 0}, {4, 0}),   {}},
    {"ALongSideCrossesAShortOne",     side({-1e6, 1}, {1e6, 1}), side({5, 0}, {5, 2}), {{5, 1}}},
    {"ALineThroughACircle",           side({-9, 3}, {9, 3}),   circle({0, 0}, 5),      {{-4, 3}, {4, 3}}},
    {"ALineThatEndsInACircle",        side({0, 3}, {9, 3}),    circle({0, 0}, 5),      {{4, 3}}},
    {"ALineInsideACircle",            side({-1, 3}, {1, 3}),   circle({0, 0}, 5),      {}},
    {"ALineBesideACircle",            side({-9, 5.1}, {9, 5.1}), circle({0, 0}, 5),    {}},
    {"ATangent",                      side({-9, 5}, {9, 5}),   circle({0, 0}, 5),      {{0, 5}}},
    {"ATangentThatEndsAtTheTouch",    side({-9, 5}, {0, 5}),   circle({0, 0}, 5),      {{0, 5}}},
    {"ADistantTangent",               side({-9, 1130}, {9, 1130}), circle({0, 1100}, 30), {{0, 1130}}},
    {"ALineThroughAnArc",             side({-9, 3}, {9, 3}),   circle({0, 0}, 5, 0, kPi / 2), {{4, 3}}},
    {"ALineThroughAnArcBackwards",    side({-9, 3}, {9, 3}),   circle({0, 0}, 5, kPi / 2, -kPi / 2), {{4, 3}}},
    {"ALineAtTheEndOfAnArc",          side({0, -9}, {0, 9}),   circle({0, 0}, 5, 0, kPi / 2), {{0, 5}}},
    {"ALineThroughAnArcsGap",         side({0, -9}, {0, 0}),   circle({0, 0}, 5, 0, kPi / 2), {}},
    {"ALineThroughAnEllipse",         side({-9, 0}, {9, 0}),   ellipse({0, 0}, 5, 2, kPi / 2), {{-2, 0}, {2, 0}}},
    {"ALineThroughASlantedEllipse",   side({-9, -9}, {9, 9}),  ellipse({0, 0}, 5, 2, kPi / 4),
                                      {{-5 * kHalfRoot, -5 * kHalfRoot}, {5 * kHalfRoot, 5 * kHalfRoot}}},
    {"TwoCircles",                    circle({0, 0}, 5),       circle({6, 0}, 5),      {{3, -4}, {3, 4}}},
    {"ASmallCircleOnALargeOne",       circle({0, 0}, 500),     circle({500, 0}, 1),    {{499.999, -std::sqrt(500 * 500 - 499.999 * 499.999)}, {499.999, std::sqrt(500 * 500 - 499.999 * 499.999)}}},
    {"CirclesThatTouchOutside",       circle({0, 0}, 5),       circle({8, 0}, 3),      {{5, 0}}},
    {"CirclesThatTouchInside",        circle({0, 0}, 5),       circle({2, 0}, 3),      {{5, 0}}},
    {"CirclesApart",                  circle({0, 0}, 5),       circle({11, 0}, 5),     {}},
    {"CirclesInOneAnother",           circle({0, 0}, 5),       circle({1, 0}, 3),      {}},
    {"CirclesAboutOneCentre",         circle({0, 0}, 5),       circle({0, 0}, 3),      {}},
    {"TheSameCircle",                 circle({7, 8}, 5),       circle({7, 8}, 5),      {}},
    {"TheSameEllipse",                ellipse({7, 8}, 5, 2, 1), ellipse({7, 8}, 5, 2, 1), {}},
    {"ArcsThatMissTheirCirclesOne",   circle({0, 0}, 5, 0, kPi), circle({6, 0}, 5),    {{3, 4}}},
    {"ArcsThatMissEachOther",         circle({0, 0}, 5, 0, kPi), circle({6, 0}, 5, kPi, kPi), {}},
    {"AnEllipseOverItsTurnedSelf",    ellipse({0, 0}, 2, 1),   ellipse({0, 0}, 2, 1, kPi / 2),
                                      {{-std::sqrt(0.8), -std::sqrt(0.8)}, {-std::sqrt(0.8), std::sqrt(0.8)}, {std::sqrt(0.8), -std::sqrt(0.8)}, {std::sqrt(0.8), std::sqrt(0.8)}}},
    {"AnEllipseInACircleThatItTouches", ellipse({0, 0}, 5, 2), circle({0, 0}, 5),      {{-5, 0}, {5, 0}}},
    {"AnEllipseAndACircleInThree",    ellipse({0, 0}, 5, 3),   circle({1, 0}, 4),      {{-1.875, -3 * std::sqrt(1 - 0.375 * 0.375)}, {-1.875, 3 * std::sqrt(1 - 0.375 * 0.375)}, {5, 0}}},
    {"AThinEllipseOverAThinOne",      ellipse({0, 0}, 1000, 1), ellipse({0, 0}, 1000, 1, kPi / 2),
                                      {{-1e3 / std::sqrt(1e6 + 1), -1e3 / std::sqrt(1e6 + 1)}, {-1e3 / std::sqrt(1e6 + 1), 1e3 / std::sqrt(1e6 + 1)}, {1e3 / std::sqrt(1e6 + 1), -1e3 / std::sqrt(1e6 + 1)}, {1e3 / std::sqrt(1e6 + 1), 1e3 / std::sqrt(1e6 + 1)}}},
    {"NoNumbers",                     side({0, 0}, {std::nan(""), 1}), circle({0, 0}, std::nan("")), {}},
    {"RoundNoNumbers",                circle({std::nan(""), 0}, 5), circle({0, 0}, 5), {}},
};
// clang-format on
class Crossings : public testing::TestWithParam<CrossingCase> {};
TEST_P(Crossings, AreAllFoundEitherWay)
{
    const CrossingCase& row = GetParam();
    for (const Path& found : {crossings_of(row.a, row.b), crossings_of(row.b, row.a)}) {
        const Path sorted = in_order(found);
        ASSERT_EQ(sorted.size(), row.expected.size());
        for (std::size_t i = 0; i < sorted.size(); ++i) {
            EXPECT_NEAR(sorted[i].x, row.expected[i].x, kRounding);
            EXPECT_NEAR(sorted[i].y, row.expected[i].y, kRounding);
        }
    }
}
INSTANTIATE_TEST_SUITE_P(, Crossings, testing::ValuesIn(kCrossings),
                         [](const auto& row) { return row.param.name; });

// Walks around one in small steps; a crossing is where the other one's inside begins or ends.
std::size_t changes_around(const Ellipse& walked, const Ellipse& other)
{
    constexpr int kSteps = 20'000;
    std::size_t changes = 0;
    bool was_inside = other.distance_of(walked.at(0)) < 0;
    for (int i = 1; i <= kSteps; ++i) {
        const bool is_inside = other.distance_of(walked.at(2 * kPi * i / kSteps)) < 0;
        changes += is_inside != was_inside ? 1 : 0;
        was_inside = is_inside;
    }
    return changes;
}

TEST(CrossingsOfEllipses, LieOnBothAndAreAsManyAsAWalkAroundFinds)
{
    std::mt19937_64 random(20);
    std::uniform_real_distribution<double> unit(0, 1);
    std::size_t counts[5] = {};
    for (int i = 0; i < 300; ++i) {
        const auto any = [&] {
            const double major = 20 + 80 * unit(random);
            return Ellipse{
                {100 * unit(random), 100 * unit(random)},
                major,
                major * (0.05 + 0.95 * unit(random)),
                kPi * unit(random)
            };
        };
        const Ellipse a = any();
        const Ellipse b = any();
        const Path found = crossings_of(Round{a, 0, 2 * kPi}, Round{b, 0, 2 * kPi});
        for (const Vec2 p : found) {
            EXPECT_NEAR(a.distance_of(p), 0, kRounding);
            EXPECT_NEAR(b.distance_of(p), 0, kRounding);
        }
        ASSERT_EQ(found.size(), changes_around(a, b)) << "pair " << i;
        ++counts[found.size()];
    }
    EXPECT_GT(counts[0], 10U); // all numbers come up
    EXPECT_GT(counts[2], 10U);
    EXPECT_GT(counts[4], 10U);
}

TEST(LeastDistance, IsNeverMoreThanTheDistance)
{
    const Ellipse thin{
        {10, 20},
        100, 10, 0.3
    };
    for (double x = -150; x <= 150; x += 7)
        for (double y = -150; y <= 150; y += 7) {
            double least = 1e9;
            for (int i = 0; i < 720; ++i)
                least = std::min(least, distance({x, y}, thin.at(i * kPi / 360)));
            // Half a step between the points that are asked.
            EXPECT_LE(least_distance({x, y}, Round{thin, 0, 1}), least + 1e-9);
        }
    EXPECT_NEAR(least_distance({0, 7}, circle({0, 0}, 5)), 2, kRounding);
    EXPECT_NEAR(least_distance({0, 0}, circle({0, 0}, 5)), 5, kRounding);
    EXPECT_NEAR(least_distance({3, 4}, side({0, 0}, {9, 0})), 4, kRounding);
}

TEST(BoxOf, HoldsTheWholeEllipseAndTouchesIt)
{
    const Ellipse slanted{
        {10, 20},
        5, 2, 0.7
    };
    Path around;
    for (int i = 0; i < 36'000; ++i)
        around.push_back(slanted.at(i * kPi / 18'000));
    const Box expected = box_of(around);
    const Box box = box_of(Trace(Round{slanted, 0, 0.1}));
    EXPECT_NEAR(box.least.x, expected.least.x, 1e-6);
    EXPECT_NEAR(box.least.y, expected.least.y, 1e-6);
    EXPECT_NEAR(box.most.x, expected.most.x, 1e-6);
    EXPECT_NEAR(box.most.y, expected.most.y, 1e-6);
}

} // namespace
