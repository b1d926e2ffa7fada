// A picture of what lies still: painted once, shown often, and painted anew only where something has changed.
//
// Space:  the picture has the screen's own pixels; rectangles are given in the widget's, which are larger by
//         the screen's ratio.
#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRegion>
#include <QTransform>

#include <cstddef>
#include <functional>
#include <optional>

class SheetBacking {
public:
    // Paints all that lies within the rectangle; the painter is in widget pixels, and clipped.
    using Paint = std::function<void(QPainter&, const QRectF&)>;

    // Paints strokes from the given one on, as many as there is time for, and returns the one to go on with;
    // none when all are painted.
    using PaintPart = std::function<std::optional<std::size_t>(QPainter&, const QRectF&, std::size_t)>;

    // size: of the widget. offset: of the widget's origin from the screen's pixels, in these: 0 or more,
    //       below 1.
    // When it is only the size that has changed, what was there stays; else all has to be painted anew.
    void setScreen(QSize size, qreal ratio, QPointF offset);

    void spoil();
    void spoil(const QRectF& widget);
    // What is there moves by whole pixels of the screen, and what comes in is spoilt.
    void scroll(QPoint pixels);

    // Shows what is there under a map of the widget, until all has been painted anew in parts.
    void preview(const QTransform& map, const QColor& ground);
    bool isPreview() const { return m_preview.has_value(); }
    bool isSpoilt() const { return !m_spoilt.isEmpty(); } // some of it
    // One part; true when it was the last, and the preview is over.
    bool paintPart(const PaintPart& paint);

    // Paints what is spoilt of the rectangle and shows it. The painter's map must be the widget's own.
    void show(QPainter& painter, const QRect& widget, const Paint& paint);

private:
    QRect onScreen(const QRectF& widget) const;
    void paintSpoilt(const QRect& pixels, const Paint& paint);
    void preparePainter(QPainter& painter, const QRect& piece) const;
    QRectF inWidget(const QRect& pixels) const;

    QImage m_picture;
    QRegion m_spoilt; // pixels
    qreal m_ratio = 1;
    QPointF m_offset;
    std::optional<QTransform> m_preview; // from the picture's widget pixels to those of now
    QColor m_ground;                     // where the preview has nothing
    QImage m_next;                       // takes the picture's place
    std::size_t m_nextFrom = 0;
};
