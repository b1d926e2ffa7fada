// The blocks suite: memory for the inline functions of a host's string classes. The string class here needs
// none, so that the suite is acquired and no function of it is called.
#pragma once

#include "host/api/types.h"

constexpr const char* kSPBlocksSuiteName = "SP Blocks Suite";
constexpr std::int32_t kSPBlocksSuiteVersion = 2;

struct SPBlocksSuite {
    HostReservedFunction reserved;
};

// Set by the plug-in when it adds its menu item.
extern SPBlocksSuite* sSPBlocks;
