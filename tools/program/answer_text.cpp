#include "tools/program/answer_text.h"

#include "tools/program/whole_file.h"

#include <algorithm>
#include <system_error>

namespace vnt::program {
namespace {

constexpr std::string_view kWhite = " \t\r\n";
constexpr std::string_view kBreaks = "\r\n";

// Follows a document character by character, as far as is needed to know what white space means.
class Place {
public:
    bool in_text() const { return !in_tag_ && !in_comment_; }
    bool between_attributes() const { return in_tag_ && quote_ == 0; }

    // Passes the character at index.
    void pass(std::string_view document, std::size_t index)
    {
        const char c = document[index];
        if (in_comment_)
            in_comment_ = !(c == '>' && index >= comment_end_ && document.substr(index - 2, 2) == "--");
        else if (quote_ != 0)
            quote_ = c == quote_ ? '\0' : quote_;
        else if (in_tag_ && (c == '"' || c == '\''))
            quote_ = c;
        else if (in_tag_)
            in_tag_ = c != '>';
        else if (document.substr(index, 4) == "<!--")
            start_comment(index);
        else
            in_tag_ = c == '<';
    }

private:
    void start_comment(std::size_t index)
    {
        constexpr std::size_t kShortestComment = 7; // <!---->
        in_comment_ = true;
        comment_end_ = index + kShortestComment - 1;
    }

    bool in_tag_ = false;
    bool in_comment_ = false;
    std::size_t comment_end_ = 0; // no earlier character can end the comment
    char quote_ = 0;              // that is open in a tag
};

bool starts_with(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

// What stands for a run of white space with a line break, between before and after.
std::string_view joint(const Place& place, std::string_view before, std::string_view after)
{
    if (before.empty() || after.empty())
        return "";
    if (place.in_text() && (before.back() == '>' || after.front() == '<'))
        return "";
    if (place.between_attributes() && (before.back() == '=' || after.front() == '=' || after.front() == '>' ||
                                       starts_with(after, "/>") || starts_with(after, "?>")))
        return "";
    return " ";
}

bool is_only_white(std::string_view text) { return text.find_first_not_of(kWhite) == std::string_view::npos; }

} // namespace

std::string joined(std::string_view document)
{
    std::string line;
    line.reserve(document.size());
    Place place;
    for (std::size_t index = 0; index < document.size();) {
        if (kWhite.find(document[index]) == std::string_view::npos) {
            place.pass(document, index);
            line += document[index++];
            continue;
        }
        const std::size_t end = std::min(document.find_first_not_of(kWhite, index), document.size());
        const std::string_view run = document.substr(index, end - index);
        line += run.find_first_of(kBreaks) == std::string_view::npos
                    ? run
                    : joint(place, line, document.substr(end));
        index = end;
    }
    return line;
}

Result<std::string> answer_line(std::string_view content, bool join, const std::string& file,
                                const AnswerWords& words)
{
    if (content.empty())
        return Problem{kFailed, "no answer in " + file + ", which is empty; " + words.nothing_done +
                                    "; write the answer's line into it, or name another file" + words.naming};
    if (join)
        return joined(content);
    const std::size_t end = std::min(content.find('\n'), content.size());
    if (!is_only_white(content.substr(end)))
        return Problem{kFailed, "cannot " + words.use + " " + file + ", which has more than one line; " +
                                    words.nothing_done +
                                    "; add --join to take out its line breaks and indentation, or name a "
                                    "file of one line"};
    return std::string(content.substr(0, end));
}

Result<std::string> read_answer(const std::string& file, bool join, const AnswerWords& words)
{
    std::string content;
    if (const std::error_code error = read_whole_file(file, content))
        return Problem{kFailed, "cannot read the answer file " + file + ": " + error.message() + "; " +
                                    words.nothing_done + "; name a file that can be read" + words.naming};
    return answer_line(content, join, file, words);
}

} // namespace vnt::program
