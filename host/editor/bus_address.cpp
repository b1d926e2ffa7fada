#include "host/editor/bus_address.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string_view>

namespace vnt::host {
namespace {

bool starts_a_bus(std::string_view entry)
{
    const std::string_view transport = entry.substr(0, entry.find(':'));
    return transport == "autolaunch" || transport == "unixexec";
}

// As addresses write it: what is not plain is %XX.
std::string escaped(std::string_view path)
{
    constexpr std::string_view kPlain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_/.\\*";
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (kPlain.find(c) != kPlain.npos)
            text += c;
        else
            text.append({'%', kDigits[byte / 16], kDigits[byte % 16]});
    }
    return text;
}

} // namespace

std::optional<std::string> session_bus_address(const char* address, const char* runtime_folder)
{
    if (address != nullptr && *address != '\0') {
        std::string kept;
        std::string_view rest = address;
        while (!rest.empty()) {
            const std::string_view entry = rest.substr(0, rest.find(';'));
            rest.remove_prefix(std::min(rest.size(), entry.size() + 1));
            if (!entry.empty() && !starts_a_bus(entry))
                kept.append(kept.empty() ? "" : ";").append(entry);
        }
        return kept.empty() ? std::nullopt : std::optional(kept);
    }
    if (runtime_folder == nullptr || *runtime_folder != '/')
        return std::nullopt;
    const std::string path = std::string(runtime_folder) + "/bus";
    struct stat file {};
    if (stat(path.c_str(), &file) != 0 || !S_ISSOCK(file.st_mode) || file.st_uid != geteuid())
        return std::nullopt;
    return "unix:path=" + escaped(path);
}

} // namespace vnt::host
