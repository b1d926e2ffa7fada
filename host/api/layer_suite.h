// The layer suite: the layers of the front document.
#pragma once

#include "host/api/types.h"

constexpr const char* kAILayerSuiteName = "AI Layer Suite";
constexpr std::int32_t kAILayerSuiteVersion = 1011;

struct AILayerSuite {
    // The layer that new art goes into.
    //
    // When:   with a document open.
    // Owner:  the host; valid until the layer is deleted.
    // Errors: kHostNoDocument, kHostBadParameter.
    HostError (*GetCurrentLayer)(AILayerHandle* layer);
};
