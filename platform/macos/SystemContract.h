#pragma once

#include <type_traits>

/// How both halves of the contract compare what the system gives with what the adapters expect.
namespace orvalen::system_contract {

template <typename Given, typename Expected>
constexpr bool is = std::is_same_v<Given, Expected>;

/// A type that is handed over by its bits: an enumeration there, a number here.
template <typename Given, typename Expected>
constexpr bool isAs = sizeof(Given) == sizeof(Expected) && alignof(Given) == alignof(Expected);

} // namespace orvalen::system_contract
