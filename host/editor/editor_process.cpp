#include "host/editor/editor_process.h"

#include "host/editor/descriptor.h"
#include "tools/program/whole_file.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>

namespace vnt::host {
namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

Folder open_folder(int at, const char* path)
{
    Descriptor number(openat(at, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    Folder folder(number ? fdopendir(number.get()) : nullptr);
    if (folder)
        number.release();
    return folder;
}

template <class Number>
std::optional<Number> number_of(std::string_view text)
{
    Number number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    return read.ec == std::errc() && read.ptr == end ? std::optional(number) : std::nullopt;
}

std::string in_proc(pid_t pid, const char* file) { return "/proc/" + std::to_string(pid) + "/" + file; }

struct Stat {
    char state;
    std::uint64_t start_time;
};

// A line "4711 (name) S 1 ...". The name may hold blanks and parentheses.
std::optional<Stat> read_stat(pid_t pid)
{
    std::string text;
    if (program::read_whole_file(in_proc(pid, "stat"), text))
        return std::nullopt;
    constexpr std::size_t kFields = 20; // behind the name, up to the start time
    std::array<std::string_view, kFields> fields;
    std::string_view rest = text;
    const std::size_t name_end = rest.rfind(')');
    if (name_end == rest.npos)
        return std::nullopt;
    rest.remove_prefix(name_end + 1);
    for (std::string_view& field : fields) {
        rest.remove_prefix(std::min(rest.size(), rest.find_first_not_of(' ')));
        field = rest.substr(0, rest.find_first_of(" \n"));
        rest.remove_prefix(field.size());
    }
    const auto start_time = number_of<std::uint64_t>(fields.back());
    if (fields[0].size() != 1 || !start_time)
        return std::nullopt;
    return Stat{fields[0].front(), *start_time};
}

bool has_ended(const Stat& stat) { return stat.state == 'Z' || stat.state == 'X'; }

// Whether a process can read from the pipe that its descriptors' links call link.
bool can_read(int proc, const char* pid, std::string_view link)
{
    const Folder folder = open_folder(proc, (std::string(pid) + "/fd").c_str());
    if (!folder)
        return false;
    std::array<char, 64> target;
    while (const dirent* entry = readdir(folder.get())) {
        const ssize_t size = readlinkat(dirfd(folder.get()), entry->d_name, target.data(), target.size());
        if (size < 0 || std::string_view(target.data(), static_cast<std::size_t>(size)) != link)
            continue;
        // The link's own permissions say what its file was opened for.
        struct stat opened {};
        if (fstatat(dirfd(folder.get()), entry->d_name, &opened, AT_SYMLINK_NOFOLLOW) == 0 &&
            (opened.st_mode & S_IRUSR) != 0)
            return true;
    }
    return false;
}

struct Reader {
    pid_t pid;
    std::uint64_t start_time;
};

// The first reader of the pipe among those processes of this user, but this one, for which is_meant is true.
template <class Predicate>
std::optional<Reader> first_reader(std::string_view link, Predicate is_meant)
{
    const Folder proc = open_folder(AT_FDCWD, "/proc");
    if (!proc)
        return std::nullopt;
    const uid_t user = geteuid();
    const pid_t own = getpid();
    std::optional<Reader> first;
    while (const dirent* entry = readdir(proc.get())) {
        const auto pid = number_of<pid_t>(entry->d_name);
        struct stat process {};
        if (!pid || *pid == own || !is_meant(*pid) ||
            fstatat(dirfd(proc.get()), entry->d_name, &process, 0) != 0 || process.st_uid != user ||
            !can_read(dirfd(proc.get()), entry->d_name, link))
            continue;
        const std::optional<Stat> stat = read_stat(*pid);
        // Of two that started in one tick the lower number is the parent's, and comes first.
        if (stat && (!first || stat->start_time < first->start_time))
            first = Reader{*pid, stat->start_time};
    }
    return first;
}

} // namespace

std::optional<EditorProcess> find_editor(int descriptor)
{
    struct stat pipe {};
    if (fstat(descriptor, &pipe) != 0 || !S_ISFIFO(pipe.st_mode))
        return std::nullopt;
    const std::string link = "pipe:[" + std::to_string(pipe.st_ino) + "]";
    // The editor leaves an extension in its own process group, which is small: to look through all descriptors of all
    // processes takes ten times as long.
    const pid_t group = getpgrp();
    std::optional<Reader> first = first_reader(link, [group](pid_t pid) { return getpgid(pid) == group; });
    if (!first)
        first = first_reader(link, [](pid_t) { return true; });
    return first ? look_at_process(first->pid) : std::nullopt;
}

std::optional<EditorProcess> look_at_process(pid_t pid)
{
    const std::optional<Stat> stat = read_stat(pid);
    std::string words;
    if (!stat || has_ended(*stat) || program::read_whole_file(in_proc(pid, "cmdline"), words))
        return std::nullopt;
    EditorProcess process;
    process.pid = pid;
    process.is_batch = is_batch_command(words);
    process.start_time = stat->start_time;
    if (!words.empty() && words.back() == '\0')
        words.pop_back();
    std::replace(words.begin(), words.end(), '\0', ' ');
    process.command = std::move(words);
    return process;
}

std::string editor_name(const EditorProcess& process)
{
    return std::to_string(process.pid) + "-" + std::to_string(process.start_time);
}

bool is_editor_name(std::string_view name)
{
    const std::size_t dash = name.find('-');
    return dash != name.npos && number_of<pid_t>(name.substr(0, dash)) &&
           number_of<std::uint64_t>(name.substr(dash + 1));
}

std::optional<EditorProcess> find_named_editor(const std::string& name)
{
    const auto pid = number_of<pid_t>(std::string_view(name).substr(0, name.find('-')));
    std::optional<EditorProcess> process = pid ? look_at_process(*pid) : std::nullopt;
    if (process && editor_name(*process) != name)
        process.reset();
    return process;
}

bool is_running(const EditorProcess& process)
{
    const std::optional<Stat> stat = read_stat(process.pid);
    return stat && !has_ended(*stat) && stat->start_time == process.start_time;
}

bool is_batch_command(std::string_view words)
{
    constexpr std::string_view kOption = "--batch-process";
    bool is_program = true; // the first word
    while (!words.empty()) {
        const std::string_view word = words.substr(0, words.find('\0'));
        words.remove_prefix(std::min(words.size(), word.size() + 1));
        if (is_program) {
            is_program = false;
            continue;
        }
        if (word == "--")
            return false; // names of files from here on
        if (word.substr(0, kOption.size()) == kOption &&
            (word.size() == kOption.size() || word[kOption.size()] == '='))
            return true; // the editor takes "--batch-process=no" for yes as well
    }
    return false;
}

} // namespace vnt::host
