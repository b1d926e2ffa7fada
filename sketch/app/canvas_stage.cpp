#include "sketch/app/canvas_stage.h"

#include "sketch/app/grid_painter.h"

#include <cmath>
#include <iterator>

using vnt::sketch::Curve;
using vnt::sketch::RecognitionSettings;
using vnt::sketch::Shape;
using vnt::sketch::SnapScene;
using vnt::sketch::SnapSettings;
using vnt::sketch::StrokeId;
using vnt::sketch::Vec2;

namespace {

constexpr double kMostFaded = 0.7; // of the way from the ink to the sheet

// Screen pixels by which a move may miss whole ones and still be scrolled.
constexpr double kWholePixel = 1e-6;

// Points of all strokes; more take longer to paint than a frame lasts. Then a change of the view shows what
// is there under another map, until the view rests.
constexpr std::size_t kMostPoints = 6000;
constexpr int kViewRests_ms = 60;
constexpr int kPart_ms = 6;

// Its ends can be snapped to, and nothing else of it.
Shape endsOf(const vnt::sketch::Ink& ink)
{
    const Vec2 first{ink.front().x, ink.front().y};
    const Vec2 last{ink.back().x, ink.back().y};
    return Curve{
        {first, first, last, last},
        false
    };
}

double fraction(double value) { return value - std::floor(value); }

} // namespace

CanvasStage::CanvasStage(SketchModel& its, QWidget& ownWidget) : model(its), widget(ownWidget)
{
    arts.reset(model.document().strokes());
    m_partTimer.setSingleShot(true);
    QObject::connect(&m_partTimer, &QTimer::timeout, &m_partTimer,
                     [this] { paintPart(QDeadlineTimer(kPart_ms)); });
}

Vec2 CanvasStage::sheetPlace(QPointF at) const
{
    const QPointF place = m_view.toSheet(at);
    return {place.x(), place.y()};
}

QRectF CanvasStage::boxInWidget(const StrokeArt& art) const
{
    const double margin = settings.inkWidth / 2 + 1;
    return inWidget(art.box).adjusted(-margin, -margin, margin, margin);
}

StrokeLook CanvasStage::look() const { return {colours.ink, colours.shape, settings.inkWidth}; }

StrokeLook CanvasStage::fadedLook(double share) const
{
    const double faded = kMostFaded * share;
    return {mixed(colours.ink, colours.sheet, faded), mixed(colours.shape, colours.sheet, faded),
            settings.inkWidth};
}

RecognitionSettings CanvasStage::recognition() const
{
    RecognitionSettings recognition;
    recognition.tolerance = settings.tolerance;
    recognition.least_size_px = settings.leastSizePx;
    recognition.view_scale = m_view.scale();
    return recognition;
}

std::optional<SnapSettings> CanvasStage::snapping() const
{
    if (!settings.snapToGrid && !settings.snapToShapes && !settings.snapToAngles)
        return std::nullopt;
    SnapSettings snapping;
    snapping.view_scale = m_view.scale();
    snapping.to_grid = settings.snapToGrid;
    snapping.to_shapes = settings.snapToShapes;
    snapping.to_angles = settings.snapToAngles;
    return snapping;
}

SnapScene CanvasStage::snapScene(const std::unordered_set<StrokeId>& without) const
{
    std::vector<Shape> shapes;
    for (const auto& stroke : model.document().strokes()) {
        if (without.contains(stroke->id))
            continue;
        if (!std::holds_alternative<std::monostate>(stroke->shape))
            shapes.push_back(stroke->shape);
        else if (!stroke->ink.empty())
            shapes.push_back(endsOf(stroke->ink));
    }
    return SnapScene(shapes);
}

void CanvasStage::setView(const CanvasView& view)
{
    if (view == m_view)
        return;
    const QTransform before = m_view.sheetToWidget();
    m_view = view;
    const QTransform after = m_view.sheetToWidget();
    const double ratio = widget.devicePixelRatioF();
    const QPointF move(ratio * (after.dx() - before.dx()), ratio * (after.dy() - before.dy()));
    const QPoint whole = move.toPoint();
    const bool isTurnedAlike = before.m11() == after.m11() && before.m12() == after.m12();
    const bool isScroll = isTurnedAlike && (move - QPointF(whole)).manhattanLength() < kWholePixel;
    if (isScroll && !m_backing.isPreview()) {
        m_backing.scroll(whole);
    } else if (isQuick() || m_backing.isSpoilt()) {
        m_backing.spoil();
    } else {
        m_backing.preview(before.inverted() * after, colours.desk);
        m_partTimer.start(kViewRests_ms);
    }
    widget.update();
    viewMoved();
}

