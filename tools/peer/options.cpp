#include "tools/peer/options.h"

#include "tools/program/arguments.h"

namespace vnt::peer {
namespace {

using program::Arguments;

Fault fault(Arguments& arguments)
{
    std::string names;
    for (const FaultEntry& entry : fault_entries())
        names += std::string(names.empty() ? "" : ", ") + entry.name;
    const std::string name = arguments.value("one of " + names);
    const FaultEntry* const entry = fault_of_name(name);
    if (entry == nullptr)
        arguments.refuse("unknown fault " + name, "give --fault one of " + names);
    return entry->fault;
}

// Takes one option; false when nothing behind it counts.
bool take(Arguments& arguments, Options& options)
{
    const std::string& option = arguments.option();
    if (!arguments.is_option())
        arguments.refuse_unknown("vant-peer --help lists the options");
    if (option == "--help" || option == "-h") {
        arguments.no_value();
        options.help = true;
        return false;
    }
    if (option == "--version") {
        arguments.no_value();
        options.version = true;
        return false;
    }
    if (option == "--join") {
        arguments.no_value();
        options.join = true;
    } else if (option == "--port")
        options.port = arguments.number<std::uint16_t>("a port from 0 to 65535");
    else if (option == "--exchanges")
        options.exchanges = arguments.number<std::uint32_t>("a whole number, 0 for no end");
    else if (option == "--save-request")
        options.save_request = arguments.value("the file to write the request to");
    else if (option == "--answer")
        options.answer = arguments.value("the file that holds the answer");
    else if (option == "--fault")
        options.fault = fault(arguments);
    else if (option == "--timeout")
        options.timeout = arguments.seconds();
    else
        arguments.refuse_unknown("vant-peer --help lists the options");
    return true;
}

void check_together(const Arguments& arguments, const Options& options)
{
    const FaultEntry& fault = entry_of_fault(options.fault);
    const std::string name = fault.name;
    if (options.fault == Fault::none && !options.answer)
        arguments.refuse("no answer to give",
                         "name one with --answer FILE, or a fault that needs none, as in "
                         "--fault close-before-answer");
    if (fault.needs_answer && !options.answer)
        arguments.refuse("no answer for --fault " + name, "name one with --answer FILE");
    if (options.join && !options.answer)
        arguments.refuse("nothing to join", "name the file with --answer FILE, or leave --join out");
    if (options.save_request && !fault.takes_request)
        arguments.refuse("no request to save with --fault " + name + ", which reads none",
                         "leave --save-request out");
}

} // namespace

program::Result<Options> read_options(const std::vector<std::string>& arguments)
{
    Options options;
    Arguments rest(arguments, "nothing was started");
    try {
        while (rest.next()) {
            if (!take(rest, options))
                return options;
        }
        check_together(rest, options);
    } catch (const program::WrongUsage& wrong) {
        return program::Problem{program::kWrongUsage, wrong.sentence};
    }
    return options;
}

} // namespace vnt::peer
