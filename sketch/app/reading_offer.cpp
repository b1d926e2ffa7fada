#include "sketch/app/reading_offer.h"

#include "sketch/app/shape_adjusting.h"

#include <utility>

using vnt::sketch::Grid;
using vnt::sketch::Reading;
using vnt::sketch::Shape;
using vnt::sketch::SnapScene;
using vnt::sketch::SnapSettings;
using vnt::sketch::Vec2;

ReadingOffer::ReadingOffer(std::vector<Reading> readings, std::size_t first)
    : m_readings(std::move(readings)), m_shown(first)
{
    m_snapped.shape = dragged();
}

void ReadingOffer::next() { m_shown = (m_shown + 1) % m_readings.size(); }

void ReadingOffer::previous() { m_shown = (m_shown + m_readings.size() - 1) % m_readings.size(); }

void ReadingOffer::drag(Vec2 from, Vec2 to) { m_drag = Drag{from, to}; }

Shape ReadingOffer::dragged() const
{
    const Reading& reading = m_readings[m_shown];
    return m_drag ? adjusted(reading.shape, reading.kind, m_drag->from, m_drag->to) : reading.shape;
}

void ReadingOffer::snap(const SnapScene& scene, const std::optional<Grid>& grid,
                        const std::optional<SnapSettings>& settings)
{
    if (settings)
        m_snapped = vnt::sketch::snap_shape(dragged(), kind(), scene, grid, *settings);
    else
        m_snapped = {dragged(), {}};
}

Reading ReadingOffer::shown() const
{
    Reading reading = m_readings[m_shown];
    reading.shape = m_snapped.shape;
    return reading;
}
