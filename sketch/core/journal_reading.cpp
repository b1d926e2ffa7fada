#include "sketch/core/journal_text.h"
#include "sketch/core/journal_words.h"
#include "sketch/core/shape_outline.h"

#include <charconv>
#include <memory>
#include <utility>

namespace vnt::sketch {
namespace {

// The words of a line, from the first on. What is not as it should be makes it bad, and all that is read from
// then on is nothing.
class Words {
public:
    explicit Words(std::string_view line) : rest_(line) {}

    bool is_bad() const { return is_bad_; }
    bool is_read_through() const { return !is_bad_ && is_at_end_; }
    bool has_more() const { return !is_bad_ && !is_at_end_; }

    std::string_view word()
    {
        if (is_at_end_)
            is_bad_ = true;
        if (is_bad_)
            return {};
        const std::size_t end = std::min(rest_.find(' '), rest_.size());
        const std::string_view word = rest_.substr(0, end);
        is_at_end_ = end == rest_.size();
        rest_.remove_prefix(is_at_end_ ? end : end + 1);
        return word;
    }

    void expect(std::string_view expected) { is_bad_ |= word() != expected; }

    // Reads the word if it is the next one.
    bool try_word(std::string_view wanted)
    {
        if (!has_more() || rest_.substr(0, rest_.find(' ')) != wanted)
            return false;
        word();
        return true;
    }

    // Which of two words comes.
    bool either(std::string_view yes, std::string_view no)
    {
        const std::string_view found = word();
        is_bad_ |= found != yes && found != no;
        return found == yes;
    }

    template <class Number>
    Number any_number()
    {
        const std::string_view digits = word();
        Number number{};
        const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
        is_bad_ |= read.ec != std::errc() || read.ptr != digits.data() + digits.size();
        return is_bad_ ? Number{} : number;
    }

    double number()
    {
        const double number = any_number<double>();
        is_bad_ |= !std::isfinite(number);
        return is_bad_ ? 0 : number;
    }

    // How many things follow, each of so many words: never more than the line has room for.
    std::size_t count(std::size_t words_each)
    {
        const auto count = any_number<std::size_t>();
        // A word and its blank take two characters, the line's last word one.
        is_bad_ |= count > (rest_.size() + 1) / (2 * words_each);
        return is_bad_ ? 0 : count;
    }

    Vec2 point()
    {
        const double x = number();
        return {x, number()};
    }

    Affine map()
    {
        Affine map;
        for (double* const number_of_map : {&map.a, &map.b, &map.c, &map.d, &map.e, &map.f})
            *number_of_map = number();
        return map;
    }

