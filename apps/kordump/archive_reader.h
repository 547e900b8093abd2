// SPDX-License-Identifier: MIT
// Reads the bytes of an archive into a tree, without creating any object. The format is that of
// docs/archive-format.md. Damaged or hostile bytes end the tree and are described; they cost no
// more than a small multiple of their own size.
#pragma once

#include "apps/kordump/layout.h"

#include <span>
#include <string>
#include <vector>

namespace kordump {

enum class NodeKind {
    Value,     // a plain value, a count or a string
    Array,     // a count and its elements; the elements of plain types are not nodes
    Null,      // a null object pointer
    Reference, // to the object with number `index`
    NewObject  // its class is named by `class_index`
};

struct Node {
    unsigned long long offset = 0; // bytes from the beginning of the archive
    NodeKind kind = NodeKind::Value;
    std::string name;             // of the field; empty outside objects
    std::string type;             // "u32", "string (UTF-16)"
    std::string value;            // as text, UTF-8
    unsigned int tag = 0;         // of an object: its first 16 bits
    unsigned int index = 0;       // number of the object
    unsigned int class_index = 0; // number of its class
    bool new_class = false;       // the class record stands here
    unsigned int schema = 0;
    std::string class_name;
    std::vector<Node> children;
};

struct Tree {
    std::vector<Node> nodes;
    unsigned long long end = 0; // bytes that the nodes cover
    std::string unknown_class;  // reading stopped behind this class's record
    std::string problem;        // why reading stopped in damaged bytes
};

// `top` is what lies outside objects, in order; when it is empty, objects up to the end.
Tree read_archive(std::span<unsigned char const> bytes, LayoutTable const &layouts,
    std::vector<Field> const &top);

} // namespace kordump
