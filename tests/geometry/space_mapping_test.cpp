#include "Source/geometry/space_mapping.h"

#include "tests/geometry/bits.h"
#include "tests/geometry/seeded.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace {

using vnt::Matrix;
using vnt::Point;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

const Point kOrigin(0.0, 0.0, 0.0);

Matrix matrix(const double (&elements)[16])
{
    Matrix m;
    for (std::size_t i = 0; i < Matrix::kElements; ++i)
        m[i] = elements[i];
    return m;
}

// Bit by bit, but for NaN.
testing::AssertionResult equal(const Matrix& got, const Matrix& expected)
{
    for (std::size_t i = 0; i < Matrix::kElements; ++i) {
        if (!bits::same(got[i], expected[i]))
            return testing::AssertionFailure()
                   << "element " << i / 4 << i % 4 << " is " << got[i] << ", not " << expected[i];
    }
    return testing::AssertionSuccess();
}

Point mapped(const Matrix& m, const Point& p)
{
    return Point(m.m00 * p.x + m.m01 * p.y + m.m02 * p.z + m.m03,
                 m.m10 * p.x + m.m11 * p.y + m.m12 * p.z + m.m13,
                 m.m20 * p.x + m.m21 * p.y + m.m22 * p.z + m.m23);
}

Point some_point(Seeded& seeded, double reach)
{
    return Point(seeded.between(-reach, reach), seeded.between(-reach, reach), seeded.between(-reach, reach));
}

// Affine, and far from singular: its block is at most 0.3 a row away from a multiple of the identity.
Matrix some_affine(Seeded& seeded)
{
    const double scale = seeded.octaves_between(0.01, 100.0);
    Matrix m;
    for (std::size_t row = 0; row < 3; ++row) {
        for (std::size_t column = 0; column < 3; ++column)
            m[row * 4 + column] = scale * ((row == column ? 1.0 : 0.0) + seeded.between(-0.1, 0.1));
        m[row * 4 + 3] = seeded.between(-1000.0, 1000.0);
    }
    return m;
}

struct SystemCase {
    const char* name;
    double a[4][5];
    double x[4];
};
const SystemCase kSystems[] = {
    {"IdentityGivesTheRightHandSide",
     {{1, 0, 0, 0, 5}, {0, 1, 0, 0, 6}, {0, 0, 1, 0, 7}, {0, 0, 0, 1, 8}},
     {5, 6, 7, 8}                                                                                                                   },
    {"ZeroFirstPivotIsSwappedAway",
     {{0, 1, 0, 0, 6}, {1, 0, 0, 0, 5}, {0, 0, 0, 1, 8}, {0, 0, 1, 0, 7}},
     {5, 6, 7, 8}                                                                                                                   },
    {"NegativePivotOfLargestMagnitudeIsTaken",
     {{1, 1, 0, 0, 3}, {-4, 0, 0, 0, -4}, {0, 0, 2, 1, 10}, {0, 0, 0, -8, -32}},
     {1, 2, 3, 4}                                                                                                                   },
    {"FullSystem",                             {{2, 1, 1, 0, 7}, {4, 3, 3, 1, 23}, {8, 7, 9, 5, 69}, {6, 7, 9, 8, 79}}, {1, 2, 3, 4}},
};
class Gause : public testing::TestWithParam<SystemCase> {};
TEST_P(Gause, Solves)
{
    double a[4][5];
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 5; ++column)
            a[row][column] = GetParam().a[row][column];
    }
    double x[4];
    gause(a, x);
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(x[i], GetParam().x[i], 1e-13) << i; // a hundred units in the last place of 10
}
INSTANTIATE_TEST_SUITE_P(, Gause, testing::ValuesIn(kSystems),
                         [](const auto& row) { return row.param.name; });

