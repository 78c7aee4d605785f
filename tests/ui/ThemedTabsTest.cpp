#include <gtest/gtest.h>

#include "tests/support/ColorSchemeFake.h"
#include "tests/ui/Situations.h"

namespace orvalen {
namespace {

using test::ChosenScheme;
using test::Dashboard;
using test::situationsOf;

/// While it lives, the system's own palette is a dark or a light one.
struct SystemPalette
{
    explicit SystemPalette(bool dark) { QApplication::setPalette(QPalette(dark ? Qt::black : Qt::white)); }
    ~SystemPalette() { QApplication::setPalette(QPalette()); }
    SystemPalette(const SystemPalette &) = delete;
    SystemPalette &operator=(const SystemPalette &) = delete;
};

/// A window whose theme can be chosen, and which has been in that theme from its first widget on.
struct ThemedWindow : SystemPalette, Dashboard
{
    explicit ThemedWindow(bool dark) : SystemPalette(dark)
    {
        window.followColorScheme(scheme);
        choose(dark);
        show();
    }
    void choose(bool dark)
    {
        scheme.choose(dark);
        settle();
    }
    QImage pictureOf(int tab)
    {
        state.selectedTab = tab;
        settle();
        return window.grab().toImage();
    }

    ChosenScheme scheme;
};

struct ThemedTab : ::testing::TestWithParam<int>
{
};

INSTANTIATE_TEST_SUITE_P(Themes, ThemedTab, ::testing::ValuesIn(test::allTabs),
                         [](const auto &tab) { return "tab" + std::to_string(tab.param); });

TEST_P(ThemedTab, looksInAThemeChosenLaterAsInOneChosenBefore)
{
    for (const bool dark : {false, true}) {
        ThemedWindow early(dark);
        ThemedWindow late(!dark);
        late.pictureOf(GetParam()); // the tab is there already
        for (const auto &[name, arrange] : situationsOf(GetParam())) {
            arrange(early);
            arrange(late);
            late.choose(dark);
            EXPECT_EQ(late.pictureOf(GetParam()), early.pictureOf(GetParam())) << name << ", dark: " << dark;
            late.choose(!dark);
            EXPECT_NE(late.pictureOf(GetParam()), early.pictureOf(GetParam())) << name << ", dark: " << dark;
        }
    }
}

TEST_P(ThemedTab, isMadeInTheThemeThatWasChosenMeanwhile)
{
    for (const bool dark : {false, true}) {
        ThemedWindow early(dark);
        ThemedWindow late(!dark);
        const int another = GetParam() == 2 ? 3 : 2;
        const auto before = late.pictureOf(another);
        late.choose(dark); // and the tab is made now
        EXPECT_EQ(late.pictureOf(GetParam()), early.pictureOf(GetParam())) << dark;
        EXPECT_NE(late.pictureOf(another), before) << dark; // one that is there, and was hidden meanwhile
        EXPECT_EQ(late.pictureOf(another), early.pictureOf(another)) << dark;
    }
}

} // namespace
} // namespace orvalen
