#pragma once

#include <string_view>
#include <vector>

#include "platform/UsbTree.h"

namespace orvalen {

/// The tree in a report of macOS's system profiler: a JSON dictionary whose value for `key` is an array of
/// dictionaries, each with its "_name" and, if others hang below it, their array as "_items". Of a key that stands
/// there twice the last one counts.
///
/// What is no such array counts as none, with all that is in it, and what is no JSON as an empty report. Any bytes, any
/// depth: no recursion; memory in proportion to the report. Any thread.
[[nodiscard]] std::vector<UsbNode> usbNodesInReport(std::string_view report, std::string_view key);

} // namespace orvalen
