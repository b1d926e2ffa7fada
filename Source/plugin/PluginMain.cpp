// The entry, the dispatch of messages, the suites and the menu item.
#include "Source/plugin/vantPlugin.h"

AIUnicodeStringSuite* sAIUnicodeString = nullptr;
SPBlocksSuite* sSPBlocks = nullptr;

vantPlugin* vantPlugin::inst = nullptr;

namespace {

// What leaves AddMenus' work before its end, caught by AddMenus itself.
constexpr int kSuitesMissing = 1;
constexpr int kMenuItemRefused = 2;

constexpr char kItemText[] = "Start VANT";
constexpr std::int32_t kItemTextBytes = 10;

// Leaves suite as it is when the host writes nothing.
template <class Suite>
HostError acquire(HostMessage* message, const char* name, std::int32_t version, Suite*& suite)
{
    const void* acquired = suite;
    const HostError error = host_services::basic_suite(*message).AcquireSuite(name, version, &acquired);
    suite = static_cast<Suite*>(const_cast<void*>(acquired));
    return error;
}

bool is_equal(HostMessage* message, const char* one, const char* other)
{
    return host_services::basic_suite(*message).IsEqual(one, other) != 0;
}

} // namespace

extern "C" HostError PluginMain(const char* caller, const char* selector, HostMessage* message)
{
    vantPlugin* const plugin = vantPlugin::get();
    if (is_equal(message, caller, "SP Access")) {
        if (is_equal(message, selector, "Unload"))
            return plugin->UnloadPlugin(message);
        if (is_equal(message, selector, "Reload"))
            return plugin->ReloadPlugin(message);
        return 0;
    }
    const HostError error = plugin->AcquireSuites(message);
    if (error != 0)
        return error;
    if (is_equal(message, caller, "SP Interface")) {
        if (is_equal(message, selector, "Startup"))
            return plugin->StartupPlugin(message);
        if (is_equal(message, selector, "About"))
            return plugin->AboutPlugin(message);
        if (is_equal(message, selector, "Shutdown"))
            return plugin->ShutdownPlugin(message);
        return error;
    }
    return plugin->HandlePluginCaller(caller, selector, message);
}

vantPlugin* vantPlugin::get()
{
    if (inst == nullptr)
        inst = new vantPlugin;
    return inst;
}

void vantPlugin::Initialize()
{
    document_view_suite = nullptr;
    grid_suite = nullptr;
    art_suite = nullptr;
    path_suite = nullptr;
    layer_suite = nullptr;
}

HostError vantPlugin::StartupPlugin(HostMessage* message)
{
    AddMenus(message);
    return 0;
}

HostError vantPlugin::ShutdownPlugin(HostMessage* /*message*/) { return 0; }

HostError vantPlugin::AboutPlugin(HostMessage* /*message*/) { return 0; }

HostError vantPlugin::ReloadPlugin(HostMessage* /*message*/) { return 0; }

HostError vantPlugin::UnloadPlugin(HostMessage* /*message*/) { return 0; }

HostError vantPlugin::AcquireSuites(HostMessage* message)
{
    acquire(message, "AI Document View Suite", 1010, document_view_suite);
    acquire(message, "AI Grid Suite", 1003, grid_suite);
    acquire(message, "AI Art Suite", 1015, art_suite);
    acquire(message, "AI Path Suite", 1009, path_suite);
    acquire(message, "AI Layer Suite", 1011, layer_suite);
    acquire(message, "AI Document Suite", 1012, document_suite);
    return 0;
}

HostError vantPlugin::AddMenus(HostMessage* message)
{
    HostError error = 0;
    try {
        AIMenuSuite* menu_suite = nullptr;
        const HostError no_menu = acquire(message, "AI Menu Suite", 1009, menu_suite);
        const HostError no_text = acquire(message, "AI Unicode String Suite", 1006, sAIUnicodeString);
        error = acquire(message, "SP Blocks Suite", 2, sSPBlocks);
        if (error != 0)
            throw kSuitesMissing;
        if (menu_suite == nullptr || sAIUnicodeString == nullptr) {
            error = menu_suite == nullptr ? no_menu : no_text;
            throw kSuitesMissing;
        }
        AIPlatformAddMenuItemDataUS data{"View Utilities",
                                         host_services::platform_text(kItemText, kItemTextBytes)};
        error = menu_suite->AddMenuItem(host_services::plugin_reference(*message), "VANT", &data,
                                        kMenuItemWantsUpdateOption, &menu_item);
        if (error != 0)
            throw kMenuItemRefused;
    } catch (int) {
        return error;
    } catch (const ai::Error& failure) {
        return host_services::code_of(failure);
    }
    return error;
}

HostError vantPlugin::HandlePluginCaller(const char* caller, const char* selector, HostMessage* message)
{
    if (is_equal(message, caller, "AI Menu") && is_equal(message, selector, "AI Go"))
        return GoMenuItem(message);
    return 0;
}
