#include "sketch/app/sketch_commands.h"

#include "sketch/app/sketch_model.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

using vnt::sketch::StrokeId;
using vnt::sketch::StrokePtr;

SketchCommand::SketchCommand(SketchModel& model, std::vector<StrokeChange> changes, const QString& text)
    : QUndoCommand(text), m_model(model), m_changes(std::move(changes))
{
}

void SketchCommand::redo()
{
    const SketchModel::Step step(m_model);
    noteSelected();
    for (const StrokeChange& each : m_changes)
        change(each.index, each.before, each.after);
    if (m_isPlacing)
        m_model.countPlacing(1);
    deselectWhatIsGone();
}

void SketchCommand::undo()
{
    const SketchModel::Step step(m_model);
    for (auto each = m_changes.rbegin(); each != m_changes.rend(); ++each)
        change(each->index, each->after, each->before);
    if (m_isPlacing)
        m_model.countPlacing(-1);
    deselectWhatIsGone();
    if (!m_selected.empty())
        m_model.setSelection(m_selected);
}

int SketchCommand::id() const
{
    constexpr int kSketchStep = 1; // all are of a kind; mergeWith() tells which of them merge
    return kSketchStep;
}

bool SketchCommand::mergeWith(const QUndoCommand* next)
{
    const auto* later = dynamic_cast<const SketchCommand*>(next);
    if (later == nullptr || m_merges.hasExpired() || later->m_merges.hasExpired())
        return false;
    const auto goesOn = [](const StrokeChange& a, const StrokeChange& b) { return a.after == b.before; };
    if (!std::equal(m_changes.begin(), m_changes.end(), later->m_changes.begin(), later->m_changes.end(),
                    goesOn))
        return false;
    for (std::size_t i = 0; i < m_changes.size(); ++i)
        m_changes[i].after = later->m_changes[i].after;
    m_merges = later->m_merges;
    return true;
}

void SketchCommand::goAlong(StrokeMapping& mapping)
{
    for (StrokeChange& step : m_changes) {
        step.before = mapping(step.before);
        step.after = mapping(step.after);
    }
}

void SketchCommand::change(std::size_t index, const StrokePtr& from, const StrokePtr& into)
{
    if (from && into) {
        if (m_model.m_document.replace(into, index))
            emit m_model.replaced(from, into);
    } else if (into) {
        if (m_model.m_document.insert(index, into))
            emit m_model.inserted(index, into);
    } else if (from) {
        if (m_model.m_document.take(from->id, index))
            emit m_model.taken(from);
    }
}

void SketchCommand::noteSelected()
{
    m_selected.clear();
    const std::unordered_set<StrokeId> selection(m_model.m_selection.begin(), m_model.m_selection.end());
    for (const StrokeChange& step : m_changes) {
        if (!step.after && selection.contains(step.before->id))
            m_selected.push_back(step.before->id);
    }
}

void SketchCommand::deselectWhatIsGone()
{
    const auto isGone = [this](StrokeId id) { return !m_model.m_document.has(id); };
    if (std::erase_if(m_model.m_selection, isGone) > 0)
        emit m_model.selectionChanged();
}
