// How the rooms of the host kit tell that something failed.
//
// Errors: a sentence for people, in the form "what failed, on which thing; what to do", without the program's
//         name. What is unharmed, the program adds: it knows what it has done so far.
#pragma once

#include <string>
#include <variant>

namespace vnt::host {

struct Problem {
    std::string sentence;
};

template <class Value>
using Result = std::variant<Value, Problem>;

} // namespace vnt::host
