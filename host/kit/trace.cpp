#include "host/kit/trace.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace vnt::host {
namespace {

std::string reason() { return std::generic_category().message(errno); }

} // namespace

Result<std::unique_ptr<Trace>> Trace::open(const std::string& file)
{
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (descriptor < 0)
        return Problem{"cannot write the trace " + file + ": " + reason() +
                       "; name a file that can be written with --trace"};
    return std::unique_ptr<Trace>(new Trace(file, descriptor));
}

Trace::Trace(std::string file, int descriptor) : file_(std::move(file)), descriptor_(descriptor) {}

Trace::~Trace() { close(descriptor_); }

void Trace::write(std::string_view line)
{
    while (problem_.empty() && !line.empty()) {
        const ssize_t written = ::write(descriptor_, line.data(), line.size());
        if (written >= 0)
            line.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            problem_ =
                "cannot go on with the trace " + file_ + ": " + reason() + "; its last line may be missing";
    }
}

} // namespace vnt::host
