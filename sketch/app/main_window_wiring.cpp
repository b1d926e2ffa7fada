// What each action of the main window does.
#include "sketch/app/actions.h"
#include "sketch/app/file_desk.h"
#include "sketch/app/link_panel.h"
#include "sketch/app/main_window.h"
#include "sketch/app/notice_area.h"
#include "sketch/app/options_bar.h"
#include "sketch/app/questions.h"
#include "sketch/app/sketch_canvas.h"
#include "sketch/app/status_panel.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

using vnt::sketch::StrokeId;

namespace {

constexpr double kStepPx = 1; // of the arrow keys
constexpr double kFarStepPx = 20;
constexpr double kZoomStep = 1.25;
constexpr double kTurnStep = 15;      // degrees
constexpr double kDuplicateStep = 16; // sheet pixels

// What an action does is about the whole sketch as one sees it.
template <class Act>
void whenChosen(QAction* action, SketchCanvas& canvas, QObject* context, Act act)
{
    QObject::connect(action, &QAction::triggered, context, [&canvas, act] {
        canvas.settle();
        act();
    });
}

} // namespace

void MainWindow::makeMenus()
{
    const Actions& a = *m_actions;
    QMenu* const file = menuBar()->addMenu(tr("&File"));
    file->addActions({a.newSheet, a.open, a.insert});
    QMenu* const earlier = file->addMenu(tr("&Earlier Sketches"));
    connect(earlier, &QMenu::aboutToShow, this, [this, earlier] { m_questions->fillEarlier(*earlier); });
    file->addSeparator();
    file->addActions({a.save, a.saveAs, a.exportSvg, a.exportPng});
    file->addSeparator();
    file->addActions({a.preferences, a.quit});
    QMenu* const edit = menuBar()->addMenu(tr("&Edit"));
    edit->addActions({a.undo, a.redo});
    edit->addSeparator();
    edit->addActions({a.selectAll, a.selectNone, a.selectNext, a.selectPrevious, a.otherReadings});
    edit->addSeparator();
    edit->addActions({a.duplicate, a.remove, a.clear});
    makeDrawMenu();
    makeViewMenu();
    QMenu* const editor = menuBar()->addMenu(tr("Ed&itor"));
    editor->addActions({a.send, a.cancel});
    QMenu* const help = menuBar()->addMenu(tr("&Help"));
    help->addActions({a.shortcuts, a.about});
}

void MainWindow::makeDrawMenu()
{
    const Actions& a = *m_actions;
    QMenu* const draw = menuBar()->addMenu(tr("Dra&w"));
    draw->addActions(a.tools->actions());
    draw->addSeparator();
    draw->addActions({a.convertAlways, a.snapToGrid, a.snapToShapes, a.snapToAngles});
}

void MainWindow::makeViewMenu()
{
    const Actions& a = *m_actions;
    QMenu* const view = menuBar()->addMenu(tr("&View"));
    view->addActions({a.zoomIn, a.zoomOut, a.editorScale, a.fitSheet, a.fitSketch});
    view->addSeparator();
    view->addActions({a.turnLeft, a.turnRight, a.turnUpright});
    view->addSeparator();
    view->addActions({a.fullScreen, a.nextPane});
    view->addSeparator();
    for (const QToolBar* bar : findChildren<QToolBar*>())
        view->addAction(bar->toggleViewAction());
}

void MainWindow::makeBars()
{
    m_options = new OptionsBar(*m_actions);
    addToolBar(Qt::TopToolBarArea, m_options);
    auto* const tools = new QToolBar(tr("Tools"));
    tools->setObjectName("toolsBar");
    tools->addActions(m_actions->tools->actions());
    addToolBar(Qt::LeftToolBarArea, tools);
}

