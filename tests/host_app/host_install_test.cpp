// vant-host install --user and uninstall --user, in homes that the tests make.
//
// Without --user it works on the folder of the whole system, which no test may touch.
#include "tests/editor/surroundings.h"
#include "tests/host_app/host_program.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace {

using editor_test::Surroundings;
using host_app_test::ProgramEnd;
using host_app_test::Workplace;
using Names = std::set<std::string>;
namespace fs = std::filesystem;

const Names kInstalled = {"vant-place", "vant-place.inx", "vant-start", "vant-start.inx"};

constexpr const char* kDone = "\nStart Inkscape anew; the commands are in Extensions > View Utilities.\n";

Names names_in(const fs::path& folder)
{
    Names names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.insert(entry.path().filename().string());
    return names;
}

std::string packaged(const std::string& name) { return support::content_of(VNT_EXTENSIONS "/" + name); }

// A user whose home is DIR/home, and of whose variables no other says where the editor's folder is.
class HostInstall : public testing::Test {
protected:
    ProgramEnd install() const { return place.run({"install", "--user"}); }
    ProgramEnd uninstall() const { return place.run({"uninstall", "--user"}); }
    fs::path in_folder(const std::string& name) const { return folder / name; }

    // Puts a file of somebody else's into the folder.
    void leave(const std::string& name, const std::string& content = "mine\n") const
    {
        fs::create_directories(folder);
        place.file("home/.config/inkscape/extensions/vant/" + name, content);
    }

    Workplace place;
    fs::path folder = place.path("home/.config/inkscape/extensions/vant");
    const std::string told = "DIR/home/.config/inkscape/extensions/vant";
    Surroundings surroundings{
        {{"HOME", place.path("home")},
         {"XDG_CONFIG_HOME", std::nullopt},
         {"INKSCAPE_PROFILE_DIR", std::nullopt}}
    };
};

TEST_F(HostInstall, PutsTwoFilesAndTwoLinksIntoAFolderOfItsOwn)
{
    EXPECT_EQ(install(), (ProgramEnd{0, "installed in " + told + kDone, ""}));
    EXPECT_EQ(names_in(folder), kInstalled);
}

TEST_F(HostInstall, WritesTheFilesThatThePackagesHave)
{
    ASSERT_EQ(install().status, 0);
    for (const char* const name : {"vant-start.inx", "vant-place.inx"})
        EXPECT_EQ(support::content_of(in_folder(name).string()), packaged(name));
}

TEST_F(HostInstall, LinksToThisVeryProgram)
{
    ASSERT_EQ(install().status, 0);
    for (const char* const name : {"vant-start", "vant-place"})
        EXPECT_EQ(fs::read_symlink(in_folder(name)), fs::canonical(VNT_HOST_PROGRAM));
}

std::string first_line_of(const std::string& command)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    char line[256] = "";
    return pipe && std::fgets(line, sizeof line, pipe.get()) != nullptr ? line : "";
}

TEST_F(HostInstall, MakesEachLinkTheCommandOfItsName)
{
    ASSERT_EQ(install().status, 0);
    EXPECT_EQ(first_line_of(in_folder("vant-start").string() + " --help"),
              "usage: vant-host extension [OPTION]... FILE\n");
    EXPECT_EQ(first_line_of(in_folder("vant-place").string() + " --help"),
              "usage: vant-host place ARTWORK.svg -o OUT.svg [--art FILE]\n");
}

TEST_F(HostInstall, DoesTheSameASecondTime)
{
    const ProgramEnd first = install();
    EXPECT_EQ(install(), first);
    EXPECT_EQ(names_in(folder), kInstalled);
    EXPECT_EQ(fs::read_symlink(in_folder("vant-start")), fs::canonical(VNT_HOST_PROGRAM));
}

TEST_F(HostInstall, ReplacesWhatAnOlderInstallationLeft)
{
    leave("vant-start.inx", "<inkscape-extension><id>org.vant.start</id></inkscape-extension>\n");
    leave("vant-place.inx", "<inkscape-extension><id>org.vant.place</id></inkscape-extension>\n");
    fs::create_symlink("/nowhere/bin/vant-host", in_folder("vant-start"));
    EXPECT_EQ(install().status, 0);
    EXPECT_EQ(names_in(folder), kInstalled);
    EXPECT_EQ(fs::read_symlink(in_folder("vant-start")), fs::canonical(VNT_HOST_PROGRAM));
    EXPECT_EQ(support::content_of(in_folder("vant-start.inx").string()), packaged("vant-start.inx"));
}

