#include "sketch/app/select_gesture.h"

#include "sketch/app/kind_names.h"
#include "sketch/app/snap_marks.h"

#include <QLineF>

#include <algorithm>

using vnt::sketch::Affine;
using vnt::sketch::Curve;
using vnt::sketch::Round;
using vnt::sketch::Straight;
using vnt::sketch::Stroke;
using vnt::sketch::StrokeId;
using vnt::sketch::Vec2;

namespace {

constexpr double kDragStart = 3; // screen pixels
constexpr int kFilled = 30;      // of 255: how much of the band lies over the sheet
constexpr std::size_t kMostHandles = 500;

// The points of a stroke that snap when it is moved.
void addHandles(const Stroke& stroke, std::vector<Vec2>& handles)
{
    if (const auto* straight = std::get_if<Straight>(&stroke.shape)) {
        handles.insert(handles.end(), straight->corners.begin(), straight->corners.end());
    } else if (const auto* round = std::get_if<Round>(&stroke.shape)) {
        handles.push_back(round->ellipse.centre);
        if (!isClosed(stroke.shape)) {
            handles.push_back(round->ellipse.at(round->start));
            handles.push_back(round->ellipse.at(round->start + round->sweep));
        }
    } else if (const auto* curve = std::get_if<Curve>(&stroke.shape);
               curve != nullptr && !curve->points.empty()) {
        handles.push_back(curve->points.front());
        handles.push_back(curve->points.back());
    }
}

bool isWithin(const StrokeArt& art, const QTransform& map, const QRectF& band)
{
    return !art.line.empty() && std::all_of(art.line.begin(), art.line.end(), [&](Vec2 p) {
        return band.contains(map.map(QPointF(p.x, p.y)));
    });
}

} // namespace

SelectGesture::SelectGesture(CanvasStage& stage, const PenSample& first,
                             std::function<void(const QString&)> snappedTo)
    : m_stage(stage), m_snappedTo(std::move(snappedTo)), m_from(first.at), m_to(first.at)
{
    const StrokeArt* hit = m_stage.arts.topmostAt(m_stage.sheetPlace(m_from), m_stage.onSheet(kReach));
    m_hit = hit != nullptr ? hit->stroke->id : 0;
    const bool isAdding = first.modifiers.testFlag(Qt::ShiftModifier);
    if (m_hit != 0 || (!isAdding && isInSelection(m_from)))
        m_way = Way::move;
}

bool SelectGesture::isSelected(StrokeId id) const
{
    const auto& selection = m_stage.model.selection();
    return std::find(selection.begin(), selection.end(), id) != selection.end();
}

bool SelectGesture::isInSelection(QPointF at) const
{
    QRectF box;
    for (const StrokeId id : m_stage.model.selection()) {
        if (const StrokeArt* art = m_stage.arts.find(id))
            box |= art->box;
    }
    return box.contains(m_stage.view().toSheet(at));
}

void SelectGesture::move(const PenSample& sample)
{
    if (!m_isDragging && QLineF(m_from, sample.at).length() <= kDragStart)
        return;
    if (!m_isDragging && m_way == Way::move)
        startMoving();
    m_isDragging = true;
    if (m_way == Way::move) {
        moveTo(sample.at, !suspendsSnapping(sample.modifiers));
        return;
    }
    m_stage.update(QRectF(m_from, m_to).normalized().adjusted(-2, -2, 2, 2));
    m_to = sample.at;
    m_stage.update(QRectF(m_from, m_to).normalized().adjusted(-2, -2, 2, 2));
}

void SelectGesture::startMoving()
{
    if (m_hit != 0 && !isSelected(m_hit))
        m_stage.model.setSelection({m_hit});
    const auto& selection = m_stage.model.selection();
    m_scene = m_stage.snapScene({selection.begin(), selection.end()});
    for (const StrokeId id : selection) {
        const StrokeArt* art = m_stage.arts.find(id);
        if (art == nullptr)
            continue;
        m_box |= art->box;
        if (m_handles.size() < kMostHandles)
            addHandles(*art->stroke, m_handles);
    }
    m_stage.pickUp(selection);
}

