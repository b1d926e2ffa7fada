// Tools that force a reading, and shapes that are dragged before the pen is lifted.
#include "tests/sketch_app/canvas_hand.h"

namespace {

using namespace sketch_app_test;

Round roundOf(const StrokePtr& stroke) { return std::get<Round>(stroke->shape); }
Path cornersOf(const StrokePtr& stroke) { return std::get<Straight>(stroke->shape).corners; }

struct ToolCase {
    const char* name;
    Tool tool;
    Path path;
    Kind kind;
};
class CanvasTools : public Canvas, public testing::WithParamInterface<ToolCase> {};

TEST_P(CanvasTools, ForceTheirReading)
{
    canvas.setTool(GetParam().tool);
    mouse.draw(GetParam().path);
    EXPECT_EQ(canvas.offeredReading(), name_of(GetParam().kind));
    EXPECT_EQ(kinds(), (std::vector{Kind::ink})) << "it is shown before it is taken";
    canvas.takeOffered();
    EXPECT_EQ(kinds(), (std::vector{GetParam().kind}));
    model.undoStack().undo();
    EXPECT_EQ(kinds(), (std::vector{Kind::ink}));
}

const Path kBow = {
    {100, 100},
    {150, 120},
    {200, 125},
    {250, 121},
    {300, 100}
};
const Path kAngle = {
    {100, 300},
    {150, 200},
    {200, 100},
    {250, 200},
    {300, 300}
};
const Path kCircle = circlePath({300, 300}, 80);
const Path kSquare = boxPath({300, 300}, 100, 100);
const Path kBox = boxPath({300, 300}, 200, 100);
const Path kLine = linePath({100, 100}, {300, 150});
// clang-format off
const ToolCase kTools[] = {
    {"ALineOfACircle",         Tool::line,        kCircle,                   Kind::line        },
    {"APolylineOfABox",        Tool::polyline,    kBox,                      Kind::polyline    },
    {"ATriangleOfABox",        Tool::triangle,    kBox,                      Kind::triangle    },
    {"ATriangleOfTwoSides",    Tool::triangle,    kAngle,                    Kind::triangle    },
    {"ARectangleOfACircle",    Tool::rectangle,   kCircle,                   Kind::rectangle   },
    {"ARectangleOfASquare",    Tool::rectangle,   kSquare,                   Kind::rectangle   },
    {"APolygonOfFourSides",    Tool::polygon,     kBox,                      Kind::rectangle   },
    {"ACircleOfABox",          Tool::circle,      kBox,                      Kind::circle      },
    {"AnArcOfABow",            Tool::arc,         kBow,                      Kind::arc         },
    {"AnEllipseOfACircle",     Tool::ellipse,     kCircle,                   Kind::ellipse     },
    {"AnEllipticArcOfABow",    Tool::ellipticArc, kBow,                      Kind::elliptic_arc},
    {"AnEllipticArcOfACircle", Tool::ellipticArc, kCircle,                   Kind::elliptic_arc},
    {"AFreeCurveOfALine",      Tool::freeCurve,   kLine,                     Kind::free_curve  },
    {"ACircleHoweverSmall",    Tool::circle,      circlePath({300, 300}, 3), Kind::circle      },
};
// clang-format on
INSTANTIATE_TEST_SUITE_P(, CanvasTools, testing::ValuesIn(kTools),
                         [](const auto& row) { return row.param.name; });

class CanvasAdjusting : public Canvas {
protected:
    void offer(const Path& path)
    {
        holdBriefly();
        mouse.drawOn(path);
        ASSERT_TRUE(restUntilOffered());
    }
};

TEST_F(CanvasAdjusting, TakesTheEndOfALineAlong)
{
    offer(linePath({100, 100}, {300, 100}));
    mouse.move({320, 120});
    mouse.move({350, 160});
    mouse.release({350, 160});
    ASSERT_EQ(kinds(), (std::vector{Kind::line}));
    EXPECT_NEAR(distance(cornersOf(top())[0], {100, 100}), 0, 0.01);
    EXPECT_NEAR(distance(cornersOf(top())[1], {350, 160}), 0, 0.01);
    EXPECT_EQ(top()->ink.back().x, 300) << "what is dragged is no ink";
}

TEST_F(CanvasAdjusting, ScalesACircleAboutItsCentre)
{
    const Path path = circlePath({300, 300}, 80);
    offer(path);
    const Vec2 outward = unit(path.back() - Vec2{300, 300});
    mouse.move(point(path.back() + 40.0 * outward));
    mouse.release(point(path.back() + 40.0 * outward));
    ASSERT_EQ(kinds(), (std::vector{Kind::circle}));
    EXPECT_NEAR(roundOf(top()).ellipse.major, 120, 1);
    EXPECT_NEAR(distance(roundOf(top()).ellipse.centre, {300, 300}), 0, 0.5);
}

TEST_F(CanvasAdjusting, HoldsForTheOtherReadingsAsWell)
{
    const Path path = circlePath({300, 300}, 80);
    offer(path);
    const Vec2 outward = unit(path.back() - Vec2{300, 300});
    mouse.move(point(path.back() + 40.0 * outward));
    while (canvas.offeredReading() != "ellipse")
        key(Qt::Key_Tab);
    mouse.release(point(path.back() + 40.0 * outward));
    ASSERT_EQ(kinds(), (std::vector{Kind::ellipse}));
    EXPECT_NEAR(roundOf(top()).ellipse.major, 120, 1);
}

TEST_F(CanvasAdjusting, LetsAHandTremble)
{
    offer(linePath({100, 100}, {300, 100}));
    mouse.move({302, 101});
    mouse.release({302, 101});
    ASSERT_EQ(kinds(), (std::vector{Kind::line}));
    EXPECT_NEAR(distance(cornersOf(top())[1], {300, 100}), 0, 0.01);
}

} // namespace
