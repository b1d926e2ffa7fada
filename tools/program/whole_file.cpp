#include "tools/program/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>

namespace vnt::program {
namespace {

std::error_code last_error() { return {errno, std::generic_category()}; }

template <class Call>
auto unless_interrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

// An open file; closes it at its end.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    int number() const { return number_; }

    bool close()
    {
        const bool closed = number_ < 0 || ::close(number_) == 0;
        number_ = -1;
        return closed;
    }

private:
    int number_;
};

bool try_write(const Descriptor& file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written =
            unless_interrupted([&] { return write(file.number(), bytes.data(), bytes.size()); });
        if (written < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::error_code write_straight(const std::string& path, std::string_view bytes)
{
    Descriptor file(unless_interrupted([&] { return open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY); }));
    if (file.number() < 0 || !try_write(file, bytes) || !file.close())
        return last_error();
    return {};
}

mode_t mode_of_a_new_file()
{
    constexpr mode_t kAll = 0666;
    const mode_t mask = umask(0);
    umask(mask);
    return kAll & ~mask;
}

// Renamed is gone: what still has its temporary name when this ends is removed.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& beside)
        : path_((std::filesystem::path(beside).parent_path() / ".vant.XXXXXX").string()),
          file_(mkostemp(path_.data(), O_CLOEXEC)), named_(file_.number() >= 0)
    {
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile()
    {
        if (named_)
            unlink(path_.c_str());
    }

    bool try_fill(std::string_view bytes, mode_t mode)
    {
        return named_ && try_write(file_, bytes) && fchmod(file_.number(), mode) == 0 &&
               fsync(file_.number()) == 0 && file_.close();
    }

    bool try_rename(const std::string& path)
    {
        if (std::rename(path_.c_str(), path.c_str()) != 0)
            return false;
        named_ = false;
        return true;
    }

private:
    std::string path_;
    Descriptor file_;
    bool named_;
};

} // namespace

std::error_code read_whole_file(const std::string& path, std::string& content)
{
    content.clear();
    const Descriptor file(unless_interrupted([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC); }));
    if (file.number() < 0)
        return last_error();
    std::array<char, std::size_t{64} * 1024> buffer;
    for (;;) {
        const ssize_t got =
            unless_interrupted([&] { return read(file.number(), buffer.data(), buffer.size()); });
        if (got < 0)
            return last_error();
        if (got == 0)
            return {};
        content.append(buffer.data(), static_cast<std::size_t>(got));
    }
}

std::error_code write_whole_file(const std::string& path, std::string_view bytes)
{
    struct stat there {};
    const bool exists = stat(path.c_str(), &there) == 0;
    if (exists && !S_ISREG(there.st_mode))
        return write_straight(path, bytes);
    std::error_code error;
    const std::string target = exists ? std::filesystem::canonical(path, error).string() : path;
    if (error)
        return error;
    constexpr mode_t kPermissions = 07777;
    TemporaryFile file(target);
    if (!file.try_fill(bytes, exists ? there.st_mode & kPermissions : mode_of_a_new_file()) ||
        !file.try_rename(target))
        return last_error();
    return {};
}

} // namespace vnt::program
