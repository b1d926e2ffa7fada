#include "sketch/app/line_coverage.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// Pixels from the rim at which nothing is covered any more, and all is.
constexpr float kSoft = 0.5F;
// Of a line's breadth that its radii may differ by from one place to the next; above it the larger disc holds the
// other but for a hair.
constexpr double kSteepest = 0.999;

// Pixels; a piece that is longer is computed in parts, of which floats hold each place to a hundredth of a pixel.
constexpr double kLongest = 65536;
// Pixels; of what is larger doubles do not tell where it passes a pixel.
constexpr double kFarthest = 1e15;

// A disc alone that is smaller covers too little of a pixel to take its rim for straight.
constexpr float kDot = 1;

constexpr int kWhole = 255; // pixel
constexpr float kSideLength = 127;

// Pixels; a pixel whose middle is nearer to that of the line is covered from no side.
constexpr float kAside = 0.75;

// The cosine of the angle from which on two pieces do not cover a pixel from one side.
constexpr float kOneSide = 0.7F;

// What of a pixel lies within radius of a line that its middle is so far from.
float shareOf(float distance, float radius)
{
    return std::min(radius, distance + kSoft) + std::min(radius, kSoft - distance);
}

// What of a pixel lies within a small disc whose middle is so far from the pixel's.
float shareOfDot(float x, float y, float radius)
{
    constexpr int kRows = 16;
    float share = 0;
    for (int row = 0; row < kRows; ++row) {
        const float up = y - kSoft + (static_cast<float>(row) + 0.5F) / kRows;
        const float half = std::sqrt(std::max(0.0F, radius * radius - up * up));
        share += std::max(0.0F, std::min(half, x + kSoft) - std::max(-half, x - kSoft));
    }
    return share / kRows;
}

// A piece of the line, in its own axes: from its first place along to the other.
// Source: the distance from the hull of two discs is that from the tangent where the foot on it is between them,
//         else that from the nearer disc.
struct Piece {
    // How much it covers of a pixel, and the unit direction towards that, if it covers it from one side.
    struct Reach {
        float share;
        float x;
        float y;
    };

    Piece(const LinePoint& from, const LinePoint& to)
        : length(static_cast<float>(std::hypot(to.x - from.x, to.y - from.y))),
          first(static_cast<float>(from.radius)), second(static_cast<float>(to.radius))
    {
        if (length > 0) {
            alongX = static_cast<float>(to.x - from.x) / length;
            alongY = static_cast<float>(to.y - from.y) / length;
            narrowing = (first - second) / length;
        }
        slant = std::sqrt(1 - narrowing * narrowing);
    }

    // Of the pixel whose middle is so far from the first place.
    Reach reach(float x, float y) const
    {
        if (length <= 0 && first < kDot)
            return {shareOfDot(x, y, first), 0, 0};
        const float along = x * alongX + y * alongY;
        const float aside = y * alongX - x * alongY;
        const float across = std::abs(aside);
        const float foot = slant * along - narrowing * across; // from one tangent point to the other
        if (foot <= 0)
            return ofDisc(x, y, first);
        if (foot >= slant * length)
            return ofDisc(x - length * alongX, y - length * alongY, second);
        const float radius = first - narrowing * foot / slant;
        const float distance = slant * across + narrowing * along - first + radius;
        const float side = distance < kAside ? 0.0F : std::copysign(1.0F, aside);
        return {shareOf(distance, radius), -side * alongY, side * alongX};
    }

    // What lies across its ends another piece may cover as well: from no side.
    static Reach ofDisc(float x, float y, float radius)
    {
        return {shareOf(std::sqrt(x * x + y * y), radius), 0, 0};
    }

    float length;
    float first;  // radius
    float second; // radius
    float alongX = 1;
    float alongY = 0;
    float narrowing = 0; // of the radius, along
    float slant = 1;     // the cosine of the angle between the tangents and the axis
};

// The whole numbers of pixels whose middles are between.
struct Range {
    int first;
    int last;

