// Linked with the fakes but for one function that IOKit does not declare: as on a system that has dropped it.
#include "platform/macos/TemperatureSensorsIOKit.h"

#include <gmock/gmock.h>

#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/CoreFoundation.h"
#include "tests/platform/macos/fakes/HidEvents.h"

namespace orvalen {
namespace {

TEST(TemperatureSensorsMissingFunction, isNoAnswerAndNothingIsAsked)
{
    fake::setHidSystem({.services = {{"PMU tdie1", 42.9}}});
    EXPECT_EQ(TemperatureSensorsIOKit().read(), std::nullopt);
    EXPECT_THAT(fake::takeCalls(), ::testing::IsEmpty());
    EXPECT_EQ(fake::living(), 0);
}

} // namespace
} // namespace orvalen
