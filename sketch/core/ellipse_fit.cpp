#include "sketch/core/ellipse_fit.h"

#include "sketch/core/circle_fit.h"

#include <Eigen/Dense>

#include <algorithm>
#include <array>
#include <cstddef>

namespace vnt::sketch {
namespace {

using Conic = std::array<double, 6>; // a x² + b x y + c y² + d x + e y + f = 0

constexpr int kMostSteps = 10;

// Of the sum of squares; a step that gains less changes nothing that one could see.
constexpr double kLastGain = 1e-9;

// Of the larger half axis; a flatter ellipse is a line drawn there and back.
constexpr double kFlattest = 1e-3;

std::optional<Conic> fit_directly(const Path& points)
{
    Eigen::Matrix3d s1 = Eigen::Matrix3d::Zero();
    Eigen::Matrix3d s2 = Eigen::Matrix3d::Zero();
    Eigen::Matrix3d s3 = Eigen::Matrix3d::Zero();
    for (const Vec2 p : points) {
        const Eigen::Vector3d quadratic(p.x * p.x, p.x * p.y, p.y * p.y);
        const Eigen::Vector3d linear(p.x, p.y, 1);
        s1 += quadratic * quadratic.transpose();
        s2 += quadratic * linear.transpose();
        s3 += linear * linear.transpose();
    }
    const Eigen::FullPivLU<Eigen::Matrix3d> lu(s3);
    if (!lu.isInvertible())
        return std::nullopt;
    const Eigen::Matrix3d to_linear = -lu.solve(s2.transpose());
    const Eigen::Matrix3d reduced = s1 + s2 * to_linear;
    Eigen::Matrix3d constrained; // times the inverse of the constraint 4 a c - b² = 1
    constrained.row(0) = reduced.row(2) / 2;
    constrained.row(1) = -reduced.row(1);
    constrained.row(2) = reduced.row(0) / 2;
    const Eigen::EigenSolver<Eigen::Matrix3d> solver(constrained);
    if (solver.info() != Eigen::Success)
        return std::nullopt;
    for (int i = 0; i < 3; ++i) {
        const Eigen::Vector3d q = solver.eigenvectors().col(i).real();
        if (!(4 * q[0] * q[2] - q[1] * q[1] > 0))
            continue;
        const Eigen::Vector3d l = to_linear * q;
        return Conic{q[0], q[1], q[2], l[0], l[1], l[2]};
    }
    return std::nullopt;
}

std::optional<Ellipse> ellipse_of(const Conic& conic)
{
    auto [a, b, c, d, e, f] = conic;
    if (a + c < 0)
        a = -a, b = -b, c = -c, d = -d, e = -e, f = -f;
    const double determinant = 4 * a * c - b * b;
    if (!(determinant > 0))
        return std::nullopt;
    Ellipse ellipse;
    ellipse.centre = {(b * e - 2 * c * d) / determinant, (b * d - 2 * a * e) / determinant};
    const double at_centre = f + (d * ellipse.centre.x + e * ellipse.centre.y) / 2;
    const double root = std::hypot(a - c, b);
    const double small = (a + c - root) / 2; // eigenvalues of the quadratic part
    const double large = (a + c + root) / 2;
    ellipse.major = std::sqrt(-at_centre / small);
    ellipse.minor = std::sqrt(-at_centre / large);
    ellipse.rotation = within_a_turn(std::atan2(-b, c - a) / 2);
    if (ellipse.rotation >= kPi)
        ellipse.rotation -= kPi;
    if (!(ellipse.major <= kLargestRadius) || !(ellipse.minor > kFlattest * ellipse.major))
        return std::nullopt;
    return ellipse;
}

// The ellipse's own frame, for looking at many points.
class Frame {
public:
    explicit Frame(const Ellipse& ellipse)
        : ellipse_(ellipse), along_(unit_at(ellipse.rotation)), across_(turned_a_quarter(along_))
    {
    }

    Vec2 along() const { return along_; }
    Vec2 across() const { return across_; }

    // In half axes: where the ellipse is the unit circle.
    Vec2 scaled(Vec2 p) const
    {
        return {dot(p - ellipse_.centre, along_) / ellipse_.major,
                dot(p - ellipse_.centre, across_) / ellipse_.minor};
    }

