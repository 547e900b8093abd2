// SPDX-License-Identifier: MIT
#pragma once

namespace kortools::app {

// The version of SetInternalProductName(); 0: none.
int get_product_version();

} // namespace kortools::app
