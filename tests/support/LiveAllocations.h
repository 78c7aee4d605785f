#pragma once

namespace orvalen::test {

/// What operator new has handed out and operator delete not yet taken back, in a test binary that links
/// orvalen_test_live_allocations. One thread only.
[[nodiscard]] long liveAllocations();

} // namespace orvalen::test
