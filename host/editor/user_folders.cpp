#include "host/editor/user_folders.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace vnt::host {
namespace {

constexpr const char* kOwnFolder = "/vant";

// Without the slashes at its end: empty for the outermost folder.
std::optional<std::string> absolute(const Environment& environment, const std::string& name)
{
    std::optional<std::string> path = environment(name);
    if (!path || path->empty() || path->front() != '/')
        return std::nullopt;
    while (!path->empty() && path->back() == '/')
        path->pop_back();
    return path;
}

bool is_folder(const std::string& path)
{
    struct stat there {};
    return stat(path.c_str(), &there) == 0 && S_ISDIR(there.st_mode);
}

// 0, or the error's number.
int make_one(const std::string& folder)
{
    constexpr mode_t kForThisUser = 0700;
    if (mkdir(folder.c_str(), kForThisUser) == 0)
        return 0;
    const int error = errno;
    return is_folder(folder) ? 0 : error;
}

} // namespace

Environment process_environment()
{
    return [](const std::string& name) -> std::optional<std::string> {
        const char* const value = std::getenv(name.c_str());
        return value == nullptr ? std::nullopt : std::optional<std::string>(value);
    };
}

Result<UserFolders> user_folders(const Environment& environment)
{
    const std::optional<std::string> home = absolute(environment, "HOME");
    std::string missing;
    const auto folder_of = [&](const char* name, const char* in_home) {
        const std::optional<std::string> base = absolute(environment, name);
        if (base)
            return *base + kOwnFolder;
        if (!home && missing.empty())
            missing = name;
        return home.value_or("") + in_home + kOwnFolder;
    };
    UserFolders folders;
    folders.state = folder_of("XDG_STATE_HOME", "/.local/state");
    folders.data = folder_of("XDG_DATA_HOME", "/.local/share");
    if (!missing.empty())
        return Problem{"cannot find the user's folders: neither HOME nor " + missing +
                       " names a folder from / on; set HOME to the home folder"};
    const std::optional<std::string> runtime = absolute(environment, "XDG_RUNTIME_DIR");
    folders.runtime = runtime ? *runtime + kOwnFolder : folders.state;
    return folders;
}

std::optional<Problem> make_folder(const std::string& folder)
{
    // From the outermost one that is missing inwards.
    for (std::size_t slash = folder.find('/', 1);; slash = folder.find('/', slash + 1)) {
        const std::string outer = folder.substr(0, slash);
        if (const int error = make_one(outer); error != 0) {
            std::string which = folder;
            if (slash != folder.npos)
                which.append(" (at ").append(outer).append(")");
            return Problem{"cannot make the folder " + which + ": " + std::generic_category().message(error) +
                           "; make it by hand, or free the place"};
        }
        if (slash == folder.npos)
            return std::nullopt;
    }
}

Result<UserFolders> make_user_folders(UserFolders folders)
{
    for (const std::string& folder : {folders.state, folders.data}) {
        if (const std::optional<Problem> problem = make_folder(folder))
            return *problem;
    }
    if (make_folder(folders.runtime))
        folders.runtime = folders.state;
    return folders;
}

} // namespace vnt::host
