// SPDX-License-Identifier: MIT
// Reports a tree, as in docs/tree-format.md: its nodes as one list, each with its depth, so that
// trees of any depth can be read.
#pragma once

#include "apps/kordump/archive_reader.h"

namespace kordump {

// Into the structure that is open: its class, "nodes", and how many tags are missing at the end
// when the tree is cut. Throws Damage and UnknownClass.
void read_tree(ArchiveReader &archive, std::string_view list_key);

// True when the class record of a tree begins here.
bool is_tree(Cursor const &cursor);

} // namespace kordump
