// What a plug-in calls of its host, written down as it happens.
//
// Shapes: a file of lines; docs/host-kit.md has the fields of each call.
#pragma once

#include "host/kit/result.h"

#include <memory>
#include <string>
#include <string_view>

namespace vnt::host {

class Trace {
public:
    // Makes the file, or empties it. It stays open until the trace ends, and nothing else is opened: a trace can
    // be written while a link is at work that closes descriptors by their numbers.
    //
    // Errors: a file that cannot be written.
    static Result<std::unique_ptr<Trace>> open(const std::string& file);

    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;
    ~Trace();

    // Writes a line with its line feed. It is with the system when this returns, so that a crash loses nothing.
    // After an error nothing more is written.
    void write(std::string_view line);

    // What went wrong in writing; empty when nothing did.
    const std::string& problem() const { return problem_; }

private:
    Trace(std::string file, int descriptor);

    std::string file_;
    std::string problem_;
    int descriptor_;
};

} // namespace vnt::host
