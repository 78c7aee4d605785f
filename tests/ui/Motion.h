#pragma once

namespace orvalen::test {

/// Whether the style of the test program says that things may move. Not, at the start.
void allowMotion(bool allowed);

} // namespace orvalen::test
