#include "sketch/app/main_window.h"

#include "sketch/app/actions.h"
#include "sketch/app/file_desk.h"
#include "sketch/app/keys_dialog.h"
#include "sketch/app/link_panel.h"
#include "sketch/app/notice_area.h"
#include "sketch/app/options_bar.h"
#include "sketch/app/preferences_dialog.h"
#include "sketch/app/questions.h"
#include "sketch/app/sketch_canvas.h"
#include "sketch/app/status_panel.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QLayout>
#include <QMessageBox>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

constexpr int kSavingMilliseconds = 400;

// Pixels; of a window that has no frame yet.
constexpr QSize kUsualFrame(16, 48);

} // namespace

MainWindow::MainWindow(const WindowSetup& setup, QWidget* parent)
    : QMainWindow(parent), m_log(setup.logFile), m_store(setup.settingsFile), m_settings(m_store.load()),
      m_session(setup.journalFolder), m_setup(setup),
      m_actions(new Actions(*this, m_session.model().undoStack())),
      m_canvas(new SketchCanvas(m_session.model())), m_notices(new NoticeArea),
      m_linkPanel(new LinkPanel(m_session, *m_actions->send, *m_actions->cancel, setup.isLinked)),
      m_status(new StatusPanel(*m_canvas)), m_files(new FileDesk(m_session, m_store, *m_notices, *this)),
      m_questions(new Questions(m_session, *m_notices, this))
{
    auto* const middle = new QWidget;
    auto* const column = new QVBoxLayout(middle);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_notices);
    column->addWidget(m_canvas, 1);
    column->addWidget(m_linkPanel);
    setCentralWidget(middle);
    setStatusBar(m_status);
    makeBars();
    makeMenus();
    connectFiles();
    connectEditing();
    connectSelecting();
    connectView();
    connectOptions();
    connectLink();
    m_canvas->setMinimumSize(160, 120);
    resize(1180, 860);
    restoreGeometry(m_store.windowGeometry());
    restoreState(m_store.windowState());
    keepOnScreen();
    m_saving.setSingleShot(true);
    m_saving.setInterval(kSavingMilliseconds);
    connect(&m_saving, &QTimer::timeout, this, [this] { m_store.save(m_settings); });
    applySettings(m_settings);
    m_canvas->setFocus();
    showTitle();
    showWhatIsPossible();
}

// The sketch is a member, and goes before what the window owns: whatever follows the sketch goes first.
MainWindow::~MainWindow()
{
    if (m_saving.isActive())
        m_store.save(m_settings);
    m_session.end();
    m_session.disconnect(this);
    m_session.link().disconnect(this);
    m_session.model().disconnect(this);
    delete m_questions;
    delete takeCentralWidget();
}

void MainWindow::begin()
{
    m_wishes.follow();
    if (m_setup.isLinked)
        listen();
    m_questions->offerLeft();
}

void MainWindow::listen()
{
    if (!m_session.link().listen(m_setup.port))
        m_log.add(QStringLiteral("does not listen: ") + m_session.link().problem());
}

void MainWindow::bringUp()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
    QApplication::alert(this); // where the desktop keeps the front for another window
}

bool MainWindow::openFile(const QString& file)
{
    m_canvas->settle();
    return m_files->open(file);
}

void MainWindow::turnEditorSheet(double degrees)
{
    m_canvas->setRotation(degrees);
    if (!m_session.editorWaits())
        m_editorTurn = degrees;
}

// The canvas has its size with the first show.
void MainWindow::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (std::exchange(m_wasShown, true))
        return;
    layout()->activate();
    centralWidget()->layout()->activate();
    if (m_session.file().isEmpty())
        m_canvas->fitSheet();
    else
        m_canvas->fitSketch();
}

void MainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        m_actions->fullScreen->setChecked(isFullScreen()); // the desktop has a key of its own for it
    else if (event->type() == QEvent::PaletteChange)
        QTimer::singleShot(0, this, [this] { // when the palette that comes is whole
            if (m_appearance.followDesktop())
                applyLook();
        });
}

// The answer comes before the window goes; what is on the sheet stays in its journal.
void MainWindow::closeEvent(QCloseEvent* event)
{
    m_canvas->settle();
    m_session.end();
    m_store.saveWindow(saveGeometry(), saveState());
    m_saving.stop();
    m_store.save(m_settings);
    event->accept();
}

void MainWindow::send()
{
    m_canvas->settle();
    m_session.send();
}

void MainWindow::takeEditorSheet(bool isSketchThere)
{
    m_canvas->finishStroke();
    bringUp();
    const double turn = std::exchange(m_editorTurn, std::nullopt).value_or(0);
    showEditorSheet(turn);
    QTimer::singleShot(0, this, [this, turn] { showEditorSheet(turn); }); // when the window has its new size
    if (isSketchThere)
        m_questions->askHowToGoOn();
    m_canvas->setFocus();
    m_log.add(QStringLiteral("an editor asks for a sketch"));
}

void MainWindow::showEditorSheet(double turn)
{
    makeRoomFor(m_session.model().sheet());
    m_canvas->setRotation(turn);
    showSheet();
}

// An editor's at its scale.
void MainWindow::showSheet()
{
    m_canvas->fitSheet();
    if (m_session.editorWaits())
        m_canvas->setScale(1);
}

void MainWindow::keepOnScreen()
{
    if (isMaximized() || isFullScreen())
        return;
    const QSize frame = (frameSize() - size()).expandedTo(kUsualFrame);
    resize(size().boundedTo(screen()->availableSize() - frame));
}

