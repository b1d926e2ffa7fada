#include "host/app/guard.h"

#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace vnt::host {
namespace {

constexpr const char* kClearLine = "\r\033[K";
constexpr std::chrono::seconds kQuietTime{1}; // of work that shows no progress
constexpr std::chrono::milliseconds kProgressInterval{250};
// What looks at the deadline by itself, and has better words for its part, comes first.
constexpr std::chrono::milliseconds kGrace{100};

// Allocates nothing: it also runs in signal handlers, and beside a thread that is inside malloc.
void write_to_standard_error(std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
        if (written <= 0)
            return;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

// A line that is put together without allocating. What has no room is cut off.
class ShortLine {
public:
    void append(std::string_view text)
    {
        text = text.substr(0, characters_.size() - size_);
        std::copy(text.begin(), text.end(), characters_.begin() + static_cast<std::ptrdiff_t>(size_));
        size_ += text.size();
    }

    void append_number(std::uint64_t number)
    {
        std::array<char, 20> digits{};
        const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        append({digits.data(), static_cast<std::size_t>(end - digits.data())});
    }

    std::string_view text() const { return {characters_.data(), size_}; }

private:
    std::array<char, 128> characters_{};
    std::size_t size_ = 0;
};

// ------------------------------------------------------------------------------------------------- crashes

constexpr int kCrashes[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
std::string crash_sentence; // NOLINT(cert-err58-cpp): empty strings throw nothing
alignas(16) std::array<char, std::size_t{64} * 1024> crash_stack;

void tell_crash(int /*signal*/)
{
    write_to_standard_error(crash_sentence);
    _exit(program::kFailed);
}

std::string deadline_sentence; // NOLINT(cert-err58-cpp): as above

void tell_deadline(int /*signal*/)
{
    write_to_standard_error(deadline_sentence);
    _exit(program::kTimeUp);
}

std::string time_up_sentence(const std::string& unharmed)
{
    return "vant-host: the time of --timeout is up; " + unharmed +
           "; give it more time, or leave --timeout out\n";
}

// A sanitizer tells more of a crash than this would.
bool is_left_to_a_sanitizer() { return !MemoryLimit::is_possible(); }

void catch_crashes(const std::string& unharmed)
{
    if (is_left_to_a_sanitizer())
        return;
    crash_sentence = "vant-host: the plug-in crashed; " + unharmed + "; report it to the plug-in's makers\n";
    const stack_t stack{crash_stack.data(), 0, crash_stack.size()};
    sigaltstack(&stack, nullptr);
    struct sigaction action {};
    action.sa_handler = tell_crash;
    action.sa_flags = SA_ONSTACK | static_cast<int>(SA_RESETHAND);
    for (const int signal : kCrashes)
        sigaction(signal, &action, nullptr);
}

// Else a plug-in that calls exit would end the command with a status of its own, and no file.
std::string exit_sentence; // NOLINT(cert-err58-cpp): as above. Empty while no guard stands

void tell_exit()
{
    if (exit_sentence.empty())
        return;
    write_to_standard_error(exit_sentence);
    _exit(program::kFailed);
}

void catch_exits(const std::string& unharmed)
{
    static const int registered = std::atexit(tell_exit);
    static_cast<void>(registered);
    exit_sentence =
        "vant-host: the plug-in ended the program; " + unharmed + "; report it to the plug-in's makers\n";
}

void leave_crashes()
{
    if (is_left_to_a_sanitizer())
        return;
    for (const int signal : kCrashes)
        std::signal(signal, SIG_DFL);
}

void lead_to_nothing(int descriptor)
{
    const int nothing = open("/dev/null", O_RDWR);
    if (nothing >= 0 && nothing != descriptor) {
        dup2(nothing, descriptor);
        close(nothing);
    }
}

} // namespace

Deadline::Deadline(std::optional<std::chrono::nanoseconds> after, const std::string& unharmed)
{
    if (!after)
        return;
    deadline_sentence = (isatty(STDERR_FILENO) == 1 ? kClearLine : "") + time_up_sentence(unharmed);
    std::signal(SIGALRM, tell_deadline);
    const auto microseconds = std::chrono::ceil<std::chrono::microseconds>(*after + kGrace).count();
    constexpr std::int64_t kSecond = 1'000'000;
    itimerval timer{};
    timer.it_value.tv_sec = microseconds / kSecond;
    timer.it_value.tv_usec = microseconds % kSecond;
    setitimer(ITIMER_REAL, &timer, nullptr);
}

Deadline::~Deadline() { disarm_deadline(); }

void disarm_deadline()
{
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
}

void clear_progress()
{
    if (isatty(STDERR_FILENO) == 1)
        write_to_standard_error(kClearLine);
}

void park_descriptors()
{
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (descriptor == STDIN_FILENO || fcntl(descriptor, F_GETFD) == -1)
            lead_to_nothing(descriptor);
    }
}

program::Result<std::unique_ptr<Guard>> Guard::stand(GuardSetup setup)
{
    std::unique_ptr<Guard> guard(new Guard(std::move(setup)));
    Guard* const self = guard.get();
    Watch watch;
    watch.deadline = self->setup_.deadline;
    watch.link = self->setup_.link;
    watch.on_end = [self](Ended ended) { self->end(ended); };
    if (self->on_terminal_) {
        watch.on_tick = [self](std::chrono::nanoseconds elapsed) { self->show_progress(elapsed); };
        watch.tick_interval = kProgressInterval;
    }
    Result<std::unique_ptr<Watchdog>> watchdog = Watchdog::start(std::move(watch));
    if (const auto* problem = std::get_if<Problem>(&watchdog))
        return program::Problem{program::kFailed,
                                problem->sentence + "; " + self->setup_.unharmed + "; close other programs"};
    self->watchdog_ = std::move(std::get<0>(watchdog));
    self->limit_.emplace(self->setup_.memory.value_or(default_memory_limit()));
    return guard;
}

Guard::Guard(GuardSetup setup) : setup_(std::move(setup)), on_terminal_(isatty(STDERR_FILENO) == 1)
{
    const std::string clear = on_terminal_ ? kClearLine : "";
    time_up_ = clear + time_up_sentence(setup_.unharmed);
    closed_ = clear + "vant-host: the sketch application closed the connection without an answer; " +
              setup_.unharmed + "; start the sketch again\n";
    catch_crashes(setup_.unharmed);
    catch_exits(setup_.unharmed);
}

Guard::~Guard()
{
    watchdog_.reset();
    limit_.reset();
    leave_crashes();
    exit_sentence.clear();
    clear_progress();
    park_descriptors();
}

void Guard::end(Ended ended) const
{
    write_to_standard_error(ended == Ended::time_up ? time_up_ : closed_);
    _exit(program::kTimeUp);
}

void Guard::show_progress(std::chrono::nanoseconds elapsed) const
{
    if (elapsed < kQuietTime)
        return;
    ShortLine line;
    line.append(kClearLine);
    line.append("vant-host: ");
    const std::size_t paths = setup_.path_count();
    if (paths == 0) {
        line.append(setup_.link ? "waiting for the sketch application, " : "reading the answer, ");
    } else {
        line.append_number(paths);
        line.append(" paths drawn, ");
    }
    line.append_number(
        static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::seconds>(elapsed).count()));
    line.append(" s");
    write_to_standard_error(line.text());
}

} // namespace vnt::host
