#include "platform/linux/SettingsPagesDesktop.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "platform/posix/ChildProcessesPosix.h"
#include "tests/support/StreamFakes.h"
#include "tests/support/TemporaryFolder.h"

namespace orvalen {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A search path with nothing on it but what a test puts there.
class SettingsPagesDesktopTest : public ::testing::Test
{
protected:
    void install(const std::string &name, const std::string &script = "#!/bin/sh\n") const
    {
        temporary.write(name, script, true);
    }

    /// The command lines that were started for a page of that desktop, without the folder.
    std::vector<std::string> startedFor(std::string_view url, const std::string &desktop)
    {
        EXPECT_TRUE(SettingsPagesDesktop(processes, desktop, folder.string()).open(url)) << url;
        std::vector<std::string> lines;
        const auto beginning = "launch " + folder.string() + "/";
        for (const auto &line : diary.take()) {
            EXPECT_TRUE(line.starts_with(beginning)) << line;
            lines.push_back(line.substr(beginning.size()));
        }
        return lines;
    }

    const test::TemporaryFolder temporary;
    const fs::path folder = temporary.path();
    test::Diary diary;
    test::FakeChildProcesses processes{diary};
};

/// One desktop's page: what is installed, and what is started then.
struct Page
{
    std::string desktop;
    std::string_view url;
    std::string command; ///< Empty: that desktop has no such page.
};

const std::vector<Page> &desktopPages()
{
    namespace urls = settings_urls;
    static const std::vector<Page> list = {
        {"KDE", urls::displays, "systemsettings kcm_kscreen"},
        {"KDE", urls::olderDisplays, "systemsettings kcm_kscreen"},
        {"KDE", urls::screenRecording, ""},
        {"KDE", urls::accessibility, "systemsettings kcm_access"},
        {"GNOME", urls::displays, "gnome-control-center display"},
        {"GNOME", urls::olderDisplays, "gnome-control-center display"},
        {"GNOME", urls::screenRecording, "gnome-control-center applications"},
        {"GNOME", urls::accessibility, "gnome-control-center universal-access"},
        {"XFCE", urls::displays, "xfce4-display-settings"},
        {"XFCE", urls::olderDisplays, "xfce4-display-settings"},
        {"XFCE", urls::screenRecording, ""},
        {"XFCE", urls::accessibility, "xfce4-accessibility-settings"},
        {"MATE", urls::displays, "mate-display-properties"},
        {"MATE", urls::screenRecording, ""},
        {"MATE", urls::accessibility, "mate-at-properties"},
        {"X-Cinnamon", urls::displays, "cinnamon-settings display"},
        {"X-Cinnamon", urls::screenRecording, ""},
        {"X-Cinnamon", urls::accessibility, "cinnamon-settings universal-access"},
        {"LXQt", urls::displays, "lxqt-config-monitor"},
        {"LXQt", urls::screenRecording, ""},
        {"LXQt", urls::accessibility, ""},
    };
    return list;
}

TEST_F(SettingsPagesDesktopTest, eachDesktopShowsItsOwnPage)
{
    for (const auto &page : desktopPages())
        if (!page.command.empty())
            install(page.command.substr(0, page.command.find(' ')));
    for (const auto &page : desktopPages()) {
        const auto started = startedFor(page.url, page.desktop);
        EXPECT_EQ(started, page.command.empty() ? std::vector<std::string>{} : std::vector{page.command})
            << page.desktop << " " << page.url;
    }
}

TEST_F(SettingsPagesDesktopTest, withoutTheProgramNothingHappens)
{
    for (const auto &page : desktopPages())
        EXPECT_THAT(startedFor(page.url, page.desktop), IsEmpty());
}

TEST_F(SettingsPagesDesktopTest, theFirstKnownNameOfTheDesktopCounts)
{
    install("gnome-control-center");
    install("systemsettings");
    for (const auto *const desktop :
         {"ubuntu:GNOME", "GNOME-Classic:GNOME", "Budgie:GNOME", "GNOME:KDE", ":GNOME", "GNOME:"})
        EXPECT_THAT(startedFor(settings_urls::displays, desktop), ElementsAre("gnome-control-center display"))
            << desktop;
    EXPECT_THAT(startedFor(settings_urls::displays, "KDE:GNOME"), ElementsAre("systemsettings kcm_kscreen"));
    EXPECT_THAT(startedFor(settings_urls::screenRecording, "KDE:GNOME"), IsEmpty()); // KDE it is
    for (const auto *const desktop : {"", ":", "sway", "gnome", "GNOME ", "KDEGNOME", "Hyprland:wlroots"})
        EXPECT_THAT(startedFor(settings_urls::displays, desktop), IsEmpty()) << desktop;
}

TEST_F(SettingsPagesDesktopTest, withoutTheWholeSettingsProgramOneThatShowsSinglePages)
{
    install("kcmshell5");
    EXPECT_THAT(startedFor(settings_urls::displays, "KDE"), ElementsAre("kcmshell5 kcm_kscreen"));
    EXPECT_THAT(startedFor(settings_urls::accessibility, "KDE"), ElementsAre("kcmshell5 kcm_access"));
    install("kcmshell6");
    EXPECT_THAT(startedFor(settings_urls::displays, "KDE"), ElementsAre("kcmshell6 kcm_kscreen"));
    install("systemsettings");
    EXPECT_THAT(startedFor(settings_urls::displays, "KDE"), ElementsAre("systemsettings kcm_kscreen"));
}

TEST_F(SettingsPagesDesktopTest, oneThatCannotBeStartedGivesWayToTheNext)
{
    install("systemsettings");
    processes.missing.insert((folder / "systemsettings").string());
    EXPECT_THAT(startedFor(settings_urls::displays, "KDE"), ElementsAre("systemsettings kcm_kscreen"));
    install("kcmshell5");
    EXPECT_THAT(startedFor(settings_urls::displays, "KDE"),
                ElementsAre("systemsettings kcm_kscreen", "kcmshell5 kcm_kscreen"));
}

TEST_F(SettingsPagesDesktopTest, theProgramIsLeftToTheUser)
{
    install("lxqt-config-monitor");
    startedFor(settings_urls::displays, "LXQt");
    ASSERT_EQ(processes.launched.size(), 1U);
    EXPECT_TRUE(processes.launched.front()->isRunning);
    EXPECT_FALSE(processes.launched.front()->isHeld);
}

TEST_F(SettingsPagesDesktopTest, otherAddressesShowNothing)
{
    install("gnome-control-center");
    for (const auto *const url :
         {"https://example.org", "x-apple.systempreferences:", "x-apple.systempreferences:display",
          "x-apple.systempreferences:com.apple.preference.security", "displays"})
        EXPECT_THAT(startedFor(url, "GNOME"), IsEmpty()) << url;
}

TEST_F(SettingsPagesDesktopTest, whatIsNoUrlIsSaidToBeNone)
{
    install("gnome-control-center");
    SettingsPagesDesktop pages(processes, "GNOME", folder.string());
    for (const auto *const text : {"", "http://a b", "x-apple.systempreferences:com.apple.preference displays", "a%b"})
        EXPECT_FALSE(pages.open(text)) << text;
    EXPECT_THAT(diary.take(), IsEmpty());
}

TEST_F(SettingsPagesDesktopTest, aRealProgramIsStartedAndNotWaitedFor)
{
    install("gnome-control-center", R"(#!/bin/sh
printf '[%s]' "$@" >"${0%/*}/new"
mv "${0%/*}/new" "${0%/*}/shown"
echo $$ >"${0%/*}/new"
mv "${0%/*}/new" "${0%/*}/pid"
exec /bin/sleep 600
)");
    ChildProcessesPosix real;
    EXPECT_TRUE(SettingsPagesDesktop(real, "GNOME", folder.string()).open(settings_urls::accessibility));
    while (!fs::exists(folder / "pid")) // the test's own time limit ends a wait in vain
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    std::ifstream shown(folder / "shown");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(shown), {}), "[universal-access]");
    pid_t pid = 0;
    std::ifstream(folder / "pid") >> pid;
    EXPECT_EQ(::kill(pid, SIGKILL), 0) << "it is still there";
}

} // namespace
} // namespace orvalen
