// Strings of the host: titles of windows, texts of alerts.
//
// Shapes: a string is UTF-16 units; a unit takes at most 3 bytes of UTF-8.
// Owner:  no string is given back: a host keeps those that it hands out as long as what they name.
#pragma once

#include "host/api/types.h"

#include <cstdint>

using CFIndex = std::intptr_t;
using CFStringRef = const struct HostString*;
using CFStringEncoding = std::uint32_t;

constexpr CFStringEncoding kCFStringEncodingUTF8 = 1;

extern "C" {

// The number of UTF-16 units.
//
// When:   in any message.
// Errors: none; string is not null.
CFIndex CFStringGetLength(CFStringRef string);

// The most bytes that length UTF-16 units can take, without a terminator.
//
// When:   in any message.
// Errors: none; -1 for an encoding that the host does not know.
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);

// Writes the string and a terminator, and returns not 0; 0 when both do not fit into size bytes, or the
// encoding cannot say it. What stands in the buffer is then undefined.
//
// When:   in any message.
// Owner:  the buffer stays the caller's.
HostBoolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex size, CFStringEncoding encoding);

// The string of a literal: its address is its identity, and asking again may give the same string.
//
// When:   in any message.
// Owner:  the host; valid as long as the host runs.
// Errors: throws std::bad_alloc.
CFStringRef HostConstantString(const char* utf8_literal);
}

// The name that it has where the host's own libraries provide it.
#define CFSTR(literal) HostConstantString(literal)