// Rows 0 and 1 tie. The one that is taken is scaled and loses its right-hand side's last bits: 1e16 + 1 rounds to
// 1e16 where row 1 is taken off row 0, to 0 the other way round.
TEST(GauseSteps, TakeTheUpperOfTwoRowsThatTie)
{
    double a[4][5] = {
        {1,  0, 0, 0, 1   },
        {-1, 1, 0, 0, 1e16},
        {0,  0, 1, 0, 0   },
        {0,  0, 0, 1, 0   }
    };
    double x[4];
    gause(a, x);
    EXPECT_EQ(x[0], 1.0); // from the lower row: 1e16 - (1e16 + 1) = 0
    EXPECT_EQ(x[1], 1e16);
}

// 1 / 49 · 49 is 1 - 2^-53: a division would give 1.
TEST(GauseSteps, ScaleByTheReciprocalOfThePivot)
{
    double a[4][5] = {
        {49, 0, 0, 0, 49},
        {0,  1, 0, 0, 0 },
        {0,  0, 1, 0, 0 },
        {0,  0, 0, 1, 0 }
    };
    double x[4];
    gause(a, x);
    EXPECT_EQ(x[0], 1.0 - 0x1p-53);
}

// In place: columns left of the pivot are not swapped. Less 1 - 2^-53 times themselves, the 3 and the 1 below
// the first pivot leave 2^-51 and 2^-53; these stay in their rows when the rest of rows 1 and 2 is swapped.
TEST(GauseSteps, LeaveTheSwappedRowsFirstColumnsBehind)
{
    double a[4][5] = {
        {49, 0, 0, 0, 2},
        {3,  0, 1, 0, 4},
        {1,  4, 0, 0, 9},
        {0,  0, 0, 1, 4}
    };
    double x[4];
    gause(a, x);
    const double left[4][4] = {
        {1.0 - 0x1p-53, 0, 0, 0},
        {0x1p-51,       1, 0, 0},
        {0x1p-53,       0, 1, 0},
        {0,             0, 0, 1}
    };
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column)
            EXPECT_EQ(a[row][column], left[row][column]) << row << ',' << column;
    }
    EXPECT_EQ(x[3], 4.0);
}

TEST(GauseSteps, GiveNumbersThatAreNotFiniteForASingularSystem)
{
    double a[4][5] = {
        {1, 1, 0, 0, 1},
        {1, 1, 0, 0, 2},
        {0, 0, 1, 0, 3},
        {0, 0, 0, 1, 4}
    };
    double x[4];
    gause(a, x);
    EXPECT_FALSE(std::isfinite(x[0]));
    EXPECT_FALSE(std::isfinite(x[1]));
    double zero[4][5] = {};
    gause(zero, x);
    for (const double unknown : x)
        EXPECT_TRUE(std::isnan(unknown));
}

TEST(GauseSteps, TakeNumbersThatAreNotFinite)
{
    double a[4][5] = {
        {kNaN,      1, 0, 0, 1},
        {kInfinity, 1, 0, 0, 2},
        {0,         0, 1, 0, 3},
        {0,         0, 0, 1, 4}
    };
    double x[4];
    gause(a, x);
    EXPECT_TRUE(std::isnan(x[0]));
}

TEST(ModelSpaceMatrix, OfDestinationsThatAreTheSourcesIsTheIdentity)
{
    const Point s1(0, 0, 0), s2(100, 0, 0), s3(0, 100, 0), s4(0, 0, 100);
    const auto info = vnt::calc_model_space_matrix(s1, s2, s3, s4, s1, s2, s3, s4);
    EXPECT_TRUE(equal(info.viewport_space_to_model_space_mapping_matrix, Matrix()));
    EXPECT_TRUE(equal(info.unit_grid_space_to_model_space_mapping_matrix, Matrix()));
}

