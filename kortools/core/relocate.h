// SPDX-License-Identifier: MIT
// Which objects may be moved to another address by copying their bytes and forgetting the original.
#pragma once

#include <type_traits>

namespace kortools::core {

// Specialize as true for a type that holds no address of itself.
template <typename T>
inline constexpr bool is_trivially_relocatable = std::is_trivially_copyable_v<T>;

} // namespace kortools::core
