// The whole program, as the stream server starts it.
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <stop_token>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "streaming/screencapture/StripFile.h"
#include "streaming/screencapture/Strips.h"
#include "tests/screencapture/Jpeg.h"
#include "tests/screencapture/Program.h"
#include "tests/screencapture/Screen.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/XServer.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using test::capture;
using test::contentsOf;
using test::decoded;
using test::drawnPixels;
using test::encodedAtOnce;
using test::Outcome;
using test::Program;
using test::Screen;
using test::TemporaryFolder;
using test::XServer;

constexpr int width = 1000;
constexpr int height = 700;
constexpr Rectangle whole{0, 0, width, height};
constexpr PictureFormat format{width, height, {}};

struct Desktop
{
    explicit Desktop(std::vector<std::string> options = {"-screen", "0", "1000x700x24"})
        : server(std::move(options)), screen(server.display()), file(folder / "picture.jpg")
    {
    }

    [[nodiscard]] Outcome capture(std::vector<std::string> options = {}) const
    {
        std::vector<std::string> arguments{"-x", "-t", "jpg"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        arguments.push_back(file);
        return test::capture(arguments, {{"DISPLAY", server.display()}});
    }

    [[nodiscard]] std::string captured(const std::vector<std::string> &options = {}) const
    {
        const auto outcome = capture(options);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.said, "");
        return contentsOf(file);
    }

    TemporaryFolder folder;
    XServer server;
    Screen screen;
    std::filesystem::path file;
};

struct stat statusOf(const std::filesystem::path &file)
{
    struct stat status = {};
    EXPECT_EQ(::lstat(file.c_str(), &status), 0);
    return status;
}

bool isSameFile(const struct stat &a, const struct stat &b)
{
    return a.st_ino == b.st_ino && a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec &&
           a.st_size == b.st_size;
}

/// Which strips of two files differ.
std::vector<unsigned> differences(const std::string &before, const std::string &after)
{
    const StripFile file(format);
    const auto old = file.strips(before);
    const auto now = file.strips(after);
    EXPECT_TRUE(old && now);
    std::vector<unsigned> indexes;
    for (unsigned i = 0; old && now && i < old->size(); ++i) {
        if ((*old)[i].bytes != (*now)[i].bytes)
            indexes.push_back(i);
    }
    return indexes;
}

TEST(Screencapture, theFileShowsTheScreenToTheLastPixel)
{
    Desktop desktop;
    const auto pixels = drawnPixels(width, height);
    desktop.screen.paint(whole, pixels);
    EXPECT_TRUE(test::withoutComments(desktop.captured()) == encodedAtOnce(format, pixels, 4));
}

TEST(Screencapture, aKnownPictureComesBackInItsColours)
{
    Desktop desktop;
    desktop.screen.fill({0, 0, 500, 350}, 0xc86414);
    desktop.screen.fill({500, 0, 500, 350}, 0x14c864);
    desktop.screen.fill({0, 350, 500, 350}, 0x6414c8);
    desktop.screen.fill({500, 350, 500, 350}, 0xffffff);
    const auto picture = decoded(desktop.captured());
    const auto expectColour = [&](int x, int y, int red, int green, int blue) {
        const auto colour = picture.at(x, y);
        EXPECT_NEAR(colour.red, red, 4);
        EXPECT_NEAR(colour.green, green, 4);
        EXPECT_NEAR(colour.blue, blue, 4);
    };
    expectColour(10, 10, 0xc8, 0x64, 0x14);
    expectColour(990, 10, 0x14, 0xc8, 0x64);
    expectColour(10, 690, 0x64, 0x14, 0xc8);
    expectColour(990, 690, 0xff, 0xff, 0xff);
}

TEST(Screencapture, oneProcessorMakesTheSameFile)
{
    Desktop desktop;
    desktop.screen.paint(whole, drawnPixels(width, height));
    const auto picture = desktop.captured();
    std::filesystem::remove(desktop.file);
    Program alone({"taskset", "-c", "0", test::captureCommand(), desktop.file},
                  {{"DISPLAY", desktop.server.display()}});
    EXPECT_EQ(alone.outcome().status, 0);
    EXPECT_TRUE(contentsOf(desktop.file) == picture);
}

