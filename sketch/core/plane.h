// Points and directions of the sheet, and the little arithmetic that all of the recognition shares.
//
// Space:  the sheet, y down, in pixels of the sheet at a view scale of 1.
// Units:  angles in radians, from x towards y: clockwise as one sees them.
// Errors: none; what has no answer (the direction of no length) is 0.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

namespace vnt::sketch {

constexpr double kPi = 3.14159265358979323846;

struct Vec2 {
    double x = 0;
    double y = 0;

    friend bool operator==(const Vec2&, const Vec2&) = default;
};

using Path = std::vector<Vec2>;

constexpr Vec2 operator+(Vec2 a, Vec2 b) { return {a.x + b.x, a.y + b.y}; }
constexpr Vec2 operator-(Vec2 a, Vec2 b) { return {a.x - b.x, a.y - b.y}; }
constexpr Vec2 operator-(Vec2 a) { return {-a.x, -a.y}; }
constexpr Vec2 operator*(double k, Vec2 a) { return {k * a.x, k * a.y}; }

constexpr double dot(Vec2 a, Vec2 b) { return a.x * b.x + a.y * b.y; }
// Above 0 where b lies from a towards y.
constexpr double cross(Vec2 a, Vec2 b) { return a.x * b.y - a.y * b.x; }
// A quarter turn from x towards y.
constexpr Vec2 turned_a_quarter(Vec2 a) { return {-a.y, a.x}; }

// Of what a sheet has: no care is taken of squares beyond the range of doubles.
inline double length(Vec2 a) { return std::sqrt(dot(a, a)); }
inline double distance(Vec2 a, Vec2 b) { return length(b - a); }
inline Vec2 unit(Vec2 a)
{
    const double size = length(a);
    return size > 0 ? Vec2{a.x / size, a.y / size} : Vec2{};
}
inline Vec2 unit_at(double angle) { return {std::cos(angle), std::sin(angle)}; }
inline double angle_of(Vec2 a) { return std::atan2(a.y, a.x); }
// By how much one turns from the direction a into b: from -π to π.
inline double turn_between(Vec2 a, Vec2 b) { return std::atan2(cross(a, b), dot(a, b)); }
constexpr Vec2 middle(Vec2 a, Vec2 b) { return {(a.x + b.x) / 2, (a.y + b.y) / 2}; }

// The same angle from 0 to below 2π.
inline double within_a_turn(double angle)
{
    const double rest = std::fmod(angle, 2 * kPi);
    return rest < 0 ? rest + 2 * kPi : rest;
}

// From p to the nearest point of the piece from a to b.
inline double distance_from_piece(Vec2 p, Vec2 a, Vec2 b)
{
    const Vec2 along = b - a;
    const double square = dot(along, along);
    const double t = square > 0 ? dot(p - a, along) / square : 0;
    return distance(p, t <= 0 ? a : t >= 1 ? b : a + t * along);
}

// The length of a path; of a closed one with the piece from its end to its start.
inline double path_length(const Path& path, bool closed = false)
{
    double sum = 0;
    for (std::size_t i = 1; i < path.size(); ++i)
        sum += distance(path[i - 1], path[i]);
    return closed && path.size() > 1 ? sum + distance(path.back(), path.front()) : sum;
}

struct Box {
    Vec2 least;
    Vec2 most;

    double width() const { return most.x - least.x; }
    double height() const { return most.y - least.y; }
    double diagonal() const { return distance(least, most); }
};

// Of no points: a box of no size at the origin.
inline Box box_of(const Path& path)
{
    if (path.empty())
        return {};
    Box box{path.front(), path.front()};
    for (const Vec2 p : path) {
        box.least = {std::fmin(box.least.x, p.x), std::fmin(box.least.y, p.y)};
        box.most = {std::fmax(box.most.x, p.x), std::fmax(box.most.y, p.y)};
    }
    return box;
}

// How large a path is, whichever way it is turned: 2√2 times the root mean square distance from its centroid,
// along the path. Of a circle this is its box's diagonal, of a straight line 0.82 times its length.
inline double extent_of(const Path& path)
{
    double whole = 0;
    Vec2 first;
    double second = 0;
    for (std::size_t i = 1; i < path.size(); ++i) {
        const Vec2 from = path[i - 1] - path[0];
        const Vec2 to = path[i] - path[0];
        const double size = length(to - from);
        whole += size;
        first = first + size * middle(from, to);
        second += size * (dot(middle(from, to), middle(from, to)) + size * size / 12);
    }
    if (!(whole > 0))
        return 0;
    const Vec2 centroid = (1 / whole) * first;
    return std::sqrt(8 * std::fmax(0.0, second / whole - dot(centroid, centroid)));
}

} // namespace vnt::sketch
