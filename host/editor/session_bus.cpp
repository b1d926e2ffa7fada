#include "host/editor/session_bus.h"

#include "host/editor/bus_address.h"

#include <gio/gio.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <variant>

namespace vnt::host {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// What the editor calls itself on the bus; with --app-id-tag=TAG it adds .TAG.
constexpr char kEditorName[] = "org.inkscape.Inkscape";
constexpr char kActions[] = "org.gtk.Actions";

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
    void operator()(GVariant* value) const { g_variant_unref(value); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
    void operator()(GSource* source) const { g_source_unref(source); }
    void operator()(gchar* text) const { g_free(text); }
    void operator()(GDBusNodeInfo* node) const { g_dbus_node_info_unref(node); }
};
template <class Type>
using Owned = std::unique_ptr<Type, Unref>;

// The time that is left of a limit.
class Deadline {
public:
    explicit Deadline(milliseconds limit) : end_(Clock::now() + limit) {}
    // In milliseconds, at least 1: GIO takes 0 for no time at all and -1 for its own 25 seconds.
    int left() const
    {
        const auto left = std::chrono::ceil<milliseconds>(end_ - Clock::now()).count();
        return static_cast<int>(std::clamp<std::int64_t>(left, 1, G_MAXINT));
    }

private:
    Clock::time_point end_;
};

struct Opening {
    GDBusConnection* connection = nullptr;
    bool has_ended = false;
};

void take_connection(GObject*, GAsyncResult* result, gpointer opening)
{
    auto* taken = static_cast<Opening*>(opening);
    taken->connection = g_dbus_connection_new_for_address_finish(result, nullptr);
    taken->has_ended = true;
}

gboolean cancel(gpointer cancellable)
{
    g_cancellable_cancel(static_cast<GCancellable*>(cancellable));
    return G_SOURCE_REMOVE;
}

// A connection that has passed the authentication. A bus that is silent there is given up.
Owned<GDBusConnection> open_connection(const std::string& address, const Deadline& deadline)
{
    const Owned<GMainContext> context(g_main_context_new());
    g_main_context_push_thread_default(context.get());
    const Owned<GCancellable> cancellable(g_cancellable_new());
    const Owned<GSource> timer(g_timeout_source_new(static_cast<guint>(deadline.left())));
    g_source_set_callback(timer.get(), cancel, cancellable.get(), nullptr);
    g_source_attach(timer.get(), context.get());
    Opening opening;
    // Not as a connection to a message bus: GIO would say Hello itself then, with a limit of 25 seconds.
    g_dbus_connection_new_for_address(address.c_str(), G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT, nullptr,
                                      cancellable.get(), take_connection, &opening);
    while (!opening.has_ended)
        g_main_context_iteration(context.get(), TRUE);
    g_source_destroy(timer.get());
    g_main_context_pop_thread_default(context.get());
    return Owned<GDBusConnection>(opening.connection);
}

struct Reply {
    Owned<GVariant> value; // null: there is none, for this reason:
    Owned<GError> error;
};

bool is_time_out(const GError& error) { return g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT); }

// The sentence of another program, without the name of its error.
std::string words_of(GError& error)
{
    g_dbus_error_strip_remote_error(&error);
    return error.message;
}

// Whether text may be sent: the bus ends the connection of one who sends anything else.
bool is_sendable(const std::string& text)
{
    return g_utf8_validate_len(text.data(), text.size(), nullptr) != FALSE;
}

Owned<GVariant> string_argument(const std::string& text)
{
    return Owned<GVariant>(g_variant_ref_sink(g_variant_new("(s)", text.c_str())));
}

bool is_editor_name(std::string_view name)
{
    const std::string_view editor = kEditorName;
    return name.substr(0, editor.size()) == editor &&
           (name.size() == editor.size() || name[editor.size()] == '.');
}

// The order in which names are told: the editor's, other well-known ones, unique ones.
int rank_of(const std::string& name) { return is_editor_name(name) ? 0 : name.front() == ':' ? 2 : 1; }

