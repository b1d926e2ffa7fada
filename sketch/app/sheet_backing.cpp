#include "sketch/app/sheet_backing.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace {

// More pieces than these are painted as one: each is a pass over all strokes.
constexpr int kMostPieces = 8;

} // namespace

void SheetBacking::setScreen(QSize size, qreal ratio, QPointF offset)
{
    const QSize pixels(static_cast<int>(std::ceil(size.width() * ratio + offset.x())),
                       static_cast<int>(std::ceil(size.height() * ratio + offset.y())));
    if (pixels == m_picture.size() && ratio == m_ratio && offset == m_offset)
        return;
    const bool isSameElse = ratio == m_ratio && offset == m_offset && !isPreview() && !pixels.isEmpty();
    const QRect before = m_picture.rect();
    m_ratio = ratio;
    m_offset = offset;
    if (isSameElse && !m_picture.isNull()) {
        m_picture = m_picture.copy(QRect({}, pixels));
        m_spoilt += QRegion(m_picture.rect()) - before;
        m_spoilt &= m_picture.rect();
        return;
    }
    m_picture = pixels.isEmpty() ? QImage() : QImage(pixels, QImage::Format_RGB32);
    spoil();
}

void SheetBacking::spoil()
{
    m_preview.reset();
    m_next = {};
    m_spoilt = m_picture.rect();
}

void SheetBacking::spoil(const QRectF& widget)
{
    if (widget.isNull())
        return;
    m_spoilt += onScreen(widget) & m_picture.rect();
}

QRect SheetBacking::onScreen(const QRectF& widget) const
{
    // One more on each side: what is smoothed at the edges.
    const QRectF pixels(widget.topLeft() * m_ratio + m_offset, widget.size() * m_ratio);
    constexpr double kFarthest = 1e6; // pixels; what is further off is not on a screen
    const QRectF near = pixels & QRectF(-kFarthest, -kFarthest, 2 * kFarthest, 2 * kFarthest);
    return near.toAlignedRect().adjusted(-1, -1, 1, 1);
}

void SheetBacking::scroll(QPoint pixels)
{
    const QRect all = m_picture.rect();
    const QRect stays = all & all.translated(pixels);
    if (pixels.isNull())
        return;
    if (stays.isEmpty()) {
        spoil();
        return;
    }
    const auto bytes = static_cast<std::size_t>(stays.width()) * sizeof(QRgb);
    const qsizetype skip = static_cast<qsizetype>(sizeof(QRgb));
    uchar* const bits = m_picture.bits();
    for (int i = 0; i < stays.height(); ++i) {
        // Downwards from the lowest row on, so that none is overwritten before it has moved.
        const int row = pixels.y() > 0 ? stays.bottom() - i : stays.top() + i;
        uchar* const to = bits + row * m_picture.bytesPerLine() + stays.left() * skip;
        const uchar* const from =
            bits + (row - pixels.y()) * m_picture.bytesPerLine() + (stays.left() - pixels.x()) * skip;
        std::memmove(to, from, bytes);
    }
    m_spoilt.translate(pixels);
    m_spoilt &= stays;
    m_spoilt += QRegion(all) - stays;
}

void SheetBacking::paintSpoilt(const QRect& pixels, const Paint& paint)
{
    QRegion spoilt = m_spoilt & pixels;
    if (spoilt.isEmpty())
        return;
    if (spoilt.rectCount() > kMostPieces)
        spoilt = spoilt.boundingRect();
    m_spoilt -= spoilt;
    for (const QRect& piece : spoilt) {
        QPainter painter(&m_picture);
        preparePainter(painter, piece);
        paint(painter, inWidget(piece));
    }
}

void SheetBacking::preparePainter(QPainter& painter, const QRect& piece) const
{
    painter.setClipRect(piece);
    painter.setTransform(QTransform(m_ratio, 0, 0, m_ratio, m_offset.x(), m_offset.y()));
}

QRectF SheetBacking::inWidget(const QRect& pixels) const
{
    return {(QPointF(pixels.topLeft()) - m_offset) / m_ratio, QSizeF(pixels.size()) / m_ratio};
}

void SheetBacking::preview(const QTransform& map, const QColor& ground)
{
    m_preview = m_preview ? *m_preview * map : map;
    m_ground = ground;
    m_next = {};
}

bool SheetBacking::paintPart(const PaintPart& paint)
{
    if (m_picture.isNull())
        return true;
    if (m_next.isNull()) {
        m_next = QImage(m_picture.size(), m_picture.format());
        m_nextFrom = 0;
    }
    QPainter painter(&m_next);
    preparePainter(painter, m_next.rect());
    const std::optional<std::size_t> rest = paint(painter, inWidget(m_next.rect()), m_nextFrom);
    painter.end();
    if (rest) {
        m_nextFrom = *rest;
        return false;
    }
    m_picture = std::move(m_next);
    m_next = {};
    m_preview.reset();
    m_spoilt = {};
    return true;
}

void SheetBacking::show(QPainter& painter, const QRect& widget, const Paint& paint)
{
    if (m_picture.isNull())
        return;
    const QRect pixels = onScreen(widget) & m_picture.rect();
    if (isPreview()) {
        painter.fillRect(widget, m_ground);
        painter.save();
        painter.setTransform(*m_preview, true);
        painter.drawImage(inWidget(m_picture.rect()), m_picture);
        painter.restore();
        return;
    }
    paintSpoilt(pixels, paint);
    // Pixel to pixel, without the screen's ratio, which would have every pixel looked up.
    const QTransform own = painter.worldTransform();
    painter.setWorldTransform(QTransform::fromScale(1 / m_ratio, 1 / m_ratio), true);
    const bool wasSmooth = painter.testRenderHint(QPainter::SmoothPixmapTransform);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.drawImage(QPointF(pixels.topLeft()) - m_offset, m_picture, pixels);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, wasSmooth);
    painter.setWorldTransform(own);
}
