#include "sketch/app/picture_export.h"

#include "sketch/app/outline_text.h"
#include "sketch/app/stroke_painter.h"
#include "sketch/core/ink_line.h"
#include "sketch/core/ink_outline.h"
#include "sketch/core/shape_outline.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

using namespace vnt::sketch;

namespace {

// Sheet pixels; finer than anybody sees at 16 times the size.
constexpr double kTolerance = 0.02;

// Sheet pixels; the outline of ink of many breadths is longer than its line, and may be as far off as nobody sees on
// a screen.
constexpr double kOutline = 0.06;
// By which the radii of ink may differ that is taken for even.
constexpr double kEvenRadius = 0.05;

// Beyond this many pixels in either direction Qt's painter is not made for.
constexpr double kMostPixels = 32767;

// To a ten thousandth of a sheet pixel.
QByteArray text(double number) { return shortDigits(number, 4); }

QByteArray text(Vec2 p) { return text(p.x) + ' ' + text(p.y); }

QByteArray attribute(const char* name, double number)
{
    return QByteArray(" ") + name + "=\"" + text(number) + '"';
}

QByteArray pathOf(const Path& cubics, bool closed, const QByteArray& attributes = {})
{
    QByteArray data = "M" + text(cubics.front());
    for (std::size_t i = 0; i + 3 < cubics.size(); i += 4)
        data += " C" + text(cubics[i + 1]) + ' ' + text(cubics[i + 2]) + ' ' + text(cubics[i + 3]);
    return "<path" + attributes + " d=\"" + data + (closed ? " Z\"/>" : "\"/>");
}

QByteArray elementOf(const Straight& straight)
{
    QByteArray points;
    for (const Vec2 p : straight.corners)
        points += (points.isEmpty() ? "" : " ") + text(p.x) + ',' + text(p.y);
    return QByteArray(straight.closed ? "<polygon" : "<polyline") + " points=\"" + points + "\"/>";
}

QByteArray elementOf(const Ellipse& ellipse)
{
    const QByteArray centre = attribute("cx", ellipse.centre.x) + attribute("cy", ellipse.centre.y);
    if (ellipse.major == ellipse.minor)
        return "<circle" + centre + attribute("r", ellipse.major) + "/>";
    return "<ellipse" + centre + attribute("rx", ellipse.major) + attribute("ry", ellipse.minor) +
           " transform=\"rotate(" + text(ellipse.rotation * 180 / kPi) + ' ' + text(ellipse.centre) + ")\"/>";
}

// As wide as the pen was pressed.
QByteArray elementOfInk(const Stroke& stroke, double lineWidth)
{
    constexpr const char* kFilled = " fill=\"#000\" stroke=\"none\"";
    const InkLine line = ink_line(stroke.ink);
    if (line.places.empty())
        return {};
    std::vector<double> radii;
    for (const float pressure : line.pressures)
        radii.push_back(widthAt(double{pressure}, lineWidth) / 2);
    const auto [least, most] = std::minmax_element(radii.begin(), radii.end());
    const double width = *least + *most; // twice the mean radius
    if (line.places.size() == 1)
        return "<circle" + attribute("cx", line.places[0].x) + attribute("cy", line.places[0].y) +
               attribute("r", radii[0]) + kFilled + "/>";
    if (*most - *least > kEvenRadius)
        return QByteArray("<path") + kFilled + " d=\"" +
               outlineText(ink_outline(line.places, radii, kOutline)) + "\"/>";
    return pathOf(cubics_of(stroke, kTolerance), false,
                  std::abs(width - lineWidth) > kTolerance ? attribute("stroke-width", width) : QByteArray());
}

QByteArray elementOf(const Stroke& stroke, double lineWidth)
{
    if (std::holds_alternative<std::monostate>(stroke.shape))
        return elementOfInk(stroke, lineWidth);
    if (const auto* straight = std::get_if<Straight>(&stroke.shape))
        return elementOf(*straight);
    const auto* round = std::get_if<Round>(&stroke.shape);
    if (round != nullptr && isClosed(stroke.shape))
        return elementOf(round->ellipse);
    const Path cubics = cubics_of(stroke, kTolerance);
    const auto* curve = std::get_if<Curve>(&stroke.shape);
    return cubics.empty() ? QByteArray() : pathOf(cubics, curve != nullptr && curve->closed);
}

QRectF boxOf(const std::vector<StrokePtr>& strokes)
{
    Path all;
    for (const StrokePtr& stroke : strokes) {
        const Path line = flattened(cubics_of(*stroke, kTolerance), kTolerance);
        all.insert(all.end(), line.begin(), line.end());
    }
    const Box box = box_of(all);
    return {box.least.x, box.least.y, box.width(), box.height()};
}

} // namespace

QRectF pictureBox(const std::vector<StrokePtr>& strokes, const Sheet& sheet, const PictureSettings& settings)
{
    const QRectF whole(0, 0, sheet.width, sheet.height);
    if (settings.area == PictureArea::sheet || strokes.empty())
        return whole;
    const double margin = std::max(4.0, 2 * settings.lineWidth); // so that round ends are not cut
    return boxOf(strokes).adjusted(-margin, -margin, margin, margin);
}

QByteArray svgOf(const std::vector<StrokePtr>& strokes, const Sheet& sheet, const PictureSettings& settings)
{
    const QRectF box = pictureBox(strokes, sheet, settings);
    const double points = sheet.sheet_to_model.mean_scale(); // a sheet pixel
    const double scale = std::isfinite(points) && points > 0 ? points : Sheet().sheet_to_model.mean_scale();
    QByteArray svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                     "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"" +
                     text(box.width() * scale) + "pt\" height=\"" + text(box.height() * scale) +
                     "pt\" viewBox=\"" + text(box.x()) + ' ' + text(box.y()) + ' ' + text(box.width()) + ' ' +
                     text(box.height()) + "\">\n";
    if (!settings.transparent)
        svg += "<rect" + attribute("x", box.x()) + attribute("y", box.y()) + attribute("width", box.width()) +
               attribute("height", box.height()) + " fill=\"#fff\"/>\n";
    svg += "<g fill=\"none\" stroke=\"#000\" stroke-linecap=\"round\" stroke-linejoin=\"round\"" +
           attribute("stroke-width", settings.lineWidth) + ">\n";
    for (const StrokePtr& stroke : strokes) {
        const QByteArray element = elementOf(*stroke, settings.lineWidth);
        svg += element.isEmpty() ? element : element + '\n';
    }
    return svg + "</g>\n</svg>\n";
}

QImage imageOf(const std::vector<StrokePtr>& strokes, const Sheet& sheet, const PictureSettings& settings)
{
    const QRectF box = pictureBox(strokes, sheet, settings);
    const double width = std::ceil(box.width() * settings.scale);
    const double height = std::ceil(box.height() * settings.scale);
    if (!(width >= 1 && height >= 1 && width <= kMostPixels && height <= kMostPixels))
        return {};
    QImage image(static_cast<int>(width), static_cast<int>(height), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        return image; // no memory for it
    image.fill(settings.transparent ? Qt::transparent : Qt::white);
    QPainter painter(&image);
    painter.scale(settings.scale, settings.scale);
    painter.translate(-box.topLeft());
    for (const StrokePtr& stroke : strokes)
        paintStroke(painter, StrokeArt(stroke), {}, {Qt::black, Qt::black, settings.lineWidth});
    return image;
}
