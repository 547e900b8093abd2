// SPDX-License-Identifier: MIT
// Prints the tree of an archive as indented lines, each with the offset it was read at.
#pragma once

#include "apps/kordump/archive_reader.h"

#include <cstdio>
#include <span>

namespace kordump {

void print_tree(Tree const &tree, std::FILE *target);

// Lines of 16 bytes in hexadecimal, with their offsets and characters.
void print_hex(std::span<unsigned char const> bytes, unsigned long long offset, std::FILE *target);

} // namespace kordump
