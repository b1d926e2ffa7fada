// The reader of editors' requests, which every process of the machine reaches. The input: a request's line, or
// what stands behind its window.
#include "fuzz/fuzz.h"
#include "sketch/core/request.h"

#include <charconv>
#include <cmath>
#include <string>
#include <variant>

using vnt::sketch::Affine;
using vnt::sketch::Problem;
using vnt::sketch::Request;
using vnt::sketch::Sheet;

namespace {

const std::string kWindow = R"(<viewport_information height="768" width="1024" x="0" y="22"/>)";

std::string attribute(const char* name, double value)
{
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    return std::string(" ") + name + "=\"" + std::string(text, end) + '"';
}

std::string matrix(const char* name, const Affine& m)
{
    return std::string("<") + name + attribute("m00", m.a) + attribute("m01", m.c) + R"( m02="0")" +
           attribute("m03", m.e) + attribute("m10", m.b) + attribute("m11", m.d) + R"( m12="0")" +
           attribute("m13", m.f) + R"( m20="0" m21="0" m22="1" m23="0" m30="0" m31="0" m32="0" m33="1"/>)";
}

// A line that asks for the view and for a grid of so many points.
std::string line_of(const Affine& view, double spacing)
{
    return "<vant>" + kWindow + "<model_space_information>" +
           matrix("viewport_space_to_model_space_mapping_matrix", view) + "<snapping_information>" +
           matrix("unit_grid_space_to_model_space_mapping_matrix", {spacing, 0, 0, spacing, 0, 0}) +
           "<derivational_scale_factor>4</derivational_scale_factor></snapping_information>"
           "</model_space_information></vant>";
}

bool is_finite(const Affine& m)
{
    return std::isfinite(m.a) && std::isfinite(m.b) && std::isfinite(m.c) && std::isfinite(m.d) &&
           std::isfinite(m.e) && std::isfinite(m.f);
}

void check_sheet(const Request& request)
{
    const Sheet& sheet = request.sheet;
    fuzz::require(request.window.width > 0 && request.window.height > 0, "a window has a size");
    fuzz::require(sheet.width == request.window.width && sheet.height == request.window.height,
                  "the sheet is the window");
    fuzz::require(is_finite(sheet.sheet_to_model), "a view is finite");
    fuzz::require(try_inverse(sheet.sheet_to_model).has_value(), "a view has an inverse");
    fuzz::require(sheet.tolerance == sheet.sheet_to_model.a, "the tolerance is the view's first number");
    if (!sheet.grid)
        return;
    fuzz::require(is_finite(sheet.grid->grid_to_sheet), "a grid is finite");
    fuzz::require(try_inverse(sheet.grid->grid_to_sheet).has_value(), "a grid has an inverse");
    fuzz::require(sheet.grid->subdivisions >= 1, "a grid has steps");
}

void check(const std::string& line)
{
    const auto read = vnt::sketch::read_request(line);
    if (const auto* problem = std::get_if<Problem>(&read)) {
        fuzz::require(problem->sentence.starts_with("cannot read the editor's request: "),
                      "it is said what is wrong", "", problem->sentence);
        return;
    }
    const auto& request = std::get<Request>(read);
    check_sheet(request);
    const std::string once = line_of(request.sheet.sheet_to_model, 50);
    const auto again = vnt::sketch::read_request(once);
    const auto* same = std::get_if<Request>(&again);
    fuzz::require(same != nullptr, "a view that was read can be asked for", "", once);
    fuzz::require(same->sheet.sheet_to_model == request.sheet.sheet_to_model, "the same view as before", once,
                  line_of(same->sheet.sheet_to_model, 50));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = fuzz::text_of(data, size);
    check(text);
    check("<vant>" + kWindow + text + "</vant>");
    return 0;
}
