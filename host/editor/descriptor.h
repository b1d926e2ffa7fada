// A descriptor that closes with its scope.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace vnt::host {

class Descriptor {
public:
    explicit Descriptor(int number = -1) noexcept : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        if (this != &other)
            reset(other.release());
        return *this;
    }
    ~Descriptor() { reset(); }

    int get() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }
    int release() { return std::exchange(number_, -1); }

    void reset(int number = -1)
    {
        if (number_ >= 0)
            ::close(number_);
        number_ = number;
    }

private:
    int number_;
};

// Open for this program alone: a program that is executed does not have it.
inline Descriptor open_file(const char* path, int flags, mode_t mode = 0)
{
    int number = -1;
    do
        number = ::open(path, flags | O_CLOEXEC | O_NOCTTY, mode);
    while (number < 0 && errno == EINTR);
    return Descriptor(number);
}

} // namespace vnt::host
