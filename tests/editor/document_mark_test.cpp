#include "host/editor/document_mark.h"
#include "tests/host/svg_samples.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

namespace {

using namespace vnt::host;

struct HashCase {
    const char* name;
    const char* text;
    std::uint64_t hash;
};
// Source: Fowler, Noll, Vo, Eastlake: The FNV Non-Cryptographic Hash Algorithm, test vectors of FNV-1a with 64 bits.
const HashCase kHashes[] = {
    {"OfNothing",      "",       0xcbf29ce484222325},
    {"OfOneLetter",    "a",      0xaf63dc4c8601ec8c},
    {"OfSeveral",      "foobar", 0x85944171f73967e8},
    {"OfAByteAbove7F", "\xFF",   0xaf64724c8602eb6e},
};
class IdHash : public testing::TestWithParam<HashCase> {};
TEST_P(IdHash, IsFnv1a) { EXPECT_EQ(hash_of(GetParam().text), GetParam().hash); }
INSTANTIATE_TEST_SUITE_P(, IdHash, testing::ValuesIn(kHashes),
                         [](const auto& row) { return row.param.name; });

struct IdCase {
    const char* name;
    const char* id;
    bool is_distinctive;
};
const IdCase kIds[] = {
    {"OfAnObject",                "path17",      true },
    {"OfAGroup",                  "g5",          true },
    {"GivenByHand",               "roof",        true },
    {"ThatBeginsLikeALayers",     "layer-blue",  true },
    {"ThatBeginsLikeADefinition", "defsolid1",   true },
    {"OfTheOutermostElement",     "svg5",        false},
    {"OfAnOlderOutermostElement", "SVGRoot",     false},
    {"OfTheView",                 "namedview7",  false},
    {"OfAnOlderView",             "base",        false},
    {"OfTheDefinitions",          "defs2",       false},
    {"OfTheFirstLayer",           "layer1",      false},
    {"OfAnotherLayer",            "layer12",     false},
    {"OfAGrid",                   "grid218",     false},
    {"OfAPage",                   "page9",       false},
    {"OfMetadata",                "metadata5",   false},
    {"OfAPathThatWeDrew",         "vant-path31", false},
    {"OfNothing",                 "",            false},
};
class Id : public testing::TestWithParam<IdCase> {};
TEST_P(Id, TellsDocumentsApartOrNot) { EXPECT_EQ(is_distinctive(GetParam().id), GetParam().is_distinctive); }
INSTANTIATE_TEST_SUITE_P(, Id, testing::ValuesIn(kIds), [](const auto& row) { return row.param.name; });

std::vector<std::uint64_t> hashes_of(const std::vector<std::string>& ids)
{
    std::vector<std::uint64_t> hashes;
    for (const std::string& id : ids)
        hashes.push_back(hash_of(id));
    std::sort(hashes.begin(), hashes.end());
    return hashes;
}

const std::string kBody =
    "<sodipodi:namedview id='namedview7'/><defs id='defs2'><g id='symbol'/></defs>"
    "<g id='layer1'><path id='path17'/><path/><g id='a&amp;b'><rect id='path17'/></g></g>";

TEST(DocumentMark, HasTheDistinctiveIdsOfAllElements)
{
    const auto document = host_test::document_of(host_test::svg("id='house'", kBody));
    const DocumentMark mark = mark_of(document, "", "4711-5");
    EXPECT_EQ(mark.path, "");
    EXPECT_EQ(mark.editor, "4711-5");
    EXPECT_EQ(mark.root_id, "house");
    EXPECT_EQ(mark.ids, hashes_of({"symbol", "path17", "a&b"}));
    EXPECT_EQ(mark.file_time, 0);
}

TEST(DocumentMark, HasTheTimesOfItselfAndOfItsFile)
{
    const support::TemporaryFolder folder;
    const std::string path = folder.file("a.svg", "text");
    const timespec times[] = {
        {1, 0          },
        {2, 345'678'900}
    };
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    const auto document = host_test::document_of(host_test::svg("", ""));
    const std::int64_t before = time(nullptr);
    const DocumentMark mark = mark_of(document, path, "");
    EXPECT_EQ(mark.path, path);
    EXPECT_EQ(mark.file_time, 2'345'678'900);
    EXPECT_GE(mark.taken_at / 1'000'000'000, before);
    EXPECT_LE(mark.taken_at / 1'000'000'000, time(nullptr));
    EXPECT_EQ(mark_of(document, folder.path("gone.svg"), "").file_time, 0);
}

TEST(DocumentMark, MayLoseAllIdsButTheSmallest)
{
    DocumentMark mark;
    mark.ids = {1, 5, 9, 11};
    keep_some_ids(mark, 4);
    EXPECT_EQ(mark.ids, (std::vector<std::uint64_t>{1, 5, 9, 11}));
    keep_some_ids(mark, 2);
    EXPECT_EQ(mark.ids, (std::vector<std::uint64_t>{1, 5}));
}

constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::int64_t kStart = 1000 * kSecond;

// count numbers from first on.
std::vector<std::uint64_t> numbers(std::uint64_t first, std::uint64_t count)
{
    std::vector<std::uint64_t> numbers;
    for (std::uint64_t i = 0; i < count; ++i)
        numbers.push_back(first + i);
    return numbers;
}

struct State {
    std::string path;
    std::vector<std::uint64_t> ids;
    std::int64_t file_time = 0;
    std::string root_id = "svg5";
    std::string editor = "1-1";
};
struct CompareCase {
    const char* name;
    State start;
    State now;
    Sameness sameness;
};
const auto kNone = numbers(0, 0);
const auto kTen = numbers(100, 10);
constexpr auto same = Sameness::same;
constexpr auto other = Sameness::other;
constexpr auto doubtful = Sameness::doubtful;
constexpr std::int64_t kBefore = kStart - 100 * kSecond;
constexpr std::int64_t kAfter = kStart + 100 * kSecond;
// clang-format off
const CompareCase kCompares[] = {
    // One file.
    {"OfOneFileIsTheSame", {"/a", kTen}, {"/a", kTen}, same},
    {"OfOneFileWithNothingLeftIsTheSame", {"/a", kTen}, {"/a", kNone}, same},
    {"OfOneFileThatWasReplacedIsTheSame", {"/a", kTen}, {"/a", numbers(500, 9), kAfter, "svg9"}, same},
    {"OfOneFileInAnotherProcessIsTheSame", {"/a", kNone}, {"/a", kNone, 0, "svg5", "2-2"}, same},

    // Another file.
    {"SavedUnderAnotherNameIsTheSame", {"/a", kTen}, {"/b", kTen, kAfter}, same},
    {"SavedUnderAnotherNameAndDrawnOnIsTheSame", {"/a", kTen}, {"/b", numbers(90, 500), kAfter}, same},
    {"SavedUnderAnotherNameWithOneOfTenGoneIsTheSame", {"/a", kTen}, {"/b", numbers(101, 9), kAfter}, same},
    {"SavedUnderAnotherNameWithTwoOfTenGoneIsAnother", {"/a", kTen}, {"/b", numbers(102, 8), kAfter}, other},
    {"SavedInTheVeryMomentOfTheStartIsTheSame", {"/a", kTen}, {"/b", kTen, kStart}, same},
    {"SavedWhereTimesAreCoarseIsTheSame", {"/a", kTen}, {"/b", kTen, kStart - 2 * kSecond}, same},
    {"ThatIsACopyFromBeforeIsDoubtful", {"/a", kTen}, {"/b", kTen, kBefore}, doubtful},
    {"ThatIsACopyOfUnknownTimeIsDoubtful", {"/a", kTen}, {"/b", kTen}, doubtful},
    {"WithOtherIdsIsAnother", {"/a", kTen}, {"/b", numbers(500, 10), kAfter}, other},
    {"WithOtherIdsAndATimeBeforeIsAnother", {"/a", kTen}, {"/b", numbers(500, 10), kBefore}, other},
    {"WithFewIdsThatWasSavedIsDoubtful", {"/a", numbers(1, 2)}, {"/b", numbers(1, 2), kAfter}, doubtful},
    {"WithFewIdsThatWasNotSavedIsAnother", {"/a", numbers(1, 2)}, {"/b", numbers(1, 2), kBefore}, other},
    {"WithAnotherOutermostElementIsAnother", {"/a", kTen}, {"/b", kTen, kAfter, "svg16"}, other},
    {"SavedUnderAnotherNameByAnotherProcessIsTheSame",
     {"/a", kTen}, {"/b", kTen, kAfter, "svg5", "2-2"}, same},
    {"OfSevenIdsInAnotherProcessIsDoubtful",
     {"/a", numbers(1, 7)}, {"/b", numbers(1, 7), kAfter, "svg5", "2-2"}, doubtful},
    {"ThatWasAFileAndIsNoneIsAnother", {"/a", kTen}, {"", kTen}, other},

    // Never saved.
    {"NeverSavedWithItsIdsIsTheSame", {"", kTen}, {"", kTen}, same},
    {"NeverSavedAndDrawnOnIsTheSame", {"", kTen}, {"", numbers(90, 500)}, same},
    {"NeverSavedWithHalfOfItsIdsIsTheSame", {"", kTen}, {"", numbers(105, 5)}, same},
    {"NeverSavedWithLessThanHalfIsDoubtful", {"", kTen}, {"", numbers(106, 4)}, doubtful},
    {"NeverSavedAndEmptiedIsDoubtful", {"", kTen}, {"", kNone}, doubtful},
    {"NeverSavedWithThreeIdsIsTheSame", {"", numbers(1, 3)}, {"", numbers(1, 3)}, same},
    {"NeverSavedWithThreeIdsThatAreGoneIsDoubtful", {"", numbers(1, 3)}, {"", kNone}, doubtful},
    {"NeverSavedWithTwoIdsThatAreGoneIsTheSame", {"", numbers(1, 2)}, {"", kNone}, same},
    {"NewAndEmptyIsTheSame", {"", kNone}, {"", kNone}, same},
    {"NewAndDrawnOnIsTheSame", {"", kNone}, {"", kTen}, same},
    {"NewAndEmptyBesideAnotherIsAnother", {"", kNone}, {"", kNone, 0, "svg16"}, other},
    {"NewWithAnotherNewOnesIdsIsAnother", {"", kTen}, {"", kTen, 0, "svg16"}, other},
    {"NewOfATemplateThatNamesItselfIsDoubtful",
     {"", kNone, 0, "poster"}, {"", kNone, 0, "poster"}, doubtful},
    {"NewWithoutAnyIdIsDoubtful", {"", kNone, 0, ""}, {"", kNone, 0, ""}, doubtful},
    {"NewAndEmptyInAnotherProcessIsDoubtful", {"", kNone}, {"", kNone, 0, "svg5", "2-2"}, doubtful},
    {"NewAndEmptyInAnUnknownProcessIsDoubtful",
     {"", kNone, 0, "svg5", ""}, {"", kNone, 0, "svg5", ""}, doubtful},
    {"WithSevenIdsInAnotherProcessIsDoubtful",
     {"", numbers(1, 7)}, {"", numbers(1, 7), 0, "svg5", "2-2"}, doubtful},
    {"WithEightIdsInAnotherProcessIsTheSame",
     {"", numbers(1, 8)}, {"", numbers(1, 8), 0, "svg5", "2-2"}, same},
    {"WithSomeIdsInAnotherProcessIsDoubtful", {"", kTen}, {"", numbers(109, 9), 0, "svg5", "2-2"}, doubtful},
    {"WithNoneOfItsIdsInAnotherProcessIsAnother",
     {"", kTen}, {"", numbers(500, 9), 0, "svg5", "2-2"}, other},

    // Saved for the first time since.
    {"SavedSinceIsTheSame", {"", kTen}, {"/b", kTen, kAfter}, same},
    {"SavedSinceWithFewIdsIsDoubtful", {"", kNone}, {"/b", kNone, kAfter}, doubtful},
    {"SavedSinceWithNoneOfItsIdsIsDoubtful", {"", kTen}, {"/b", numbers(500, 10), kAfter}, doubtful},
    {"ThatWasAFileAllTheTimeIsAnother", {"", kNone}, {"/b", kTen, kBefore}, other},
    {"ThatHasItsIdsAndWasAFileAllTheTimeIsAnother", {"", kTen}, {"/b", kTen, kBefore}, other},
};
// clang-format on
class Document : public testing::TestWithParam<CompareCase> {};
TEST_P(Document, IsComparedWithTheOneAtTheStart)
{
    const auto mark = [](const State& state, std::int64_t taken_at) {
        return DocumentMark{state.path, state.editor, state.root_id, state.ids, state.file_time, taken_at};
    };
    const CompareCase& row = GetParam();
    EXPECT_EQ(compare(mark(row.start, kStart), mark(row.now, kAfter)), row.sameness);
}
INSTANTIATE_TEST_SUITE_P(, Document, testing::ValuesIn(kCompares),
                         [](const auto& row) { return row.param.name; });

} // namespace
