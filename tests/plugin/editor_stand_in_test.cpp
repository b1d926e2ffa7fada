// The plug-in behind VNT_EDITOR_SDK, over a stand-in of the SDK: it compiles, and finds the grid suite's
// functions by their place.
#include "Source/plugin/vantPlugin.h"
#include "tests/plugin/recording_host.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#ifndef VNT_EDITOR_SDK
#error "this test is of the other branch"
#endif

namespace {

using Lines = std::vector<std::string>;

class EditorStandIn : public testing::Test {
protected:
    EditorStandIn()
    {
        HostMessage message = recording.message();
        plugin.AcquireSuites(&message);
        recording.calls.clear();
    }

    plugin_tests::RecordingHost recording;
    vantPlugin plugin;
};

TEST_F(EditorStandIn, ReadsTheGridFromTheFirstPlace)
{
    recording.grid_spacing = 72;
    recording.grid_subdivisions = 8;
    vnt::ModelSpaceInfo record{vnt::Matrix(), vnt::Matrix()};
    plugin.CreateGridSpace(record);
    EXPECT_EQ(record.derivational_scale_factor, 8);
    EXPECT_EQ(record.unit_grid_space_to_model_space_mapping_matrix.m11, -9.0);
    EXPECT_EQ(recording.calls, Lines{"GridSettings"});
}

TEST_F(EditorStandIn, AsksForTheFlagsAtTheFifthAndSixthPlace)
{
    recording.grid_snaps = true;
    EXPECT_FALSE(host_services::grid_flag_5(*plugin.grid_suite, nullptr));
    EXPECT_TRUE(host_services::grid_flag_6(*plugin.grid_suite, nullptr));
    const Lines expected = {"IsGridShown null", "IsSnappedToGrid null"};
    EXPECT_EQ(recording.calls, expected);
}

} // namespace
