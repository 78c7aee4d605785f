#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "tests/streaming/StreamTest.h"

namespace orvalen {
namespace {

using test::joined;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class BlindCast : public test::StreamTest
{
protected:
    BlindCast()
    {
        machine.sounds.beforePlay = [this] { machine.diary.note("play"); };
    }

    static std::string sentence(const std::string &host, const std::string &port)
    {
        return "Orvalen screen stream online. Open phone browser and type: " + host + " colon " + port +
               ". Or, macbook-air.local colon " + port + ".";
    }
};

TEST_F(BlindCast, startsTheServerThenChimesThenSpeaks)
{
    controller().triggerBlindCast();
    EXPECT_TRUE(controller().isRunning);
    EXPECT_EQ(machine.diary.take(), joined({sweep, {"write /tmp/orvalen_web_stream.py", launchServer}}))
        << "sound and speech come in the background";
    machine.world.settle();
    EXPECT_THAT(machine.diary.take(), ElementsAre("play", "speak"));
    EXPECT_THAT(machine.sounds.played, ElementsAre("Glass"));
    EXPECT_THAT(machine.speech.spoken, ElementsAre(sentence("192 dot 168 dot 1 dot 20", "8999")));
}

TEST_F(BlindCast, withoutANetworkSaysTheNameTwice)
{
    machine.interfaces.entries.reset();
    controller().triggerBlindCast();
    machine.world.settle();
    EXPECT_THAT(machine.speech.spoken, ElementsAre(sentence("macbook-air.local", "8999")));
}

TEST_F(BlindCast, speaksTheAddressOfThisMomentNotOfTheLastLook)
{
    controller();
    machine.interfaces.entries = {test::networkInterface("en5", "172.20.10.2")};
    controller().triggerBlindCast();
    machine.world.settle();
    EXPECT_THAT(machine.speech.spoken, ElementsAre(sentence("172 dot 20 dot 10 dot 2", "8999")));
}

TEST_F(BlindCast, saysThePortThatWasKnownBeforeTheStart)
{
    letServerSay("9000");
    controller().triggerBlindCast();
    advance(1000);
    EXPECT_EQ(controller().primaryURL.value(), "http://192.168.1.20:9000");
    controller().triggerBlindCast();
    advance(1000);
    EXPECT_THAT(machine.speech.spoken, ElementsAre(sentence("192 dot 168 dot 1 dot 20", "8999"),
                                                   sentence("192 dot 168 dot 1 dot 20", "9000")));
}

TEST_F(BlindCast, eachTimeRestartsTheServerAndSpeaks)
{
    controller().triggerBlindCast();
    machine.world.settle();
    machine.diary.take();
    controller().triggerBlindCast();
    EXPECT_EQ(machine.diary.take(),
              joined({{terminateServer, waitForServer}, sweep, {"write /tmp/orvalen_web_stream.py", launchServer}}));
    machine.world.settle();
    EXPECT_THAT(machine.diary.take(), ElementsAre("play", "speak"));
    EXPECT_EQ(machine.speech.spoken.size(), 2U);
}

TEST_F(BlindCast, goesOnWhenTheServerCannotBeStarted)
{
    machine.processes.missing = {test::FakeMachine::streamServer};
    controller().triggerBlindCast();
    machine.world.settle();
    EXPECT_FALSE(controller().isRunning);
    EXPECT_THAT(machine.console.str(), ::testing::StartsWith("Failed to run WebScreenServer process: "));
    EXPECT_THAT(machine.sounds.played, ElementsAre("Glass"));
    EXPECT_THAT(machine.speech.spoken, ElementsAre(sentence("192 dot 168 dot 1 dot 20", "8999")));
}

TEST_F(BlindCast, aMissingPermissionIsAskedForAndDoesNotHoldItUp)
{
    machine.captureAccess.granted = false;
    controller().triggerBlindCast();
    machine.world.settle();
    EXPECT_EQ(
        machine.diary.take(),
        joined({sweep, {"request screen capture", "write /tmp/orvalen_web_stream.py", launchServer, "play", "speak"}}));
}

TEST_F(BlindCast, speaksWithoutALoudspeakerForTheChime)
{
    machine.sounds.beforePlay = [] { throw std::runtime_error("no loudspeaker"); };
    controller().triggerBlindCast();
    machine.world.settle();
    EXPECT_EQ(machine.speech.spoken.size(), 1U);
}

TEST_F(BlindCast, chimesWithoutAVoice)
{
    machine.speech.isBroken = true;
    controller().triggerBlindCast();
    EXPECT_NO_THROW(machine.world.settle());
    EXPECT_THAT(machine.sounds.played, ElementsAre("Glass"));
    EXPECT_TRUE(controller().isRunning);
}

TEST_F(BlindCast, withoutAThreadItIsSilentAndTheServerRuns)
{
    machine.world.threadsLeft = 0;
    EXPECT_NO_THROW(controller().triggerBlindCast());
    machine.world.settle();
    EXPECT_TRUE(controller().isRunning);
    EXPECT_THAT(machine.speech.spoken, IsEmpty());
}

TEST_F(BlindCast, isSpokenEvenIfTheControllerGoes)
{
    controller().triggerBlindCast();
    destroyController();
    machine.world.settle();
    EXPECT_EQ(machine.speech.spoken.size(), 1U);
}

} // namespace
} // namespace orvalen
