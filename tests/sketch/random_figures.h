// Strokes of every kind and views to draw them on, from a seed.
#pragma once

#include "sketch/core/answer.h"
#include "sketch/core/stroke.h"
#include "tests/geometry/seeded.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace random_figures {

using namespace vnt::sketch;

// The view of an artwork: turned, scaled, perhaps mirrored; y of the sheet runs down.
inline Sheet sheet_at(double points_per_pixel, double degrees, bool mirrored, Vec2 origin)
{
    const Vec2 along = degrees == 90 ? Vec2{0, 1} : unit_at(degrees * kPi / 180);
    const Vec2 x = points_per_pixel * along;
    const Vec2 y = (mirrored ? points_per_pixel : -points_per_pixel) * turned_a_quarter(along);
    Sheet sheet;
    sheet.sheet_to_model = {x.x, x.y, y.x, y.y, origin.x, origin.y};
    sheet.tolerance = sheet.sheet_to_model.a;
    return sheet;
}

class Figures {
public:
    explicit Figures(std::uint64_t seed) : seeded_(seed) {}

    // From 3 to 3000 pixels across, somewhere on a large screen.
    StrokePtr next(StrokeId id)
    {
        Stroke stroke;
        stroke.id = id;
        stroke.kind = kKinds[seeded_.integer(0, static_cast<int>(std::size(kKinds)) - 1)];
        const double size = seeded_.octaves_between(1.5, 1500);
        const Vec2 at{seeded_.between(0, 1920), seeded_.between(0, 1080)};
        stroke.shape = shape(stroke.kind, size, at);
        if (stroke.kind == Kind::ink)
            stroke.ink = ink(size, at);
        return std::make_shared<const Stroke>(std::move(stroke));
    }

private:
    Shape shape(Kind kind, double size, Vec2 at)
    {
        switch (kind) {
        case Kind::line: return Straight{corners(2, size, at), false};
        case Kind::polyline: return Straight{corners(seeded_.integer(3, 9), size, at), chance(0.3)};
        case Kind::triangle: return Straight{corners(3, size, at), true};
        case Kind::square: return Straight{box(size, size, at), true};
        case Kind::rectangle: return Straight{box(size, size * seeded_.between(0.05, 1), at), true};
        case Kind::quadrilateral: return Straight{corners(4, size, at), true};
        case Kind::polygon: return Straight{regular(seeded_.integer(5, 8), size, at), true};
        case Kind::circle:
            return Round{
                {at, size, size, 0},
                angle(), chance(0.5) ? 2 * kPi : -2 * kPi
            };
        case Kind::ellipse: return Round{oval(size, at), angle(), chance(0.5) ? 2 * kPi : -2 * kPi};
        case Kind::arc:
            return Round{
                {at, size, size, 0},
                angle(), sweep()
            };
        case Kind::elliptic_arc: return Round{oval(size, at), angle(), sweep()};
        case Kind::free_curve: return curve(size, at);
        case Kind::ink: break;
        }
        return std::monostate{};
    }

    bool chance(double share) { return seeded_.between(0, 1) < share; }
    double quarters(int most) { return seeded_.integer(1, most) * kPi / 2; }
    double angle() { return chance(0.2) ? quarters(4) : seeded_.between(-kPi, kPi); }
    double sweep()
    {
        const double size = chance(0.2) ? quarters(3) : seeded_.between(0.02, 6.2);
        return chance(0.5) ? size : -size;
    }
    Vec2 within(double size) { return {seeded_.between(-size, size), seeded_.between(-size, size)}; }
    Path corners(int count, double size, Vec2 at)
    {
        Path path;
        for (int i = 0; i < count; ++i)
            path.push_back(at + within(size));
        return path;
    }
    Path regular(int count, double size, Vec2 at)
    {
        const double first = angle();
        Path path;
        for (int i = 0; i < count; ++i)
            path.push_back(at + size * unit_at(first + 2 * kPi * i / count));
        return path;
    }
    Path box(double width, double height, Vec2 at)
    {
        const Vec2 x = width * unit_at(angle());
        const Vec2 y = height / width * turned_a_quarter(x);
        return {at - x - y, at + x - y, at + x + y, at - x + y};
    }
    Ellipse oval(double size, Vec2 at)
    {
        return {at, size, size * seeded_.octaves_between(0.01, 1), chance(0.2) ? 0 : seeded_.between(0, kPi)};
    }
    Curve curve(double size, Vec2 at)
    {
        Curve result{{at}, chance(0.3)};
        for (int i = seeded_.integer(1, 12); i > 0; --i) {
            for (int k = 0; k < 3; ++k)
                result.points.push_back(at + within(size));
            result.points.push_back(result.points.back());
        }
        result.points.pop_back();
        return result;
    }
    Ink ink(double size, Vec2 at)
    {
        Ink result;
        Vec2 way = within(size / 10);
        for (int i = seeded_.integer(1, 100); i > 0; --i) {
            way = way + within(size / 30);
            at = at + way;
            result.push_back({at.x, at.y, 0, 1});
        }
        return result;
    }

    Seeded seeded_;
};

} // namespace random_figures
