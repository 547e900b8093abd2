// SPDX-License-Identifier: MIT
#include "apps/kordump/archive_reader.h"

#include <bit>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace kordump {
namespace {

constexpr int maximum_depth = 4000;        // nested objects and arrays
constexpr std::size_t shown_elements = 16; // of an array of plain values
constexpr unsigned int new_class_tag = 0xFFFF;
constexpr unsigned int wide_index_tag = 0x7FFF;

struct Damage : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct UnknownClass {
    std::string name;
};

// The bytes of an archive, from which nothing can be read that is not there.
class Cursor {
public:
    explicit Cursor(std::span<unsigned char const> bytes)
        : m_bytes(bytes)
    {
    }

    std::size_t GetOffset() const { return m_offset; }
    std::size_t GetLeft() const { return m_bytes.size() - m_offset; }

    std::span<unsigned char const> Take(unsigned long long size)
    {
        if (size > GetLeft())
            throw Damage("cut: " + std::to_string(size) + " bytes needed at offset "
                + std::to_string(m_offset) + ", " + std::to_string(GetLeft()) + " left");
        auto const taken = m_bytes.subspan(m_offset, static_cast<std::size_t>(size));
        m_offset += taken.size();
        return taken;
    }

    unsigned long long TakeNumber(unsigned int size)
    {
        unsigned long long number = 0;
        unsigned int shift = 0;
        for (unsigned char const byte : Take(size)) {
            number |= static_cast<unsigned long long>(byte) << shift;
            shift += 8;
        }
        return number;
    }

