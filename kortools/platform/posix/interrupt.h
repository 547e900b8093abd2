// SPDX-License-Identifier: MIT
// Whether the calling thread's current call was interrupted for good (CallGuard), and not by some
// signal after which it should go on.
#pragma once

namespace kortools::platform {

bool is_interrupted();

} // namespace kortools::platform
