// The document view suite: how the view of a document lies on its artwork.
//
// Shapes: GetShowPageTiling is the 21st function of the table; the places before it are reserved, and a host
//         fills them with null.
#pragma once

#include "host/api/types.h"

#include <cstddef>

constexpr const char* kAIDocumentViewSuiteName = "AI Document View Suite";
constexpr std::int32_t kAIDocumentViewSuiteVersion = 1010;

struct AIDocumentViewSuite {
    HostReservedFunction reserved[20];

    // Whether the page tiling is shown in the front document.
    //
    // When:   in any message; with no document open it fails.
    // Errors: kHostNoDocument, kHostBadParameter.
    HostError (*GetShowPageTiling)(HostBoolean* shown);

    // A view of the front document; number 0 is the one in front.
    //
    // When:   with a document open.
    // Owner:  the host; valid until the view is closed.
    // Errors: kHostNoDocument, kHostOutOfRange, kHostBadParameter.
    HostError (*GetNthDocumentView)(std::int32_t number, AIDocumentViewHandle* view);

    // The artwork point that is seen at a point of a view.
    //
    // When:   with a document open.
    // Errors: kHostBadParameter.
    HostError (*ViewPointToArtworkPoint)(AIDocumentViewHandle view, const AIPoint* view_point,
                                         AIRealPoint* artwork_point);
};

static_assert(offsetof(AIDocumentViewSuite, GetShowPageTiling) == 20 * sizeof(HostReservedFunction),
              "GetShowPageTiling is the 21st function");
