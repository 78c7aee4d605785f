#pragma once

#include <cstddef>
#include <cstdint>

namespace orvalen {

/// Tells contents apart: two that differ have the same number once in 2^64 times, by bad luck. Not by bad will: it is
/// no protection against somebody who looks for two such contents. As fast as memory; the same on every machine of the
/// same byte order.
[[nodiscard]] std::uint64_t contentHash(const void *data, std::size_t size);

} // namespace orvalen
