// SPDX-License-Identifier: MIT
// The commands of scoutrix. Each returns the exit code, 0 or 1, and throws CXException for what
// cannot be done. A command that changes a scene writes it as a whole or leaves it as it was.
#pragma once

#include "apps/scoutrix/listing.h"

#include <string>
#include <vector>

namespace scoutrix {

struct ImportOptions {
    std::vector<std::string> files;
    bool append = false; // to the scene that is there
};

int import_files(ImportOptions const &options, Text const &scene);
int list_scene(Text const &scene, ListOptions const &options);
int remove_nodes(Text const &scene, std::vector<std::string> const &nodes);

// One value of a node or, without a key, all of them. 1 when there is no such value.
int get_value(Text const &scene, Text const &node, Text const &key);

// The node's name or a value of the user's own; an empty one removes it.
int set_value(Text const &scene, Text const &node, Text const &key, Text const &value);

} // namespace scoutrix
