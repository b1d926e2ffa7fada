#include "sketch/app/erase_gesture.h"

using vnt::sketch::StrokeId;

namespace {

constexpr double kFaded = 1; // what will go is hardly there

} // namespace

EraseGesture::EraseGesture(CanvasStage& stage, const PenSample& first) : m_stage(stage), m_last(first.at)
{
    EraseGesture::move(first);
}

void EraseGesture::move(const PenSample& sample)
{
    const auto from = m_stage.sheetPlace(m_last);
    const auto to = m_stage.sheetPlace(sample.at);
    std::vector<StrokeId> crossed;
    for (const auto& art : m_stage.arts.all()) {
        const StrokeId id = art->stroke->id;
        if (m_known.count(id) == 0 && art->isCrossed(from, to, m_stage.onSheet(kReach)))
            crossed.push_back(id);
    }
    m_stage.pickUp(crossed);
    m_crossed.insert(m_crossed.end(), crossed.begin(), crossed.end());
    m_known.insert(crossed.begin(), crossed.end());
    m_last = sample.at;
}

void EraseGesture::lift(const PenSample& sample)
{
    move(sample);
    m_stage.model.remove(m_crossed);
    m_stage.layDown();
}

void EraseGesture::cancel() { m_stage.layDown(); }

void EraseGesture::paint(QPainter& painter, const QRectF& within) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    const QTransform map = m_stage.view().sheetToWidget();
    const StrokeLook faded = m_stage.fadedLook(kFaded);
    for (const StrokeId id : m_crossed) {
        const StrokeArt* art = m_stage.arts.find(id);
        if (art != nullptr && m_stage.boxInWidget(*art).intersects(within))
            paintStroke(painter, *art, map, faded);
    }
}
