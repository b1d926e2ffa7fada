// The hand: the sheet goes along with the pen, by whole pixels of the screen, so that what is painted only
// moves.
#pragma once

#include "sketch/app/canvas_stage.h"
#include "sketch/app/gesture.h"

class PanGesture : public Gesture {
public:
    PanGesture(CanvasStage& stage, const PenSample& first)
        : m_stage(stage), m_from(first.at), m_before(stage.view())
    {
    }

    void move(const PenSample& sample) override;
    void lift(const PenSample& sample) override { move(sample); }
    void cancel() override { m_stage.setView(m_before); }
    void paint(QPainter&, const QRectF&) const override {}

private:
    CanvasStage& m_stage;
    QPointF m_from; // widget
    CanvasView m_before;
};

// Moves the view, by whole pixels of the screen that the widget is on.
void panBy(CanvasStage& stage, const CanvasView& from, QPointF move);
