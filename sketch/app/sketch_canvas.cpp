#include "sketch/app/sketch_canvas.h"

#include "sketch/app/canvas_private.h"
#include "sketch/app/pan_gesture.h"

#include <QKeyEvent>
#include <QNativeGestureEvent>
#include <QPaintEvent>
#include <QWheelEvent>

#include <cmath>

using vnt::sketch::StrokeId;

namespace {

constexpr double kWheelZoom = 1.2;  // a notch
constexpr double kWheelNotch = 120; // eighths of a degree
constexpr double kWheelScroll = 64; // pixels a notch
constexpr double kArrowStep = 1;    // pixels that an arrow key moves the selection by
constexpr double kLongArrowStep = 10;
constexpr double kArrowPan = 40; // pixels, when nothing is selected

// The way of an arrow key; null for another key.
QPointF arrowOf(int key)
{
    switch (key) {
    case Qt::Key_Left: return {-1, 0};
    case Qt::Key_Right: return {1, 0};
    case Qt::Key_Up: return {0, -1};
    case Qt::Key_Down: return {0, 1};
    default: return {};
    }
}

bool isEnter(int key) { return key == Qt::Key_Return || key == Qt::Key_Enter; }

// With others held, Enter and Escape are the window's: they send and cancel.
bool isPlain(const QKeyEvent& event)
{
    return (event.modifiers() & (Qt::ControlModifier | Qt::ShiftModifier | Qt::MetaModifier)) == 0;
}

// What is held but for the key itself, which some systems count already or still.
Qt::KeyboardModifiers heldBeside(const QKeyEvent& event)
{
    return event.modifiers() & ~(event.key() == Qt::Key_Alt ? Qt::AltModifier : Qt::ControlModifier);
}

} // namespace

SketchCanvas::SketchCanvas(SketchModel& model, QWidget* parent)
    : QWidget(parent),
      d(std::make_unique<Private>(model, *this)) // before the first event, which attributes send
{
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_AcceptTouchEvents);
    setAttribute(Qt::WA_TabletTracking);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(160, 120);
    setAccessibleName(tr("Sketch sheet"));
    setAccessibleDescription(
        tr("Draw here with pen, mouse or finger. Tab goes through the readings of the last "
           "stroke, Enter takes one, Escape keeps the ink."));
    CanvasView view = d->stage.view();
    view.centreOn({model.sheet().width / 2, model.sheet().height / 2});
    d->stage.setView(view);
    d->showCursor();
}

SketchCanvas::~SketchCanvas()
{
    // The model outlives this, and tells nobody any more.
    disconnect(&d->stage.model, nullptr, this, nullptr);
}

Tool SketchCanvas::tool() const { return d->tool; }

void SketchCanvas::setTool(Tool tool)
{
    if (tool == d->tool)
        return;
    finishStroke();
    d->offers.take();
    d->tool = tool;
    d->showCursor();
    emit toolChanged(tool);
}

const CanvasSettings& SketchCanvas::settings() const { return d->stage.settings; }

void SketchCanvas::setSettings(const CanvasSettings& settings)
{
    finishStroke();
    d->stage.settings = settings;
    d->stage.spoilAll();
    d->offers.stageChanged();
}

void SketchCanvas::setColours(const CanvasColours& colours)
{
    d->stage.colours = colours;
    d->stage.spoilAll();
}

QTransform SketchCanvas::sheetToWidget() const { return d->stage.view().sheetToWidget(); }

double SketchCanvas::viewScale() const { return d->stage.view().scale(); }

double SketchCanvas::viewRotation() const { return d->stage.view().rotation(); }

void SketchCanvas::zoomBy(double factor) { setScale(viewScale() * factor); }

void SketchCanvas::setScale(double scale)
{
    d->changeView([=](CanvasView& view) { view.setScale(scale, view.middle()); });
}

void SketchCanvas::rotateBy(double degrees) { setRotation(viewRotation() + degrees); }

void SketchCanvas::setRotation(double degrees)
{
    d->changeView([=](CanvasView& view) { view.setRotation(degrees, view.middle()); });
}

void SketchCanvas::fitSheet()
{
    const auto& sheet = d->stage.model.sheet();
    d->changeView([&](CanvasView& view) { view.fit(QRectF(0, 0, sheet.width, sheet.height)); });
}

void SketchCanvas::fitSketch()
{
    finishStroke();
    if (d->stage.arts.all().empty()) {
        fitSheet();
        return;
    }
    d->changeView([&](CanvasView& view) { view.fit(d->stage.arts.box()); });
}

QString SketchCanvas::offeredReading() const { return d->offers.name(); }

void SketchCanvas::offerReadings(StrokeId id)
{
    finishStroke();
    d->offers.show(id);
}

void SketchCanvas::offerNext()
{
    if (d->offers.isShown())
        d->offers.next();
    else if (!d->isGesturing())
        d->offers.show(d->strokeForTab());
}

void SketchCanvas::offerPrevious()
{
    if (!d->offers.isShown())
        offerNext();
    else
        d->offers.previous();
}

void SketchCanvas::takeOffered() { d->offers.take(); }

void SketchCanvas::dropOffered() { d->offers.drop(); }

void SketchCanvas::finishStroke() { d->finishGesture(); }

void SketchCanvas::settle() { d->settle(); }

void SketchCanvas::undo()
{
    finishStroke();
    if (d->offers.isProposed())
        d->offers.drop();
    else
        d->stage.model.undoStack().undo();
}

