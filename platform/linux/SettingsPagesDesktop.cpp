#include "platform/linux/SettingsPagesDesktop.h"

#include <QString>
#include <QUrl>

#include <algorithm>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/posix/SearchPath.h"

namespace orvalen {

namespace {

enum class Page
{
    displays,
    screenRecording,
    accessibility,
};

/// A program and its arguments.
using Command = std::vector<std::string>;

/// How one desktop shows a page: the first of these that is installed.
struct Way
{
    std::string_view desktop;
    Page page;
    std::vector<Command> commands;
};

const std::vector<Way> &ways()
{
    static const std::vector<Way> list = {
        {"KDE",
         Page::displays,
         {{"systemsettings", "kcm_kscreen"}, {"kcmshell6", "kcm_kscreen"}, {"kcmshell5", "kcm_kscreen"}}},
        {"KDE",
         Page::accessibility,
         {{"systemsettings", "kcm_access"}, {"kcmshell6", "kcm_access"}, {"kcmshell5", "kcm_access"}}},
        {"GNOME", Page::displays, {{"gnome-control-center", "display"}}},
        {"GNOME", Page::screenRecording, {{"gnome-control-center", "applications"}}},
        {"GNOME", Page::accessibility, {{"gnome-control-center", "universal-access"}}},
        {"XFCE", Page::displays, {{"xfce4-display-settings"}}},
        {"XFCE", Page::accessibility, {{"xfce4-accessibility-settings"}}},
        {"MATE", Page::displays, {{"mate-display-properties"}}},
        {"MATE", Page::accessibility, {{"mate-at-properties"}}},
        {"X-Cinnamon", Page::displays, {{"cinnamon-settings", "display"}}},
        {"X-Cinnamon", Page::accessibility, {{"cinnamon-settings", "universal-access"}}},
        {"LXQt", Page::displays, {{"lxqt-config-monitor"}}},
    };
    return list;
}

struct PageOfUrl
{
    std::string_view url;
    Page page;
};

constexpr PageOfUrl pages[] = {
    {settings_urls::displays, Page::displays},
    {settings_urls::olderDisplays, Page::displays},
    {settings_urls::screenRecording, Page::screenRecording},
    {settings_urls::accessibility, Page::accessibility},
};

bool isKnown(std::string_view desktop)
{
    return std::any_of(ways().begin(), ways().end(), [&](const Way &way) { return way.desktop == desktop; });
}

/// The first of several names that means something here; empty: none.
std::string_view knownAmong(std::string_view desktops)
{
    while (!desktops.empty()) {
        const auto name = desktops.substr(0, desktops.find(':'));
        if (isKnown(name))
            return name;
        desktops.remove_prefix(std::min(name.size() + 1, desktops.size()));
    }
    return {};
}

} // namespace

SettingsPagesDesktop::SettingsPagesDesktop(ChildProcesses &processes, std::string desktop, std::string searchPath)
    : processes(processes), desktop(std::move(desktop)), searchPath(std::move(searchPath))
{
}

bool SettingsPagesDesktop::open(std::string_view url)
{
    const auto text = QString::fromUtf8(url.data(), static_cast<qsizetype>(url.size()));
    if (!QUrl(text, QUrl::StrictMode).isValid())
        return false;

    const auto *const wanted =
        std::find_if(std::begin(pages), std::end(pages), [&](const PageOfUrl &page) { return page.url == url; });
    const auto name = knownAmong(desktop);
    const auto way = std::find_if(ways().begin(), ways().end(), [&](const Way &each) {
        return wanted != std::end(pages) && each.page == wanted->page && each.desktop == name;
    });
    if (way == ways().end())
        return true;
    for (const auto &command : way->commands) {
        const auto program = search_path::find(command.front(), searchPath);
        if (!program)
            continue;
        try {
            // Let go at once: it is the user's window from now on.
            (void)processes.launch(*program, {command.begin() + 1, command.end()});
            break;
        } catch (const std::system_error &) { // NOLINT(bugprone-empty-catch): then the next one
        }
    }
    return true;
}

} // namespace orvalen