    static Range of(double least, double most, int from, int to)
    {
        constexpr double kHalf = 0.5;
        if (!(least <= most)) // one of them may be no number
            return {1, 0};
        return {static_cast<int>(std::clamp<double>(std::ceil(least - kHalf), from, to + 1.0)),
                static_cast<int>(std::clamp<double>(std::floor(most - kHalf), from - 1.0, to))};
    }
};

// From where to where, in shares of the way between two places, that is between two numbers along one axis.
struct Span {
    double first = 0;
    double last = 1;

    void keepBetween(double least, double most, double from, double to)
    {
        const double way = to - from;
        if (way == 0) {
            if (from < least || from > most)
                last = -1;
            return;
        }
        const double there = (least - from) / way;
        const double beyond = (most - from) / way;
        first = std::max(first, std::min(there, beyond));
        last = std::min(last, std::max(there, beyond));
    }
};

double sizeOf(const LinePoint& a, const LinePoint& b)
{
    return std::abs(b.x - a.x) + std::abs(b.y - a.y) + a.radius + b.radius;
}

LinePoint between(const LinePoint& a, const LinePoint& b, double share)
{
    return {a.x + share * (b.x - a.x), a.y + share * (b.y - a.y), a.radius + share * (b.radius - a.radius)};
}

bool holds(const LinePoint& a, const LinePoint& b)
{
    return a.radius - b.radius >= kSteepest * std::hypot(b.x - a.x, b.y - a.y);
}

} // namespace

void LineCoverage::reset(const QRect& pixels)
{
    m_pixels = pixels;
    m_covered = {};
    const std::size_t count = static_cast<std::size_t>(std::max(0, pixels.width())) *
                              static_cast<std::size_t>(std::max(0, pixels.height()));
    m_shares.assign(count, 0);
    m_sides.assign(count, {});
}

std::size_t LineCoverage::indexOf(int x, int y) const
{
    return static_cast<std::size_t>(y - m_pixels.top()) * static_cast<std::size_t>(m_pixels.width()) +
           static_cast<std::size_t>(x - m_pixels.left());
}

void LineCoverage::add(const LinePoint* points, std::size_t count)
{
    if (count == 1 && sizeOf(points[0], points[0]) <= kFarthest)
        addPiece(points[0], points[0]);
    for (std::size_t i = 1; i < count; ++i) {
        if (!(sizeOf(points[i - 1], points[i]) <= kFarthest)) // nor if it is no number
            continue;
        if (holds(points[i - 1], points[i]))
            addPiece(points[i - 1], points[i - 1]);
        else if (holds(points[i], points[i - 1]))
            addPiece(points[i], points[i]);
        else
            addLong(points[i - 1], points[i]);
    }
}

// In parts that lie where they do whatever the pixels are: of each pixel the outcome is the same.
void LineCoverage::addLong(const LinePoint& from, const LinePoint& to)
{
    if (!(sizeOf(from, to) > kLongest)) {
        addPiece(from, to);
        return;
    }
    const double reach = std::max(from.radius, to.radius) + 1;
    Span seen;
    seen.keepBetween(m_pixels.left() - reach, m_pixels.right() + 1 + reach, from.x, to.x);
    seen.keepBetween(m_pixels.top() - reach, m_pixels.bottom() + 1 + reach, from.y, to.y);
    if (seen.first > seen.last)
        return;
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    const double part = std::max(kLongest, 4 * reach) / length;
    for (double i = std::floor(seen.first / part); i * part <= seen.last; ++i)
        addPiece(between(from, to, i * part), between(from, to, std::min(1.0, (i + 1) * part)));
}

