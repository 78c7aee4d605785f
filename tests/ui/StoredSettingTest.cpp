#include <gmock/gmock.h>

#include <QTest>

#include <algorithm>

#include "tests/ui/SettingsTab.h"

namespace orvalen {
namespace {

using test::NextStart;
using test::Settings;
using test::SettingsTab;
using ::testing::IsEmpty;

/// A setting that was written elsewhere, and what is shown for it.
struct Stored
{
    std::string key;
    std::string value;
    std::string shown;
    double number;
    double stepUp;   // the first one
    double stepDown; // the first one

    friend std::ostream &operator<<(std::ostream &out, const Stored &it) { return out << it.key << '=' << it.value; }
};

struct StoredSetting : Settings, ::testing::WithParamInterface<Stored>
{
    StoredSetting() { machine.settings.values = {{GetParam().key, GetParam().value}}; }

    [[nodiscard]] bool isTarget() const { return GetParam().key == "targetTemp"; }
    [[nodiscard]] kit::Slider &slider(const SettingsTab &in) const { return isTarget() ? in.target() : in.idle(); }
    [[nodiscard]] std::string shown(const SettingsTab &in) const
    {
        return isTarget() ? in.targetShown() : in.idleShown();
    }
};

TEST_P(StoredSetting, isShownAsItIsAndLeftAlone)
{
    const auto kept = machine.settings.values;
    NextStart next(*this);
    const auto expectUntouched = [&](const char *after) {
        EXPECT_EQ(shown(next.tab), GetParam().shown) << after;
        EXPECT_EQ(slider(next.tab).value(), GetParam().number) << after;
        EXPECT_EQ(isTarget() ? next.state.targetTemp : next.state.idleTimeoutMinutes, GetParam().number) << after;
        EXPECT_THAT(writes, IsEmpty()) << after;
        EXPECT_EQ(machine.settings.values, kept) << after;
    };
    expectUntouched("opening the tab");

    for (const int width : {815, 1600, 1000}) {
        next.window.resize(width, 560);
        settle();
    }
    expectUntouched("resizing");

    findIn<kit::Control>(next.window, "Settings")->setFocus(Qt::TabFocusReason);
    for (int i = 0; i < 6; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    expectUntouched("walking through");

    for (const int tag : {0, 1, 3}) {
        next.state.selectedTab = tag;
        settle();
    }
    next.window.hide();
    next.window.show();
    settle();
    expectUntouched("coming back");

    next.window.setLayoutDirection(Qt::RightToLeft);
    settle();
    next.window.setLayoutDirection(Qt::LeftToRight);
    settle();
    expectUntouched("mirroring");

    test::turnWheel(slider(next.tab), test::notchDown); // without the keyboard on it
    machine.world.advance(std::chrono::seconds(30));
    expectUntouched("a while");
}

TEST_P(StoredSetting, comesToAPlaceWithTheFirstStepOfAPerson)
{
    const auto keep = [this](Qt::Key key) {
        machine.settings.values = {{GetParam().key, GetParam().value}};
        const NextStart next(*this);
        SettingsTab::press(slider(next.tab), key);
        return slider(next.tab).value();
    };
    EXPECT_EQ(keep(Qt::Key_Right), GetParam().stepUp);
    EXPECT_EQ(keep(Qt::Key_Left), GetParam().stepDown);
}

INSTANTIATE_TEST_SUITE_P(WrittenElsewhere, StoredSetting,
                         ::testing::Values(Stored{"targetTemp", "45.3", "45.3 °C", 45.3, 45.3, 44.0},
                                           Stored{"targetTemp", "40.2", "40.2 °C", 40.2, 40.5, 40.0},
                                           Stored{"targetTemp", "36.9", "36.9 °C", 36.9, 38.0, 36.9},
                                           Stored{"idleTimeoutMinutes", "9.9", "9 mins", 9.9, 10.0, 9.0},
                                           Stored{"idleTimeoutMinutes", "30", "30 mins", 30.0, 30.0, 10.0},
                                           Stored{"idleTimeoutMinutes", "0.5", "0 mins", 0.5, 1.0, 0.5}),
                         [](const auto &one) {
                             auto name = one.param.key + "_" + one.param.value;
                             std::replace(name.begin(), name.end(), '.', '_');
                             return name;
                         });

} // namespace
} // namespace orvalen
