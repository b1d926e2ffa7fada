// How the rooms of vant-peer tell that something failed.
//
// Errors: a sentence for people, in the form "what failed, on which thing; what is unharmed; what to do",
//         without the program's name, and the status that the program exits with for it.
#pragma once

#include <string>
#include <variant>

namespace vnt::peer {

enum ExitStatus : int {
    kDone = 0,
    kFailed = 1, // a file, a client or the machine
    kWrongUsage = 2,
    kTimeUp = 4,
};

struct Problem {
    ExitStatus status;
    std::string sentence;
};

template <class Value>
using Result = std::variant<Value, Problem>;

} // namespace vnt::peer
