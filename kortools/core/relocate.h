// SPDX-License-Identifier: MIT
// What may be done to the bytes of objects.
#pragma once

#include <type_traits>

namespace kortools::core {

// Objects that may be moved to another address by copying their bytes and forgetting the original.
// Specialize as true for a type that holds no address of itself.
template <typename T>
inline constexpr bool is_trivially_relocatable = std::is_trivially_copyable_v<T>;

// Objects that zero bytes make fit to be assigned to, destroyed and relocated, when T() costs more:
// what containers keep in slots that are not in use.
template <typename T> inline constexpr bool zero_is_unused = false;

} // namespace kortools::core