TEST(ModelSpaceMatrix, HasTheDifferencesOverAHundredAsItsColumns)
{
    const auto info = vnt::calc_model_space_matrix(Point(0, 0, 0), Point(100, 0, 0), Point(0, 100, 0),
                                                   Point(0, 0, 100), Point(10, 20, 30), Point(60, 20, 30),
                                                   Point(10, -5, 30), Point(35, 20, 230));
    const Matrix expected = matrix({0.5, 0, 0.25, 10, 0, -0.25, 0, 20, 0, 0, 2, 30, 0, 0, 0, 1});
    for (std::size_t i = 0; i < Matrix::kElements; ++i) {
        const double bound = 1e-15; // two units in the last place of 2.3, a destination over 100
        EXPECT_NEAR(info.viewport_space_to_model_space_mapping_matrix[i], expected[i], bound) << i;
    }
    EXPECT_TRUE(equal(info.unit_grid_space_to_model_space_mapping_matrix, Matrix()));
}

TEST(ModelSpaceMatrix, TakesTheSourcesToTheirDestinations)
{
    Seeded seeded(1);
    for (int i = 0; i < 2000; ++i) {
        SCOPED_TRACE(i);
        const Matrix shape = some_affine(seeded); // four corners, mapped so that they are far from coplanar
        const Point corners[] = {kOrigin, Point(1, 0, 0), Point(0, 1, 0), Point(0, 0, 1)};
        std::vector<Point> from;
        std::vector<Point> to;
        for (const Point& corner : corners) {
            from.push_back(mapped(shape, corner));
            to.push_back(some_point(seeded, 1000.0));
        }
        const auto info =
            vnt::calc_model_space_matrix(from[0], from[1], from[2], from[3], to[0], to[1], to[2], to[3]);
        const Matrix& m = info.viewport_space_to_model_space_mapping_matrix;
        // Backward stable: what is left over is in proportion to the map and the sources, not to how well the
        // map is determined.
        double size = 0.0;
        for (std::size_t k = 0; k < 12; ++k)
            size = std::max(size, std::abs(m[k]));
        for (std::size_t k = 0; k < 4; ++k) {
            const double bound = 1e-13 * size * 1100.0;
            const Point landed = mapped(m, from[k]);
            EXPECT_NEAR(landed.x, to[k].x, bound);
            EXPECT_NEAR(landed.y, to[k].y, bound);
            EXPECT_NEAR(landed.z, to[k].z, bound);
        }
        EXPECT_EQ(m.m30, 0.0);
        EXPECT_EQ(m.m31, 0.0);
        EXPECT_EQ(m.m32, 0.0);
        EXPECT_EQ(m.m33, 1.0);
    }
}

TEST(ModelSpaceMatrix, OfCoplanarSourcesIsNotFinite)
{
    const Point s(0, 0, 0), x(1, 0, 0), y(0, 1, 0), xy(1, 1, 0);
    const auto info = vnt::calc_model_space_matrix(s, x, y, xy, s, x, y, Point(5, 5, 5));
    EXPECT_FALSE(std::isfinite(info.viewport_space_to_model_space_mapping_matrix.m02));
    EXPECT_EQ(info.viewport_space_to_model_space_mapping_matrix.m33, 1.0);
}

struct DeterminantCase {
    const char* name;
    int rows[3];
    int columns[3];
    double determinant;
};
const Matrix kPrimes = matrix({2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37, 41, 43, 47, 53});
const DeterminantCase kDeterminants[] = {
    {"UpperLeft",                   {0, 1, 2}, {0, 1, 2}, 70.0  },
    {"LowerRight",                  {1, 2, 3}, {1, 2, 3}, 240.0 },
    {"SwappedRowsChangeTheSign",    {1, 0, 2}, {0, 1, 2}, -70.0 },
    {"SwappedColumnsChangeTheSign", {0, 1, 2}, {0, 2, 1}, -70.0 },
    {"ARowTwiceIsZero",             {0, 0, 2}, {0, 1, 2}, 0.0   },
    {"FarCorner",                   {0, 1, 3}, {0, 2, 3}, -264.0},
};
class MatrixDet : public testing::TestWithParam<DeterminantCase> {};
TEST_P(MatrixDet, IsOfTheRowsAndColumnsNamed)
{
    const auto& [name, r, c, determinant] = GetParam();
    EXPECT_EQ(matrix_det(kPrimes, r[0], r[1], r[2], c[0], c[1], c[2]), determinant);
}
INSTANTIATE_TEST_SUITE_P(, MatrixDet, testing::ValuesIn(kDeterminants),
                         [](const auto& row) { return row.param.name; });

