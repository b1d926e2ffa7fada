// vant-peer: the sketch application without a screen.
#include "tools/peer/help_text.h"
#include "tools/peer/options.h"
#include "tools/peer/server.h"
#include "tools/program/answer_text.h"
#include "tools/program/console.h"

#include <csignal>
#include <exception>
#include <string>
#include <variant>
#include <vector>

namespace {

using namespace vnt::peer;
using namespace vnt::program;

ExitStatus run(const Console& console, const std::vector<std::string>& arguments)
{
    const Result<Options> read = read_options(arguments);
    if (const auto* problem = std::get_if<Problem>(&read))
        return console.report(*problem);
    const auto& options = std::get<Options>(read);
    if (options.help)
        return console.print(help_text());
    if (options.version)
        return console.print(version_text());
    const AnswerWords words = {"answer with", "nothing was started", " with --answer"};
    Result<std::string> answer;
    if (options.answer && entry_of_fault(options.fault).needs_answer)
        answer = read_answer(*options.answer, options.join, words);
    if (const auto* problem = std::get_if<Problem>(&answer))
        return console.report(*problem);
    return serve(options, std::get<std::string>(answer), console);
}

} // namespace

int main(int argc, char** argv)
{
    const Console console("vant-peer");
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return run(console, {argv + 1, argv + argc});
    } catch (const std::exception& error) {
        return console.report({kFailed, std::string("cannot go on: ") + error.what() +
                                            "; requests that were saved are unharmed; try again"});
    }
}
