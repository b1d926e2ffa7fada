// What became of a drawing: two files that the editor saved, compared element by element.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace real_editor_test {

enum class View { compared, ignored }; // whether the record of the window counts: zoom, centre, current layer

struct Change {
    std::string
        damage; // the first old thing that is gone or is different, in words; empty when there is none
    std::vector<std::string>
        added; // "layer1/path" for each new element: the id of what it stands in, and its name
    bool operator==(const Change&) const = default;
};
void PrintTo(const Change& change, std::ostream* out);

// Old things are compared with all their attributes, their texts and their order. A new element is one with an id that
// was not there before. Both texts are whole files.
Change change_between(const std::string& before, const std::string& after, View view);

// So many new paths in a layer, and nothing else.
Change paths_in(const std::string& layer, std::size_t count);

} // namespace real_editor_test
