#include "sketch/app/line_coverage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr double kPi = 3.14159265358979323846;

// What a pixel may be off by, as the header says, and by what is rounded to one of 255.
constexpr double kAccuracy = 0.05 + 0.002;

using Line = std::vector<LinePoint>;

double shareAt(const QImage& image, const QRect& covered, int x, int y)
{
    if (!covered.contains(x, y))
        return 0;
    return qAlpha(image.pixel(x - covered.left(), y - covered.top())) / 255.0;
}

LineCoverage coverageOf(const std::vector<Line>& lines, const QRect& pixels = {0, 0, 100, 80})
{
    LineCoverage coverage(pixels);
    for (const Line& line : lines)
        coverage.add(line.data(), line.size());
    return coverage;
}

double sumOf(const LineCoverage& coverage)
{
    const QImage image = coverage.picture(Qt::black);
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += qAlpha(image.pixel(x, y)) / 255.0;
    }
    return sum;
}

struct AcrossCase {
    const char* name;
    double y;
    double radius;
    double shares[5]; // of the pixels from 38 to 42 down
};
// clang-format off
const AcrossCase kAcross[] = {
    {"OnWholePixels",       40,    1,    {0, 1, 1, 0, 0}      },
    {"BetweenPixels",       40.5,  1,    {0, 0.5, 1, 0.5, 0}  },
    {"AQuarterFurther",     40.25, 1,    {0, 0.75, 1, 0.25, 0}},
    {"ThinnerThanAPixel",   40.5,  0.25, {0, 0, 0.5, 0, 0}    },
    {"ThinOnAPixelsBorder", 40,    0.25, {0, 0.25, 0.25, 0, 0}},
};
// clang-format on
class LevelLines : public testing::TestWithParam<AcrossCase> {};
TEST_P(LevelLines, CoverWhatOfEachPixelLiesOnThem)
{
    const AcrossCase& its = GetParam();
    const LineCoverage coverage = coverageOf({
        {{10, its.y, its.radius}, {90, its.y, its.radius}}
    });
    const QImage image = coverage.picture(Qt::black);
    for (int i = 0; i < 5; ++i)
        EXPECT_NEAR(shareAt(image, coverage.covered(), 50, 38 + i), its.shares[i], 0.003) << 38 + i;
}
INSTANTIATE_TEST_SUITE_P(, LevelLines, testing::ValuesIn(kAcross),
                         [](const auto& row) { return row.param.name; });

// Counted in a grid of 8 by 8 in each pixel, which is off by 0.02 at most here.
TEST(LineCoverage, IsTheAreaOfEachPixel)
{
    // clang-format off
    const Line lines[] = {
        {{20, 20, 4}, {70, 47, 4}},
        {{20, 60, 1}, {70, 13, 8}},
        {{30.3, 40.7, 9}},
        {{30, 40, 0.25}},
        {{30.5, 40.5, 0.25}},
        {{30.2, 40.6, 0.35}},
        {{30.5, 40.5, 0.5}},
        {{30.3, 40.4, 0.5}},
        {{30, 40, 0.75}},
        {{30.9, 40.7, 0.75}},
        {{20, 30, 9}, {28, 30, 2}},
        {{20, 30, 2}, {22, 30, 9}},
    };
    // clang-format on
    for (const Line& line : lines) {
        const LineCoverage coverage = coverageOf({line});
        const QImage image = coverage.picture(Qt::black);
        const auto isWithin = [&](double x, double y) {
            for (int k = 0; k <= 100; ++k) {
                const double t = k / 100.0;
                const LinePoint& a = line.front();
                const LinePoint& b = line.back();
                if (std::hypot(x - a.x - t * (b.x - a.x), y - a.y - t * (b.y - a.y)) <=
                    a.radius + t * (b.radius - a.radius))
                    return true;
            }
            return false;
        };
        const int step = line.size() == 1 ? 1 : 5;
        for (int y = 0; y < 80; y += step) {
            for (int x = 0; x < 100; ++x) {
                int count = 0;
                for (int i = 0; i < 64; ++i)
                    count += isWithin(x + (i % 8 + 0.5) / 8, y + (i / 8 + 0.5) / 8) ? 1 : 0;
                ASSERT_NEAR(shareAt(image, coverage.covered(), x, y), count / 64.0, kAccuracy + 0.02)
                    << x << ' ' << y << " of a line from " << line.front().x << ' ' << line.front().y;
            }
        }
    }
}

