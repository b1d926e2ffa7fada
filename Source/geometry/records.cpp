#include "Source/geometry/records.h"

#include "Source/geometry/raw_bytes.h"

#include <type_traits>

namespace vnt {
namespace {

// 20 significant digits read every double back exactly.
constexpr int kTextPrecision = 20;

constexpr double Matrix::*kElement[Matrix::kElements] = {
    &Matrix::m00, &Matrix::m01, &Matrix::m02, &Matrix::m03, &Matrix::m10, &Matrix::m11,
    &Matrix::m12, &Matrix::m13, &Matrix::m20, &Matrix::m21, &Matrix::m22, &Matrix::m23,
    &Matrix::m30, &Matrix::m31, &Matrix::m32, &Matrix::m33,
};

// The byte forms below write whole records: they are their fields and nothing else.
static_assert(sizeof(Point) == 24 && std::is_standard_layout_v<Point>);
static_assert(sizeof(Matrix) == 128 && std::is_standard_layout_v<Matrix>);
static_assert(sizeof(ViewportInfo) == 16 && std::is_standard_layout_v<ViewportInfo>);

} // namespace

std::ostream& Point::serialize(std::ostream& out) const { return write_raw(out, *this); }

std::istream& Point::deserialize(std::istream& in)
{
    read_raw(in, x);
    read_raw(in, y);
    return read_raw(in, z);
}

void Matrix::init()
{
    for (std::size_t index = 0; index < kElements; ++index)
        (*this)[index] = index / 4 == index % 4 ? 1.0 : 0.0;
}

double& Matrix::operator[](std::size_t index) { return this->*kElement[index]; }

const double& Matrix::operator[](std::size_t index) const { return this->*kElement[index]; }

std::ostream& Matrix::serialize(std::ostream& out) const { return write_raw(out, *this); }

std::istream& Matrix::deserialize(std::istream& in)
{
    for (std::size_t index = 0; index < kElements; ++index)
        read_raw(in, (*this)[index]);
    return in;
}

std::ostream& ViewportInfo::serialize(std::ostream& out) const { return write_raw(out, *this); }

std::istream& ViewportInfo::deserialize(std::istream& in)
{
    read_raw(in, x);
    read_raw(in, y);
    read_raw(in, width);
    return read_raw(in, height);
}

ModelSpaceInfo::ModelSpaceInfo(const Matrix& viewport_to_model, const Matrix& unit_grid_to_model)
    : viewport_space_to_model_space_mapping_matrix(viewport_to_model),
      unit_grid_space_to_model_space_mapping_matrix(unit_grid_to_model)
{
}

std::ostream& ModelSpaceInfo::serialize(std::ostream& out) const
{
    viewport_space_to_model_space_mapping_matrix.serialize(out);
    return unit_grid_space_to_model_space_mapping_matrix.serialize(out);
}

std::istream& ModelSpaceInfo::deserialize(std::istream& in)
{
    viewport_space_to_model_space_mapping_matrix.deserialize(in);
    return unit_grid_space_to_model_space_mapping_matrix.deserialize(in);
}

std::ostream& operator<<(std::ostream& out, const Point& point)
{
    out.precision(kTextPrecision);
    return out << point.x << " " << point.y << " " << point.z;
}

std::istream& operator>>(std::istream& in, Point& point) { return in >> point.x >> point.y >> point.z; }

std::ostream& operator<<(std::ostream& out, const Matrix& matrix)
{
    out.precision(kTextPrecision);
    for (std::size_t row = 0; row < 4; ++row) {
        if (row > 0)
            out << std::endl;
        out << matrix[row * 4] << " " << matrix[row * 4 + 1] << " " << matrix[row * 4 + 2] << " "
            << matrix[row * 4 + 3];
    }
    return out;
}

std::istream& operator>>(std::istream& in, Matrix& matrix)
{
    for (std::size_t index = 0; index < Matrix::kElements; ++index)
        in >> matrix[index];
    return in;
}

std::ostream& operator<<(std::ostream& out, const ViewportInfo& viewport)
{
    return out << viewport.x << " " << viewport.y << " " << viewport.width << " " << viewport.height;
}

std::istream& operator>>(std::istream& in, ViewportInfo& viewport)
{
    return in >> viewport.x >> viewport.y >> viewport.width >> viewport.height;
}

std::ostream& operator<<(std::ostream& out, const ModelSpaceInfo& info)
{
    return out << info.viewport_space_to_model_space_mapping_matrix << std::endl
               << info.unit_grid_space_to_model_space_mapping_matrix << std::endl;
}

std::istream& operator>>(std::istream& in, ModelSpaceInfo& info)
{
    return in >> info.viewport_space_to_model_space_mapping_matrix >>
           info.unit_grid_space_to_model_space_mapping_matrix;
}

} // namespace vnt
