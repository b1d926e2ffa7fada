// This program, started again for a part of the work.
//
// Errors: a sentence, in the form of host/kit/result.h, when it cannot be started.
#pragma once

#include "host/kit/result.h"

#include <sys/types.h>

#include <string>
#include <vector>

namespace vnt::host {

// The file of this program, with all links followed.
std::string own_program();

struct Finished {
    int status;       // the exit status; 128 and the signal's number for an end by a signal
    std::string said; // on standard error
};

// Runs this program with arguments and waits for its end. It gets /dev/null to read and to write on, its standard error
// goes to the file messages, which is made anew, and it keeps the descriptor kept, under its number.
Result<Finished> run_own_program(const std::vector<std::string>& arguments, const std::string& messages,
                                 int kept);

// Starts this program with arguments in a session of its own, with /dev/null on descriptors 0, 1 and 2, so that
// whoever waits for the end of our output does not wait for it. It keeps the descriptor kept, under its number.
Result<pid_t> start_own_program(const std::vector<std::string>& arguments, int kept);

} // namespace vnt::host