// Beside 1e24 each of the two products that are added rounds from 1e8 up to 2^27.
TEST(MatrixDetSteps, AddTheThreeProductsBeforeTheyTakeTheOthersOff)
{
    const Matrix m = matrix({1e8, 1, 1, 0, 1, 1e8, 1e8, 0, 1, 1e8, 1e8, 0, 0, 0, 0, 1});
    EXPECT_EQ(matrix_det(m, 0, 1, 2, 0, 1, 2), 0x1p28 - 2e8);
}

struct InverseCase {
    const char* name;
    Matrix m;
    Matrix inverse;
};
// A zero minor at a place of negative sign is -0.0, and so is a positive one over a negative determinant.
const InverseCase kInverses[] = {
    {"OfTheIdentityIsTheIdentity",                Matrix(),
     matrix({1, -0.0, 0, -0.0, -0.0, 1, -0.0, 0, 0, -0.0, 1, -0.0, -0.0, 0, -0.0, 1})         },
    {"OfAScalingHalves",                          matrix({2, 0, 0, 0, 0, 4, 0, 0, 0, 0, 8, 0, 0, 0, 0, 1}),
     matrix({0.5, -0.0, 0, -0.0, -0.0, 0.25, -0.0, 0, 0, -0.0, 0.125, -0.0, -0.0, 0, -0.0, 1})},
    {"OfATranslationGoesBack",                    matrix({1, 0, 0, 10, 0, 1, 0, 20, 0, 0, 1, 30, 0, 0, 0, 1}),
     matrix({1, -0.0, 0, -10, -0.0, 1, -0.0, -20, 0, -0.0, 1, -30, -0.0, 0, -0.0, 1})         },
    {"OfATurnTurnsBack",                          matrix({0, -1, 0, 3, 1, 0, 0, 4, 0, 0, 1, 5, 0, 0, 0, 1}),
     matrix({0, 1, 0, -4, -1, 0, -0.0, 3, 0, -0.0, 1, -5, -0.0, 0, -0.0, 1})                  },
    {"OfAMirrorIsTheMirror",                      matrix({1, 0, 0, 0, 0, -1, 0, 8, 0, 0, 1, 0, 0, 0, 0, 1}),
     matrix({1, 0, -0.0, 0, 0, -1, 0, 8, -0.0, 0, 1, 0, 0, -0.0, 0, 1})                       },
    {"TakesALastRowThatIsNotAffineFromTheMinors", matrix({1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 2, 3, 4, 5}),
     matrix({5, -0.0, 0, -0.0, -0.0, 5, -0.0, 0, 0, -0.0, 5, -0.0, -2, -3, -4, 1})            },
};
class MatrixInverses : public testing::TestWithParam<InverseCase> {};
TEST_P(MatrixInverses, AreExact) { EXPECT_TRUE(equal(matrix_inv(GetParam().m), GetParam().inverse)); }
INSTANTIATE_TEST_SUITE_P(, MatrixInverses, testing::ValuesIn(kInverses),
                         [](const auto& row) { return row.param.name; });

TEST(MatrixInv, LeadsThereAndBack)
{
    Seeded seeded(2);
    for (int i = 0; i < 2000; ++i) {
        const Matrix m = some_affine(seeded);
        const Matrix inverse = matrix_inv(m);
        const Point p = some_point(seeded, 1000.0);
        const Point back = mapped(inverse, mapped(m, p));
        // Translations of 1000 are taken back at a scale of 0.01 or more.
        const double bound = 1e-12 * (1000.0 + 1000.0 / std::abs(m.m00));
        EXPECT_NEAR(back.x, p.x, bound) << i;
        EXPECT_NEAR(back.y, p.y, bound) << i;
        EXPECT_NEAR(back.z, p.z, bound) << i;
    }
}

