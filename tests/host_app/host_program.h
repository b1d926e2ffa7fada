// vant-host as a child process.
//
// Errors: whatever takes longer than kLimit throws std::runtime_error, which fails the test.
#pragma once

#include "tests/support/temporary_folder.h"

#include <chrono>
#include <string>
#include <vector>

namespace host_app_test {

constexpr std::chrono::seconds kLimit(90);

struct ProgramEnd {
    int status = 0;     // minus the signal's number when one ended it
    std::string output; // what stood on standard output
    std::string errors; // on standard error
    bool operator==(const ProgramEnd&) const = default;
};
void PrintTo(const ProgramEnd& end, std::ostream* out);

enum class Stream { piped, closed, terminal };

struct Surroundings {
    bool has_input = true; // /dev/null; else descriptor 0 is closed
    Stream output = Stream::piped;
    Stream errors = Stream::piped;
    std::vector<std::string> environment; // NAME=value, besides the test's own
};

// Runs vant-host to its end.
ProgramEnd run_host(std::vector<std::string> arguments, const Surroundings& surroundings = {});

// text with every place replaced where it says what.
std::string replaced(std::string text, const std::string& what, const std::string& by);

// The words of text, which have one blank between them.
std::vector<std::string> words(const std::string& text);

// The smallest artwork: 200 x 100 px, no record of a view, no grid. Its artwork's origin is the page's top left
// corner, and its whole page fills the usual window of 1024 x 768 pixels at (0, 22).
constexpr const char* kSmallArtwork =
    R"(<svg xmlns="http://www.w3.org/2000/svg" width="200" height="100"><rect width="10" height="10"/></svg>
)";
constexpr const char* kLineAnswer = "<vant><shape><line><start x=\"0\" y=\"0\" z=\"0\"/><end x=\"100\" "
                                    "y=\"-50\" z=\"0\"/></line></shape></vant>\n";
// kSmallArtwork with the line of kLineAnswer: points are 4/3 px.
constexpr const char* kDrawnArtwork =
    R"(<svg xmlns="http://www.w3.org/2000/svg" width="200" height="100"><rect width="10" height="10"/>)"
    R"(<path id="vant-path1" style="fill:none;stroke:#000000;stroke-width:1.3333333" )"
    R"(d="M 0,0 L 133.33333,66.666667"/></svg>
)";

// A folder with the small artwork and the answer of one line in it. What programs say of it calls it DIR.
class Workplace {
public:
    Workplace();

    std::string path(const std::string& name) const { return folder_.path(name); }
    std::string file(const std::string& name, const std::string& content) const
    {
        return folder_.file(name, content);
    }
    std::string content(const std::string& name) const { return support::content_of(path(name)); }
    bool has(const std::string& name) const { return folder_.names().count(name) > 0; }
    std::set<std::string> names() const { return folder_.names(); }

    // Runs vant-host; "DIR" in arguments and environment means the folder, and the folder in what it says is DIR.
    ProgramEnd run(std::vector<std::string> arguments, Surroundings surroundings = {}) const;

    // run with the small artwork, written to DIR/out.svg.
    ProgramEnd run_small(const std::vector<std::string>& arguments = {},
                         Surroundings surroundings = {}) const;

private:
    support::TemporaryFolder folder_;
};

} // namespace host_app_test
