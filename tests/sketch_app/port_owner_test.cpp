#include "sketch/app/port_owner.h"
#include "tests/support/scripted_peer.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

const std::string kHeader =
    "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  "
    "timeout inode\n";

std::string row(const std::string& local, const std::string& state, int user = 0, int inode = 77)
{
    return "   0: " + local + " 00000000:0000 " + state + " 00000000:00000000 00:00000000 00000000 " +
           std::to_string(user) + "        0 " + std::to_string(inode) + " 1 000000009409d035 100 0 0 10 0\n";
}

// ------------------------------------------------------------------------------------------------------- owners

// A system's folder of processes.
class Proc {
public:
    Proc() { fs::create_directories(folder_.path("net")); }

    void table(const std::string& rows) const { folder_.file("net/tcp", kHeader + rows); }
    void table6(const std::string& rows) const { folder_.file("net/tcp6", kHeader + rows); }

    void process(int number, const std::string& command, const std::string& program, int inode) const
    {
        const std::string name = std::to_string(number);
        fs::create_directories(folder_.path(name + "/fd"));
        folder_.file(name + "/comm", command + "\n");
        fs::create_symlink(program, folder_.path(name + "/exe"));
        fs::create_symlink("/dev/null", folder_.path(name + "/fd/0"));
        fs::create_symlink("socket:[" + std::to_string(inode) + "]", folder_.path(name + "/fd/7"));
    }

    std::string owner(quint16 port) const
    {
        const auto found = portOwner(port, QString::fromStdString(folder_.path("")));
        if (!found)
            return "nobody";
        return found->program.toStdString() + "/" + std::to_string(found->process) + "/" +
               found->user.toStdString() + (found->isOwnUser ? "/own" : "");
    }

private:
    support::TemporaryFolder folder_;
};

constexpr int kNobodysNumber = 1999999999; // a user without a name

TEST(PortOwner, HasProgramProcessAndUser)
{
    const Proc proc;
    proc.table(row("0100007F:132E", "0A", kNobodysNumber, 4242));
    proc.process(12, "bystander", "/usr/bin/bystander", 4241);
    proc.process(345, "vant-peer", "/usr/bin/vant-peer", 4242);
    EXPECT_EQ(proc.owner(4910), "vant-peer/345/1999999999");
    EXPECT_EQ(proc.owner(4911), "nobody");
}

TEST(PortOwner, HasTheNameOfItsUser)
{
    const Proc proc;
    proc.table(row("0100007F:132E", "0A", 0, 4242));
    EXPECT_EQ(proc.owner(4910), getuid() == 0 ? "/0/root/own" : "/0/root");
}

TEST(PortOwner, IsWhoHasMadeTheSocketNotWhoInheritedIt)
{
    const Proc proc;
    proc.table(row("0100007F:132E", "0A", kNobodysNumber, 4242));
    for (const int process : {900, 77, 1234})
        proc.process(process, "p" + std::to_string(process), "/bin/x", 4242);
    EXPECT_EQ(proc.owner(4910), "p77/77/1999999999");
}

TEST(PortOwner, HasItsWholeNameWhereTheSystemCutsItShort)
{
    const Proc proc;
    proc.table(row("0100007F:132E", "0A", kNobodysNumber, 1) + row("0100007F:132F", "0A", kNobodysNumber, 2) +
               row("0100007F:1330", "0A", kNobodysNumber, 3));
    proc.process(1, "a-very-long-pro", "/opt/a-very-long-program", 1);
    proc.process(2, "a-very-long-scr", "/usr/bin/python3.11", 2);
    proc.process(3, "script.py", "/usr/bin/python3.11", 3);
    EXPECT_EQ(proc.owner(4910), "a-very-long-program/1/1999999999");
    EXPECT_EQ(proc.owner(4911), "a-very-long-scr/2/1999999999");
    EXPECT_EQ(proc.owner(4912), "script.py/3/1999999999");
}

TEST(PortOwner, IsAListenerThatLoopbackReaches)
{
    const Proc proc;
    proc.table(row("0100007F:0001", "01", kNobodysNumber, 1) + row("0200007F:0002", "0A", kNobodysNumber, 2) +
               row("00000000:0003", "0A", kNobodysNumber, 3));
    proc.table6(row("00000000000000000000000000000000:0004", "0A", kNobodysNumber, 4) +
                row("00000000000000000000000001000000:0005", "0A", kNobodysNumber, 5));
    for (int inode = 1; inode <= 5; ++inode)
        proc.process(inode, "p", "/bin/p", inode);
    EXPECT_EQ(proc.owner(1), "nobody"); // a connection
    EXPECT_EQ(proc.owner(2), "nobody"); // 127.0.0.2
    EXPECT_EQ(proc.owner(3), "p/3/1999999999");
    EXPECT_EQ(proc.owner(4), "p/4/1999999999");
    EXPECT_EQ(proc.owner(5), "nobody"); // ::1
}

TEST(PortOwner, IsNobodyWhereTheSystemHasNoTable)
{
    const support::TemporaryFolder empty;
    EXPECT_FALSE(portOwner(4910, QString::fromStdString(empty.path(""))));
}

TEST(PortOwner, IsFoundInTheRealSystem)
{
    const support::Listener listener;
    const auto owner = portOwner(static_cast<quint16>(listener.port()));
    ASSERT_TRUE(owner);
    EXPECT_EQ(owner->program, "port_owner_test");
    EXPECT_EQ(owner->process, getpid());
    EXPECT_TRUE(owner->isOwnUser);
}

} // namespace
