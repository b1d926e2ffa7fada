// Everything that one can ask of the window, each with its name, words, icon and keys.
#pragma once

#include "sketch/app/sketch_canvas.h"

#include <QActionGroup>
#include <QKeySequence>
#include <QObject>

class QAction;
class QUndoStack;
class QWidget;

class Actions : public QObject {
    Q_OBJECT

public:
    // The actions are the window's: their keys work wherever the focus is in it.
    Actions(QWidget& window, QUndoStack& undoStack);

    QAction *newSheet, *open, *insert, *save, *saveAs, *exportSvg, *exportPng, *preferences, *quit;
    QAction *undo, *redo, *selectAll, *selectNone, *selectNext, *selectPrevious, *duplicate, *remove, *clear,
        *otherReadings;
    QAction *moveLeft, *moveRight, *moveUp, *moveDown, *moveFarLeft, *moveFarRight, *moveFarUp, *moveFarDown;
    QAction *send, *cancel;
    QAction *zoomIn, *zoomOut, *editorScale, *fitSheet, *fitSketch, *turnLeft, *turnRight, *turnUpright,
        *fullScreen;
    QAction *convertAlways, *snapToGrid, *snapToShapes, *snapToAngles;
    QAction *nextPane, *shortcuts, *about;
    QActionGroup* tools; // each with its Tool as data

    QAction* ofTool(Tool tool) const;
    QList<QAction*> moves() const; // their keys work where they are added as actions, and only there

private:
    QAction* make(const char* name, const QString& text, const char* icon, const QList<QKeySequence>& keys);
    QAction* makeSwitch(const char* name, const QString& text, const char* icon, const QKeySequence& key);
    void makeFileActions();
    void makeEditActions(QUndoStack& undoStack);
    void makeMoves();
    void makeViewActions();
    void makeTools();

    QWidget& m_window;
};
