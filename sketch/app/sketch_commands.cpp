#include "sketch/app/sketch_commands.h"

#include "sketch/app/sketch_model.h"

#include <algorithm>
#include <utility>

using vnt::sketch::StrokeId;
using vnt::sketch::StrokePtr;

SketchCommand::SketchCommand(SketchModel& model, std::vector<StrokeChange> changes, const QString& text)
    : QUndoCommand(text), m_model(model), m_changes(std::move(changes))
{
}

void SketchCommand::redo()
{
    for (const StrokeChange& step : m_changes)
        change(step.index, step.before, step.after);
    deselectWhatIsGone();
}

void SketchCommand::undo()
{
    for (auto step = m_changes.rbegin(); step != m_changes.rend(); ++step)
        change(step->index, step->after, step->before);
    deselectWhatIsGone();
}

void SketchCommand::change(std::size_t index, const StrokePtr& from, const StrokePtr& into)
{
    if (from && into) {
        if (m_model.m_document.replace(into))
            emit m_model.replaced(from, into);
    } else if (into) {
        if (m_model.m_document.insert(index, into))
            emit m_model.inserted(index, into);
    } else if (from) {
        if (m_model.m_document.take(from->id))
            emit m_model.taken(from);
    }
}

void SketchCommand::deselectWhatIsGone()
{
    const auto isGone = [this](StrokeId id) { return m_model.m_document.find(id) == nullptr; };
    if (std::erase_if(m_model.m_selection, isGone) > 0)
        emit m_model.selectionChanged();
}