TEST(Screencapture, aServerThatSharesNoMemoryGivesTheSameFile)
{
    Desktop desktop({"-screen", "0", "1000x700x24", "-extension", "MIT-SHM"});
    const auto pixels = drawnPixels(width, height);
    desktop.screen.paint(whole, pixels);
    EXPECT_TRUE(test::withoutComments(desktop.captured()) == encodedAtOnce(format, pixels, 4));
}

TEST(Screencapture, aServerAtTheFarEndOfANetworkGivesTheSameFile)
{
    Desktop desktop({"-screen", "0", "1000x700x24", "-listen", "tcp", "-ac"});
    const auto pixels = drawnPixels(width, height);
    desktop.screen.paint(whole, pixels);
    const auto outcome = capture({desktop.file}, {{"DISPLAY", "127.0.0.1" + desktop.server.display()}});
    EXPECT_EQ(outcome.status, 0) << outcome.said;
    EXPECT_TRUE(test::withoutComments(contentsOf(desktop.file)) == encodedAtOnce(format, pixels, 4));
}

TEST(Screencapture, displaysAreCountedFromThePrimaryOne)
{
    Desktop desktop;
    const Rectangle left{0, 0, 400, 700};
    const Rectangle right{400, 0, 600, 700};
    desktop.screen.setMonitor("LEFT", left, false, true);
    desktop.screen.setMonitor("RIGHT", right, true, false);
    desktop.screen.fill(left, 0xff0000);
    desktop.screen.fill(right, 0x0000ff);
    const auto first = decoded(desktop.captured());
    EXPECT_EQ(first.width, 600);
    EXPECT_GT(first.at(0, 0).blue, 240);
    EXPECT_EQ(decoded(desktop.captured({"-D", "1"})), first);
    const auto second = decoded(desktop.captured({"-D", "2"}));
    EXPECT_EQ(second.width, 400);
    EXPECT_GT(second.at(399, 699).red, 240);
}

TEST(Screencapture, thePointerIsInThePicture)
{
    Desktop desktop;
    desktop.screen.fill(whole, 0x808080);
    desktop.screen.showPointer(32, 10, 20, 0xff0000);
    struct Place
    {
        int x;
        int y;
    };
    for (const auto &[x, y] : {Place{500, 350}, Place{100, 64}, Place{0, 0}, Place{999, 699}, Place{0, 699}}) {
        desktop.screen.movePointer(x, y);
        const auto picture = decoded(desktop.captured());
        const Rectangle pointer{x - 10, y - 20, 32, 32};
        for (int row = 0; row < height; row += 3) {
            for (int column = 0; column < width; column += 3) {
                const bool isInside = !intersection(pointer, {column, row, 1, 1}).isEmpty();
                const bool isClose =
                    !intersection({pointer.x - 16, pointer.y - 16, 64, 64}, {column, row, 1, 1}).isEmpty();
                const bool isWellInside =
                    !intersection({pointer.x + 4, pointer.y + 4, 24, 24}, {column, row, 1, 1}).isEmpty();
                const auto colour = picture.at(column, row);
                if (isWellInside) {
                    EXPECT_GT(colour.red, 220) << x << ' ' << y << ": " << column << ' ' << row;
                    EXPECT_LT(colour.green, 40) << x << ' ' << y << ": " << column << ' ' << row;
                } else if (!isInside && !isClose) {
                    ASSERT_NEAR(colour.red, 0x80, 2) << x << ' ' << y << ": " << column << ' ' << row;
                    ASSERT_NEAR(colour.green, 0x80, 2) << x << ' ' << y << ": " << column << ' ' << row;
                }
            }
        }
    }
}

