#include "tests/support/full_disk.h"
#include "tests/support/temporary_folder.h"
#include "tools/program/whole_file.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <string>

namespace {

using namespace vnt::program;
using support::content_of;
using support::TemporaryFolder;
using Names = std::set<std::string>;

const std::string kBytes("a\0b\r\n\xff", 6);

mode_t mode_of(const std::string& path)
{
    struct stat there {};
    EXPECT_EQ(stat(path.c_str(), &there), 0);
    return there.st_mode & 07777U;
}

TEST(WholeFile, ANewFileHoldsTheBytesAndStandsAlone)
{
    const TemporaryFolder folder;
    EXPECT_EQ(write_whole_file(folder.path("new"), kBytes), std::error_code());
    EXPECT_EQ(content_of(folder.path("new")), kBytes);
    EXPECT_EQ(folder.names(), Names{"new"});
}

TEST(WholeFile, ANewFileHasTheProcesssPermissions)
{
    const TemporaryFolder folder;
    const mode_t before = umask(0027);
    EXPECT_EQ(write_whole_file(folder.path("new"), kBytes), std::error_code());
    EXPECT_EQ(umask(before), 0027U);
    EXPECT_EQ(mode_of(folder.path("new")), 0640U);
}

TEST(WholeFile, AnOldFileIsReplacedAndKeepsItsPermissions)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("old", "something longer than the new bytes");
    ASSERT_EQ(chmod(path.c_str(), 0604), 0);
    EXPECT_EQ(write_whole_file(path, kBytes), std::error_code());
    EXPECT_EQ(content_of(path), kBytes);
    EXPECT_EQ(mode_of(path), 0604U);
    EXPECT_EQ(folder.names(), Names{"old"});
}

TEST(WholeFile, TheFileThatWasReadIsReplacedInPlaceAndKeepsItsPermissions)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("drawing", kBytes);
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    std::string content;
    ASSERT_EQ(read_whole_file(path, content), std::error_code());
    content += "and more";
    EXPECT_EQ(write_whole_file(path, content), std::error_code());
    EXPECT_EQ(content_of(path), kBytes + "and more");
    EXPECT_EQ(mode_of(path), 0640U);
    EXPECT_EQ(folder.names(), Names{"drawing"});
}

// The inode is another: who reads the old file while it is replaced has all of it.
TEST(WholeFile, WhoHasTheOldFileOpenKeepsItsBytes)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("drawing", "as it was");
    std::ifstream reader(path, std::ios::binary);
    ASSERT_EQ(reader.get(), 'a');
    EXPECT_EQ(write_whole_file(path, kBytes), std::error_code());
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), "s it was");
}

TEST(WholeFile, ALinkKeepsLeadingToItsFile)
{
    const TemporaryFolder folder;
    folder.file("file", "old");
    ASSERT_EQ(symlink("file", folder.path("link").c_str()), 0);
    EXPECT_EQ(write_whole_file(folder.path("link"), kBytes), std::error_code());
    EXPECT_EQ(content_of(folder.path("file")), kBytes);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
}

TEST(WholeFile, ANameWithoutFolderIsInThisFolder)
{
    const TemporaryFolder folder;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path(""));
    const std::error_code error = write_whole_file("plain", kBytes);
    std::filesystem::current_path(before);
    EXPECT_EQ(error, std::error_code());
    EXPECT_EQ(folder.names(), Names{"plain"});
}

TEST(WholeFile, AFullDiskLeavesTheOldFileAndNothingBesideIt)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("old", "as it was");
    std::error_code error;
    {
        const support::FullDisk disk(1000);
        error = write_whole_file(path, std::string(2000, 'x'));
    }
    EXPECT_EQ(error, std::errc::file_too_large);
    EXPECT_EQ(content_of(path), "as it was");
    EXPECT_EQ(folder.names(), Names{"old"});
}

TEST(WholeFile, AMissingFolderIsAnError)
{
    const TemporaryFolder folder;
    EXPECT_EQ(write_whole_file(folder.path("none/new"), kBytes), std::errc::no_such_file_or_directory);
    EXPECT_EQ(folder.names(), Names{});
}

TEST(WholeFile, AFolderIsNotReplaced)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("folder"));
    EXPECT_EQ(write_whole_file(folder.path("folder"), kBytes), std::errc::is_a_directory);
    EXPECT_EQ(folder.names(), Names{"folder"});
}

// A pipe, not one of the system's devices: a program that replaced those would do harm far beyond this test.
TEST(WholeFile, WhatIsNoFileIsWrittenToAndStays)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int reader = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(reader, 0);
    EXPECT_EQ(write_whole_file(path, kBytes), std::error_code());
    std::string got(2 * kBytes.size(), '\0');
    const ssize_t size = read(reader, got.data(), got.size());
    EXPECT_EQ(got.substr(0, size < 0 ? 0 : static_cast<std::size_t>(size)), kBytes);
    close(reader);
    EXPECT_TRUE(std::filesystem::is_fifo(path));
    EXPECT_EQ(folder.names(), Names{"pipe"});
}

TEST(WholeFile, IsReadAsItWasWritten)
{
    const TemporaryFolder folder;
    std::string content = "to be replaced";
    const std::string path = folder.file("a", kBytes);
    EXPECT_EQ(read_whole_file(path, content), std::error_code());
    EXPECT_EQ(content, kBytes);
}

TEST(WholeFile, ThatIsMissingCannotBeRead)
{
    std::string content;
    EXPECT_EQ(read_whole_file("/nowhere/at/all", content), std::errc::no_such_file_or_directory);
}

} // namespace