    void refuse() { is_bad_ = true; }

private:
    std::string_view rest_;
    bool is_at_end_ = false; // the last word has been read
    bool is_bad_ = false;
};

Kind kind_in(Words& words)
{
    const std::string_view word = words.word();
    for (const KindWord& known : kKindWords)
        if (known.word == word)
            return known.kind;
    words.refuse();
    return Kind::ink;
}

Path path_in(Words& words)
{
    Path path(words.count(2));
    for (Vec2& p : path)
        p = words.point();
    return path;
}

template <class Kept>
Shape if_kept(Words& words, Kept shape)
{
    if (!is_kept(shape))
        words.refuse();
    return shape;
}

Shape shape_in(Words& words)
{
    const std::string_view word = words.word();
    if (word == "straight") {
        const bool closed = words.either("closed", "open");
        return if_kept(words, Straight{path_in(words), closed});
    }
    if (word == "curve") {
        const bool closed = words.either("closed", "open");
        return if_kept(words, Curve{path_in(words), closed});
    }
    if (word == "round") {
        Round round;
        round.ellipse.centre = words.point();
        for (double* const number : {&round.ellipse.major, &round.ellipse.minor, &round.ellipse.rotation,
                                     &round.start, &round.sweep})
            *number = words.number();
        return if_kept(words, round);
    }
    if (word != "none")
        words.refuse();
    return std::monostate();
}

Ink points_in(Words& words)
{
    Ink ink(words.count(4));
    for (InkPoint& point : ink)
        for (double* const number : {&point.x, &point.y, &point.time_ms, &point.pressure})
            *number = words.number();
    return ink;
}

// Null when it is malformed.
StrokePtr stroke_in(Words& words)
{
    auto stroke = std::make_shared<Stroke>();
    stroke->id = words.any_number<StrokeId>();
    stroke->kind = kind_in(words);
    stroke->shape = shape_in(words);
    words.expect("ink");
    stroke->ink = points_in(words);
    words.expect("readings");
    for (std::size_t left = words.count(3); left > 0 && !words.is_bad(); --left) {
        Reading reading;
        reading.kind = kind_in(words);
        reading.score = words.number();
        reading.shape = shape_in(words);
        stroke->readings.push_back(std::move(reading));
    }
    return words.is_read_through() ? stroke : nullptr;
}

bool is_kept(const Stroke& stroke)
{
    const auto is_kept_shape = [](const Shape& shape) {
        return std::visit([](const auto& its) { return vnt::sketch::is_kept(its); }, shape);
    };
    return is_kept_shape(stroke.shape) &&
           std::all_of(stroke.ink.begin(), stroke.ink.end(),
                       [](const InkPoint& point) {
                           return are_finite({point.x, point.y});
                       }) &&
           std::all_of(stroke.readings.begin(), stroke.readings.end(),
                       [&](const Reading& reading) { return is_kept_shape(reading.shape); });
}

// What has been read, and of a stroke in progress its ink and what this would end with.
struct Replay {
    JournalReading reading;
    Stroke drawn;
    Stroke rest;
    bool is_line_damaged = false; // a change of this line was passed over
};

// All strokes or none: false when the map leaves of one what no journal holds.
bool move_strokes(Replay& replay, const Affine& map)
{
    std::vector<StrokePtr> moved;
    for (const StrokePtr& stroke : replay.reading.document.strokes()) {
        moved.push_back(std::make_shared<const Stroke>(mapped(*stroke, map, stroke->id)));
        if (!is_kept(*moved.back()))
            return false;
    }
    Stroke drawn = mapped(replay.drawn, map, 0);
    Stroke rest = mapped(replay.rest, map, 0);
    if (!is_kept(drawn) || !is_kept(rest))
        return false;
    replay.drawn = std::move(drawn);
    replay.rest = std::move(rest);
    for (StrokePtr& stroke : moved)
        replay.reading.document.replace(std::move(stroke));
    return true;
}

bool read_sheet(Words& words, Replay& replay)
{
    Sheet read;
    read.width = words.number();
    read.height = words.number();
    read.sheet_to_model = words.map();
    read.tolerance = words.any_number<double>();
    if (words.either("grid", "none")) {
        Grid grid;
        grid.subdivisions = words.any_number<int>();
        grid.grid_to_sheet = words.map();
        read.grid = grid;
    }
    const bool is_placed = words.try_word("placed");
    std::optional<Affine> map;
    if (words.has_more()) {
        words.expect("map");
        map = words.map();
    }
    if (!words.is_read_through() || (map && (!try_inverse(*map) || !move_strokes(replay, *map))))
        return false;
    replay.reading.sheet = read;
    replay.reading.placed = is_placed;
    return true;
}

bool read_insert(Words& words, JournalReading& reading)
{
    auto index = words.any_number<std::size_t>();
    if (reading.skipped > 0)
        index = std::min(index, reading.document.strokes().size());
    StrokePtr stroke = stroke_in(words);
    return index <= reading.document.strokes().size() && reading.document.insert(index, std::move(stroke));
}

bool read_draw(Words& words, Replay& replay)
{
    const Ink more = points_in(words);
    words.expect("rest");
    Ink rest = points_in(words);
    if (!words.is_read_through())
        return false;
    replay.drawn.ink.insert(replay.drawn.ink.end(), more.begin(), more.end());
    replay.rest.ink = std::move(rest);
    return true;
}

// The stroke in progress, as far as it came. None when there is none.
std::optional<StrokeId> insert_drawn(Replay& replay)
{
    Stroke stroke = std::exchange(replay.drawn, {});
    stroke.ink.insert(stroke.ink.end(), replay.rest.ink.begin(), replay.rest.ink.end());
    replay.rest.ink.clear();
    if (stroke.ink.empty())
        return std::nullopt;
    SketchDocument& document = replay.reading.document;
    stroke.id = document.new_id();
    const StrokeId id = stroke.id;
    const bool is_in =
        document.insert(document.strokes().size(), std::make_shared<const Stroke>(std::move(stroke)));
    return is_in ? std::optional(id) : std::nullopt;
}

void lift(Replay& replay)
{
    if (replay.is_line_damaged)
        insert_drawn(replay); // what it has become was passed over: its ink is left
    replay.drawn.ink.clear();
    replay.rest.ink.clear();
}

// False when the change is malformed, or does not fit the sketch; that stays as it was.
bool read_change(std::string_view text, Replay& replay)
{
    SketchDocument& document = replay.reading.document;
    Words words(text);
    const std::string_view change = words.word();
    if (change == "insert")
        return read_insert(words, replay.reading);
    if (change == "replace")
        return document.replace(stroke_in(words));
    if (change == "take") {
        const auto id = words.any_number<StrokeId>();
        return words.is_read_through() && document.take(id);
    }
    if (change == "sheet")
        return read_sheet(words, replay);
    if (change == "draw")
        return read_draw(words, replay);
    if ((change != "clear" && change != "lift") || !words.is_read_through())
        return false;
    if (change == "clear")
        document.clear();
    else
        lift(replay);
    return true;
}

void read_changes(std::string_view line, Replay& replay)
{
    replay.is_line_damaged = false;
    for (;;) {
        const std::size_t end = line.find(kTogether);
        if (!read_change(line.substr(0, end), replay)) {
            ++replay.reading.skipped;
            replay.is_line_damaged = true;
        }
        if (end == std::string_view::npos)
            return;
        line.remove_prefix(end + 1);
    }
}

// The next line, without its line feed, taken off the text. None when the text has no whole one.
std::optional<std::string_view> take_line(std::string_view& text)
{
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos)
        return std::nullopt;
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end + 1);
    return line;
}

} // namespace

JournalReading read_journal(std::string_view text)
{
    Replay replay;
    JournalReading& reading = replay.reading;
    std::string_view rest = text;
    reading.known = take_line(rest) == kJournalHead;
    while (reading.known && !text.empty()) {
        text = rest;
        const std::optional<std::string_view> line = take_line(rest);
        if (!line)
            break;
        read_changes(*line, replay);
    }
    reading.whole = text.empty() && reading.skipped == 0;
    if (const auto id = insert_drawn(replay))
        replay.reading.unfinished = *id;
    return std::move(replay.reading);
}

} // namespace vnt::sketch
