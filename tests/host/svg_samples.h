// Small SVG documents for tests.
#pragma once

#include "host/kit/svg_document.h"

#include <stdexcept>
#include <string>
#include <variant>

namespace host_test {

// An svg element with the namespaces bound, around body.
inline std::string svg(const std::string& attributes, const std::string& body)
{
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" "
           "xmlns:inkscape=\"http://www.inkscape.org/namespaces/inkscape\" "
           "xmlns:sodipodi=\"http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd\" " +
           attributes + ">" + body + "</svg>";
}

// A document of 200 x 100 px with this in its named view.
inline std::string with_named_view(const std::string& attributes, const std::string& children = "")
{
    return svg("width=\"200\" height=\"100\"",
               "<sodipodi:namedview " + attributes + ">" + children + "</sodipodi:namedview>");
}

inline vnt::host::SvgDocument document_of(const std::string& text)
{
    auto read = vnt::host::SvgDocument::read("drawing.svg", text);
    if (const auto* problem = std::get_if<vnt::host::Problem>(&read))
        throw std::runtime_error(problem->sentence);
    return std::move(std::get<0>(read));
}

// The sentence of the problem that a text gives; empty when it is read.
inline std::string problem_of(const std::string& text)
{
    const auto read = vnt::host::SvgDocument::read("drawing.svg", text);
    const auto* problem = std::get_if<vnt::host::Problem>(&read);
    return problem == nullptr ? "" : problem->sentence;
}

inline vnt::host::DrawnText drawn(const vnt::host::SvgDocument& document,
                                  const std::vector<vnt::host::PathArt>& paths)
{
    auto result = document.with_paths(paths);
    if (const auto* problem = std::get_if<vnt::host::Problem>(&result))
        throw std::runtime_error(problem->sentence);
    return std::move(std::get<0>(result));
}

// An anchor with both handles on it.
inline vnt::host::PathSegment corner(float h, float v)
{
    return {
        {h, v},
        {h, v},
        {h, v}
    };
}

} // namespace host_test