// 1 / 49 · 49 is 1 - 2^-53.
TEST(MatrixInv, MultipliesByTheReciprocalOfTheDeterminant)
{
    const Matrix m = matrix({49, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    EXPECT_EQ(matrix_inv(m).m11, 49.0 * (1.0 / 49.0));
    EXPECT_EQ(matrix_inv(m).m11, 1.0 - 0x1p-53);
    EXPECT_EQ(matrix_inv(m).m33, 1.0); // is set, not computed
}

TEST(MatrixInv, KeepsGivingBackASingularInput)
{
    const Matrix zero_block = matrix({0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0, 1});
    EXPECT_TRUE(equal(matrix_inv(zero_block), zero_block));
    const Matrix flat = matrix({1, 2, 3, 4, 2, 4, 6, 5, 0, 0, 1, 6, 7, 8, 9, 10});
    EXPECT_TRUE(equal(matrix_inv(flat), flat));
    Matrix unknown;
    unknown.m11 = kNaN;
    EXPECT_TRUE(equal(matrix_inv(unknown), unknown));
    Matrix endless;
    endless.m00 = kInfinity; // the determinant is infinity times 0
    EXPECT_TRUE(equal(matrix_inv(endless), endless));
}

TEST(MatrixInv, OfATinyDeterminantIsNotGivenBack)
{
    const Matrix m = matrix({0x1p-300, 0, 0, 0, 0, 0x1p-300, 0, 0, 0, 0, 0x1p-300, 0, 0, 0, 0, 1});
    EXPECT_EQ(matrix_inv(m).m00, 0x1p300);
}

TEST(ViewGridSpaceMatrix, OfTheIdentityAndTheOriginScales)
{
    EXPECT_TRUE(equal(vnt::calc_view_grid_space_matrix(50.0, Matrix(), kOrigin),
                      matrix({50, 0, 0, 0, 0, 50, 0, 0, 0, 0, 50, 0, 0, 0, 0, 1})));
}

TEST(ViewGridSpaceMatrix, TakesAGridPointThroughTheViewport)
{
    // Viewport (x, y) is model (2x + 100, -4y + 200): the model origin (110, 160) is viewport (5, 10), and grid
    // point (u, v) viewport (5 + 8u, 10 + 8v).
    const Matrix m = matrix({2, 0, 0, 100, 0, -4, 0, 200, 0, 0, 1, 0, 0, 0, 0, 1});
    const Matrix grid = vnt::calc_view_grid_space_matrix(8.0, m, Point(110, 160, 0));
    EXPECT_TRUE(equal(grid, matrix({16, 0, 0, 110, 0, -32, 0, 160, 0, 0, 8, 0, 0, 0, 0, 1})));
}

TEST(ViewGridSpaceMatrix, KeepsTheGridInTheViewportPlane)
{
    const Matrix grid = vnt::calc_view_grid_space_matrix(8.0, Matrix(), Point(1, 2, 77));
    EXPECT_TRUE(equal(grid, matrix({8, 0, 0, 1, 0, 8, 0, 2, 0, 0, 8, 0, 0, 0, 0, 1})));
}

TEST(ViewGridSpaceMatrix, StandsOnTheForwardMatrixWhenItIsSingular)
{
    // m takes the origin (3, 4, 0) to (3, 0, 0); so does the copy of it that stands for its inverse.
    const Matrix m = matrix({1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    EXPECT_TRUE(equal(vnt::calc_view_grid_space_matrix(8.0, m, Point(3, 4, 0)),
                      matrix({8, 0, 0, 3, 0, 0, 0, 0, 0, 0, 8, 0, 0, 0, 0, 1})));
}

TEST(ViewGridSpaceMatrix, TakesNumbersThatAreNotFinite)
{
    Matrix m;
    m.m03 = kInfinity;
    EXPECT_TRUE(std::isnan(vnt::calc_view_grid_space_matrix(8.0, m, kOrigin).m03));
    EXPECT_TRUE(std::isnan(vnt::calc_view_grid_space_matrix(kNaN, Matrix(), kOrigin).m00));
}

} // namespace
