// Numbers from the text of a document.
#pragma once

#include <string>

namespace vnt {

// The double that a stream's formatted extraction in the classic locale takes from the start of text: leading
// white space is skipped, what follows the number is ignored ("12.5abc" is 12.5, "0x10" is 0, "1,5" is 1).
//
// Errors:   a text without a number, or with an exponent that has no digits ("12e"), is 0.0; a number too
//           large for a double is the largest one, of its sign. Nothing depends on the process's locale.
// Accuracy: the nearest double, ties to even.
double number_of_text(const std::string& text);

} // namespace vnt
