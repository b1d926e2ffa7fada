// The sketch that is being drawn: its strokes and its sheet, every change as a step that can be undone.
//
// Space:  the sheet.
// Errors: what is asked of a stroke that is not there does nothing.
#pragma once

#include "sketch/app/stroke_mapping.h"
#include "sketch/core/sheet.h"
#include "sketch/core/sketch_document.h"

#include <QObject>
#include <QUndoStack>

#include <vector>

class SketchModel : public QObject {
    Q_OBJECT

public:
    explicit SketchModel(QObject* parent = nullptr);

    const vnt::sketch::SketchDocument& document() const { return m_document; }
    const vnt::sketch::Sheet& sheet() const { return m_sheet; }
    QUndoStack& undoStack() { return m_undoStack; }
    const std::vector<vnt::sketch::StrokeId>& selection() const { return m_selection; } // lowest stroke first
    // The strokes have a place in the artwork: drawn on an editor's sheet, or read from a file. Those drawn on a
    // sheet of one's own have none.
    bool isPlaced() const { return m_isSheetPlaced || m_placingSteps > 0; }
    // Without the steps that can be undone.
    bool isPlacedBySheet() const { return m_isSheetPlaced; }

    // Not steps that can be undone.
    void setSheet(const vnt::sketch::Sheet& sheet);
    // Another view of the artwork, map: from the sheet before. Every stroke goes along, those that undo and redo
    // bring back as well. Returns what became of each, for who keeps some.
    StrokeMapping changeSheet(const vnt::sketch::Sheet& sheet, const vnt::sketch::Affine& map);
    void setPlaced(bool isPlaced); // what steps have placed stays so until they are undone
    void setSelection(const std::vector<vnt::sketch::StrokeId>& ids); // unknown ids are left out
    // Another sketch in the place of this one, its strokes in this order; nothing to undo then.
    void reset(std::vector<vnt::sketch::StrokePtr> strokes, bool isPlaced = false);

    // Of a stroke that is being drawn, so that it can be kept: more of its ink, and the rest that this would end
    // with. addInk() ends it, or dropInk() where nothing becomes of it.
    void growInk(const vnt::sketch::Ink& more, const vnt::sketch::Ink& rest);
    void dropInk();

    // Each one step. Ids of new strokes come from the model.
    vnt::sketch::StrokeId addInk(vnt::sketch::Ink ink, std::vector<vnt::sketch::Reading> readings);
    // The stroke becomes the reading, its ink kept; the first undo gives the ink back.
    void convert(vnt::sketch::StrokeId id, const vnt::sketch::Reading& reading);
    void remove(const std::vector<vnt::sketch::StrokeId>& ids);
    void transform(const std::vector<vnt::sketch::StrokeId>& ids, const vnt::sketch::Affine& map);
    // A move by a key: those of the same strokes that come within a second of each other are one step.
    void nudge(const std::vector<vnt::sketch::StrokeId>& ids, vnt::sketch::Vec2 by);
    void setNudgePause(int milliseconds) { m_nudgePause_ms = milliseconds; }
    void duplicate(const std::vector<vnt::sketch::StrokeId>& ids,
                   vnt::sketch::Vec2 offset); // selects the copies
    void addStrokes(std::vector<vnt::sketch::Stroke> strokes, const QString& text);
    // The same of strokes that bring a place in the artwork along: until it is undone, all have one.
    void addPlacedStrokes(std::vector<vnt::sketch::Stroke> strokes, const QString& text);
    void clear();

signals:
    // What happens between these is one: who keeps a copy keeps all of it, or nothing.
    void stepBegan();
    void stepEnded();
    // Each change to the document as it happens, undo and redo included; what keeps a copy follows these.
    void inserted(std::size_t index, const vnt::sketch::StrokePtr& stroke);
    void taken(const vnt::sketch::StrokePtr& stroke);
    void replaced(const vnt::sketch::StrokePtr& before, const vnt::sketch::StrokePtr& after);
    void wasReset();
    void selectionChanged();
    void sheetIsToChange();                            // what is being drawn is of the one before: it ends
    void sheetChanged(const vnt::sketch::Affine& map); // every stroke is where it takes it; not replaced()
    void placedChanged();
    void inkGrew(const vnt::sketch::Ink& more, const vnt::sketch::Ink& rest);
    void inkEnded(); // of what grew: it was inserted in this step, or there is none

private:
    friend class SketchCommand; // changes the document, and says so

    // What happens while it is there is one.
    class Step {
    public:
        explicit Step(SketchModel& model);
        Step(const Step&) = delete;
        Step& operator=(const Step&) = delete;
        ~Step();

    private:
        SketchModel& m_model;
    };

    void pushNew(std::vector<vnt::sketch::Stroke> strokes, const QString& text, bool arePlaced);
    void countPlacing(int steps);
    void pushMove(const std::vector<vnt::sketch::StrokeId>& ids, const vnt::sketch::Affine& map,
                  int mergeMilliseconds);

    vnt::sketch::SketchDocument m_document;
    vnt::sketch::Sheet m_sheet;
    QUndoStack m_undoStack;
    std::vector<vnt::sketch::StrokeId> m_selection;
    bool m_isSheetPlaced = false;
    int m_placingSteps = 0; // that are not undone
    int m_openSteps = 0;
    int m_nudgePause_ms = 1000; // that begins another step
};
