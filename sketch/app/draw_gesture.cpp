#include "sketch/app/draw_gesture.h"

#include <QLineF>

#include <algorithm>
#include <utility>

using vnt::sketch::Ink;
using vnt::sketch::InkPoint;
using vnt::sketch::Reading;
using vnt::sketch::Stabiliser;
using vnt::sketch::StrokeId;

namespace {

// Screen pixels; a hand that holds a pen still moves it by less.
constexpr double kRestReach = 3;

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
    QRectF box;
    spreadBox(m_ink, box);
    m_stage.update(box);
    std::vector<Reading> readings = toolReadings(m_tool, m_ink, m_stage.recognition());
    const StrokeId id = m_stage.model.addInk(std::move(m_ink), std::move(readings));
    m_ink.clear();
    m_drawn(id);
    if (reading)
        m_stage.model.convert(id, *reading);
    else if (!wasOffered && (m_stage.settings.convertAlways || forcesReading(m_tool)))
        m_offers.propose(id);
}

void DrawGesture::cancel()
{
    m_restTimer.stop();
    if (m_offers.isLive())
        m_offers.drop();
    QRectF box = m_tailBox;
    spreadBox(m_ink, box);
    m_ink.clear();
    m_stabiliser = Stabiliser();
    m_stage.update(box);
}

void DrawGesture::add(const PenSample& sample)
{
    m_pressure = sample.pressure;
    const auto place = m_stage.sheetPlace(sample.at);
    take(m_stabiliser.add({place.x, place.y, sample.time_ms - m_begun_ms, sample.pressure}));
}

void DrawGesture::take(const Ink& more)
{
    const std::size_t from = m_ink.empty() ? 0 : m_ink.size() - 1;
    m_ink.insert(m_ink.end(), more.begin(), more.end());
    updateInk(from);
}

// Only where ink has come, and where the tail was and is.
void DrawGesture::updateInk(std::size_t from)
{
    QRectF box;
    spreadBox(Ink(m_ink.begin() + static_cast<std::ptrdiff_t>(from), m_ink.end()), box);
    QRectF tailBox;
    spreadBox(tail(), tailBox);
    m_stage.update(box | m_tailBox | tailBox);
    m_tailBox = tailBox;
}

void DrawGesture::spreadBox(const Ink& ink, QRectF& box) const
{
    const double margin = m_stage.settings.inkWidth / 2 + 1;
    for (const InkPoint& point : ink) {
        const QPointF at = m_stage.view().toWidget({point.x, point.y});
        box |= QRectF(at.x() - margin, at.y() - margin, 2 * margin, 2 * margin);
    }
}

Ink DrawGesture::tail() const
{
    Stabiliser rest = m_stabiliser;
    Ink tail = rest.finish();
    if (!m_ink.empty())
        tail.insert(tail.begin(), m_ink.back());
    return tail;
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
    painter.setRenderHint(QPainter::Antialiasing);
    const QTransform map = m_stage.view().sheetToWidget();
    const QColor colour = m_stage.fadedLook(m_offeredAt ? m_offers.fading() : 0).ink;
    Ink whole = m_ink; // in one go: two strokes that meet are darker there
    const Ink rest = Stabiliser(m_stabiliser).finish();
    whole.insert(whole.end(), rest.begin(), rest.end());
    paintInk(painter, whole, map, colour, m_stage.settings.inkWidth, within);
}
