// What the plug-in calls of its host: the editor's SDK and Carbon where VNT_EDITOR_SDK is defined, else
// host/api. This header alone decides; the rest of the plug-in uses the names that both have.
//
// vnt_editor_sdk.h is written beside the SDK, from packaging/mac/vnt_editor_sdk.h: it includes the SDK's headers
// and Carbon, and defines the names below as they are defined here.
#pragma once

#ifdef VNT_EDITOR_SDK

#include "vnt_editor_sdk.h"

#else

#include "host/api/alerts.h"
#include "host/api/art_suite.h"
#include "host/api/basic_suite.h"
#include "host/api/blocks_suite.h"
#include "host/api/document_suite.h"
#include "host/api/document_view_suite.h"
#include "host/api/grid_suite.h"
#include "host/api/layer_suite.h"
#include "host/api/menu_suite.h"
#include "host/api/path_suite.h"
#include "host/api/plugin_entry.h"
#include "host/api/processes.h"
#include "host/api/strings.h"
#include "host/api/unicode_string.h"
#include "host/api/windows.h"

#include <cstdint>

namespace host_services {

inline SPBasicSuite& basic_suite(const HostMessage& message) { return *message.basic; }

inline HostPluginReference plugin_reference(const HostMessage& message) { return message.plugin; }

// size bytes in the platform's encoding. Throws ai::Error.
inline ai::UnicodeString platform_text(const char* bytes, std::int32_t size)
{
    return ai::UnicodeString(bytes, size);
}

inline HostError code_of(const ai::Error& error) { return error.code(); }

struct GridSettings {
    float spacing;
    std::int32_t subdivisions;
};

// Zeros where the host fails.
inline GridSettings grid_settings(const AIGridSuite& suite)
{
    HostGridSettings settings{};
    suite.GetSettings(&settings);
    return {settings.spacing, settings.subdivisions};
}

// The suite's fifth and sixth function: together they say whether the grid is in force in the view.
inline bool grid_flag_5(const AIGridSuite& suite, AIDocumentViewHandle view)
{
    return suite.IsShown(view) != 0;
}

inline bool grid_flag_6(const AIGridSuite& suite, AIDocumentViewHandle view)
{
    return suite.IsSnappedTo(view) != 0;
}

} // namespace host_services

#endif