    // See Ellipse::distance_of; scaled is at this distance from the centre.
    double distance_of(Vec2 scaled, double radius) const
    {
        // F = √(u² + v²) - 1: nearer to the distance than u² + v² - 1, and exact for a circle.
        const double slope = length({scaled.x / ellipse_.major, scaled.y / ellipse_.minor});
        return slope > 0 ? (radius - 1) * radius / slope : -ellipse_.minor;
    }

private:
    Ellipse ellipse_;
    Vec2 along_;
    Vec2 across_;
};

double square_sum(const Ellipse& ellipse, const Path& points)
{
    const Frame frame(ellipse);
    double sum = 0;
    for (const Vec2 p : points) {
        const Vec2 scaled = frame.scaled(p);
        const double off = frame.distance_of(scaled, length(scaled));
        sum += off * off;
    }
    return sum;
}

using Parameters = Eigen::Matrix<double, 5, 1>; // centre, half axes, rotation

// One step of Gauss and Newton: at the foot of each point, how far the ellipse there gives way to each
// parameter.
std::optional<Ellipse> stepped(const Ellipse& ellipse, const Path& points)
{
    Eigen::Matrix<double, 5, 5> normal = Eigen::Matrix<double, 5, 5>::Zero();
    Parameters right = Parameters::Zero();
    const Frame frame(ellipse);
    const Vec2 along = frame.along();
    const Vec2 across = frame.across();
    for (const Vec2 p : points) {
        const Vec2 scaled = frame.scaled(p);
        const double radius = length(scaled);
        const double cosine = radius > 0 ? scaled.x / radius : 1;
        const double sine = radius > 0 ? scaled.y / radius : 0;
        const Vec2 out = unit((ellipse.minor * cosine) * along + (ellipse.major * sine) * across);
        const Vec2 spun = (ellipse.major * cosine) * across - (ellipse.minor * sine) * along;
        Parameters row;
        row << out.x, out.y, cosine * dot(along, out), sine * dot(across, out), dot(spun, out);
        normal += row * row.transpose();
        right += row * frame.distance_of(scaled, radius);
    }
    normal.diagonal().array() += 1e-12 * normal.trace(); // of a circle the rotation is free
    const Parameters step = normal.ldlt().solve(right);
    Ellipse next{
        {ellipse.centre.x + step[0], ellipse.centre.y + step[1]},
        ellipse.major + step[2],
        ellipse.minor + step[3],
        ellipse.rotation + step[4]
    };
    if (!(next.major > 0) || !(next.minor > 0) || !std::isfinite(next.rotation))
        return std::nullopt;
    return next;
}

// The larger half axis first, and its rotation in range.
Ellipse in_order(Ellipse ellipse)
{
    if (ellipse.minor > ellipse.major) {
        std::swap(ellipse.minor, ellipse.major);
        ellipse.rotation += kPi / 2;
    }
    ellipse.rotation = within_a_turn(ellipse.rotation);
    if (ellipse.rotation >= kPi)
        ellipse.rotation -= kPi;
    return ellipse;
}

} // namespace

Vec2 Ellipse::at(double parameter) const
{
    const Vec2 along = unit_at(rotation);
    return centre + (major * std::cos(parameter)) * along +
           (minor * std::sin(parameter)) * turned_a_quarter(along);
}

double Ellipse::parameter_of(Vec2 p) const
{
    const Vec2 scaled = Frame(*this).scaled(p);
    return std::atan2(scaled.y, scaled.x);
}

double Ellipse::distance_of(Vec2 p) const
{
    const Frame frame(*this);
    const Vec2 scaled = frame.scaled(p);
    return frame.distance_of(scaled, length(scaled));
}

std::optional<EllipseFit> fit_ellipse(const Path& points)
{
    const double extent = box_of(points).diagonal();
    if (points.size() < 5 || !(extent > 0))
        return std::nullopt;
    Vec2 centroid;
    for (const Vec2 p : points)
        centroid = centroid + (1 / static_cast<double>(points.size())) * (p - points.front());
    centroid = centroid + points.front();
    Path about;
    about.reserve(points.size());
    for (const Vec2 p : points)
        about.push_back((1 / extent) * (p - centroid));

    const std::optional<Conic> conic = fit_directly(about);
    if (!conic)
        return std::nullopt;
    std::optional<Ellipse> found = ellipse_of(*conic);
    if (!found)
        return std::nullopt;
    Ellipse best = *found;
    double sum = square_sum(best, about);
    for (int i = 0; i < kMostSteps; ++i) {
        const std::optional<Ellipse> next = stepped(best, about);
        if (!next)
            break;
        const double next_sum = square_sum(*next, about);
        if (!(next_sum < sum))
            break;
        const bool is_last = sum - next_sum < kLastGain * sum;
        best = *next;
        sum = next_sum;
        if (is_last)
            break;
    }
    best = in_order(best);
    if (!(best.major <= kLargestRadius) || !(best.minor > kFlattest * best.major))
        return std::nullopt;
    return EllipseFit{
        {centroid + extent * best.centre, extent * best.major, extent * best.minor, best.rotation},
        extent * std::sqrt(sum / static_cast<double>(points.size()))
    };
}

} // namespace vnt::sketch