std::string path_of_name(std::string name)
{
    std::replace(name.begin(), name.end(), '.', '/');
    std::replace(name.begin(), name.end(), '-', '_'); // as GApplication does: a path has none
    return "/" + name;
}

// An object as its introspection describes it.
struct Described {
    Owned<GDBusNodeInfo> node; // null: there is none, for this reason:
    Owned<GError> error;
};

bool has_actions(GDBusNodeInfo& node)
{
    return g_dbus_node_info_lookup_interface(&node, kActions) != nullptr;
}

std::vector<std::string> children_of(const GDBusNodeInfo& node, const std::string& path)
{
    std::vector<std::string> paths;
    for (GDBusNodeInfo** child = node.nodes; child != nullptr && *child != nullptr; ++child)
        paths.push_back(path + "/" + (*child)->path);
    return paths;
}

// Why an action cannot be run, from the error of a question that comes before it.
Result<Activated> refusal(const std::string& name, const std::string& action, GError& error)
{
    if (is_time_out(error))
        return Activated::busy;
    if (g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS))
        return Problem{"the editor has no action " + action + "; its extension is not installed there"};
    if (g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_OBJECT) ||
        g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_METHOD))
        return Problem{"what has the name " + name + " on the session bus is no editor that runs actions"};
    if (g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) ||
        g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) ||
        g_error_matches(&error, G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY))
        return Problem{"the editor (" + name + " on the session bus) is not running any more"};
    return Problem{"the editor (" + name + ") cannot be asked over the session bus: " + words_of(error)};
}

} // namespace

struct SessionBus::Link {
    ~Link() { g_dbus_connection_close_sync(connection.get(), nullptr, nullptr); }

    // reply_type: of the whole reply; an answer of another type is an error. arguments: null is none.
    Reply call(const std::string& name, const std::string& path, const char* interface, const char* method,
               const Owned<GVariant>& arguments, const char* reply_type, const Deadline& deadline,
               GDBusCallFlags flags = G_DBUS_CALL_FLAGS_NO_AUTO_START) const
    {
        GError* error = nullptr;
        GVariant* value = g_dbus_connection_call_sync(connection.get(), name.c_str(), path.c_str(), interface,
                                                      method, arguments.get(), G_VARIANT_TYPE(reply_type),
                                                      flags, deadline.left(), nullptr, &error);
        return {Owned<GVariant>(value), Owned<GError>(error)};
    }
    Reply call_bus(const char* method, const Owned<GVariant>& arguments, const char* reply_type,
                   const Deadline& deadline) const
    {
        return call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
                    arguments, reply_type, deadline);
    }

    Described describe_object(const std::string& name, const std::string& path,
                              const Deadline& deadline) const
    {
        Reply reply =
            call(name, path, "org.freedesktop.DBus.Introspectable", "Introspect", nullptr, "(s)", deadline);
        if (reply.value == nullptr)
            return {nullptr, std::move(reply.error)};
        const gchar* xml = nullptr;
        g_variant_get(reply.value.get(), "(&s)", &xml);
        GError* error = nullptr;
        GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(xml, &error);
        return {Owned<GDBusNodeInfo>(node), Owned<GError>(error)};
    }

    // The application's own object; its error when the owner of a unique name tells none.
    std::variant<std::string, Owned<GError>> application_path(const std::string& name,
                                                              const Deadline& deadline) const
    {
        const bool is_well_known = name.front() != ':';
        const std::string path = path_of_name(is_well_known ? name : kEditorName);
        if (is_well_known)
            return path;
        Described described = describe_object(name, path, deadline);
        if (described.node == nullptr)
            return std::move(described.error);
        if (has_actions(*described.node))
            return path;
        for (const std::string& child : children_of(*described.node, path)) {
            const Described tagged = describe_object(name, child, deadline);
            if (tagged.node != nullptr && has_actions(*tagged.node))
                return child;
        }
        return Owned<GError>(g_error_new(G_DBUS_ERROR, G_DBUS_ERROR_UNKNOWN_OBJECT, "it is no editor"));
    }

    // Whether an action is enabled, what it takes, and its state.
    Reply describe_action(const std::string& name, const std::string& path, const std::string& action,
                          const Deadline& deadline) const
    {
        return call(name, path, kActions, "Describe", string_argument(action), "((bgav))", deadline);
    }

    std::optional<std::vector<std::string>> windows(const std::string& name, const Deadline& deadline) const
    {
        if (g_dbus_is_name(name.c_str()) == FALSE)
            return std::nullopt;
        const auto application = application_path(name, deadline);
        const std::string* const application_path = std::get_if<std::string>(&application);
        if (application_path == nullptr)
            return std::nullopt;
        const std::string path = *application_path + "/window";
        const Described described = describe_object(name, path, deadline);
        if (described.node == nullptr)
            return std::nullopt;
        return children_of(*described.node, path);
    }

    std::optional<bool> state(const std::string& name, const std::string& path, const std::string& action,
                              const Deadline& deadline) const
    {
        if (g_variant_is_object_path(path.c_str()) == FALSE || !is_sendable(action))
            return std::nullopt;
        const Reply reply = describe_action(name, path, action, deadline);
        if (reply.value == nullptr)
            return std::nullopt;
        GVariant* states = nullptr;
        g_variant_get(reply.value.get(), "((bg@av))", nullptr, nullptr, &states);
        const Owned<GVariant> owned_states(states);
        if (g_variant_n_children(states) != 1)
            return std::nullopt;
        GVariant* first = nullptr;
        g_variant_get_child(states, 0, "v", &first);
        const Owned<GVariant> owned_first(first);
        if (!g_variant_is_of_type(first, G_VARIANT_TYPE_BOOLEAN))
            return std::nullopt;
        return g_variant_get_boolean(first) != FALSE;
    }

    Owned<GDBusConnection> connection;
};

