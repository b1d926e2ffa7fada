#include "host/app/install_command.h"

#include "host/app/extension_files.h"
#include "host/app/own_program.h"
#include "tools/program/whole_file.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

namespace vnt::host {
namespace {

using program::Console;
using program::ExitStatus;
using program::kFailed;
namespace fs = std::filesystem;

constexpr const char* kSystemFolder = "/usr/share/inkscape/extensions";

struct Extension {
    const char* file; // its name
    const char* link; // of the program, as the file calls it
    const char* id;   // by which a file of an older version is known as well
    const char* content;
};
constexpr std::array kExtensions = {
    Extension{"vant-start.inx", "vant-start", "<id>org.vant.start</id>", kStartExtension},
    Extension{"vant-place.inx", "vant-place", "<id>org.vant.place</id>", kPlaceExtension},
};

std::string variable(const char* name)
{
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string() : value;
}

// A folder of our own in the editor's folder of this user. Empty without a home.
std::string user_folder()
{
    if (const std::string profile = variable("INKSCAPE_PROFILE_DIR"); !profile.empty())
        return profile + "/extensions/vant";
    if (const std::string config = variable("XDG_CONFIG_HOME"); !config.empty())
        return config + "/inkscape/extensions/vant";
    const std::string home = variable("HOME");
    return home.empty() ? home : home + "/.config/inkscape/extensions/vant";
}

std::string folder_of(const EditorOptions& options) { return options.user ? user_folder() : kSystemFolder; }

ExitStatus no_home(const Console& console)
{
    return console.report({kFailed,
                           "cannot find the editor's folder of this user: HOME is not set; nothing was "
                           "done; set it, or leave --user out"});
}

ExitStatus failed(const Console& console, const std::string& what, const std::error_code& error, bool user)
{
    return console.report({kFailed, "cannot " + what + ": " + error.message() +
                                        "; what was there before it stays; " +
                                        (user ? "see who owns the folder" : "try as root, or with --user")});
}

std::error_code make_link(const fs::path& link, const std::string& program)
{
    std::error_code error;
    const fs::path beside = link.string() + ".new";
    fs::remove(beside, error);
    fs::create_symlink(program, beside, error);
    if (!error)
        fs::rename(beside, link, error);
    return error;
}

// A link of that name that leads to some vant-host.
bool is_our_link(const fs::path& link)
{
    std::error_code error;
    return fs::is_symlink(link, error) && fs::read_symlink(link, error).filename() == "vant-host";
}

// A file with our command in it; not a link to one, which is somebody's own arrangement.
bool is_our_file(const fs::path& file, const Extension& extension)
{
    std::error_code error;
    std::string content;
    return fs::is_regular_file(fs::symlink_status(file, error)) &&
           !program::read_whole_file(file.string(), content) &&
           content.find(extension.id) != std::string::npos;
}

bool is_there(const fs::path& path)
{
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

// What is not ours and has a name that we need.
std::optional<fs::path> find_foreign(const fs::path& folder)
{
    for (const Extension& extension : kExtensions) {
        const fs::path link = folder / extension.link;
        if (is_there(link) && !is_our_link(link))
            return link;
        const fs::path file = folder / extension.file;
        if (is_there(file) && !is_our_file(file, extension))
            return file;
    }
    return std::nullopt;
}

} // namespace

ExitStatus install_command(const EditorOptions& options, const Console& console)
{
    const std::string folder = folder_of(options);
    if (folder.empty())
        return no_home(console);
    std::error_code error;
    fs::create_directories(folder, error);
    if (error)
        return failed(console, "make the folder " + folder, error, options.user);
    if (const auto foreign = find_foreign(folder))
        return console.report({kFailed, foreign->string() +
                                            " is there and not ours; it stays, and nothing was installed; "
                                            "move it away and try again"});
    const std::string program = own_program();
    for (const Extension& extension : kExtensions) {
        const fs::path link = fs::path(folder) / extension.link;
        // The link first: an extension whose program is missing is one that the editor complains about.
        if ((error = make_link(link, program)))
            return failed(console, "make the link " + link.string(), error, options.user);
        const std::string file = (fs::path(folder) / extension.file).string();
        if ((error = program::write_whole_file(file, extension.content)))
            return failed(console, "write " + file, error, options.user);
    }
    return console.print("installed in " + folder +
                         "\nStart Inkscape anew; the commands are in Extensions > View Utilities.\n");
}

ExitStatus uninstall_command(const EditorOptions& options, const Console& console)
{
    const std::string folder = folder_of(options);
    if (folder.empty())
        return no_home(console);
    int removed = 0;
    std::error_code error;
    for (const Extension& extension : kExtensions) {
        const fs::path file = fs::path(folder) / extension.file;
        const fs::path link = fs::path(folder) / extension.link;
        if (is_our_file(file, extension) && fs::remove(file, error))
            ++removed;
        if (error)
            return failed(console, "remove " + file.string(), error, options.user);
        if (is_our_link(link) && fs::remove(link, error))
            ++removed;
        if (error)
            return failed(console, "remove " + link.string(), error, options.user);
    }
    if (options.user)
        fs::remove(folder, error); // only when nothing else is in it
    return console.print(removed == 0 ? "nothing of ours is in " + folder + "\n"
                                      : "removed from " + folder + "\n");
}

} // namespace vnt::host
