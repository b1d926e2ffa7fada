#include "sketch/app/draw_gesture.h"

#include "sketch/core/ink_line.h"

#include <QLineF>

#include <algorithm>
#include <utility>

using vnt::sketch::Ink;
using vnt::sketch::Reading;
using vnt::sketch::Stabiliser;
using vnt::sketch::StrokeId;
using vnt::sketch::Vec2;

namespace {

// Screen pixels; a hand that holds a pen still moves it by less.
constexpr double kRestReach = 3;

// Points at the ink's end that are looked at when another comes: those whose line may change, and as many as
// that takes to know behind them.
constexpr std::size_t kEnd = 2 * vnt::sketch::kUnsettled;

} // namespace

DrawGesture::DrawGesture(CanvasStage& stage, OfferedReadings& offers, Tool tool, const PenSample& first,
                         std::function<void(StrokeId)> drawn)
    : m_stage(stage), m_offers(offers), m_tool(tool), m_drawn(std::move(drawn)), m_begun_ms(first.time_ms),
      m_stabiliser(stage.settings.stabiliser, stage.view().scale()), m_restsAt(first.at), m_pen(first.at)
{
    m_restTimer.setSingleShot(true);
    QObject::connect(&m_restTimer, &QTimer::timeout, &m_restTimer, [this] { rest(); });
    m_restTimer.start(stage.settings.holdMilliseconds);
    add(first);
}

void DrawGesture::move(const PenSample& sample)
{
    m_pen = sample.at;
    if (m_offeredAt && !m_offers.isShown()) { // dropped: the ink goes on
        m_offeredAt.reset();
        m_isDragging = false;
        m_wasDropped = true;
    }
    if (!m_offeredAt) {
        add(sample);
        watchForRest(sample.at);
        return;
    }
    m_isDragging = m_isDragging || QLineF(*m_offeredAt, sample.at).length() > kRestReach;
    if (m_isDragging)
        m_offers.drag(sample.at);
}

void DrawGesture::lift(const PenSample& sample)
{
    PenSample last = sample;
    last.pressure = m_pressure; // a pen that has left the sheet presses no more
    move(last);
    m_restTimer.stop();
    if (!m_offeredAt)
        take(m_stabiliser.finish());
    const bool wasOffered = m_offers.isLive();
    const std::optional<Reading> reading = m_offers.takeLive();
    m_stage.update(boxOf(m_ink));
    std::vector<Reading> readings = toolReadings(m_tool, m_ink, m_stage.recognition());
    const StrokeId id = m_stage.model.addInk(std::move(m_ink), std::move(readings));
    m_ink.clear();
    m_drawn(id);
    if (reading)
        m_stage.model.convert(id, *reading);
    else if (!wasOffered && !m_wasDropped && (m_stage.settings.convertAlways || forcesReading(m_tool)))
        m_offers.propose(id);
}

void DrawGesture::cancel()
{
    m_restTimer.stop();
    if (m_offers.isLive())
        m_offers.drop();
    const QRectF box = m_endBox | boxOf(m_ink);
    m_ink.clear();
    m_stabiliser = Stabiliser();
    m_stage.model.dropInk();
    m_stage.update(box);
}

void DrawGesture::add(const PenSample& sample)
{
    m_pressure = sample.pressure;
    const auto place = m_stage.sheetPlace(sample.at);
    take(m_stabiliser.add({place.x, place.y, sample.time_ms - m_begun_ms, sample.pressure}));
}

// Only where the ink's end was and is: what lies further behind stays as it is.
void DrawGesture::take(const Ink& more)
{
    const std::size_t from = m_ink.size() - std::min(m_ink.size(), kEnd);
    m_ink.insert(m_ink.end(), more.begin(), more.end());
    m_stage.model.growInk(more, Stabiliser(m_stabiliser).finish());
    const QRectF box = boxOf(inkFrom(from));
    m_stage.update(box | m_endBox);
    m_endBox = box;
}

QRectF DrawGesture::boxOf(const Ink& ink) const
{
    QRectF box;
    const double margin = m_stage.settings.inkWidth / 2 + 1;
    for (const Vec2 place : vnt::sketch::ink_line(ink).places) {
        const QPointF at = m_stage.view().toWidget({place.x, place.y});
        box |= QRectF(at.x() - margin, at.y() - margin, 2 * margin, 2 * margin);
    }
    return box;
}

Ink DrawGesture::inkFrom(std::size_t from) const
{
    Ink ink(m_ink.begin() + static_cast<std::ptrdiff_t>(from), m_ink.end());
    const Ink rest = Stabiliser(m_stabiliser).finish();
    ink.insert(ink.end(), rest.begin(), rest.end());
    return ink;
}

void DrawGesture::watchForRest(QPointF at)
{
    if (QLineF(m_restsAt, at).length() <= kRestReach)
        return;
    m_restsAt = at;
    m_restTimer.start(m_stage.settings.holdMilliseconds);
}

void DrawGesture::rest()
{
    if (m_offeredAt)
        return;
    take(m_stabiliser.finish());
    if (m_offers.showLive(toolReadings(m_tool, m_ink, m_stage.recognition()), m_pen))
        m_offeredAt = m_pen;
}

void DrawGesture::paint(QPainter& painter, const QRectF& within) const
{
    const QTransform map = m_stage.view().sheetToWidget();
    const QColor colour = m_stage.fadedLook(m_offeredAt ? m_offers.fading() : 0).ink;
    m_drawnInk.paint(painter, m_ink, Stabiliser(m_stabiliser).finish(), map, colour,
                     m_stage.settings.inkWidth, within);
}
