// Figures of every kind and size among many places: none loses its kind, none collapses, none is carried off.
#include "sketch/core/snapping.h"

#include "tests/sketch/snap_shapes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using namespace snaps;

class Chance {
public:
    explicit Chance(unsigned seed) : random_(seed) {}
    double up_to(double most) { return std::uniform_real_distribution<double>(0, most)(random_); }
    Vec2 place() { return Vec2{up_to(300), up_to(300)}; }

private:
    std::mt19937_64 random_;
};

SnapScene any_scene(Chance& chance)
{
    std::vector<Shape> drawn;
    for (int i = 0; i < 25; ++i) {
        drawn.push_back(line(chance.place(), chance.place()));
        drawn.push_back(circle(chance.place(), 1 + chance.up_to(90)));
    }
    return SnapScene(drawn);
}

struct Figure {
    Kind kind;
    Shape shape;
};

std::vector<Figure> any_figures(Chance& chance)
{
    const Vec2 at = chance.place();
    const double size = 2 + chance.up_to(100);
    const double less = 1 + chance.up_to(size - 1);
    const Vec2 along = unit_at(chance.up_to(2 * kPi));
    const Vec2 across = turned_a_quarter(along);
    const Vec2 far = at + size * along;
    std::vector<Figure> figures;
    const auto add = [&](Kind kind, Shape shape) { figures.push_back(Figure{kind, std::move(shape)}); };
    add(Kind::line, line(at, far));
    add(Kind::rectangle, closed(Path{at, far, far + less * across, at + less * across}));
    add(Kind::square, closed(Path{at, far, far + size * across, at + size * across}));
    add(Kind::triangle, closed(Path{at, far, at + less * across}));
    add(Kind::polyline, open(Path{at, far, at + less * across, far + less * across}));
    add(Kind::circle, circle(at, size));
    add(Kind::ellipse, ellipse(at, size, less, chance.up_to(kPi)));
    add(Kind::arc, arc(at, size, chance.up_to(360), chance.up_to(360)));
    return figures;
}

void expect_kept(Kind kind, const Straight& after, const Straight& before)
{
    const Path& p = after.corners;
    ASSERT_EQ(after.closed, before.closed);
    for (std::size_t i = 1; i < p.size(); ++i) {
        const double was = distance(before.corners[i], before.corners[i - 1]);
        ASSERT_GE(distance(p[i], p[i - 1]), was / 4 - kRounding) << "side " << i;
    }
    if (kind == Kind::rectangle || kind == Kind::square) {
        ASSERT_LT(distance(p[1] - p[0], p[2] - p[3]), kRounding);
        ASSERT_NEAR(distance(p[0], p[2]), distance(p[1], p[3]), kRounding);
    }
    if (kind == Kind::square) {
        ASSERT_NEAR(distance(p[0], p[1]), distance(p[1], p[2]), kRounding);
    }
}

void expect_kept(Kind kind, const Round& after, const Round& before)
{
    ASSERT_GE(after.ellipse.major, after.ellipse.minor);
    ASSERT_GE(after.ellipse.minor, before.ellipse.minor / 4 - kRounding);
    ASSERT_GE(after.ellipse.rotation, 0);
    ASSERT_LT(after.ellipse.rotation, kPi);
    ASSERT_LE(std::abs(after.sweep), 2 * kPi);
    if (kind != Kind::ellipse) {
        ASSERT_NEAR(after.ellipse.major, after.ellipse.minor, kRounding);
    }
}

void expect_kept(Kind, const Curve&, const Curve&) {}
void expect_kept(Kind, std::monostate, std::monostate) {}

class AnyFigure : public testing::TestWithParam<unsigned> {};
TEST_P(AnyFigure, KeepsItsKindAndStaysInReach)
{
    Chance chance(GetParam());
    const SnapScene scene = any_scene(chance);
    SnapSettings settings;
    settings.to_angles = GetParam() % 2 == 0;
    std::optional<Grid> grid;
    if (GetParam() % 3 == 0)
        grid = Grid{
            Affine{12, 0, 0, 12, 5, 5},
            1
        };
    // Twice the reach; of angles so much more as they swing the longest side, of three in a chain, and back.
    const double bound = 16 + (settings.to_angles ? 2 * settings.angle_reach * 300 : 0) + kRounding;
    for (int i = 0; i < 100; ++i)
        for (const Figure& figure : any_figures(chance)) {
            SCOPED_TRACE(name_of(figure.kind));
            const Snapped result = snap_shape(figure.shape, figure.kind, scene, grid, settings);
            ASSERT_EQ(result.shape.index(), figure.shape.index());
            const Path before = points_of(figure.shape);
            const Path after = points_of(result.shape);
            ASSERT_EQ(after.size(), before.size());
            // An arc's centre comes last, and is not drawn: where it bends little it goes far.
            const std::size_t drawn = after.size() - (figure.kind == Kind::arc ? 1 : 0);
            for (std::size_t k = 0; k < drawn; ++k)
                ASSERT_LE(distance(after[k], before[k]), bound) << "point " << k;
            std::visit(
                [&](const auto& its) {
                    expect_kept(figure.kind, its, std::get<std::decay_t<decltype(its)>>(figure.shape));
                },
                result.shape);
        }
}
INSTANTIATE_TEST_SUITE_P(Seed, AnyFigure, testing::Range(1U, 25U));

} // namespace
