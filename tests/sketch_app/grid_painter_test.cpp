// The grid: which lines are painted, how many of them, and that they stay on the sheet.
#include "sketch/app/grid_painter.h"

#include <gtest/gtest.h>

#include <QImage>

#include <string>

namespace {

using vnt::sketch::Grid;
using vnt::sketch::Sheet;

struct StepCase {
    const char* name;
    double pixelsApart;
    int subdivisions;
    int step;
};
const StepCase kSteps[] = {
    {"WideOnesAreAllPainted",             5,     4,  1        },
    {"DenseOnesAreTheMainOnes",           4.99,  4,  4        },
    {"DenseMainOnesAreEverySecond",       0.7,   4,  8        },
    {"DenserOnesAreEveryFifth",           0.26,  4,  20       },
    {"ThenEveryTenth",                    0.126, 4,  40       },
    {"WithoutSubdivisionsByTwos",         4,     1,  2        },
    {"NoneOfWhatHasNoWidth",              0,     1,  1'000'000},
    {"NoneThatLiesCloserThanAnyScreenIs", 1e-9,  10, 1'000'000},
};
class GridSteps : public testing::TestWithParam<StepCase> {};
TEST_P(GridSteps, ThinOut)
{
    EXPECT_EQ(gridStep(GetParam().pixelsApart, GetParam().subdivisions), GetParam().step);
}
INSTANTIATE_TEST_SUITE_P(, GridSteps, testing::ValuesIn(kSteps),
                         [](const auto& row) { return row.param.name; });

const QColor kFine = Qt::green;
const QColor kMain = Qt::red;

QImage painted(const Sheet& sheet, const QTransform& sheetToWidget)
{
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    paintGrid(painter, sheet, sheetToWidget, image.rect(), image.rect(), {kFine, kMain});
    return image;
}

// A row as one letter a pixel: main, fine, or nothing.
std::string row(const QImage& image, int y)
{
    std::string letters;
    for (int x = 0; x < image.width(); ++x) {
        const QColor colour = image.pixelColor(x, y);
        letters += colour == kMain ? 'M' : colour == kFine ? 'f' : colour == QColor(Qt::white) ? '.' : '?';
    }
    return letters;
}

Sheet sheetWith(vnt::sketch::Affine gridToSheet, int subdivisions)
{
    Sheet sheet;
    sheet.width = 60;
    sheet.height = 50;
    sheet.grid = Grid{gridToSheet, subdivisions};
    return sheet;
}

TEST(GridPainter, PaintsFineAndMainLinesOnTheSheetAlone)
{
    const QImage image = painted(sheetWith({10, 0, 0, 10, 0, 0}, 3), QTransform::fromTranslate(5, 5));
    const std::string rest(34, '.');
    EXPECT_EQ(row(image, 12), ".....M.........f.........f.........M.........f.........f.........M" + rest);
    EXPECT_EQ(row(image, 3), std::string(100, '.'));
    EXPECT_EQ(row(image, 56), std::string(100, '.'));
    EXPECT_EQ(row(image, 35).substr(5, 60), std::string(60, 'M')) << "main lines lie over fine ones";
}

TEST(GridPainter, TakesTheGridsOwnPlaceAndScale)
{
    const QImage image = painted(sheetWith({8, 0, 0, 8, 3, 4}, 100), QTransform::fromScale(2, 2));
    const std::string line = row(image, 1);
    EXPECT_EQ(line.find_first_of("fM"), 6U);
    EXPECT_EQ(line.find_first_of("fM", 7), 22U);
}

TEST(GridPainter, PaintsAnObliqueGridWithinTheSheet)
{
    const QImage image = painted(sheetWith({8, 5, -5, 8, 0, 0}, 1), QTransform::fromTranslate(20, 20));
    int outside = 0;
    int inside = 0;
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 100; ++x) {
            const bool isPainted = image.pixelColor(x, y) != QColor(Qt::white);
            const bool isOnSheet = x >= 19 && x <= 80 && y >= 19 && y <= 70;
            (isOnSheet ? inside : outside) += isPainted ? 1 : 0;
        }
    }
    EXPECT_EQ(outside, 0);
    EXPECT_GT(inside, 500);
}

TEST(GridPainter, PaintsNothingOfAGridThatIsNone)
{
    const Sheet sheets[] = {sheetWith({0, 0, 0, 0, 0, 0}, 1), sheetWith({1, 1, 1, 1, 0, 0}, 1),
                            sheetWith({1e-300, 0, 0, 1e-300, 0, 0}, 1), Sheet()};
    QImage white(100, 100, QImage::Format_RGB32);
    white.fill(Qt::white);
    for (const Sheet& sheet : sheets)
        EXPECT_EQ(painted(sheet, {}), white);
}

} // namespace