TEST(LineCoverage, OfADiscIsItsArea)
{
    for (const double radius : {0.25, 0.5, 0.75, 1.0, 3.0, 12.0}) {
        // All around a large one, the rim is as soft as that of a straight side: that adds a twelfth to the
        // square of the radius.
        const double soft = radius < 1 ? 0 : 1 / 12.0;
        EXPECT_NEAR(sumOf(coverageOf({{{40.3, 40.6, radius}}})), kPi * (radius * radius + soft),
                    0.01 * kPi * radius * radius + 0.01)
            << radius;
    }
}

TEST(LineCoverage, IsTheSameInPieces)
{
    Line line;
    for (int i = 0; i < 200; ++i)
        line.push_back(
            {50 + 40 * std::cos(0.37 * i), 40 + 30 * std::sin(0.53 * i), 2 + 1.5 * std::sin(0.2 * i)});
    std::vector<Line> pieces;
    for (std::size_t i = 1; i < line.size(); ++i)
        pieces.push_back({line[i - 1], line[i]});
    const QImage whole = coverageOf({line}).picture(Qt::black);
    EXPECT_EQ(coverageOf(pieces).picture(Qt::black), whole);
    EXPECT_EQ(coverageOf(pieces).picture(Qt::black), whole);
}

// Curves are lines of short pieces.
TEST(LineCoverage, OfACircleDoesNotDependOnItsPieces)
{
    for (const double radius : {0.3, 0.5, 0.8, 1.0, 3.0}) {
        std::vector<QImage> images;
        for (const int count : {60, 200, 1000}) {
            Line line;
            for (int i = 0; i <= count; ++i)
                line.push_back({50.3 + 20 * std::cos(2 * kPi * i / count),
                                40.4 + 20 * std::sin(2 * kPi * i / count), radius});
            images.push_back(coverageOf({line}).picture(Qt::black));
            EXPECT_NEAR(sumOf(coverageOf({line})), 2 * kPi * 20 * 2 * radius,
                        0.01 * 2 * kPi * 20 * 2 * radius)
                << count << " pieces with a radius of " << radius;
        }
        for (int y = 0; y < images[1].height(); ++y) {
            for (int x = 0; x < images[1].width(); ++x)
                ASSERT_NEAR(qAlpha(images[1].pixel(x, y)), qAlpha(images[2].pixel(x, y)), 255 * kAccuracy)
                    << radius;
        }
    }
}

// Two lines that touch along a pixel's middle, and a corner so acute that its legs nearly do.
TEST(LineCoverage, OfPiecesOnOppositeSidesIsWhatTheyCoverTogether)
{
    const LineCoverage touching = coverageOf({
        {{10, 20.5, 3}, {90, 20.5, 3}, {90, 26.5, 3}, {10, 26.5, 3}}
    });
    const QImage image = touching.picture(Qt::black);
    EXPECT_GE(shareAt(image, touching.covered(), 50, 23), 0.99);
    const LineCoverage corner = coverageOf({
        {{10, 20, 3}, {90, 24, 3}, {10, 28, 3}}
    });
    // Between the legs, 2.996 wide each, lies a wedge without cover.
    const double wedge =
        0.5 * (8 - 2 * 3 * std::hypot(80, 4) / 80) * 80 * (8 - 2 * 3 * std::hypot(80, 4) / 80) / 8;
    double open = 0;
    const QImage legs = corner.picture(Qt::black);
    for (int x = 10; x < 90; ++x) {
        for (int y = 22; y < 26; ++y)
            open += 1 - shareAt(legs, corner.covered(), x, y);
    }
    EXPECT_NEAR(open, wedge, 0.05 * wedge);
}

