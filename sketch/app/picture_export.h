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

#include <vector>

// The part of the sheet that the picture shows. The sheet, when there are no strokes.
QRectF pictureBox(const std::vector<vnt::sketch::StrokePtr>& strokes, const vnt::sketch::Sheet& sheet,
                  const PictureSettings& settings);

// Black on white, or on nothing. Shapes are elements of their kind; ink is a smooth path, or where the pen was not
// pressed evenly its outline, filled: within a quarter of a sheet pixel it is what the image shows.
QByteArray svgOf(const std::vector<vnt::sketch::StrokePtr>& strokes, const vnt::sketch::Sheet& sheet,
                 const PictureSettings& settings);

// The same picture, in pixels.
QImage imageOf(const std::vector<vnt::sketch::StrokePtr>& strokes, const vnt::sketch::Sheet& sheet,
               const PictureSettings& settings);
