#include "sketch/app/canvas_private.h"

#include "sketch/app/draw_gesture.h"
#include "sketch/app/erase_gesture.h"
#include "sketch/app/pan_gesture.h"
#include "sketch/app/select_gesture.h"

using vnt::sketch::Affine;
using vnt::sketch::StrokeId;
using vnt::sketch::StrokePtr;

namespace {

constexpr double kBoxMargin = 4; // pixels, between strokes and the box about them

// A ring as large as what the eraser takes, light and dark, so that it shows on everything.
QCursor eraserCursor()
{
    constexpr int kSize = 32;
    QPixmap picture(kSize, kSize);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF middle(kSize / 2.0, kSize / 2.0);
    painter.setPen(QPen(Qt::white, 3));
    painter.drawEllipse(middle, EraseGesture::kReach, EraseGesture::kReach);
    painter.setPen(QPen(Qt::black, 1.25));
    painter.drawEllipse(middle, EraseGesture::kReach, EraseGesture::kReach);
    painter.end();
    return QCursor(picture, kSize / 2, kSize / 2);
}

} // namespace

SketchCanvas::Private::Private(SketchModel& model, SketchCanvas& owner)
    : q(owner), stage(model, owner), offers(stage), input(*this),
      m_sheetSize(model.sheet().width, model.sheet().height)
{
    stage.viewMoved = [this] {
        offers.stageChanged();
        emit q.viewChanged();
    };
    connect(&offers, &OfferedReadings::changed, &q, &SketchCanvas::offerChanged);
    connect(&offers, &OfferedReadings::snappedTo, &q, &SketchCanvas::snappedTo);
    followModel(model);
}

void SketchCanvas::Private::followModel(SketchModel& model)
{
    connect(&model, &SketchModel::inserted, &q, [this](std::size_t index, const StrokePtr& stroke) {
        stage.spoil(stage.boxInWidget(stage.arts.insert(index, stroke)));
    });
    connect(&model, &SketchModel::taken, &q, [this](const StrokePtr& stroke) {
        if (const StrokeArt* art = stage.arts.find(stroke->id))
            stage.spoil(stage.boxInWidget(*art));
        stage.arts.take(stroke->id);
    });
    connect(&model, &SketchModel::replaced, &q, [this](const StrokePtr&, const StrokePtr& after) {
        if (const StrokeArt* before = stage.arts.find(after->id))
            stage.spoil(stage.boxInWidget(*before));
        if (const StrokeArt* art = stage.arts.replace(after))
            stage.spoil(stage.boxInWidget(*art));
        updateSelection();
    });
    connect(&model, &SketchModel::wasReset, &q, [this, &model] {
        cancelGesture();
        stage.arts.reset(model.document().strokes());
        stage.spoilAll();
    });
    connect(&model, &SketchModel::selectionChanged, &q, [this] { updateSelection(); });
    connect(&model, &SketchModel::sheetIsToChange, &q, [this] { settle(); });
    connect(&model, &SketchModel::sheetChanged, &q, [this, &model](const Affine& map) {
        if (map != Affine())
            stage.arts.reset(model.document().strokes());
        const QSizeF size(model.sheet().width, model.sheet().height);
        if (map != Affine() || size != m_sheetSize) {
            CanvasView view = stage.view();
            view.setScale(1, view.middle()); // as large as the editor shows it
            view.centreOn({size.width() / 2, size.height() / 2});
            stage.setView(view);
        }
        m_sheetSize = size;
        stage.spoilAll();
        offers.stageChanged(); // another grid
    });
}

std::unique_ptr<Gesture> SketchCanvas::Private::gestureFor(const PenSample& sample, Use use)
{
    if (use == Use::pan || (use == Use::tool && tool == Tool::hand))
        return std::make_unique<PanGesture>(stage, sample);
    if (use == Use::erase || tool == Tool::eraser)
        return std::make_unique<EraseGesture>(stage, sample);
    if (tool == Tool::select)
        return std::make_unique<SelectGesture>(stage, sample,
                                               [this](const QString& what) { emit q.snappedTo(what); });
    return std::make_unique<DrawGesture>(stage, offers, tool, sample,
                                         [this](StrokeId id) { lastDrawn = id; });
}

void SketchCanvas::Private::penDown(const PenSample& sample, Use use)
{
    q.setFocus(Qt::MouseFocusReason); // Qt does it for the mouse alone
    finishGesture();
    if (use != Use::pan)
        offers.take();
    if (draws(tool) && use == Use::tool)
        stage.model.setSelection({});
    offers.setSnapping(!suspendsSnapping(sample.modifiers));
    m_last = sample;
    m_gesture = gestureFor(sample, use);
    showCursor();
}

void SketchCanvas::Private::penMoved(const PenSample& sample)
{
    m_last = sample;
    offers.setSnapping(!suspendsSnapping(sample.modifiers));
    if (m_gesture)
        m_gesture->move(sample);
    hovered(sample.at);
}

