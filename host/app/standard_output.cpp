#include "host/app/standard_output.h"

#include <unistd.h>

#include <cerrno>

namespace vnt::host {

bool try_print_document(std::string_view document)
{
    while (!document.empty()) {
        const ssize_t written = write(STDOUT_FILENO, document.data(), document.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        document.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace vnt::host
