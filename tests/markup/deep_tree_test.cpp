// Trees that are deeper than a call stack is long.
#include "Source/markup/parser.h"

#include "tests/support/small_stack.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kDepth = 1'000'000;

std::string nested(std::size_t depth)
{
    std::string document;
    document.reserve(depth * 7);
    for (std::size_t i = 0; i < depth; ++i)
        document += "<a>";
    for (std::size_t i = 0; i < depth; ++i)
        document += "</a>";
    return document;
}

struct DeepCase {
    const char* name;
    void (*read)(parser&, const std::string&);
};
const DeepCase kDeep[] = {
    {"ByRuns",       [](parser& p, const std::string& document) { p.feed(document.data(), document.size()); }},
    {"ByCharacters",
     [](parser& p,                 const std::string& document) {
         for (const char c : document)
             p.step(c);
     }                                                                                     },
};
class DeepTree : public testing::TestWithParam<DeepCase> {};
TEST_P(DeepTree, NeedsNoStackToBuildSearchDumpAndDelete)
{
    const std::string document = nested(kDepth);
    int acceptable = 0;
    int found = 0;
    std::vector<tagrec*> nodes;
    std::string dump;
    support::run_on_small_stack([&] {
        parser p;
        GetParam().read(p, document);
        acceptable = p.acceptable();
        found = p.root->find(nodes, "A");
        nodes.back()->findroot();
        std::vector<tagrec*> first;
        p.root->path(first, "a/a/a");
        dump = p.root->dump();
        delete p.root;
    });
    EXPECT_EQ(acceptable, 1);
    EXPECT_EQ(found, static_cast<int>(kDepth));
    EXPECT_EQ(nodes.size(), kDepth);
    EXPECT_TRUE(dump == document); // not EXPECT_EQ: it would print both
}
INSTANTIATE_TEST_SUITE_P(, DeepTree, testing::ValuesIn(kDeep),
                         [](const auto& row) { return row.param.name; });

TEST(OpenDeepTree, IsDeletedWithoutStack)
{
    const std::string document = nested(kDepth).substr(0, kDepth * 3);
    int acceptable = 1;
    support::run_on_small_stack([&] {
        parser p;
        p.feed(document.data(), document.size());
        acceptable = p.acceptable();
        delete p.root;
    });
    EXPECT_EQ(acceptable, 0);
}

TEST(DeepPath, NeedsNoStack)
{
    constexpr std::size_t kNames = 100'000;
    const std::string document = nested(kNames);
    std::string path = "a";
    for (std::size_t i = 1; i < kNames; ++i)
        path += "/a";
    int result = 0;
    bool is_the_deepest = false;
    support::run_on_small_stack([&] {
        parser p;
        p.feed(document.data(), document.size());
        std::vector<tagrec*> all;
        p.root->find(all, "a");
        std::vector<tagrec*> out;
        result = p.root->path(out, path);
        is_the_deepest = out == std::vector<tagrec*>{all.back()};
        delete p.root;
    });
    EXPECT_EQ(result, 1);
    EXPECT_TRUE(is_the_deepest);
}

} // namespace
