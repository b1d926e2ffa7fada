#include "host/editor/art_store.h"

#include "host/editor/percent_text.h"
#include "host/editor/user_folders.h"
#include "tools/program/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace vnt::host {
namespace {

using std::chrono::milliseconds;

constexpr const char* kPlaced = "/placed";
constexpr std::string_view kEnding = ".svg";

std::string message_of(int error) { return std::generic_category().message(error); }

// An id is the name of a file, and of none elsewhere.
bool is_art_id(std::string_view id)
{
    return !id.empty() && id.front() != '.' && id.find('/') == id.npos && id.find('\0') == id.npos;
}

// The names in front of the ending, of the files that have it; none where there is no folder.
std::vector<std::string> ids_in(const std::string& folder)
{
    std::vector<std::string> ids;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (!name.ends_with(kEnding))
            continue;
        const std::string id = name.substr(0, name.size() - kEnding.size());
        if (is_art_id(id))
            ids.push_back(id);
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

// The file's time becomes that of its placing.
bool try_move(const std::string& from, const std::string& to)
{
    return utimensat(AT_FDCWD, from.c_str(), nullptr, 0) == 0 && std::rename(from.c_str(), to.c_str()) == 0;
}

// Leaves the newest files; another process may do the same.
void remove_oldest(const std::string& folder, std::size_t most)
{
    std::vector<std::pair<timespec, std::string>> files;
    for (const std::string& id : ids_in(folder)) {
        std::string path = folder;
        path.append("/").append(id).append(kEnding);
        struct stat file {};
        if (stat(path.c_str(), &file) == 0 && S_ISREG(file.st_mode))
            files.emplace_back(file.st_mtim, path);
    }
    std::stable_sort(files.begin(), files.end(), [](const auto& one, const auto& other) {
        return std::pair(one.first.tv_sec, one.first.tv_nsec) <
               std::pair(other.first.tv_sec, other.first.tv_nsec);
    });
    for (std::size_t i = 0; i + most < files.size(); ++i)
        unlink(files[i].second.c_str());
}

milliseconds now()
{
    return std::chrono::duration_cast<milliseconds>(std::chrono::system_clock::now().time_since_epoch());
}

template <class Number>
bool try_number(std::string_view text, Number& number)
{
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    return read.ec == std::errc() && read.ptr == end;
}

// The rest of the next line behind key and a blank; none when it is another line.
std::optional<std::string_view> take_line(std::string_view& text, std::string_view key)
{
    const std::size_t end = text.find('\n');
    if (end == text.npos || !text.starts_with(key) || text.substr(key.size(), 1) != " ")
        return std::nullopt;
    const std::string_view value = text.substr(key.size() + 1, end - key.size() - 1);
    text.remove_prefix(end + 1);
    return value;
}

std::string text_of(const Pending& pending, milliseconds written)
{
    return "art " + to_percent_text(pending.art_id) + "\neditor " + std::to_string(pending.editor_pid) +
           "\nonly-window " + (pending.only_window ? "yes" : "no") + "\nmessage " +
           to_percent_text(pending.message) + "\nwritten " + std::to_string(written.count()) + "\n";
}

std::optional<PendingSince> pending_of(std::string_view text)
{
    const auto art = take_line(text, "art");
    const auto editor = take_line(text, "editor");
    const auto only_window = take_line(text, "only-window");
    const auto message = take_line(text, "message");
    const auto written = take_line(text, "written");
    if (!art || !editor || !only_window || !message || !written || !text.empty())
        return std::nullopt;
    const std::optional<std::string> art_id = from_percent_text(*art);
    const std::optional<std::string> message_text = from_percent_text(*message);
    PendingSince since{};
    milliseconds::rep time = 0;
    if (!art_id || !message_text || !try_number(*editor, since.pending.editor_pid) ||
        !try_number(*written, time))
        return std::nullopt;
    since.pending.art_id = *art_id;
    since.pending.message = *message_text;
    since.pending.only_window = *only_window == "yes";
    since.age = now() - milliseconds(time);
    if (since.age < milliseconds::zero())
        since.age = milliseconds::max(); // the clock was set back: nobody knows
    return since;
}

} // namespace

ArtStore::ArtStore(std::string folder) : folder_(std::move(folder)) {}

std::string ArtStore::path_of(const std::string& id) const
{
    return folder_ + "/" + id + std::string(kEnding);
}

Result<std::string> ArtStore::keep(const KeptArt& art) const
{
    if (!is_art_id(art.id))
        return Problem{"cannot keep the art: its name, \"" + to_percent_text(art.id) +
                       "\", is none of a file; this is a defect of the program, please report it"};
    const Result<std::string> text = svg_of(art);
    if (const auto* problem = std::get_if<Problem>(&text))
        return *problem;
    if (const std::optional<Problem> problem = make_folder(folder_))
        return *problem;
    const std::string path = path_of(art.id);
    if (const std::error_code error = program::write_whole_file(path, std::get<0>(text)))
        return Problem{"cannot keep the art in " + path + ": " + error.message() +
                       "; make room, or see to it that the folder can be written to"};
    return path;
}

Result<KeptArt> ArtStore::read(const std::string& id) const
{
    const std::string path = path_of(id);
    std::string bytes;
    const std::error_code error =
        is_art_id(id) ? program::read_whole_file(path, bytes) : make_error_code(std::errc::invalid_argument);
    if (error)
        return Problem{"cannot read " + path + ": " + error.message() + "; see what is in its folder"};
    Result<KeptArt> art = read_kept_art(path, std::move(bytes));
    if (auto* kept = std::get_if<KeptArt>(&art))
        kept->id = id; // that of a copy is its own
    return art;
}

ArtStore::Listing ArtStore::list() const
{
    Listing listing;
    for (const std::string& id : ids()) {
        Result<KeptArt> art = read(id);
        if (auto* kept = std::get_if<KeptArt>(&art))
            listing.art.push_back(std::move(*kept));
        else if (access(path_of(id).c_str(), F_OK) == 0) // else it was placed meanwhile
            listing.notes.push_back(std::get<Problem>(art).sentence);
    }
    return listing;
}

std::vector<std::string> ArtStore::ids() const { return ids_in(folder_); }

bool ArtStore::has(const std::string& id) const
{
    const std::string placed = folder_ + kPlaced + "/" + id + std::string(kEnding);
    return is_art_id(id) && (access(path_of(id).c_str(), F_OK) == 0 || access(placed.c_str(), F_OK) == 0);
}

std::optional<Problem> ArtStore::mark_placed(const std::string& id) const
{
    const std::string placed = folder_ + kPlaced;
    if (std::optional<Problem> problem = make_folder(placed))
        return problem;
    const std::string from = path_of(id);
    if (!is_art_id(id) || !try_move(from, placed + "/" + id + std::string(kEnding)))
        return Problem{"cannot move " + from + " to " + placed + ": " +
                       message_of(is_art_id(id) ? errno : EINVAL) +
                       "; it was placed and will be offered again, move it by hand"};
    remove_oldest(placed, kMostPlaced);
    return std::nullopt;
}

std::optional<Problem> ArtStore::write_pending(const Pending& pending) const
{
    if (std::optional<Problem> problem = make_folder(folder_))
        return problem;
    const std::string path = folder_ + "/pending";
    if (const std::error_code error = program::write_whole_file(path, text_of(pending, now())))
        return Problem{"cannot write " + path + ": " + error.message() +
                       "; make room, or see to it that the folder can be written to"};
    return std::nullopt;
}

std::optional<PendingSince> ArtStore::read_pending() const
{
    std::string text;
    if (program::read_whole_file(folder_ + "/pending", text))
        return std::nullopt;
    return pending_of(text);
}

bool ArtStore::remove_pending() const { return unlink((folder_ + "/pending").c_str()) == 0; }

} // namespace vnt::host
