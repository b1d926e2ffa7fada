// A program that does not export the services, as this one: bundles would not find them.
#include "host/kit/plugin_bundle.h"

#include <gtest/gtest.h>

#include <variant>

namespace {

TEST(HiddenServices, AreToldBeforeABundleIsLoaded)
{
    const auto loaded = vnt::host::PluginBundle::load(VNT_PLUGIN_BUNDLE);
    const auto* const problem = std::get_if<vnt::host::Problem>(&loaded);
    ASSERT_NE(problem, nullptr);
    EXPECT_EQ(problem->sentence, "cannot load plug-ins: this program was built without exporting "
                                 "ActiveNonFloatingWindow; build it anew");
}

} // namespace
