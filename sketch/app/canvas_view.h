// How the sheet lies in the widget: how large, how far turned, and which of its points is in the middle.
//
// Space:  widget positions are device independent pixels with fractions, y down.
// Units:  degrees, clockwise as one sees them; a scale is widget pixels a sheet pixel.
#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QTransform>

class CanvasView {
public:
    static constexpr double kLeastScale = 1.0 / 64;
    static constexpr double kMostScale = 64;

    QTransform sheetToWidget() const;
    QPointF toSheet(QPointF widget) const;
    QPointF toWidget(QPointF sheet) const { return sheetToWidget().map(sheet); }
    double scale() const { return m_scale; }
    double rotation() const { return m_rotation; } // from -180 to below 180

    // What is in the middle stays there.
    void setSize(QSizeF size) { m_size = size; }
    QSizeF size() const { return m_size; }
    QPointF middle() const { return {m_size.width() / 2, m_size.height() / 2}; }

    // about: the widget point that keeps its place on the sheet.
    void setScale(double scale, QPointF about);
    void setRotation(double degrees, QPointF about);
    void moveBy(QPointF widget);
    void centreOn(QPointF sheet) { m_centre = sheet; }
    // All of the rectangle, with a margin, as it is turned now.
    void fit(const QRectF& sheet);

    friend bool operator==(const CanvasView&, const CanvasView&) = default;

private:
    QSizeF m_size{1, 1};
    QPointF m_centre; // sheet
    double m_scale = 1;
    double m_rotation = 0;
};
