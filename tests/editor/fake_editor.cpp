// What the tests take for an editor on the session bus, or for a desktop that shows notifications:
// fake_editor [--object PATH] [--window STATES]... [--name NAME]... [--notifications CAPABILITIES]
//
// --window:  a document window whose switches are given as NAME=on,NAME=off,NAME=text
// The object has the actions quick, slow (which never ends), off (which is switched off) and last (which ends
// the program).
// It writes a line for each thing that happens: ready, ran ACTION, notified APPLICATION|SUMMARY|BODY.
#include <gio/gio.h>

#include <cstdio>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr char kDescription[] = R"(<node>
  <interface name='org.gtk.Actions'>
    <method name='Describe'><arg type='s' direction='in'/><arg type='(bgav)' direction='out'/></method>
    <method name='Activate'><arg type='s' direction='in'/><arg type='av' direction='in'/>
      <arg type='a{sv}' direction='in'/></method>
  </interface>
  <interface name='org.freedesktop.Notifications'>
    <method name='GetCapabilities'><arg type='as' direction='out'/></method>
    <method name='Notify'><arg type='s' direction='in'/><arg type='u' direction='in'/>
      <arg type='s' direction='in'/><arg type='s' direction='in'/><arg type='s' direction='in'/>
      <arg type='as' direction='in'/>
      <arg type='a{sv}' direction='in'/><arg type='i' direction='in'/><arg type='u' direction='out'/></method>
  </interface>
</node>)";

using States = std::map<std::string, std::string>;

struct Object {
    bool has_actions = false; // of the application
    States states;            // of a window
    std::string capabilities; // of the desktop
};

void say(const std::string& line)
{
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

GVariant* description(bool is_enabled, GVariant* state)
{
    GVariantBuilder states;
    g_variant_builder_init(&states, G_VARIANT_TYPE("av"));
    if (state != nullptr)
        g_variant_builder_add(&states, "v", state);
    return g_variant_new("((bgav))", is_enabled ? TRUE : FALSE, "", &states);
}

void describe(const Object& object, const std::string& action, GDBusMethodInvocation* call)
{
    const auto state = object.states.find(action);
    if (object.has_actions && (action == "quick" || action == "slow" || action == "off" || action == "last"))
        g_dbus_method_invocation_return_value(call, description(action != "off", nullptr));
    else if (state == object.states.end())
        g_dbus_method_invocation_return_error(call, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS,
                                              "The named action ('%s') does not exist.", action.c_str());
    else if (state->second == "on" || state->second == "off")
        g_dbus_method_invocation_return_value(
            call, description(true, g_variant_new_boolean(state->second == "on" ? TRUE : FALSE)));
    else
        g_dbus_method_invocation_return_value(call,
                                              description(true, g_variant_new_string(state->second.c_str())));
}

void on_call(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar* method,
             GVariant* arguments, GDBusMethodInvocation* call, gpointer data)
{
    const Object& object = *static_cast<Object*>(data);
    const std::string_view name = method;
    if (name == "Describe") {
        const gchar* action = nullptr;
        g_variant_get(arguments, "(&s)", &action);
        describe(object, action, call);
    } else if (name == "Activate") {
        const gchar* action = nullptr;
        g_variant_get(arguments, "(&sava{sv})", &action, nullptr, nullptr);
        say(std::string("ran ") + action);
        if (std::string_view(action) == "quick")
            g_dbus_method_invocation_return_value(call, nullptr);
        else if (std::string_view(action) == "last")
            exit(0);
        // slow: the answer never comes
    } else if (name == "GetCapabilities") {
        gchar** capabilities = g_strsplit(object.capabilities.c_str(), ",", -1);
        g_dbus_method_invocation_return_value(call, g_variant_new("(^as)", capabilities));
        g_strfreev(capabilities);
    } else {
        const gchar *application = nullptr, *summary = nullptr, *body = nullptr;
        g_variant_get(arguments, "(&su&s&s&sasa{sv}i)", &application, nullptr, nullptr, &summary, &body,
                      nullptr, nullptr, nullptr);
        say(std::string("notified ") + application + "|" + summary + "|" + body);
        g_dbus_method_invocation_return_value(call, g_variant_new("(u)", 1U));
    }
}

void serve(GDBusConnection* connection, const std::string& path, const char* interface, Object object)
{
    static GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(kDescription, nullptr);
    static const GDBusInterfaceVTable kTable{on_call, nullptr, nullptr, {}};
    GError* error = nullptr;
    if (g_dbus_connection_register_object(connection, path.c_str(),
                                          g_dbus_node_info_lookup_interface(node, interface), &kTable,
                                          new Object(std::move(object)), nullptr, &error) == 0)
        g_error("%s", error->message);
}

void own(GDBusConnection* connection, const char* name)
{
    GError* error = nullptr;
    GVariant* reply = g_dbus_connection_call_sync(
        connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", name, 4U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, &error);
    if (reply == nullptr)
        g_error("%s", error->message);
    g_variant_unref(reply);
}

States states_of(const std::string& text)
{
    States states;
    gchar** entries = g_strsplit(text.c_str(), ",", -1);
    for (gchar** entry = entries; *entry != nullptr; ++entry) {
        const std::string state = *entry;
        if (const std::size_t equals = state.find('='); equals != state.npos)
            states[state.substr(0, equals)] = state.substr(equals + 1);
    }
    g_strfreev(entries);
    return states;
}

} // namespace

int main(int count, char** arguments)
{
    GError* error = nullptr;
    GDBusConnection* connection = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    if (connection == nullptr)
        g_error("%s", error->message);
    std::string path;
    int windows = 0;
    for (int i = 1; i + 1 < count; i += 2) {
        const std::string_view option = arguments[i];
        const char* const value = arguments[i + 1];
        if (option == "--name") {
            own(connection, value);
        } else if (option == "--object") {
            path = value;
            serve(connection, path, "org.gtk.Actions", {true, {}, ""});
        } else if (option == "--window") {
            serve(connection, path + "/window/" + std::to_string(++windows), "org.gtk.Actions",
                  {false, states_of(value), ""});
        } else {
            serve(connection, "/org/freedesktop/Notifications", "org.freedesktop.Notifications",
                  {false, {}, value});
            own(connection, "org.freedesktop.Notifications");
        }
    }
    say("ready");
    g_main_loop_run(g_main_loop_new(nullptr, FALSE));
}
