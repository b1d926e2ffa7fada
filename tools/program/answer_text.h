// The answer's line, out of a file.
//
// Shapes: an answer is one line; its bytes count as they stand in the file, whatever they are, up to the first
//         line feed, which is not part of the result.
// Errors: a Problem that names the file, in the program's words.
#pragma once

#include "tools/program/problem.h"

#include <string>
#include <string_view>

namespace vnt::program {

// How a program speaks of its answer file.
struct AnswerWords {
    std::string use;          // what it wants to do, to be followed by the file: "answer with"
    std::string nothing_done; // what is unharmed: "nothing was started"
    std::string naming;       // how the file is named, if that has to be said: " with --answer"
};

// A document of many lines as one line.
//
// A run of white space that holds a line break goes if it stands between elements, at an end of the document,
// beside an element's text, or where a tag has no use for it. Elsewhere (between attributes, within a text,
// an attribute's value or a comment) it becomes one blank. All other white space stays.
std::string joined(std::string_view document);

// The one line of a file's content. White space behind it counts as nothing; more lines than one are refused
// unless they are to be joined, and so is a file that has not even an empty line.
Result<std::string> answer_line(std::string_view content, bool join, const std::string& file,
                                const AnswerWords& words);

// answer_line of what the file holds.
Result<std::string> read_answer(const std::string& file, bool join, const AnswerWords& words);

} // namespace vnt::program
