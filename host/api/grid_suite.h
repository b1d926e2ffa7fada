// The grid suite: the grid of the front document, and whether it is in force in a view.
//
// Shapes: a host's own names for these functions differ; what counts is their place in the table, the first,
//         fifth and sixth. The places between are reserved, and a host fills them with null.
#pragma once

#include "host/api/types.h"

#include <cstddef>

constexpr const char* kAIGridSuiteName = "AI Grid Suite";
constexpr std::int32_t kAIGridSuiteVersion = 1003;

// Spacing and subdivisions are the third and fourth 32-bit words of what a host tells of its grid.
struct HostGridSettings {
    std::uint32_t reserved[2];
    float spacing;             // of the grid's main lines, in artwork units
    std::int32_t subdivisions; // of a spacing, 1 or more
};

static_assert(offsetof(HostGridSettings, spacing) == 8 && offsetof(HostGridSettings, subdivisions) == 12 &&
                  sizeof(HostGridSettings) == 16,
              "four words of 32 bits");

struct AIGridSuite {
    // 1st: the settings of the front document's grid, whether or not it is shown.
    //
    // When:   with a document open.
    // Errors: kHostNoDocument, kHostBadParameter.
    HostError (*GetSettings)(HostGridSettings* settings);

    HostReservedFunction reserved[3];

    // 5th: whether the grid is shown in a view.
    //
    // When:   with a document open.
    // Errors: none; false for a view that there is not.
    HostBoolean (*IsShown)(AIDocumentViewHandle view);

    // 6th: whether drawing in a view snaps to the grid. When and Errors: as IsShown.
    HostBoolean (*IsSnappedTo)(AIDocumentViewHandle view);
};

static_assert(offsetof(AIGridSuite, GetSettings) == 0 &&
                  offsetof(AIGridSuite, IsShown) == 4 * sizeof(HostReservedFunction) &&
                  offsetof(AIGridSuite, IsSnappedTo) == 5 * sizeof(HostReservedFunction),
              "the first, fifth and sixth function");