    // Counts and lengths widen where all bits of the narrower form are set.
    unsigned long long TakeCount()
    {
        unsigned long long count = TakeNumber(2);
        if (count == 0xFFFF)
            count = TakeNumber(4);
        return count == 0xFFFFFFFF ? TakeNumber(8) : count;
    }

private:
    std::span<unsigned char const> m_bytes;
    std::size_t m_offset = 0;
};

void append_utf8(std::string &text, std::uint32_t ch)
{
    auto const tail = [&](int shift) { text += static_cast<char>(0x80 | ((ch >> shift) & 0x3F)); };
    if (ch < 0x80) {
        text += static_cast<char>(ch);
    } else if (ch < 0x800) {
        text += static_cast<char>(0xC0 | (ch >> 6));
        tail(0);
    } else if (ch < 0x10000) {
        text += static_cast<char>(0xE0 | (ch >> 12));
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | (ch >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

// A character of a quoted text: control characters, quotes and lone surrogates are escaped.
void append_quoted(std::string &text, std::uint32_t ch)
{
    if (ch == '"' || ch == '\\') {
        text += '\\';
        text += static_cast<char>(ch);
    } else if (ch < 0x20 || ch == 0x7F || (ch >= 0xD800 && ch < 0xE000)) {
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned>(ch));
        text += escape;
    } else {
        append_utf8(text, ch);
    }
}

std::string quote_utf16(std::span<unsigned char const> bytes)
{
    std::string text = "\"";
    auto const unit = [&](std::size_t i) -> std::uint32_t {
        return bytes[2 * i] | static_cast<std::uint32_t>(bytes[2 * i + 1]) << 8;
    };
    std::size_t const count = bytes.size() / 2;
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t ch = unit(i);
        bool const pair
            = (ch & 0xFC00) == 0xD800 && i + 1 < count && (unit(i + 1) & 0xFC00) == 0xDC00;
        if (pair)
            ch = 0x10000 + ((ch & 0x3FF) << 10) + (unit(++i) & 0x3FF);
        append_quoted(text, ch);
    }
    return text + '"';
}

// Bytes of no known page: what is not ASCII is shown as its code.
std::string quote_bytes(std::span<unsigned char const> bytes)
{
    std::string text = "\"";
    for (unsigned char const byte : bytes) {
        if (byte < 0x80) {
            append_quoted(text, byte);
        } else {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\x%02X", byte);
            text += escape;
        }
    }
    return text + '"';
}

template <typename Number> std::string print_number(Number number)
{
    char digits[40];
    auto const end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    return { digits, end };
}

std::string print_plain(FieldType type, unsigned long long bits)
{
    switch (type) {
    case FieldType::Bool:
        return bits == 0 ? "false" : bits == 1 ? "true" : "true (" + print_number(bits) + ")";
    case FieldType::I8:
        return print_number(static_cast<int>(static_cast<std::int8_t>(bits)));
    case FieldType::I16:
        return print_number(static_cast<std::int16_t>(bits));
    case FieldType::I32:
        return print_number(static_cast<std::int32_t>(bits));
    case FieldType::I64:
        return print_number(static_cast<std::int64_t>(bits));
    case FieldType::F32:
        return print_number(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
    case FieldType::F64:
        return print_number(std::bit_cast<double>(bits));
    default:
        return print_number(bits);
    }
}

class Reader {
public:
    Reader(std::span<unsigned char const> bytes, LayoutTable const &layouts)
        : m_cursor(bytes)
        , m_layouts(layouts)
    {
    }

    Tree Read(std::vector<Field> const &top)
    {
        Tree tree;
        try {
            for (Field const &field : top)
                ReadField(field, tree.nodes);
            Field const object { "", FieldType::Object, false };
            while (top.empty() && m_cursor.GetLeft() > 0)
                ReadField(object, tree.nodes);
        } catch (Damage const &damage) {
            tree.problem = damage.what();
        } catch (UnknownClass const &unknown) {
            tree.unknown_class = unknown.name;
        }
        tree.end = m_cursor.GetOffset();
        return tree;
    }

private:
    struct Entry {
        bool is_class;
        Layout const *layout; // null for a class that is not known
        std::string name;     // of the class, or of the object's class
        unsigned int schema;
    };

    // The node joins its parent before it is complete, so that what could be read of it shows.
    void ReadField(Field const &field, std::vector<Node> &siblings)
    {
        if (++m_depth > maximum_depth)
            throw Damage("objects are nested too deep");
        Node &node = siblings.emplace_back();
        node.name = field.name;
        node.offset = m_cursor.GetOffset();
        if (field.array)
            ReadArray(field, node);
        else if (field.type == FieldType::Tree)
            ReadTree(node);
        else if (field.type == FieldType::CustomData)
            ReadData(node);
        else if (field.type == FieldType::Object)
            ReadObject(node);
        else
            ReadValue(field.type, node);
        --m_depth;
    }

    void ReadArray(Field const &field, Node &node)
    {
        node.kind = NodeKind::Array;
        node.type = get_type_name(field.type);
        unsigned long long const count = m_cursor.TakeCount();
        node.value = print_number(count);
        if (unsigned int const size = get_plain_size(field.type)) {
            if (count > m_cursor.GetLeft() / size)
                throw Damage("cut: an array of " + node.value + " elements at offset "
                    + std::to_string(node.offset) + ", " + std::to_string(m_cursor.GetLeft())
                    + " bytes left");
            ReadPlainElements(field.type, count, node);
            return;
        }
        for (unsigned long long i = 0; i < count; ++i)
            ReadField({ "[" + print_number(i) + "]", field.type, false }, node.children);
    }

    void ReadPlainElements(FieldType type, unsigned long long count, Node &node)
    {
        unsigned int const size = get_plain_size(type);
        unsigned long long const shown = std::min<unsigned long long>(count, shown_elements);
        node.value += ":";
        for (unsigned long long i = 0; i < shown; ++i)
            node.value += " " + print_plain(type, m_cursor.TakeNumber(size));
        if (count > shown)
            node.value += " ...";
        m_cursor.Take((count - shown) * size);
    }

    void ReadValue(FieldType type, Node &node)
    {
        node.type = get_type_name(type);
        if (type == FieldType::String)
            ReadString(node);
        else if (type == FieldType::Count)
            node.value = print_number(m_cursor.TakeCount());
        else
            node.value = print_plain(type, m_cursor.TakeNumber(get_plain_size(type)));
    }

    void ReadString(Node &node)
    {
        char const *encoding = "ANSI";
        unsigned long long length = m_cursor.TakeNumber(1);
        if (length == 0xFF) {
            length = m_cursor.TakeNumber(2);
            if (length >= 0xFFFC && length <= 0xFFFE) {
                encoding = length == 0xFFFE ? "UTF-16"
                    : length == 0xFFFD      ? "UTF-8"
                                            : "fourth encoding";
                length = m_cursor.TakeNumber(1);
                if (length == 0xFF)
                    length = m_cursor.TakeNumber(2);
            }
            if (length == 0xFFFF)
                length = m_cursor.TakeNumber(4);
            if (length == 0xFFFFFFFF)
                length = m_cursor.TakeNumber(8);
        }
        node.type = std::string("string, ") + encoding;
        bool const wide = encoding[0] == 'U' && encoding[4] == '1';
        if (wide && length > m_cursor.GetLeft() / 2)
            throw Damage("cut: a text of " + print_number(length) + " units at offset "
                + std::to_string(node.offset) + ", " + std::to_string(m_cursor.GetLeft())
                + " bytes left");
        auto const bytes = m_cursor.Take(wide ? length * 2 : length);
        node.value = wide ? quote_utf16(bytes) : quote_bytes(bytes);
    }

    void ReadObject(Node &node)
    {
        node.tag = static_cast<unsigned int>(m_cursor.TakeNumber(2));
        unsigned long long index = node.tag & 0x7FFF;
        bool is_class = (node.tag & 0x8000) != 0;
        if (node.tag == wide_index_tag) {
            index = m_cursor.TakeNumber(4);
            is_class = (index & 0x80000000) != 0;
            index &= 0x7FFFFFFF;
        }
        if (!is_class) {
            ReadReference(index, node);
            return;
        }
        Entry const entry = EnterClass(index, node);
        if (entry.layout == nullptr)
            throw UnknownClass { entry.name };
        node.index = static_cast<unsigned int>(m_entries.size());
        m_entries.push_back({ false, nullptr, entry.name, entry.schema });
        for (Field const &field : entry.layout->fields)
            ReadField(field, node.children);
    }

    // The class that a new object or a node begins with: its record, or the index of an earlier
    // one.
    Entry EnterClass(unsigned long long index, Node &node)
    {
        if (node.tag == new_class_tag)
            index = ReadClass(node);
        else
            CheckIndex(index, true, node);
        Entry entry = m_entries[static_cast<std::size_t>(index)];
        node.kind = NodeKind::NewObject;
        node.class_index = static_cast<unsigned int>(index);
        node.class_name = entry.name;
        node.schema = entry.schema;
        return entry;
    }

    Entry ReadClassTag(Node &node)
    {
        node.tag = static_cast<unsigned int>(m_cursor.TakeNumber(2));
        unsigned long long const index
            = node.tag == wide_index_tag ? m_cursor.TakeNumber(4) & 0x7FFFFFFF : node.tag & 0x7FFF;
        return EnterClass(index, node);
    }

    // docs/tree-format.md has the format of trees.
    void ReadTree(Node &node)
    {
        ReadClassTag(node);
        ReadTreeTag(4, 4);
        ReadBranch(node);
        ReadTreeTag(0, 0);
    }

    void ReadBranch(Node &parent)
    {
        if (++m_depth > maximum_depth)
            throw Damage("nodes are nested too deep");
        bool const has_children = ReadTreeTag(1, 2) == 1;
        while (has_children && ReadTreeTag(0, 3) == 3) {
            Node &node = parent.children.emplace_back();
            node.offset = m_cursor.GetOffset();
            Entry const entry = ReadClassTag(node);
            if (entry.layout == nullptr)
                throw UnknownClass { entry.name };
            for (Field const &field : entry.layout->fields)
                ReadField(field, node.children);
            ReadBranch(node);
        }
        --m_depth;
    }

    unsigned long long ReadTreeTag(unsigned int one, unsigned int other)
    {
        std::size_t const offset = m_cursor.GetOffset();
        unsigned long long const tag = m_cursor.TakeNumber(4);
        if (tag != one && tag != other)
            throw Damage(
                "bad tag " + print_number(tag) + " of a tree at offset " + std::to_string(offset));
        return tag;
    }

    // docs/custom-data-format.md has the format of custom data; old streams are not shown.
    void ReadData(Node &node)
    {
        node.kind = NodeKind::Array;
        node.type = get_type_name(FieldType::CustomData);
        if (m_cursor.TakeNumber(4) != 0x43555335)
            throw Damage("no custom data at offset " + std::to_string(node.offset));
        unsigned long long const total = m_cursor.TakeNumber(4);
        constexpr unsigned int header_size = 20;
        node.value = "0";
        if (total == 0)
            return;
        if (total < header_size || total > m_cursor.GetLeft())
            throw Damage("cut: custom data at offset " + std::to_string(node.offset));
        std::size_t const end = m_cursor.GetOffset() + static_cast<std::size_t>(total);
        m_cursor.Take(header_size);
        while (m_cursor.GetOffset() < end)
            ReadEntry(node.children.emplace_back(), end);
        node.value = print_number(node.children.size());
    }

    void ReadEntry(Node &node, std::size_t end)
    {
        node.offset = m_cursor.GetOffset();
        node.name = PrintCode(m_cursor.TakeNumber(4));
        unsigned long long const size = m_cursor.TakeNumber(4);
        node.type = PrintCode(m_cursor.TakeNumber(4));
        if (size > end - std::min(end, m_cursor.GetOffset()))
            throw Damage("cut: an entry at offset " + std::to_string(node.offset));
        if ((node.type == "UNIC" || node.type == "USTR") && size % 2 == 0) {
            node.value = quote_utf16(m_cursor.Take(size));
        } else if (size == 4 || size == 8) {
            node.value = print_plain(size == 4 ? FieldType::U32 : FieldType::I64,
                m_cursor.TakeNumber(static_cast<unsigned int>(size)));
        } else {
            node.value = quote_bytes(m_cursor.Take(size));
        }
    }

    static std::string PrintCode(unsigned long long code)
    {
        unsigned char const bytes[]
            = { static_cast<unsigned char>(code >> 24), static_cast<unsigned char>(code >> 16),
                  static_cast<unsigned char>(code >> 8), static_cast<unsigned char>(code) };
        std::string const quoted = quote_bytes(bytes);
        return quoted.substr(1, quoted.size() - 2);
    }

    void ReadReference(unsigned long long index, Node &node)
    {
        node.kind = index == 0 ? NodeKind::Null : NodeKind::Reference;
        if (index == 0)
            return;
        CheckIndex(index, false, node);
        node.index = static_cast<unsigned int>(index);
        node.class_name = m_entries[static_cast<std::size_t>(index)].name;
    }

    unsigned long long ReadClass(Node &node)
    {
        node.new_class = true;
        auto const schema = static_cast<unsigned int>(m_cursor.TakeNumber(2));
        auto const name = m_cursor.Take(m_cursor.TakeNumber(2));
        std::string const text(name.begin(), name.end());
        m_entries.push_back({ true, m_layouts.Find(text, schema), text, schema });
        return m_entries.size() - 1;
    }

    void CheckIndex(unsigned long long index, bool is_class, Node const &node) const
    {
        if (index == 0 || index >= m_entries.size()
            || m_entries[static_cast<std::size_t>(index)].is_class != is_class)
            throw Damage("bad index " + print_number(index) + " at offset "
                + std::to_string(node.offset) + ": not " + (is_class ? "a class" : "an object")
                + " read before");
    }

    Cursor m_cursor;
    LayoutTable const &m_layouts;
    std::vector<Entry> m_entries { {} }; // by index; 0 is null
    int m_depth = 0;
};

} // namespace

Tree read_archive(
    std::span<unsigned char const> bytes, LayoutTable const &layouts, std::vector<Field> const &top)
{
    return Reader(bytes, layouts).Read(top);
}

} // namespace kordump
