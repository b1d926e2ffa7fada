// Ways to make a tree of a document: this system's parser, and what other libraries make, as far as they are
// installed.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace bench {

struct MarkupPeer {
    std::string name; // for command lines
    std::string text; // for people

    // The tree; null when the document is refused.
    std::shared_ptr<void> (*parse)(const std::string& document);

    // How many shapes stand in the document's root element.
    std::size_t (*shapes)(const void* tree);

    bool is_expat = false;
};

// parser::feed and parser::step first.
std::vector<MarkupPeer> markup_peers();

} // namespace bench
