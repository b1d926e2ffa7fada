#include "host/editor/bus_address.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using vnt::host::session_bus_address;

struct AddressCase {
    const char* name;
    const char* address;        // null: not set
    const char* runtime_folder; // DIR is a folder with the socket; null: not set
    const char* expected;       // null: none
};
// clang-format off
const AddressCase kAddresses[] = {
    {"IsTheOneThatIsSet", "unix:path=/run/user/1000/bus", nullptr, "unix:path=/run/user/1000/bus"},
    {"IsTheOneThatIsSetThoughTheRuntimeFolderHasOne", "unix:abstract=/tmp/dbus-1", "DIR/taken",
     "unix:abstract=/tmp/dbus-1"},
    {"KeepsAllEntriesOfAList", "unix:path=/a,guid=12;tcp:host=localhost,port=4", nullptr,
     "unix:path=/a,guid=12;tcp:host=localhost,port=4"},
    {"LosesTheEntriesThatStartABus", "autolaunch:;unix:path=/a;unixexec:path=dbus;autolaunch:scope=*user",
     nullptr, "unix:path=/a"},
    {"KeepsWhatOnlyBeginsLikeOneThatStartsABus", "autolaunched:path=/a", nullptr, "autolaunched:path=/a"},
    {"LosesEmptyEntries", ";unix:path=/a;;", nullptr, "unix:path=/a"},
    {"IsNoneWhenABusWouldBeStarted", "autolaunch:", "DIR/taken", nullptr},
    {"IsTheRuntimeFoldersWhenNoneIsSet", nullptr, "DIR/taken", "unix:path=DIR/taken/bus"},
    {"IsTheRuntimeFoldersWhenAnEmptyOneIsSet", "", "DIR/taken", "unix:path=DIR/taken/bus"},
    {"WritesWhatIsNotPlainAsNumbers", nullptr, "DIR/a b,c=\xC3\xA9;",
     "unix:path=DIR/a%20b%2cc%3d%c3%a9%3b/bus"},
    {"IsNoneWhenTheFolderHasNoSocket", nullptr, "DIR/empty", nullptr},
    {"IsNoneWhenTheSocketIsAFile", nullptr, "DIR/file", nullptr},
    {"IsNoneWhenTheFolderIsNamedFromHere", nullptr, "taken", nullptr},
    {"IsNoneWhenTheFolderIsEmptyText", nullptr, "", nullptr},
    {"IsNoneWhenNothingIsSet", nullptr, nullptr, nullptr},
};
// clang-format on

std::string replaced(std::string text, const std::string& folder)
{
    if (const std::size_t at = text.find("DIR"); at != text.npos)
        text.replace(at, 3, folder);
    return text;
}

void make_socket(const std::string& folder)
{
    std::filesystem::create_directory(folder);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, (folder + "/bus").c_str(), sizeof address.sun_path - 1);
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    const void* const bytes = &address;
    ASSERT_EQ(bind(listener, static_cast<const sockaddr*>(bytes), sizeof address), 0);
    close(listener); // its name stays
}

class BusAddress : public testing::TestWithParam<AddressCase> {};
TEST_P(BusAddress, OfTheSession)
{
    const support::TemporaryFolder folder;
    const std::string place = std::filesystem::path(folder.path("x")).parent_path();
    make_socket(place + "/taken");
    make_socket(place + "/a b,c=\xC3\xA9;");
    std::filesystem::create_directory(place + "/empty");
    std::filesystem::create_directory(place + "/file");
    std::ofstream(place + "/file/bus") << "a file";

    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(place);

    const AddressCase& row = GetParam();
    const std::string runtime = row.runtime_folder == nullptr ? "" : replaced(row.runtime_folder, place);
    const auto address =
        session_bus_address(row.address, row.runtime_folder == nullptr ? nullptr : runtime.c_str());
    if (row.expected == nullptr)
        EXPECT_EQ(address, std::nullopt);
    else
        EXPECT_EQ(address, replaced(row.expected, place));
    std::filesystem::current_path(before);
}
INSTANTIATE_TEST_SUITE_P(, BusAddress, testing::ValuesIn(kAddresses),
                         [](const auto& row) { return row.param.name; });

} // namespace
