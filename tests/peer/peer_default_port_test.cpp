// The one test that takes the port where clients look for the sketch application.
#include "tests/peer/peer_program.h"

#include <gtest/gtest.h>

namespace {

using namespace peer_test;

TEST(PeerDefaultPort, IsWhereClientsLook)
{
    Program program({"--fault", "stall"});
    EXPECT_EQ(program.port(), 4910U);
    RawClient client(4910);
    EXPECT_TRUE(client.is_connected());
    client.send("request\n");
    client.close();
    EXPECT_EQ(program.end().status, 0);
}

} // namespace
