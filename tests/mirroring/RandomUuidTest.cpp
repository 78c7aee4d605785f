#include "mirroring/RandomUuid.h"

#include <gmock/gmock.h>

#include <set>

namespace orvalen {
namespace {

using ::testing::MatchesRegex;

TEST(RandomUuid, hasTheCanonicalFormInCapitals)
{
    for (int i = 0; i < 1000; ++i)
        EXPECT_THAT(randomUuid(), MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
}

TEST(RandomUuid, isAnotherOneEachTime)
{
    std::set<std::string> seen;
    for (int i = 0; i < 1000; ++i)
        seen.insert(randomUuid());
    EXPECT_EQ(seen.size(), 1000U);
}

TEST(RandomUuid, everyDigitCanStandInEveryFreePlace)
{
    std::vector<std::set<char>> digits(36);
    for (int i = 0; i < 2000; ++i) {
        const auto uuid = randomUuid();
        for (std::size_t place = 0; place < uuid.size(); ++place)
            digits[place].insert(uuid[place]);
    }
    for (std::size_t place = 0; place < digits.size(); ++place) {
        const bool isFixed = place == 8 || place == 13 || place == 14 || place == 18 || place == 23;
        EXPECT_EQ(digits[place].size(), isFixed ? 1U : place == 19 ? 4U : 16U) << place;
    }
}

} // namespace
} // namespace orvalen