void MainWindow::connectFiles()
{
    const Actions& a = *m_actions;
    whenChosen(a.newSheet, *m_canvas, this, [this] {
        m_session.newSheet();
        showSheet();
    });
    whenChosen(a.open, *m_canvas, this, [this] { m_files->askOpen(); });
    whenChosen(a.insert, *m_canvas, this, [this] { m_files->askInsert(); });
    whenChosen(a.save, *m_canvas, this, [this] { m_files->save(); });
    whenChosen(a.saveAs, *m_canvas, this, [this] { m_files->askSaveAs(); });
    whenChosen(a.exportSvg, *m_canvas, this, [this] { m_files->askExportSvg(); });
    whenChosen(a.exportPng, *m_canvas, this, [this] { m_files->askExportPng(); });
    connect(a.preferences, &QAction::triggered, this, &MainWindow::showPreferences);
    connect(a.quit, &QAction::triggered, this, &MainWindow::close);
    connect(a.shortcuts, &QAction::triggered, this, &MainWindow::showKeys);
    connect(a.about, &QAction::triggered, this, &MainWindow::showAbout);
    connect(a.nextPane, &QAction::triggered, this, &MainWindow::goToNextPane);
    connect(m_files, &FileDesk::said, m_status, &StatusPanel::say);
    connect(m_files, &FileDesk::opened, this, [this] {
        if (!m_session.editorWaits()) // whose sheet it is, and whose view
            m_canvas->fitSketch();
    });
    connect(m_questions, &Questions::replacing, m_canvas, &SketchCanvas::settle);
    connect(m_questions, &Questions::recovered, this, [this] {
        showSheet();
        m_canvas->setFocus();
    });
    connect(m_notices, &NoticeArea::answered, m_canvas, qOverload<>(&QWidget::setFocus));
}

void MainWindow::connectEditing()
{
    const Actions& a = *m_actions;
    SketchModel& model = m_session.model();
    connect(a.undo, &QAction::triggered, m_canvas, &SketchCanvas::undo);
    whenChosen(a.redo, *m_canvas, this, [&model] { model.undoStack().redo(); });
    connect(a.tools, &QActionGroup::triggered, this, [this](const QAction* action) {
        m_canvas->finishStroke();
        m_canvas->setTool(static_cast<Tool>(action->data().toInt()));
    });
    connect(m_canvas, &SketchCanvas::toolChanged, this,
            [this](Tool tool) { m_actions->ofTool(tool)->setChecked(true); });
    a.ofTool(m_canvas->tool())->setChecked(true);
    whenChosen(a.duplicate, *m_canvas, this, [&model] {
        model.duplicate(model.selection(), {kDuplicateStep, kDuplicateStep});
    });
    whenChosen(a.remove, *m_canvas, this, [&model] { model.remove(model.selection()); });
    whenChosen(a.clear, *m_canvas, this, [this, &model] {
        model.clear();
        m_status->say(tr("The sheet is clear. Undo brings back what was on it."));
    });
    connect(&model, &SketchModel::selectionChanged, this, &MainWindow::showWhatIsPossible);
    connect(&m_session, &SketchSession::stateChanged, this, [this] {
        showTitle();
        showWhatIsPossible();
    });
}

void MainWindow::connectSelecting()
{
    const Actions& a = *m_actions;
    SketchModel& model = m_session.model();
    whenChosen(a.selectAll, *m_canvas, this, [&model] {
        std::vector<StrokeId> all;
        for (const auto& stroke : model.document().strokes())
            all.push_back(stroke->id);
        model.setSelection(std::move(all));
    });
    whenChosen(a.selectNone, *m_canvas, this, [&model] { model.setSelection({}); });
    whenChosen(a.selectNext, *m_canvas, this, [this] { selectBeside(1); });
    whenChosen(a.selectPrevious, *m_canvas, this, [this] { selectBeside(-1); });
    connect(a.otherReadings, &QAction::triggered, this, [this, &model] { // of one that is shown, too
        m_canvas->finishStroke();
        const auto& strokes = model.document().strokes();
        if (!strokes.empty())
            m_canvas->offerReadings(model.selection().empty() ? strokes.back()->id
                                                              : model.selection().back());
    });
    struct Move {
        QAction* action;
        double x, y;
    };
    for (const Move& move : {
             Move{a.moveLeft,     -kStepPx,    0          },
             Move{a.moveRight,    kStepPx,     0          },
             Move{a.moveUp,       0,           -kStepPx   },
             Move{a.moveDown,     0,           kStepPx    },
             Move{a.moveFarLeft,  -kFarStepPx, 0          },
             Move{a.moveFarRight, kFarStepPx,  0          },
             Move{a.moveFarUp,    0,           -kFarStepPx},
             Move{a.moveFarDown,  0,           kFarStepPx }
    }) {
        m_canvas->addAction(move.action);
        whenChosen(move.action, *m_canvas, this, [this, move] { moveSelection(move.x, move.y); });
    }
}

