#include "platform/macos/PowerSourcesIOKit.h"

#include <gmock/gmock.h>

#include <cmath>
#include <csignal>
#include <limits>

#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/CoreFoundation.h"
#include "tests/platform/macos/fakes/PowerSources.h"

namespace orvalen {
namespace {

using fake::makeDictionary;
using fake::makeNumber;
using fake::makeString;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::KilledBySignal;

using Made = std::function<CFTypeRef()>;

Made string(const std::string &text)
{
    return [text] { return makeString(text); };
}

Made whole(std::int64_t value)
{
    return [value] { return makeNumber(value); };
}

Made real(double value)
{
    return [value] { return makeNumber(value); };
}

Made state(const Made &value)
{
    return [value] { return makeDictionary({{makeString("Power Source State"), value()}}); };
}

Made capacity(const Made &value)
{
    return [value] { return makeDictionary({{makeString("Current Capacity"), value()}}); };
}

Made battery(const std::string &state, std::int64_t percent)
{
    return [state, percent] {
        return makeDictionary({{makeString("Name"), makeString("InternalBattery-0")},
                               {makeString("Current Capacity"), makeNumber(percent)},
                               {makeString("Max Capacity"), makeNumber(std::int64_t{100})},
                               {makeString("Is Charging"), kCFBooleanTrue},
                               {makeString("Power Source State"), makeString(state)}});
    };
}

auto source(std::optional<std::string> state, std::optional<std::int64_t> capacity)
{
    return AllOf(Field(&PowerSource::state, state), Field(&PowerSource::currentCapacity, capacity));
}

class PowerSourcesIOKitTest : public ::testing::Test
{
protected:
    PowerSourcesIOKitTest() { (void)fake::takeCalls(); }
    ~PowerSourcesIOKitTest() override { EXPECT_EQ(fake::living(), 0); }

    std::vector<PowerSource> listOf(const std::vector<Made> &descriptions)
    {
        fake::setPowerSources({.descriptions = descriptions});
        return power.list();
    }

    PowerSourcesIOKit power;
};

using PowerSourcesIOKitDeathTest = PowerSourcesIOKitTest;

TEST_F(PowerSourcesIOKitTest, asksEachSourceOfOneBlobForItsDescription)
{
    EXPECT_THAT(listOf({battery("AC Power", 80), battery("Off Line", 60)}),
                ElementsAre(source("AC Power", 80), source("Off Line", 60)));
    EXPECT_THAT(fake::takeCalls(), ElementsAre("IOPSCopyPowerSourcesInfo", "IOPSCopyPowerSourcesList blob",
                                               "IOPSGetPowerSourceDescription blob source1",
                                               "IOPSGetPowerSourceDescription blob source2"));
}

TEST_F(PowerSourcesIOKitTest, aMacWithoutABatteryHasNoSources)
{
    EXPECT_THAT(listOf({}), IsEmpty());
    EXPECT_THAT(fake::takeCalls(), ElementsAre("IOPSCopyPowerSourcesInfo", "IOPSCopyPowerSourcesList blob"));
}

TEST_F(PowerSourcesIOKitTest, everyListIsFresh)
{
    EXPECT_THAT(listOf({battery("Battery Power", 64)}), ElementsAre(source("Battery Power", 64)));
    EXPECT_THAT(listOf({battery("AC Power", 65)}), ElementsAre(source("AC Power", 65)));
}

TEST_F(PowerSourcesIOKitTest, aDescriptionThatIsNoDictionaryIsSkipped)
{
    EXPECT_THAT(listOf({battery("AC Power", 80), string("AC Power"), whole(60), battery("Off Line", 40)}),
                ElementsAre(source("AC Power", 80), source("Off Line", 40)));
}

TEST_F(PowerSourcesIOKitTest, aDictionaryWithAKeyThatIsNoTextIsSkipped)
{
    const Made odd = [] {
        return makeDictionary({{makeString("Power Source State"), makeString("AC Power")},
                               {makeNumber(std::int64_t{1}), makeString("one")}});
    };
    EXPECT_THAT(listOf({odd, battery("Battery Power", 40)}), ElementsAre(source("Battery Power", 40)));
}

TEST_F(PowerSourcesIOKitTest, aSourceMayKeepBothToItself)
{
    EXPECT_THAT(listOf({[] { return makeDictionary({}); }}), ElementsAre(source(std::nullopt, std::nullopt)));
}

TEST_F(PowerSourcesIOKitTest, aStateThatIsNoTextIsAbsent)
{
    EXPECT_THAT(
        listOf({state(whole(1)), state([] { return kCFBooleanTrue; }), state(string(""))}),
        ElementsAre(source(std::nullopt, std::nullopt), source(std::nullopt, std::nullopt), source("", std::nullopt)));
}

TEST_F(PowerSourcesIOKitTest, aCapacityThatIsNoNumberIsAbsent)
{
    for (const Made &value :
         {string("80"), Made([] { return kCFBooleanTrue; }), Made([] { return makeDictionary({}); })})
        EXPECT_THAT(listOf({capacity(value)}), ElementsAre(source(std::nullopt, std::nullopt)));
}

TEST_F(PowerSourcesIOKitTest, aCapacityWithAFractionIsAbsent)
{
    for (const double value : {80.5, -0.1, 1e300, std::numeric_limits<double>::infinity(), std::nan("")})
        EXPECT_THAT(listOf({capacity(real(value))}), ElementsAre(source(std::nullopt, std::nullopt))) << value;
}

TEST_F(PowerSourcesIOKitTest, aWholeCapacityIsTakenAsItIs)
{
    EXPECT_THAT(listOf({capacity(whole(0)), capacity(whole(-5)), capacity(whole(5'000'000'000)), capacity(real(80.0))}),
                ElementsAre(source(std::nullopt, 0), source(std::nullopt, -5), source(std::nullopt, 5'000'000'000),
                            source(std::nullopt, 80)));
}

TEST_F(PowerSourcesIOKitDeathTest, theProcessEndsWithoutAnAnswer)
{
    fake::setPowerSources({.hasBlob = false});
    EXPECT_EXIT((void)power.list(), KilledBySignal(SIGABRT), "^$");
}

TEST_F(PowerSourcesIOKitDeathTest, theProcessEndsWithoutAList)
{
    fake::setPowerSources({.hasList = false});
    EXPECT_EXIT((void)power.list(), KilledBySignal(SIGABRT), "^$");
}

TEST_F(PowerSourcesIOKitDeathTest, theProcessEndsWithoutADescription)
{
    fake::setPowerSources({.descriptions = {battery("AC Power", 80), [] { return nullptr; }}});
    EXPECT_EXIT((void)power.list(), KilledBySignal(SIGABRT), "^$");
}

} // namespace
} // namespace orvalen