bool SketchCanvas::isDrawing() const { return d->isDrawing(); }

void SketchCanvas::setClock(std::function<qint64()> clock) { d->input.setClock(std::move(clock)); }

void SketchCanvas::paintSketch(QPainter& painter) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    for (const auto& art : d->stage.arts.all())
        paintStroke(painter, *art, {}, d->stage.look());
}

bool SketchCanvas::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // While something is offered or drawn, these keys are the canvas's, whatever the window has them for.
        const auto& pressed = static_cast<const QKeyEvent&>(*event);
        const int key = pressed.key();
        const bool isBusy = d->offers.isShown() || d->isGesturing();
        const bool isAnswer = isPlain(pressed) && (isEnter(key) || key == Qt::Key_Escape);
        if (isBusy && (isAnswer || key == Qt::Key_Alt)) {
            event->accept();
            return true;
        }
    }
    if (event->type() == QEvent::NativeGesture) {
        const auto& gesture = static_cast<const QNativeGestureEvent&>(*event);
        const QPointF at = gesture.position();
        if (gesture.gestureType() == Qt::ZoomNativeGesture)
            d->changeView([&](CanvasView& view) { view.setScale(view.scale() * (1 + gesture.value()), at); });
        else if (gesture.gestureType() == Qt::RotateNativeGesture)
            d->changeView([&](CanvasView& view) { view.setRotation(view.rotation() + gesture.value(), at); });
        return true;
    }
    return d->input.handle(*event) || QWidget::event(event);
}

// Tab is for readings as long as there are any to go through, and for the next widget otherwise.
bool SketchCanvas::focusNextPrevChild(bool next)
{
    if (!d->isTabOurs())
        return QWidget::focusNextPrevChild(next);
    if (next)
        offerNext();
    else
        offerPrevious();
    return true;
}

void SketchCanvas::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    d->paint(painter, event->rect());
}

void SketchCanvas::resizeEvent(QResizeEvent* event)
{
    const QTransform before = sheetToWidget();
    d->changeView([&](CanvasView& view) {
        view.setSize(event->size());
        if (!isVisible())
            return;
        // By whole pixels, so that what is painted only moves.
        const QTransform after = view.sheetToWidget();
        const double ratio = devicePixelRatioF();
        const QPointF move(after.dx() - before.dx(), after.dy() - before.dy());
        view.moveBy(QPointF((move * ratio).toPoint()) / ratio - move);
    });
}

void SketchCanvas::hideEvent(QHideEvent* event)
{
    finishStroke(); // no pen is lifted on what is not there
    QWidget::hideEvent(event);
}

void SketchCanvas::wheelEvent(QWheelEvent* event)
{
    event->accept();
    if (isDrawing())
        return;
    const QPointF at = event->position();
    const QPoint notches = event->angleDelta();
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        const double factor = std::pow(kWheelZoom, notches.y() / kWheelNotch);
        d->changeView([&](CanvasView& view) { view.setScale(view.scale() * factor, at); });
        return;
    }
    QPointF move = event->pixelDelta();
    if (move.isNull())
        move = QPointF(notches) * (kWheelScroll / kWheelNotch);
    if (event->modifiers().testFlag(Qt::ShiftModifier) && move.x() == 0)
        move = move.transposed();
    panBy(d->stage, d->stage.view(), move);
}

void SketchCanvas::keyPressEvent(QKeyEvent* event)
{
    const int key = event->key();
    const QPointF arrow = arrowOf(key);
    if (key == Qt::Key_Space) {
        if (!event->isAutoRepeat())
            d->setSpace(true);
    } else if (key == Qt::Key_Alt || (key == Qt::Key_Control && d->isGesturing())) {
        d->offers.setSnapping(false); // without a gesture Ctrl begins a command, which takes what is shown
    } else if (key == Qt::Key_Escape && isPlain(*event)) {
        escape(*event);
    } else if (isEnter(key) && isPlain(*event) && d->offers.isShown()) {
        takeOffered();
    } else if (key == Qt::Key_Delete || key == Qt::Key_Backspace) {
        d->stage.model.remove(d->stage.model.selection());
    } else if (!arrow.isNull() && !d->stage.model.selection().empty()) {
        const bool isLong = event->modifiers().testFlag(Qt::ShiftModifier);
        d->moveSelection(arrow * (isLong ? kLongArrowStep : kArrowStep));
    } else if (!arrow.isNull()) {
        finishStroke();
        panBy(d->stage, d->stage.view(), -arrow * kArrowPan);
    } else {
        QWidget::keyPressEvent(event);
    }
}

// From what is nearest at hand to what lies further off.
void SketchCanvas::escape(QKeyEvent& event)
{
    if (d->offers.isShown())
        d->offers.drop();
    else if (d->isGesturing())
        d->cancelGesture();
    else if (!d->stage.model.selection().empty())
        d->stage.model.setSelection({});
    else
        QWidget::keyPressEvent(&event);
}

void SketchCanvas::keyReleaseEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat())
        d->setSpace(false);
    else if (event->key() == Qt::Key_Alt || event->key() == Qt::Key_Control)
        d->offers.setSnapping(!suspendsSnapping(heldBeside(*event)));
    else
        QWidget::keyReleaseEvent(event);
}

void SketchCanvas::focusOutEvent(QFocusEvent* event)
{
    d->setSpace(false); // its release goes to another
    QWidget::focusOutEvent(event);
}

void SketchCanvas::leaveEvent(QEvent* event)
{
    emit pointerLeft();
    QWidget::leaveEvent(event);
}
