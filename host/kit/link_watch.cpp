#include "host/kit/link_watch.h"

#include <dirent.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <ctime>
#include <iterator>
#include <string>

namespace vnt::host {
namespace {

// How many descriptors the plug-in may open beyond those that are there before it runs.
constexpr int kRoom = 32;

// The calls that end by themselves after a time.
constexpr long kPauses[] = {
#ifdef SYS_select
    SYS_select,
#endif
#ifdef SYS__newselect
    SYS__newselect,
#endif
#ifdef SYS_pselect6
    SYS_pselect6,
#endif
#ifdef SYS_pselect6_time64
    SYS_pselect6_time64,
#endif
#ifdef SYS_poll
    SYS_poll,
#endif
#ifdef SYS_ppoll
    SYS_ppoll,
#endif
#ifdef SYS_ppoll_time64
    SYS_ppoll_time64,
#endif
#ifdef SYS_epoll_wait
    SYS_epoll_wait,
#endif
#ifdef SYS_epoll_pwait
    SYS_epoll_pwait,
#endif
#ifdef SYS_nanosleep
    SYS_nanosleep,
#endif
#ifdef SYS_clock_nanosleep
    SYS_clock_nanosleep,
#endif
#ifdef SYS_clock_nanosleep_time64
    SYS_clock_nanosleep_time64,
#endif
};

// The number that text begins with.
template <class Number>
std::optional<Number> leading_number(std::string_view text)
{
    Number number = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), number).ec != std::errc())
        return std::nullopt;
    return number;
}

int highest_open_descriptor()
{
    int highest = STDERR_FILENO;
    DIR* const folder = opendir("/proc/self/fd");
    if (folder == nullptr)
        return highest;
    while (const dirent* const entry = readdir(folder))
        highest = std::max(highest, leading_number<int>(entry->d_name).value_or(0));
    closedir(folder);
    return highest;
}

// Never on one of the standard numbers, which others close and reopen.
int open_to_read(const std::string& path)
{
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0 || file > STDERR_FILENO)
        return file;
    const int moved = fcntl(file, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(file);
    return moved;
}

void close_opened(int file)
{
    if (file >= 0)
        close(file);
}

// What a file of /proc says now, in as far as buffer holds it.
template <std::size_t size>
std::string_view read_anew(int file, std::array<char, size>& buffer)
{
    const ssize_t got = pread(file, buffer.data(), buffer.size(), 0);
    return {buffer.data(), got > 0 ? static_cast<std::size_t>(got) : 0};
}

std::optional<std::uint64_t> sleeps_now(int status)
{
    std::array<char, std::size_t{16} * 1024> text; // most of it for masks of processors, and for groups
    return sleeps_of_status(read_anew(status, text));
}

// A look and a pause may end at the same tick of a clock, and would so meet again and again. So a thread that
// runs is looked at once more, after a nap that is no multiple of a pause.
LinkSight::Thread thread_now(int system_call)
{
    constexpr int kLooks = 8;
    constexpr timespec kNap{0, 170'000};
    for (int look = 1;; ++look) {
        std::array<char, 512> text;
        const LinkSight::Thread thread = thread_of_system_call(read_anew(system_call, text));
        if (thread != LinkSight::Thread::running || look == kLooks)
            return thread;
        nanosleep(&kNap, nullptr);
    }
}

// A connection that was, and of which the system has forgotten the other end.
bool was_reset(int descriptor)
{
    tcp_info info{};
    socklen_t size = sizeof info;
    return getsockopt(descriptor, IPPROTO_TCP, TCP_INFO, &info, &size) == 0 && info.tcpi_state == TCP_CLOSE;
}

// Closed, with nothing left to take, neither bytes nor an error. A reset whose error the link has taken already, as
// its own sending may do, looks like an orderly close to all further reading. A look must not receive: that would
// take the socket's pending error from the link.
bool is_at_its_end(int descriptor)
{
    pollfd polled{descriptor, POLLIN | POLLRDHUP, 0};
    int waiting = 0;
    return poll(&polled, 1, 0) == 1 && (polled.revents & POLLRDHUP) != 0 &&
           (polled.revents & (POLLERR | POLLNVAL)) == 0 && ioctl(descriptor, FIONREAD, &waiting) == 0 &&
           waiting == 0;
}

} // namespace

