#include "tools/peer/options.h"

#include <charconv>
#include <cmath>
#include <string_view>

namespace vnt::peer {
namespace {

// Longer than any program runs, and still a number of nanoseconds that has room.
constexpr double kLongestTimeout = 1e9; // seconds

struct WrongUsage {
    std::string sentence;
};

[[noreturn]] void refuse(const std::string& what, const std::string& remedy)
{
    throw WrongUsage{what + "; nothing was started; " + remedy};
}

// The arguments, one option after the other.
class Arguments {
public:
    explicit Arguments(const std::vector<std::string>& arguments) : arguments_(arguments) {}

    bool next()
    {
        if (index_ == arguments_.size())
            return false;
        std::string_view argument = arguments_[index_++];
        const std::size_t equals = argument.find('=');
        attached_ = argument.substr(0, 2) == "--" && equals != std::string_view::npos;
        option_ = argument.substr(0, attached_ ? equals : std::string_view::npos);
        value_ = attached_ ? argument.substr(equals + 1) : std::string_view();
        return true;
    }

    std::string option() const { return std::string(option_); }
    std::string text() const { return std::string(value_); } // what value() returned last

    // The option's value, which stands behind its "=" or is the next argument.
    std::string value(const char* meaning)
    {
        if (!attached_ && index_ < arguments_.size())
            value_ = arguments_[index_++];
        if (value_.empty())
            refuse("no value behind " + option(), std::string("give it ") + meaning);
        return std::string(value_);
    }

    void no_value() const
    {
        if (attached_)
            refuse("cannot use a value of " + option() + ", " + std::string(value_),
                   "give " + option() + " alone");
    }

private:
    const std::vector<std::string>& arguments_;
    std::size_t index_ = 0;
    std::string_view option_;
    std::string_view value_;
    bool attached_ = false;
};

template <class Number>
Number number(Arguments& arguments, const char* meaning)
{
    const std::string text = arguments.value(meaning);
    const char* const end = text.data() + text.size();
    Number value = 0;
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end)
        refuse("cannot use " + arguments.option() + " " + text, std::string("give it ") + meaning);
    return value;
}

std::chrono::nanoseconds seconds(Arguments& arguments)
{
    const char* const meaning = "a number of seconds above 0 and up to 1000000000";
    const double value = number<double>(arguments, meaning);
    if (!(value > 0.0) || value > kLongestTimeout)
        refuse("cannot use " + arguments.option() + " " + arguments.text(),
               std::string("give it ") + meaning);
    return std::chrono::ceil<std::chrono::nanoseconds>(std::chrono::duration<double>(value));
}

Fault fault(Arguments& arguments)
{
    std::string names;
    for (const FaultEntry& entry : fault_entries())
        names += std::string(names.empty() ? "" : ", ") + entry.name;
    const std::string name = arguments.value(("one of " + names).c_str());
    const FaultEntry* const entry = fault_of_name(name);
    if (entry == nullptr)
        refuse("unknown fault " + name, "give --fault one of " + names);
    return entry->fault;
}

// Takes one option; false when nothing behind it counts.
bool take(Arguments& arguments, Options& options)
{
    const std::string option = arguments.option();
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
        options.port = number<std::uint16_t>(arguments, "a port from 0 to 65535");
    else if (option == "--exchanges")
        options.exchanges = number<std::uint32_t>(arguments, "a whole number, 0 for no end");
    else if (option == "--save-request")
        options.save_request = arguments.value("the file to write the request to");
    else if (option == "--answer")
        options.answer = arguments.value("the file that holds the answer");
    else if (option == "--fault")
        options.fault = fault(arguments);
    else if (option == "--timeout")
        options.timeout = seconds(arguments);
    else
        refuse((option.substr(0, 1) == "-" ? "unknown option " : "unexpected argument ") + option,
               "vant-peer --help lists the options");
    return true;
}

void check_together(const Options& options)
{
    const FaultEntry& fault = entry_of_fault(options.fault);
    const std::string name = fault.name;
    if (options.fault == Fault::none && !options.answer)
        refuse("no answer to give", "name one with --answer FILE, or a fault that needs none, as in "
                                    "--fault close-before-answer");
    if (fault.needs_answer && !options.answer)
        refuse("no answer for --fault " + name, "name one with --answer FILE");
    if (options.join && !options.answer)
        refuse("nothing to join", "name the file with --answer FILE, or leave --join out");
    if (options.save_request && !fault.takes_request)
        refuse("no request to save with --fault " + name + ", which reads none", "leave --save-request out");
}

} // namespace

Result<Options> read_options(const std::vector<std::string>& arguments)
{
    Options options;
    Arguments rest(arguments);
    try {
        while (rest.next()) {
            if (!take(rest, options))
                return options;
        }
        check_together(options);
    } catch (const WrongUsage& wrong) {
        return Problem{kWrongUsage, wrong.sentence};
    }
    return options;
}

} // namespace vnt::peer
