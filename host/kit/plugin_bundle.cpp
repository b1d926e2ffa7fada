#include "host/kit/plugin_bundle.h"

#include "host/kit/session_state.h"

#include <dlfcn.h>

namespace vnt::host {
namespace {

std::string reason()
{
    const char* const text = dlerror();
    return text == nullptr ? "for a reason that the system does not tell" : text;
}

// Empty when a bundle will find every service here.
std::string service_that_is_hidden()
{
    for (const NamedService& service : named_services()) {
        if (dlsym(RTLD_DEFAULT, service.name) != service.address)
            return service.name;
    }
    return {};
}

} // namespace

Result<PluginBundle> PluginBundle::load(const std::string& file)
{
    const std::string hidden = service_that_is_hidden();
    if (!hidden.empty())
        return Problem{"cannot load plug-ins: this program was built without exporting " + hidden +
                       "; build it anew"};
    // With a slash the system looks for this file and not for a library of that name.
    const std::string path = file.find('/') == file.npos ? "./" + file : file;
    void* const bundle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (bundle == nullptr)
        return Problem{"cannot load the plug-in " + file + ": " + reason() +
                       "; name a plug-in for this machine with --plugin"};
    auto* const found = reinterpret_cast<PluginEntry*>(dlsym(bundle, kPluginEntryName));
    if (found == nullptr)
        return Problem{"cannot use the plug-in " + file + ": it has no " + kPluginEntryName +
                       "; name a plug-in with --plugin"};
    return PluginBundle(found);
}

} // namespace vnt::host
