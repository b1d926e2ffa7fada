#include "sketch/app/sketch_model.h"

#include "sketch/app/kind_names.h"
#include "sketch/app/sketch_commands.h"
#include "sketch/core/shape_outline.h"

#include <optional>
#include <unordered_set>
#include <utility>

using vnt::sketch::Affine;
using vnt::sketch::Ink;
using vnt::sketch::Kind;
using vnt::sketch::Reading;
using vnt::sketch::Sheet;
using vnt::sketch::SketchDocument;
using vnt::sketch::Stroke;
using vnt::sketch::StrokeId;
using vnt::sketch::StrokePtr;
using vnt::sketch::Vec2;

namespace {

// Where those of the ids are that the document has, rising, each once.
std::vector<std::size_t> placesOf(const SketchDocument& document, const std::vector<StrokeId>& ids)
{
    const std::vector<StrokeId>& all = document.ids();
    const std::unordered_set<StrokeId> wanted(ids.begin(), ids.end());
    std::vector<std::size_t> places;
    for (std::size_t place = 0; !wanted.empty() && place < all.size(); ++place) {
        if (wanted.contains(all[place]))
            places.push_back(place);
    }
    return places;
}

// The highest goes first, so that the places of the others stay what they are.
std::vector<StrokeChange> removals(const SketchDocument& document, const std::vector<std::size_t>& places)
{
    std::vector<StrokeChange> changes;
    for (auto place = places.rbegin(); place != places.rend(); ++place)
        changes.push_back({*place, document.strokes()[*place], nullptr});
    return changes;
}

} // namespace

SketchModel::Step::Step(SketchModel& model) : m_model(model)
{
    if (m_model.m_openSteps++ == 0)
        emit m_model.stepBegan();
}

SketchModel::Step::~Step()
{
    if (--m_model.m_openSteps == 0)
        emit m_model.stepEnded();
}

SketchModel::SketchModel(QObject* parent) : QObject(parent) {}

void SketchModel::setSheet(const Sheet& sheet) { changeSheet(sheet, {}); }

StrokeMapping SketchModel::changeSheet(const Sheet& sheet, const Affine& map)
{
    emit sheetIsToChange();
    StrokeMapping mapping(map);
    if (!mapping.movesNothing()) {
        const std::vector<StrokePtr> strokes = m_document.strokes();
        for (const StrokePtr& stroke : strokes)
            m_document.replace(mapping(stroke));
        for (int i = 0; i < m_undoStack.count(); ++i) {
            // The stack shows its steps as const; they are this model's own.
            auto* const step = const_cast<QUndoCommand*>(m_undoStack.command(i));
            if (auto* const ours = dynamic_cast<SketchCommand*>(step))
                ours->goAlong(mapping);
        }
    }
    m_sheet = sheet;
    emit sheetChanged(map);
    return mapping;
}

void SketchModel::setPlaced(bool isPlaced)
{
    const bool wasPlaced = this->isPlaced();
    m_isSheetPlaced = isPlaced;
    if (this->isPlaced() != wasPlaced)
        emit placedChanged();
}

void SketchModel::countPlacing(int steps)
{
    const bool wasPlaced = isPlaced();
    m_placingSteps += steps;
    if (isPlaced() != wasPlaced)
        emit placedChanged();
}

void SketchModel::setSelection(const std::vector<StrokeId>& ids)
{
    std::vector<StrokeId> known;
    for (const std::size_t place : placesOf(m_document, ids))
        known.push_back(m_document.strokes()[place]->id);
    if (known == m_selection)
        return;
    m_selection = std::move(known);
    emit selectionChanged();
}

void SketchModel::reset(std::vector<StrokePtr> strokes, bool isPlaced)
{
    setSelection({});
    m_undoStack.clear();
    m_document.clear();
    m_isSheetPlaced = isPlaced;
    m_placingSteps = 0;
    for (StrokePtr& stroke : strokes) {
        if (!stroke)
            continue;
        if (stroke->id == 0 || m_document.has(stroke->id)) {
            Stroke own = *stroke;
            own.id = m_document.new_id();
            stroke = std::make_shared<const Stroke>(std::move(own));
        }
        m_document.insert(m_document.strokes().size(), stroke);
    }
    emit wasReset();
}

