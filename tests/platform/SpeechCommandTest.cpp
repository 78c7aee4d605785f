#include "platform/linux/SpeechCommand.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <thread>

#include "platform/posix/ChildProcessesPosix.h"
#include "tests/support/StreamFakes.h"
#include "tests/support/TemporaryFolder.h"

namespace orvalen {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SpeechCommandTest : public ::testing::Test
{
protected:
    SpeechCommandTest()
    {
        fs::create_directory(folder / "first");
        fs::create_directory(folder / "second");
        searchPath = (folder / "first").string() + ":" + (folder / "second").string();
    }

    [[nodiscard]] std::string program(const char *name) const { return (folder / name).string(); }

    void install(const char *name, const std::string &script = "#!/bin/sh\n") const
    {
        temporary.write(name, script, true);
    }

    /// What was started for "Hello.", on that search path.
    std::vector<std::string> startedOn(const std::string &path)
    {
        SpeechCommand(processes, path).speak("Hello.");
        return diary.take();
    }

    const test::TemporaryFolder temporary;
    const fs::path folder = temporary.path();
    std::string searchPath;
    test::Diary diary;
    test::FakeChildProcesses processes{diary};
};

TEST_F(SpeechCommandTest, theDesktopsSpeechServiceSpeaksEnglish)
{
    install("second/spd-say");
    EXPECT_THAT(startedOn(searchPath),
                ElementsAre("launch " + program("second/spd-say") + " -w -N Orvalen -l en -m none -- Hello."));
}

TEST_F(SpeechCommandTest, withoutOneTheSynthesiserItself)
{
    install("first/espeak-ng");
    EXPECT_THAT(startedOn(searchPath), ElementsAre("launch " + program("first/espeak-ng") + " -v en -b 1 -- Hello."));
}

TEST_F(SpeechCommandTest, theServiceComesFirstWhereverItIs)
{
    install("first/espeak-ng");
    install("second/spd-say");
    EXPECT_THAT(startedOn(searchPath), ElementsAre(::testing::HasSubstr("/second/spd-say ")));
}

TEST_F(SpeechCommandTest, ofTwoTheOneThatIsFirstOnTheSearchPath)
{
    install("first/spd-say");
    install("second/spd-say");
    EXPECT_THAT(startedOn(searchPath), ElementsAre(::testing::HasSubstr("/first/spd-say ")));
}

TEST_F(SpeechCommandTest, aServiceThatFailsGivesWayToTheSynthesiser)
{
    install("first/spd-say");
    install("first/espeak-ng");
    processes.failing[program("first/spd-say")] = 1;
    EXPECT_THAT(startedOn(searchPath),
                ElementsAre(::testing::HasSubstr("/first/spd-say "), ::testing::HasSubstr("/first/espeak-ng ")));
}

TEST_F(SpeechCommandTest, aServiceThatCannotBeStartedGivesWayToTheSynthesiser)
{
    install("first/spd-say");
    install("first/espeak-ng");
    processes.missing.insert(program("first/spd-say"));
    EXPECT_THAT(startedOn(searchPath),
                ElementsAre(::testing::HasSubstr("/first/spd-say "), ::testing::HasSubstr("/first/espeak-ng ")));
}

TEST_F(SpeechCommandTest, aServiceThatIsDoneSoonHasSpoken)
{
    install("first/spd-say");
    install("first/espeak-ng");
    processes.failing[program("first/spd-say")] = 0;
    EXPECT_THAT(startedOn(searchPath), ElementsAre(::testing::HasSubstr("/first/spd-say ")));
}

TEST_F(SpeechCommandTest, whatIsStillBeingSaidGivesWay)
{
    install("first/spd-say");
    SpeechCommand speech(processes, searchPath);
    speech.speak("One.");
    speech.speak("Two.");
    EXPECT_THAT(diary.take(), ElementsAre(::testing::EndsWith(" One."), "terminate " + program("first/spd-say"),
                                          ::testing::EndsWith(" Two.")));
}

TEST_F(SpeechCommandTest, whatIsBeingSaidIsSaidToItsEndWhenWeGo)
{
    install("first/spd-say");
    startedOn(searchPath);
    EXPECT_EQ(processes.running(program("first/spd-say")), 1);
}

TEST_F(SpeechCommandTest, withoutAnyItIsSilent)
{
    EXPECT_THAT(startedOn(searchPath), IsEmpty());
    EXPECT_THAT(startedOn(""), IsEmpty());
    EXPECT_THAT(startedOn("/nonexistent"), IsEmpty());
}

TEST_F(SpeechCommandTest, whatCannotBeRunIsPassedOver)
{
    std::ofstream(folder / "first/spd-say") << "text";
    fs::create_directory(folder / "second/spd-say");
    install("second/espeak-ng");
    EXPECT_THAT(startedOn(searchPath), ElementsAre(::testing::HasSubstr("/second/espeak-ng ")));
}

TEST_F(SpeechCommandTest, whereWeStandIsNoPlaceToLook)
{
    install("spd-say");
    const auto before = fs::current_path();
    fs::current_path(folder);
    EXPECT_THAT(startedOn(":.:first/.."), IsEmpty());
    fs::current_path(before);
}

TEST_F(SpeechCommandTest, theSentenceArrivesAsOneArgumentWhateverIsInIt)
{
    install("first/spd-say", R"(#!/bin/sh
printf '%s\n' $# >"${0%/*}/new"
for text; do :; done
printf '%s' "$text" >>"${0%/*}/new"
mv "${0%/*}/new" "${0%/*}/heard"
)");
    ChildProcessesPosix real;
    for (const std::string text : {"Orvalen screen stream online. Open phone browser and type: 192 dot 168 dot 1 dot "
                                   "20 colon 8999. Or, macbook-air.local colon 8999.",
                                   "-e --version $(id) %s '\" büro"}) {
        const auto heard = folder / "first/heard";
        fs::remove(heard);
        SpeechCommand(real, searchPath).speak(text);
        while (!fs::exists(heard)) // the test's own time limit ends a wait in vain
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        std::ifstream stream(heard);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), "9\n" + text);
    }
}

} // namespace
} // namespace orvalen
