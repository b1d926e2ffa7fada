#include "tools/program/arguments.h"

#include <algorithm>
#include <utility>

namespace vnt::program {
namespace {

// Longer than any program runs, and still a number of nanoseconds that has room.
constexpr double kLongestTime = 1e9; // seconds

} // namespace

Arguments::Arguments(std::vector<std::string> arguments, std::string nothing_done, std::string value_letters)
    : arguments_(std::move(arguments)), nothing_done_(std::move(nothing_done)),
      value_letters_(std::move(value_letters))
{
}

bool Arguments::next()
{
    if (!options_end_ && index_ < arguments_.size() && arguments_[index_] == "--") {
        options_end_ = true;
        ++index_;
    }
    if (index_ == arguments_.size())
        return false;
    option_ = arguments_[index_++];
    value_.clear();
    attached_ = false;
    is_option_ = !options_end_ && option_.size() > 1 && option_[0] == '-';
    if (is_option_)
        detach_value();
    return true;
}

// Cuts the value, if there is one, off the option's name.
void Arguments::detach_value()
{
    if (option_[1] == '-') {
        const std::size_t equals = option_.find('=');
        attached_ = equals != std::string::npos;
        if (attached_)
            value_ = option_.substr(equals + 1);
        option_.resize(std::min(equals, option_.size()));
    } else if (option_.size() > 2 && value_letters_.find(option_[1]) != std::string::npos) {
        attached_ = true;
        value_ = option_.substr(2);
        option_.resize(2);
    }
}

const std::string& Arguments::value(const std::string& meaning)
{
    if (!attached_ && index_ < arguments_.size())
        value_ = arguments_[index_++];
    if (value_.empty())
        refuse("no value behind " + option_, "give it " + meaning);
    return value_;
}

void Arguments::no_value() const
{
    if (attached_)
        refuse("cannot use a value of " + option_ + ", " + value_, "give " + option_ + " alone");
}

std::vector<double> Arguments::numbers(std::size_t count, const std::string& meaning)
{
    const std::string& text = value(meaning);
    const char* const end = text.data() + text.size();
    std::vector<double> numbers;
    for (const char* begin = text.data();;) {
        const char* const comma = std::find(begin, end, ',');
        if (!try_number(begin, comma, numbers.emplace_back()))
            refuse_value(meaning);
        if (comma == end)
            break;
        begin = comma + 1;
    }
    if (numbers.size() != count)
        refuse_value(meaning);
    return numbers;
}

std::chrono::nanoseconds Arguments::seconds()
{
    const std::string meaning = "a number of seconds above 0 and up to 1000000000";
    const auto value = number<double>(meaning);
    if (!(value > 0.0) || value > kLongestTime)
        refuse_value(meaning);
    return std::chrono::ceil<std::chrono::nanoseconds>(std::chrono::duration<double>(value));
}

void Arguments::refuse(const std::string& what, const std::string& remedy) const
{
    throw WrongUsage{what + "; " + nothing_done_ + "; " + remedy};
}

void Arguments::refuse_value(const std::string& meaning) const
{
    refuse("cannot use " + option_ + " " + value_, "give it " + meaning);
}

void Arguments::refuse_unknown(const std::string& remedy) const
{
    refuse((is_option_ ? "unknown option " : "unexpected argument ") + option_, remedy);
}

} // namespace vnt::program
