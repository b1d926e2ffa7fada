#include "host/app/sketch_application.h"

#include "host/app/own_program.h"

#include <unistd.h>

#include <array>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <system_error>

namespace vnt::host {
namespace {

constexpr const char* kSketchApplication = "vant-sketch";

bool is_program(const std::filesystem::path& file)
{
    std::error_code error;
    return std::filesystem::is_regular_file(file, error) && access(file.c_str(), X_OK) == 0;
}

// Empty when it is nowhere.
std::string find_sketch_application()
{
    const std::filesystem::path beside =
        std::filesystem::path(own_program()).replace_filename(kSketchApplication);
    if (is_program(beside))
        return beside.string();
    const char* const path = std::getenv("PATH");
    std::istringstream folders(path == nullptr ? "" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        const std::filesystem::path file = std::filesystem::path(folder) / kSketchApplication;
        if (is_program(file))
            return file.string();
    }
    return {};
}

// For a shell.
std::string quoted(const std::string& word)
{
    std::string text = "'";
    for (const char c : word)
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

std::string rotation_option(double rotation)
{
    if (rotation == 0)
        return {};
    std::array<char, 32> digits;
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), rotation).ptr;
    return " --sheet-rotation " + std::string(static_cast<const char*>(digits.data()), end);
}

} // namespace

std::optional<std::string> sketch_application_command(double sheet_rotation)
{
    const std::string program = find_sketch_application();
    if (program.empty())
        return std::nullopt;
    return quoted(program) + rotation_option(sheet_rotation);
}

} // namespace vnt::host
