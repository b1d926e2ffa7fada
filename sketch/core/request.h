// What the editor asks with: its CAD information line, read into the sheet that it describes.
//
// Shapes: docs/protocol.md has the document. Names, attributes and numbers must all be there; white space
//         between elements, and elements that are not known, are passed over.
// Errors: a sentence that says what is wrong with the line, for the log and the window.
#pragma once

#include "sketch/core/sheet.h"

#include <string>
#include <string_view>
#include <variant>

namespace vnt::sketch {

struct Problem {
    std::string sentence;
};

template <class Value>
using Result = std::variant<Value, Problem>;

// Where the editor's window stands on its screen, in pixels, y down.
struct WindowPlace {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

struct Request {
    WindowPlace window;
    Sheet sheet;
};

// line: without its line feed. A view that cannot be computed (a matrix that is not finite, or flattens), a
// window of no size, a grid that cannot be drawn: the first two are refused, without the last there is no
// grid.
Result<Request> read_request(std::string_view line);

} // namespace vnt::sketch
