// vant-peer: the sketch application without a screen.
#include "tools/peer/answer_text.h"
#include "tools/peer/help_text.h"
#include "tools/peer/options.h"
#include "tools/peer/output.h"
#include "tools/peer/server.h"

#include <csignal>
#include <exception>
#include <string>
#include <variant>
#include <vector>

namespace {

using namespace vnt::peer;

ExitStatus run(const std::vector<std::string>& arguments)
{
    const Result<Options> read = read_options(arguments);
    if (const auto* problem = std::get_if<Problem>(&read))
        return report(*problem);
    const auto& options = std::get<Options>(read);
    if (options.help)
        return print(help_text());
    if (options.version)
        return print(version_text());
    Result<std::string> answer;
    if (options.answer && entry_of_fault(options.fault).needs_answer)
        answer = read_answer(*options.answer, options.join);
    if (const auto* problem = std::get_if<Problem>(&answer))
        return report(*problem);
    return serve(options, std::get<std::string>(answer));
}

} // namespace

int main(int argc, char** argv)
{
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return run({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        return report({kFailed, std::string("cannot go on: ") + error.what() +
                                    "; requests that were saved are unharmed; try again"});
    }
}
