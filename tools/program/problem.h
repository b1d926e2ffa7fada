// How the rooms of a program tell that something failed.
//
// Errors: a sentence for people, in the form "what failed, on which thing; what is unharmed; what to do",
//         without the program's name, and the status that the program exits with for it.
#pragma once

#include <string>
#include <variant>

namespace vnt::program {

enum ExitStatus : int {
    kDone = 0,
    kFailed = 1, // a file, another program, a plug-in or the machine
    kWrongUsage = 2,
    kAlert = 3,  // the plug-in showed one
    kTimeUp = 4, // or nobody is going to answer any more
};

struct Problem {
    ExitStatus status;
    std::string sentence;
};

template <class Value>
using Result = std::variant<Value, Problem>;

} // namespace vnt::program
