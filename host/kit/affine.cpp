#include "host/kit/affine.h"

#include <cmath>

namespace vnt::host {
namespace {

constexpr double kPi = 3.14159265358979323846;

struct Turn {
    double cosine, sine;
};

Turn turn_of(double degrees)
{
    const double rest = std::fmod(degrees, 360.0);
    if (rest == 0)
        return {1, 0};
    if (rest == 90 || rest == -270)
        return {0, 1};
    if (rest == 180 || rest == -180)
        return {-1, 0};
    if (rest == 270 || rest == -90)
        return {0, -1};
    return {std::cos(rest * kPi / 180), std::sin(rest * kPi / 180)};
}

} // namespace

Affine Affine::rotation(double degrees)
{
    const Turn turn = turn_of(degrees);
    return {turn.cosine, turn.sine, -turn.sine, turn.cosine, 0, 0};
}

bool Affine::is_finite() const
{
    return std::isfinite(a) && std::isfinite(b) && std::isfinite(c) && std::isfinite(d) && std::isfinite(e) &&
           std::isfinite(f);
}

Affine operator*(const Affine& second, const Affine& first)
{
    return {second.a * first.a + second.c * first.b,
            second.b * first.a + second.d * first.b,
            second.a * first.c + second.c * first.d,
            second.b * first.c + second.d * first.d,
            second.a * first.e + second.c * first.f + second.e,
            second.b * first.e + second.d * first.f + second.f};
}

std::optional<Affine> try_inverse(const Affine& map)
{
    // A determinant of rounding errors is some 1e-16 of its products; a skew by 89.9999 degrees still has 3e-12.
    constexpr double kFlat = 1e-12;
    const double area = map.determinant();
    if (!map.is_finite() || !(std::abs(area) > kFlat * (std::abs(map.a * map.d) + std::abs(map.b * map.c))))
        return std::nullopt;
    Affine inverse{map.d / area, -map.b / area, -map.c / area, map.a / area, 0, 0};
    inverse.e = -(inverse.a * map.e + inverse.c * map.f);
    inverse.f = -(inverse.b * map.e + inverse.d * map.f);
    if (!inverse.is_finite())
        return std::nullopt;
    return inverse;
}

double mean_scale(const Affine& map) { return std::sqrt(std::abs(map.determinant())); }

} // namespace vnt::host
