// SPDX-License-Identifier: MIT
#include "apps/kordump/printer.h"

namespace kordump {
namespace {

std::string describe_object(Node const &node)
{
    char tag[16];
    std::snprintf(tag, sizeof tag, "tag %04X ", node.tag);
    std::string text = tag;
    switch (node.kind) {
    case NodeKind::Null:
        return text + "null";
    case NodeKind::Reference:
        return text + "-> #" + std::to_string(node.index) + " " + node.class_name;
    default:
        text += node.class_name;
        if (node.index != 0)
            text += " #" + std::to_string(node.index);
        text += node.new_class ? " (new class #" : " (class #";
        text += std::to_string(node.class_index);
        if (node.new_class)
            text += ", schema " + std::to_string(node.schema);
        return text + ")";
    }
}

void print_node(Node const &node, int depth, std::FILE *target)
{
    std::string line = node.name.empty() ? "" : node.name + ": ";
    if (node.kind == NodeKind::Value)
        line += node.value + "  <" + node.type + ">";
    else if (node.kind == NodeKind::Array)
        line += "array of " + node.type + ", " + node.value;
    else
        line += describe_object(node);
    std::fprintf(target, "%08llX  %*s%s\n", node.offset, depth * 2, "", line.c_str());
    for (Node const &child : node.children)
        print_node(child, depth + 1, target);
}

} // namespace

void print_tree(Tree const &tree, std::FILE *target)
{
    for (Node const &node : tree.nodes)
        print_node(node, 0, target);
}

void print_hex(std::span<unsigned char const> bytes, unsigned long long offset, std::FILE *target)
{
    constexpr std::size_t row = 16;
    for (std::size_t begin = 0; begin < bytes.size(); begin += row) {
        std::string hex;
        std::string text;
        for (std::size_t i = begin; i < std::min(begin + row, bytes.size()); ++i) {
            char digits[4];
            std::snprintf(digits, sizeof digits, "%02X ", bytes[i]);
            hex += digits;
            text += bytes[i] >= 0x20 && bytes[i] < 0x7F ? static_cast<char>(bytes[i]) : '.';
        }
        std::fprintf(target, "%08llX  %-48s |%s|\n", offset + begin, hex.c_str(), text.c_str());
    }
}

} // namespace kordump
