#include "host/kit/listening_port.h"
#include "tests/support/scripted_peer.h"

#include <gtest/gtest.h>

#include <bit>
#include <string>

namespace {

using namespace vnt::host;
using vnt::program::read_socket_table;

constexpr std::uint16_t kPort = 4910; // 132E

const std::string kHeader = "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   "
                            "uid  timeout inode           "
                            "                                          \n";
const std::string kHeader6 = "  sl  local_address                         remote_address                     "
                             "   st tx_queue rx_queue tr "
                             "tm->when retrnsmt   uid  timeout inode\n";

std::string row(const std::string& local, const std::string& state,
                const std::string& remote = "00000000:0000")
{
    return "   0: " + local + " " + remote + " " + state +
           " 00000000:00000000 00:00000000 00000000     0        0 1110 1 000000009409d035 100 0 0 10 0      "
           "   "
           "             \n";
}

std::string row6(const std::string& local, const std::string& state)
{
    return row(local, state, "00000000000000000000000000000000:0000");
}

struct TableCase {
    const char* name;
    std::string table;
    Listening listening;
};
// clang-format off
const TableCase kTables[] = {
    {"AHeaderAloneIsNobody", kHeader, Listening::no},
    {"ListensOnLoopback", kHeader + row("0100007F:132E", "0A"), Listening::yes},
    {"ListensOnAnyAddress", kHeader + row("00000000:132E", "0A"), Listening::yes},
    {"ListensOnAnotherLoopbackAddress", kHeader + row("0200007F:132E", "0A"), Listening::no},
    {"ListensOnTheNetworksAddress", kHeader + row("0A01A8C0:132E", "0A"), Listening::no},
    {"ListensOnAnotherPort", kHeader + row("0100007F:132F", "0A"), Listening::no},
    {"ListensOnThePortsBytesSwapped", kHeader + row("0100007F:2E13", "0A"), Listening::no},
    {"AConnectionOfThePortIsNoListener", kHeader + row("0100007F:132E", "01", "0100007F:C001"), Listening::no},
    {"AConnectionToThePortIsNoListener", kHeader + row("0100007F:C001", "01", "0100007F:132E"), Listening::no},
    {"AClosedConnectionThatLingersIsNoListener", kHeader + row("0100007F:132E", "06"), Listening::no},
    {"ABoundSocketThatIsClosedIsNoListener", kHeader + row("0100007F:132E", "07"), Listening::no},
    {"TheLastOfSeveralRows",
     kHeader + row("00000000:07E8", "0A") + row("0100007F:132E", "06") + row("0100007F:132E", "0A"), Listening::yes},
    {"TheFirstOfSeveralRows",
     kHeader + row("0100007F:132E", "0A") + row("00000000:07E8", "0A"), Listening::yes},
    {"ATenThousandthRow", kHeader + [] {
         std::string rows;
         for (int i = 1; i < 10000; ++i)
             rows += row("0100007F:C001", "01", "0100007F:C002");
         return rows;
     }() + row("0100007F:132E", "0A"), Listening::yes},
    {"ListensOnAnyAddressOfIPv6",
     kHeader6 + row6("00000000000000000000000000000000:132E", "0A"), Listening::yes},
    {"ListensOnLoopbackWithinIPv6",
     kHeader6 + row6("0000000000000000FFFF00000100007F:132E", "0A"), Listening::yes},
    {"ListensOnAnyIPv4AddressWithinIPv6",
     kHeader6 + row6("0000000000000000FFFF000000000000:132E", "0A"), Listening::yes},
    {"ListensOnIPv6sOwnLoopback",
     kHeader6 + row6("00000000000000000000000001000000:132E", "0A"), Listening::no},
    {"ListensOnAnAddressThatEndsLikeLoopback",
     kHeader6 + row6("000080FE00000000000000000100007F:132E", "0A"), Listening::no},
    {"ListensOnTheOldFormOfLoopbackWithinIPv6",
     kHeader6 + row6("0000000000000000000000000100007F:132E", "0A"), Listening::no},
    {"ListensOnAnAddressThatOnlyLooksMapped",
     kHeader6 + row6("0000000001000000FFFF00000100007F:132E", "0A"), Listening::no},
    {"ListensOnAnAddressThatEndsInNothing",
     kHeader6 + row6("0120000D000000000000000000000000:132E", "0A"), Listening::no},
    {"AConnectionWithinIPv6IsNoListener",
     kHeader6 + row6("0000000000000000FFFF00000100007F:132E", "01"), Listening::no},
    {"NoTextIsNoTable", "", Listening::unknown},
    {"AnotherTextIsNoTable", "Permission denied\n" + row("0100007F:132E", "0A"), Listening::unknown},
    {"AShortRowLeavesItOpen", kHeader + "   0: 0100007F:132E\n", Listening::unknown},
    {"ARowOfAnotherPortBehindAShortOneLeavesItOpen",
     kHeader + "   0: 0100007F:132E\n" + row("0100007F:132F", "0A"), Listening::unknown},
    {"AListenerBesideARowThatIsNoneCounts",
     kHeader + "   0: 0100007F:132E\n" + row("0100007F:132E", "0A"), Listening::yes},
    {"ARowThatIsNoneBehindAListenerDoesNotUndoIt",
     kHeader + row("0100007F:132E", "0A") + "   1: 0100007F:132E\n", Listening::yes},
};
// clang-format on
class ListeningTable : public testing::TestWithParam<TableCase> {};

TEST_P(ListeningTable, TellsWhoListens)
{
    if (std::endian::native != std::endian::little)
        GTEST_SKIP() << "these tables were written by a little-endian machine";
    EXPECT_EQ(listening_in(read_socket_table(GetParam().table), kPort), GetParam().listening);
}
INSTANTIATE_TEST_SUITE_P(, ListeningTable, testing::ValuesIn(kTables),
                         [](const auto& row) { return row.param.name; });

struct SocketCase {
    const char* name;
    int family;
    in_addr_t address; // of IPv4; of IPv6 the any address
    bool listens;
    Listening listening;
};
const SocketCase kSockets[] = {
    {"OnLoopback",             AF_INET,  INADDR_LOOPBACK,     true,  Listening::yes},
    {"OnAnyAddress",           AF_INET,  INADDR_ANY,          true,  Listening::yes},
    {"OnAnotherLoopback",      AF_INET,  INADDR_LOOPBACK + 1, true,  Listening::no },
    {"BoundButNotListening",   AF_INET,  INADDR_LOOPBACK,     false, Listening::no },
    {"OnAnyAddressOfIPv6",     AF_INET6, INADDR_ANY,          true,  Listening::yes},
    {"BoundWithinIPv6AndMute", AF_INET6, INADDR_ANY,          false, Listening::no },
};
class ListeningSocket : public testing::TestWithParam<SocketCase> {};

TEST_P(ListeningSocket, IsFoundInTheSystemsTables)
{
    const SocketCase& is = GetParam();
    const support::Descriptor server(socket(is.family, SOCK_STREAM, 0));
    if (server.get() < 0)
        GTEST_SKIP() << "this machine has no sockets of that family";
    sockaddr_storage storage{};
    socklen_t size = sizeof(sockaddr_in);
    auto* const address = reinterpret_cast<sockaddr*>(&storage);
    if (is.family == AF_INET) {
        const sockaddr_in any_port = support::ipv4_address(0, is.address);
        std::copy_n(reinterpret_cast<const char*>(&any_port), size, reinterpret_cast<char*>(&storage));
    } else {
        storage.ss_family = AF_INET6;
        size = sizeof(sockaddr_in6);
    }
    ASSERT_EQ(bind(server.get(), address, size), 0);
    ASSERT_EQ(getsockname(server.get(), address, &size), 0);
    // Both families keep the port at the same place.
    const std::uint16_t port = ntohs(reinterpret_cast<const sockaddr_in*>(&storage)->sin_port);
    if (is.listens) {
        ASSERT_EQ(listen(server.get(), 1), 0);
    }
    EXPECT_EQ(listening_on(port), is.listening);
}
INSTANTIATE_TEST_SUITE_P(, ListeningSocket, testing::ValuesIn(kSockets),
                         [](const auto& row) { return row.param.name; });

TEST(ListeningSocketEnd, IsSeenAtOnce)
{
    support::Listener listener;
    const auto port = static_cast<std::uint16_t>(listener.port());
    ASSERT_EQ(listening_on(port), Listening::yes);
    listener.stop();
    EXPECT_EQ(listening_on(port), Listening::no);
}

TEST(ListeningSocketLook, IsNoConnection)
{
    const support::Listener listener;
    const support::Descriptor server(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0));
    sockaddr_in address = support::loopback(0);
    socklen_t size = sizeof address;
    ASSERT_EQ(bind(server.get(), reinterpret_cast<const sockaddr*>(&address), size), 0);
    ASSERT_EQ(listen(server.get(), 1), 0);
    ASSERT_EQ(getsockname(server.get(), reinterpret_cast<sockaddr*>(&address), &size), 0);
    ASSERT_EQ(listening_on(ntohs(address.sin_port)), Listening::yes);
    EXPECT_EQ(accept(server.get(), nullptr, nullptr), -1);
    EXPECT_EQ(errno, EAGAIN);
}

} // namespace
