// Affine maps between the spaces of a view: solved from four points, inverted, and built for its grid.
//
// Space:  viewport space is the window's pixels, model space the artwork; a grid step is 1 in unit grid space.
// Units:  those of the points and matrices that are passed in; nothing here converts.
// Shapes: a matrix maps points as columns (x, y, z, 1), and its last row is (0, 0, 0, 1). Element (row, column)
//         is number row * 4 + column.
// Errors: nothing throws or reports. Singular input gives infinities or NaN, or comes back unchanged where
//         the declaration says so.
#pragma once

#include "Source/geometry/records.h"

// Solves four linear equations in four unknowns; column 4 of a is the right-hand side.
//
// Shapes:   a is worked on in place and keeps no meaning. Rows that tie for a pivot stay in their order.
// Errors:   a singular system gives infinities or NaN.
// Accuracy: backward stable: x solves exactly a system that differs from a by a few units in the last place
//           of its largest element (four rows let the elements grow eightfold at most).
// Source:   Gaussian elimination with partial pivoting; G. H. Golub, C. F. Van Loan, Matrix Computations,
//           section "Pivoting". A row is scaled by the reciprocal of its pivot.
void gause(double a[4][5], double x[4]);

// The determinant of the 3x3 block of m in rows r0, r1, r2 and columns c0, c1, c2, each 0 to 3.
//
// Accuracy: within 4 units in the last place of the sum of the six products' magnitudes; where they cancel,
//           the result may be all rounding.
// Source:   Sarrus's rule, the three products that are added first.
double matrix_det(const vnt::Matrix& m, int r0, int r1, int r2, int c0, int c1, int c2);

// The inverse of an affine matrix.
//
// Accuracy: as matrix_det, divided by the determinant; for a map that is far from singular a few units in the
//           last place. The last row of m is taken as it is, but element (3, 3) of the result is always 1.
// Source:   Cramer's rule: the inverse is the adjugate over the determinant, and for an affine matrix the
//           determinant is that of its upper-left 3x3 block.
//
// Deliberate: a matrix whose block has the determinant 0 or NaN comes back as it is, not as the identity.
// Kept by MatrixInv.KeepsGivingBackASingularInput. Depends on it: calc_view_grid_space_matrix, which then
// builds its grid on the forward matrix.
vnt::Matrix matrix_inv(const vnt::Matrix& m);

namespace vnt {

// The affine map that takes s1 to d1, s2 to d2, s3 to d3 and s4 to d4, as the viewport-to-model matrix of a
// record whose grid matrix is the identity and whose scale factor is unset.
//
// Errors:   coplanar sources have no such map: infinities or NaN.
// Accuracy: that of gause, for each row of the matrix.
ModelSpaceInfo calc_model_space_matrix(const Point& s1, const Point& s2, const Point& s3, const Point& s4,
                                       const Point& d1, const Point& d2, const Point& d3, const Point& d4);

// The unit-grid-to-model matrix of a grid that lies in the plane z = 0 of the viewport.
//
// scale:  a grid step in viewport units.
// origin: where the grid starts, in model space. With (x, y) the origin seen in the viewport, grid point
//         (u, v) is viewport point (x + scale u, y + scale v).
//
// Accuracy: that of matrix_inv for the origin, and 4 units in the last place of the largest product elsewhere.
// Source:   the product of viewport_to_model and the grid's own matrix, a scaling and a translation.
//
// Deliberate: the z of the origin seen in the viewport is dropped: the grid stays in the viewport's plane.
// Kept by ViewGridSpaceMatrix.KeepsTheGridInTheViewportPlane. Depends on it: nothing.
Matrix calc_view_grid_space_matrix(double scale, const Matrix& viewport_to_model, const Point& origin);

} // namespace vnt
