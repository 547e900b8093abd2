// SPDX-License-Identifier: MIT
#pragma once

#include "apps/scene/scene_node.h"

namespace scoutrix {

// Where the host keeps its settings and its log, with a separator at the end; made when it is
// missing. Empty when the system has no place for a user's data.
Text get_host_folder();

} // namespace scoutrix
