#include "host/editor/kept_art.h"

#include "host/editor/local_time.h"
#include "host/editor/percent_text.h"
#include "host/kit/svg_decimals.h"
#include "host/kit/svg_new_document.h"
#include "host/kit/svg_tree.h"
#include "host/kit/xml_tokens.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <optional>
#include <string_view>

namespace vnt::host {
namespace {

constexpr std::string_view kNamespace = "urn:vant:kept-art";
constexpr const char* kVersion = "1";
constexpr const char* kLayer = "layer1"; // of a new document
constexpr double kMargin = 10;           // points

// In the file, artwork is only turned upside down, so that no number of it is rounded.
constexpr Affine kArtworkToFile{1, 0, 0, -1, 0, 0};

// Where the attributes go: at the end of the outermost element's start tag.
std::size_t end_of_root_tag(std::string_view text)
{
    XmlTokens tokens(text);
    Token token;
    while (tokens.try_next(token) && token.kind != TokenKind::StartTag)
        ;
    return token.end - 1;
}

class AttributeWriter {
public:
    void add(const char* name, const std::string& value)
    {
        text_.append("\n    vant:").append(name).append("=\"").append(value).append("\"");
    }
    void add_any(const char* name, const std::string& value) { add(name, to_percent_text(value)); }

    std::string take() { return "\n    xmlns:vant=\"" + std::string(kNamespace) + "\"" + text_; }

private:
    std::string text_;
};

std::string numbers_of(const Affine& map)
{
    std::string text;
    for (const double number : {map.a, map.b, map.c, map.d, map.e, map.f}) {
        if (!text.empty())
            text += ' ';
        append_decimal(text, number, 0);
    }
    return text;
}

std::string hexadecimal(const std::vector<std::uint64_t>& numbers)
{
    std::string text;
    std::array<char, 24> digits{};
    for (const std::uint64_t number : numbers) {
        const int size =
            std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(number));
        if (!text.empty())
            text += ' ';
        text.append(digits.data(), static_cast<std::size_t>(size));
    }
    return text;
}

std::string attributes_of(const KeptArt& art)
{
    AttributeWriter writer;
    writer.add("version", kVersion);
    writer.add_any("id", art.id);
    writer.add("made", art.made);
    writer.add_any("layer", art.layer_id);
    writer.add("artwork-to-user", numbers_of(art.artwork_to_user));
    writer.add_any("path", art.document.path);
    writer.add_any("editor", art.document.editor);
    writer.add_any("root", art.document.root_id);
    writer.add("file-time", std::to_string(art.document.file_time));
    writer.add("taken-at", std::to_string(art.document.taken_at));
    writer.add("ids", hexadecimal(art.document.ids));
    return writer.take();
}

Problem cannot_keep(const std::string& why) { return {"cannot keep the art: " + why}; }

// What a reader of our own writing throws; it does not leave this unit.
struct Unreadable {
    std::string what;
};

std::string_view take_word(std::string_view& text)
{
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(std::min(text.size(), word.size() + 1));
    return word;
}

template <class Number, class... Base>
Number number_of(std::string_view text, Base... base)
{
    Number number{};
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number, base...);
    if (read.ec != std::errc() || read.ptr != end)
        throw Unreadable{"\"" + quotable(text.substr(0, 40)) + "\" stands where a number should be"};
    return number;
}

ArtPoint point_of(std::string_view text)
{
    const std::size_t comma = text.find(',');
    if (comma == text.npos)
        throw Unreadable{"\"" + quotable(text.substr(0, 40)) + "\" stands where a point should be"};
    const double x = number_of<double>(text.substr(0, comma));
    const double y = number_of<double>(text.substr(comma + 1));
    const ArtPoint point{static_cast<float>(x), static_cast<float>(-y)};
    if (!std::isfinite(point.h) || !std::isfinite(point.v))
        throw Unreadable{"the point " + quotable(text.substr(0, 40)) + " is out of range"};
    return point;
}

// "M x,y L x,y C x1,y1 x2,y2 x,y ...", with one blank between two words, as PathDataWriter writes it.
PathArt path_of(std::string_view data)
{
    if (take_word(data) != "M")
        throw Unreadable{"a path does not begin with M"};
    const ArtPoint first = point_of(take_word(data));
    PathArt path{
        {first, first, first}
    };
    while (!data.empty()) {
        const std::string_view command = take_word(data);
        if (command == "C") {
            path.back().out = point_of(take_word(data));
            const ArtPoint in = point_of(take_word(data));
            const ArtPoint p = point_of(take_word(data));
            path.push_back({p, in, p});
        } else if (command == "L") {
            const ArtPoint p = point_of(take_word(data));
            path.push_back({p, p, p});
        } else {
            throw Unreadable{"a path has \"" + quotable(command.substr(0, 40)) + "\" in place of L or C"};
        }
    }
    return path;
}

class Reader {
public:
    explicit Reader(const SvgTree& tree) : tree_(tree) {}

    std::optional<std::string> version() const
    {
        return tree_.attribute(tree_.root(), kNamespace, "version");
    }