bool CanvasStage::isQuick() const
{
    std::size_t points = 0;
    for (const auto& art : arts.all())
        points += art->line.size();
    return points <= kMostPoints;
}

void CanvasStage::paintPart(QDeadlineTimer deadline)
{
    if (!m_backing.isPreview())
        return;
    const bool isWhole = m_backing.paintPart([&](QPainter& on, const QRectF& within, std::size_t from) {
        if (from == 0)
            paintSheet(on, within);
        return paintStrokes(on, within, from, deadline);
    });
    if (isWhole)
        widget.update();
    else
        m_partTimer.start(0); // after what else there is to do
}

// What changes on the sheet changes on the whole picture, or would be seen late.
void CanvasStage::endPreview()
{
    if (m_backing.isPreview())
        paintPart(QDeadlineTimer(QDeadlineTimer::Forever));
}

void CanvasStage::update(const QRectF& box)
{
    const QRectF seen = box & QRectF(widget.rect()).adjusted(-1, -1, 1, 1);
    if (!seen.isEmpty())
        widget.update(seen.toAlignedRect().adjusted(-1, -1, 1, 1));
}

void CanvasStage::spoil(const QRectF& box)
{
    endPreview();
    m_backing.spoil(box);
    update(box);
}

void CanvasStage::spoilAll()
{
    m_backing.spoil();
    widget.update();
}

void CanvasStage::pickUp(const std::vector<StrokeId>& ids)
{
    for (const StrokeId id : ids) {
        const StrokeArt* art = arts.find(id);
        if (art != nullptr && m_pickedUp.insert(id).second)
            spoil(boxInWidget(*art));
    }
}

void CanvasStage::layDown()
{
    for (const StrokeId id : m_pickedUp) {
        if (const StrokeArt* art = arts.find(id))
            spoil(boxInWidget(*art));
    }
    m_pickedUp.clear();
}

void CanvasStage::paintSheet(QPainter& painter, const QRectF& within) const
{
    const QTransform map = m_view.sheetToWidget();
    const auto& sheet = model.sheet();
    painter.setRenderHint(QPainter::Antialiasing, m_view.rotation() != 0);
    painter.fillRect(within, colours.desk);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours.sheet);
    painter.drawPolygon(map.map(QPolygonF(QRectF(0, 0, sheet.width, sheet.height))));
    paintGrid(painter, sheet, map, widget.rect(), within, {colours.grid, colours.mainGrid});
    painter.setRenderHint(QPainter::Antialiasing, m_view.rotation() != 0);
    painter.setPen(QPen(colours.mainGrid, 0));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolygon(map.map(QPolygonF(QRectF(0, 0, sheet.width, sheet.height))));
}

std::optional<std::size_t> CanvasStage::paintStrokes(QPainter& painter, const QRectF& within,
                                                     std::size_t from, QDeadlineTimer deadline) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    const QTransform map = m_view.sheetToWidget();
    const StrokeLook its = look();
    for (std::size_t i = from; i < arts.all().size(); ++i) {
        if (i > from && deadline.hasExpired())
            return i;
        const StrokeArt& art = *arts.all()[i];
        if (boxInWidget(art).intersects(within) && !m_pickedUp.contains(art.stroke->id))
            paintStroke(painter, art, map, its, within);
    }
    return std::nullopt;
}

void CanvasStage::show(QPainter& painter, const QRect& rect)
{
    const QTransform device = painter.deviceTransform();
    m_backing.setScreen(widget.size(), widget.devicePixelRatioF(),
                        {fraction(device.dx()), fraction(device.dy())});
    m_backing.show(painter, rect, [this](QPainter& on, const QRectF& within) {
        paintSheet(on, within);
        paintStrokes(on, within, 0, QDeadlineTimer(QDeadlineTimer::Forever));
    });
}
