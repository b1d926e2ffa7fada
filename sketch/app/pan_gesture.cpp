#include "sketch/app/pan_gesture.h"

#include <cmath>

void panBy(CanvasStage& stage, const CanvasView& from, QPointF move)
{
    const double ratio = stage.widget.devicePixelRatioF();
    CanvasView view = from;
    view.moveBy({std::round(move.x() * ratio) / ratio, std::round(move.y() * ratio) / ratio});
    stage.setView(view);
}

void PanGesture::move(const PenSample& sample) { panBy(m_stage, m_before, sample.at - m_from); }
