#include "tests/support/scripted_peer.h"
#include "tests/support/temporary_folder.h"
#include "tools/program/socket_table.h"

#include <gtest/gtest.h>

#include <sys/un.h>

#include <algorithm>
#include <bit>
#include <filesystem>

namespace {

using namespace vnt::program;

const std::string kHeader =
    "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  timeout inode\n";

std::string row(const std::string& local, const std::string& state, int user = 0, int inode = 77)
{
    return "   0: " + local + " 00000000:0000 " + state + " 00000000:00000000 00:00000000 00000000 " +
           std::to_string(user) + "        0 " + std::to_string(inode) + " 1 000000009409d035 100 0 0 10 0\n";
}

std::string described(const SocketTable& table)
{
    std::string text;
    for (const SocketRow& one : table.rows)
        text += text_of(one.local) + " from " + text_of(one.remote) + (one.listens ? " listens" : "") +
                " user " + std::to_string(one.user) + " inode " + std::to_string(one.inode) + "; ";
    return text + (table.is_whole ? "whole" : "in part");
}

struct TableCase {
    const char* name;
    std::string table;
    const char* read;
};
// clang-format off
const TableCase kTables[] = {
    {"AHeaderAloneHasNone", kHeader, "whole"},
    {"AListener", kHeader + row("0100007F:132E", "0A", 1000, 4242),
     "127.0.0.1:4910 from 0.0.0.0:0 listens user 1000 inode 4242; whole"},
    {"LowerCaseDigitsAreTheSame", kHeader + row("0100007f:132e", "0a"),
     "127.0.0.1:4910 from 0.0.0.0:0 listens user 0 inode 77; whole"},
    {"AConnection",
     kHeader + "  11: 0100007F:132E 0200007F:C001 01 00000000:00000000 00:00000000 00000000 5 0 9 1 00 20 4 30 10 -1\n",
     "127.0.0.1:4910 from 127.0.0.2:49153 user 5 inode 9; whole"},
    {"OneThatNobodyHoldsAnyMore",
     kHeader + "   1: 0100007F:C001 0100007F:132E 05 00000000:00000000 03:00001770 00000000 0 0 0 3 000000\n",
     "127.0.0.1:49153 from 127.0.0.1:4910 user 0 inode 0; whole"},
    {"ALongNumberInFront",
     kHeader + "123456: 0100007F:132E 00000000:0000 0A 0:0 0:0 0 1 0 2\n",
     "127.0.0.1:4910 from 0.0.0.0:0 listens user 1 inode 2; whole"},
    {"ALastRowWithoutALineFeed",
     kHeader + "   0: 0100007F:132E 00000000:0000 0A 0:0 0:0 0 1 0 2",
     "127.0.0.1:4910 from 0.0.0.0:0 listens user 1 inode 2; whole"},
    {"TheLargestNumbers",
     kHeader + "   0: FFFFFFFF:FFFF 00000000:0000 0A 0:0 0:0 0 4294967295 0 18446744073709551615\n",
     "255.255.255.255:65535 from 0.0.0.0:0 listens user 4294967295 inode 18446744073709551615; whole"},
    {"IPv6sAnyAddress", kHeader + row("00000000000000000000000000000000:132E", "0A"),
     "[::]:4910 from 0.0.0.0:0 listens user 0 inode 77; whole"},
    {"IPv6sLoopback", kHeader + row("00000000000000000000000001000000:132E", "0A"),
     "[::1]:4910 from 0.0.0.0:0 listens user 0 inode 77; whole"},
    {"AnAddressOfIPv6", kHeader + row("B80D01200000000067452301EFCDAB89:132E", "0A"),
     "[2001:db8::123:4567:89ab:cdef]:4910 from 0.0.0.0:0 listens user 0 inode 77; whole"},
    {"IPv4WithinIPv6", kHeader + row("0000000000000000FFFF00000100007F:132E", "0A"),
     "127.0.0.1:4910 from 0.0.0.0:0 listens user 0 inode 77; whole"},
    {"SeveralInOrder", kHeader + row("0100007F:0001", "0A") + row("0100007F:0002", "06"),
     "127.0.0.1:1 from 0.0.0.0:0 listens user 0 inode 77; 127.0.0.1:2 from 0.0.0.0:0 user 0 inode 77; whole"},
    {"AShortRowIsLeftOut", kHeader + "   0: 0100007F:132E\n" + row("0100007F:0001", "0A"),
     "127.0.0.1:1 from 0.0.0.0:0 listens user 0 inode 77; in part"},
    {"ARowWithoutAnInodeIsLeftOut", kHeader + "   0: 0100007F:132E 00000000:0000 0A 0:0 0:0 0 1 0\n", "in part"},
    {"AnAddressThatIsNoNumberIsLeftOut", kHeader + row("0100007G:132E", "0A"), "in part"},
    {"AnAddressOfAnotherLengthIsLeftOut", kHeader + row("01007F:132E", "0A"), "in part"},
    {"AnAddressOfTwoWordsIsLeftOut", kHeader + row("0100007F0100007F:132E", "0A"), "in part"},
    {"NoPortIsLeftOut", kHeader + row("0100007F", "0A") + row("0100007F:", "0A"), "in part"},
    {"APortThatIsTooLargeIsLeftOut", kHeader + row("0100007F:1132E", "0A"), "in part"},
    {"AStateThatIsNoNumberIsLeftOut", kHeader + row("0100007F:132E", "LISTEN"), "in part"},
    {"AUserThatIsNoNumberIsLeftOut", kHeader + row("0100007F:132E", "0A", -1), "in part"},
    {"AnotherTextIsNoTable", "Permission denied\n" + row("0100007F:132E", "0A"), "in part"},
    {"NoTextIsNoTable", "", "in part"},
};
// clang-format on
class TableText : public testing::TestWithParam<TableCase> {};

TEST_P(TableText, IsRead)
{
    if (std::endian::native != std::endian::little)
        GTEST_SKIP() << "these tables were written by a little-endian machine";
    EXPECT_EQ(described(read_socket_table(GetParam().table)), GetParam().read);
}
INSTANTIATE_TEST_SUITE_P(, TableText, testing::ValuesIn(kTables),
                         [](const auto& row) { return row.param.name; });

TEST(SocketEnds, TakeConnectionsToLoopback)
{
    constexpr std::uint32_t kIPv4 = 0xFFFF;
    const SocketEnd takers[] = {
        {{0, 0, kIPv4, 0x7F000001}, 1}, // 127.0.0.1
        {{0, 0, kIPv4, 0},          2}, // 0.0.0.0
        {{0, 0, 0, 0},              3}, // ::
    };
    for (const SocketEnd& end : takers)
        EXPECT_TRUE(takes_loopback(end)) << text_of(end);
    const SocketEnd others[] = {
        {{0, 0, kIPv4, 0x7F000002},          1}, // 127.0.0.2
        {{0, 0, 0, 1},                       2}, // ::1
        {{0, 0, 0, 0x7F000001},              3}, // ::127.0.0.1
        {{0, 1, kIPv4, 0x7F000001},          4},
        {{0xFE800000, 0, kIPv4, 0x7F000001}, 5},
        {{0x20010DB8, 0, 0, 0},              6},
    };
    for (const SocketEnd& end : others)
        EXPECT_FALSE(takes_loopback(end)) << text_of(end);
}

// ------------------------------------------------------------------------------------------------- the system's

class Proc {
public:
    Proc() { std::filesystem::create_directories(folder_.path("net")); }
    void file(const char* name, const std::string& text) const { folder_.file(name, text); }
    std::string path(const char* name) const { return folder_.path(name); }
    std::string sockets() const { return described(system_sockets(folder_.path(""))); }

private:
    support::TemporaryFolder folder_;
};

TEST(SystemSockets, AreOfBothTables)
{
    const Proc proc;
    proc.file("net/tcp", kHeader + row("0100007F:0001", "0A"));
    proc.file("net/tcp6", kHeader + row("00000000000000000000000000000000:0002", "0A"));
    EXPECT_EQ(proc.sockets(), "127.0.0.1:1 from 0.0.0.0:0 listens user 0 inode 77; "
                              "[::]:2 from 0.0.0.0:0 listens user 0 inode 77; whole");
}

TEST(SystemSockets, AreWholeWithoutIPv6AndNotWithoutIPv4)
{
    const Proc proc;
    EXPECT_EQ(proc.sockets(), "in part");
    proc.file("net/tcp6", kHeader);
    EXPECT_EQ(proc.sockets(), "in part");
    proc.file("net/tcp", kHeader);
    EXPECT_EQ(proc.sockets(), "whole");
    proc.file("net/tcp6", kHeader + "   0: 0100007F:132E\n");
    EXPECT_EQ(proc.sockets(), "in part");
    std::filesystem::remove(proc.path("net/tcp6"));
    EXPECT_EQ(proc.sockets(), "whole");
    std::filesystem::create_directory(proc.path("net/tcp6")); // is there and cannot be read
    EXPECT_EQ(proc.sockets(), "in part");
}

struct FamilyCase {
    const char* name;
    int family;
    const char* address; // of loopback
};
const FamilyCase kFamilies[] = {
    {"IPv4", AF_INET,  "127.0.0.1"},
    {"IPv6", AF_INET6, "[::1]"    },
};

class Connection : public testing::TestWithParam<FamilyCase> {
protected:
    // A listener on a free port of loopback, or none where the machine has no such family.
    bool try_listen()
    {
        sockaddr_storage storage{};
        auto* const address = reinterpret_cast<sockaddr*>(&storage);
        socklen_t size = sizeof(sockaddr_in);
        if (GetParam().family == AF_INET) {
            reinterpret_cast<sockaddr_in&>(storage) = support::loopback(0);
        } else {
            auto& is = reinterpret_cast<sockaddr_in6&>(storage);
            is.sin6_family = AF_INET6;
            is.sin6_addr = in6addr_loopback;
            size = sizeof is;
        }
        if (listener_.get() < 0 || bind(listener_.get(), address, size) != 0)
            return false;
        return listen(listener_.get(), 1) == 0 && getsockname(listener_.get(), address, &size) == 0 &&
               connect(client_.get(), address, size) == 0;
    }