TEST(Screencapture, thePointerOfAnotherDisplayIsNotInThePicture)
{
    Desktop desktop;
    desktop.screen.setMonitor("LEFT", {0, 0, 500, 700}, true, true);
    desktop.screen.setMonitor("RIGHT", {500, 0, 500, 700}, false, false);
    desktop.screen.fill(whole, 0);
    desktop.screen.showPointer(32, 0, 0, 0xffffff);
    desktop.screen.movePointer(484, 100); // half on each
    const auto left = decoded(desktop.captured({"-D1"}));
    EXPECT_GT(left.at(495, 110).red, 240);
    const auto right = decoded(desktop.captured({"-D2"}));
    EXPECT_GT(right.at(5, 110).red, 240);
    EXPECT_LT(right.at(495, 110).red, 15);
}

TEST(Screencapture, anUnchangedScreenLeavesTheFileAlone)
{
    Desktop desktop;
    desktop.screen.paint(whole, drawnPixels(width, height));
    desktop.screen.showPointer(16, 0, 0, 0xff0000);
    const auto picture = desktop.captured();
    const auto before = statusOf(desktop.file);
    EXPECT_TRUE(desktop.captured() == picture);
    EXPECT_TRUE(isSameFile(statusOf(desktop.file), before));
}

TEST(Screencapture, aMovedPointerRenewsTheStripsItWasAndIsOn)
{
    Desktop desktop;
    desktop.screen.paint(whole, drawnPixels(width, height));
    desktop.screen.showPointer(16, 0, 0, 0xff0000);
    desktop.screen.movePointer(100, 70);
    const auto before = desktop.captured();
    const auto status = statusOf(desktop.file);
    desktop.screen.movePointer(100, 250); // across two
    EXPECT_EQ(differences(before, desktop.captured()), (std::vector<unsigned>{1, 3, 4}));
    EXPECT_FALSE(isSameFile(statusOf(desktop.file), status));
}

TEST(Screencapture, oneChangedPixelRenewsItsStrip)
{
    Desktop desktop;
    auto pixels = drawnPixels(width, height);
    desktop.screen.paint(whole, pixels);
    const auto before = desktop.captured();
    desktop.screen.fill({777, 130, 1, 1}, 0x00ff00);
    const auto after = desktop.captured();
    EXPECT_EQ(differences(before, after), (std::vector<unsigned>{2}));
    std::filesystem::remove(desktop.file);
    EXPECT_TRUE(desktop.captured() == after); // as if there had been no earlier file
}

TEST(Screencapture, anEarlierFileThatIsDamagedIsNotBuiltUpon)
{
    Desktop desktop;
    desktop.screen.paint(whole, drawnPixels(width, height));
    const auto picture = desktop.captured();
    std::mt19937 random(1);
    for (int i = 0; i < 30; ++i) {
        auto damaged = picture;
        damaged[random() % damaged.size()] ^= 4;
        if (i % 3 == 0)
            damaged.resize(random() % damaged.size());
        test::write(desktop.file, damaged);
        ASSERT_TRUE(desktop.captured() == picture) << i;
    }
}

TEST(Screencapture, aDisplayOfAnotherSizeIsTakenAnewIntoTheSameFile)
{
    Desktop desktop;
    const auto pixels = drawnPixels(width, height);
    desktop.screen.paint(whole, pixels);
    ASSERT_EQ(decoded(desktop.captured()).width, width);
    desktop.screen.setMonitor("ALL", {0, 0, 500, 300}, true, true);
    EXPECT_EQ(decoded(desktop.captured()).width, 500);
}

TEST(Screencapture, aDisplayThatWentDarkByItselfIsCapturedAsEver)
{
    Desktop desktop;
    desktop.screen.fill(whole, 0x336699);
    const auto light = desktop.captured();
    std::filesystem::remove(desktop.file);
    desktop.screen.goDark();
    EXPECT_TRUE(desktop.captured() == light);
}

