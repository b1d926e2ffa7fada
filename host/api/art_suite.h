// The art suite: art objects, and how they stand in each other.
#pragma once

#include "host/api/types.h"

constexpr const char* kAIArtSuiteName = "AI Art Suite";
constexpr std::int32_t kAIArtSuiteVersion = 1015;

// A kind of art.
constexpr std::int16_t kPathArt = 2;

// Where new art stands: inside a group, on top of what is in it.
constexpr std::int16_t kPlaceInsideOnTop = 3;

struct AIArtSuite {
    // The group that holds all art of a layer.
    //
    // When:   with a document open.
    // Owner:  the host; valid until the layer is deleted.
    // Errors: kHostBadParameter.
    HostError (*GetFirstArtOfLayer)(AILayerHandle layer, AIArtHandle* group);

    // New art of a kind, empty, in its place in the painting order relative to other art.
    //
    // When:   with a document open.
    // Owner:  the document; valid until the art is deleted.
    // Errors: kHostBadParameter (also for a kind or a place that the host does not know), kHostReadOnly,
    //         kHostOutOfMemory.
    HostError (*NewArt)(std::int16_t kind, std::int16_t place, AIArtHandle relative_to, AIArtHandle* art);
};
