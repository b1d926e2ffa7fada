#include "host/editor/sketch_lock.h"

#include "host/editor/descriptor.h"
#include "host/editor/editor_process.h"
#include "host/editor/local_time.h"
#include "host/editor/percent_text.h"

#include <sys/stat.h>

#include <charconv>
#include <string_view>
#include <system_error>
#include <utility>

namespace vnt::host {
namespace {

// A lock of the open file, whole, for writing.
struct flock whole_file_lock()
{
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

bool try_take(int descriptor)
{
    struct flock lock = whole_file_lock();
    return fcntl(descriptor, F_OFD_SETLK, &lock) == 0;
}

bool is_taken_by_another(int descriptor)
{
    struct flock lock = whole_file_lock();
    return fcntl(descriptor, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

Problem cannot_lock(const std::string& path, int error)
{
    return {"cannot tell whether a sketch is under way: the file " + path + " cannot be locked (" +
            std::generic_category().message(error) + "); see to it that its folder can be written to"};
}

template <class Number>
bool try_number(std::string_view text, Number& number)
{
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    return read.ec == std::errc() && read.ptr == end;
}

bool try_fill(LockHolder& holder, std::string_view key, std::string_view value)
{
    if (key == "pid")
        return try_number(value, holder.pid);
    if (key == "start")
        return try_number(value, holder.start_time);
    if (key == "since")
        holder.since = value;
    if (key == "document") {
        std::optional<std::string> document = from_percent_text(value);
        if (!document)
            return false;
        holder.document = std::move(*document);
    }
    return true;
}

// What is known of the holder; a text without its last line tells nothing.
LockHolder holder_of(std::string_view text)
{
    LockHolder holder;
    while (!text.empty()) {
        const std::size_t line_end = text.find('\n');
        if (line_end == text.npos)
            return {};
        const std::string_view line = text.substr(0, line_end);
        text.remove_prefix(line_end + 1);
        if (line == "end")
            return holder;
        const std::size_t blank = line.find(' ');
        if (blank == line.npos || !try_fill(holder, line.substr(0, blank), line.substr(blank + 1)))
            return {};
    }
    return {};
}

} // namespace

SketchLock::SketchLock(SketchLock&& other) noexcept : descriptor_(other.release()) {}

SketchLock& SketchLock::operator=(SketchLock&& other) noexcept
{
    if (this != &other) {
        Descriptor ended(descriptor_);
        descriptor_ = other.release();
    }
    return *this;
}

SketchLock::~SketchLock() { const Descriptor ended(descriptor_); }

int SketchLock::release() { return std::exchange(descriptor_, -1); }

Result<std::optional<SketchLock>> SketchLock::try_lock(const std::string& path)
{
    constexpr mode_t kForThisUser = 0600;
    Descriptor file = open_file(path.c_str(), O_RDWR | O_CREAT, kForThisUser);
    if (!file)
        return cannot_lock(path, errno);
    if (try_take(file.get())) {
        SketchLock lock(file.release());
        // Whoever asks meanwhile learns nothing rather than who held it before.
        if (ftruncate(lock.descriptor(), 0) != 0)
            return cannot_lock(path, errno);
        return lock;
    }
    const int error = errno;
    if (error != EAGAIN && error != EACCES)
        return cannot_lock(path, error);
    return std::nullopt;
}

std::optional<SketchLock> SketchLock::adopt(int descriptor, const std::string& path)
{
    struct stat opened {};
    struct stat there {};
    if (descriptor < 0 || fstat(descriptor, &opened) != 0 || stat(path.c_str(), &there) != 0 ||
        opened.st_dev != there.st_dev || opened.st_ino != there.st_ino || !try_take(descriptor))
        return std::nullopt;
    SketchLock lock(descriptor);
    lock.set_inherited(false);
    return lock;
}

std::optional<LockHolder> SketchLock::holder(const std::string& path)
{
    const Descriptor file = open_file(path.c_str(), O_RDONLY);
    if (!file || !is_taken_by_another(file.get()))
        return std::nullopt;
    constexpr std::size_t kLongest = 16384; // a path of which each byte takes three has room in it
    std::string text(kLongest, '\0');
    const ssize_t size = pread(file.get(), text.data(), text.size(), 0);
    text.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return holder_of(text);
}

void SketchLock::sign(const std::string& document) const
{
    const std::optional<EditorProcess> self = look_at_process(getpid());
    const std::string text = "pid " + std::to_string(getpid()) + "\nstart " +
                             std::to_string(self ? self->start_time : 0) + "\nsince " + local_time_now() +
                             "\ndocument " + to_percent_text(document) + "\nend\n";
    // Written over what is there, so that a reader finds either text whole; what is left of a longer one stands
    // behind the last line.
    if (pwrite(descriptor_, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()) &&
        ftruncate(descriptor_, static_cast<off_t>(text.size())) != 0)
        return;
}

void SketchLock::set_inherited(bool inherited) const
{
    fcntl(descriptor_, F_SETFD, inherited ? 0 : FD_CLOEXEC);
}

} // namespace vnt::host