TEST(LineCoverage, IsNoMoreWhereTheLineMeetsItself)
{
    const LineCoverage coverage = coverageOf({
        {{10, 10, 3}, {90, 70, 3}, {90, 10, 3}, {10, 70, 3}, {10, 10, 3}, {90, 70, 3}}
    });
    const QColor half(200, 100, 50, 128);
    const QImage image = coverage.picture(half);
    int most = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            most = std::max(most, qAlpha(image.pixel(x, y)));
    }
    EXPECT_EQ(most, 128);
    EXPECT_EQ(image.pixelColor(50 - coverage.covered().left(), 40 - coverage.covered().top()).alpha(), 128);
}

TEST(LineCoverage, OfAPartIsThatOfTheWholeThere)
{
    const Line line{
        {-30,  20, 5},
        {60,   50, 2},
        {1e12, 60, 2}
    };
    const LineCoverage whole = coverageOf({line});
    const QRect there(33, 21, 40, 30);
    const LineCoverage part = whole.part(there);
    const LineCoverage own = coverageOf({line}, there);
    const QImage partly = part.picture(Qt::black);
    const QImage alone = own.picture(Qt::black);
    const QImage all = whole.picture(Qt::black);
    for (int y = there.top(); y <= there.bottom(); ++y) {
        for (int x = there.left(); x <= there.right(); ++x) {
            ASSERT_EQ(shareAt(partly, part.covered(), x, y), shareAt(all, whole.covered(), x, y));
            ASSERT_EQ(shareAt(alone, own.covered(), x, y), shareAt(all, whole.covered(), x, y));
        }
    }
    EXPECT_GT(sumOf(part), 50);
}

// Its places lie on a line through the picture, however far along.
TEST(LineCoverage, IsTheSameWhereverTheLineEnds)
{
    const LinePoint middle{50.3, 40.2, 2.5};
    const auto along = [&](double way, double wider) {
        return LinePoint{middle.x + 0.8 * way, middle.y + 0.6 * way, middle.radius + wider};
    };
    const LineCoverage near = coverageOf({
        {along(-200, 0), along(200, 0)}
    });
    const QImage expected = near.picture(Qt::black);
    for (const double far : {3e4, 1e5, 1e6, 1e8}) {
        // It grows, but not by what one sees in so short a part.
        for (const Line& line : {
                 Line{along(-far, 0),    along(far,      0)         },
                 Line{along(far,  0),    along(-2 * far, 0)         },
                 Line{along(-300, 0),    along(far,      far * 1e-7)},
                 Line{along(-far, -0.5), along(far,      0.5)       }
        }) {
            const LineCoverage coverage = coverageOf({line});
            const QImage image = coverage.picture(Qt::black);
            for (int y = 0; y < 80; ++y) {
                for (int x = 0; x < 100; ++x)
                    ASSERT_NEAR(shareAt(image, coverage.covered(), x, y),
                                shareAt(expected, near.covered(), x, y), 0.02)
                        << x << ' ' << y << " of a line to " << line.back().x;
            }
        }
    }
}

TEST(LineCoverage, OfWhatLiesElsewhereIsNothing)
{
    EXPECT_TRUE(coverageOf({
                               {{-20, 10, 5}, {-10, 70, 5}}
    })
                    .covered()
                    .isEmpty());
    EXPECT_TRUE(coverageOf({{{1e300, 10, 5}}}).covered().isEmpty());
    EXPECT_TRUE(coverageOf({{{10, 10, 5}}}, QRect()).covered().isEmpty());
    for (const double none : {std::nan(""), std::numeric_limits<double>::infinity()}) {
        // clang-format off
        for (const LinePoint& nowhere : {LinePoint{none, 10, 5}, LinePoint{10, none, 5}, LinePoint{10, 10, none}}) {
            const Line lines[] = {
                {nowhere},
                {nowhere, {20, 20, 5}},
                {{20, 20, 5}, nowhere},
                {nowhere, nowhere},
            };
            // clang-format on
            for (const Line& line : lines)
                EXPECT_TRUE(coverageOf({line}).covered().isEmpty()) << nowhere.x << ' ' << nowhere.y;
        }
    }
    LineCoverage coverage = coverageOf({{{10, 10, 5}}});
    coverage.reset({0, 0, 10, 10});
    EXPECT_TRUE(coverage.covered().isEmpty());
}

} // namespace
