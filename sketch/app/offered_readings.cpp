#include "sketch/app/offered_readings.h"

#include "sketch/app/kind_names.h"
#include "sketch/app/snap_marks.h"
#include "sketch/core/shape_outline.h"

#include <QStringList>

#include <algorithm>
#include <utility>

using vnt::sketch::Affine;
using vnt::sketch::Kind;
using vnt::sketch::Reading;
using vnt::sketch::SnapTarget;
using vnt::sketch::StrokeId;
using vnt::sketch::StrokePtr;

namespace {

constexpr int kFadeMilliseconds = 160;
constexpr double kGhostWidth = 2;
constexpr double kGhostDash = 8;
constexpr double kGhostGap = 5;
constexpr double kCasing =
    2; // of the sheet's colour on either side, so that the dashes stand out from the ink
constexpr double kGhostTolerance = 0.05; // pixels

bool hasShape(const std::vector<Reading>& readings)
{
    return std::any_of(readings.begin(), readings.end(),
                       [](const Reading& reading) { return reading.kind != Kind::ink; });
}

// The readings of a stroke that is in the sketch, with what it is now, if none of them is that.
std::vector<Reading> readingsOf(const vnt::sketch::Stroke& stroke)
{
    std::vector<Reading> readings = stroke.readings;
    const auto isPresent = [&](const Reading& reading) { return reading.kind == stroke.kind; };
    const auto present = std::find_if(readings.begin(), readings.end(), isPresent);
    if (present == readings.end())
        readings.push_back({stroke.kind, 0, stroke.shape});
    else
        present->shape = stroke.shape; // as it was dragged and snapped
    if (stroke.ink.empty())
        std::erase_if(readings, [](const Reading& reading) { return reading.kind == Kind::ink; });
    return readings;
}

} // namespace

OfferedReadings::OfferedReadings(CanvasStage& stage, QObject* parent) : QObject(parent), m_stage(stage)
{
    m_takeTimer.setSingleShot(true);
    connect(&m_takeTimer, &QTimer::timeout, this, &OfferedReadings::take);
    m_fade.setStartValue(0.0);
    m_fade.setEndValue(1.0);
    m_fade.setDuration(kFadeMilliseconds);
    connect(&m_fade, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        m_fading = value.toDouble();
        m_stage.widget.update();
    });
    const SketchModel& model = m_stage.model;
    connect(&model, &SketchModel::inserted, this, &OfferedReadings::forgetScene);
    connect(&model, &SketchModel::taken, this, [this](const StrokePtr& stroke) { strokeWent(stroke->id); });
    connect(&model, &SketchModel::replaced, this,
            [this](const StrokePtr& before) { strokeWent(before->id); });
    connect(&model, &SketchModel::sheetChanged, this, [this](const Affine& map) {
        if (map == Affine())
            return;
        forgetScene();
        end();
    });
    connect(&model, &SketchModel::wasReset, this, [this] {
        forgetScene();
        end();
    });
}

void OfferedReadings::strokeWent(StrokeId id)
{
    forgetScene();
    if (m_offer && m_stroke == id)
        end();
}

QString OfferedReadings::name() const { return m_offer ? kindName(m_offer->kind()) : QString(); }

bool OfferedReadings::wouldOffer(StrokeId id) const
{
    const StrokePtr stroke = m_stage.model.document().find(id);
    return stroke && readingsOf(*stroke).size() > 1;
}

bool OfferedReadings::showLive(std::vector<Reading> readings, QPointF pen)
{
    m_dragFrom = m_stage.sheetPlace(pen);
    return hasShape(readings) && start(std::move(readings), 0, 0);
}

bool OfferedReadings::show(StrokeId id)
{
    const StrokePtr stroke = m_stage.model.document().find(id);
    if (!stroke)
        return false;
    std::vector<Reading> readings = readingsOf(*stroke);
    const auto other = std::find_if(readings.begin(), readings.end(),
                                    [&](const Reading& reading) { return reading.kind != stroke->kind; });
    if (other == readings.end())
        return false;
    const auto first = static_cast<std::size_t>(other - readings.begin());
    return start(std::move(readings), first, id);
}

bool OfferedReadings::propose(StrokeId id)
{
    const StrokePtr stroke = m_stage.model.document().find(id);
    if (!stroke || stroke->readings.empty() || stroke->readings.front().kind == stroke->kind || !show(id))
        return false;
    m_isTaking = true;
    restartTaking();
    return true;
}

bool OfferedReadings::start(std::vector<Reading> readings, std::size_t first, StrokeId stroke)
{
    end();
    m_offer.emplace(std::move(readings), first);
    m_stroke = stroke;
    m_scene.reset();
    if (m_stroke != 0)
        m_stage.pickUp({m_stroke});
    if (m_stage.settings.reducedMotion)
        m_fading = 1;
    else
        m_fade.start();
    refresh();
    emit changed();
    return true;
}

