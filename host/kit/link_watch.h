// Whether a thread waits in vain for an answer on a connection whose other end has closed in an orderly way.
//
// The link looks at its socket, finds it at its end, pauses for 100 microseconds, and looks again, for ever. A
// connection that is at its end is no proof of that wait: behind a complete answer it looks the same, while the
// thread reads that answer for as long as it takes. So the thread is looked at as well, and has to be seen
// pausing, again and again. A thread that computes, waits for its turn on a busy machine, or waits for the disk
// or for memory is never taken for a waiting one.
//
// When:   made before the plug-in runs: it opens all that it will read. looks open nothing and allocate nothing,
//         and may come from another thread.
// Errors: where the system does not show what a thread does (no /proc), nothing is ever taken for waiting in
//         vain, and the wait has to be ended by a time limit. So it is with a plug-in that looks at its socket
//         without any pause: what can be seen of it is also true of one that reads a large answer.
//         A reset is the link's to notice, and its error is left to it; once the link has taken that error, as its
//         own sending does, and waits on, the connection counts as closed.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

namespace vnt::host {

// Where the plug-in seeks the sketch application.
constexpr std::uint16_t kSketchPort = 4910;

// What one look saw.
struct LinkSight {
    struct Connection {
        int descriptor = -1;
        std::uint16_t local_port = 0; // tells a new connection on an old number apart
        bool operator==(const Connection&) const = default;
    };
    enum class Thread {
        pausing, // asleep in a system call that ends by itself after a time
        running, // or ready to run
        busy,    // asleep anywhere else: for a page of memory, in a write, for a lock
        unknown,
    };

    std::chrono::steady_clock::time_point when;
    std::optional<Connection> at_its_end; // closed by the other end, and all that came has been taken
    Thread thread = Thread::unknown;
    std::uint64_t sleeps = 0; // how often the thread has gone to sleep so far
};

// Judges a sequence of looks. Looks that are far less or far more than kWindow apart judge later, not wrong.
class VainWait {
public:
    // Whether by now the thread has waited in vain through kWindows windows in a row.
    bool judge(const LinkSight& sight);

    // A window is this long at least, and lasts until it has kSleeps and a look that finds the thread pausing.
    static constexpr std::chrono::milliseconds kWindow{50};
    static constexpr int kWindows = 3;
    // A window that is still open by then ends the row.
    static constexpr std::chrono::milliseconds kLongestWindow{500};
    // The link's pauses are some 300 in 50 ms; a thread that computes has none, but for its waits for memory.
    static constexpr std::uint64_t kSleeps = 5;

private:
    std::optional<LinkSight> window_; // the look that began it
    int windows_ = 0;
};

class LinkWatch {
public:
    // Watches connections of this process to 127.0.0.1:port, and thread (its number as of gettid).
    explicit LinkWatch(std::uint16_t port = kSketchPort, pid_t thread = calling_thread());
    LinkWatch(const LinkWatch&) = delete;
    LinkWatch& operator=(const LinkWatch&) = delete;
    ~LinkWatch();

    static pid_t calling_thread();

    // Whether the system shows what has to be known.
    bool is_possible() const;

    // Looks now; to be called every VainWait::kWindow or so.
    bool waits_in_vain();

    LinkSight look() const;

private:
    std::optional<LinkSight::Connection> connection(int descriptor) const;
    std::optional<LinkSight::Connection> find_at_its_end() const;

    std::uint16_t port_;
    int highest_ = 0; // descriptors are looked for up to here
    int status_ = -1; // files that tell of the thread
    int system_call_ = -1;
    VainWait wait_;
};

// How often a thread has gone to sleep of its own accord, from the text of its status file.
std::optional<std::uint64_t> sleeps_of_status(std::string_view text);

// What a thread does, from the text of its file "syscall".
LinkSight::Thread thread_of_system_call(std::string_view text);

} // namespace vnt::host
