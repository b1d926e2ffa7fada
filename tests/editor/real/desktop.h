// A desktop of a test's own for the real editor: an X server, a window manager, a session bus, and the folders of a
// user who has our extensions installed and nothing else.
//
// Errors: as process.h.
#pragma once

#include "tests/editor/own_bus.h"
#include "tests/editor/real/process.h"
#include "tests/support/temporary_folder.h"

#include <memory>
#include <string>
#include <vector>

namespace real_editor_test {

struct Ended {
    int status = 0;
    std::string output;
};

class Desktop {
public:
    Desktop();

    // What is not installed of all that it takes, for people; empty when all is there.
    static std::string missing();

    std::string path(const std::string& name) const { return folder_.path(name); }
    std::string file(const std::string& name, const std::string& content) const
    {
        return folder_.file(name, content);
    }
    std::string content(const std::string& name) const { return support::content_of(path(name)); }
    bool has(const std::string& name) const;

    // Of what is started on this desktop: neither the user's real folders nor real session.
    const std::vector<std::string>& environment() const { return environment_; }

    std::unique_ptr<Process> start(const std::vector<std::string>& words,
                                   const std::string& name = "output") const;
    Ended run(const std::vector<std::string>& words, std::chrono::seconds limit = kLimit) const;

    // A script of /bin/sh. What is in bin is in the PATH of all that runs here, and nothing else is.
    void add_program(const std::string& name, const std::string& script) const;

    // The extensions' log, without the time and the process in front of each entry.
    std::string log() const;
    // The files of art that is kept, and of art that was placed.
    std::vector<std::string> kept() const { return art_in("sketches"); }
    std::vector<std::string> placed() const { return art_in("sketches/placed"); }
    // Waits until no sketch goes on any more, as its process leaves nothing behind.
    void wait_for_the_sketch_to_end() const;

    // A picture of the screen.
    void save_picture(const std::string& file) const;

private:
    std::vector<std::string> art_in(const std::string& folder) const;

    support::TemporaryFolder folder_;
    editor_test::OwnBus bus_;
    std::vector<std::string> environment_;
    std::unique_ptr<Process> server_;
    std::unique_ptr<Process> manager_;
};

} // namespace real_editor_test