SessionBus::SessionBus(std::unique_ptr<Link> link) noexcept : link_(std::move(link)) {}
SessionBus::SessionBus(SessionBus&&) noexcept = default;
SessionBus& SessionBus::operator=(SessionBus&&) noexcept = default;
SessionBus::~SessionBus() = default;

std::optional<SessionBus> SessionBus::connect()
{
    const std::optional<std::string> address =
        session_bus_address(std::getenv("DBUS_SESSION_BUS_ADDRESS"), std::getenv("XDG_RUNTIME_DIR"));
    if (!address || g_dbus_is_supported_address(address->c_str(), nullptr) == FALSE)
        return std::nullopt;
    const Deadline deadline(kBusLimit);
    Owned<GDBusConnection> connection = open_connection(*address, deadline);
    if (connection == nullptr)
        return std::nullopt;
    auto link = std::make_unique<Link>();
    link->connection = std::move(connection);
    if (link->call_bus("Hello", nullptr, "(s)", deadline).value == nullptr)
        return std::nullopt;
    return SessionBus(std::move(link));
}

std::vector<std::string> SessionBus::names_of_process(pid_t pid) const
{
    const Deadline deadline(kBusLimit);
    std::vector<std::string> names;
    const Reply listed = link_->call_bus("ListNames", nullptr, "(as)", deadline);
    if (listed.value == nullptr)
        return names;
    const Owned<GVariant> list(g_variant_get_child_value(listed.value.get(), 0));
    for (gsize i = 0; i < g_variant_n_children(list.get()); ++i) {
        const gchar* name = nullptr;
        g_variant_get_child(list.get(), i, "&s", &name);
        const Reply owner =
            link_->call_bus("GetConnectionUnixProcessID", string_argument(name), "(u)", deadline);
        if (owner.value == nullptr) {
            if (is_time_out(*owner.error))
                return names;
            continue; // its owner has just gone
        }
        guint32 owner_pid = 0;
        g_variant_get(owner.value.get(), "(u)", &owner_pid);
        if (owner_pid == static_cast<guint32>(pid))
            names.emplace_back(name);
    }
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return std::pair(rank_of(a), std::string_view(a)) < std::pair(rank_of(b), std::string_view(b));
    });
    return names;
}