void MainWindow::makeRoomFor(const vnt::sketch::Sheet& sheet)
{
    if (isMaximized() || isFullScreen())
        return;
    constexpr int kMargin = 24;
    const QSize wanted(static_cast<int>(std::clamp(sheet.width, 0.0, 16384.0)) + kMargin,
                       static_cast<int>(std::clamp(sheet.height, 0.0, 16384.0)) + kMargin);
    const QSize room = screen()->availableSize() - (frameSize() - size());
    resize((size() + (wanted - m_canvas->size()).expandedTo({0, 0})).boundedTo(room.expandedTo(size())));
}

void MainWindow::applySettings(const Settings& settings)
{
    m_settings = settings;
    m_files->setPicture(settings.picture);
    m_session.setOwnGrid(settings.ownGrid);
    m_actions->convertAlways->setChecked(settings.canvas.convertAlways);
    m_actions->snapToGrid->setChecked(settings.canvas.snapToGrid);
    m_actions->snapToShapes->setChecked(settings.canvas.snapToShapes);
    m_actions->snapToAngles->setChecked(settings.canvas.snapToAngles);
    m_options->setValues(settings.canvas);
    applyLook();
}

void MainWindow::applyLook()
{
    const Look look = lookOf(m_settings.colours, m_wishes, m_appearance.desktopPalette());
    m_appearance.apply(look);
    m_canvas->setColours(look.canvas);
    CanvasSettings canvas = m_settings.canvas;
    canvas.reducedMotion = m_settings.motion == MotionChoice::reduced ||
                           (m_settings.motion == MotionChoice::automatic && m_wishes.reducedMotion());
    m_canvas->setSettings(canvas);
}

void MainWindow::changeCanvas(const std::function<void(CanvasSettings&)>& change)
{
    Settings settings = m_settings;
    change(settings.canvas);
    applySettings(settings);
    m_saving.start();
    if (m_preferences != nullptr)
        m_preferences->setSettings(settings);
}

void MainWindow::selectBeside(int step)
{
    SketchModel& model = m_session.model();
    const auto& strokes = model.document().strokes();
    if (strokes.empty())
        return;
    const auto count = static_cast<std::ptrdiff_t>(strokes.size());
    std::ptrdiff_t at = step > 0 ? -1 : count;
    if (!model.selection().empty())
        at = static_cast<std::ptrdiff_t>(
            model.document()
                .index_of(step > 0 ? model.selection().back() : model.selection().front())
                .value_or(0));
    at = (at + step + count) % count;
    model.setSelection({strokes[static_cast<std::size_t>(at)]->id});
}

// As one sees it, whatever the sheet's turn and scale.
void MainWindow::moveSelection(double x, double y)
{
    const QTransform widgetToSheet = m_canvas->sheetToWidget().inverted();
    const QPointF by = widgetToSheet.map(QPointF(x, y)) - widgetToSheet.map(QPointF(0, 0));
    SketchModel& model = m_session.model();
    model.nudge(model.selection(), {by.x(), by.y()});
}

void MainWindow::showPreferences()
{
    if (m_preferences == nullptr) {
        m_preferences = new PreferencesDialog(m_settings, this);
        connect(m_preferences, &PreferencesDialog::changed, this, [this](const Settings& settings) {
            applySettings(settings);
            m_saving.start();
        });
    }
    m_preferences->setSettings(m_settings);
    m_preferences->show();
    m_preferences->raise();
    m_preferences->activateWindow();
}

void MainWindow::showKeys()
{
    if (m_keys == nullptr)
        m_keys = new KeysDialog(actions(), this);
    m_keys->show();
    m_keys->raise();
    m_keys->activateWindow();
}

void MainWindow::showAbout()
{
    auto* const box =
        new QMessageBox(QMessageBox::NoIcon, tr("About VANT Sketch"),
                        tr("VANT Sketch %1\n\nDraw by hand over the view of your editor; what you "
                           "draw comes back there as paths.")
                            .arg(QApplication::applicationVersion()),
                        QMessageBox::Close, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setIconPixmap(windowIcon().pixmap(64));
    box->open();
}

void MainWindow::goToNextPane()
{
    if (m_canvas->hasFocus() && m_notices->focusFirst())
        return;
    if (!m_linkPanel->isAncestorOf(focusWidget()) && m_linkPanel->focusFirst())
        return;
    m_canvas->setFocus(Qt::ShortcutFocusReason);
}

void MainWindow::showTitle()
{
    const QString file = QFileInfo(m_session.file()).fileName();
    setWindowTitle(tr("%1[*] – VANT Sketch").arg(file.isEmpty() ? tr("Sketch") : file));
    setWindowFilePath(m_session.file());
    setWindowModified(!m_session.isSafe());
}

void MainWindow::showWhatIsPossible()
{
    SketchModel& model = m_session.model();
    const bool isSomething = !model.document().strokes().empty();
    const bool isSelected = !model.selection().empty();
    for (QAction* action : {m_actions->duplicate, m_actions->remove, m_actions->selectNone})
        action->setEnabled(isSelected);
    for (QAction* action : m_actions->moves())
        action->setEnabled(isSelected);
    for (QAction* action : {m_actions->selectAll, m_actions->selectNext, m_actions->selectPrevious,
                            m_actions->clear, m_actions->otherReadings, m_actions->fitSketch})
        action->setEnabled(isSomething);
    m_actions->send->setEnabled(m_session.editorWaits());
    m_actions->cancel->setEnabled(m_session.editorWaits());
}
