// What a program says: on standard output what was asked for, on standard error the rest.
#pragma once

#include "tools/program/problem.h"

#include <string>

namespace vnt::program {

class Console {
public:
    // program: the name that begins every line on standard error.
    explicit Console(const std::string& program);

    // Writes text to standard output, at once and to its last byte. What cannot be written is a problem.
    ExitStatus print(const std::string& text) const;

    // Tells a problem on standard error, in one line, and returns its status.
    ExitStatus report(const Problem& problem) const;

    // Tells on standard error what is no problem and still good to know, in one line.
    void note(const std::string& sentence) const;

private:
    std::string start_; // of a line
};

} // namespace vnt::program
