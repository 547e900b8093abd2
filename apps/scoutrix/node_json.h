// SPDX-License-Identifier: MIT
// Nodes for scripts: what is a number, a truth value or a list in the scene is so in JSON; times
// are texts of the local clock, as everywhere in scoutrix.
#pragma once

#include "apps/scene/scene_node.h"

#include <nlohmann/json_fwd.hpp>

namespace scoutrix {

nlohmann::ordered_json to_json(Text const &text);

// A property of the node's, or a value of the user's own; null when it has none of that key.
nlohmann::ordered_json get_json_value(CSceneNode const &node, Text const &key);

// Every property that the node has, by its key, and "values", the user's own.
nlohmann::ordered_json get_json_properties(CSceneNode const &node);

} // namespace scoutrix