Result<Activated> SessionBus::activate(const std::string& name, const std::string& action,
                                       milliseconds limit) const
{
    if (g_dbus_is_name(name.c_str()) == FALSE)
        return Problem{"\"" + name + "\" is no name on a session bus"};
    if (!is_sendable(action))
        return Problem{"the name of an action of the editor is not UTF-8"};
    const Deadline asking(kBusLimit);
    auto application = link_->application_path(name, asking);
    if (auto* const error = std::get_if<Owned<GError>>(&application))
        return refusal(name, action, **error);
    const std::string& path = std::get<std::string>(application);
    // Asked first, since what is sent to an editor that is busy is run whenever it wakes up.
    const Reply described = link_->describe_action(name, path, action, asking);
    if (described.value == nullptr)
        return refusal(name, action, *described.error);
    gboolean is_enabled = FALSE;
    g_variant_get(described.value.get(), "((bg@av))", &is_enabled, nullptr, nullptr);
    if (is_enabled == FALSE)
        return Problem{"the editor has switched off its action " + action};
    const Owned<GVariant> arguments(
        g_variant_ref_sink(g_variant_new("(sava{sv})", action.c_str(), nullptr, nullptr)));
    const Reply activated = link_->call(name, path, kActions, "Activate", arguments, "()", Deadline(limit));
    if (activated.value != nullptr)
        return Activated::done;
    if (is_time_out(*activated.error))
        return Activated::unfinished;
    if (g_error_matches(activated.error.get(), G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY))
        return Problem{"the editor ended while it ran its action " + action};
    return Problem{"the editor did not run its action " + action + ": " + words_of(*activated.error)};
}

std::optional<std::size_t> SessionBus::window_count(const std::string& name) const
{
    const auto windows = link_->windows(name, Deadline(kBusLimit));
    return windows ? std::optional(windows->size()) : std::nullopt;
}

std::optional<bool> SessionBus::window_state(const std::string& name, const std::string& action) const
{
    const Deadline deadline(kBusLimit);
    const auto windows = link_->windows(name, deadline);
    std::optional<bool> common;
    for (const std::string& window : windows.value_or(std::vector<std::string>())) {
        const std::optional<bool> state = link_->state(name, window, action, deadline);
        if (!state || (common && *common != *state))
            return std::nullopt;
        common = state;
    }
    return common;
}

std::optional<bool> SessionBus::window_state_of(const std::string& name, const std::string& window_path,
                                                const std::string& action) const
{
    if (g_dbus_is_name(name.c_str()) == FALSE)
        return std::nullopt;
    return link_->state(name, window_path, action, Deadline(kBusLimit));
}

bool SessionBus::notify(const std::string& summary, const std::string& body) const
{
    constexpr char kService[] = "org.freedesktop.Notifications";
    constexpr char kObject[] = "/org/freedesktop/Notifications";
    const Deadline deadline(kBusLimit);
    // These two may start the service.
    const Reply capable = link_->call(kService, kObject, kService, "GetCapabilities", nullptr, "(as)",
                                      deadline, G_DBUS_CALL_FLAGS_NONE);
    if (capable.value == nullptr)
        return false;
    const Owned<gchar> shown_summary(g_utf8_make_valid(summary.data(), static_cast<gssize>(summary.size())));
    Owned<gchar> shown_body(g_utf8_make_valid(body.data(), static_cast<gssize>(body.size())));
    const gchar** capabilities = nullptr;
    g_variant_get(capable.value.get(), "(^a&s)", &capabilities);
    if (g_strv_contains(capabilities, "body-markup") != FALSE) // it would take a < of ours for a tag
        shown_body.reset(g_markup_escape_text(shown_body.get(), -1));
    g_free(capabilities);
    const Owned<GVariant> arguments(g_variant_ref_sink(
        g_variant_new("(susssasa{sv}i)", "VANT", 0U, "", shown_summary.get(), shown_body.get(), nullptr,
                      nullptr, -1))); // -1: shown for as long as the desktop likes
    return link_
               ->call(kService, kObject, kService, "Notify", arguments, "(u)", deadline,
                      G_DBUS_CALL_FLAGS_NONE)
               .value != nullptr;
}

} // namespace vnt::host
