// Sketches as pictures, for programs that know nothing of sketches.
//
// Space:  a picture shows the sheet, or the part of it (or beyond) that the sketch covers. An SVG's user units
//         are sheet pixels; its size is the artwork's, in points.
// Errors: a sketch that would make too large a picture gives a null image.
#pragma once

#include "sketch/app/settings_store.h"
#include "sketch/core/sheet.h"
#include "sketch/core/stroke.h"

#include <QByteArray>
#include <QImage>
#include <QRectF>

#include <functional>
#include <vector>

class QPainter;

// The part of the sheet that the picture shows. The sheet, when there are no strokes.
QRectF pictureBox(const std::vector<vnt::sketch::StrokePtr>& strokes, const vnt::sketch::Sheet& sheet,
                  const PictureSettings& settings);

// Shapes are elements of their kind, ink is a smooth path of one width.
QByteArray svgOf(const std::vector<vnt::sketch::StrokePtr>& strokes, const vnt::sketch::Sheet& sheet,
                 const PictureSettings& settings);

// paint: paints the sketch, in sheet space.
QImage imageOf(const QRectF& box, const PictureSettings& settings,
               const std::function<void(QPainter&)>& paint);
