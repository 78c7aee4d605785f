#include "core/Published.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <vector>

namespace orvalen {
namespace {

using ::testing::ElementsAre;

struct Lamp : Observable
{
    Published<int> level{*this, 1};
};

TEST(Published, announcesThenChangesThenSends)
{
    Lamp lamp;
    std::vector<std::string> diary;
    const auto observer = lamp.observe([&] { diary.push_back("will change, still " + std::to_string(lamp.level)); });
    const auto subscriber = lamp.level.subscribe(
        [&](int level) { diary.push_back("sent " + std::to_string(level) + ", now " + std::to_string(lamp.level)); });
    lamp.level = 2;
    EXPECT_THAT(diary, ElementsAre("sent 1, now 1", "will change, still 1", "sent 2, now 2"));
}

TEST(Published, keepsBetweenTheChangeAndTheStream)
{
    std::vector<std::string> diary;
    Observable owner;
    Published<int> kept{owner, 1, [&](int value) { diary.push_back("kept " + std::to_string(value)); }};
    const auto subscriber = kept.subscribe([&](int value) { diary.push_back("sent " + std::to_string(value)); });
    kept = 2;
    EXPECT_THAT(diary, ElementsAre("sent 1", "kept 2", "sent 2"));
}

TEST(Published, anEqualValueIsAnAssignmentToo)
{
    Lamp lamp;
    int announced = 0;
    const auto observer = lamp.observe([&] { ++announced; });
    lamp.level = 1;
    EXPECT_EQ(announced, 1);
}

TEST(Published, modifyingInPlaceIsAnAssignment)
{
    Lamp lamp;
    std::vector<int> received;
    const auto subscriber = lamp.level.subscribe([&](int level) { received.push_back(level); });
    lamp.level.modify([](int &level) { level += 4; });
    EXPECT_THAT(received, ElementsAre(1, 5));
}

TEST(Published, droppingTheHandleEndsTheSubscription)
{
    Lamp lamp;
    int calls = 0;
    auto subscriber = lamp.level.subscribe([&](int) { ++calls; });
    subscriber = {};
    lamp.level = 2;
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(lamp.level.subscriberCount(), 0u);
}

TEST(Published, aSubscriberMayEndItselfWhileItIsCalled)
{
    Lamp lamp;
    int calls = 0;
    Subscription subscriber;
    subscriber = lamp.level.subscribe([&](int) {
        if (++calls == 2)
            subscriber = {};
    });
    lamp.level = 2;
    lamp.level = 3;
    EXPECT_EQ(calls, 2);
}

TEST(Published, aSubscriberEndedByAnEarlierOneIsNotCalled)
{
    Lamp lamp;
    int calls = 0;
    std::optional<Subscription> second;
    const auto first = lamp.level.subscribe([&](int) { second.reset(); });
    second = lamp.level.subscribe([&](int) { ++calls; });
    lamp.level = 2;
    EXPECT_EQ(calls, 1);
}

TEST(Published, aSubscriberMaySetThePropertyAgain)
{
    Lamp lamp;
    std::vector<int> received;
    const auto subscriber = lamp.level.subscribe([&](int level) {
        received.push_back(level);
        if (level == 2)
            lamp.level = 3;
    });
    lamp.level = 2;
    EXPECT_THAT(received, ElementsAre(1, 2, 3));
    EXPECT_EQ(lamp.level, 3);
}

TEST(Published, nobodyHearsAnOldValueAfterANewerOne)
{
    Lamp lamp;
    std::vector<int> received;
    const auto first = lamp.level.subscribe([&](int level) {
        if (level == 2)
            lamp.level = 3;
    });
    const auto second = lamp.level.subscribe([&](int level) { received.push_back(level); });
    lamp.level = 2;
    EXPECT_THAT(received, ElementsAre(1, 3));
}

TEST(Published, aValueSetDuringTheFirstDeliveryArrivesToo)
{
    Lamp lamp;
    std::vector<int> received;
    const auto subscriber = lamp.level.subscribe([&](int level) {
        received.push_back(level);
        if (level == 1)
            lamp.level = 2;
    });
    EXPECT_THAT(received, ElementsAre(1, 2));
}

TEST(Published, endedSubscriptionsAreForgottenWhenNewOnesCome)
{
    Lamp lamp;
    for (int i = 0; i < 1000; ++i)
        const auto subscriber = lamp.level.subscribe([](int) {});
    EXPECT_EQ(lamp.level.subscriberCount(), 0u);
}

} // namespace
} // namespace orvalen
