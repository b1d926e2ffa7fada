// The menu suite: items that a plug-in adds to the host's menus.
#pragma once

#include "host/api/types.h"
#include "host/api/unicode_string.h"

constexpr const char* kAIMenuSuiteName = "AI Menu Suite";
constexpr std::int32_t kAIMenuSuiteVersion = 1009;

// Asks for a message before the item's menu is shown.
constexpr std::int32_t kMenuItemWantsUpdateOption = 1;

struct AIPlatformAddMenuItemDataUS {
    const char* group; // the name of the group of items that the new one joins
    ai::UnicodeString text;
};

struct AIMenuSuite {
    // Adds an item. Choosing it sends "AI Menu" / "AI Go" to the plug-in.
    //
    // key:    the item's name for the host's own use, the same in every language.
    // When:   in "SP Interface" / "Startup".
    // Owner:  the item is the host's, until "Unload"; the data stay the caller's and are copied.
    // Errors: kHostBadParameter, kHostWrongTime, kHostOutOfMemory.
    HostError (*AddMenuItem)(HostPluginReference plugin, const char* key,
                             const AIPlatformAddMenuItemDataUS* data, std::int32_t options,
                             AIMenuItemHandle* item);
};
