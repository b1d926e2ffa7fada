#include "sketch/core/circle_fit.h"

#include <Eigen/Dense>

#include <algorithm>

namespace vnt::sketch {
namespace {

constexpr int kMostSteps = 20;

// Of the extent; a step that is smaller changes nothing that one could see.
constexpr double kLastStep = 1e-12;

struct Sums {
    double xx = 0, xy = 0, yy = 0, xz = 0, yz = 0, zz = 0;
};

// Taubin's fit to points about their centroid.
std::optional<CircleFit> fit_algebraically(const Path& points)
{
    Sums m;
    for (const Vec2 p : points) {
        const double z = dot(p, p);
        m.xx += p.x * p.x;
        m.xy += p.x * p.y;
        m.yy += p.y * p.y;
        m.xz += p.x * z;
        m.yz += p.y * z;
        m.zz += z * z;
    }
    const auto n = static_cast<double>(points.size());
    for (double* sum : {&m.xx, &m.xy, &m.yy, &m.xz, &m.yz, &m.zz})
        *sum /= n;
    const double mean = m.xx + m.yy;
    const double covariance = m.xx * m.yy - m.xy * m.xy;
    const double variance = m.zz - mean * mean;
    const double a3 = 4 * mean;
    const double a2 = -3 * mean * mean - m.zz;
    const double a1 = variance * mean + 4 * covariance * mean - m.xz * m.xz - m.yz * m.yz;
    const double a0 =
        m.xz * (m.xz * m.yy - m.yz * m.xy) + m.yz * (m.yz * m.xx - m.xz * m.xy) - variance * covariance;
    // The smallest root that is not below 0; Newton's method from 0 comes to it from below.
    double root = 0;
    for (int i = 0; i < kMostSteps; ++i) {
        const double value = a0 + root * (a1 + root * (a2 + root * a3));
        const double slope = a1 + root * (2 * a2 + root * 3 * a3);
        const double next = root - value / slope;
        if (!(next > root)) // grown to the end, or nothing to be had
            break;
        root = next;
    }
    const double divisor = 2 * (root * root - root * mean + covariance);
    if (!(std::abs(divisor) > 0))
        return std::nullopt;
    CircleFit circle;
    circle.centre = {(m.xz * (m.yy - root) - m.yz * m.xy) / divisor,
                     (m.yz * (m.xx - root) - m.xz * m.xy) / divisor};
    circle.radius = std::sqrt(dot(circle.centre, circle.centre) + mean);
    return circle;
}

double square_sum(const CircleFit& circle, const Path& points)
{
    double sum = 0;
    for (const Vec2 p : points) {
        const double off = distance(p, circle.centre) - circle.radius;
        sum += off * off;
    }
    return sum;
}

// One step of Gauss and Newton.
CircleFit stepped(const CircleFit& circle, const Path& points)
{
    Eigen::Matrix3d normal = Eigen::Matrix3d::Zero();
    Eigen::Vector3d right = Eigen::Vector3d::Zero();
    for (const Vec2 p : points) {
        const Vec2 out = unit(p - circle.centre);
        const Eigen::Vector3d row(out.x, out.y, 1);
        normal += row * row.transpose();
        right += row * (distance(p, circle.centre) - circle.radius);
    }
    const Eigen::Vector3d step = normal.ldlt().solve(right);
    return {
        {circle.centre.x + step[0], circle.centre.y + step[1]},
        circle.radius + step[2], 0
    };
}

void refine(CircleFit& circle, const Path& points, double extent)
{
    double sum = square_sum(circle, points);
    for (int i = 0; i < kMostSteps; ++i) {
        const CircleFit next = stepped(circle, points);
        const double next_sum = square_sum(next, points);
        if (!(next_sum < sum))
            break;
        const double moved = distance(next.centre, circle.centre) + std::abs(next.radius - circle.radius);
        circle = next;
        sum = next_sum;
        if (moved < kLastStep * extent)
            break;
    }
    circle.root_mean_square = std::sqrt(sum / static_cast<double>(points.size()));
}

} // namespace

std::optional<CircleFit> fit_circle(const Path& points)
{
    const double extent = box_of(points).diagonal();
    if (points.size() < 3 || !(extent > 0))
        return std::nullopt;
    Vec2 centroid;
    for (const Vec2 p : points)
        centroid = centroid + (1 / static_cast<double>(points.size())) * (p - points.front());
    centroid = centroid + points.front();
    Path about; // the centroid, and of extent 1: the sums of fourth powers stay in range
    about.reserve(points.size());
    for (const Vec2 p : points)
        about.push_back((1 / extent) * (p - centroid));

    std::optional<CircleFit> circle = fit_algebraically(about);
    if (!circle || !(circle->radius <= kLargestRadius))
        return std::nullopt;
    refine(*circle, about, 1);
    if (!(circle->radius <= kLargestRadius) || !(circle->radius > 0))
        return std::nullopt;
    return CircleFit{centroid + extent * circle->centre, extent * circle->radius,
                     extent * circle->root_mean_square};
}

} // namespace vnt::sketch
