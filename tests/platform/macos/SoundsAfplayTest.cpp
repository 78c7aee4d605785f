#include "platform/macos/SoundsAfplay.h"

#include "tests/platform/macos/CommandsTest.h"

namespace orvalen {
namespace {

const std::string player = "/usr/bin/afplay";

struct SoundsAfplayTest : test::CommandsTest
{
    SoundsAfplayTest() { processes.failing[player] = 0; } // who asks how it went ends it

    SoundsAfplay sounds{processes};
};

TEST_F(SoundsAfplayTest, eachChimeIsAFileOfTheSystem)
{
    sounds.play("Blow");
    expectStarted(player, {"/System/Library/Sounds/Blow.aiff"});
    sounds.play("Glass");
    expectStarted(player, {"/System/Library/Sounds/Glass.aiff"});
    sounds.play("Tink");
    expectStarted(player, {"/System/Library/Sounds/Tink.aiff"});
}

TEST_F(SoundsAfplayTest, theNameIsTheWholeViewAndNoMore)
{
    sounds.play(std::string_view("GlassBlow").substr(0, 5));
    expectStarted(player, {"/System/Library/Sounds/Glass.aiff"});
}

TEST_F(SoundsAfplayTest, withoutThePlayerItIsSilent)
{
    processes.missing.insert(player);
    EXPECT_NO_THROW(sounds.play("Glass"));
    EXPECT_EQ(diary.take().size(), 1U) << "once is enough";
}

TEST_F(SoundsAfplayTest, whereNothingCanBeStartedItIsSilent)
{
    exhaustTheSystem();
    EXPECT_NO_THROW(sounds.play("Glass"));
    EXPECT_EQ(diary.take().size(), 1U);
}

} // namespace
} // namespace orvalen
