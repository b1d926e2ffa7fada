// What a filled-in vnt_editor_sdk.h adds to packaging/mac/vnt_editor_sdk.h, here over host/api.
#pragma once

#include "host/api/alerts.h"
#include "host/api/art_suite.h"
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
inline ai::UnicodeString platform_text(const char* bytes, std::int32_t size)
{
    return ai::UnicodeString(bytes, size);
}
inline HostError code_of(const ai::Error& error) { return error.code(); }

} // namespace host_services
