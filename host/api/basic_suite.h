// The basic suite: the way to all others. Every message carries it.
#pragma once

#include "host/api/types.h"

struct SPBasicSuite {
    // A suite's table of functions, by its name and version. Acquiring a suite again gives the same table.
    //
    // When:   in any message.
    // Owner:  the host; the table is valid until the host has sent "Unload". Nobody has to release it.
    // Errors: kHostNoSuite, kHostBadParameter.
    HostError (*AcquireSuite)(const char* name, std::int32_t version, const void** suite);

    // Not 0 when the two names are equal, byte by byte.
    //
    // When:   in any message.
    // Owner:  the names stay the caller's.
    // Errors: none; a null name equals nothing.
    HostBoolean (*IsEqual)(const char* one, const char* other);
};