TEST(Screencapture, aPictureIsOfOneMoment)
{
    Desktop desktop({"-screen", "0", "1920x1200x24"});
    const std::jthread painter([&](const std::stop_token &isOver) {
        Screen screen(desktop.server.display());
        for (unsigned i = 0; !isOver.stop_requested(); ++i)
            screen.fill({0, 0, 1920, 1200}, i % 2 == 0 ? 0xffffff : 0);
    });
    for (int i = 0; i < 20; ++i) {
        const auto picture = decoded(desktop.captured());
        const auto first = picture.at(0, 0).red;
        for (int y = 0; y < 1200; y += 16)
            ASSERT_EQ(picture.at(960, y).red, first) << i << ' ' << y;
    }
}

TEST(Screencapture, theFileIsForItsOwnerAlone)
{
    Desktop desktop;
    const auto before = ::umask(0);
    (void)desktop.captured();
    ::umask(before);
    EXPECT_EQ(statusOf(desktop.file).st_mode & 07777, 0600U);
}

TEST(Screencapture, aFileOfOursIsReplacedWhateverItHolds)
{
    Desktop desktop;
    test::write(desktop.file, "something else");
    EXPECT_EQ(decoded(desktop.captured()).width, width);
    EXPECT_EQ(desktop.folder.names(), std::vector<std::string>{"picture.jpg"});
}

TEST(Screencapture, aNameWithoutFolderLiesInTheWorkingFolder)
{
    Desktop desktop;
    Program inFolder({"env", "-C", desktop.folder.path(), test::captureCommand(), "picture.jpg"},
                     {{"DISPLAY", desktop.server.display()}});
    EXPECT_EQ(inFolder.outcome().status, 0);
    EXPECT_EQ(decoded(contentsOf(desktop.file)).width, width);
}

/// That a capture fails with this sentence, and touches no file.
void expectFailure(const std::vector<std::string> &options, const test::Environment &environment,
                   const std::string &sentence)
{
    const TemporaryFolder folder;
    for (const bool isThere : {false, true}) {
        const auto file = folder / "picture.jpg";
        if (isThere)
            test::write(file, "what was there");
        const auto names = folder.names();
        auto arguments = options;
        arguments.push_back(file);
        const auto outcome = capture(arguments, environment);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.said, "screencapture: " + sentence + '\n');
        EXPECT_EQ(folder.names(), names);
        EXPECT_EQ(contentsOf(file), isThere ? "what was there" : "");
    }
}

TEST(ScreencaptureFailure, aDisplayThatDoesNotExist)
{
    const XServer server;
    expectFailure({"-D", "2"}, {{"DISPLAY", server.display()}}, "There is no display 2; there is 1.");
    expectFailure({"-D", "0"}, {{"DISPLAY", server.display()}}, "There is no display 0; there is 1.");
}

TEST(ScreencaptureFailure, noDisplayServer)
{
    expectFailure({}, {}, "There is no display server to be reached.");
    expectFailure({}, {{"DISPLAY", ":54321"}}, "There is no display server to be reached.");
    expectFailure({}, {{"DISPLAY", "nonsense"}}, "There is no display server to be reached.");
}

TEST(ScreencaptureFailure, aWaylandSession)
{
    const XServer server; // as such a session has one for older programs
    const std::string sentence = "This is a Wayland session; what an X server sees of it is black.";
    expectFailure({}, {{"DISPLAY", server.display()}, {"WAYLAND_DISPLAY", "wayland-0"}}, sentence);
    expectFailure({}, {{"DISPLAY", server.display()}, {"XDG_SESSION_TYPE", "wayland"}}, sentence);
    expectFailure({}, {{"WAYLAND_DISPLAY", "wayland-0"}}, sentence);
}

TEST(ScreencaptureFailure, aScreenWithASaverOverIt)
{
    const XServer server;
    Screen(server.display()).startScreenSaver();
    expectFailure({}, {{"DISPLAY", server.display()}}, "The session is locked, or its screen saver is on.");
    server.pressKey();
    const TemporaryFolder folder;
    EXPECT_EQ(capture({folder / "picture.jpg"}, {{"DISPLAY", server.display()}}).status, 0);
}

TEST(ScreencaptureFailure, aScreenOfFewerColours)
{
    for (const auto *size : {"640x480x16", "640x480x8", "640x480x30"}) {
        const XServer server({"-screen", "0", size});
        expectFailure({}, {{"DISPLAY", server.display()}}, "The screen's pixels are not of 24 bits in four bytes.");
    }
}

