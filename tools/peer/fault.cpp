#include "tools/peer/fault.h"

#include <algorithm>

namespace vnt::peer {

const std::vector<FaultEntry>& fault_entries()
{
    static const std::vector<FaultEntry> entries = {
        {Fault::refuse,              "refuse",              false, false, "accept the connection and close it unread"             },
        {Fault::close_before_answer, "close-before-answer", true,  false,
         "read the request, then close in an orderly way"                                                                         },
        {Fault::close_mid_line,      "close-mid-line",      true,  true,
         "send the first half of the answer's line, no line feed,\nthen close in an orderly way"                                  },
        {Fault::stall,               "stall",               true,  false, "read the request and say nothing until the client goes"},
        {Fault::drip,                "drip",                true,  true,
         "send the answer one byte at a time, within 2 seconds or\nas long as that many sends take"                               },
        {Fault::garbage,             "garbage",             true,  false, "send one line of bytes that are no markup"             },
        {Fault::huge,                "huge",                true,  false,
         "send one well-formed line of 64 MiB: 64 strokes, with a\nmebibyte of blanks in front of each"                           },
        {Fault::two_answers,         "two-answers",         true,  true,  "send the answer's line twice"                          },
        {Fault::reset,               "reset",               true,  false, "read the request, then reset the connection"           },
    };
    return entries;
}

const FaultEntry* fault_of_name(std::string_view name)
{
    const auto& entries = fault_entries();
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&](const auto& entry) { return entry.name == name; });
    return found != entries.end() ? &*found : nullptr;
}

const FaultEntry& entry_of_fault(Fault fault)
{
    static const FaultEntry none = {Fault::none, "", true, true, ""};
    const auto& entries = fault_entries();
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&](const auto& entry) { return entry.fault == fault; });
    return found != entries.end() ? *found : none;
}

} // namespace vnt::peer
