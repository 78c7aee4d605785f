#pragma once

#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/ui/Reading.h"
#include "ui/SettingsView.h"

namespace orvalen::test {

inline const QString targetTitle = "Target Bridge Temperature";
inline const QString idleTitle = "Idle Sleep Timeout";

/// What a person finds and does in one tab "Settings".
struct SettingsTab
{
    explicit SettingsTab(const QWidget &window) : view(*window.findChild<SettingsView *>()) {}

    [[nodiscard]] kit::Slider &slider(const QString &name) const
    {
        for (auto *slider : view.findChildren<kit::Slider *>()) {
            if (slider->accessibleName() == name)
                return *slider;
        }
        ADD_FAILURE() << "no slider " << name.toStdString();
        std::abort();
    }
    [[nodiscard]] kit::Slider &target() const { return slider(targetTitle); }
    [[nodiscard]] kit::Slider &idle() const { return slider(idleTitle); }
    [[nodiscard]] kit::Toggle &toggle(const QString &name) const
    {
        for (auto *toggle : view.findChildren<kit::Toggle *>()) {
            if (toggle->accessibleName() == name)
                return *toggle;
        }
        ADD_FAILURE() << "no switch " << name.toStdString();
        std::abort();
    }

    /// The values beside the titles.
    [[nodiscard]] std::string targetShown() const { return after(targetTitle); }
    [[nodiscard]] std::string idleShown() const { return after(idleTitle); }

    static void press(kit::Slider &slider, Qt::Key key)
    {
        slider.setFocus();
        QTest::keyClick(&slider, key);
    }

    SettingsView &view;

private:
    [[nodiscard]] std::string after(const QString &title) const
    {
        const auto all = contentOf(view);
        const auto found = std::find(all.begin(), all.end(), title.toStdString());
        return found == all.end() ? std::string() : *(found + 1);
    }
};

/// Shows a window with the tab chosen.
inline SettingsTab opened(AppState &state, QWidget &window)
{
    state.selectedTab = 3;
    window.show();
    window.activateWindow();
    Dashboard::settle();
    return SettingsTab(window);
}

/// The tab of a program that has just started on a machine on which nothing has been set.
struct Settings : ::testing::Test, Dashboard
{
    SettingsTab tab = opened(state, window);
    std::vector<std::string> &writes = machine.settings.writes;
};

/// The next start of the program, with what has been kept.
struct NextStart
{
    explicit NextStart(Dashboard &before)
        : state(before.machine.stateServices(before.engine)),
          window({state, before.webServer, before.usbManager, before.caffeine, before.machine.urls,
                  before.services.report}),
          tab(opened(state, window))
    {
    }

    AppState state;
    MainView window;
    SettingsTab tab;
};

} // namespace orvalen::test
