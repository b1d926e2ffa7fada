// The selecting tool: a click takes a stroke, a band takes what lies in it, and what is selected can be
// moved.
//
// With Shift a click adds or takes away, a band adds. What is moved snaps with its ends, corners and centres.
#pragma once

#include "sketch/app/canvas_stage.h"
#include "sketch/app/gesture.h"

#include <functional>
#include <optional>
#include <vector>

class SelectGesture : public Gesture {
public:
    static constexpr double kReach = 6; // screen pixels about the pen

    SelectGesture(CanvasStage& stage, const PenSample& first, std::function<void(const QString&)> snappedTo);

    void move(const PenSample& sample) override;
    void lift(const PenSample& sample) override;
    void cancel() override;
    void paint(QPainter& painter, const QRectF& within) const override;
    bool isMoving() const { return m_isDragging && m_way == Way::move; }

private:
    enum class Way { band, move };

    bool isSelected(vnt::sketch::StrokeId id) const;
    bool isInSelection(QPointF at) const; // in the box of what is selected
    void startMoving();
    void moveTo(QPointF at, bool isSnapping);
    void click(bool isAdding);
    void selectInBand(bool isAdding);
    void updateMoved();

    CanvasStage& m_stage;
    const std::function<void(const QString&)> m_snappedTo;
    const QPointF m_from; // widget
    QPointF m_to;
    Way m_way = Way::band;
    bool m_isDragging = false;
    vnt::sketch::StrokeId m_hit = 0;
    // While what is selected moves:
    vnt::sketch::Vec2 m_offset; // sheet
    std::vector<vnt::sketch::Vec2> m_handles;
    vnt::sketch::SnapScene m_scene;
    std::optional<vnt::sketch::SnapTarget> m_mark;
    QRectF m_box; // sheet, of what moves
};
