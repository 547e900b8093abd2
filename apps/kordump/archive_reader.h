// SPDX-License-Identifier: MIT
// Reports the items of an archive, as in docs/archive-format.md, without creating any object.
//
// Damaged bytes are read twice: the first reading finds where understanding ends and which
// structures lie open there, so that the second one can mark these when it begins them.
#pragma once

#include "apps/kordump/cursor.h"
#include "apps/kordump/layout.h"
#include "apps/kordump/report.h"

#include <deque>
#include <set>
#include <tuple>
#include <vector>

namespace kordump {

constexpr int maximum_object_depth = 2000; // objects in objects, as the library has it
constexpr int maximum_tree_depth = 100;    // trees in the nodes of trees

struct UnknownClass {
    std::string name;
};

struct LayoutOrder {
    bool operator()(Layout const *one, Layout const *other) const
    {
        return std::tie(one->name, one->schema) < std::tie(other->name, other->schema);
    }
};

// Where and why a reading stopped.
struct Reading {
    std::size_t end = 0;           // bytes that were understood
    std::vector<std::size_t> open; // offsets of the structures that are not complete, ascending
    std::string unknown_class;     // stopped behind this class's record
    std::string problem;           // stopped in damaged bytes
    std::set<Layout const *, LayoutOrder> used;

    bool IsOpen(std::size_t offset) const;
};

class ArchiveReader {
public:
    // `first` is what an earlier reading of the same bytes found; null in the first one.
    ArchiveReader(Cursor &cursor, LayoutTable const &layouts, Report &report, Reading const *first);

    // The items of `top`, or objects up to the end when it is empty.
    void ReadItems(std::vector<Field> const &top);

    struct Tag {
        std::size_t offset = 0;
        unsigned int bits = 0; // the first 16
        bool is_class = false;
        bool is_new = false;    // the class record stands here
        bool is_long = false;   // though the index fits the short form
        unsigned int index = 0; // of the class or the object

        Layout const *layout = nullptr; // of the class; null when it is not known
        std::string const *name = nullptr;
        unsigned int schema = 0;
    };

    // The tag of an object or class, with the class record where it is new. Does not move when it
    // throws Damage.
    Tag ReadTag();

    // What there is to say of a class: its name, schema and index.
    void ReportClass(Tag const &tag);

    // A structure that the first reading found incomplete says so.
    void BeginStructure(std::size_t offset);
    void EndStructure() { m_reading.open.pop_back(); }
    bool IsCut(std::size_t offset) const { return m_first != nullptr && m_first->IsOpen(offset); }

    // Throws UnknownClass when the tag's class is not known.
    void ReadFields(Tag const &tag);

    // The offset at which the first reading stopped; the greatest one while that is going on.
    std::size_t GetKnownEnd() const { return m_first ? m_first->end : ~std::size_t(0); }
    Cursor &GetCursor() { return m_cursor; }
    Report &GetReport() { return m_report; }
    Reading &GetReading() { return m_reading; }

private:
    struct Class {
        Layout const *layout;
        std::string name;
        unsigned int schema;
    };
    struct Entry { // of the table of indices
        bool is_class;
        std::size_t number; // of the class, or of the object's class, in m_classes
    };

    void ReadField(Field const &field, std::string_view name, std::string_view key);
    void ReadOne(FieldType type, std::string_view name, std::string_view key);
    void ReadArray(Field const &field, std::string_view name, std::string_view key);
    void ReadElements(FieldType type, unsigned long long count);
    void ReadTree(std::string_view name, std::string_view key);
    void ReadPlain(FieldType type, std::string_view name, std::string_view key);
    void ReadCountValue(std::string_view name, std::string_view key);
    void ReadString(std::string_view name, std::string_view key);
    void ReadObject(std::string_view name, std::string_view key);
    void ReportObject(Tag const &tag, std::string_view name, std::string_view key);
    void ReportReference(Tag const &tag, std::string_view name, std::string_view key);
    void ReadNewClass(Tag &tag);
    void FindEntry(Tag &tag) const;
    std::string DescribeArray(Field const &field, unsigned long long count) const;
    Line MakeLine(std::size_t offset, std::string_view name, std::string_view text) const;

    Cursor &m_cursor;
    LayoutTable const &m_layouts;
    Report &m_report;
    Reading const *m_first;
    Reading m_reading;
    std::deque<Class> m_classes;
    std::vector<Entry> m_entries { {} }; // by index; 0 is null
    int m_depth = 0;                     // objects and nodes around the field
    int m_trees = 0;                     // trees around it
    bool m_node_data = false;            // a node of version 2 is read
};

// Counts and lengths: how many bytes their shortest form has.
unsigned int get_count_size(unsigned long long count);
unsigned int get_length_size(unsigned long long length);

} // namespace kordump
