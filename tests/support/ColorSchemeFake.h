#pragma once

#include <utility>

#include "platform/ColorScheme.h"

namespace orvalen::test {

/// A desktop whose user prefers what the test says. Of those that follow it hears the last.
struct ChosenScheme : ColorScheme
{
    Receive receive;
    void follow(Receive newReceive) override { receive = std::move(newReceive); }
    void choose(bool dark) const { receive(dark ? 1 : 2); }
};

} // namespace orvalen::test
