// The command line of a program, one argument after the other.
//
// Shapes: an option is "--name", "--name value", "--name=value", "-x" or "-x value"; where its letter takes a value
//         "-xvalue" too. What does not begin with "-" is no option, nor is "-" alone, nor what stands behind "--".
//         A value is whatever stands in its place, also what begins with "-".
// Errors: what cannot be meant is thrown as WrongUsage. The function that reads a program's options catches it; it
//         is not for the outside.
#pragma once

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <string>
#include <system_error>
#include <type_traits>
#include <vector>

namespace vnt::program {

struct WrongUsage {
    std::string sentence; // as of a Problem
};

class Arguments {
public:
    // nothing_done: what is unharmed when the reading ends with WrongUsage, as in "nothing was started".
    // value_letters: of the one-letter options that take a value; others stay whole, so that "-help" isn't "-h".
    Arguments(std::vector<std::string> arguments, std::string nothing_done, std::string value_letters = "");

    // Goes to the next argument behind what was taken so far; false when there is none.
    bool next();

    // Whether the argument is an option; one that isn't stands whole in option().
    bool is_option() const { return is_option_; }

    // The option's name with its dashes, without an attached value.
    const std::string& option() const { return option_; }

    // The option's value, attached to it or the next argument, which is taken; to be asked for once. An empty one
    // is none. meaning: what it should be, to go on after "give it".
    const std::string& value(const std::string& meaning);

    // What value() returned last for this option; before, its attached value.
    const std::string& text() const { return value_; }

    // Refuses an attached value.
    void no_value() const;

    // The option's value as one number and nothing else, with a decimal point; finite.
    template <class Number>
    Number number(const std::string& meaning)
    {
        const std::string& text = value(meaning);
        Number result = 0;
        if (!try_number(text.data(), text.data() + text.size(), result))
            refuse_value(meaning);
        return result;
    }

    // The option's value as exactly count numbers, with a comma between two.
    std::vector<double> numbers(std::size_t count, const std::string& meaning);

    // The option's value as a time above 0, up to 1e9 s. What is shorter than a nanosecond becomes one.
    std::chrono::nanoseconds seconds();

    // Refuses what was meant, in the form of a Problem's sentence.
    [[noreturn]] void refuse(const std::string& what, const std::string& remedy) const;

    // Refuses the value that was taken last. meaning: as of value().
    [[noreturn]] void refuse_value(const std::string& meaning) const;

    // Refuses the argument, which the program knows nothing of.
    [[noreturn]] void refuse_unknown(const std::string& remedy) const;

private:
    void detach_value();

    template <class Number>
    static bool try_number(const char* begin, const char* end, Number& number)
    {
        const auto [stop, error] = std::from_chars(begin, end, number);
        if (error != std::errc() || stop != end)
            return false;
        if constexpr (std::is_floating_point_v<Number>)
            return std::isfinite(number);
        return true;
    }

    std::vector<std::string> arguments_;
    std::string nothing_done_;
    std::string value_letters_;
    std::size_t index_ = 0;    // of the argument behind what was taken
    bool options_end_ = false; // "--" was passed
    bool is_option_ = false;
    bool attached_ = false; // the value stands in the option's own argument
    std::string option_;
    std::string value_;
};

} // namespace vnt::program
