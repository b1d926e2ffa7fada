// The path suite: the segments of path art.
//
// Space:  artwork coordinates.
#pragma once

#include "host/api/types.h"

constexpr const char* kAIPathSuiteName = "AI Path Suite";
constexpr std::int32_t kAIPathSuiteVersion = 1009;

// An anchor of a path with its two handles; a handle on its anchor is retracted.
struct AIPathSegment {
    AIRealPoint p;
    AIRealPoint in;
    AIRealPoint out;
    HostBoolean corner; // the handles do not move with each other
};

struct AIPathSuite {
    // Sets count segments of a path from number on. A segment one past the path's end makes the path longer;
    // a new path is open.
    //
    // When:   with a document open.
    // Owner:  the segments stay the caller's.
    // Errors: kHostBadParameter (also for art that is no path, or a count below 1), kHostOutOfRange (a number
    //         below 0, or more than one past the end), kHostReadOnly, kHostOutOfMemory.
    HostError (*SetPathSegments)(AIArtHandle path, std::int16_t number, std::int16_t count,
                                 const AIPathSegment* segments);
};
