// Which process has its windows in front.
#pragma once

#include "host/api/types.h"

struct ProcessSerialNumber {
    std::uint32_t high;
    std::uint32_t low;
};

extern "C" {

// The process in front.
//
// When:   in any message.
// Errors: kHostBadParameter, kHostWrongTime (the host cannot tell).
HostError GetFrontProcess(ProcessSerialNumber* process);

// Brings a process to the front.
//
// When:   in any message.
// Errors: kHostBadParameter (also for a process that there is not), kHostWrongTime.
HostError SetFrontProcess(const ProcessSerialNumber* process);
}
