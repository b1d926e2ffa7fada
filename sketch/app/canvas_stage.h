// What tools act on: the sketch, how it lies in the widget, and which part of it has to be painted anew.
//
// Space:  widget pixels where nothing else is said.
#pragma once

#include "sketch/app/canvas_colours.h"
#include "sketch/app/canvas_settings.h"
#include "sketch/app/canvas_view.h"
#include "sketch/app/sheet_backing.h"
#include "sketch/app/sketch_model.h"
#include "sketch/app/stroke_painter.h"
#include "sketch/core/recognition.h"
#include "sketch/core/snapping.h"

#include <QDeadlineTimer>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <optional>
#include <unordered_set>
#include <vector>

class CanvasStage {
public:
    CanvasStage(SketchModel& model, QWidget& widget);

    SketchModel& model;
    QWidget& widget;
    CanvasSettings settings;
    CanvasColours colours = CanvasColours::light();
    StrokeArts arts;

    const CanvasView& view() const { return m_view; }
    // The only way to change it: what is painted follows, and viewMoved is called.
    void setView(const CanvasView& view);
    std::function<void()> viewMoved = [] {};

    double onSheet(double pixels) const { return pixels / m_view.scale(); }
    vnt::sketch::Vec2 sheetPlace(QPointF at) const;
    QRectF inWidget(const QRectF& sheet) const { return m_view.sheetToWidget().mapRect(sheet); }
    // Of a stroke, with the width of its pen.
    QRectF boxInWidget(const StrokeArt& art) const;

    StrokeLook look() const;
    // Of what is about to go, or to become something else: share 1 is hardly there.
    StrokeLook fadedLook(double share) const;
    vnt::sketch::RecognitionSettings recognition() const;
    std::optional<vnt::sketch::SnapSettings> snapping() const; // none: all is switched off
    // What can be snapped to but for these strokes.
    vnt::sketch::SnapScene snapScene(const std::unordered_set<vnt::sketch::StrokeId>& without) const;

    // What lies over the sheet has changed there.
    void update(const QRectF& box);
    // What lies on it has.
    void spoil(const QRectF& box);
    void spoilAll();
    // Strokes that something else paints meanwhile; the sheet does without them.
    void pickUp(const std::vector<vnt::sketch::StrokeId>& ids);
    void layDown();

    // The backing's, in a paint event of the widget.
    void show(QPainter& painter, const QRect& rect);

private:
    // Whether all can be painted within a frame.
    bool isQuick() const;
    void paintSheet(QPainter& painter, const QRectF& within) const;
    // From the stroke at the index on, until the deadline.
    std::optional<std::size_t> paintStrokes(QPainter& painter, const QRectF& within, std::size_t from,
                                            QDeadlineTimer deadline) const;
    void paintPart(QDeadlineTimer deadline);
    void endPreview();

    QTimer m_partTimer; // when the next part of a view that has come to rest is painted
    SheetBacking m_backing;
    CanvasView m_view;
    std::unordered_set<vnt::sketch::StrokeId> m_pickedUp;
};
