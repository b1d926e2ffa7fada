// The ways in which vant-peer misbehaves on demand, for those who try how a client bears it.
#pragma once

#include <string_view>
#include <vector>

namespace vnt::peer {

enum class Fault {
    none,
    refuse,
    close_before_answer,
    close_mid_line,
    stall,
    drip,
    garbage,
    huge,
    two_answers,
    reset,
};

struct FaultEntry {
    Fault fault;
    const char* name; // as on the command line
    bool takes_request;
    bool needs_answer;  // works on the answer of --answer; the others don't look at it
    const char* effect; // lines, for people
};

// All faults, in the order in which people are told of them; not Fault::none, the good manners.
const std::vector<FaultEntry>& fault_entries();

// The entry of a name, or null.
const FaultEntry* fault_of_name(std::string_view name);

// The entry of a fault; Fault::none has one too.
const FaultEntry& entry_of_fault(Fault fault);

} // namespace vnt::peer
