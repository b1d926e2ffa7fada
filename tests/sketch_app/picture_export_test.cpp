#include "sketch/app/picture_export.h"

#include "sketch/core/shape_outline.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QSvgRenderer>

#include <memory>
#include <string>

namespace {

using namespace vnt::sketch;

StrokePtr strokeOf(Kind kind, Shape shape)
{
    Stroke stroke;
    stroke.id = 1;
    stroke.kind = kind;
    stroke.shape = std::move(shape);
    return std::make_shared<const Stroke>(std::move(stroke));
}

std::string svg(const StrokePtr& stroke)
{
    PictureSettings settings;
    settings.transparent = true;
    return svgOf({stroke}, Sheet(), settings).toStdString();
}

struct ElementCase {
    const char* name;
    Kind kind;
    Shape shape;
    const char* element;
};
const ElementCase kElements[] = {
    {"ALineIsAPolyline",                   Kind::line,       Straight{{{1, 2}, {30.5, 40.25}}, false},
     "<polyline points=\"1,2 30.5,40.25\"/>"                                            },
    {"ATriangleIsAPolygon",                Kind::triangle,   Straight{{{0, 0}, {10, 0}, {0, 10}}, true},
     "<polygon points=\"0,0 10,0 0,10\"/>"                                              },
    {"ACircleIsACircle",                   Kind::circle,     Round{{{50, 60}, 20, 20, 0}, 0, 2 * kPi},
     "<circle cx=\"50\" cy=\"60\" r=\"20\"/>"                                           },
    {"ACircleDrawnTheOtherWayIsOneAsWell", Kind::circle,     Round{{{50, 60}, 20, 20, 0}, 1, -2 * kPi},
     "<circle cx=\"50\" cy=\"60\" r=\"20\"/>"                                           },
    {"ACircleButForRoundingIsOneAsWell",   Kind::circle,     Round{{{50, 60}, 20, 20, 0}, 1, 2 * kPi - 1e-12},
     "<circle cx=\"50\" cy=\"60\" r=\"20\"/>"                                           },
    {"AnEllipseIsATurnedEllipse",          Kind::ellipse,    Round{{{50, 60}, 20, 10, kPi / 6}, 0, 2 * kPi},
     "<ellipse cx=\"50\" cy=\"60\" rx=\"20\" ry=\"10\" transform=\"rotate(30 50 60)\"/>"},
    {"AFreeCurveIsItsSegments",            Kind::free_curve, Curve{{{0, 0}, {1, 2}, {3, 4}, {5, 6}}, false},
     "<path d=\"M0 0 C1 2 3 4 5 6\"/>"                                                  },
    {"AClosedCurveIsClosed",               Kind::free_curve, Curve{{{0, 0}, {1, 2}, {3, 4}, {0, 0}}, true},
     "<path d=\"M0 0 C1 2 3 4 0 0 Z\"/>"                                                },
};
class SvgElements : public testing::TestWithParam<ElementCase> {};
TEST_P(SvgElements, SayWhatTheShapeIs)
{
    const std::string document = svg(strokeOf(GetParam().kind, GetParam().shape));
    EXPECT_NE(document.find(std::string(">\n") + GetParam().element + "\n</g>"), std::string::npos)
        << document;
}
INSTANTIATE_TEST_SUITE_P(, SvgElements, testing::ValuesIn(kElements),
                         [](const auto& row) { return row.param.name; });

TEST(PictureExport, GivesAnSvgTheArtworksSize)
{
    const std::string document = svg(strokeOf(Kind::line, Straight{
                                                              {{0, 0}, {9, 9}},
                                                              false
    }));
    // A4 across at 96 pixels an inch: three quarters of a point a pixel.
    EXPECT_NE(document.find("width=\"842.25pt\" height=\"595.5pt\" viewBox=\"0 0 1123 794\""),
              std::string::npos)
        << document;
}

TEST(PictureExport, ShowsInASvgWhatAnotherProgramDraws)
{
    PictureSettings settings;
    settings.lineWidth = 6;
    const QByteArray document = svgOf(
        {
            strokeOf(Kind::circle, Round{{{500, 400}, 200, 200, 0}, 0, 2 * kPi}
             )
    },
        Sheet(), settings);
    QSvgRenderer renderer(document);
    ASSERT_TRUE(renderer.isValid());
    QImage image(1123, 794, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();
    EXPECT_EQ(image.pixel(700, 400), qRgb(0, 0, 0)) << "on the circle";
    EXPECT_EQ(image.pixel(500, 400), qRgb(255, 255, 255)) << "within it";
}

TEST(PictureExport, ShowsOfTheSketchAloneWhatItCovers)
{
    PictureSettings settings;
    settings.area = PictureArea::sketch;
    const QRectF box = pictureBox(
        {
            strokeOf(Kind::line, Straight{{{100, 200}, {300, 250}}, false}
             )
    },
        Sheet(), settings);
    EXPECT_EQ(box, QRectF(96, 196, 208, 58)) << "and a margin of 4 pixels";
    EXPECT_EQ(pictureBox({}, Sheet(), settings), QRectF(0, 0, 1123, 794))
        << "the sheet, when nothing is drawn";
}

TEST(PictureExport, ScalesAnImageFromItsBox)
{
    PictureSettings settings;
    settings.scale = 3;
    const QImage image = imageOf(QRectF(10, 20, 30, 40), settings, [](QPainter& painter) {
        painter.fillRect(QRectF(10, 20, 5, 5), Qt::black);
    });
    EXPECT_EQ(image.size(), QSize(90, 120));
    EXPECT_EQ(image.pixel(14, 14), qRgb(0, 0, 0));
    EXPECT_EQ(image.pixel(16, 16), qRgb(255, 255, 255));
    settings.transparent = true;
    EXPECT_EQ(qAlpha(imageOf(QRectF(0, 0, 5, 5), settings, [](QPainter&) {}).pixel(1, 1)), 0);
}

TEST(PictureExport, RefusesWhatIsTooLargeForAnImage)
{
    PictureSettings settings;
    settings.scale = 16;
    EXPECT_TRUE(imageOf(QRectF(0, 0, 4000, 10), settings, [](QPainter&) { ADD_FAILURE(); }).isNull());
}

} // namespace
