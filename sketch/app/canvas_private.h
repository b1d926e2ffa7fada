// The inside of the canvas: which tool's gesture is under way, and what is painted over the sheet.
#pragma once

#include "sketch/app/offered_readings.h"
#include "sketch/app/pen_input.h"
#include "sketch/app/sketch_canvas.h"

#include <memory>

class SketchCanvas::Private : public PenTarget {
public:
    Private(SketchModel& model, SketchCanvas& owner);

    void penDown(const PenSample& sample, Use use) override;
    void penMoved(const PenSample& sample) override;
    void penLifted(const PenSample& sample) override;
    void penCancelled() override;
    void hovered(QPointF at) override;
    void pinched(const Pinch& pinch) override;
    bool fingersDraw() const override { return stage.settings.fingersDraw; }

    // Ends the gesture first: what is drawn was drawn in the old view.
    void changeView(const std::function<void(CanvasView&)>& change);
    bool isDrawing() const { return m_gesture && m_gesture->isStroke(); }
    bool isGesturing() const { return m_gesture != nullptr; }
    void finishGesture();
    void cancelGesture();
    void settle(); // as SketchCanvas's
    // The one that Tab would offer the readings of; 0: none.
    vnt::sketch::StrokeId strokeForTab() const;
    bool isTabOurs() const; // whatever is done with it
    void moveSelection(QPointF pixels);
    void setSpace(bool isHeld);
    void showCursor();
    void paint(QPainter& painter, const QRect& rect);

    SketchCanvas& q;
    CanvasStage stage;
    OfferedReadings offers;
    PenInput input;
    Tool tool = Tool::pen;
    vnt::sketch::StrokeId lastDrawn = 0;

private:
    void followModel(SketchModel& model);
    std::unique_ptr<Gesture> gestureFor(const PenSample& sample, Use use);
    void paintSelection(QPainter& painter) const;
    void updateSelection();
    QPolygonF selectionBox() const; // widget; empty when nothing is selected

    std::unique_ptr<Gesture> m_gesture;
    PenSample m_last;
    QSizeF m_sheetSize; // that the view was centred for
    bool m_isSpaceHeld = false;
};