    KeptArt read() const
    {
        KeptArt art;
        art.id = any("id");
        art.made = value("made");
        art.layer_id = any("layer");
        art.artwork_to_user = map("artwork-to-user");
        art.document.path = any("path");
        art.document.editor = any("editor");
        art.document.root_id = any("root");
        art.document.file_time = number_of<std::int64_t>(value("file-time"));
        art.document.taken_at = number_of<std::int64_t>(value("taken-at"));
        const std::string ids = value("ids");
        for (std::string_view rest = ids; !rest.empty();)
            art.document.ids.push_back(number_of<std::uint64_t>(take_word(rest), 16));
        if (!std::is_sorted(art.document.ids.begin(), art.document.ids.end()))
            throw Unreadable{"its ids are not in order"};
        art.paths = paths();
        return art;
    }

private:
    std::string value(const char* name) const
    {
        std::optional<std::string> text = tree_.attribute(tree_.root(), kNamespace, name);
        if (!text)
            throw Unreadable{std::string("the attribute ") + name + " is missing"};
        return *text;
    }

    std::string any(const char* name) const
    {
        const std::optional<std::string> bytes = from_percent_text(value(name));
        if (!bytes)
            throw Unreadable{std::string("the attribute ") + name + " is not as it was written"};
        return *bytes;
    }

    Affine map(const char* name) const
    {
        const std::string text = value(name);
        std::string_view rest = text;
        Affine map;
        for (double* number : {&map.a, &map.b, &map.c, &map.d, &map.e, &map.f})
            *number = number_of<double>(take_word(rest));
        if (!rest.empty() || !map.is_finite())
            throw Unreadable{std::string("the attribute ") + name + " is no map"};
        return map;
    }

    // The layer holds the paths and nothing else, and nothing else is drawn.
    std::vector<PathArt> paths() const
    {
        std::vector<PathArt> paths;
        for (const pugi::xml_node child : tree_.root().children()) {
            if (child.type() != pugi::node_element || tree_.is_of(child, kSodipodiNamespace, "namedview"))
                continue;
            if (!tree_.is_svg(child, "g") || tree_.attribute(child, "id") != kLayer)
                throw Unreadable{"it has an element that is no part of it"};
            refuse_transform(child);
            for (const pugi::xml_node path : child.children()) {
                if (path.type() != pugi::node_element)
                    continue;
                if (!tree_.is_svg(path, "path"))
                    throw Unreadable{"there is something else than paths in it"};
                refuse_transform(path);
                paths.push_back(path_of(tree_.attribute(path, "d").value_or("")));
            }
        }
        if (paths.empty())
            throw Unreadable{"there is no path in it"};
        return paths;
    }

    void refuse_transform(pugi::xml_node element) const
    {
        if (tree_.attribute(element, "transform"))
            throw Unreadable{"it has a transform"};
    }

    const SvgTree& tree_;
};

} // namespace

std::string make_art_id()
{
    static unsigned counter = 0;
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm utc{};
    gmtime_r(&now.tv_sec, &utc);
    std::array<char, 40> time{};
    std::strftime(time.data(), time.size(), "%Y%m%dT%H%M%S", &utc);
    std::array<char, 48> rest{};
    std::snprintf(rest.data(), rest.size(), "%03dZ-%d-%03u", static_cast<int>(now.tv_nsec / 1'000'000) % 1000,
                  static_cast<int>(getpid()), ++counter);
    return std::string(time.data()) + rest.data();
}

Result<std::string> svg_of(const KeptArt& art)
{
    const std::optional<ArtBox> box = bounds_of(art.paths);
    if (!box)
        return cannot_keep("there is nothing in it that can be drawn");
    if (!art.artwork_to_user.is_finite())
        return cannot_keep("the document's page has no finite size");
    const Result<SvgDocument> page =
        SvgDocument::read("the page for kept art", make_svg_document(*box, kMargin));
    if (const auto* problem = std::get_if<Problem>(&page))
        return *problem;
    Result<DrawnText> drawn =
        std::get<0>(page).with_paths(art.paths, {.layer_id = kLayer, .artwork_to_user = kArtworkToFile});
    if (const auto* problem = std::get_if<Problem>(&drawn))
        return *problem;
    std::string text = std::move(std::get<0>(drawn).text);
    text.insert(end_of_root_tag(text), attributes_of(art));
    return text;
}

Result<KeptArt> read_kept_art(const std::string& name, std::string bytes)
{
    const Result<std::unique_ptr<SvgTree>> tree = SvgTree::read(name, std::move(bytes));
    if (const auto* problem = std::get_if<Problem>(&tree))
        return *problem;
    const Reader reader(*std::get<0>(tree));
    const std::optional<std::string> version = reader.version();
    if (!version)
        return Problem{"cannot place " + name +
                       ": it is not art that was kept; open it in an editor instead"};
    if (*version != kVersion)
        return Problem{"cannot place " + name + ": it was kept by a later version of this program; use that"};
    try {
        return reader.read();
    } catch (const Unreadable& unreadable) {
        return Problem{"cannot place " + name + ": it was changed by another program, " + unreadable.what +
                       "; open it in an editor, and copy from there what is drawn"};
    }
}

} // namespace vnt::host
