// What all services of a host have in common: error codes, booleans, coordinates and handles.
//
// Space:  artwork coordinates are y up, horizontal before vertical; view coordinates are pixels of the
//         document's view, y down, vertical before horizontal.
// Units:  artwork in points, as 32-bit floats; views in pixels, as 16-bit integers.
// Errors: every service that can fail returns a HostError, and writes nothing through its pointers when it
//         does. Each declaration lists the codes that it returns.
// Owner:  a host gives the structures behind the handles their members; nobody else looks into them. A handle
//         belongs to the host, and stays valid until the message in which it was handed out is answered,
//         unless its declaration says otherwise.
// When:   while the plug-in answers a message, on the thread that sent it.
#pragma once

#include <cstdint>

using HostError = std::int32_t;
using HostBoolean = std::uint8_t; // 0 is false, anything else true

constexpr HostError kHostNoError = 0;
constexpr HostError kHostBadParameter =
    1;                                   // a null pointer, a handle of something else, a value never allowed
constexpr HostError kHostNoSuite = 2;    // no suite of that name and version
constexpr HostError kHostNoDocument = 3; // no document is open
constexpr HostError kHostOutOfRange = 4; // a number past what is there
constexpr HostError kHostOutOfMemory = 5;
constexpr HostError kHostWrongTime = 6; // the service is not to be had now
constexpr HostError kHostReadOnly = 7;  // the layer is locked or hidden

struct AIPoint {
    std::int16_t v;
    std::int16_t h;
};

struct AIRealPoint {
    float h;
    float v;
};

static_assert(sizeof(AIPoint) == 4 && sizeof(AIRealPoint) == 8, "nothing stands between the coordinates");

using AIDocumentViewHandle = struct HostView*;
using AILayerHandle = struct HostLayer*;
using AIArtHandle = struct HostArt*;
using AIMenuItemHandle = struct HostMenuItem*;
using HostPluginReference = struct HostPlugin*;

// Stands in a table of functions for one whose place alone is known.
using HostReservedFunction = void (*)();
