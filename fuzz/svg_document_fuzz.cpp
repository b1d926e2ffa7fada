// The reader of SVG documents and what is added to them. The input: a document.
#include "fuzz/fuzz.h"
#include "host/kit/svg_document.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <variant>

using vnt::host::PathArt;
using vnt::host::Problem;
using vnt::host::SvgDocument;

namespace {

const PathArt kCurve = {
    {{10, -10}, {10, -10}, {20, -10}},
    {{60, -40}, {60, -30}, {60, -40}}
};

// Every byte of before stands in text, in its order, around one place; the / of an empty tag may be missing.
bool is_kept(const std::string& before, const std::string& text)
{
    const auto front = std::mismatch(before.begin(), before.end(), text.begin(), text.end());
    const auto back = std::mismatch(before.rbegin(), before.rend(), text.rbegin(), text.rend());
    const auto kept =
        static_cast<std::size_t>((front.first - before.begin()) + (back.first - before.rbegin()));
    return kept >= before.size() || (kept + 1 == before.size() && *front.first == '/');
}

void check_view(const SvgDocument& document)
{
    const vnt::host::DocumentView view = document.view();
    fuzz::require(view.view_to_artwork.is_finite(), "a view is finite");
    fuzz::require(view.view_to_artwork.a > 0 && view.view_to_artwork.d < 0, "a view is not mirrored");
    fuzz::require(view.zoom > 0, "a zoom is positive");
    fuzz::require(view.window.right > view.window.left && view.window.bottom > view.window.top,
                  "a window has a pixel");
    fuzz::require(document.grid().subdivisions >= 1, "a grid has its steps");
    fuzz::require(std::isfinite(document.grid().spacing) || !document.grid().is_shown,
                  "a grid that is shown is finite");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = fuzz::text_of(data, size);
    const auto read = SvgDocument::read("drawing.svg", text);
    if (const auto* problem = std::get_if<Problem>(&read)) {
        fuzz::require(!problem->sentence.empty(), "a problem has a sentence");
        return 0;
    }
    const SvgDocument& document = std::get<0>(read);
    fuzz::require(document.bytes() == text, "the bytes are those that were read");
    check_view(document);

    const auto drawn = document.with_paths({kCurve, {}, kCurve});
    if (const auto* problem = std::get_if<Problem>(&drawn))
        fuzz::require(false, "paths can be added", "", problem->sentence);
    const vnt::host::DrawnText& result = std::get<0>(drawn);
    fuzz::require(result.ids.size() == 3 && result.ids[1].empty(), "an id for each path that is drawn");
    fuzz::require(is_kept(text, result.text), "every old byte is kept", text, result.text);

    const auto again = SvgDocument::read("drawing.svg", result.text);
    if (const auto* problem = std::get_if<Problem>(&again))
        fuzz::require(false, "what was drawn can be read", "", problem->sentence);
    const SvgDocument& second = std::get<0>(again);
    fuzz::require(second.notes() == document.notes(), "the same notes as before");
    const auto twice = second.with_paths({kCurve});
    fuzz::require(std::holds_alternative<vnt::host::DrawnText>(twice), "paths can be added again");
    const std::string& id = std::get<0>(twice).ids.at(0);
    fuzz::require(id.empty() || std::count(result.ids.begin(), result.ids.end(), id) == 0, "an id of its own",
                  result.ids[0], id);
    return 0;
}
