#include "platform/macos/SettingsStoreDefaults.h"

#include <cmath>
#include <limits>

#include "tests/platform/macos/CallsTest.h"
#include "tests/platform/macos/fakes/Preferences.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;

class SettingsStoreDefaultsTest : public test::CallsTest
{
protected:
    void TearDown() override
    {
        fake::preferences::clear();
        CallsTest::TearDown();
    }

    static void putText(const std::string &text) { fake::preferences::put("key", fake::makeString(text)); }

    /// One question to the system for each.
    bool has()
    {
        const bool answer = store.has("key");
        EXPECT_THAT(fake::takeCalls(), ElementsAre("CFPreferencesCopyAppValue key of this application"));
        return answer;
    }

    bool readBool()
    {
        const bool answer = store.readBool("key");
        EXPECT_THAT(fake::takeCalls(), ElementsAre("CFPreferencesCopyAppValue key of this application"));
        return answer;
    }

    double readDouble()
    {
        const double answer = store.readDouble("key");
        EXPECT_THAT(fake::takeCalls(), ElementsAre("CFPreferencesCopyAppValue key of this application"));
        return answer;
    }

    SettingsStoreDefaults store;
};

TEST_F(SettingsStoreDefaultsTest, whatIsNotThereIsFalseAndZero)
{
    EXPECT_FALSE(has());
    EXPECT_FALSE(readBool());
    EXPECT_EQ(readDouble(), 0.0);
}

TEST_F(SettingsStoreDefaultsTest, theKeyIsTheOneAskedFor)
{
    fake::preferences::put("targetTemp", fake::makeNumber(41.5));
    EXPECT_EQ(store.readDouble("targetTemp"), 41.5);
    EXPECT_FALSE(store.has(std::string_view("targetTemp").substr(0, 6)));
    EXPECT_THAT(fake::takeCalls(), ElementsAre("CFPreferencesCopyAppValue targetTemp of this application",
                                               "CFPreferencesCopyAppValue target of this application"));
}

TEST_F(SettingsStoreDefaultsTest, truthValuesAreReadAsTheyStand)
{
    for (const bool value : {true, false}) {
        fake::preferences::put("key", value ? kCFBooleanTrue : kCFBooleanFalse);
        EXPECT_TRUE(has());
        EXPECT_EQ(readBool(), value);
        EXPECT_EQ(readDouble(), value ? 1.0 : 0.0);
    }
}

TEST_F(SettingsStoreDefaultsTest, numbersAreReadAsTheyStandAndAreTrueUnlessZero)
{
    for (const double value :
         {41.5, 0.1, 0.0, -3.0, 5e-324, std::numeric_limits<double>::max(), std::numeric_limits<double>::infinity()}) {
        fake::preferences::put("key", fake::makeNumber(value));
        EXPECT_TRUE(has());
        EXPECT_EQ(readDouble(), value);
        EXPECT_EQ(readBool(), value != 0.0) << value;
    }
    fake::preferences::put("key", fake::makeNumber(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_TRUE(std::isnan(readDouble()));
}

TEST_F(SettingsStoreDefaultsTest, wholeNumbersAreNumbersToo)
{
    for (const std::int64_t value : {std::int64_t{0}, std::int64_t{1}, std::int64_t{40}, std::int64_t{-7}}) {
        fake::preferences::put("key", fake::makeNumber(value));
        EXPECT_EQ(readDouble(), static_cast<double>(value));
        EXPECT_EQ(readBool(), value != 0) << value;
    }
}

TEST_F(SettingsStoreDefaultsTest, textThatMeansYesIsTrue)
{
    for (const auto *text :
         {"YES", "yes", "Y", "true", "TRUE", "t", "1", "9", "10", "+1", "-2", "007", "  true", "\t1", "1 for sure"}) {
        putText(text);
        EXPECT_TRUE(has());
        EXPECT_TRUE(readBool()) << text;
    }
}

TEST_F(SettingsStoreDefaultsTest, allOtherTextIsFalse)
{
    for (const auto *text : {"NO", "no", "false", "0", "00", "-0", "0.5", "", " ", "+", "on", "perhaps", "nay: yes",
                             "\"YES\"", "+-1", "- 1", "°1"}) {
        putText(text);
        EXPECT_TRUE(has());
        EXPECT_FALSE(readBool()) << text;
    }
}

TEST_F(SettingsStoreDefaultsTest, textIsTheNumberThatItBeginsWith)
{
    const std::pair<const char *, double> expected[] = {
        {"41.5", 41.5}, {"40", 40.0}, {" 0.5", 0.5}, {"-3", -3.0},  {"39.5 degrees", 39.5}, {"3,5", 3.0},
        {"0.0", 0.0},   {"", 0.0},    {" ", 0.0},    {"warm", 0.0}, {"°40", 0.0},           {"4e1", 40.0},
    };
    for (const auto &[text, number] : expected) {
        putText(text);
        EXPECT_EQ(readDouble(), number) << text;
    }
}

TEST_F(SettingsStoreDefaultsTest, aValueOfAnotherKindIsThereButReadsAsFalseAndZero)
{
    const auto array = [] { return fake::makeArray({fake::makeNumber(41.5)}); };
    const auto dictionary = [] { return fake::makeDictionary({{fake::makeString("YES"), fake::makeString("1")}}); };
    for (const auto value : {array(), dictionary(), fake::makeOpaque("data")}) {
        fake::preferences::put("key", value);
        EXPECT_TRUE(has());
        EXPECT_FALSE(readBool());
        EXPECT_EQ(readDouble(), 0.0);
    }
}

TEST_F(SettingsStoreDefaultsTest, aTruthValueIsKeptAsOneAndSynchronisedAtOnce)
{
    store.writeBool("smartModeEnabled", false);
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("CFPreferencesSetAppValue smartModeEnabled boolean false of this application",
                            "CFPreferencesAppSynchronize this application"));
    store.writeBool("soundFeedbackEnabled", true);
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("CFPreferencesSetAppValue soundFeedbackEnabled boolean true of this application",
                            "CFPreferencesAppSynchronize this application"));
}

TEST_F(SettingsStoreDefaultsTest, aNumberIsKeptToTheLastBitAndSynchronisedAtOnce)
{
    store.writeDouble("targetTemp", 0.1 + 0.2);
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("CFPreferencesSetAppValue targetTemp real 0.30000000000000004 of this application",
                            "CFPreferencesAppSynchronize this application"));
    store.writeDouble("targetTemp", 41.0);
    EXPECT_THAT(fake::takeCalls(), ElementsAre("CFPreferencesSetAppValue targetTemp real 41 of this application",
                                               "CFPreferencesAppSynchronize this application"));
}

TEST_F(SettingsStoreDefaultsTest, anotherStoreReadsWhatOneHasWritten)
{
    store.writeBool("key", true);
    static_cast<void>(fake::takeCalls());
    EXPECT_TRUE(has());
    EXPECT_TRUE(SettingsStoreDefaults().readBool("key"));
    store.writeDouble("key", 0.0);
    EXPECT_EQ(SettingsStoreDefaults().readDouble("key"), 0.0);
    static_cast<void>(fake::takeCalls());
    EXPECT_TRUE(has()) << "zero is a value, too";
}

TEST_F(SettingsStoreDefaultsTest, whatCannotBeBroughtToTheDiskLastsForTheRun)
{
    fake::preferences::setWritable(false);
    store.writeDouble("key", 41.5);
    static_cast<void>(fake::takeCalls());
    EXPECT_EQ(readDouble(), 41.5);
}

} // namespace
} // namespace orvalen
