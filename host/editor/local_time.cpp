#include "host/editor/local_time.h"

#include <array>
#include <ctime>

namespace vnt::host {

std::string local_time_now()
{
    const std::time_t now = std::time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    std::array<char, 48> text{};
    std::string time(text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S%z", &local));
    constexpr std::size_t kMinutes = 2; // behind which the zone has no colon yet
    return time.insert(time.size() - kMinutes, ":");
}

} // namespace vnt::host
