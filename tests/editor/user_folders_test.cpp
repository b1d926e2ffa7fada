#include "host/editor/user_folders.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <map>

namespace {

using namespace vnt::host;
using Variables = std::map<std::string, std::string>;

Environment environment_of(const Variables& variables)
{
    return [variables](const std::string& name) -> std::optional<std::string> {
        const auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    };
}

// The three folders, or the problem.
std::string folders_of(const Variables& variables)
{
    const auto folders = user_folders(environment_of(variables));
    if (const auto* problem = std::get_if<Problem>(&folders))
        return problem->sentence;
    const auto& [state, data, runtime] = std::get<0>(folders);
    return state + " " + data + " " + runtime;
}

struct FoldersCase {
    const char* name;
    Variables variables;
    std::string folders;
};
// clang-format off
const FoldersCase kFolders[] = {
    {"AreInTheHomeFolder", {{"HOME", "/home/u"}},
     "/home/u/.local/state/vant /home/u/.local/share/vant /home/u/.local/state/vant"},
    {"AreWhereTheVariablesSay",
     {{"HOME", "/home/u"}, {"XDG_STATE_HOME", "/s"}, {"XDG_DATA_HOME", "/d"}, {"XDG_RUNTIME_DIR", "/run/user/1"}},
     "/s/vant /d/vant /run/user/1/vant"},
    {"NeedNoHomeThen", {{"XDG_STATE_HOME", "/s"}, {"XDG_DATA_HOME", "/d"}}, "/s/vant /d/vant /s/vant"},
    {"HaveNoDoubleSlash", {{"HOME", "/home/u/"}, {"XDG_RUNTIME_DIR", "/run//"}},
     "/home/u/.local/state/vant /home/u/.local/share/vant /run/vant"},
    {"MayBeInTheOutermostFolder", {{"HOME", "/home/u"}, {"XDG_DATA_HOME", "/"}},
     "/home/u/.local/state/vant /vant /home/u/.local/state/vant"},
    {"AreNotWhereAnEmptyVariableSays",
     {{"HOME", "/home/u"}, {"XDG_STATE_HOME", ""}, {"XDG_RUNTIME_DIR", ""}},
     "/home/u/.local/state/vant /home/u/.local/share/vant /home/u/.local/state/vant"},
    {"AreNotBelowTheWorkingFolder", {{"HOME", "/home/u"}, {"XDG_DATA_HOME", "data"}, {"XDG_RUNTIME_DIR", "./run"}},
     "/home/u/.local/state/vant /home/u/.local/share/vant /home/u/.local/state/vant"},
    {"AreUnknownWithoutAHome", {},
     "cannot find the user's folders: neither HOME nor XDG_STATE_HOME names a folder from / on; set HOME to the "
     "home folder"},
    {"AreUnknownWithAHomeOfNoFolder", {{"HOME", "home"}, {"XDG_STATE_HOME", "/s"}},
     "cannot find the user's folders: neither HOME nor XDG_DATA_HOME names a folder from / on; set HOME to the "
     "home folder"},
};
// clang-format on
class UserFoldersTable : public testing::TestWithParam<FoldersCase> {};
TEST_P(UserFoldersTable, Stand) { EXPECT_EQ(folders_of(GetParam().variables), GetParam().folders); }
INSTANTIATE_TEST_SUITE_P(, UserFoldersTable, testing::ValuesIn(kFolders),
                         [](const auto& row) { return row.param.name; });

TEST(UserFolders, AreThoseOfTheProcesssEnvironment)
{
    ASSERT_EQ(setenv("XDG_DATA_HOME", "/tmp/of the test", 1), 0);
    EXPECT_EQ(process_environment()("XDG_DATA_HOME"), "/tmp/of the test");
    ASSERT_EQ(unsetenv("XDG_DATA_HOME"), 0);
    EXPECT_EQ(process_environment()("XDG_DATA_HOME"), std::nullopt);
}

mode_t mode_of(const std::string& path)
{
    struct stat there {};
    EXPECT_EQ(stat(path.c_str(), &there), 0);
    return there.st_mode & 07777U;
}

std::string sentence_of(const std::optional<Problem>& problem) { return problem ? problem->sentence : ""; }

TEST(UserFolder, IsMadeForThisUserAloneWithThoseAroundIt)
{
    const support::TemporaryFolder folder;
    EXPECT_EQ(sentence_of(make_folder(folder.path("a/b/vant"))), "");
    EXPECT_EQ(mode_of(folder.path("a")), 0700U);
    EXPECT_EQ(mode_of(folder.path("a/b")), 0700U);
    EXPECT_EQ(mode_of(folder.path("a/b/vant")), 0700U);
}

TEST(UserFolder, ThatIsThereStaysAsItIs)
{
    const support::TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("vant"));
    ASSERT_EQ(chmod(folder.path("vant").c_str(), 0751), 0);
    folder.file("vant/file", "content");
    EXPECT_EQ(sentence_of(make_folder(folder.path("vant"))), "");
    EXPECT_EQ(mode_of(folder.path("vant")), 0751U);
    EXPECT_EQ(support::content_of(folder.path("vant/file")), "content");
}

TEST(UserFolder, MayBeALinkToOne)
{
    const support::TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("elsewhere"));
    std::filesystem::create_directory_symlink(folder.path("elsewhere"), folder.path("link"));
    EXPECT_EQ(sentence_of(make_folder(folder.path("link/vant"))), "");
    EXPECT_TRUE(std::filesystem::is_directory(folder.path("elsewhere/vant")));
}

TEST(UserFolder, CannotTakeAFilesPlace)
{
    const support::TemporaryFolder folder;
    const std::string file = folder.file("vant", "content");
    EXPECT_EQ(sentence_of(make_folder(file)),
              "cannot make the folder " + file + ": File exists; make it by hand, or free the place");
    EXPECT_EQ(sentence_of(make_folder(file + "/kept")),
              "cannot make the folder " + file + "/kept (at " + file +
                  "): File exists; make it by hand, or free the place");
    EXPECT_EQ(support::content_of(file), "content");
}

TEST(UserFolder, OfTheSessionGivesWayToThatOfTheState)
{
    const support::TemporaryFolder folder;
    const std::string file = folder.file("run", "");
    const auto made = make_user_folders({folder.path("s/vant"), folder.path("d/vant"), file + "/vant"});
    ASSERT_EQ(made.index(), 0U);
    EXPECT_EQ(std::get<0>(made).runtime, folder.path("s/vant"));
    EXPECT_TRUE(std::filesystem::is_directory(folder.path("s/vant")));
    EXPECT_TRUE(std::filesystem::is_directory(folder.path("d/vant")));
}

TEST(UserFolder, OfTheSessionIsUsedWhereItCanBeMade)
{
    const support::TemporaryFolder folder;
    const auto made = make_user_folders({folder.path("s"), folder.path("d"), folder.path("r")});
    ASSERT_EQ(made.index(), 0U);
    EXPECT_EQ(std::get<0>(made).runtime, folder.path("r"));
    EXPECT_EQ(folder.names(), (std::set<std::string>{"d", "r", "s"}));
}

TEST(UserFolder, OfTheDataMustBeThere)
{
    const support::TemporaryFolder folder;
    const std::string file = folder.file("d", "");
    const auto made = make_user_folders({folder.path("s"), file, folder.path("r")});
    ASSERT_EQ(made.index(), 1U);
    EXPECT_EQ(std::get<1>(made).sentence,
              "cannot make the folder " + file + ": File exists; make it by hand, or free the place");
}

} // namespace
