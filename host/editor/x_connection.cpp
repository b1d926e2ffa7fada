#include "host/editor/x_connection.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace vnt::host {
namespace {

struct Free {
    void operator()(void* data) const { std::free(data); }
};
template <class Type>
using Freed = std::unique_ptr<Type, Free>;

} // namespace

XConnection::XConnection()
{
    const char* const name = std::getenv("DISPLAY");
    if (name == nullptr || *name == '\0')
        return;
    int screen = 0;
    connection_.reset(xcb_connect(name, &screen));
    if (!is_open())
        return;
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
    for (; screen > 0 && screens.rem > 1; --screen)
        xcb_screen_next(&screens);
    root_ = screens.data->root;
}

bool XConnection::is_open() const
{
    return connection_ != nullptr && xcb_connection_has_error(connection_.get()) == 0;
}

xcb_atom_t XConnection::atom(const std::string& name) const
{
    if (!is_open())
        return XCB_ATOM_NONE;
    const auto asked =
        xcb_intern_atom(connection_.get(), 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const Freed<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_.get(), asked, nullptr));
    return reply == nullptr ? static_cast<xcb_atom_t>(XCB_ATOM_NONE) : reply->atom;
}

std::optional<std::string> XConnection::property(xcb_window_t window, const std::string& name,
                                                 xcb_atom_t type, int format) const
{
    constexpr std::uint32_t kWhole = 1U << 20; // in units of 4 bytes: more than the largest list or title
    const xcb_atom_t property = atom(name);
    if (property == XCB_ATOM_NONE || type == XCB_ATOM_NONE)
        return std::nullopt;
    const auto asked = xcb_get_property(connection_.get(), 0, window, property, type, 0, kWhole);
    const Freed<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_.get(), asked, nullptr));
    if (reply == nullptr || reply->type != type || reply->format != format)
        return std::nullopt;
    const void* const bytes = xcb_get_property_value(reply.get());
    return std::string(static_cast<const char*>(bytes),
                       static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
}

std::optional<std::vector<std::uint32_t>> XConnection::numbers(xcb_window_t window, const std::string& name,
                                                               xcb_atom_t type) const
{
    const std::optional<std::string> bytes = property(window, name, type, 32);
    if (!bytes)
        return std::nullopt;
    std::vector<std::uint32_t> numbers(bytes->size() / sizeof(std::uint32_t));
    if (!numbers.empty())
        std::memcpy(numbers.data(), bytes->data(), numbers.size() * sizeof(std::uint32_t));
    return numbers;
}

std::optional<std::string> XConnection::text(xcb_window_t window, const std::string& name,
                                             const std::string& type) const
{
    return property(window, name, atom(type), 8);
}

void XConnection::tell_manager(xcb_window_t window, const std::string& message,
                               const std::vector<std::uint32_t>& data) const
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(message);
    std::copy_n(data.begin(), std::min(data.size(), std::size(event.data.data32)), event.data.data32);
    if (!is_open())
        return;
    const void* const bytes = &event;
    xcb_send_event(connection_.get(), 0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   static_cast<const char*>(bytes));
    xcb_flush(connection_.get());
}

void XConnection::watch_root() const
{
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    if (!is_open())
        return;
    xcb_change_window_attributes(connection_.get(), root_, XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection_.get());
}

bool XConnection::wait_for_change(std::chrono::steady_clock::time_point deadline) const
{
    bool has_changed = false;
    while (is_open()) {
        while (const Freed<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())})
            has_changed = true;
        if (has_changed)
            return true;
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
        if (left <= 0)
            return false;
        pollfd watched{xcb_get_file_descriptor(connection_.get()), POLLIN, 0};
        if (poll(&watched, 1, static_cast<int>(left)) < 0 && errno != EINTR)
            return false;
    }
    return false;
}

} // namespace vnt::host
