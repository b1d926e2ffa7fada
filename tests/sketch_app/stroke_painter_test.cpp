#include "sketch/app/stroke_painter.h"

#include "sketch/app/drawn_ink.h"
#include "sketch/core/shape_outline.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include <cmath>
#include <limits>

namespace {

using vnt::sketch::Path;
using vnt::sketch::Vec2;

constexpr int kSide = 300;

QImage blank()
{
    QImage image(kSide, kSide, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

// Cubic segments that cross one another all over the picture.
Path knot()
{
    Path cubics;
    Vec2 at{20, 150};
    for (int i = 1; i <= 40; ++i) {
        const Vec2 to = Vec2{150, 150} + 140 * Vec2{-std::cos(0.7 * i), std::sin(1.1 * i)};
        cubics.insert(cubics.end(), {
                                        at, at + Vec2{0,  60},
                                           to - Vec2{60, 0 },
                                           to
        });
        at = to;
    }
    return cubics;
}

struct Way {
    const char* name;
    void (*paint)(QPainter& painter, const QTransform& map, const QColor& colour, const QRectF& within);
};
const Way kWays[] = {
    {"ACurve",       [](QPainter& painter, const QTransform& map, const QColor& colour,
     const QRectF& within) { paintCurve(painter, knot(), map, colour, 5, within); }          },
    {"ADashedCurve",
     [](QPainter& painter,                 const QTransform& map, const QColor& colour, const QRectF& within) {
         paintDashedCurve(painter, knot(), map, colour, {5, 15, 9}, within);
     }},
    {"Ink",
     [](QPainter& painter,                 const QTransform& map, const QColor& colour, const QRectF& within) {
         const Path line = knot(); // its controls are corners as well
         std::vector<float> pressures;
         for (std::size_t i = 0; i < line.size(); ++i)
             pressures.push_back(static_cast<float>(i % 7) / 7);
         paintInk(painter, line, pressures, map, colour, 9, within);
     }},
};
class PaintedStrokes : public testing::TestWithParam<Way> {};

TEST_P(PaintedStrokes, AreTheSameInPiecesAsAtOnce)
{
    QTransform map;
    map.translate(13.3, -7.7);
    map.rotate(8);
    QImage whole = blank();
    {
        QPainter painter(&whole);
        painter.scale(1.25, 1.25);
        GetParam().paint(painter, map, Qt::black, {});
    }
    QImage pieces = blank();
    for (int y = 0; y < kSide; y += 20) {
        for (int x = 0; x < kSide; x += 20) {
            QPainter painter(&pieces);
            painter.setClipRect(x, y, 20, 20);
            painter.scale(1.25, 1.25);
            GetParam().paint(painter, map, Qt::black, QRectF(x / 1.25, y / 1.25, 16, 16));
        }
    }
    EXPECT_EQ(pieces, whole);
}

TEST_P(PaintedStrokes, AreNoDarkerWhereTheyMeetThemselves)
{
    QImage image = blank();
    QPainter painter(&image);
    GetParam().paint(painter, {}, QColor(0, 0, 0, 100), {});
    painter.end();
    int most = 0;
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x)
            most = std::max(most, qAlpha(image.pixel(x, y)));
    }
    EXPECT_EQ(most, 100);
}

TEST_P(PaintedStrokes, LeaveThePaintersOwnMap)
{
    QImage image = blank();
    QPainter painter(&image);
    painter.rotate(10);
    const QTransform before = painter.worldTransform();
    GetParam().paint(painter, {}, Qt::black, {});
    EXPECT_EQ(painter.worldTransform(), before);
}
INSTANTIATE_TEST_SUITE_P(, PaintedStrokes, testing::ValuesIn(kWays),
                         [](const auto& row) { return row.param.name; });

TEST(DashedCurve, HasDashesAndGapsAsLongAsAsked)
{
    QImage image = blank();
    QPainter painter(&image);
    paintDashedCurve(painter,
                     {
                         {50,  100},
                         {90,  100},
                         {130, 100},
                         {230, 100}
    },
                     {}, Qt::black, {2, 8, 5});
    painter.end();
    // A dash is 6 long from the middle of one round end to that of the other.
    for (int dash = 0; dash < 13; ++dash) {
        const int from = 50 + 13 * dash;
        EXPECT_EQ(qAlpha(image.pixel(from + 1, 100)), 255) << dash;
        EXPECT_EQ(qAlpha(image.pixel(from + 5, 100)), 255) << dash;
        EXPECT_EQ(qAlpha(image.pixel(from + 8, 100)), 0) << dash;
        EXPECT_EQ(qAlpha(image.pixel(from + 10, 100)), 0) << dash;
    }
}

TEST(DashedCurve, EndsWhateverItIsMadeOf)
{
    const Path level{
        {50,  100},
        {90,  100},
        {130, 100},
        {230, 100}
    };
    QImage image = blank();
    QPainter painter(&image);
    paintDashedCurve(painter, level, {}, Qt::black, {0, 0, 0});
    EXPECT_EQ(qAlpha(image.pixel(100, 100)), 0) << "of no width";
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    for (const double far : {kInfinite, std::nan(""), 1e308})
        paintDashedCurve(painter,
                         {
                             level[0], level[1], {far, -far},
                               {far, 100 }
        },
                         {}, Qt::black, {2, 8, 5});
    paintDashedCurve(painter, level, {}, Qt::black, {2, 0, -2});
    EXPECT_EQ(qAlpha(image.pixel(100, 100)), 255) << "of no length, it has no gaps";
}

// Far more points than are kept at a time; each its own line.
vnt::sketch::Ink longInk(double top)
{
    vnt::sketch::Ink ink;
    for (int i = 0; i < 400; ++i)
        ink.push_back({20 + 0.6 * i, top + 20 * std::sin(0.05 * i), 8.0 * i, 0.5 + 0.4 * std::sin(0.1 * i)});
    return ink;
}

QImage drawn(DrawnInk& drawnInk, const vnt::sketch::Ink& ink)
{
    QImage image = blank();
    QPainter painter(&image);
    drawnInk.paint(painter, ink, {}, {}, Qt::black, 6, {});
    return image;
}

TEST(DrawnInks, KeepNothingOfAStrokeBefore)
{
    DrawnInk drawnInk;
    const vnt::sketch::Ink first = longInk(60);
    const vnt::sketch::Ink second = longInk(200);
    drawn(drawnInk, first);
    drawn(drawnInk, {second.begin(), second.begin() + 20});
    DrawnInk fresh;
    EXPECT_EQ(drawn(drawnInk, second), drawn(fresh, second));
}

// At a scale of 64 a twentieth of a sheet pixel is three on the screen, more than is painted about a box.
TEST(StrokeArts, HaveABoxThatHoldsATurnedEllipse)
{
    for (const double turn : {0.0, 0.3, 0.7, 1.2}) {
        vnt::sketch::Stroke stroke;
        stroke.shape = vnt::sketch::Round{
            {{400, 300}, 250, 60, turn},
            0, 2 * vnt::sketch::kPi
        };
        const StrokeArt art(std::make_shared<const vnt::sketch::Stroke>(stroke));
        const Vec2 half{std::hypot(250 * std::cos(turn), 60 * std::sin(turn)),
                        std::hypot(250 * std::sin(turn), 60 * std::cos(turn))};
        EXPECT_NEAR(art.box.left(), 400 - half.x, 0.015) << turn;
        EXPECT_NEAR(art.box.right(), 400 + half.x, 0.015) << turn;
        EXPECT_NEAR(art.box.top(), 300 - half.y, 0.015) << turn;
        EXPECT_NEAR(art.box.bottom(), 300 + half.y, 0.015) << turn;
    }
}

TEST(WidthAt, GrowsWithThePressureFromAQuarter)
{
    EXPECT_EQ(widthAt(1, 8), 8);
    EXPECT_EQ(widthAt(0, 8), 2);
    EXPECT_EQ(widthAt(0.5, 8), 5);
    EXPECT_EQ(widthAt(7, 8), 8);
    EXPECT_EQ(widthAt(std::nan(""), 8), 8) << "of a device that does not know";
    EXPECT_EQ(widthAt(0, 1), 0.5) << "it still leaves a line";
    EXPECT_EQ(widthAt(0, 0.2), 0.2) << "but none broader than any other";
}

} // namespace
