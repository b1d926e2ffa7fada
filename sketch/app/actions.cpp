#include "sketch/app/actions.h"

#include "sketch/app/icons.h"
#include "sketch/app/tools.h"

#include <QAction>
#include <QUndoStack>
#include <QWidget>

Actions::Actions(QWidget& window, QUndoStack& undoStack) : QObject(&window), m_window(window)
{
    makeFileActions();
    makeEditActions(undoStack);
    makeMoves();
    makeViewActions();
    makeTools();
    send = make("send", tr("&Send"), "send", {QKeySequence("Ctrl+Return"), QKeySequence("Ctrl+Enter")});
    cancel = make("cancel", tr("Ca&ncel"), "cancel", {QKeySequence("Shift+Esc")});
    nextPane = make("nextPane", tr("Go to Questions, Buttons, Sheet in Turn"), "", {QKeySequence("F6")});
    shortcuts = make("shortcuts", tr("&Keys"), "help", {QKeySequence("F1")});
    about = make("about", tr("&About VANT Sketch"), "", {});
}

QAction* Actions::ofTool(Tool tool) const
{
    for (QAction* action : tools->actions()) {
        if (action->data().toInt() == static_cast<int>(tool))
            return action;
    }
    return nullptr;
}

QList<QAction*> Actions::moves() const
{
    return {moveLeft, moveRight, moveUp, moveDown, moveFarLeft, moveFarRight, moveFarUp, moveFarDown};
}

QAction* Actions::make(const char* name, const QString& text, const char* icon,
                       const QList<QKeySequence>& keys)
{
    auto* const action = new QAction(text, this);
    action->setObjectName(name);
    action->setShortcuts(keys);
    if (*icon != '\0')
        action->setIcon(iconOf(icon));
    m_window.addAction(action);
    if (!keys.isEmpty())
        action->setToolTip(QStringLiteral("%1 (%2)").arg(action->iconText(),
                                                         keys.front().toString(QKeySequence::NativeText)));
    return action;
}

QAction* Actions::makeSwitch(const char* name, const QString& text, const char* icon, const QKeySequence& key)
{
    QAction* const action = make(name, text, icon, {key});
    action->setCheckable(true);
    return action;
}

void Actions::makeFileActions()
{
    newSheet = make("newSheet", tr("&New Sheet"), "new-sheet", {QKeySequence("Ctrl+N")});
    open = make("open", tr("&Open…"), "open", {QKeySequence("Ctrl+O")});
    insert = make("insert", tr("&Insert…"), "", {QKeySequence("Ctrl+I")});
    save = make("save", tr("&Save"), "save", {QKeySequence("Ctrl+S")});
    saveAs = make("saveAs", tr("Save &As…"), "", {QKeySequence("Ctrl+Shift+S")});
    exportSvg = make("exportSvg", tr("Export S&VG…"), "export", {QKeySequence("Ctrl+E")});
    exportPng = make("exportPng", tr("Export &PNG…"), "", {QKeySequence("Ctrl+Shift+E")});
    preferences = make("preferences", tr("P&references…"), "settings", {QKeySequence("Ctrl+,")});
    quit = make("quit", tr("&Quit"), "", {QKeySequence("Ctrl+Q")});
    quit->setMenuRole(QAction::QuitRole);
    preferences->setMenuRole(QAction::PreferencesRole);
}

