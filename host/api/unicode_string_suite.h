// The Unicode string suite: texts that host and plug-in hand each other. ai::UnicodeString is what to use.
#pragma once

#include "host/api/types.h"

constexpr const char* kAIUnicodeStringSuiteName = "AI Unicode String Suite";
constexpr std::int32_t kAIUnicodeStringSuiteVersion = 1006;

using HostText = struct HostTextBody*;

constexpr std::int32_t kHostPlatformEncoding = 0; // of the system's own texts; here UTF-8

struct AIUnicodeStringSuite {
    // A text of that many bytes, which need no terminator.
    //
    // When:   in any message.
    // Owner:  the caller, who gives it back with Release. The bytes stay the caller's.
    // Errors: kHostBadParameter (also for bytes that the encoding does not allow), kHostOutOfMemory.
    HostError (*MakeFromBytes)(const char* bytes, std::int32_t size, std::int32_t encoding, HostText* text);

    // Gives a text back.
    //
    // When:   in any message.
    // Errors: kHostBadParameter.
    HostError (*Release)(HostText text);
};

// Set by the plug-in when it adds its menu item.
extern AIUnicodeStringSuite* sAIUnicodeString;
