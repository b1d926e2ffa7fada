#include "tools/program/console.h"

#include <iostream>

namespace vnt::program {

Console::Console(const std::string& program) : start_(program + ": ") {}

ExitStatus Console::print(const std::string& text) const
{
    if (std::cout << text << std::flush)
        return kDone;
    return report({kFailed, "cannot write to standard output; nothing was done; let it lead somewhere"});
}

// In one piece, so that lines of several programs on one log stay whole.
ExitStatus Console::report(const Problem& problem) const
{
    std::cerr << start_ + problem.sentence + "\n";
    return problem.status;
}

void Console::note(const std::string& sentence) const { std::cerr << start_ + "note: " + sentence + "\n"; }

} // namespace vnt::program
