#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/CoreFoundation.h"

namespace orvalen::test {

/// A test that accounts for every call and for every object: at its end no call is left that it has not taken, and no
/// object that did not live before.
class CallsTest : public ::testing::Test
{
protected:
    CallsTest() { static_cast<void>(fake::takeCalls()); }

    void TearDown() override
    {
        EXPECT_THAT(fake::takeCalls(), ::testing::IsEmpty());
        EXPECT_EQ(fake::living(), livingBefore);
    }

private:
    const int livingBefore = fake::living();
};

} // namespace orvalen::test
