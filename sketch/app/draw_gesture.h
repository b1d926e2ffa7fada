// A stroke while it is drawn: its ink under the pen, and what it becomes when the pen rests at its end.
#pragma once

#include "sketch/app/drawn_ink.h"
#include "sketch/app/gesture.h"
#include "sketch/app/offered_readings.h"
#include "sketch/app/tool.h"
#include "sketch/core/stabiliser.h"

#include <QTimer>

#include <functional>
#include <optional>

class DrawGesture : public Gesture {
public:
    // drawn: called with the stroke's id when the sketch has it.
    DrawGesture(CanvasStage& stage, OfferedReadings& offers, Tool tool, const PenSample& first,
                std::function<void(vnt::sketch::StrokeId)> drawn);

    void move(const PenSample& sample) override;
    void lift(const PenSample& sample) override;
    void cancel() override;
    void paint(QPainter& painter, const QRectF& within) const override;
    bool isStroke() const override { return true; }

private:
    void add(const PenSample& sample);
    void take(const vnt::sketch::Ink& more);
    void watchForRest(QPointF at);
    void rest();                                     // the pen has
    QRectF boxOf(const vnt::sketch::Ink& ink) const; // widget; of all that is painted of it
    // From one of its points on, and what the stabiliser still holds back.
    vnt::sketch::Ink inkFrom(std::size_t from) const;

    CanvasStage& m_stage;
    OfferedReadings& m_offers;
    const Tool m_tool;
    const std::function<void(vnt::sketch::StrokeId)> m_drawn;
    const double m_begun_ms;
    vnt::sketch::Stabiliser m_stabiliser;
    vnt::sketch::Ink m_ink;
    mutable DrawnInk m_drawnInk;
    double m_pressure = 1; // of the last sample that the pen was down
    QRectF m_endBox;       // widget; of the ink's end as it was painted last
    QTimer m_restTimer;
    QPointF m_restsAt; // widget
    QPointF m_pen;
    std::optional<QPointF> m_offeredAt; // widget; while a reading is offered
    bool m_isDragging = false;
    bool m_wasDropped = false; // what was offered: the ink is to stay
};
