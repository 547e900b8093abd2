// SPDX-License-Identifier: MIT
// A tree from the JSON of its report: the tags follow from the nodes' depths.
#pragma once

#include "apps/kordump/archive_writer.h"

namespace kordump {

class TreeWriter {
public:
    TreeWriter(ArchiveWriter &archive, ByteBuffer &bytes)
        : m_archive(archive)
        , m_bytes(bytes)
    {
    }

    // The head has the class and, of a tree that was cut, how many tags are missing at the end.
    void WriteHead(Json const &head);
    void WriteNode(Json const &node);
    void WriteEnd(Json const &head);

private:
    void WriteTagsBehind(unsigned long long next_depth);

    ArchiveWriter &m_archive;
    ByteBuffer &m_bytes;
    bool m_any = false;             // a node was written; the rest is about the last one
    unsigned long long m_depth = 0; //
    bool m_empty_list = false;      // it has a list of children with nothing in it
};

// A tree within an object: its head, with the nodes in it.
void write_tree(ArchiveWriter &archive, ByteBuffer &bytes, Json const &tree);

} // namespace kordump
