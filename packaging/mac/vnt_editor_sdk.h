// The editor's SDK under the names that the plug-in uses. Never run on a Mac, and written without the SDK: the
// tests alone compile it, over a stand-in. Copy it beside the SDK, and fill it in as docs/building-on-a-mac.md
// says.
#pragma once

#include <Carbon/Carbon.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

// 1. Here come the SDK's headers of the nine suites, of the basic suite, of plug-in messages and of
//    ai::UnicodeString and ai::Error. They declare sAIUnicodeString and sSPBlocks.
#error "include the SDK's headers here, fill in 2 and 3, and take out this line"

// 2. Names that the SDK may spell in another way; what stands right of the sign is the SDK's.
// using HostError = ...;             the 32-bit error code
// using HostBoolean = ...;           the boolean that GetShowPageTiling fills
// using HostMessage = ...;           the record that comes with a message
// using HostPluginReference = ...;   the plug-in, as AddMenuItem takes it
// using HostGridSettings = ...;      the record that the grid suite's first function fills

namespace host_services {

// 3. The two members of a message, and the two string classes.
// inline SPBasicSuite& basic_suite(const HostMessage& message) { return *message. ... ; }
// inline HostPluginReference plugin_reference(const HostMessage& message) { return message. ... ; }
// inline ai::UnicodeString platform_text(const char* bytes, std::int32_t size) { ... }
// inline HostError code_of(const ai::Error& error) { ... }

// The grid suite's functions are called by their place in its table, counted from 1.
template <class Function>
Function* function_at(const AIGridSuite& suite, std::size_t place)
{
    Function* function = nullptr;
    std::memcpy(&function, reinterpret_cast<const char*>(&suite) + (place - 1) * sizeof function,
                sizeof function);
    return function;
}

struct GridSettings {
    float spacing;
    std::int32_t subdivisions;
};

// The third and fourth 32-bit words of the record; zeros where the host fails.
inline GridSettings grid_settings(const AIGridSuite& suite)
{
    HostGridSettings record{};
    function_at<HostError(HostGridSettings*)>(suite, 1)(&record);
    const char* const words = reinterpret_cast<const char*>(&record);
    GridSettings settings;
    std::memcpy(&settings.spacing, words + 8, sizeof settings.spacing);
    std::memcpy(&settings.subdivisions, words + 12, sizeof settings.subdivisions);
    return settings;
}

inline bool grid_flag_5(const AIGridSuite& suite, AIDocumentViewHandle view)
{
    return function_at<HostBoolean(AIDocumentViewHandle)>(suite, 5)(view) != 0;
}

inline bool grid_flag_6(const AIGridSuite& suite, AIDocumentViewHandle view)
{
    return function_at<HostBoolean(AIDocumentViewHandle)>(suite, 6)(view) != 0;
}

} // namespace host_services
