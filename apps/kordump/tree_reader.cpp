// SPDX-License-Identifier: MIT
// After the class record, tags: 4 is the root and 3 a node, each followed by 1 when the list of
// its children comes next and by 2 when it has none; 0 ends a list. So a node's depth and the next
// one's say which tags lie between them, and the last one's depth how many end the tree.
#include "apps/kordump/tree_reader.h"

#include "apps/kordump/text_codec.h"

#include <algorithm>

namespace kordump {
namespace {

enum Tag : unsigned int { tag_end, tag_children, tag_no_children, tag_node, tag_root };

constexpr unsigned int tree_schema = 2;
constexpr unsigned int tag_size = 4;

class TreeReader {
public:
    explicit TreeReader(ArchiveReader &archive)
        : m_archive(archive)
        , m_cursor(archive.GetCursor())
        , m_report(archive.GetReport())
    {
    }

    void Read(std::string_view list_key);

private:
    void ReadClass();
    void ReadNodes();
    void ReadRoot();
    void ReadNode();
    void ReadTagBehindNode();
    unsigned long long CountMissingTags() const;
    bool Skip(Tag tag);
    [[noreturn]] void RefuseTag() const;

    ArchiveReader &m_archive;
    Cursor &m_cursor;
    Report &m_report;
    unsigned int m_depth = 0; // of the list being read; 0 is the one with the root

    bool m_any = false;            // a node was read; the rest is about the last one
    unsigned int m_last_depth = 0; //
    bool m_last_empty = false;     // it has a list of children with nothing in it
    unsigned long long m_tags = 0; // read behind it
};

bool TreeReader::Skip(Tag tag)
{
    if (!m_cursor.IsNext(tag))
        return false;
    m_cursor.Take(tag_size);
    return true;
}

void TreeReader::RefuseTag() const
{
    throw Damage("no tag of a tree belongs at offset " + std::to_string(m_cursor.GetOffset()));
}

void TreeReader::Read(std::string_view list_key)
{
    ReadClass();
    int const depth = m_report.GetDepth();
    m_report.OpenQuietly(list_key, Bracket::Array);
    try {
        ReadNodes();
    } catch (...) {
        m_report.CloseDownTo(depth);
        if (m_any)
            m_report.PutNumber("missing_tags", CountMissingTags());
        throw;
    }
    m_report.Close();
}

void TreeReader::ReadClass()
{
    Attempt attempt(m_cursor);
    ArchiveReader::Tag const tag = m_archive.ReadTag();
    if (!tag.is_class || *tag.name != "CTree" || tag.schema != tree_schema)
        throw Damage("no tree at offset " + std::to_string(tag.offset));
    attempt.Succeed();
    m_archive.ReportClass(tag);
}

void TreeReader::ReadNodes()
{
    while (m_depth > 0 || !m_any || !m_cursor.IsNext(tag_end)) {
        if (m_depth > 0 && Skip(tag_end)) {
            ++m_tags;
            --m_depth;
        } else if (m_depth > 0 && m_cursor.IsNext(tag_node)) {
            ReadNode();
        } else if (!m_any && m_cursor.IsNext(tag_root)) {
            ReadRoot();
        } else {
            RefuseTag();
        }
    }
    Skip(tag_end);
}

void TreeReader::ReadRoot()
{
    Line line { m_cursor.GetOffset(), "", "root", {}, 0 };
    Skip(tag_root);
    m_any = true;
    m_report.Open(line, "", Bracket::Object);
    m_report.PutNumber("depth", 0);
    ReadTagBehindNode();
    m_report.Close();
}

void TreeReader::ReadNode()
{
    Attempt attempt(m_cursor);
    std::size_t const start = m_cursor.GetOffset();
    Skip(tag_node);
    ArchiveReader::Tag const tag = m_archive.ReadTag();
    if (!tag.is_class) {
        m_cursor.Seek(start);
        throw Damage("a node without a class at offset " + std::to_string(start));
    }
    attempt.Succeed();
    m_last_depth = m_depth;
    m_last_empty = false;
    m_tags = 0;
    Line line;
    if (m_report.WantsLines())
        line = { start, "",
            *tag.name + (tag.is_new ? " (new class #" : " (class #") + std::to_string(tag.index)
                + ", schema " + std::to_string(tag.schema) + ")",
            {}, m_depth };
    m_report.Open(line, "", Bracket::Object);
    m_report.PutNumber("depth", m_depth);
    m_archive.ReportClass(tag);
    m_archive.BeginStructure(start);
    m_archive.ReadFields(tag);
    m_archive.EndStructure();
    ReadTagBehindNode();
    m_report.Close();
}

void TreeReader::ReadTagBehindNode()
{
    bool const has_list = Skip(tag_children);
    if (!has_list && !Skip(tag_no_children))
        RefuseTag();
    ++m_tags;
    if (!has_list)
        return;
    ++m_depth;
    m_last_empty = m_cursor.IsNext(tag_end) || m_cursor.GetOffset() == m_archive.GetKnownEnd();
    if (m_last_empty)
        m_report.PutQuietly("empty_list", "true");
}

unsigned long long TreeReader::CountMissingTags() const
{
    unsigned long long const behind_node = m_last_empty ? 2 : 1;
    unsigned long long const ends = m_last_depth + 1ULL;
    return behind_node + ends - m_tags;
}

} // namespace

void read_tree(ArchiveReader &archive, std::string_view list_key)
{
    TreeReader(archive).Read(list_key);
}

bool is_tree(Cursor const &cursor)
{
    constexpr unsigned char record[]
        = { 0xFF, 0xFF, tree_schema, 0, 5, 0, 'C', 'T', 'r', 'e', 'e' };
    return cursor.GetLeft() >= sizeof record
        && std::ranges::equal(cursor.GetRest().first(sizeof record), record);
}

} // namespace kordump