TEST(ScreencaptureFailure, misuseIsAnsweredWithTheUsage)
{
    const XServer server;
    const TemporaryFolder folder;
    const test::Environment environment{{"DISPLAY", server.display()}};
    for (const auto &arguments : std::vector<std::vector<std::string>>{{},
                                                                       {"-t", "png", folder / "a"},
                                                                       {"-D", "x", folder / "a"},
                                                                       {"-c", folder / "a"},
                                                                       {folder / "a", folder / "b"}}) {
        const auto outcome = capture(arguments, environment);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_NE(outcome.said.find("usage: screencapture [-x] [-t jpg] [-D display] file"), std::string::npos);
    }
    EXPECT_EQ(folder.names(), std::vector<std::string>{});
}

/// That what stands at the name is left alone.
void expectRefusal(const Desktop &desktop, const std::filesystem::path &name)
{
    const auto before = statusOf(name);
    const auto outcome = capture({name}, {{"DISPLAY", desktop.server.display()}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.said,
              "screencapture: What stands at " + name.string() + " is not a plain file of yours; it stays as it is.\n");
    EXPECT_TRUE(isSameFile(statusOf(name), before));
}

TEST(ScreencaptureFailure, somethingElseStandsAtTheName)
{
    const Desktop desktop;
    const auto &folder = desktop.folder;
    std::filesystem::create_directory(folder / "folder");
    expectRefusal(desktop, folder / "folder");
    folder.write("target", "of a link");
    std::filesystem::create_symlink(folder / "target", folder / "link");
    expectRefusal(desktop, folder / "link");
    std::filesystem::create_symlink(folder / "nowhere", folder / "dangling");
    expectRefusal(desktop, folder / "dangling");
    std::filesystem::create_hard_link(folder / "target", folder / "second name");
    expectRefusal(desktop, folder / "second name");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    expectRefusal(desktop, folder / "pipe");
    EXPECT_EQ(contentsOf(folder / "target"), "of a link");
    EXPECT_EQ(folder.names(),
              (std::vector<std::string>{"dangling", "folder", "link", "pipe", "second name", "target"}));
}

TEST(ScreencaptureFailure, aFileOfAnotherUserStandsAtTheName)
{
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can make another user's file";
    const Desktop desktop;
    test::write(desktop.file, "another's");
    ASSERT_EQ(::chown(desktop.file.c_str(), 65534, 65534), 0);
    expectRefusal(desktop, desktop.file);
}

TEST(ScreencaptureFailure, noSuchFolder)
{
    const Desktop desktop;
    const auto outcome = capture({desktop.folder / "none/a.jpg"}, {{"DISPLAY", desktop.server.display()}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.said.find("No such file or directory"), std::string::npos) << outcome.said;
}

TEST(ScreencaptureFailure, aFullDiskLeavesTheOldFile)
{
    Desktop desktop;
    desktop.screen.paint(whole, drawnPixels(width, height)); // a few hundred kilobytes
    const auto disk = desktop.folder.path().string();
    const std::string script =
        "mount -t tmpfs -o size=64k tmpfs \"$1\" || exit 77; cd \"$1\" && echo old >picture.jpg; "
        "\"$2\" picture.jpg; status=$?; ls -A >&2; cat picture.jpg >&2; exit $status";
    Program program(
        {"unshare", "--user", "--map-root-user", "--mount", "sh", "-c", script, "sh", disk, test::captureCommand()},
        {{"DISPLAY", desktop.server.display()}});
    const auto outcome = program.outcome();
    if (outcome.status == 77 || outcome.said.find("unshare") != std::string::npos)
        GTEST_SKIP() << "no disk of our own to be had here: " << outcome.said;
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.said, "screencapture: The picture cannot be written to picture.jpg: No space left on device.\n"
                            "picture.jpg\nold\n");
}

TEST(ScreencaptureFailure, aServerThatNeverAnswersIsGivenUp)
{
    const Desktop desktop;
    desktop.server.suspend();
    const auto outcome = desktop.capture();
    desktop.server.resume();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.said, "screencapture: The display server does not answer.\n");
    EXPECT_EQ(desktop.folder.names(), std::vector<std::string>{});
}

