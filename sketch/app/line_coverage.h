// How much of each pixel a line covers that is broader here and narrower there: the discs at its places, and
// what lies between each and the next.
//
// A line may be added in pieces: no seams show, where it meets itself it is no darker, and in the same order the
// outcome is the same to the bit. For each pixel is kept on which side of it the line lies: two pieces that reach into
// it from the same side cover the same of it, from opposite sides the one covers what the other does not.
// Space:    pixels of a device; a pixel's middle is half a pixel from its corner.
// Accuracy: within 0.05 of the area that is covered; where pieces meet at an angle in a pixel, nearly so. The round
//           ends of pieces with a radius below 1 cover more, by up to 0.3 of a pixel.
// Errors:   nothing throws or reports; what is no number, or larger than 1e15 pixels, covers nothing.
#pragma once

#include <QColor>
#include <QImage>
#include <QRect>

#include <cstddef>
#include <cstdint>
#include <vector>

struct LinePoint {
    double x = 0;
    double y = 0;
    double radius = 0;
};

class LineCoverage {
public:
    LineCoverage() = default;
    explicit LineCoverage(const QRect& pixels) { reset(pixels); }

    // Nothing is covered any more.
    void reset(const QRect& pixels);
    const QRect& pixels() const { return m_pixels; }

    // The disc alone, where there is but one.
    void add(const LinePoint* points, std::size_t count);
    // The same of fewer pixels, all among these.
    LineCoverage part(const QRect& pixels) const;

    // All pixels that are covered at all are in it.
    const QRect& covered() const { return m_covered; }
    // Of what is covered; premultiplied.
    QImage picture(const QColor& colour) const;

private:
    // Towards a pixel from the line: a direction of length 127.
    struct Side {
        std::int8_t x = 0;
        std::int8_t y = 0;
    };

    void addLong(const LinePoint& from, const LinePoint& to);
    void addPiece(const LinePoint& from, const LinePoint& to);
    void addShare(std::size_t index, float share, Side side);
    std::size_t indexOf(int x, int y) const;

    QRect m_pixels;
    QRect m_covered;
    std::vector<std::uint8_t> m_shares; // of 255
    std::vector<Side> m_sides;          // of the pieces that cover most
};
