#include "sketch/app/shape_adjusting.h"

#include "sketch/app/stroke_art.h"
#include "sketch/core/shape_outline.h"

#include <algorithm>
#include <cmath>

using vnt::sketch::Affine;
using vnt::sketch::Box;
using vnt::sketch::Kind;
using vnt::sketch::Path;
using vnt::sketch::Shape;
using vnt::sketch::Straight;
using vnt::sketch::Vec2;

namespace {

constexpr double kLeastSide = 0.1;      // sheet pixels
constexpr double kLeastShare = 0.01;    // of its size that a drag may leave of a shape
constexpr double kNearTheCentre = 0.25; // of the half diagonal: a pen within it would scale wildly
constexpr double kTolerance = 0.1;      // sheet pixels, of a box

Affine scaledAbout(Vec2 still, double factor)
{
    return {factor, 0, 0, factor, still.x - factor * still.x, still.y - factor * still.y};
}

// Turned and scaled about still, so that a comes to b.
Affine swung(Vec2 still, Vec2 a, Vec2 b)
{
    const Vec2 old = a - still;
    const Vec2 next = b - still;
    const double square = dot(old, old);
    if (!(square > 0))
        return {};
    const double c = dot(old, next) / square;
    const double s = cross(old, next) / square;
    const Vec2 moved{c * still.x - s * still.y, s * still.x + c * still.y};
    return {c, s, -s, c, still.x - moved.x, still.y - moved.y};
}

// The same direction or the other, of at least the least side.
double side(double length)
{
    return std::abs(length) >= kLeastSide ? length : std::copysign(kLeastSide, length);
}

Shape boxDragged(const Straight& box, bool isSquare, Vec2 from, Vec2 to)
{
    std::size_t near = 0;
    for (std::size_t i = 1; i < 4; ++i) {
        if (distance(box.corners[i], from) < distance(box.corners[near], from))
            near = i;
    }
    const Vec2 still = box.corners[(near + 2) % 4];
    const Vec2 across = unit(box.corners[(near + 3) % 4] - still);
    const Vec2 down = unit(box.corners[(near + 1) % 4] - still);
    const Vec2 corner = box.corners[near] + (to - from) - still;
    double width = side(dot(corner, across));
    double height = side(dot(corner, down));
    if (isSquare) {
        const double longer = std::max(std::abs(width), std::abs(height));
        width = std::copysign(longer, width);
        height = std::copysign(longer, height);
    }
    Straight dragged = box;
    dragged.corners[near] = still + width * across + height * down;
    dragged.corners[(near + 3) % 4] = still + width * across;
    dragged.corners[(near + 1) % 4] = still + height * down;
    return dragged;
}

Shape endDragged(Straight pieces, Vec2 move)
{
    const Vec2 before = pieces.corners[pieces.corners.size() - 2];
    const Vec2 end = pieces.corners.back() + move;
    if (distance(before, end) >= kLeastSide)
        pieces.corners.back() = end;
    return pieces;
}

} // namespace

Shape adjusted(const Shape& shape, Kind kind, Vec2 from, Vec2 to)
{
    if (from == to)
        return shape;
    const auto* straight = std::get_if<Straight>(&shape);
    if (straight != nullptr && !straight->closed && straight->corners.size() >= 2)
        return endDragged(*straight, to - from);
    if ((kind == Kind::rectangle || kind == Kind::square) && straight != nullptr &&
        straight->corners.size() == 4)
        return boxDragged(*straight, kind == Kind::square, from, to);

    const Path outline = vnt::sketch::cubics_of(shape, kTolerance);
    if (outline.empty())
        return shape;
    if (!isClosed(shape)) {
        const Vec2 end = outline.back() + (to - from);
        if (distance(outline.front(), end) < std::max(kLeastSide, kLeastShare * path_length(outline)))
            return shape;
        return vnt::sketch::mapped(shape, swung(outline.front(), outline.back(), end));
    }
    const Box box = vnt::sketch::box_of(vnt::sketch::flattened(outline, kTolerance));
    const Vec2 centre = middle(box.least, box.most);
    const double least = std::max(kNearTheCentre * box.diagonal() / 2, kLeastSide);
    const double grown = distance(centre, to) - distance(centre, from);
    const double reach = std::max(distance(centre, from), least);
    return vnt::sketch::mapped(shape, scaledAbout(centre, std::max(kLeastShare, (reach + grown) / reach)));
}