TEST(ScreencaptureFailure, aServerThatIsKilledEndsTheCapture)
{
    std::mt19937 random(1);
    int failures = 0;
    for (int i = 0; i < 40; ++i) {
        const TemporaryFolder folder;
        XServer server({"-screen", "0", "1920x1200x24"});
        Program program({test::captureCommand(), folder / "picture.jpg"}, {{"DISPLAY", server.display()}});
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 10'000));
        server.kill();
        const auto outcome = program.outcome();
        if (outcome.status == 0) {
            EXPECT_EQ(decoded(contentsOf(folder / "picture.jpg")).width, 1920);
            continue;
        }
        ++failures;
        EXPECT_EQ(outcome.status, 1);
        EXPECT_TRUE(outcome.said == "screencapture: There is no display server to be reached.\n" ||
                    outcome.said == "screencapture: The display server has gone, or does not show its screen.\n")
            << outcome.said; // in particular, nobody has waited in vain
        EXPECT_EQ(folder.names(), std::vector<std::string>{});
    }
    EXPECT_GT(failures, 0);
}

TEST(Screencapture, killedAtAnyMomentItLeavesAWholeFileAndNoLitter)
{
    Desktop desktop;
    const auto one = drawnPixels(width, height, 1);
    const auto other = drawnPixels(width, height, 2);
    const auto oneFile = encodedAtOnce(format, one, 4);
    const auto otherFile = encodedAtOnce(format, other, 4);
    desktop.screen.paint(whole, one);
    (void)desktop.captured();
    std::mt19937 random(1);
    int killed = 0;
    for (int i = 0; i < 100; ++i) {
        desktop.screen.paint(whole, i % 2 == 0 ? other : one); // the server is free again after each kill
        Program program({test::captureCommand(), desktop.file}, {{"DISPLAY", desktop.server.display()}});
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 15'000));
        program.kill();
        killed += program.outcome().status == 128 + 9 ? 1 : 0;
        const auto file = test::withoutComments(contentsOf(desktop.file));
        ASSERT_TRUE(file == oneFile || file == otherFile) << i;
        ASSERT_LE(desktop.folder.names().size(), 2U);
    }
    EXPECT_GT(killed, 0);
    desktop.screen.fill(whole, 0x123456);
    (void)desktop.captured();
    EXPECT_EQ(desktop.folder.names(), std::vector<std::string>{"picture.jpg"});
}

TEST(Screencapture, whatAKilledOneHasLeftIsClearedAway)
{
    Desktop desktop;
    desktop.folder.write(".picture.jpg.orvalen", "half a file");
    EXPECT_EQ(decoded(desktop.captured()).width, width);
    EXPECT_EQ(desktop.folder.names(), std::vector<std::string>{"picture.jpg"});
}

TEST(Screencapture, manyAtOnceIntoTheSameFileLeaveAWholeOne)
{
    Desktop desktop;
    const auto pixels = drawnPixels(width, height);
    for (int i = 0; i < 10; ++i) {
        desktop.screen.paint(whole, pixels);
        desktop.screen.fill({i, i, 1, 1}, 0xff00ff);
        std::vector<std::unique_ptr<Program>> all;
        for (int k = 0; k < 8; ++k)
            all.push_back(std::make_unique<Program>(std::vector{test::captureCommand(), desktop.file.string()},
                                                    test::Environment{{"DISPLAY", desktop.server.display()}}));
        for (auto &one : all)
            EXPECT_EQ(one->outcome().status, 0);
        const auto together = contentsOf(desktop.file);
        std::filesystem::remove(desktop.file);
        EXPECT_TRUE(desktop.captured() == together);
        EXPECT_EQ(desktop.folder.names(), std::vector<std::string>{"picture.jpg"});
    }
}

} // namespace
} // namespace orvalen
