// SPDX-License-Identifier: MIT
#include "apps/kordump/archive_reader.h"

#include "apps/kordump/custom_data_reader.h"
#include "apps/kordump/number_codec.h"
#include "apps/kordump/text_codec.h"
#include "apps/kordump/tree_reader.h"

#include <algorithm>
#include <cstdio>

namespace kordump {
namespace {

constexpr unsigned int new_class_tag = 0xFFFF;
constexpr unsigned int wide_index_tag = 0x7FFF;
constexpr std::size_t shown_elements = 16; // of an array of plain values, in its line

// Counts and lengths widen where all bits of the narrower form are set.
unsigned long long take_widened(Cursor &cursor, unsigned int first_size)
{
    unsigned long long number = 0;
    for (unsigned int size = first_size; size <= 8; size *= 2) {
        number = cursor.TakeNumber(size);
        if (size == 8 || number != (1ULL << (8 * size)) - 1)
            break;
    }
    return number;
}

struct StringHead {
    char const *encoding = "ansi";
    unsigned long long length = 0;
    unsigned int length_size = 0; // bytes of the length
    unsigned int unit = 1;        // bytes
};

StringHead read_string_head(Cursor &cursor)
{
    StringHead head;
    std::size_t start = cursor.GetOffset();
    unsigned long long mark = 0;
    if (cursor.GetLeft() >= 3 && cursor.GetRest()[0] == 0xFF)
        mark = read_number(cursor.GetRest().subspan(1, 2));
    if (mark >= 0xFFFC && mark <= 0xFFFE) {
        head.encoding = mark == 0xFFFE ? "utf-16" : mark == 0xFFFD ? "utf-8" : "fourth";
        head.unit = mark == 0xFFFE ? 2 : 1;
        cursor.Take(3);
        start += 3;
    }
    head.length = take_widened(cursor, 1);
    head.length_size = static_cast<unsigned int>(cursor.GetOffset() - start);
    return head;
}

// The JSON of a string. Text in the usual encoding and form stands by itself.
std::string print_string(StringHead const &head, ByteSpan bytes)
{
    auto const text = head.unit == 2 ? utf16_to_utf8(bytes)
        : is_utf8(as_text(bytes))    ? std::optional(std::string(as_text(bytes)))
                                     : std::nullopt;
    bool const shortest = head.length_size == get_length_size(head.length);
    if (head.unit == 2 && text && shortest)
        return quote(*text);
    std::string json = "{\"encoding\": " + quote(head.encoding);
    json += text ? ", \"text\": " + quote(*text) : ", \"hex\": \"" + to_hex(bytes) + '"';
    if (!shortest)
        json += ", \"length_size\": " + std::to_string(head.length_size);
    return json + '}';
}

std::string describe_tag(ArchiveReader::Tag const &tag)
{
    char text[16];
    std::snprintf(text, sizeof text, "tag %04X ", tag.bits);
    return text;
}

} // namespace

unsigned int get_count_size(unsigned long long count)
{
    return count < 0xFFFF ? 2 : count < 0xFFFFFFFF ? 6 : 14;
}

unsigned int get_length_size(unsigned long long length)
{
    return length < 0xFF ? 1 : length < 0xFFFC ? 3 : length < 0xFFFFFFFF ? 7 : 15;
}

bool Reading::IsOpen(std::size_t offset) const
{
    return std::ranges::binary_search(open, offset);
}

ArchiveReader::ArchiveReader(
    Cursor &cursor, LayoutTable const &layouts, Report &report, Reading const *first)
    : m_cursor(cursor)
    , m_layouts(layouts)
    , m_report(report)
    , m_first(first)
{
}

void ArchiveReader::ReadItems(std::vector<Field> const &top)
{
    for (Field const &field : top)
        ReadField(field, "", "");
    while (top.empty() && m_cursor.GetLeft() > 0)
        ReadObject("", "");
}

Line ArchiveReader::MakeLine(std::size_t offset, std::string_view name, std::string_view text) const
{
    if (!m_report.WantsLines())
        return {};
    return { offset, std::string(name), std::string(text), {} };
}

void ArchiveReader::BeginStructure(std::size_t offset)
{
    m_reading.open.push_back(offset);
    if (IsCut(offset))
        m_report.PutQuietly("cut", "true");
}

// --- Fields

void ArchiveReader::ReadField(Field const &field, std::string_view name, std::string_view key)
{
    if (field.array)
        ReadArray(field, name, key);
    else
        ReadOne(field.type, name, key);
}

void ArchiveReader::ReadOne(FieldType type, std::string_view name, std::string_view key)
{
    switch (type) {
    case FieldType::Object:
        return ReadObject(name, key);
    case FieldType::String:
        return ReadString(name, key);
    case FieldType::Count:
        return ReadCountValue(name, key);
    case FieldType::NodeData:
        if (!m_node_data)
            return;
        [[fallthrough]];
    case FieldType::CustomData:
        return read_custom_data(m_cursor, m_report, name, key);
    case FieldType::Tree:
        return ReadTree(name, key);
    default:
        return ReadPlain(type, name, key);
    }
}

void ArchiveReader::ReadTree(std::string_view name, std::string_view key)
{
    std::size_t const start = m_cursor.GetOffset();
    if (m_trees >= maximum_tree_depth)
        throw Damage("trees are nested too deep at offset " + std::to_string(start));
    ++m_trees;
    m_report.Open(MakeLine(start, name, "tree"), key, Bracket::Object);
    BeginStructure(start);
    read_tree(*this, "nodes");
    EndStructure();
    m_report.Close();
    --m_trees;
}

void ArchiveReader::ReadPlain(FieldType type, std::string_view name, std::string_view key)
{
    std::size_t const start = m_cursor.GetOffset();
    auto const bits = m_cursor.TakeNumber(get_plain_size(type));
    m_report.Put(MakeLine(start, name, get_type_name(type)), key, print_plain(type, bits));
}

void ArchiveReader::ReadCountValue(std::string_view name, std::string_view key)
{
    Attempt attempt(m_cursor);
    std::size_t const start = m_cursor.GetOffset();
    unsigned long long const count = take_widened(m_cursor, 2);
    attempt.Succeed();
    auto const size = static_cast<unsigned int>(m_cursor.GetOffset() - start);
    Line line = MakeLine(start, name, "count");
    line.value = std::to_string(count);
    m_report.Put(line, key,
        size == get_count_size(count)
            ? line.value
            : "{\"count\": " + line.value + ", \"size\": " + std::to_string(size) + '}');
}

void ArchiveReader::ReadString(std::string_view name, std::string_view key)
{
    Attempt attempt(m_cursor);
    std::size_t const start = m_cursor.GetOffset();
    StringHead const head = read_string_head(m_cursor);
    if (head.length > m_cursor.GetLeft() / head.unit)
        throw Damage("cut: a text of " + std::to_string(head.length) + " units at offset "
            + std::to_string(start) + ", " + std::to_string(m_cursor.GetLeft()) + " bytes left");
    ByteSpan const bytes = m_cursor.Take(head.length * head.unit);
    attempt.Succeed();
    Line line = MakeLine(start, name, "string");
    if (m_report.WantsLines()) {
        line.text = std::string("string, ") + head.encoding;
        auto const text = head.unit == 2 ? utf16_to_utf8(bytes) : std::nullopt;
        line.value
            = head.unit == 2 ? (text ? quote(*text) : to_hex(bytes)) : quote_bytes(as_text(bytes));
    }
    m_report.Put(line, key, print_string(head, bytes));
}

// --- Arrays

std::string ArchiveReader::DescribeArray(Field const &field, unsigned long long count) const
{
    std::string text
        = "array of " + std::string(get_type_name(field.type)) + ", " + std::to_string(count);
    unsigned int const size = get_plain_size(field.type);
    if (size == 0)
        return text;
    text += ':';
    Cursor elements(m_cursor.GetRest());
    for (std::size_t i = 0; i < count && elements.GetLeft() >= size; ++i) {
        if (i == shown_elements)
            return text + " ...";
        text += ' ' + print_plain(field.type, elements.TakeNumber(size));
    }
    return text;
}

void ArchiveReader::ReadArray(Field const &field, std::string_view name, std::string_view key)
{
    Attempt attempt(m_cursor);
    std::size_t const start = m_cursor.GetOffset();
    unsigned long long const count = take_widened(m_cursor, 2);
    attempt.Succeed();
    auto const size = static_cast<unsigned int>(m_cursor.GetOffset() - start);
    bool const plain = size == get_count_size(count) && !IsCut(start);
    bool const bytes = field.type == FieldType::U8;
    Line line = MakeLine(start, name, "");
    if (m_report.WantsLines())
        line.text = DescribeArray(field, count);
    m_report.Open(line, key, plain && !bytes ? Bracket::Array : Bracket::Object);
    m_reading.open.push_back(start);
    if (!plain) {
        m_report.PutNumber("count", count);
        m_report.PutNumber("size", size);
    }
    if (bytes) {
        auto const there = std::min<unsigned long long>(count, m_cursor.GetLeft());
        m_report.PutQuietly("hex", '"' + to_hex(m_cursor.Take(there)) + '"');
        if (there < count)
            throw Damage("cut: an array of " + std::to_string(count) + " bytes at offset "
                + std::to_string(start) + ", " + std::to_string(there) + " left");
    } else {
        if (!plain)
            m_report.OpenQuietly("elements", Bracket::Array);
        ReadElements(field.type, count);
        if (!plain)
            m_report.Close();
    }
    EndStructure();
    m_report.Close();
}

void ArchiveReader::ReadElements(FieldType type, unsigned long long count)
{
    unsigned int const size = get_plain_size(type);
    for (unsigned long long i = 0; i < count; ++i) {
        if (size != 0) {
            m_report.PutQuietly("", print_plain(type, m_cursor.TakeNumber(size)));
            continue;
        }
        std::size_t const before = m_cursor.GetOffset();
        ReadOne(type, m_report.WantsLines() ? "[" + std::to_string(i) + "]" : std::string(), "");
        if (m_cursor.GetOffset() == before)
            throw Damage("elements without bytes at offset " + std::to_string(before));
    }
}

// --- Objects

void ArchiveReader::ReadObject(std::string_view name, std::string_view key)
{
    Tag const tag = ReadTag();
    if (!tag.is_class) {
        ReportReference(tag, name, key);
        return;
    }
    ReportObject(tag, name, key);
    BeginStructure(tag.offset);
    if (tag.layout != nullptr)
        m_entries.push_back({ false, m_entries[tag.index].number });
    ReadFields(tag);
    EndStructure();
    m_report.Close();
}

void ArchiveReader::ReadFields(Tag const &tag)
{
    if (tag.layout == nullptr)
        throw UnknownClass { *tag.name };
    if (m_depth >= maximum_object_depth)
        throw Damage("objects are nested too deep at offset " + std::to_string(tag.offset));
    ++m_depth;
    m_reading.used.insert(tag.layout);
    Layout const &layout = *tag.layout;
    m_report.OpenQuietly("fields", Bracket::Object);
    std::size_t const start = m_cursor.GetOffset();
    for (Field const &field : layout.fields) {
        if (field.type == FieldType::NodeData) {
            constexpr unsigned int version_with_data = 2;
            Cursor version(m_cursor);
            version.Seek(start);
            m_node_data = version.IsNext(version_with_data);
        }
        ReadField(field, field.name, field.name);
    }
    m_report.Close();
    --m_depth;
}

void ArchiveReader::ReportClass(Tag const &tag)
{
    m_report.PutQuietly("class", quote_bytes(*tag.name));
    m_report.PutNumber("schema", tag.schema);
    m_report.PutNumber("class_index", tag.index);
    if (tag.is_long)
        m_report.PutQuietly("long", "true");
}

void ArchiveReader::ReportObject(Tag const &tag, std::string_view name, std::string_view key)
{
    Line line = MakeLine(tag.offset, name, "");
    std::string const class_index = std::to_string(tag.index);
    if (m_report.WantsLines()) {
        line.text = describe_tag(tag) + *tag.name;
        if (tag.layout != nullptr)
            line.text += " #" + std::to_string(m_entries.size());
        line.text += (tag.is_new ? " (new class #" : " (class #") + class_index;
        if (tag.is_new)
            line.text += ", schema " + std::to_string(tag.schema);
        line.text += ")";
    }
    m_report.Open(line, key, Bracket::Object);
    if (tag.layout != nullptr)
        m_report.PutNumber("object", m_entries.size());
    ReportClass(tag);
}

void ArchiveReader::ReportReference(Tag const &tag, std::string_view name, std::string_view key)
{
    Line line = MakeLine(tag.offset, name, "");
    if (tag.index == 0) {
        if (m_report.WantsLines())
            line.value = describe_tag(tag) + "null";
        m_report.Put(line, key, tag.is_long ? "{\"ref\": 0, \"long\": true}" : "null");
        return;
    }
    std::string const index = std::to_string(tag.index);
    if (m_report.WantsLines())
        line.value = describe_tag(tag) + "-> #" + index + " " + *tag.name;
    m_report.Put(line, key,
        "{\"ref\": " + index + ", \"class\": " + quote_bytes(*tag.name)
            + (tag.is_long ? ", \"long\": true}" : "}"));
}

// --- Tags

ArchiveReader::Tag ArchiveReader::ReadTag()
{
    Attempt attempt(m_cursor);
    Tag tag;
    tag.offset = m_cursor.GetOffset();
    tag.bits = static_cast<unsigned int>(m_cursor.TakeNumber(2));
    tag.index = tag.bits & 0x7FFF;
    tag.is_class = (tag.bits & 0x8000) != 0;
    if (tag.bits == wide_index_tag) {
        auto const wide = static_cast<unsigned int>(m_cursor.TakeNumber(4));
        tag.is_class = (wide & 0x80000000) != 0;
        tag.index = wide & 0x7FFFFFFF;
        tag.is_long = tag.index < wide_index_tag;
    }
    if (tag.bits == new_class_tag)
        ReadNewClass(tag);
    else if (tag.is_class || tag.index != 0)
        FindEntry(tag);
    attempt.Succeed();
    return tag;
}

void ArchiveReader::ReadNewClass(Tag &tag)
{
    tag.is_new = true;
    auto const schema = static_cast<unsigned int>(m_cursor.TakeNumber(2));
    ByteSpan const name = m_cursor.Take(m_cursor.TakeNumber(2));
    std::string const text(as_text(name));
    tag.index = static_cast<unsigned int>(m_entries.size());
    m_entries.push_back({ true, m_classes.size() });
    m_classes.push_back({ m_layouts.Find(text, schema), text, schema });
    FindEntry(tag);
}

void ArchiveReader::FindEntry(Tag &tag) const
{
    if (tag.index == 0 || tag.index >= m_entries.size()
        || m_entries[tag.index].is_class != tag.is_class)
        throw Damage("bad index " + std::to_string(tag.index) + " at offset "
            + std::to_string(tag.offset) + ": not " + (tag.is_class ? "a class" : "an object")
            + " read before");
    Class const &its_class = m_classes[m_entries[tag.index].number];
    tag.layout = its_class.layout;
    tag.name = &its_class.name;
    tag.schema = its_class.schema;
}

} // namespace kordump