void SelectGesture::moveTo(QPointF at, bool isSnapping)
{
    updateMoved();
    m_offset = m_stage.sheetPlace(at) - m_stage.sheetPlace(m_from);
    m_mark.reset();
    const auto snapping = m_stage.snapping();
    if (isSnapping && snapping) {
        Vec2 best = m_offset;
        for (const Vec2 handle : m_handles) {
            const Vec2 place = handle + m_offset;
            const auto target =
                vnt::sketch::snap_point(place, m_scene, m_stage.model.sheet().grid, *snapping);
            if (target && (!m_mark || distance(place, target->at) < distance(m_offset, best))) {
                best = target->at - handle;
                m_mark = target;
            }
        }
        m_offset = best;
    }
    m_snappedTo(m_mark ? snapName(m_mark->kind) : QString());
    updateMoved();
}

void SelectGesture::updateMoved()
{
    const double margin = m_stage.settings.inkWidth + 4; // with the box about it
    const QRectF moved = m_box.translated(m_offset.x, m_offset.y);
    m_stage.update(m_stage.inWidget(moved).adjusted(-margin, -margin, margin, margin));
    if (m_mark)
        m_stage.update(snapMarkBox(m_stage.view().toWidget({m_mark->at.x, m_mark->at.y})));
}

void SelectGesture::lift(const PenSample& sample)
{
    move(sample);
    const bool isAdding = sample.modifiers.testFlag(Qt::ShiftModifier);
    const bool wasDragging = m_isDragging;
    const Vec2 offset = m_offset;
    cancel();
    if (!wasDragging)
        click(isAdding);
    else if (m_way == Way::band)
        selectInBand(isAdding);
    else
        m_stage.model.transform(m_stage.model.selection(), Affine{1, 0, 0, 1, offset.x, offset.y});
}

void SelectGesture::cancel()
{
    if (!m_isDragging)
        return;
    m_isDragging = false;
    if (m_way == Way::band) {
        m_stage.update(QRectF(m_from, m_to).normalized().adjusted(-2, -2, 2, 2));
        return;
    }
    updateMoved();
    m_mark.reset();
    m_snappedTo({});
    m_stage.layDown();
}

void SelectGesture::click(bool isAdding)
{
    if (!isAdding) {
        m_stage.model.setSelection(m_hit != 0 ? std::vector{m_hit} : std::vector<StrokeId>());
        return;
    }
    if (m_hit == 0)
        return;
    std::vector<StrokeId> selection = m_stage.model.selection();
    if (std::erase(selection, m_hit) == 0)
        selection.push_back(m_hit);
    m_stage.model.setSelection(std::move(selection));
}

void SelectGesture::selectInBand(bool isAdding)
{
    const QRectF band = QRectF(m_from, m_to).normalized();
    const QTransform map = m_stage.view().sheetToWidget();
    std::vector<StrokeId> selection = isAdding ? m_stage.model.selection() : std::vector<StrokeId>();
    for (const auto& art : m_stage.arts.all()) {
        if (isWithin(*art, map, band))
            selection.push_back(art->stroke->id);
    }
    m_stage.model.setSelection(std::move(selection));
}

void SelectGesture::paint(QPainter& painter, const QRectF& within) const
{
    if (!m_isDragging)
        return;
    if (m_way == Way::band) {
        QColor filled = m_stage.colours.selection;
        filled.setAlpha(kFilled);
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(QPen(m_stage.colours.selection, 1, Qt::DashLine));
        painter.setBrush(filled);
        painter.drawRect(QRectF(m_from, m_to).normalized());
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    const QTransform moved =
        QTransform::fromTranslate(m_offset.x, m_offset.y) * m_stage.view().sheetToWidget();
    const StrokeLook look = m_stage.look();
    for (const StrokeId id : m_stage.model.selection()) {
        const StrokeArt* art = m_stage.arts.find(id);
        if (art != nullptr && moved.mapRect(art->box).adjusted(-4, -4, 4, 4).intersects(within))
            paintStroke(painter, *art, moved, look);
    }
    if (m_mark)
        paintSnapMark(painter, m_stage.view().toWidget({m_mark->at.x, m_mark->at.y}), m_mark->kind,
                      m_stage.colours);
}
