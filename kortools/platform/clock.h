// SPDX-License-Identifier: MIT
// The present.
#pragma once

namespace kortools::platform {

// Seconds since 1970-01-01 00:00:00 UTC, whole.
long long get_time();

// Milliseconds since the system started, the time it slept included. Never goes back.
long long get_tick();

} // namespace kortools::platform
