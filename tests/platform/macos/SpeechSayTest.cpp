#include "platform/macos/SpeechSay.h"

#include "streaming/StreamAddresses.h"
#include "tests/platform/macos/CommandsTest.h"

namespace orvalen {
namespace {

const std::string voice = "/usr/bin/say";

struct SpeechSayTest : test::CommandsTest
{
    SpeechSayTest() { processes.failing[voice] = 0; } // who asks how it went ends it

    SpeechSay speech{processes};
};

TEST_F(SpeechSayTest, theAddressIsOneArgumentToTheCharacter)
{
    speech.speak(spokenAddress("192.168.1.20", "macbook-air.local", 8999));
    expectStarted(voice, {"Orvalen screen stream online. Open phone browser and type: 192 dot 168 dot 1 dot 20 colon "
                          "8999. Or, macbook-air.local colon 8999."});
}

TEST_F(SpeechSayTest, withoutANetworkTheNameIsSpokenTwice)
{
    speech.speak(spokenAddress("127.0.0.1", "macbook-air.local", 9000));
    expectStarted(voice, {"Orvalen screen stream online. Open phone browser and type: macbook-air.local colon 9000. "
                          "Or, macbook-air.local colon 9000."});
}

TEST_F(SpeechSayTest, nothingInASentenceIsChanged)
{
    const std::string sentence = "A $(id) 'and' \"quotes\" \\ büro [[slnc 500]]\n %s";
    speech.speak(sentence);
    expectStarted(voice, {sentence});
}

TEST_F(SpeechSayTest, whatIsBeingSaidIsSaidToItsEnd)
{
    speech.speak("One.");
    speech.speak("Two.");
    EXPECT_EQ(processes.running(voice), 2);
    EXPECT_THAT(diary.take(), ::testing::ElementsAre("launch " + voice + " One.", "launch " + voice + " Two."));
}

TEST_F(SpeechSayTest, withoutAVoiceItIsSilent)
{
    processes.missing.insert(voice);
    EXPECT_NO_THROW(speech.speak("Hello."));
    EXPECT_EQ(diary.take().size(), 1U) << "once is enough";
}

TEST_F(SpeechSayTest, whereNothingCanBeStartedItIsSilent)
{
    exhaustTheSystem();
    EXPECT_NO_THROW(speech.speak("Hello."));
    EXPECT_EQ(diary.take().size(), 1U);
}

} // namespace
} // namespace orvalen
