#include "platform/linux/LocalisedDatesIcu.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <string>

namespace orvalen {
namespace {

using ::testing::AnyOf;
using ::testing::HasSubstr;

/// 15 November 2026, 20:28:25 in Greenwich.
constexpr std::chrono::system_clock::time_point present{std::chrono::seconds(1794774505)};

class LocalisedDatesIcuTest : public ::testing::Test
{
protected:
    LocalisedDatesIcuTest()
    {
        for (const auto *variable : {"LC_ALL", "LC_TIME", "LC_MESSAGES", "LANG", "TZ"})
            ::unsetenv(variable);
        ::setenv("TZ", "Europe/Berlin", 1);
    }

    static void set(const char *variable, const char *value) { ::setenv(variable, value, 1); }

    LocalisedDatesIcu dates{[] { return present; }};
};

const std::string narrowSpace = "\u202f"; // before PM, where the system's ICU knows it

TEST_F(LocalisedDatesIcuTest, areWrittenInTheLongStyleAndTimesInTheMediumOne)
{
    const auto english = AnyOf("November 15, 2026 at 9:28:25" + narrowSpace + "PM", "November 15, 2026 at 9:28:25 PM");
    for (const auto *language : {"en_US.UTF-8", "en_US", "C", "C.UTF-8", "POSIX", "", "en_US.ISO-8859-1@euro"}) {
        set("LANG", language);
        EXPECT_THAT(dates.now(), english) << language;
    }
    ::unsetenv("LANG");
    EXPECT_THAT(dates.now(), english);
    set("LANG", "en_GB.UTF-8");
    EXPECT_EQ(dates.now(), "15 November 2026 at 21:28:25");
    set("LANG", "de_DE.UTF-8");
    EXPECT_EQ(dates.now(), "15. November 2026 um 21:28:25");
    set("LANG", "ja_JP.UTF-8");
    EXPECT_EQ(dates.now(), "2026年11月15日 21:28:25");
}

TEST_F(LocalisedDatesIcuTest, aLanguageOfTwoScriptsIsWrittenInTheWantedOne)
{
    set("LANG", "sr_RS.UTF-8");
    EXPECT_THAT(dates.now(), HasSubstr("новембар"));
    for (const auto *language : {"sr_RS@latin", "sr_RS.UTF-8@latin", "sr@latin"}) {
        set("LANG", language);
        EXPECT_THAT(dates.now(), HasSubstr("novembar")) << language;
    }
    set("LANG", "uz_UZ.UTF-8");
    EXPECT_THAT(dates.now(), HasSubstr("noyabr"));
    set("LANG", "uz_UZ.UTF-8@cyrillic");
    EXPECT_THAT(dates.now(), HasSubstr("ноябр"));
    set("LANG", "de_DE.UTF-8@latin");
    EXPECT_EQ(dates.now(), "15. November 2026 um 21:28:25");
}

TEST_F(LocalisedDatesIcuTest, theCategoryForTimesDecidesOverTheLanguageAndOneForAllOverBoth)
{
    set("LANG", "en_US.UTF-8");
    set("LC_TIME", "de_DE.UTF-8");
    EXPECT_EQ(dates.now(), "15. November 2026 um 21:28:25");
    set("LC_ALL", "");
    EXPECT_EQ(dates.now(), "15. November 2026 um 21:28:25") << "empty is unset";
    set("LC_ALL", "en_GB.UTF-8");
    EXPECT_EQ(dates.now(), "15 November 2026 at 21:28:25");
}

TEST_F(LocalisedDatesIcuTest, aTravellerIsFollowed)
{
    set("LANG", "en_GB");
    set("TZ", "Asia/Tokyo");
    EXPECT_EQ(dates.now(), "16 November 2026 at 05:28:25");
    set("TZ", "America/New_York");
    EXPECT_EQ(dates.now(), "15 November 2026 at 15:28:25");
    set("TZ", "UTC");
    EXPECT_EQ(dates.now(), "15 November 2026 at 20:28:25");
    set("TZ", ":Asia/Kolkata");
    EXPECT_EQ(dates.now(), "16 November 2026 at 01:58:25");
}

TEST_F(LocalisedDatesIcuTest, nonsenseInTheEnvironmentStillGivesADate)
{
    for (const auto *language :
         {"xx_YY.UTF-8", "!!", "a_very_long_name_that_nobody_has_ever_given_to_a_language", "_"}) {
        set("LANG", language);
        EXPECT_THAT(dates.now(), HasSubstr("2026")) << language;
    }
    set("TZ", "Nowhere/Land");
    EXPECT_THAT(dates.now(), HasSubstr("2026"));
}

TEST_F(LocalisedDatesIcuTest, thePresentIsNow)
{
    set("LANG", "en_GB");
    set("TZ", "UTC");
    const auto written = [] {
        const auto now = std::chrono::system_clock::now();
        return LocalisedDatesIcu([now] { return now; }).now();
    };
    std::string before;
    std::string between;
    std::string after;
    do { // the three may fall into different seconds
        before = written();
        between = LocalisedDatesIcu().now();
        after = written();
    } while (before != after);
    EXPECT_EQ(between, before);
}

} // namespace
} // namespace orvalen
