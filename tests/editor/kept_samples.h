// Art to keep, for tests.
#pragma once

#include "host/editor/kept_art.h"

#include <stdexcept>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace editor_test {

// A line and a curve, for a document of this path.
inline vnt::host::KeptArt sample_art(const std::string& id, const std::string& document = "/home/u/a.svg")
{
    vnt::host::KeptArt art;
    art.id = id;
    art.made = "2026-11-03T14:05:09+01:00";
    art.document.path = document;
    art.document.editor = "4711-123456";
    art.document.root_id = "svg5";
    art.document.ids = {1, 0xfedcba9876543210};
    art.document.file_time = 1'700'000'000'123'456'789;
    art.document.taken_at = 1'700'000'001'000'000'000;
    art.layer_id = "layer1";
    art.artwork_to_user = {1.0 / 3, 0, 0, -1.0 / 3, 0.1, -297.5};
    art.paths = {
        {{{0, 0}, {0, 0}, {0, 0}}, {{10.5F, 0}, {10.5F, 0}, {10.5F, 0}}},
        {{{1, 2}, {1, 2}, {3, 4}}, {{7, 8}, {5, 6}, {7, 8}}            }
    };
    return art;
}

// All coordinates of each path.
inline std::vector<std::vector<float>> numbers_of(const std::vector<vnt::host::PathArt>& paths)
{
    std::vector<std::vector<float>> numbers;
    for (const vnt::host::PathArt& path : paths) {
        numbers.emplace_back();
        for (const vnt::host::PathSegment& segment : path) {
            for (const vnt::host::ArtPoint& point : {segment.p, segment.in, segment.out})
                numbers.back().insert(numbers.back().end(), {point.h, point.v});
        }
    }
    return numbers;
}

template <class Value>
Value value_of(vnt::host::Result<Value> result)
{
    if (const auto* problem = std::get_if<vnt::host::Problem>(&result))
        throw std::runtime_error(problem->sentence);
    return std::move(std::get<0>(result));
}

template <class Value>
std::string problem_of(const vnt::host::Result<Value>& result)
{
    const auto* problem = std::get_if<vnt::host::Problem>(&result);
    return problem == nullptr ? "" : problem->sentence;
}

} // namespace editor_test
