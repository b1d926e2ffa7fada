// Points, 4x4 matrices and the two records of a captured view, with their text and byte forms.
//
// Space:  model space is the artwork, y up, in points; viewport space is the window's pixels, y down.
// Shapes: a matrix maps points as columns (x, y, z, 1); element (row, column) is number row * 4 + column.
//         Text: fields separated by one blank, doubles at precision 20, a setting that stays on the stream.
//         Bytes: the fields as they lie in memory, in the host's byte order, with nothing between them.
// Errors: stream state only. After malformed text the fields before the fault are set; bytes that come short
//         leave the remaining fields as they were.
#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <ostream>

namespace vnt {

// Names the layout of these records.
constexpr int VNT_VERSION = 1;

struct Point {
    double x;
    double y;
    double z; // the link works in the plane; z is carried through untouched

    constexpr Point(double x_value, double y_value, double z_value) : x(x_value), y(y_value), z(z_value) {}

    std::ostream& serialize(std::ostream& out) const; // 24 bytes: x, y, z
    std::istream& deserialize(std::istream& in);
};

struct Matrix {
    static constexpr std::size_t kElements = 16;

    double m00, m01, m02, m03;
    double m10, m11, m12, m13;
    double m20, m21, m22, m23;
    double m30, m31, m32, m33;

    Matrix() { init(); }

    // Makes this the identity.
    void init();

    // Element number index = row * 4 + column, 0 to 15; anything above is undefined.
    double& operator[](std::size_t index);
    const double& operator[](std::size_t index) const;

    std::ostream& serialize(std::ostream& out) const; // 128 bytes, row by row
    std::istream& deserialize(std::istream& in);
};

// The rectangle of the captured document window, in window pixels. A window partly off-screen has a negative
// edge.
struct ViewportInfo {
    std::int32_t x; // left
    std::int32_t y; // top
    std::int32_t width;
    std::int32_t height;

    ViewportInfo(std::int32_t left, std::int32_t top, std::int32_t width_value, std::int32_t height_value)
        : x(left), y(top), width(width_value), height(height_value)
    {
    }

    std::ostream& serialize(std::ostream& out) const; // 16 bytes: x, y, width, height
    std::istream& deserialize(std::istream& in);
};

// How viewport and grid lie in model space.
struct ModelSpaceInfo {
    Matrix viewport_space_to_model_space_mapping_matrix;
    Matrix unit_grid_space_to_model_space_mapping_matrix; // one grid step is 1 in grid space
    std::int32_t derivational_scale_factor; // unit grid steps in one step of the document's grid

    // Deliberate: leaves derivational_scale_factor unset; the capture of the grid assigns it before it is
    // sent. Kept by ModelSpaceInfo.KeepsTheScaleFactorUnsetAtConstruction. Depends on it: nothing.
    ModelSpaceInfo(const Matrix& viewport_to_model, const Matrix& unit_grid_to_model);

    // Deliberate: the scale factor is in no stream form; the CAD information document alone carries it.
    // Kept by ModelSpaceInfo.KeepsTheScaleFactorOutOfItsStreamForms. Depends on it: exchange types 0 and 1.
    std::ostream& serialize(std::ostream& out) const; // 256 bytes: the two matrices
    std::istream& deserialize(std::istream& in);
};

std::ostream& operator<<(std::ostream& out, const Point& point); // "x y z", no line end
std::istream& operator>>(std::istream& in, Point& point);
std::ostream& operator<<(std::ostream& out, const Matrix& matrix); // four lines, no line end after the last
std::istream& operator>>(std::istream& in, Matrix& matrix);
std::ostream& operator<<(std::ostream& out, const ViewportInfo& viewport); // "x y width height", no line end
std::istream& operator>>(std::istream& in, ViewportInfo& viewport);
std::ostream& operator<<(std::ostream& out, const ModelSpaceInfo& info); // each matrix, then a line end
std::istream& operator>>(std::istream& in, ModelSpaceInfo& info);

} // namespace vnt
