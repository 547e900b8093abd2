// SPDX-License-Identifier: MIT
#include "apps/kordump/tree_writer.h"

#include "apps/kordump/number_codec.h"

#include <nlohmann/json.hpp>

namespace kordump {
namespace {

enum Tag : unsigned int { tag_end, tag_children, tag_no_children, tag_node, tag_root };

constexpr unsigned int tag_size = 4;
constexpr unsigned long long maximum_depth = 0x7FFFFFFF;

[[noreturn]] void rethrow_in_node(std::size_t number, std::exception const &error)
{
    throw std::runtime_error("node " + std::to_string(number) + ": " + error.what());
}

[[noreturn]] void refuse_depth(unsigned long long depth)
{
    throw std::runtime_error("a node of depth " + std::to_string(depth) + " cannot be here");
}

} // namespace

void TreeWriter::WriteHead(Json const &head)
{
    if (head.contains("class"))
        m_archive.WriteClass(head);
}

void TreeWriter::WriteTagsBehind(unsigned long long next_depth)
{
    if (next_depth > m_depth) {
        m_bytes.PutNumber(tag_children, tag_size);
        return;
    }
    if (m_empty_list) {
        m_bytes.PutNumber(tag_children, tag_size);
        m_bytes.PutNumber(tag_end, tag_size);
    } else {
        m_bytes.PutNumber(tag_no_children, tag_size);
    }
    for (; m_depth > next_depth; --m_depth)
        m_bytes.PutNumber(tag_end, tag_size);
}

void TreeWriter::WriteNode(Json const &node)
{
    unsigned long long const depth = parse_number(node.at("depth"), maximum_depth);
    if (m_any ? depth == 0 || depth > m_depth + 1 : depth != 0)
        refuse_depth(depth);
    if (m_any)
        WriteTagsBehind(depth);
    m_bytes.PutNumber(m_any ? tag_node : tag_root, tag_size);
    if (m_any) {
        m_archive.WriteClass(node);
        m_archive.WriteFields(node);
    }
    m_any = true;
    m_depth = depth;
    m_empty_list = node.value("empty_list", false);
}

void TreeWriter::WriteEnd(Json const &head)
{
    if (!m_any)
        return;
    auto const missing
        = head.contains("missing_tags") ? parse_number(head["missing_tags"], maximum_depth) : 0;
    unsigned long long tags = (m_empty_list ? 2 : 1) + m_depth + 1;
    tags -= std::min(missing, tags);
    for (unsigned int const tag : { m_empty_list ? tag_children : tag_no_children, tag_end }) {
        for (bool once = true; tags > 0 && (once || tag == tag_end); once = false, --tags)
            m_bytes.PutNumber(tag, tag_size);
    }
}

void write_tree(ArchiveWriter &archive, ByteBuffer &bytes, Json const &tree)
{
    TreeWriter writer(archive, bytes);
    writer.WriteHead(tree);
    if (!tree.contains("nodes"))
        return;
    std::size_t number = 0;
    for (Json const &node : tree["nodes"]) {
        try {
            writer.WriteNode(node);
        } catch (std::exception const &error) {
            rethrow_in_node(number, error);
        }
        ++number;
    }
    writer.WriteEnd(tree);
}

} // namespace kordump
