#include "sketch/core/journal_text.h"

#include "sketch/core/journal_words.h"

#include <charconv>
#include <cstdint>
#include <iterator>
#include <type_traits>

namespace vnt::sketch {
namespace {

// A line in the making: words with blanks between them.
class Line {
public:
    explicit Line(std::string_view first) : text_(first) {}

    void word(std::string_view word)
    {
        text_ += ' ';
        text_ += word;
    }
    template <class Number>
    void number(Number value)
    {
        char digits[32]; // a double has 24 characters at most
        const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
        word({digits, static_cast<std::size_t>(end - digits)});
    }
    void point(Vec2 p)
    {
        number(p.x);
        number(p.y);
    }
    void map(const Affine& map)
    {
        for (const double number_of_map : {map.a, map.b, map.c, map.d, map.e, map.f})
            number(number_of_map);
    }
    std::string ended() &&
    {
        text_ += '\n';
        return std::move(text_);
    }

private:
    std::string text_;
};

void write(Line& line, std::monostate) { line.word("none"); }

void write_path(Line& line, std::string_view word, const Path& path, bool closed)
{
    line.word(word);
    line.word(closed ? "closed" : "open");
    line.number(path.size());
    for (const Vec2 p : path)
        line.point(p);
}

void write(Line& line, const Straight& shape) { write_path(line, "straight", shape.corners, shape.closed); }
void write(Line& line, const Curve& shape) { write_path(line, "curve", shape.points, shape.closed); }

void write(Line& line, const Round& shape)
{
    line.word("round");
    line.point(shape.ellipse.centre);
    for (const double number :
         {shape.ellipse.major, shape.ellipse.minor, shape.ellipse.rotation, shape.start, shape.sweep})
        line.number(number);
}

void write(Line& line, const Shape& shape)
{
    std::visit(
        [&](const auto& its) {
            if (is_kept(its))
                write(line, its);
            else
                write(line, std::monostate());
        },
        shape);
}

void write(Line& line, Kind kind)
{
    for (const KindWord& known : kKindWords)
        if (known.kind == kind)
            line.word(known.word);
}

bool is_finite(const InkPoint& point)
{
    return are_finite({point.x, point.y, point.time_ms, point.pressure});
}

void write(Line& line, const Ink& ink)
{
    line.number(
        std::count_if(ink.begin(), ink.end(), [](const InkPoint& point) { return is_finite(point); }));
    for (const InkPoint& point : ink) {
        if (!is_finite(point))
            continue;
        line.point({point.x, point.y});
        line.number(point.time_ms);
        line.number(point.pressure);
    }
}

void write(Line& line, const Stroke& stroke)
{
    line.number(stroke.id);
    write(line, stroke.kind);
    write(line, stroke.shape);
    line.word("ink");
    write(line, stroke.ink);
    line.word("readings");
    line.number(stroke.readings.size());
    for (const Reading& reading : stroke.readings) {
        write(line, reading.kind);
        line.number(std::isfinite(reading.score) ? reading.score : 0.0);
        write(line, reading.shape);
    }
}

bool is_finite(const Affine& map) { return std::isfinite(map.a + map.b + map.c + map.d + map.e + map.f); }

Sheet kept(Sheet sheet)
{
    if (!are_finite({sheet.width, sheet.height}) || !is_finite(sheet.sheet_to_model))
        return {};
    if (sheet.grid && !is_finite(sheet.grid->grid_to_sheet))
        sheet.grid.reset();
    return sheet;
}

} // namespace

std::string journal_head() { return Line(kJournalHead).ended(); }

std::string journal_insert(std::size_t index, const Stroke& stroke)
{
    Line line("insert");
    line.number(index);
    write(line, stroke);
    return std::move(line).ended();
}

std::string journal_take(StrokeId id)
{
    Line line("take");
    line.number(id);
    return std::move(line).ended();
}

std::string journal_replace(const Stroke& stroke)
{
    Line line("replace");
    write(line, stroke);
    return std::move(line).ended();
}

std::string journal_clear() { return Line("clear").ended(); }

std::string journal_sheet(const Sheet& given, const Affine& map, bool placed)
{
    const Sheet sheet = kept(given);
    Line line("sheet");
    line.point({sheet.width, sheet.height});
    line.map(sheet.sheet_to_model);
    line.number(sheet.tolerance);
    line.word(sheet.grid ? "grid" : "none");
    if (sheet.grid) {
        line.number(sheet.grid->subdivisions);
        line.map(sheet.grid->grid_to_sheet);
    }
    if (placed)
        line.word("placed");
    if (map != Affine() && try_inverse(map)) {
        line.word("map");
        line.map(map);
    }
    return std::move(line).ended();
}

std::string journal_draw(const Ink& more, const Ink& rest)
{
    Line line("draw");
    write(line, more);
    line.word("rest");
    write(line, rest);
    return std::move(line).ended();
}

std::string journal_lift() { return Line("lift").ended(); }

std::string journal_together(std::string lines)
{
    if (!lines.empty())
        std::replace(lines.begin(), std::prev(lines.end()), '\n', kTogether);
    return lines;
}

} // namespace vnt::sketch
