#include "soak/SoakRun.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace rv52::test {
namespace {

// Sanitizers see a fault in the memory the first time; the rest is for the debug build.
#ifdef __SANITIZE_ADDRESS__
constexpr long kTransfers = 2'000;
#else
constexpr long kTransfers = 20'000;
#endif
constexpr int kShares = 4;
constexpr std::uint64_t kSeedsOfAShare = 1'000'000;

class SoakTest : public testing::TestWithParam<int> {
 protected:
    void Soak(std::uint64_t seed) {
        SCOPED_TRACE("this seed alone: RV52_SOAK_SEED=" + std::to_string(seed) +
                     " soak_tests --gtest_filter='*/0'");
        SoakRun(Dice(seed), count_).Run();
    }

    SoakCount count_;
};

// Parallel shares of the transfers. See docs/faults.md.
TEST_P(SoakTest, NothingIsClaimedThatIsNotSo) {
    if (const char* seed = std::getenv("RV52_SOAK_SEED")) return Soak(std::strtoull(seed, nullptr, 10));
    const char* wanted = std::getenv("RV52_SOAK_TRANSFERS");
    const long share = (wanted ? std::strtol(wanted, nullptr, 10) : kTransfers) / kShares;
    auto seed = kSeedsOfAShare * static_cast<std::uint64_t>(GetParam());
    while (count_.transfers < share && !HasFailure())
        Soak(++seed);

    std::printf(
        "%ld transfers: %ld uploaded, %ld downloaded, %ld VINs; unnoticeable: %ld misnamed, %ld repointed\n",
        count_.transfers, count_.uploaded, count_.downloaded, count_.vins, count_.misnamed, count_.repointed);
    // A soak in which hardly anything ever succeeds or fails shows nothing.
    EXPECT_GT(count_.uploaded, share / 20);
    EXPECT_GT(count_.downloaded, share / 20);
    EXPECT_GT(count_.vins, share / 40);
    EXPECT_LT(count_.uploaded + count_.downloaded + count_.vins, share * 3 / 4);
}

INSTANTIATE_TEST_SUITE_P(Shares, SoakTest, testing::Range(0, kShares));

}  // namespace
}  // namespace rv52::test
