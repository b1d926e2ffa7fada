// The steps of a sketch's history. Each is a list of strokes that come, go or change, in an order.
//
// Owner:  a step shares its strokes with the sketch; nothing is copied. The sketch outlives its steps.
#pragma once

#include "sketch/app/stroke_mapping.h"

#include <QDeadlineTimer>
#include <QUndoCommand>

#include <cstddef>
#include <vector>

class SketchModel;

struct StrokeChange {
    std::size_t index = 0;         // where it comes, is, or goes
    vnt::sketch::StrokePtr before; // null: it comes
    vnt::sketch::StrokePtr after;  // null: it goes
};

class SketchCommand : public QUndoCommand {
public:
    SketchCommand(SketchModel& model, std::vector<StrokeChange> changes, const QString& text);

    void redo() override;
    void undo() override;
    int id() const override;
    bool mergeWith(const QUndoCommand* next) override;
    // One that goes on where this one ends is no step of its own, if it comes within this time.
    void mergeFor(int milliseconds) { m_merges.setRemainingTime(milliseconds); }
    // With it, and until it is undone, all strokes have a place in the artwork.
    void setPlacing() { m_isPlacing = true; }
    // The sheet shows another part of the artwork: what this brings back is there, too.
    void goAlong(StrokeMapping& mapping);

private:
    // From the stroke that is there into the one that shall be.
    void change(std::size_t index, const vnt::sketch::StrokePtr& from, const vnt::sketch::StrokePtr& into);
    void noteSelected();
    void deselectWhatIsGone();

    SketchModel& m_model;
    std::vector<StrokeChange> m_changes;
    std::vector<vnt::sketch::StrokeId> m_selected; // of those that go; selected again when they come back
    QDeadlineTimer m_merges{0};
    bool m_isPlacing = false;
};
