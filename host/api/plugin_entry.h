// The messages that a host sends, and the entry that a plug-in exports for them.
//
// When:   one message at a time, all on the host's main thread. A host sends "Startup" first and then what its
//         user does; "Shutdown" last, and "Unload" when it is about to unload the plug-in.
#pragma once

#include "host/api/basic_suite.h"
#include "host/api/types.h"

struct HostMessage {
    HostPluginReference plugin; // the plug-in that the message goes to
    SPBasicSuite* basic;
};

// Callers and their selectors. A plug-in answers 0 to those that it does not know.
constexpr const char* kAccessCaller = "SP Access";
constexpr const char* kUnloadSelector = "Unload";
constexpr const char* kReloadSelector = "Reload";

constexpr const char* kInterfaceCaller = "SP Interface";
constexpr const char* kStartupSelector = "Startup";
constexpr const char* kAboutSelector = "About";
constexpr const char* kShutdownSelector = "Shutdown";

constexpr const char* kMenuCaller = "AI Menu";
constexpr const char* kGoSelector = "AI Go"; // the item was chosen

// The entry's name in the bundle, and its type.
//
// Owner:  caller, selector and message stay the host's.
// Errors: 0, or the code of a service that the plug-in could not do without. Throws nothing that a service of
//         the host has not thrown.
constexpr const char* kPluginEntryName = "PluginMain";
using PluginEntry = HostError(const char* caller, const char* selector, HostMessage* message);
