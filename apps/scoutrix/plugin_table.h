// SPDX-License-Identifier: MIT
// The libraries of the plug-ins folder, and what came of each.
#pragma once

#include "apps/scene/scene.h"

namespace scoutrix {

// One line, or object, for each library: its verdict, and the types that it has added or the reason
// why it was refused. To be called while KnownTypes lives. The exit code: 1 when one was refused,
// or there is none.
int list_plugins(Text const &folder, bool as_json);

} // namespace scoutrix
