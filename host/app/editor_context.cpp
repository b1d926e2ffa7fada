#include "host/app/editor_context.h"

#include "tools/program/whole_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <system_error>

namespace vnt::host {
namespace {

constexpr const char* kSpoolStart = "/sketch-";
constexpr std::string_view kName = "vant-host: ";

Result<UserFolders> folders_of_this_user()
{
    Result<UserFolders> folders = user_folders();
    if (std::holds_alternative<Problem>(folders))
        return folders;
    return make_user_folders(std::get<UserFolders>(std::move(folders)));
}

void lead_standard_error_to(const LogFile& log)
{
    const Descriptor file(log.open());
    if (file)
        dup2(file.get(), STDERR_FILENO);
    else if (const Descriptor nothing = open_file("/dev/null", O_WRONLY); nothing)
        dup2(nothing.get(), STDERR_FILENO);
}

// Lost only when nobody reads any more.
void say(int descriptor, const std::string& text)
{
    const std::string line = text + "\n";
    [[maybe_unused]] const ssize_t written = write(descriptor, line.data(), line.size());
}

void take_in(const Spool& stray, const ArtStore& store, const LogFile& log)
{
    std::string bytes;
    if (program::read_whole_file(stray.art(), bytes))
        return; // there is none
    const Result<KeptArt> art = read_kept_art(stray.art(), std::move(bytes));
    if (const auto* problem = std::get_if<Problem>(&art))
        return log.add(problem->sentence);
    const auto& found = std::get<KeptArt>(art);
    if (store.has(found.id))
        return stray.art_is_safe(); // its process was ended behind that
    const Result<std::string> kept = store.keep(found);
    if (const auto* problem = std::get_if<Problem>(&kept))
        return log.add(problem->sentence);
    stray.art_is_safe();
    log.add("kept " + std::get<std::string>(kept) + ", which an ended process has left behind");
}

} // namespace

EditorContext::EditorContext(UserFolders folders, std::optional<EditorProcess> editor)
    : folders_(std::move(folders)), log_(folders_.state + "/vant-host.log"),
      art_(folders_.data + "/sketches"), editor_(std::move(editor))
{
}

Result<std::unique_ptr<EditorContext>> EditorContext::enter()
{
    std::optional<EditorProcess> editor = find_editor(STDOUT_FILENO);
    Result<UserFolders> folders = folders_of_this_user();
    if (const auto* problem = std::get_if<Problem>(&folders)) {
        if (!editor || !editor->is_batch)
            say(STDERR_FILENO, "Nothing was done: " + problem->sentence);
        return *problem;
    }
    std::unique_ptr<EditorContext> context(
        new EditorContext(std::get<UserFolders>(std::move(folders)), std::move(editor)));
    context->voice_.reset(fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    lead_standard_error_to(context->log_);
    return context;
}

Result<std::unique_ptr<EditorContext>> EditorContext::enter_detached(const std::string& editor)
{
    Result<UserFolders> folders = folders_of_this_user();
    if (const auto* problem = std::get_if<Problem>(&folders))
        return *problem;
    std::unique_ptr<EditorContext> context(
        new EditorContext(std::get<UserFolders>(std::move(folders)), find_named_editor(editor)));
    lead_standard_error_to(context->log_);
    return context;
}

void EditorContext::tell(const std::string& text) const
{
    log_.add(text);
    if (is_batch() || !voice_)
        return;
    say(voice_.get(), text);
}

std::string EditorContext::document_path()
{
    const char* const path = std::getenv("DOCUMENT_PATH");
    return path == nullptr ? std::string() : path;
}

Result<std::string> EditorContext::make_spool() const
{
    std::string folder = folders_.runtime + kSpoolStart + "XXXXXX";
    if (mkdtemp(folder.data()) == nullptr)
        return Problem{"cannot make a folder in " + folders_.runtime + ": " +
                       std::generic_category().message(errno) + "; free space there"};
    return folder;
}

bool EditorContext::is_spool(const std::string& folder) const
{
    const std::string start = folders_.runtime + kSpoolStart;
    std::error_code error;
    return folder.size() > start.size() && folder.starts_with(start) &&
           folder.find('/', start.size()) == folder.npos &&
           std::filesystem::symlink_status(folder, error).type() == std::filesystem::file_type::directory;
}

void EditorContext::take_in_strays() const
{
    std::error_code error;
    std::filesystem::directory_iterator entry(folders_.runtime, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        if (const std::string folder = entry->path().string(); is_spool(folder))
            take_in(Spool(folder), art_, log_);
    }
}

Spool::~Spool()
{
    std::error_code ignored;
    if (!std::filesystem::exists(art(), ignored))
        std::filesystem::remove_all(folder_, ignored);
}

void Spool::art_is_safe() const
{
    std::error_code ignored;
    std::filesystem::remove(art(), ignored);
}

bool is_own_line(std::string_view line)
{
    return line.starts_with(kName) && !line.substr(kName.size()).starts_with("note: ");
}

std::string without_program_name(const std::string& said)
{
    std::istringstream lines(said);
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        if (line.compare(0, kName.size(), kName) == 0)
            line.erase(0, kName.size());
        text += text.empty() ? line : "\n" + line;
    }
    return text;
}

} // namespace vnt::host
