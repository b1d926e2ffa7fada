// The eraser: whole strokes that it crosses go, all of one way of it in one step.
#pragma once

#include "sketch/app/canvas_stage.h"
#include "sketch/app/gesture.h"

#include <unordered_set>
#include <vector>

class EraseGesture : public Gesture {
public:
    static constexpr double kReach = 6; // screen pixels about the pen

    EraseGesture(CanvasStage& stage, const PenSample& first);

    void move(const PenSample& sample) override;
    void lift(const PenSample& sample) override;
    void cancel() override;
    void paint(QPainter& painter, const QRectF& within) const override;

private:
    CanvasStage& m_stage;
    QPointF m_last; // widget
    std::vector<vnt::sketch::StrokeId> m_crossed;
    std::unordered_set<vnt::sketch::StrokeId> m_known; // the same, to look them up
};