TEST_F(HostInstall, TakesAllOfItAway)
{
    ASSERT_EQ(install().status, 0);
    EXPECT_EQ(uninstall(), (ProgramEnd{0, "removed from " + told + "\n", ""}));
    EXPECT_EQ(names_in(folder.parent_path()), Names{});
}

TEST_F(HostInstall, FindsNothingToTakeAwayASecondTime)
{
    ASSERT_EQ(install().status, 0);
    ASSERT_EQ(uninstall().status, 0);
    EXPECT_EQ(uninstall(), (ProgramEnd{0, "nothing of ours is in " + told + "\n", ""}));
}

TEST_F(HostInstall, LeavesTheNeighboursAloneWhenItGoes)
{
    leave("notes.txt");
    ASSERT_EQ(install().status, 0);
    EXPECT_EQ(uninstall().status, 0);
    EXPECT_EQ(names_in(folder), Names{"notes.txt"});
}

TEST_F(HostInstall, SaysWhichFolderCannotBeMade)
{
    fs::create_directories(place.path("home"));
    place.file("home/.config", "mine\n");
    EXPECT_EQ(install(), (ProgramEnd{1, "",
                                     "vant-host: cannot make the folder " + told +
                                         ": Not a directory; what was there before it stays; see who owns "
                                         "the folder\n"}));
}

TEST_F(HostInstall, TakesNoArgument)
{
    for (const char* const command : {"install", "uninstall"})
        EXPECT_EQ(place.run({command, "DIR/home"}).status, 2) << command;
    EXPECT_EQ(place.names(), (Names{"line.xml", "small.svg"}));
}

// ------------------------------------------------------------------------------- things of others in the way

enum class Kind { file, link, folder };

struct InTheWay {
    const char* name; // of the case
    const char* at;   // in the folder
    Kind kind;
    bool begins_with_ours; // a file that an older version of ours could be, but for its id
};
const InTheWay kThings[] = {
    {"AProgramOfTheFirstLinksName",  "vant-start",     Kind::file,   false},
    {"AProgramOfTheSecondLinksName", "vant-place",     Kind::file,   false},
    {"ALinkToAnotherProgram",        "vant-start",     Kind::link,   false},
    {"AFolderOfALinksName",          "vant-place",     Kind::folder, false},
    {"AFileOfTheFirstFilesName",     "vant-start.inx", Kind::file,   false},
    {"AnExtensionWithAnotherId",     "vant-place.inx", Kind::file,   true },
    {"ALinkOfAFilesName",            "vant-place.inx", Kind::link,   false},
    {"AFolderOfAFilesName",          "vant-start.inx", Kind::folder, false},
};

class HostInstallInTheWay : public HostInstall, public testing::WithParamInterface<InTheWay> {
protected:
    HostInstallInTheWay()
    {
        switch (GetParam().kind) {
        case Kind::file: leave(GetParam().at, content()); break;
        case Kind::link:
            fs::create_directories(folder);
            fs::create_symlink(place.path("small.svg"), in_folder(GetParam().at));
            break;
        case Kind::folder: fs::create_directories(in_folder(GetParam().at)); break;
        }
    }

    static std::string content()
    {
        return GetParam().begins_with_ours
                   ? host_app_test::replaced(packaged(GetParam().at), "org.vant.", "org.mine.")
                   : "mine\n";
    }

    void expect_it_stays() const
    {
        const fs::path thing = in_folder(GetParam().at);
        switch (GetParam().kind) {
        case Kind::file: EXPECT_EQ(support::content_of(thing.string()), content()); break;
        case Kind::link:
            EXPECT_EQ(fs::read_symlink(thing), place.path("small.svg"));
            EXPECT_EQ(place.content("small.svg"), host_app_test::kSmallArtwork);
            break;
        case Kind::folder: EXPECT_TRUE(fs::is_directory(thing)); break;
        }
    }
};

TEST_P(HostInstallInTheWay, StaysAndNothingIsInstalled)
{
    EXPECT_EQ(install(), (ProgramEnd{1, "",
                                     "vant-host: " + told + "/" + GetParam().at +
                                         " is there and not ours; it stays, and nothing was installed; move "
                                         "it away and try again\n"}));
    EXPECT_EQ(names_in(folder), Names{GetParam().at});
    expect_it_stays();
}

