// Modal alerts.
#pragma once

#include "host/api/strings.h"
#include "host/api/types.h"

using DialogRef = struct HostAlert*;

constexpr std::int16_t kAlertStopAlert = 0; // the kind that says that something stopped

extern "C" {

// Makes an alert; nothing is seen of it yet.
//
// text:        in bold; explanation stands below it, smaller.
// parameters:  null for the usual one button.
// When:        in any message.
// Owner:       the host, which ends the alert when it has been run.
// Errors:      kHostBadParameter, kHostOutOfMemory.
HostError CreateStandardAlert(std::int16_t kind, CFStringRef text, CFStringRef explanation,
                              const void* parameters, DialogRef* alert);

// Shows an alert until the user dismisses it.
//
// filter:      null: the host handles all events itself.
// item_hit:    where the number of the button goes, or null.
// When:        once for each alert.
// Errors:      kHostBadParameter (also for null and for an alert that has been run).
HostError RunStandardAlert(DialogRef alert, const void* filter, std::int16_t* item_hit);
}
