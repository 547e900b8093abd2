// SPDX-License-Identifier: MIT
// For the functions that stand in for the system's.
#pragma once

#include "tests/faults/injection.h"

// The library and the C++ runtime have to find it in the program.
#define KOR_PUBLIC extern "C" __attribute__((visibility("default")))

namespace kor_test {

// Whether this call, which such a fault may hit, is hit.
bool strikes(Fault fault);

} // namespace kor_test
