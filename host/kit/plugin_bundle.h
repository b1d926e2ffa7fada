// A plug-in's bundle, loaded into this program.
//
// When: the program exports the services that a bundle finds by name.
#pragma once

#include "host/api/plugin_entry.h"
#include "host/kit/result.h"

#include <string>

namespace vnt::host {

class PluginBundle {
public:
    // Errors: a file that cannot be loaded, or has no entry; a program that does not export its services.
    static Result<PluginBundle> load(const std::string& file);

    // Takes the messages; valid to the end of the program.
    PluginEntry& entry() const { return *entry_; }

private:
    explicit PluginBundle(PluginEntry* loaded) : entry_(loaded) {}

    // The bundle stays loaded to the program's end: a plug-in may have left threads, exit handlers or objects that
    // are never destroyed.
    PluginEntry* entry_;
};

} // namespace vnt::host