bool VainWait::judge(const LinkSight& sight)
{
    using Thread = LinkSight::Thread;
    if (!sight.at_its_end || sight.thread == Thread::busy || sight.thread == Thread::unknown) {
        window_.reset();
        windows_ = 0;
        return false;
    }
    const bool goes_on =
        window_ && window_->at_its_end == sight.at_its_end && sight.when - window_->when <= kLongestWindow;
    if (!goes_on) {
        window_ = sight;
        windows_ = 0;
        return false;
    }
    if (sight.when - window_->when >= kWindow && sight.sleeps - window_->sleeps >= kSleeps &&
        sight.thread == Thread::pausing) {
        window_ = sight;
        ++windows_;
    }
    return windows_ >= kWindows;
}

LinkWatch::LinkWatch(std::uint16_t port, pid_t thread) : port_(port)
{
    const std::string folder = "/proc/self/task/" + std::to_string(thread);
    status_ = open_to_read(folder + "/status");
    system_call_ = open_to_read(folder + "/syscall");
    highest_ = highest_open_descriptor() + kRoom;
}

LinkWatch::~LinkWatch()
{
    close_opened(status_);
    close_opened(system_call_);
}

pid_t LinkWatch::calling_thread() { return gettid(); }

bool LinkWatch::is_possible() const
{
    return sleeps_now(status_).has_value() && thread_now(system_call_) != LinkSight::Thread::unknown;
}

bool LinkWatch::waits_in_vain() { return wait_.judge(look()); }

LinkSight LinkWatch::look() const
{
    LinkSight sight;
    sight.when = std::chrono::steady_clock::now();
    sight.at_its_end = find_at_its_end();
    if (!sight.at_its_end)
        return sight;
    const std::optional<std::uint64_t> sleeps = sleeps_now(status_);
    if (!sleeps)
        return sight;
    sight.sleeps = *sleeps;
    sight.thread = thread_now(system_call_);
    return sight;
}

std::optional<LinkSight::Connection> LinkWatch::connection(int descriptor) const
{
    const auto address_of = [descriptor](auto ask) {
        sockaddr_in address{};
        socklen_t size = sizeof address;
        const bool known = ask(descriptor, reinterpret_cast<sockaddr*>(&address), &size) == 0 &&
                           size == sizeof address && address.sin_family == AF_INET;
        return known ? std::optional(address) : std::nullopt;
    };
    const std::optional<sockaddr_in> peer = address_of(getpeername);
    if (!peer && was_reset(descriptor)) {
        const std::optional<sockaddr_in> own = address_of(getsockname);
        if (own && own->sin_port != 0 && own->sin_addr.s_addr == htonl(INADDR_LOOPBACK))
            return LinkSight::Connection{descriptor, ntohs(own->sin_port)};
        return std::nullopt;
    }
    if (!peer || peer->sin_port != htons(port_) || peer->sin_addr.s_addr != htonl(INADDR_LOOPBACK))
        return std::nullopt;
    const std::optional<sockaddr_in> own = address_of(getsockname);
    if (!own)
        return std::nullopt;
    return LinkSight::Connection{descriptor, ntohs(own->sin_port)};
}

std::optional<LinkSight::Connection> LinkWatch::find_at_its_end() const
{
    for (int descriptor = 0; descriptor <= highest_; ++descriptor) {
        const std::optional<LinkSight::Connection> found = connection(descriptor);
        if (found && is_at_its_end(descriptor))
            return found;
    }
    return std::nullopt;
}

std::optional<std::uint64_t> sleeps_of_status(std::string_view text)
{
    constexpr std::string_view kField = "\nvoluntary_ctxt_switches:\t";
    const std::size_t field = text.find(kField);
    if (field == text.npos)
        return std::nullopt;
    const std::string_view rest = text.substr(field + kField.size());
    // Where the text was cut, the number may have been as well.
    return rest.find('\n') != rest.npos ? leading_number<std::uint64_t>(rest) : std::nullopt;
}

LinkSight::Thread thread_of_system_call(std::string_view text)
{
    using Thread = LinkSight::Thread;
    if (text.starts_with("running"))
        return Thread::running;
    const std::optional<long> call = leading_number<long>(text);
    if (!call)
        return Thread::unknown;
    // -1 is asleep outside of any call: for a page of memory.
    return std::find(std::begin(kPauses), std::end(kPauses), *call) != std::end(kPauses) ? Thread::pausing
                                                                                         : Thread::busy;
}

} // namespace vnt::host
