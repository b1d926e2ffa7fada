// The readings that are offered of one stroke: one of them at a time, dragged and snapped as the user has it.
//
// Space:  the sheet.
#pragma once

#include "sketch/core/reading.h"
#include "sketch/core/snapping.h"

#include <cstddef>
#include <optional>
#include <vector>

class ReadingOffer {
public:
    // readings: at least one; the first to be shown is chosen.
    ReadingOffer(std::vector<vnt::sketch::Reading> readings, std::size_t first);

    void next();
    void previous();
    vnt::sketch::Kind kind() const { return m_readings[m_shown].kind; }
    bool isInk() const { return kind() == vnt::sketch::Kind::ink; }
    const std::vector<vnt::sketch::Reading>& readings() const { return m_readings; }

    // From where the pen was when the offer was made to where it is; holds for the other readings as well.
    void drag(vnt::sketch::Vec2 from, vnt::sketch::Vec2 to);
    // None: as it was drawn.
    void snap(const vnt::sketch::SnapScene& scene, const std::optional<vnt::sketch::Grid>& grid,
              const std::optional<vnt::sketch::SnapSettings>& settings);

    // What one sees, and gets.
    vnt::sketch::Reading shown() const;
    const std::vector<vnt::sketch::SnapTarget>& marks() const { return m_snapped.marks; }

private:
    struct Drag {
        vnt::sketch::Vec2 from;
        vnt::sketch::Vec2 to;
    };

    vnt::sketch::Shape dragged() const;

    std::vector<vnt::sketch::Reading> m_readings;
    std::size_t m_shown;
    std::optional<Drag> m_drag;
    vnt::sketch::Snapped m_snapped;
};
