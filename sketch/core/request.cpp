#include "sketch/core/request.h"

#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>

namespace vnt::sketch {
namespace {

// Bytes. The plug-in's line has some two thousand.
constexpr std::size_t kMostBytes = std::size_t{1} << 16;

// Of the editor's edges of windows: 16 bits with a sign, sent without it.
constexpr int kEdgeTurn = 65536;
constexpr int kLargestEdge = 32767;

constexpr const char* kMatrixNames[] = {"m00", "m01", "m02", "m03", "m10", "m11", "m12", "m13",
                                        "m20", "m21", "m22", "m23", "m30", "m31", "m32", "m33"};

// What comes from the other side, so that a line of the log stays one, and short: the beginning of it, a
// question mark for whatever is no letter, digit or sign.
std::string shown(std::string_view text)
{
    constexpr std::size_t kShown = 40;
    std::string shown;
    for (const char c : text.substr(0, kShown))
        shown += c >= ' ' && c <= '~' ? c : '?';
    return shown + (text.size() > kShown ? "..." : "");
}

std::string quoted(std::string_view text) { return "\"" + shown(text) + "\""; }

// Reads one thing after the other; the first that is not as it should be is the problem, and what is read
// after it has no meaning.
class RequestReader {
public:
    bool has_failed() const { return !problem_.empty(); }
    Problem problem() const { return {"cannot read the editor's request: " + problem_}; }

    void fail(const std::string& why)
    {
        if (!has_failed())
            problem_ = why;
    }

    pugi::xml_node child(pugi::xml_node parent, const char* name)
    {
        const pugi::xml_node found = parent.child(name);
        if (!found)
            fail("<" + std::string(parent.name()) + "> has no <" + name + "> in it");
        return found;
    }

    template <class Number>
    Number attribute(pugi::xml_node element, const char* name)
    {
        const pugi::xml_attribute found = element.attribute(name);
        if (!found)
            fail("<" + std::string(element.name()) + "> has no attribute " + name);
        return number<Number>(found.value(), std::string(name) + " of <" + element.name() + ">");
    }

    template <class Number>
    Number content(pugi::xml_node element)
    {
        return number<Number>(element.child_value(), "the content of <" + std::string(element.name()) + ">");
    }

    Affine matrix(pugi::xml_node element)
    {
        std::array<double, 16> m{};
        for (std::size_t i = 0; i < m.size(); ++i)
            m[i] = attribute<double>(element, kMatrixNames[i]);
        return {m[0], m[4], m[1], m[5], m[3], m[7]};
    }

private:
    template <class Number>
    Number number(std::string_view text, const std::string& where)
    {
        Number value{};
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error == std::errc::result_out_of_range && end == text.data() + text.size())
            fail(where + " is out of range: " + quoted(text));
        else if (error != std::errc() || end != text.data() + text.size())
            fail(where + " is not a number: " + quoted(text));
        return value;
    }

    std::string problem_;
};

// An edge left of or above the main screen comes with a turn too much, and a turn too little is behind it.
void put_right(int& edge, int& size)
{
    if (edge > kLargestEdge && edge < kEdgeTurn)
        edge -= kEdgeTurn;
    if (size < 0 && size > -kEdgeTurn)
        size += kEdgeTurn;
}

WindowPlace read_window(RequestReader& reader, pugi::xml_node root)
{
    const pugi::xml_node element = reader.child(root, "viewport_information");
    WindowPlace window;
    window.x = reader.attribute<int>(element, "x");
    window.y = reader.attribute<int>(element, "y");
    window.width = reader.attribute<int>(element, "width");
    window.height = reader.attribute<int>(element, "height");
    put_right(window.x, window.width);
    put_right(window.y, window.height);
    if (window.width <= 0 || window.height <= 0)
        reader.fail("<viewport_information> is a window of no size: " + std::to_string(window.width) +
                    " by " + std::to_string(window.height) + " pixels");
    return window;
}

// None where there is nothing to draw of it.
std::optional<Grid> grid_of(const Affine& grid_to_model, const Affine& model_to_sheet, int subdivisions)
{
    const Affine grid_to_sheet = model_to_sheet * grid_to_model;
    if (!try_inverse(grid_to_sheet))
        return std::nullopt;
    return Grid{grid_to_sheet, std::max(subdivisions, 1)};
}

Sheet read_sheet(RequestReader& reader, pugi::xml_node root, const WindowPlace& window)
{
    const pugi::xml_node model_space = reader.child(root, "model_space_information");
    const pugi::xml_node view = reader.child(model_space, "viewport_space_to_model_space_mapping_matrix");
    const pugi::xml_node snapping = reader.child(model_space, "snapping_information");
    const pugi::xml_node grid = reader.child(snapping, "unit_grid_space_to_model_space_mapping_matrix");
    const pugi::xml_node factor = reader.child(snapping, "derivational_scale_factor");

    Sheet sheet;
    sheet.width = window.width;
    sheet.height = window.height;
    sheet.sheet_to_model = reader.matrix(view);
    sheet.tolerance = sheet.sheet_to_model.a;
    const Affine grid_to_model = reader.matrix(grid);
    const int subdivisions = reader.content<int>(factor);
    const std::optional<Affine> model_to_sheet = try_inverse(sheet.sheet_to_model);
    if (!model_to_sheet)
        reader.fail("<viewport_space_to_model_space_mapping_matrix> is no view: it is not finite, or has no "
                    "inverse");
    else
        sheet.grid = grid_of(grid_to_model, *model_to_sheet, subdivisions);
    return sheet;
}

} // namespace

Result<Request> read_request(std::string_view line)
{
    RequestReader reader;
    pugi::xml_document document;
    if (line.size() > kMostBytes) {
        reader.fail("its line has " + std::to_string(line.size()) + " bytes, more than any request");
        return reader.problem();
    }
    const bool is_whole =
        document.load_buffer(line.data(), line.size(), pugi::parse_default, pugi::encoding_utf8);
    const pugi::xml_node root = document.document_element();
    if (!is_whole)
        reader.fail("its line of " + std::to_string(line.size()) +
                    " bytes is no whole XML document: " + quoted(line));
    else if (root.name() != std::string_view("vant"))
        reader.fail("its outermost element is <" + shown(root.name()) + ">, not <vant>");
    if (reader.has_failed())
        return reader.problem();

    Request request;
    request.window = read_window(reader, root);
    request.sheet = read_sheet(reader, root, request.window);
    if (reader.has_failed())
        return reader.problem();
    return request;
}

} // namespace vnt::sketch
