// What the start of a program takes, its words and its environment, as the system wants them.
#pragma once

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

extern char** environ;

namespace support {

// The file of a program: of that name, or of a name without a slash in the folders of PATH. Empty when there is none.
inline std::string find_program(const std::string& name)
{
    const auto is_program = [](const std::string& file) { return access(file.c_str(), X_OK) == 0; };
    if (name.find('/') != name.npos)
        return is_program(name) ? name : std::string();
    const char* const path = std::getenv("PATH");
    std::istringstream folders(path == nullptr ? "" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (!folder.empty() && is_program(folder + "/" + name))
            return folder + "/" + name;
    }
    return {};
}

inline bool is_installed(const std::string& program) { return !find_program(program).empty(); }

// The test's own environment with changes: NAME=value instead of or besides it, NAME alone takes it away.
inline std::vector<std::string> changed_environment(const std::vector<std::string>& changes)
{
    const auto name_of = [](const std::string& entry) { return entry.substr(0, entry.find('=')); };
    std::vector<std::string> entries;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const bool is_changed = std::any_of(changes.begin(), changes.end(), [&](const std::string& change) {
            return name_of(*entry) == name_of(change);
        });
        if (!is_changed)
            entries.emplace_back(*entry);
    }
    std::copy_if(changes.begin(), changes.end(), std::back_inserter(entries),
                 [](const std::string& change) { return change.find('=') != change.npos; });
    return entries;
}

// With a null pointer at the end; valid as long as the texts are.
inline std::vector<char*> pointers_to(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace support
