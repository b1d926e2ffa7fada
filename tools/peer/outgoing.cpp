#include "tools/peer/outgoing.h"

#include <algorithm>

namespace vnt::peer {
namespace {

// Slow enough that a reader sees the bytes arrive apart, and all over soon.
constexpr std::chrono::nanoseconds kDripTime = std::chrono::seconds(2);
constexpr std::chrono::nanoseconds kLongestDripPause = std::chrono::milliseconds(1);

constexpr std::size_t kHugeStrokes = 64;
constexpr std::size_t kBlanksPerStroke = std::size_t{1024} * 1024;

// The empty tag is what a parser stumbles over; every byte but the line feed follows.
std::string garbage()
{
    std::string bytes = "<>";
    for (int byte = 0; byte < 256; ++byte) {
        if (byte != '\n')
            bytes += static_cast<char>(byte);
    }
    return bytes;
}

// Upright lines, side by side.
std::string huge_stroke(std::size_t index)
{
    constexpr std::size_t kSpacing = 8;
    const std::string x = std::to_string(index * kSpacing) + ".0";
    return std::string(kBlanksPerStroke, ' ') + "<shape><line><start x=\"" + x +
           "\" y=\"0.0\" z=\"0.0\"/><end x=\"" + x + "\" y=\"400.0\" z=\"0.0\"/></line></shape>";
}

std::string bytes_of(Fault fault, const std::string& answer)
{
    switch (fault) {
    case Fault::none:
    case Fault::drip: return answer + '\n';
    case Fault::two_answers: return answer + '\n' + answer + '\n';
    case Fault::close_mid_line: return answer.substr(0, answer.size() / 2);
    case Fault::garbage: return garbage() + '\n';
    case Fault::huge: // made piece by piece
    case Fault::refuse:
    case Fault::close_before_answer:
    case Fault::stall:
    case Fault::reset: break;
    }
    return {};
}

} // namespace

Outgoing::Outgoing(Fault fault, const std::string& answer) : fault_(fault), bytes_(bytes_of(fault, answer)) {}

std::string_view Outgoing::next()
{
    if (fault_ == Fault::huge)
        return next_of_huge();
    const std::size_t size = fault_ == Fault::drip ? 1 : bytes_.size();
    const std::string_view piece = std::string_view(bytes_).substr(taken_, size);
    taken_ += piece.size();
    return piece;
}

std::chrono::nanoseconds Outgoing::pause() const
{
    if (fault_ != Fault::drip)
        return std::chrono::nanoseconds::zero();
    return std::min(kLongestDripPause, kDripTime / static_cast<std::chrono::nanoseconds::rep>(bytes_.size()));
}

std::string_view Outgoing::next_of_huge()
{
    const std::size_t index = taken_++;
    if (index == 0)
        bytes_ = R"(<?xml version="1.0" encoding="UTF-8" standalone="no"?><vant>)";
    else if (index <= kHugeStrokes)
        bytes_ = huge_stroke(index - 1);
    else if (index == kHugeStrokes + 1)
        bytes_ = "</vant>\n";
    else
        bytes_.clear();
    return bytes_;
}

} // namespace vnt::peer
