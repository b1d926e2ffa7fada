#include "tools/peer/output.h"

#include <iostream>

namespace vnt::peer {
namespace {

constexpr const char* kProgram = "vant-peer: ";

} // namespace

ExitStatus print(const std::string& text)
{
    if (std::cout << text << std::flush)
        return kDone;
    return report({kFailed, "cannot write to standard output; nothing was done; let it lead somewhere"});
}

// In one piece, so that lines of several programs on one log stay whole.
ExitStatus report(const Problem& problem)
{
    std::cerr << kProgram + problem.sentence + "\n";
    return problem.status;
}

void note(const std::string& sentence) { std::cerr << kProgram + ("note: " + sentence + "\n"); }

} // namespace vnt::peer
