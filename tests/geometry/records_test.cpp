#include "Source/geometry/records.h"
#include <gtest/gtest.h>
TEST(x, y) { EXPECT_EQ(vnt::Matrix().m33, 1.0); }
