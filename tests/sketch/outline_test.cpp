#include "sketch/core/outline.h"

#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::sketch;

TEST(SignedArea, HasTheSignOfItsDirection)
{
    const Path square = drawn::box(4, 3);
    EXPECT_DOUBLE_EQ(signed_area(square), 12);
    EXPECT_DOUBLE_EQ(signed_area({square.rbegin(), square.rend()}), -12);
    EXPECT_EQ(signed_area({}), 0);
    EXPECT_EQ(signed_area({
                  {1, 2},
                  {3, 4}
    }),
              0);
}

TEST(Hull, LeavesOutWhatIsInsideOrOnASide)
{
    const Path hull = hull_of({
        {0, 0},
        {2, 1},
        {4, 0},
        {4, 4},
        {2, 4},
        {0, 4},
        {1, 1},
        {0, 0}
    });
    EXPECT_EQ(hull, (Path{
                        {0, 0},
                        {4, 0},
                        {4, 4},
                        {0, 4}
    }));
}

TEST(Hull, OfALineIsItsEnds)
{
    EXPECT_EQ(hull_of({
                  {0, 0},
                  {3, 3},
                  {1, 1},
                  {2, 2}
    }),
              (Path{{0, 0}, {3, 3}}));
}

TEST(MomentAxes, OfAnEllipseAreItsHalfAxes)
{
    drawn::Hand hand;
    hand.rotation = 0.8;
    hand.at = {1e5, -1e5};
    const MomentAxes axes = moment_axes(drawn::placed(drawn::ellipse(2, 0.5), hand));
    EXPECT_NEAR(axes.major, 200, 0.02); // the polygon of 720 corners is smaller by 1.3e-5
    EXPECT_NEAR(axes.minor, 50, 0.02);
    EXPECT_NEAR(axes.rotation, 0.8, 1e-9);
    EXPECT_LT(distance(axes.centroid, hand.at), 1e-6);
}

// A box's second moments are w²/12 and h²/12, and the half axes twice their roots.
TEST(MomentAxes, OfABoxFollowItsSides)
{
    const MomentAxes axes = moment_axes(drawn::box(12, 6));
    EXPECT_NEAR(axes.major, 12 / std::sqrt(3), 1e-12);
    EXPECT_NEAR(axes.minor, 6 / std::sqrt(3), 1e-12);
    EXPECT_NEAR(axes.rotation, 0, 1e-12);
}

TEST(MomentAxes, OfNoAreaAreNone)
{
    EXPECT_EQ(moment_axes({}).major, 0);
    EXPECT_EQ(moment_axes({
                              {0, 0},
                              {5, 5}
    })
                  .major,
              0);
}

TEST(MadeRound, TurnsAnEllipseIntoTheUnitCircleAndBack)
{
    drawn::Hand hand;
    hand.rotation = 2.5;
    const Path ellipse = drawn::placed(drawn::ellipse(1.5, 0.6), hand);
    const MomentAxes axes = moment_axes(ellipse);
    const Path round = made_round(ellipse, axes);
    for (const Vec2 p : round)
        EXPECT_NEAR(length(p), 1, 1e-4);
    const Path back = made_unround(round, axes);
    for (std::size_t i = 0; i < ellipse.size(); ++i)
        EXPECT_LT(distance(back[i], ellipse[i]), 1e-9);
}

TEST(MadeRound, StretchesAThinOneByFourOnly)
{
    const Path thin = drawn::ellipse(10, 1);
    const Path round = made_round(thin, moment_axes(thin));
    const Box box = box_of(round);
    EXPECT_NEAR(box.width(), 2, 1e-3);
    EXPECT_NEAR(box.height(), 2.0 / 10 * kMostRounding, 1e-3);
}

} // namespace
