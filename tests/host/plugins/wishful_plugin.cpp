// A plug-in that wants a service that no host has.
#include "host/api/plugin_entry.h"

extern "C" HostError PlayFanfare(int loudness);

extern "C" HostError PluginMain(const char* /*caller*/, const char* /*selector*/, HostMessage* /*message*/)
{
    return PlayFanfare(11);
}
