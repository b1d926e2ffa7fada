// Which descriptors a link closes, and in which order: close is this program's own here.
#include "tests/vntClientCom/link_end.h"

#include <gtest/gtest.h>

#include <sys/syscall.h>
#include <unistd.h>

#include <optional>
#include <vector>

using link_end::TestLink;
using support::ParkedInput;
using support::SocketPair;

namespace {

std::vector<int>* noted = nullptr;

} // namespace

extern "C" int close(int descriptor)
{
    if (noted != nullptr)
        noted->push_back(descriptor);
    return static_cast<int>(syscall(SYS_close, descriptor));
}

namespace {

// What action closes, in order.
template <class Action>
std::vector<int> closed_by(Action action)
{
    std::vector<int> closed;
    noted = &closed;
    action();
    noted = nullptr;
    return closed;
}

class ClosingOrder : public testing::Test {
protected:
    ParkedInput parked;
    SocketPair pair;
    std::optional<TestLink> link{std::in_place, pair.link.release()};
    int data = link->data_socket;
    int listening = link->listen_socket = pair.peer.release();
    const std::vector<int> listening_first{listening, data};
    const std::vector<int> data_first{data, listening};
};

TEST_F(ClosingOrder, OfTheEndIsTheListeningSocketFirst)
{
    EXPECT_EQ(closed_by([&] { link.reset(); }), listening_first);
}

TEST_F(ClosingOrder, OfADisconnectIsTheDataSocketFirst)
{
    EXPECT_EQ(closed_by([&] { link->disconnect(); }), data_first);
    EXPECT_EQ(closed_by([&] { link.reset(); }), listening_first);
}

TEST(Closing, OfAFailedConnectionIsItsSocketOnce)
{
    ParkedInput parked;
    TestLink link;
    const std::vector<int> closed = closed_by([&] { link.connect_server(1, "no address"); });
    EXPECT_EQ(closed, std::vector<int>{link.data_socket});
}

} // namespace
