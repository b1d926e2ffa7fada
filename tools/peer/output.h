// What vant-peer says: on standard output what was asked for, on standard error the rest.
#pragma once

#include "tools/peer/problem.h"

#include <string>

namespace vnt::peer {

// Writes text to standard output, at once and to its last byte. What cannot be written is a problem.
ExitStatus print(const std::string& text);

// Tells a problem on standard error, in one line, and returns its status.
ExitStatus report(const Problem& problem);

// Tells on standard error what is no problem and still good to know, in one line.
void note(const std::string& sentence);

} // namespace vnt::peer