void MainWindow::connectView()
{
    const Actions& a = *m_actions;
    connect(a.zoomIn, &QAction::triggered, this, [this] { m_canvas->zoomBy(kZoomStep); });
    connect(a.zoomOut, &QAction::triggered, this, [this] { m_canvas->zoomBy(1 / kZoomStep); });
    connect(a.editorScale, &QAction::triggered, this, [this] { m_canvas->setScale(1); });
    connect(a.fitSheet, &QAction::triggered, m_canvas, &SketchCanvas::fitSheet);
    connect(a.fitSketch, &QAction::triggered, m_canvas, &SketchCanvas::fitSketch);
    connect(a.turnLeft, &QAction::triggered, this, [this] { m_canvas->rotateBy(-kTurnStep); });
    connect(a.turnRight, &QAction::triggered, this, [this] { m_canvas->rotateBy(kTurnStep); });
    connect(a.turnUpright, &QAction::triggered, this, [this] { m_canvas->setRotation(0); });
    connect(a.fullScreen, &QAction::toggled, this, [this](bool isOn) {
        setWindowState(isOn ? windowState() | Qt::WindowFullScreen : windowState() & ~Qt::WindowFullScreen);
    });
    connect(&m_wishes, &DesktopWishes::changed, this, &MainWindow::applyLook);
}

void MainWindow::connectOptions()
{
    const auto follow = [this](QAction* action, bool CanvasSettings::*field) {
        connect(action, &QAction::triggered, this, [this, field](bool isOn) {
            changeCanvas([field, isOn](CanvasSettings& canvas) { canvas.*field = isOn; });
        });
    };
    follow(m_actions->convertAlways, &CanvasSettings::convertAlways);
    follow(m_actions->snapToGrid, &CanvasSettings::snapToGrid);
    follow(m_actions->snapToShapes, &CanvasSettings::snapToShapes);
    follow(m_actions->snapToAngles, &CanvasSettings::snapToAngles);
    connect(m_options, &OptionsBar::toleranceChanged, this, [this](double tolerance) {
        changeCanvas([tolerance](CanvasSettings& canvas) { canvas.tolerance = tolerance; });
    });
    connect(m_options, &OptionsBar::stabiliserChanged, this, [this](double strength) {
        changeCanvas([strength](CanvasSettings& canvas) { canvas.stabiliser = strength; });
    });
}

void MainWindow::connectLink()
{
    LinkServer& link = m_session.link();
    connect(m_actions->send, &QAction::triggered, this, &MainWindow::send);
    whenChosen(m_actions->cancel, *m_canvas, this, [this] { m_session.cancel(); });
    connect(m_linkPanel, &LinkPanel::listenAgain, this, &MainWindow::listen);
    connect(&m_session, &SketchSession::editorAsked, this, &MainWindow::takeEditorSheet);
    connect(&m_session, &SketchSession::said, m_status, &StatusPanel::say);
    connect(&link, &LinkServer::stateChanged, this, &MainWindow::showWhatIsPossible);
    connect(&link, &LinkServer::logged, this, [this](const QString& line) { m_log.add(line); });
}