TEST_P(HostInstallInTheWay, StaysWhenTheRestGoes)
{
    for (const char* const name : {"vant-start", "vant-place"}) {
        if (std::string(name) != GetParam().at)
            fs::create_symlink(VNT_HOST_PROGRAM, in_folder(name));
        if (std::string(name) + ".inx" != GetParam().at)
            leave(std::string(name) + ".inx", packaged(std::string(name) + ".inx"));
    }
    ASSERT_EQ(names_in(folder), kInstalled);
    EXPECT_EQ(uninstall(), (ProgramEnd{0, "removed from " + told + "\n", ""}));
    EXPECT_EQ(names_in(folder), Names{GetParam().at});
    expect_it_stays();
}

INSTANTIATE_TEST_SUITE_P(, HostInstallInTheWay, testing::ValuesIn(kThings),
                         [](const auto& row) { return row.param.name; });

// --------------------------------------------------------------------------------------- the editor's folder

struct Choice {
    const char* name;
    std::optional<std::string> home, configuration,
        profile;        // the variables' values; DIR is the test's folder
    std::string folder; // empty: there is none
};
const Choice kChoices[] = {
    {"TheHomesConfigurationFolder",     "DIR/home",   std::nullopt, std::nullopt,
     "DIR/home/.config/inkscape/extensions/vant"                                                                             },
    {"AConfigurationFolderElsewhere",   "DIR/home",   "DIR/c",      std::nullopt, "DIR/c/inkscape/extensions/vant"           },
    {"TheEditorsProfileBeforeAll",      "DIR/home",   "DIR/c",      "DIR/p",      "DIR/p/extensions/vant"                    },
    {"EmptyVariablesCountAsNone",       "DIR/home",   "",           "",           "DIR/home/.config/inkscape/extensions/vant"},
    {"AProfileNeedsNoHome",             std::nullopt, std::nullopt, "DIR/p",      "DIR/p/extensions/vant"                    },
    {"AConfigurationFolderNeedsNoHome", std::nullopt, "DIR/c",      std::nullopt,
     "DIR/c/inkscape/extensions/vant"                                                                                        },
    {"NoHomeIsNoFolder",                std::nullopt, std::nullopt, std::nullopt, ""                                         },
    {"AnEmptyHomeIsNoFolder",           "",           std::nullopt, std::nullopt, ""                                         },
    {"BlanksAreAsGoodAsOtherLetters",   "DIR/a home", std::nullopt, std::nullopt,
     "DIR/a home/.config/inkscape/extensions/vant"                                                                           },
};

class HostInstallFolder : public testing::TestWithParam<Choice> {
protected:
    std::optional<std::string> in_place(const std::optional<std::string>& value) const
    {
        return value ? std::optional(host_app_test::replaced(*value, "DIR/", place.path(""))) : value;
    }

    Workplace place;
    Surroundings surroundings{
        {{"HOME", in_place(GetParam().home)},
         {"XDG_CONFIG_HOME", in_place(GetParam().configuration)},
         {"INKSCAPE_PROFILE_DIR", in_place(GetParam().profile)}}
    };
};

TEST_P(HostInstallFolder, FollowsTheVariables)
{
    const ProgramEnd installed = place.run({"install", "--user"});
    const ProgramEnd removed = place.run({"uninstall", "--user"});
    const std::string& folder = GetParam().folder;
    if (!folder.empty()) {
        EXPECT_EQ(installed, (ProgramEnd{0, "installed in " + folder + kDone, ""}));
        EXPECT_EQ(removed, (ProgramEnd{0, "removed from " + folder + "\n", ""}));
        return;
    }
    const ProgramEnd no_home{1, "",
                             "vant-host: cannot find the editor's folder of this user: HOME is not set; "
                             "nothing was done; set it, or leave --user out\n"};
    EXPECT_EQ(installed, no_home);
    EXPECT_EQ(removed, no_home);
    EXPECT_EQ(place.names(), (Names{"line.xml", "small.svg"}));
}

INSTANTIATE_TEST_SUITE_P(, HostInstallFolder, testing::ValuesIn(kChoices),
                         [](const auto& row) { return row.param.name; });

} // namespace