void SketchCanvas::Private::penLifted(const PenSample& sample)
{
    if (!m_gesture)
        return;
    offers.setSnapping(!suspendsSnapping(sample.modifiers));
    const std::unique_ptr<Gesture> gesture = std::move(m_gesture);
    gesture->lift(sample);
    showCursor();
}

void SketchCanvas::Private::penCancelled() { cancelGesture(); }

void SketchCanvas::Private::hovered(QPointF at) { emit q.pointerMoved(stage.view().toSheet(at)); }

void SketchCanvas::Private::pinched(const Pinch& pinch)
{
    changeView([&](CanvasView& view) {
        view.moveBy(pinch.move);
        view.setScale(view.scale() * pinch.factor, pinch.about);
        view.setRotation(view.rotation() + pinch.degrees, pinch.about);
    });
}

void SketchCanvas::Private::changeView(const std::function<void(CanvasView&)>& change)
{
    finishGesture();
    CanvasView view = stage.view();
    change(view);
    stage.setView(view);
}

void SketchCanvas::Private::finishGesture()
{
    if (!m_gesture)
        return;
    input.forget();
    penLifted(m_last);
}

void SketchCanvas::Private::settle()
{
    finishGesture();
    if (offers.isProposed())
        offers.take();
}

void SketchCanvas::Private::cancelGesture()
{
    if (!m_gesture)
        return;
    input.forget();
    const std::unique_ptr<Gesture> gesture = std::move(m_gesture);
    gesture->cancel();
    showCursor();
}

StrokeId SketchCanvas::Private::strokeForTab() const
{
    const auto& selection = stage.model.selection();
    const StrokeId id = selection.size() == 1 ? selection.front() : lastDrawn;
    return offers.wouldOffer(id) ? id : 0;
}

bool SketchCanvas::Private::isTabOurs() const
{
    return offers.isShown() || isGesturing() || strokeForTab() != 0;
}

void SketchCanvas::Private::moveSelection(QPointF pixels)
{
    QTransform unturned;
    unturned.rotate(-stage.view().rotation());
    const QPointF move = unturned.map(pixels) / stage.view().scale();
    settle();
    stage.model.nudge(stage.model.selection(), {move.x(), move.y()});
}

void SketchCanvas::Private::setSpace(bool isHeld)
{
    m_isSpaceHeld = isHeld;
    input.setPanning(isHeld);
    showCursor();
}

void SketchCanvas::Private::showCursor()
{
    const bool pans = m_isSpaceHeld || tool == Tool::hand;
    if (pans)
        q.setCursor(m_gesture ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
    else if (tool == Tool::eraser)
        q.setCursor(eraserCursor());
    else
        q.setCursor(tool == Tool::select ? Qt::ArrowCursor : Qt::CrossCursor);
}

QPolygonF SketchCanvas::Private::selectionBox() const
{
    QPolygonF corners;
    for (const StrokeId id : stage.model.selection()) {
        const StrokeArt* art = stage.arts.find(id);
        if (art != nullptr && !art->line.empty())
            corners << art->box.topLeft() << art->box.bottomRight();
    }
    if (corners.isEmpty())
        return {};
    const double margin = stage.onSheet(kBoxMargin);
    const QRectF box = corners.boundingRect().adjusted(-margin, -margin, margin, margin);
    return stage.view().sheetToWidget().map(QPolygonF(box));
}

void SketchCanvas::Private::updateSelection() { q.update(); }

void SketchCanvas::Private::paintSelection(QPainter& painter) const
{
    const QPolygonF box = selectionBox();
    if (box.isEmpty())
        return;
    painter.setRenderHint(QPainter::Antialiasing, stage.view().rotation() != 0);
    painter.setBrush(Qt::NoBrush);
    const QTransform map = stage.view().sheetToWidget();
    painter.setPen(QPen(stage.colours.selection, 1, Qt::DotLine));
    if (stage.model.selection().size() > 1) {
        for (const StrokeId id : stage.model.selection()) {
            if (const StrokeArt* art = stage.arts.find(id))
                painter.drawPolygon(map.map(QPolygonF(art->box)));
        }
    }
    painter.setPen(QPen(stage.colours.selection, 1.5, Qt::DashLine));
    painter.drawPolygon(box);
    painter.setPen(QPen(stage.colours.selection, 1));
    painter.setBrush(stage.colours.sheet);
    constexpr double kHandle = 3;
    for (const QPointF corner : box)
        painter.drawRect(QRectF(corner.x() - kHandle, corner.y() - kHandle, 2 * kHandle, 2 * kHandle));
}

void SketchCanvas::Private::paint(QPainter& painter, const QRect& rect)
{
    stage.show(painter, rect);
    const auto* selecting = dynamic_cast<const SelectGesture*>(m_gesture.get());
    if (selecting == nullptr || !selecting->isMoving())
        paintSelection(painter);
    if (m_gesture)
        m_gesture->paint(painter, rect);
    offers.paint(painter, rect);
}
