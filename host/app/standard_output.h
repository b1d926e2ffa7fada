// A whole document on standard output, for the editor that reads it.
#pragma once

#include <string_view>

namespace vnt::host {

// Writes a document that was made and checked before, to its last byte: the editor takes half a document for a whole
// one, and the rest of the user's is lost. False when the reader went away.
bool try_print_document(std::string_view document);

} // namespace vnt::host
