// Stands in for session_bus.cpp where GIO is missing: there is no bus to connect to, so nothing else is ever
// called.
#include "host/editor/session_bus.h"

namespace vnt::host {

struct SessionBus::Link {};

SessionBus::SessionBus(std::unique_ptr<Link> link) noexcept : link_(std::move(link)) {}
SessionBus::SessionBus(SessionBus&&) noexcept = default;
SessionBus& SessionBus::operator=(SessionBus&&) noexcept = default;
SessionBus::~SessionBus() = default;

std::optional<SessionBus> SessionBus::connect() { return std::nullopt; }

std::vector<std::string> SessionBus::names_of_process(pid_t) const { return {}; }

Result<Activated> SessionBus::activate(const std::string&, const std::string&,
                                       std::chrono::milliseconds) const
{
    return Problem{"this program was built without the session bus"};
}

std::optional<std::size_t> SessionBus::window_count(const std::string&) const { return std::nullopt; }

std::optional<bool> SessionBus::window_state(const std::string&, const std::string&) const
{
    return std::nullopt;
}

std::optional<bool> SessionBus::window_state_of(const std::string&, const std::string&,
                                                const std::string&) const
{
    return std::nullopt;
}

bool SessionBus::notify(const std::string&, const std::string&) const { return false; }

} // namespace vnt::host
