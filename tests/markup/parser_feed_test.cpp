// Runs of characters against single ones: feed has to equal step, however a document is cut.
#include "tests/markup/documents.h"
#include "tests/markup/odd_documents.h"
#include "tests/markup/parser_probe.h"
#include "tests/support/sanitized.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

using namespace markup_test;

namespace {

// More of a document, to see whether what came before left something behind that only shows later.
const char* const kMore = "m</a></b><a x='1'/>--></>\">]]>?>n</>";

std::string stepped(const std::string& document)
{
    OwnedParser owned;
    step_all(owned.p, document);
    return whole_text(owned.p);
}

// Feeds the pieces of a document that end at these places, and then more in one run if it is not empty.
std::string fed(const std::string& document, const std::vector<std::size_t>& ends, const std::string& more)
{
    OwnedParser owned;
    parser& p = owned.p;
    std::size_t begin = 0;
    for (const std::size_t end : ends) {
        // A copy without a byte behind it, so that the address sanitizer sees a read past its end.
        const std::vector<char> piece(document.data() + begin, document.data() + end);
        const int result = p.feed(piece.data(), piece.size());
        EXPECT_EQ(result, p.checkerror() ? -1 : 0);
        begin = end;
    }
    if (!more.empty())
        p.feed(more.data(), more.size());
    return whole_text(p);
}

std::vector<std::size_t> every(std::size_t size, const std::string& document)
{
    std::vector<std::size_t> ends;
    for (std::size_t end = size; end < document.size(); end += size)
        ends.push_back(end);
    ends.push_back(document.size());
    return ends;
}

std::string cuts_text(const std::vector<std::size_t>& ends)
{
    std::string text;
    for (const std::size_t end : ends)
        text += " " + std::to_string(end);
    return text;
}

// How a document has to come out: alone, and with more behind it.
class Expected {
public:
    explicit Expected(const std::string& document)
        : document_(document), alone_(stepped(document)), with_more_(stepped(document + kMore))
    {
    }

    testing::AssertionResult holds_for(const std::vector<std::size_t>& ends) const
    {
        if (const std::string result = fed(document_, ends, ""); result != alone_)
            return failure(ends, "", alone_, result);
        if (const std::string result = fed(document_, ends, kMore); result != with_more_)
            return failure(ends, kMore, with_more_, result);
        return testing::AssertionSuccess();
    }

private:
    testing::AssertionResult failure(const std::vector<std::size_t>& ends, const std::string& more,
                                     const std::string& by_step, const std::string& by_feed) const
    {
        return testing::AssertionFailure()
               << "of " << document_ << "\ncut at" << cuts_text(ends) << "\nthen " << more << "\nstep makes\n"
               << by_step << "feed makes\n"
               << by_feed;
    }

    std::string document_;
    std::string alone_;
    std::string with_more_;
};

constexpr std::size_t kPieces[] = {1, 2, 3, 5, 1'000'000};

class FeedOfDocument : public testing::TestWithParam<Document> {};
TEST_P(FeedOfDocument, EqualsStepHoweverItIsCut)
{
    const std::string& document = GetParam().text;
    const Expected expected(document);
    for (const std::size_t size : kPieces)
        EXPECT_TRUE(expected.holds_for(every(size, document)));
    for (std::size_t first = 0; first <= document.size(); ++first) {
        EXPECT_TRUE(expected.holds_for({first, document.size()}));
        for (std::size_t second = first; document.size() < 30 && second <= document.size(); ++second)
            EXPECT_TRUE(expected.holds_for({first, second, document.size()}));
    }
}
INSTANTIATE_TEST_SUITE_P(, FeedOfDocument, testing::ValuesIn(kDocuments),
                         [](const auto& row) { return row.param.name; });

constexpr int kRandomDocuments = support::kSanitized ? 5'000 : 50'000;
constexpr std::size_t kLongestInside = support::kSanitized ? 3 : 4;

std::vector<std::size_t> random_cuts(std::mt19937_64& random, const std::string& document)
{
    std::vector<std::size_t> ends{document.size()};
    for (std::size_t cuts = random() % 6; cuts > 0; --cuts)
        ends.push_back(random() % (document.size() + 1));
    std::sort(ends.begin(), ends.end());
    return ends;
}

// VNT_TEST_SEED=number runs other documents.
TEST(Feed, EqualsStepOnRandomDocuments)
{
    const char* const chosen = std::getenv("VNT_TEST_SEED");
    const std::uint64_t seed = chosen != nullptr ? std::strtoull(chosen, nullptr, 10) : 20240503;
    RecordProperty("seed", std::to_string(seed));
    std::mt19937_64 random(seed);
    for (int i = 0; i < kRandomDocuments; ++i) {
        const std::string document = OddDocument(random).text();
        const Expected expected(document);
        ASSERT_TRUE(expected.holds_for({document.size()})) << "seed " << seed << ", document " << i;
        ASSERT_TRUE(expected.holds_for(every(1 + random() % 7, document)))
            << "seed " << seed << ", document " << i;
        ASSERT_TRUE(expected.holds_for(random_cuts(random, document)))
            << "seed " << seed << ", document " << i;
    }
}

TEST(Feed, MeetsDocumentsOfEveryKindAtRandom)
{
    std::mt19937_64 random(20240503);
    int complete = 0;
    int open = 0;
    int error = 0;
    for (int i = 0; i < 1000; ++i) {
        OwnedParser owned;
        step_all(owned.p, OddDocument(random).text());
        ++(owned.p.checkerror() ? error : owned.p.acceptable() == 1 ? complete : open);
    }
    EXPECT_GT(complete, 100);
    EXPECT_GT(open, 100);
    EXPECT_GT(error, 100);
}

// Every tag with up to kLongestInside of these characters behind its name, or in front of an attribute.
TEST(Feed, EqualsStepOnEveryShortTag)
{
    const std::string alphabet = "ab =/\"'?>";
    std::vector<std::string> insides{""};
    for (std::size_t i = 0; insides[i].size() < kLongestInside; ++i) {
        for (const char c : alphabet)
            insides.push_back(insides[i] + c);
    }
    for (const std::string& inside : insides) {
        for (const std::string& document : {"<n " + inside + ">x</n>", "<" + inside + " n='1'/>x"}) {
            const Expected expected(document);
            ASSERT_TRUE(expected.holds_for({document.size()}));
            ASSERT_TRUE(expected.holds_for(every(1 + inside.size(), document)));
        }
    }
}

} // namespace