void Actions::makeEditActions(QUndoStack& undoStack)
{
    undo = make("undo", tr("&Undo"), "undo", {QKeySequence("Ctrl+Z")});
    redo = make("redo", tr("&Redo"), "redo", {QKeySequence("Ctrl+Shift+Z"), QKeySequence("Ctrl+Y")});
    undo->setEnabled(false);
    redo->setEnabled(false);
    connect(&undoStack, &QUndoStack::canUndoChanged, undo, &QAction::setEnabled);
    connect(&undoStack, &QUndoStack::canRedoChanged, redo, &QAction::setEnabled);
    for (QAction* action : {undo, redo})
        action->setIconText(action->iconText()); // without the step, also when the text names one
    // Without a step to name, the plain word stands.
    connect(&undoStack, &QUndoStack::undoTextChanged, undo, [this](const QString& step) {
        undo->setText(step.isEmpty() ? tr("&Undo") : tr("&Undo: %1").arg(step));
    });
    connect(&undoStack, &QUndoStack::redoTextChanged, redo, [this](const QString& step) {
        redo->setText(step.isEmpty() ? tr("&Redo") : tr("&Redo: %1").arg(step));
    });
    selectAll = make("selectAll", tr("Select &All"), "", {QKeySequence("Ctrl+A")});
    selectNone = make("selectNone", tr("Select &None"), "", {QKeySequence("Ctrl+Shift+A")});
    selectNext = make("selectNext", tr("Select Ne&xt Stroke"), "", {QKeySequence(".")});
    selectPrevious = make("selectPrevious", tr("Select Pre&vious Stroke"), "", {QKeySequence(",")});
    duplicate = make("duplicate", tr("&Duplicate"), "duplicate", {QKeySequence("Ctrl+D")});
    remove = make("remove", tr("De&lete"), "delete", {QKeySequence("Del"), QKeySequence("Backspace")});
    clear = make("clear", tr("&Clear Sheet"), "clear", {QKeySequence("Ctrl+Shift+Del")});
    otherReadings = make("otherReadings", tr("&Other Readings of the Stroke"), "", {QKeySequence("T")});
    convertAlways =
        makeSwitch("convertAlways", tr("Con&vert Every Stroke"), "convert", QKeySequence("Ctrl+T"));
    snapToGrid = makeSwitch("snapToGrid", tr("Snap to &Grid"), "snap-grid", QKeySequence("Ctrl+1"));
    snapToShapes = makeSwitch("snapToShapes", tr("Snap to &Shapes"), "snap-shapes", QKeySequence("Ctrl+2"));
    snapToAngles =
        makeSwitch("snapToAngles", tr("Snap to Steps of &15°"), "snap-angles", QKeySequence("Ctrl+3"));
}

void Actions::makeMoves()
{
    moveLeft = make("moveLeft", tr("Move Selection Left"), "", {QKeySequence("Left")});
    moveRight = make("moveRight", tr("Move Selection Right"), "", {QKeySequence("Right")});
    moveUp = make("moveUp", tr("Move Selection Up"), "", {QKeySequence("Up")});
    moveDown = make("moveDown", tr("Move Selection Down"), "", {QKeySequence("Down")});
    moveFarLeft = make("moveFarLeft", tr("Move Selection Far Left"), "", {QKeySequence("Shift+Left")});
    moveFarRight = make("moveFarRight", tr("Move Selection Far Right"), "", {QKeySequence("Shift+Right")});
    moveFarUp = make("moveFarUp", tr("Move Selection Far Up"), "", {QKeySequence("Shift+Up")});
    moveFarDown = make("moveFarDown", tr("Move Selection Far Down"), "", {QKeySequence("Shift+Down")});
    // Elsewhere than on the sheet the arrow keys are for sliders and fields.
    for (QAction* move : moves())
        move->setShortcutContext(Qt::WidgetShortcut);
}

void Actions::makeViewActions()
{
    zoomIn = make("zoomIn", tr("Zoom &In"), "zoom-in",
                  {QKeySequence("+"), QKeySequence("="), QKeySequence("Ctrl++")});
    zoomOut = make("zoomOut", tr("Zoom &Out"), "zoom-out", {QKeySequence("-"), QKeySequence("Ctrl+-")});
    editorScale = make("editorScale", tr("&Editor's Scale"), "", {QKeySequence("0"), QKeySequence("Ctrl+0")});
    fitSheet = make("fitSheet", tr("Fit the &Sheet"), "fit-sheet", {QKeySequence("1")});
    fitSketch = make("fitSketch", tr("Fit the S&ketch"), "fit-sketch", {QKeySequence("2")});
    turnLeft = make("turnLeft", tr("Turn &Left"), "turn-left", {QKeySequence("[")});
    turnRight = make("turnRight", tr("Turn &Right"), "turn-right", {QKeySequence("]")});
    turnUpright = make("turnUpright", tr("Turn &Upright"), "", {QKeySequence("U")});
    fullScreen = makeSwitch("fullScreen", tr("&Full Screen"), "", QKeySequence("F11"));
}

void Actions::makeTools()
{
    tools = new QActionGroup(this);
    for (const ToolEntry& entry : toolEntries()) {
        QAction* const action = make(entry.name, entry.text, entry.icon, {QKeySequence(entry.key)});
        action->setCheckable(true);
        action->setData(static_cast<int>(entry.tool));
        tools->addAction(action);
    }
}
