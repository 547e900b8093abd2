// SPDX-License-Identifier: MIT
// Thread identity.
#pragma once

namespace kortools::platform {

// The system's identifier of the calling thread (the kernel's on Linux), never 0.
unsigned long long get_current_thread_id();

} // namespace kortools::platform
