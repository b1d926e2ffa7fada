// The command line of vant-host.
//
// Errors: what cannot be meant is a Problem of wrong usage; nothing is printed here.
#pragma once

#include "host/kit/svg_view.h"
#include "tools/program/problem.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vnt::host {

enum class Command { help, version, run, draw };

// In the place of an editor's name, where it is not known.
constexpr const char* kNoEditor = "none";

struct GridOption {
    double spacing; // points
    std::int32_t subdivisions;
};

// Fields of another command than the chosen one are as they are here.
struct Options {
    Command command = Command::help;
    std::string subject; // of help: the command that is asked about, or empty

    // run and draw
    std::string out; // empty in a run that writes art alone
    std::optional<std::string> trace;
    std::optional<std::chrono::nanoseconds> timeout;
    std::optional<std::uint64_t> memory; // bytes
    bool strict = false;

    // run
    std::string artwork;
    std::optional<std::string> plugin;
    std::optional<std::string> launch;
    std::optional<std::string> art; // where the paths go by themselves, to be placed later
    // Set by the commands that work inside an editor, and in no help: the artwork is a copy of that editor's document,
    // whose file DOCUMENT_PATH names, and vant-sketch is the command to launch. Empty when the editor is not known.
    std::optional<std::string> editor;
    ViewOptions view;
    std::optional<GridOption> grid;
    bool no_grid = false;

    // draw
    std::string answer;
    bool join = false;
    std::optional<std::string> into;
    double tolerance = 1; // points
};

// The command is the first argument. "--help" and "--version" end the reading.
program::Result<Options> read_options(const std::vector<std::string>& arguments);

} // namespace vnt::host