StrokeId SketchModel::addInk(Ink ink, std::vector<Reading> readings)
{
    Stroke stroke;
    stroke.id = m_document.new_id();
    stroke.ink = std::move(ink);
    stroke.readings = std::move(readings);
    const StrokeId id = stroke.id;
    auto shared = std::make_shared<const Stroke>(std::move(stroke));
    const std::size_t top = m_document.strokes().size();
    const Step step(*this);
    m_undoStack.push(new SketchCommand(*this,
                                       {
                                           {top, nullptr, std::move(shared)}
    },
                                       tr("Draw")));
    emit inkEnded();
    return id;
}

void SketchModel::growInk(const Ink& more, const Ink& rest) { emit inkGrew(more, rest); }

void SketchModel::dropInk() { emit inkEnded(); }

void SketchModel::convert(StrokeId id, const Reading& reading)
{
    const std::optional<std::size_t> place = m_document.index_of(id);
    const StrokePtr before = place ? m_document.strokes()[*place] : nullptr;
    const bool isInk = std::holds_alternative<std::monostate>(reading.shape);
    if (!before || (isInk && (before->ink.empty() || before->kind == Kind::ink)))
        return; // there is no ink to go back to, or nothing else
    Stroke after = *before;
    after.kind = reading.kind;
    after.shape = reading.shape;
    auto shared = std::make_shared<const Stroke>(std::move(after));
    const QString text = isInk ? tr("Back to ink") : tr("Convert to %1").arg(kindName(reading.kind));
    m_undoStack.push(new SketchCommand(*this,
                                       {
                                           {*place, before, std::move(shared)}
    },
                                       text));
}

void SketchModel::remove(const std::vector<StrokeId>& ids)
{
    std::vector<StrokeChange> changes = removals(m_document, placesOf(m_document, ids));
    if (!changes.empty())
        m_undoStack.push(new SketchCommand(*this, std::move(changes), tr("Delete")));
}

void SketchModel::transform(const std::vector<StrokeId>& ids, const Affine& map) { pushMove(ids, map, 0); }

void SketchModel::nudge(const std::vector<StrokeId>& ids, Vec2 by)
{
    pushMove(ids, {1, 0, 0, 1, by.x, by.y}, m_nudgePause_ms);
}

void SketchModel::pushMove(const std::vector<StrokeId>& ids, const Affine& map, int mergeMilliseconds)
{
    std::vector<StrokeChange> changes;
    for (const std::size_t place : placesOf(m_document, ids)) {
        const StrokePtr& before = m_document.strokes()[place];
        changes.push_back(
            {place, before, std::make_shared<const Stroke>(vnt::sketch::mapped(*before, map, before->id))});
    }
    if (changes.empty() || map == Affine())
        return;
    auto* const move = new SketchCommand(*this, std::move(changes), tr("Move"));
    move->mergeFor(mergeMilliseconds);
    m_undoStack.push(move);
}

void SketchModel::duplicate(const std::vector<StrokeId>& ids, Vec2 offset)
{
    const Affine map{1, 0, 0, 1, offset.x, offset.y};
    std::vector<Stroke> copies;
    for (const std::size_t place : placesOf(m_document, ids))
        copies.push_back(vnt::sketch::mapped(*m_document.strokes()[place], map, 0));
    if (copies.empty())
        return;
    const std::size_t firstCopy = m_document.strokes().size();
    addStrokes(std::move(copies), tr("Duplicate"));
    std::vector<StrokeId> selected;
    for (std::size_t i = firstCopy; i < m_document.strokes().size(); ++i)
        selected.push_back(m_document.strokes()[i]->id);
    setSelection(std::move(selected));
}

void SketchModel::addStrokes(std::vector<Stroke> strokes, const QString& text)
{
    pushNew(std::move(strokes), text, false);
}

void SketchModel::addPlacedStrokes(std::vector<Stroke> strokes, const QString& text)
{
    pushNew(std::move(strokes), text, true);
}

void SketchModel::pushNew(std::vector<Stroke> strokes, const QString& text, bool arePlaced)
{
    std::vector<StrokeChange> changes;
    std::size_t top = m_document.strokes().size();
    for (Stroke& stroke : strokes) {
        stroke.id = m_document.new_id();
        changes.push_back({top++, nullptr, std::make_shared<const Stroke>(std::move(stroke))});
    }
    if (changes.empty())
        return;
    auto* const added = new SketchCommand(*this, std::move(changes), text);
    if (arePlaced)
        added->setPlacing();
    m_undoStack.push(added);
}

void SketchModel::clear()
{
    std::vector<std::size_t> all(m_document.strokes().size());
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i] = i;
    if (!all.empty())
        m_undoStack.push(new SketchCommand(*this, removals(m_document, all), tr("Clear")));
}
