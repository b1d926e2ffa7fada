#include "host/editor/art_store.h"
#include "tests/editor/kept_samples.h"
#include "tests/support/full_disk.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <functional>

namespace {

using namespace vnt::host;
using editor_test::numbers_of;
using editor_test::problem_of;
using editor_test::sample_art;
using editor_test::value_of;
using support::content_of;
using support::TemporaryFolder;
using namespace std::string_literals;
using Strings = std::vector<std::string>;

std::string sentence_of(const std::optional<Problem>& problem) { return problem ? problem->sentence : ""; }

Strings ids_of(const ArtStore::Listing& listing)
{
    Strings ids;
    for (const KeptArt& art : listing.art)
        ids.push_back(art.id);
    return ids;
}

std::set<std::string> names_in(const std::string& folder)
{
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.insert(entry.path().filename().string());
    return names;
}

TEST(ArtStore, KeepsArtInAFileOfItsOwn)
{
    const TemporaryFolder folder;
    const ArtStore store(folder.path("vant/kept"));
    const KeptArt art = sample_art("1");
    EXPECT_EQ(value_of(store.keep(art)), folder.path("vant/kept/1.svg"));
    EXPECT_EQ(content_of(folder.path("vant/kept/1.svg")), value_of(svg_of(art)));
    EXPECT_EQ(names_in(folder.path("vant/kept")), std::set<std::string>{"1.svg"});
    struct stat made {};
    ASSERT_EQ(stat(folder.path("vant/kept").c_str(), &made), 0);
    EXPECT_EQ(made.st_mode & 07777U, 0700U);
}

TEST(ArtStore, GivesItBack)
{
    const TemporaryFolder folder;
    const ArtStore store(folder.path("kept"));
    value_of(store.keep(sample_art("1")));
    const KeptArt art = value_of(store.read("1"));
    EXPECT_EQ(numbers_of(art.paths), numbers_of(sample_art("1").paths));
    EXPECT_EQ(art.document, sample_art("1").document);
}

TEST(ArtStore, ListsTheOldestFirst)
{
    const TemporaryFolder folder;
    const ArtStore store(folder.path("kept"));
    for (const char* id : {"20261103T1Z", "20251103T1Z", "20261103T0Z"})
        value_of(store.keep(sample_art(id)));
    const Strings expected{"20251103T1Z", "20261103T0Z", "20261103T1Z"};
    EXPECT_EQ(store.ids(), expected);
    EXPECT_EQ(ids_of(store.list()), expected);
}

TEST(ArtStore, IsEmptyWhereNothingWasKept)
{
    const TemporaryFolder folder;
    const ArtStore store(folder.path("kept"));
    EXPECT_EQ(store.ids(), Strings());
    EXPECT_TRUE(store.list().art.empty());
    EXPECT_TRUE(store.list().notes.empty());
    EXPECT_EQ(folder.names(), std::set<std::string>()); // to look makes nothing
}

TEST(ArtStore, NamesWhatItCannotReadAndLeavesIt)
{
    const TemporaryFolder folder;
    const ArtStore store(folder.path(""));
    value_of(store.keep(sample_art("2")));
    const std::string text = folder.file("1.svg", "<svg xmlns='http://www.w3.org/2000/svg'/>");
    std::filesystem::create_directory(folder.path("3.svg"));
    const ArtStore::Listing listing = store.list();
    EXPECT_EQ(ids_of(listing), Strings{"2"});
    EXPECT_EQ(listing.notes,
              (Strings{"cannot place " + store.path_of("1") +
                           ": it is not art that was kept; open it in an editor instead",
                       "cannot read " + store.path_of("3") + ": Is a directory; see what is in its folder"}));
    EXPECT_EQ(content_of(text), "<svg xmlns='http://www.w3.org/2000/svg'/>");
}

TEST(ArtStore, PassesOverWhatIsNoArt)
{
    const TemporaryFolder folder;
    const ArtStore store(folder.path(""));
    value_of(store.keep(sample_art("1")));
    folder.file("pending", "");
    folder.file(".vant.Xa81kq", "half of a file that is being written");
    folder.file(".svg", "");
    folder.file(".hidden.svg", "");
    folder.file("notes.txt", "");
    const ArtStore::Listing listing = store.list();
    EXPECT_EQ(ids_of(listing), Strings{"1"});
    EXPECT_EQ(listing.notes, Strings());
}

TEST(ArtStore, CallsACopyByItsName)
{
    const TemporaryFolder folder;
    const ArtStore store(folder.path(""));
    value_of(store.keep(sample_art("1")));
    std::filesystem::copy_file(store.path_of("1"), store.path_of("my copy"));
    EXPECT_EQ(value_of(store.read("my copy")).id, "my copy");
}

TEST(ArtStore, KeepsAllOrNothing)
{
    const TemporaryFolder folder;
    const ArtStore store(folder.path("kept"));
    std::string problem;
    {
        const support::FullDisk disk(1000);
        problem = problem_of(store.keep(sample_art("1")));
    }
    EXPECT_EQ(problem, "cannot keep the art in " + store.path_of("1") +
                           ": File too large; make room, or see to it that the folder can be written to");
    EXPECT_EQ(names_in(folder.path("kept")), std::set<std::string>());
}

struct NameCase {
    const char* name;
    std::string id;
};
const NameCase kBadNames[] = {
    {"OfAFolderInIt",   "sub/1"},
    {"OfAnotherFolder", "../1" },
    {"ThatIsHidden",    ".1"   },
    {"ThatIsNone",      ""     },
    {"ThatIsCut",       "1\0x"s},
};
class BadArtName : public testing::TestWithParam<NameCase> {};
TEST_P(BadArtName, IsRefused)
{
    const TemporaryFolder folder;
    folder.file("1.svg", value_of(svg_of(sample_art("1"))));
    std::filesystem::create_directories(folder.path("kept/sub"));
    const ArtStore store(folder.path("kept"));
    EXPECT_NE(problem_of(store.keep(sample_art(GetParam().id))), "");
    EXPECT_NE(problem_of(store.read(GetParam().id)), "");
    EXPECT_NE(sentence_of(store.mark_placed(GetParam().id)), "");
    EXPECT_TRUE(std::filesystem::exists(folder.path("1.svg")));
}
INSTANTIATE_TEST_SUITE_P(, BadArtName, testing::ValuesIn(kBadNames),
                         [](const auto& row) { return row.param.name; });

TEST(PlacedArt, IsOutOfTheList)
{
    const TemporaryFolder folder;
    const ArtStore store(folder.path("kept"));
    for (const char* id : {"1", "2", "3"})
        value_of(store.keep(sample_art(id)));
    EXPECT_EQ(sentence_of(store.mark_placed("2")), "");
    EXPECT_EQ(store.ids(), (Strings{"1", "3"}));
    EXPECT_EQ(names_in(folder.path("kept/placed")), std::set<std::string>{"2.svg"});
    EXPECT_EQ(content_of(folder.path("kept/placed/2.svg")), value_of(svg_of(sample_art("2"))));
}

TEST(PlacedArt, GoesWhenTwentyWerePlacedAfterIt)
{
    const TemporaryFolder folder;
    const ArtStore store(folder.path("kept"));
    const auto id_of = [](int i) { return std::to_string(100 + i); };
    for (int i = 0; i < 23; ++i)
        value_of(store.keep(sample_art(id_of(i))));
    std::filesystem::create_directories(folder.path("kept/placed"));
    folder.file("kept/placed/notes.txt", "");
    for (int i = 22; i >= 0; --i) { // the newest art first: what counts is when it was placed
        ASSERT_EQ(sentence_of(store.mark_placed(id_of(i))), "");
        // A file system may round the time that says so; here it is a second for each.
        const timespec times[] = {
            {1000 - i, 0},
            {1000 - i, 0}
        };
        const std::string placed = folder.path("kept/placed/" + id_of(i) + ".svg");
        ASSERT_EQ(utimensat(AT_FDCWD, placed.c_str(), times, 0), 0) << i;
    }
    std::set<std::string> expected{"notes.txt"};
    for (int i = 0; i < 20; ++i)
        expected.insert(id_of(i) + ".svg");
    EXPECT_EQ(names_in(folder.path("kept/placed")), expected);

    // Art from long ago that is placed now stays.
    value_of(store.keep(sample_art("000")));
    const timespec long_ago[] = {
        {1, 0},
        {1, 0}
    };
    ASSERT_EQ(utimensat(AT_FDCWD, store.path_of("000").c_str(), long_ago, 0), 0);
    ASSERT_EQ(sentence_of(store.mark_placed("000")), "");
    expected.erase(id_of(19) + ".svg");
    expected.insert("000.svg");
    EXPECT_EQ(names_in(folder.path("kept/placed")), expected);
}

TEST(PlacedArt, ThatIsNotThereIsAProblem)
{
    const TemporaryFolder folder;
    const ArtStore store(folder.path("kept"));
    EXPECT_EQ(sentence_of(store.mark_placed("1")),
              "cannot move " + store.path_of("1") + " to " + folder.path("kept/placed") +
                  ": No such file or directory; it was placed and will be offered again, move it by hand");
}

TEST(PendingNote, IsReadBackWithItsAge)
{
    const TemporaryFolder folder;
    const ArtStore store(folder.path("kept"));
    EXPECT_FALSE(store.read_pending());
    const auto before = std::chrono::steady_clock::now();
    ASSERT_EQ(sentence_of(store.write_pending({"an id", 4711, "two\nlines & 100%", true})), "");
    const auto note = store.read_pending();
    const auto passed = std::chrono::steady_clock::now() - before;
    ASSERT_TRUE(note);
    EXPECT_EQ(note->pending.art_id, "an id");
    EXPECT_EQ(note->pending.editor_pid, 4711);
    EXPECT_EQ(note->pending.message, "two\nlines & 100%");
    EXPECT_TRUE(note->pending.only_window);
    EXPECT_GE(note->age, std::chrono::milliseconds(0));
    EXPECT_LE(note->age, passed + std::chrono::milliseconds(1)); // both ends are rounded
}

TEST(PendingNote, MayBeEmpty)
{
    const TemporaryFolder folder;
    const ArtStore store(folder.path("kept"));
    ASSERT_EQ(sentence_of(store.write_pending({})), "");
    const auto note = store.read_pending();
    ASSERT_TRUE(note);
    EXPECT_EQ(note->pending.art_id, "");
    EXPECT_EQ(note->pending.editor_pid, 0);
    EXPECT_EQ(note->pending.message, "");
    EXPECT_FALSE(note->pending.only_window);
}

TEST(PendingNote, ReplacesTheOneBefore)
{
    const TemporaryFolder folder;
    const ArtStore store(folder.path("kept"));
    store.write_pending({"1", 1, "a much longer message than the one behind it", false});
    store.write_pending({"2", 2, "", false});
    EXPECT_EQ(store.read_pending()->pending.art_id, "2");
    EXPECT_EQ(names_in(folder.path("kept")), std::set<std::string>{"pending"});
}

TEST(PendingNote, IsTakenAwayOnce)
{
    const TemporaryFolder folder;
    const ArtStore store(folder.path("kept"));
    store.write_pending({"1", 1, "", false});
    EXPECT_TRUE(store.remove_pending());
    EXPECT_FALSE(store.remove_pending());
    EXPECT_FALSE(store.read_pending());
}

TEST(PendingNote, CannotBeWhereNoFileCan)
{
    const TemporaryFolder folder;
    const std::string file = folder.file("kept", "");
    const ArtStore store(file);
    EXPECT_EQ(sentence_of(store.write_pending({})),
              "cannot make the folder " + file + ": File exists; make it by hand, or free the place");
}

struct NoteCase {
    const char* name;
    const char* text;
    bool is_understood;
};
// clang-format off
const NoteCase kNotes[] = {
    {"AsItIsWritten",   "art 1\neditor 2\nonly-window no\nmessage a\nwritten 5\n",     true },
    {"Empty",           "",                                                            false},
    {"CutShort",        "art 1\neditor 2\nonly-window no\nmessage a\n",                false},
    {"CutWithinALine",  "art 1\neditor 2\nonly-window no\nmessage a\nwritten 5",       false},
    {"WithMore",        "art 1\neditor 2\nonly-window no\nmessage a\nwritten 5\nx\n",  false},
    {"InAnotherOrder",  "editor 2\nart 1\nonly-window no\nmessage a\nwritten 5\n",     false},
    {"WithABadProcess", "art 1\neditor x\nonly-window no\nmessage a\nwritten 5\n",     false},
    {"WithABadTime",    "art 1\neditor 2\nonly-window no\nmessage a\nwritten \n",      false},
    {"WithABadMessage", "art 1\neditor 2\nonly-window no\nmessage a b\nwritten 5\n",   false},
    {"WithABadName",    "art %\neditor 2\nonly-window no\nmessage a\nwritten 5\n",     false},
};
// clang-format on
class PendingText : public testing::TestWithParam<NoteCase> {};
TEST_P(PendingText, IsUnderstoodWholeOrNotAtAll)
{
    const TemporaryFolder folder;
    folder.file("pending", GetParam().text);
    EXPECT_EQ(ArtStore(folder.path("")).read_pending().has_value(), GetParam().is_understood);
}
INSTANTIATE_TEST_SUITE_P(, PendingText, testing::ValuesIn(kNotes),
                         [](const auto& row) { return row.param.name; });

TEST(PendingNote, OfTheFutureIsOfAnyAge)
{
    const TemporaryFolder folder;
    folder.file("pending", "art 1\neditor 2\nonly-window no\nmessage a\nwritten 99999999999999\n");
    EXPECT_EQ(ArtStore(folder.path("")).read_pending()->age, std::chrono::milliseconds::max());
}

TEST(PendingNote, OfTheEpochIsAsOldAsThat)
{
    const TemporaryFolder folder;
    folder.file("pending", "art 1\neditor 2\nonly-window no\nmessage a\nwritten 0\n");
    EXPECT_GT(ArtStore(folder.path("")).read_pending()->age, std::chrono::hours(24 * 365 * 50));
}

} // namespace