void OfferedReadings::end()
{
    m_takeTimer.stop();
    m_fade.stop();
    m_isTaking = false;
    if (!m_offer)
        return;
    m_offer.reset();
    m_fading = 0;
    m_ghost = {};
    m_stage.layDown();
    m_stage.widget.update(); // ink that had faded is anywhere
    m_painted = {};
    announceSnapping();
    emit changed();
}

void OfferedReadings::next()
{
    if (!m_offer)
        return;
    m_offer->next();
    refresh();
    restartTaking();
    emit changed();
}

void OfferedReadings::previous()
{
    if (!m_offer)
        return;
    m_offer->previous();
    refresh();
    restartTaking();
    emit changed();
}

void OfferedReadings::drag(QPointF pen)
{
    if (!m_offer)
        return;
    m_offer->drag(m_dragFrom, m_stage.sheetPlace(pen));
    refresh();
}

void OfferedReadings::setSnapping(bool isOn)
{
    if (m_isSnapping == isOn)
        return;
    m_isSnapping = isOn;
    if (m_offer)
        refresh();
}

void OfferedReadings::stageChanged()
{
    if (m_offer)
        refresh();
}

void OfferedReadings::take()
{
    if (!m_offer || isLive())
        return;
    const Reading reading = m_offer->shown();
    const StrokeId id = m_stroke;
    const StrokePtr stroke = m_stage.model.document().find(id);
    end();
    if (stroke && reading.kind != stroke->kind)
        m_stage.model.convert(id, reading);
}

void OfferedReadings::drop() { end(); }

std::optional<Reading> OfferedReadings::takeLive()
{
    if (!isLive())
        return std::nullopt;
    const Reading reading = m_offer->shown();
    end();
    return reading.kind == Kind::ink ? std::nullopt : std::optional(reading);
}

// Each time another reading is looked at, there is time to look at it.
void OfferedReadings::restartTaking()
{
    if (m_isTaking)
        m_takeTimer.start(m_stage.settings.takeMilliseconds);
}

void OfferedReadings::refresh()
{
    if (!m_scene)
        m_scene = m_stage.snapScene({m_stroke});
    m_offer->snap(*m_scene, m_stage.model.sheet().grid, m_isSnapping ? m_stage.snapping() : std::nullopt);
    const Reading shown = m_offer->shown();
    const double tolerance = m_stage.onSheet(kGhostTolerance);
    m_ghost = vnt::sketch::cubics_of(shown.shape, tolerance);
    updateGhost();
    announceSnapping();
}

void OfferedReadings::announceSnapping()
{
    QStringList names;
    if (m_offer) {
        for (const SnapTarget& mark : m_offer->marks())
            names.append(snapName(mark.kind));
    }
    names.removeDuplicates();
    const QString what = names.join(QStringLiteral(", "));
    if (what == m_announced)
        return;
    m_announced = what;
    emit snappedTo(what);
}

QRectF OfferedReadings::ghostBox() const
{
    constexpr double kMargin = kGhostWidth / 2 + kCasing + 1;
    QRectF box;
    if (!m_ghost.empty())
        box = m_stage.inWidget(boxOf(m_ghost)).adjusted(-kMargin, -kMargin, kMargin, kMargin);
    if (m_offer) {
        for (const SnapTarget& mark : m_offer->marks())
            box |= snapMarkBox(m_stage.view().toWidget({mark.at.x, mark.at.y}));
    }
    return box;
}

void OfferedReadings::updateGhost()
{
    const QRectF box = ghostBox();
    m_stage.update(m_painted);
    m_stage.update(box);
    m_painted = box;
}

void OfferedReadings::paint(QPainter& painter, const QRectF& within) const
{
    if (!m_offer)
        return;
    const QTransform map = m_stage.view().sheetToWidget();
    painter.setRenderHint(QPainter::Antialiasing);
    const StrokeArt* art = m_stroke != 0 ? m_stage.arts.find(m_stroke) : nullptr;
    if (art != nullptr)
        paintStroke(painter, *art, map, m_stage.fadedLook(m_offer->isInk() ? 0 : m_fading), within);
    paintCurve(painter, m_ghost, map, m_stage.colours.sheet, kGhostWidth + 2 * kCasing, within);
    paintDashedCurve(painter, m_ghost, map, m_stage.colours.ghost, {kGhostWidth, kGhostDash, kGhostGap},
                     within);
    for (const SnapTarget& mark : m_offer->marks())
        paintSnapMark(painter, map.map(QPointF(mark.at.x, mark.at.y)), mark.kind, m_stage.colours);
}
