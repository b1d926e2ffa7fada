// The command line of vant-sketch.
//
// Errors: a Problem that says what was wrong.
#pragma once

#include "tools/program/problem.h"

#include <optional>
#include <string>
#include <vector>

struct ProgramOptions {
    bool help = false;
    bool version = false;
    bool isLinked = true;                // --no-link
    std::optional<double> sheetRotation; // --sheet-rotation, degrees
    std::string file;                    // to open; empty for none
};

vnt::program::Result<ProgramOptions> readProgramOptions(const std::vector<std::string>& arguments);

// The same for the program that runs already: wherever that was started, the file is found.
std::vector<std::string> argumentsFor(const ProgramOptions& options);

std::string helpText();
std::string versionText();
