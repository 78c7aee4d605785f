#include "platform/linux/PowerAssertionsFirstGranted.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>

namespace orvalen {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::IsEmpty;
using ::testing::Le;
using ::testing::Not;

const PowerAssertion wish{"PreventUserIdleSystemSleep", 255, "Orvalen: Prevent System Sleep"};

enum class Manner
{
    absent,
    silent, ///< Neither whether it is there nor what it is asked is answered.
    refusing,
    granting,
};

/// What the services were asked, in order: "NAME?" whether it is there, "NAME: REASON" to keep awake, "NAME ends".
using Diary = std::vector<std::string>;

struct FakeInhibitor : SleepInhibitor
{
    FakeInhibitor(std::string name, const Manner &manner, Diary &diary)
        : name(std::move(name)), manner(manner), diary(diary)
    {
    }

    struct Inhibition : SleepInhibition
    {
        Inhibition(std::string name, Diary &diary) : name(std::move(name)), diary(diary) {}
        ~Inhibition() override { diary.push_back(name + " ends"); }
        std::string name;
        Diary &diary;
    };

    std::optional<bool> isAvailable(Deadline deadline) override
    {
        deadlines.push_back(deadline);
        diary.push_back(name + "?");
        return manner == Manner::silent ? std::nullopt : std::optional(manner != Manner::absent);
    }
    std::unique_ptr<SleepInhibition> inhibit(const std::string &reason, Deadline deadline) override
    {
        deadlines.push_back(deadline);
        diary.push_back(name + ": " + reason);
        return manner == Manner::granting ? std::make_unique<Inhibition>(name, diary) : nullptr;
    }

    std::string name;
    const Manner &manner;
    Diary &diary;
    std::vector<Deadline> deadlines;
};

struct PowerAssertionsFirstGrantedTest : ::testing::Test
{
    Manner best = Manner::granting;
    Manner second = Manner::granting;
    Manner bare = Manner::granting;
    Diary diary;
    std::vector<FakeInhibitor *> services;

    std::unique_ptr<FakeInhibitor> service(const char *name, const Manner &manner)
    {
        auto made = std::make_unique<FakeInhibitor>(name, manner, diary);
        services.push_back(made.get());
        return made;
    }
    PowerAssertionsFirstGranted::Ways ways()
    {
        PowerAssertionsFirstGranted::Ways ways;
        ways.desktop.push_back(service("best", best));
        ways.desktop.push_back(service("second", second));
        ways.withoutDesktop.push_back(service("bare", bare));
        return ways;
    }

    PowerAssertionsFirstGranted assertions{ways(), std::chrono::hours(1)};
};

TEST_F(PowerAssertionsFirstGrantedTest, theFirstThatGrantsHoldsItAlone)
{
    const auto identifier = assertions.create(wish);
    ASSERT_TRUE(identifier);
    EXPECT_NE(*identifier, 0u);
    EXPECT_THAT(diary, ElementsAre("best?", "best: Orvalen: Prevent System Sleep"));
    diary.clear();
    assertions.release(*identifier);
    EXPECT_THAT(diary, ElementsAre("best ends"));
}

TEST_F(PowerAssertionsFirstGrantedTest, whoIsAbsentIsNotAsked)
{
    best = Manner::absent;
    EXPECT_TRUE(assertions.create(wish));
    EXPECT_THAT(diary, ElementsAre("best?", "second?", "second: Orvalen: Prevent System Sleep"));
}

TEST_F(PowerAssertionsFirstGrantedTest, afterARefusalTheNextIsAsked)
{
    best = Manner::refusing;
    EXPECT_TRUE(assertions.create(wish));
    EXPECT_THAT(diary, ElementsAre("best?", "best: Orvalen: Prevent System Sleep", "second?",
                                   "second: Orvalen: Prevent System Sleep"));
}

TEST_F(PowerAssertionsFirstGrantedTest, withoutADesktopTheBareSystemIsAsked)
{
    best = second = Manner::absent;
    EXPECT_TRUE(assertions.create(wish));
    EXPECT_THAT(diary, ElementsAre("best?", "second?", "bare?", "bare: Orvalen: Prevent System Sleep"));
}

TEST_F(PowerAssertionsFirstGrantedTest, aDesktopsRefusalIsNotGoneAround)
{
    for (const auto &[first, other] : {std::pair{Manner::refusing, Manner::absent},
                                       {Manner::absent, Manner::refusing},
                                       {Manner::refusing, Manner::refusing}}) {
        best = first;
        second = other;
        diary.clear();
        EXPECT_FALSE(assertions.create(wish));
        EXPECT_THAT(diary, Not(Contains("bare?")));
        EXPECT_THAT(diary, Not(Contains("bare: Orvalen: Prevent System Sleep")));
    }
}

TEST_F(PowerAssertionsFirstGrantedTest, aDesktopThatDoesNotSayWhetherItIsThereIsNotGoneAround)
{
    best = second = Manner::silent;
    EXPECT_FALSE(assertions.create(wish));
    EXPECT_THAT(diary, ElementsAre("best?", "best: Orvalen: Prevent System Sleep", "second?",
                                   "second: Orvalen: Prevent System Sleep"));
}

TEST_F(PowerAssertionsFirstGrantedTest, nobodyToAskIsARefusal)
{
    best = second = bare = Manner::absent;
    EXPECT_FALSE(assertions.create(wish));
    bare = Manner::refusing;
    EXPECT_FALSE(assertions.create(wish));
}

TEST_F(PowerAssertionsFirstGrantedTest, eachTimeTheDesktopIsLookedAtAnew)
{
    best = second = bare = Manner::absent;
    EXPECT_FALSE(assertions.create(wish));
    second = Manner::granting;
    EXPECT_TRUE(assertions.create(wish));
}

TEST_F(PowerAssertionsFirstGrantedTest, severalAreHeldAtOnceAndReleasedOneByOne)
{
    const auto first = assertions.create(wish);
    best = Manner::refusing;
    const auto other = assertions.create(wish);
    ASSERT_TRUE(first && other);
    EXPECT_NE(*first, *other);
    diary.clear();
    assertions.release(*other);
    EXPECT_THAT(diary, ElementsAre("second ends"));
    assertions.release(*other);
    assertions.release(0);
    assertions.release(4711);
    EXPECT_THAT(diary, ElementsAre("second ends"));
    assertions.release(*first);
    EXPECT_THAT(diary, ElementsAre("second ends", "best ends"));
}

TEST_F(PowerAssertionsFirstGrantedTest, otherTypesAreRefusedAndNobodyIsAsked)
{
    EXPECT_FALSE(assertions.create({"PreventUserIdleDisplaySleep", 255, "Orvalen"}));
    EXPECT_FALSE(assertions.create({}));
    EXPECT_THAT(diary, IsEmpty());
}

TEST_F(PowerAssertionsFirstGrantedTest, allOfThemHaveOneDeadlineTogether)
{
    best = second = Manner::refusing;
    const auto before = std::chrono::steady_clock::now() + std::chrono::hours(1);
    EXPECT_FALSE(assertions.create(wish));
    const auto after = std::chrono::steady_clock::now() + std::chrono::hours(1);
    ASSERT_EQ(services[0]->deadlines.size(), 2u);
    const auto deadline = services[0]->deadlines[0];
    EXPECT_THAT(deadline, AllOf(Ge(before), Le(after)));
    EXPECT_THAT(services[0]->deadlines, ElementsAre(deadline, deadline));
    EXPECT_THAT(services[1]->deadlines, ElementsAre(deadline, deadline));
}

} // namespace
} // namespace orvalen
