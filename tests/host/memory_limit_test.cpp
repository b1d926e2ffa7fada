#include "host/kit/memory_limit.h"
#include "tests/support/child_process.h"
#include "tests/support/sanitized.h"

#include <gtest/gtest.h>

#include <sys/mman.h>

#include <fstream>
#include <new>
#include <string>

namespace {

using namespace vnt::host;
using support::run_in_child;

constexpr std::uint64_t kMiB = std::uint64_t{1} << 20U;
constexpr int kSoonMs = 30000;

// Directly, since a compiler may leave out a new expression that comes to nothing.
bool can_take(std::uint64_t bytes)
{
    try {
        ::operator delete(::operator new(bytes));
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

rlimit limit_now()
{
    rlimit limit{};
    getrlimit(RLIMIT_AS, &limit);
    return limit;
}

bool is_same(const rlimit& one, const rlimit& other)
{
    return one.rlim_cur == other.rlim_cur && one.rlim_max == other.rlim_max;
}

enum Finding { kAllWell, kNotInForce, kTooStrict, kTooLax, kNotLifted, kNotSetBack };

struct LimitCase {
    const char* name;
    std::uint64_t bytes;
    std::uint64_t fits;     // while it is in force
    std::uint64_t too_much; // while it is in force
};
const LimitCase kLimits[] = {
    {"OfSixtyFourMiB", 64 * kMiB,  32 * kMiB,  65 * kMiB },
    {"OfAQuarterGiB",  256 * kMiB, 200 * kMiB, 300 * kMiB},
    {"OfNothing",      0,          64,         4 * kMiB  },
};
class MemoryLimits : public testing::TestWithParam<LimitCase> {};

TEST_P(MemoryLimits, EndInBadAllocAndAreLifted)
{
    if (!MemoryLimit::is_possible())
        GTEST_SKIP() << "no limit in this build";
    const auto end = run_in_child(
        [] {
            const rlimit before = limit_now();
            // What there is already does not count.
            if (mmap(nullptr, 512 * kMiB, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0) ==
                MAP_FAILED)
                return kTooStrict;
            {
                const MemoryLimit limit(GetParam().bytes);
                if (!limit.is_in_force())
                    return kNotInForce;
                if (!can_take(GetParam().fits))
                    return kTooStrict;
                if (can_take(GetParam().too_much))
                    return kTooLax;
            }
            if (!is_same(limit_now(), before))
                return kNotSetBack;
            return can_take(GetParam().too_much) ? kAllWell : kNotLifted;
        },
        kSoonMs);
    EXPECT_EQ(end.status, kAllWell);
}
INSTANTIATE_TEST_SUITE_P(, MemoryLimits, testing::ValuesIn(kLimits),
                         [](const auto& row) { return row.param.name; });

TEST(MemoryLimitBeside, ALowerOneThatWasThereStays)
{
    if (!MemoryLimit::is_possible())
        GTEST_SKIP() << "no limit in this build";
    const auto end = run_in_child(
        [] {
            const MemoryLimit lower(64 * kMiB);
            const rlimit before = limit_now();
            {
                const MemoryLimit limit(1024 * kMiB);
                if (!is_same(limit_now(), before))
                    return kNotInForce;
                if (can_take(128 * kMiB))
                    return kTooLax;
            }
            return is_same(limit_now(), before) ? kAllWell : kNotSetBack;
        },
        kSoonMs);
    EXPECT_EQ(end.status, kAllWell);
}

TEST(MemoryLimitBeside, TheHardLimitStays)
{
    if (!MemoryLimit::is_possible())
        GTEST_SKIP() << "no limit in this build";
    const auto end = run_in_child(
        [] {
            const rlim_t hard = limit_now().rlim_max;
            const MemoryLimit limit(64 * kMiB);
            return limit_now().rlim_max == hard ? kAllWell : kNotSetBack;
        },
        kSoonMs);
    EXPECT_EQ(end.status, kAllWell);
}

TEST(MemoryLimitBeside, OneBeyondAllNumbersIsNone)
{
    const rlimit before = limit_now();
    const MemoryLimit limit(~std::uint64_t{0});
    EXPECT_TRUE(is_same(limit_now(), before));
}

TEST(MemoryLimitBuild, IsPossibleUnlessSanitized)
{
    EXPECT_EQ(MemoryLimit::is_possible(), !support::kSanitized);
    if (support::kSanitized) {
        const rlimit before = limit_now();
        const MemoryLimit limit(0);
        EXPECT_FALSE(limit.is_in_force());
        EXPECT_TRUE(is_same(limit_now(), before));
    }
}

TEST(MemoryLimitByDefault, IsHalfOfTheMemoryAndAtMostFourGiB)
{
    std::ifstream table("/proc/meminfo");
    std::string name;
    std::uint64_t kib = 0;
    table >> name >> kib;
    ASSERT_EQ(name, "MemTotal:");
    const std::uint64_t limit = default_memory_limit();
    EXPECT_GT(limit, 0U);
    EXPECT_LE(limit, 4096 * kMiB);
    EXPECT_LE(limit, kib * 1024 / 2);
}

struct DefaultCase {
    const char* name;
    std::uint64_t memory;
    std::uint64_t limit;
};
const DefaultCase kDefaults[] = {
    {"OfALittleIsHalf",       1024 * kMiB,       512 * kMiB },
    {"OfEightGiBIsFour",      8 * 1024 * kMiB,   4096 * kMiB},
    {"OfMoreIsFourAsWell",    64 * 1024 * kMiB,  4096 * kMiB},
    {"OfWhatIsUnknownIsFour", ~std::uint64_t{0}, 4096 * kMiB},
};
class DefaultMemoryLimits : public testing::TestWithParam<DefaultCase> {};
TEST_P(DefaultMemoryLimits, FollowTheMemory)
{
    EXPECT_EQ(default_memory_limit_of(GetParam().memory), GetParam().limit);
}
INSTANTIATE_TEST_SUITE_P(, DefaultMemoryLimits, testing::ValuesIn(kDefaults),
                         [](const auto& row) { return row.param.name; });

template <class Value>
struct TextCase {
    const char* name;
    const char* text;
    std::optional<Value> value;
};

const TextCase<std::uint64_t> kSizes[] = {
    {"TheFirstFieldCounts", "765 441 412 5 0 90 0\n", 765U * 4096},
    {"NothingIsNoSize",     "",                       {}         },
    {"WordsAreNoSize",      "none\n",                 {}         },
};
class StatmTexts : public testing::TestWithParam<TextCase<std::uint64_t>> {};
TEST_P(StatmTexts, GiveTheSizeInBytes)
{
    EXPECT_EQ(address_space_of_statm(GetParam().text, 4096), GetParam().value);
}
INSTANTIATE_TEST_SUITE_P(, StatmTexts, testing::ValuesIn(kSizes),
                         [](const auto& row) { return row.param.name; });

const TextCase<std::uint64_t> kMaxima[] = {
    {"ANumberIsBytes",      "2147483648\n", 2147483648U},
    {"TheWordMaxIsNoLimit", "max\n",        {}         },
    {"NoFileIsNoLimit",     "",             {}         },
};
class MemoryMaxTexts : public testing::TestWithParam<TextCase<std::uint64_t>> {};
TEST_P(MemoryMaxTexts, GiveTheLimit) { EXPECT_EQ(memory_max_of(GetParam().text), GetParam().value); }
INSTANTIATE_TEST_SUITE_P(, MemoryMaxTexts, testing::ValuesIn(kMaxima),
                         [](const auto& row) { return row.param.name; });

const TextCase<std::string_view> kGroups[] = {
    {"OfVersionTwoAlone",            "0::/user.slice/session-2.scope\n",                      "/user.slice/session-2.scope"},
    {"OfVersionTwoBesideVersionOne", "9:name=systemd:/\n4:memory:/box/54e0\n0::/box\n",       "/box"                       },
    {"OfVersionOneAlone",            "9:name=systemd:/\n4:memory:/box/54e0\n10::/not-this\n", {}                           },
    {"TheTop",                       "0::/\n",                                                "/"                          },
    {"WithoutALineFeed",             "0::/box",                                               "/box"                       },
    {"WithAColonInItsName",          "0::/a:b\n",                                             "/a:b"                       },
    {"OfNoGroups",                   "",                                                      {}                           },
};
class ControlGroupTexts : public testing::TestWithParam<TextCase<std::string_view>> {};
TEST_P(ControlGroupTexts, GiveThePath) { EXPECT_EQ(control_group_of(GetParam().text), GetParam().value); }
INSTANTIATE_TEST_SUITE_P(, ControlGroupTexts, testing::ValuesIn(kGroups),
                         [](const auto& row) { return row.param.name; });

} // namespace
