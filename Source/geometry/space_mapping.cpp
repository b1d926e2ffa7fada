#include "Source/geometry/space_mapping.h"

#include <cmath>
#include <cstddef>
#include <utility>

namespace {

constexpr int kUnknowns = 4;

std::size_t element(int row, int column) { return static_cast<std::size_t>(row * 4 + column); }

// m times (x, y, z, 1), without its last row.
vnt::Point mapped(const vnt::Matrix& m, const vnt::Point& p)
{
    return vnt::Point(m.m00 * p.x + m.m01 * p.y + m.m02 * p.z + m.m03,
                      m.m10 * p.x + m.m11 * p.y + m.m12 * p.z + m.m13,
                      m.m20 * p.x + m.m21 * p.y + m.m22 * p.z + m.m23);
}

vnt::Matrix product(const vnt::Matrix& left, const vnt::Matrix& right)
{
    vnt::Matrix result;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            double sum = 0.0;
            for (int k = 0; k < 4; ++k)
                sum += left[element(row, k)] * right[element(k, column)];
            result[element(row, column)] = sum;
        }
    }
    return result;
}

// The determinant of m without one row and one column, the others in ascending order.
double minor_without(const vnt::Matrix& m, int row, int column)
{
    const auto rest = [](int left_out, int n) { return n < left_out ? n : n + 1; };
    return matrix_det(m, rest(row, 0), rest(row, 1), rest(row, 2), rest(column, 0), rest(column, 1),
                      rest(column, 2));
}

int pivot_row(const double a[4][5], int column)
{
    int best = column;
    for (int row = column + 1; row < kUnknowns; ++row) {
        if (std::abs(a[best][column]) < std::abs(a[row][column]))
            best = row;
    }
    return best;
}

} // namespace

void gause(double a[4][5], double x[4])
{
    for (int k = 0; k < kUnknowns; ++k) {
        const int chosen = pivot_row(a, k);
        if (chosen != k) {
            for (int j = k; j <= kUnknowns; ++j)
                std::swap(a[k][j], a[chosen][j]);
        }
        const double reciprocal = 1.0 / a[k][k];
        for (int j = k; j <= kUnknowns; ++j)
            a[k][j] *= reciprocal;
        for (int i = k + 1; i < kUnknowns; ++i) {
            // Downwards: columns from k on see a[i][k] as it was, those before k what is left of it.
            for (int j = kUnknowns; j >= 0; --j)
                a[i][j] -= a[i][k] * a[k][j];
        }
    }
    for (int i = kUnknowns - 1; i >= 0; --i) {
        for (int j = i + 1; j < kUnknowns; ++j) {
            a[i][4] -= a[i][j] * a[j][4];
            a[i][j] = 0.0;
        }
    }
    for (int i = 0; i < kUnknowns; ++i)
        x[i] = a[i][4];
}

double matrix_det(const vnt::Matrix& m, int r0, int r1, int r2, int c0, int c1, int c2)
{
    const auto at = [&m](int row, int column) { return m[element(row, column)]; };
    return at(r0, c0) * at(r1, c1) * at(r2, c2) + at(r0, c1) * at(r1, c2) * at(r2, c0) +
           at(r0, c2) * at(r1, c0) * at(r2, c1) - at(r0, c0) * at(r1, c2) * at(r2, c1) -
           at(r0, c1) * at(r1, c0) * at(r2, c2) - at(r0, c2) * at(r1, c1) * at(r2, c0);
}

vnt::Matrix matrix_inv(const vnt::Matrix& m)
{
    const double determinant = matrix_det(m, 0, 1, 2, 0, 1, 2);
    if (!(determinant > 0.0 || determinant < 0.0))
        return m;
    const double reciprocal = 1.0 / determinant;
    vnt::Matrix inverse;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            const double sign = (row + column) % 2 == 0 ? 1.0 : -1.0;
            inverse[element(row, column)] = sign * minor_without(m, column, row) * reciprocal;
        }
    }
    inverse.m33 = 1.0;
    return inverse;
}

namespace vnt {

ModelSpaceInfo calc_model_space_matrix(const Point& s1, const Point& s2, const Point& s3, const Point& s4,
                                       const Point& d1, const Point& d2, const Point& d3, const Point& d4)
{
    const Point* const sources[] = {&s1, &s2, &s3, &s4};
    const Point* const destinations[] = {&d1, &d2, &d3, &d4};
    constexpr double Point::*kCoordinates[] = {&Point::x, &Point::y, &Point::z};

    ModelSpaceInfo info{Matrix(), Matrix()};
    for (int row = 0; row < 3; ++row) {
        double system[kUnknowns][kUnknowns + 1];
        for (int i = 0; i < kUnknowns; ++i) {
            system[i][0] = sources[i]->x;
            system[i][1] = sources[i]->y;
            system[i][2] = sources[i]->z;
            system[i][3] = 1.0;
            system[i][4] = destinations[i]->*kCoordinates[row];
        }
        double unknowns[kUnknowns];
        gause(system, unknowns);
        for (int column = 0; column < kUnknowns; ++column)
            info.viewport_space_to_model_space_mapping_matrix[element(row, column)] = unknowns[column];
    }
    return info;
}

Matrix calc_view_grid_space_matrix(double scale, const Matrix& viewport_to_model, const Point& origin)
{
    const Point start = mapped(matrix_inv(viewport_to_model), origin);
    Matrix grid_to_viewport;
    grid_to_viewport.m00 = scale;
    grid_to_viewport.m11 = scale;
    grid_to_viewport.m22 = scale;
    grid_to_viewport.m03 = start.x;
    grid_to_viewport.m13 = start.y;
    grid_to_viewport.m23 = 0.0;
    return product(viewport_to_model, grid_to_viewport);
}

} // namespace vnt