    support::Descriptor listener_{socket(GetParam().family, SOCK_STREAM, 0)};
    support::Descriptor client_{socket(GetParam().family, SOCK_STREAM, 0)};
};

TEST_P(Connection, HasBothItsEndsInTheTable)
{
    if (!try_listen())
        GTEST_SKIP() << "this machine has no sockets of that family";
    const support::Descriptor server(accept(listener_.get(), nullptr, nullptr));
    const SocketEnd own = own_end(client_.get());
    const SocketEnd peer = peer_end(client_.get());
    EXPECT_EQ(text_of(own), GetParam().address + (":" + std::to_string(own.port)));
    EXPECT_EQ(text_of(peer), GetParam().address + (":" + std::to_string(peer.port)));
    EXPECT_NE(own.port, peer.port);
    EXPECT_EQ(own_end(server.get()), peer);
    EXPECT_EQ(peer_end(server.get()), own);
    const SocketTable table = system_sockets();
    const auto holds = [&](const SocketEnd& local, const SocketEnd& remote) {
        return std::count_if(table.rows.begin(), table.rows.end(), [&](const SocketRow& one) {
            return one.local == local && one.remote == remote && one.inode != 0 && one.user == getuid() &&
                   !one.listens;
        });
    };
    EXPECT_EQ(holds(own, peer), 1);
    EXPECT_EQ(holds(peer, own), 1);
    EXPECT_TRUE(std::any_of(table.rows.begin(), table.rows.end(),
                            [&](const SocketRow& one) { return one.local == peer && one.listens; }));
}
INSTANTIATE_TEST_SUITE_P(, Connection, testing::ValuesIn(kFamilies),
                         [](const auto& row) { return row.param.name; });

TEST(SocketEnds, AreNothingOfWhatIsNoConnection)
{
    const support::Descriptor lonely(socket(AF_INET, SOCK_STREAM, 0));
    EXPECT_EQ(peer_end(lonely.get()), SocketEnd());
    int pair[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, pair), 0);
    const support::Descriptor one(pair[0]);
    const support::Descriptor other(pair[1]);
    EXPECT_EQ(peer_end(one.get()), SocketEnd());
    EXPECT_EQ(own_end(-1), SocketEnd());
}

} // namespace
