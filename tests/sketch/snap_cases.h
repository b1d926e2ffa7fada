// Rows of shapes that snap, and the test that goes through them.
#pragma once

#include "tests/sketch/snap_shapes.h"

#include <gtest/gtest.h>

#include <string>

namespace snaps {

inline void expect_same(const Shape& got, const Shape& expected)
{
    ASSERT_EQ(got.index(), expected.index());
    const Path a = points_of(got);
    const Path b = points_of(expected);
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i)
        EXPECT_LT(distance(a[i], b[i]), kRounding) << "point " << i << " is at (" << a[i].x << ", " << a[i].y
                                                   << "), not (" << b[i].x << ", " << b[i].y << ")";
}

inline std::string kinds_of(const std::vector<SnapTarget>& marks)
{
    std::string kinds;
    for (const SnapTarget& mark : marks)
        kinds += std::string(kinds.empty() ? "" : ", ") + name_of(mark.kind);
    return kinds;
}

struct SnapCase {
    const char* name;
    Kind kind;
    Shape shape;
    Targets targets;
    double grid; // its step, sheet pixels; 0: none
    Shape expected;
    const char* marks;  // their kinds
    bool angles = true; // whether it may turn to them
};

inline Snapped snapped(const SnapCase& row)
{
    std::optional<Grid> grid;
    if (row.grid > 0)
        grid = Grid{
            {row.grid, 0, 0, row.grid, 0, 0},
            1
        };
    SnapSettings settings;
    settings.to_angles = row.angles;
    return snap_shape(row.shape, row.kind, SnapScene(row.targets), grid, settings);
}

class Snapping : public testing::TestWithParam<SnapCase> {};

TEST_P(Snapping, GoesWhereItShould)
{
    const Snapped result = snapped(GetParam());
    expect_same(result.shape, GetParam().expected);
    EXPECT_EQ(kinds_of(result.marks), GetParam().marks);
}

// What has snapped stays where it is.
TEST_P(Snapping, IsDoneAtOnce)
{
    SnapCase row = GetParam();
    row.shape = snapped(row).shape;
    expect_same(snapped(row).shape, row.shape);
}
inline const auto kName = [](const auto& row) { return row.param.name; };

} // namespace snaps