void LineCoverage::addPiece(const LinePoint& from, const LinePoint& to)
{
    const double reach = std::max(from.radius, to.radius) + static_cast<double>(kSoft);
    const Range rows = Range::of(std::min(from.y, to.y) - reach, std::max(from.y, to.y) + reach,
                                 m_pixels.top(), m_pixels.bottom());
    const double left = std::min(from.x, to.x) - reach;
    const double right = std::max(from.x, to.x) + reach;
    const Range columns = Range::of(left, right, m_pixels.left(), m_pixels.right());
    if (rows.first > rows.last || columns.first > columns.last)
        return;
    m_covered |= QRect(QPoint(columns.first, rows.first), QPoint(columns.last, rows.last));
    const Piece piece(from, to);
    // A long piece that is askew leaves most of its box alone.
    const double rise = to.y - from.y;
    const double half = rise != 0 ? std::abs(static_cast<double>(piece.length) / rise) * reach : 0;
    const double lean = rise != 0 ? (to.x - from.x) / rise : 0;
    for (int y = rows.first; y <= rows.last; ++y) {
        const double down = y + 0.5 - from.y;
        Range here = columns;
        if (rise != 0) {
            const double middle = from.x + lean * down;
            here = Range::of(std::max(left, middle - half - 1), std::min(right, middle + half + 1),
                             columns.first, columns.last);
        }
        const std::size_t start = indexOf(m_pixels.left(), y);
        const std::uint8_t* const shares = &m_shares[start];
        for (int x = here.first; x <= here.last; ++x) {
            if (shares[x - m_pixels.left()] == kWhole) // as most are where a line is dense
                continue;
            const Piece::Reach its =
                piece.reach(static_cast<float>(x + 0.5 - from.x), static_cast<float>(down));
            const Side side{static_cast<std::int8_t>(its.x * kSideLength),
                            static_cast<std::int8_t>(its.y * kSideLength)};
            if (its.share > 0)
                addShare(start + static_cast<std::size_t>(x - m_pixels.left()), its.share, side);
        }
    }
}

void LineCoverage::addShare(std::size_t index, float share, Side side)
{
    const float before = static_cast<float>(m_shares[index]) / static_cast<float>(kWhole);
    const float most = std::max(before, share);
    // The cosine of the angle between the sides; 1 where one of them is not known.
    const Side known = m_sides[index];
    float alike = static_cast<float>(known.x * side.x + known.y * side.y) / (kSideLength * kSideLength);
    if ((known.x == 0 && known.y == 0) || (side.x == 0 && side.y == 0))
        alike = 1;
    // Of the lesser share what is not in the other: nothing where they lie on one side, across from one another what
    // is by chance, all of it on opposite sides.
    const float chance = 1 - most;
    const float apart = alike >= 0 ? chance * std::max(0.0F, 1 - alike / kOneSide) : chance - alike * most;
    const float both = std::min(1.0F, most + apart * std::min(before, share));
    if (share > before)
        m_sides[index] = side;
    // From 0 to 255, where a cast rounds as well as lround, and much faster.
    // NOLINTNEXTLINE(bugprone-incorrect-roundings)
    m_shares[index] = static_cast<std::uint8_t>(both * static_cast<float>(kWhole) + 0.5F);
}

LineCoverage LineCoverage::part(const QRect& pixels) const
{
    LineCoverage part(pixels);
    part.m_covered = m_covered & pixels;
    for (int y = part.m_covered.top(); y <= part.m_covered.bottom(); ++y) {
        const std::size_t from = indexOf(part.m_covered.left(), y);
        const std::size_t to = part.indexOf(part.m_covered.left(), y);
        std::copy_n(&m_shares[from], part.m_covered.width(), &part.m_shares[to]);
        std::copy_n(&m_sides[from], part.m_covered.width(), &part.m_sides[to]);
    }
    return part;
}

QImage LineCoverage::picture(const QColor& colour) const
{
    const QRgb whole = colour.rgba();
    std::array<QRgb, 256> shades{};
    for (int share = 0; share < 256; ++share) {
        const int alpha = (qAlpha(whole) * share + 127) / 255;
        shades[static_cast<std::size_t>(share)] =
            qPremultiply(qRgba(qRed(whole), qGreen(whole), qBlue(whole), alpha));
    }
    QImage image(m_covered.size(), QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const std::uint8_t* const shares = &m_shares[indexOf(m_covered.left(), m_covered.top() + y)];
        for (int x = 0; x < image.width(); ++x)
            line[x] = shades[shares[x]];
    }
    return image;
}
