#include "ui/SettingsRules.h"

#include <gtest/gtest.h>

namespace orvalen {
namespace {

TEST(SettingsRules, theTargetHasOneDecimalAndItsUnit)
{
    EXPECT_EQ(SettingsRules::targetValue(40.0), "40.0 °C");
    EXPECT_EQ(SettingsRules::targetValue(38.5), "38.5 °C");
    EXPECT_EQ(SettingsRules::targetValue(45.3), "45.3 °C");
    EXPECT_EQ(SettingsRules::targetValue(40.25), "40.2 °C"); // as the C library rounds
    EXPECT_EQ(SettingsRules::targetValue(-3.14), "-3.1 °C");
}

TEST(SettingsRules, theTimeoutIsCutOffToWholeMinutes)
{
    EXPECT_EQ(SettingsRules::idleTimeoutValue(3.0), "3 mins");
    EXPECT_EQ(SettingsRules::idleTimeoutValue(1.0), "1 mins");
    EXPECT_EQ(SettingsRules::idleTimeoutValue(9.9), "9 mins");
    EXPECT_EQ(SettingsRules::idleTimeoutValue(0.7), "0 mins");
    EXPECT_EQ(SettingsRules::idleTimeoutValue(-2.5), "-2 mins");
    EXPECT_EQ(SettingsRules::idleTimeoutValue(1440.0), "1440 mins");
}

TEST(SettingsRules, aTimeoutThatNoNumberOfMinutesCanHoldIsShownAsTheLargest)
{
    EXPECT_EQ(SettingsRules::idleTimeoutValue(1e300), "9223372036854775807 mins");
    EXPECT_EQ(SettingsRules::idleTimeoutValue(-1e300), "-9223372036854775808 mins");
}

TEST(SettingsRules, theSlidersOfferThirteenTemperaturesAndTenTimes)
{
    constexpr auto target = SettingsRules::targetScale;
    EXPECT_EQ(target.steps() + 1, 13);
    EXPECT_EQ(target.at(0.0), 38.0);
    EXPECT_EQ(target.moved(38.0, 1), 38.5);
    EXPECT_EQ(target.at(1.0), 44.0);
    constexpr auto idle = SettingsRules::idleTimeoutScale;
    EXPECT_EQ(idle.steps() + 1, 10);
    EXPECT_EQ(idle.at(0.0), 1.0);
    EXPECT_EQ(idle.moved(1.0, 1), 2.0);
    EXPECT_EQ(idle.at(1.0), 10.0);
}

} // namespace
} // namespace orvalen
