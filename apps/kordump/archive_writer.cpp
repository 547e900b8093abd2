// SPDX-License-Identifier: MIT
#include "apps/kordump/archive_writer.h"

#include "apps/kordump/archive_reader.h"
#include "apps/kordump/custom_data_writer.h"
#include "apps/kordump/number_codec.h"
#include "apps/kordump/text_codec.h"
#include "apps/kordump/tree_writer.h"

#include <nlohmann/json.hpp>

namespace kordump {
namespace {

constexpr unsigned int wide_index_tag = 0x7FFF;
constexpr unsigned long long maximum_index = 0x7FFFFFFE;

// What throws is kept out of the functions that call themselves: the texts that it makes would lie
// in every one of their frames.
[[noreturn]] void rethrow_within(std::string const &place, std::exception const &error)
{
    std::string const text = error.what();
    throw std::runtime_error(
        place + (text.starts_with('.') || text.starts_with('[') ? "" : ": ") + text);
}

[[noreturn]] void rethrow_in_field(Field const &field, std::exception const &error)
{
    rethrow_within('.' + field.name, error);
}

[[noreturn]] void rethrow_in_element(std::size_t index, std::exception const &error)
{
    rethrow_within('[' + std::to_string(index) + ']', error);
}

[[noreturn]] void refuse_missing_field(Layout const &layout, Field const &field)
{
    throw std::runtime_error(layout.name + " lacks the field " + field.name);
}

[[noreturn]] void refuse_extra_fields(Layout const &layout)
{
    throw std::runtime_error(
        layout.name + " has fields that it should not have, or not in front of missing ones");
}

bool is_set(Json const &value, char const *key)
{
    return value.is_object() && value.value(key, false);
}

std::string get_bytes(Json const &value)
{
    return value.is_string() ? value.get<std::string>()
                             : from_hex(value.at("hex").get_ref<std::string const &>());
}

// What a string consists of, and whether its encoding has a mark.
struct Text {
    unsigned int mark = 0xFFFE; // 0: none
    unsigned int unit = 2;      // bytes
    std::string bytes;
};

Text get_text(Json const &value)
{
    Text text;
    if (value.is_string()) {
        text.bytes = utf8_to_utf16(value.get_ref<std::string const &>());
        return text;
    }
    Json const &encoding = value.at("encoding");
    text.mark = encoding == "utf-16" ? 0xFFFE
        : encoding == "utf-8"        ? 0xFFFD
        : encoding == "fourth"       ? 0xFFFC
                                     : 0;
    if (text.mark == 0 && encoding != "ansi")
        throw std::runtime_error("there is no encoding " + encoding.dump());
    text.unit = encoding == "utf-16" ? 2 : 1;
    if (value.contains("hex"))
        text.bytes = from_hex(value["hex"].get_ref<std::string const &>());
    else if (text.unit == 2)
        text.bytes = utf8_to_utf16(value.at("text").get_ref<std::string const &>());
    else
        text.bytes = value.at("text").get<std::string>();
    if (text.bytes.size() % text.unit != 0)
        throw std::runtime_error("half a unit of UTF-16");
    return text;
}

} // namespace

// --- Fields

void ArchiveWriter::WriteField(Field const &field, Json const &value)
{
    if (field.array)
        WriteArray(field, value);
    else
        WriteOne(field.type, value);
}

void ArchiveWriter::WriteOne(FieldType type, Json const &value)
{
    switch (type) {
    case FieldType::Object:
        return WriteObject(value);
    case FieldType::String:
        return WriteString(value);
    case FieldType::Count:
        return WriteCount(parse_number(value.is_object() ? value.at("count") : value, ~0ULL),
            value.is_object() ? &value : nullptr);
    case FieldType::CustomData:
    case FieldType::NodeData:
        return write_custom_data(m_bytes, value);
    case FieldType::Tree:
        return write_tree(*this, m_bytes, value);
    default:
        m_bytes.PutNumber(parse_plain(type, value), get_plain_size(type));
    }
}

// A form has the width first_size, or more when all bits of the narrower widths before it are set.
void ArchiveWriter::WriteWidened(
    unsigned long long number, unsigned int first_size, unsigned int form_size)
{
    unsigned int size = first_size;
    unsigned int written = first_size;
    for (; written < form_size && size < 8; written += size) {
        m_bytes.PutNumber(~0ULL, size);
        size *= 2;
    }
    if (written != form_size || (size < 8 && number >= (1ULL << (8 * size)) - 1))
        throw std::runtime_error(
            std::to_string(number) + " has no form of " + std::to_string(form_size) + " bytes");
    m_bytes.PutNumber(number, size);
}

void ArchiveWriter::WriteCount(unsigned long long count, Json const *form)
{
    unsigned int const size = form != nullptr && form->contains("size")
        ? static_cast<unsigned int>(parse_number((*form)["size"], 14))
        : get_count_size(count);
    WriteWidened(count, 2, size);
}

void ArchiveWriter::WriteArray(Field const &field, Json const &value)
{
    if (field.type == FieldType::U8 && value.is_object() && value.contains("hex")) {
        WriteByteArray(value);
        return;
    }
    Json const &elements = value.is_object() ? value.at("elements") : value;
    if (!elements.is_array())
        throw std::runtime_error("expected an array");
    WriteArrayCount(elements.size(), value);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        try {
            WriteOne(field.type, elements[i]);
        } catch (std::exception const &error) {
            rethrow_in_element(i, error);
        }
    }
}

void ArchiveWriter::WriteArrayCount(std::size_t there, Json const &value)
{
    bool const counted = value.is_object() && value.contains("count");
    WriteCount(counted ? parse_number(value["count"], ~0ULL) : there,
        value.is_object() ? &value : nullptr);
}

void ArchiveWriter::WriteByteArray(Json const &value)
{
    std::string const bytes = from_hex(value["hex"].get_ref<std::string const &>());
    WriteArrayCount(bytes.size(), value);
    m_bytes.PutBytes(bytes);
}

void ArchiveWriter::WriteString(Json const &value)
{
    Text const text = get_text(value);
    unsigned long long const length = text.bytes.size() / text.unit;
    if (text.mark != 0) {
        m_bytes.PutNumber(0xFF, 1);
        m_bytes.PutNumber(text.mark, 2);
    }
    auto const size = value.is_object() && value.contains("length_size")
        ? static_cast<unsigned int>(parse_number(value["length_size"], 15))
        : get_length_size(length);
    constexpr unsigned int first_mark = 0xFFFC;
    if (text.mark == 0 && size == 3 && length >= first_mark)
        throw std::runtime_error("a length that would be read as the mark of an encoding");
    WriteWidened(length, 1, size);
    m_bytes.PutBytes(text.bytes);
}

// --- Objects

void ArchiveWriter::WriteObject(Json const &value)
{
    if (value.is_null() || value.contains("ref"))
        return WriteReference(value);
    WriteClass(value);
    EnterObject(value);
    WriteFields(value);
}

void ArchiveWriter::EnterObject(Json const &value)
{
    if (value.contains("object")
        && !m_objects.emplace(parse_number(value["object"], ~0ULL), m_next).second)
        throw std::runtime_error("there are two objects " + value["object"].dump());
    ++m_next;
}

Layout const &ArchiveWriter::GetLayout(Json const &object) const
{
    ClassKey const key = GetClassKey(object);
    Layout const *const layout = m_layouts.Find(key.first, key.second);
    if (layout == nullptr)
        throw std::runtime_error(
            "the class " + key.first + " " + std::to_string(key.second) + " is not known");
    return *layout;
}

void ArchiveWriter::WriteFields(Json const &object)
{
    bool const cut = is_set(object, "cut");
    if (cut && !object.contains("fields"))
        return;
    Layout const &layout = GetLayout(object);
    Json const &fields = object.at("fields");
    std::size_t written = 0;
    for (Field const &field : layout.fields) {
        auto const value = fields.find(field.name);
        if (value == fields.end() && field.type == FieldType::NodeData)
            continue;
        if (value == fields.end() && cut)
            break;
        if (value == fields.end())
            refuse_missing_field(layout, field);
        try {
            WriteField(field, *value);
        } catch (std::exception const &error) {
            rethrow_in_field(field, error);
        }
        ++written;
    }
    if (written != fields.size())
        refuse_extra_fields(layout);
}

void ArchiveWriter::WriteReference(Json const &value)
{
    if (value.is_null() || value["ref"] == 0)
        return WriteIndex(0, 0, value);
    auto const found = m_objects.find(parse_number(value["ref"], ~0ULL));
    if (found == m_objects.end())
        throw std::runtime_error("there is no object " + value["ref"].dump() + " before");
    WriteIndex(found->second, 0, value);
}

void ArchiveWriter::WriteIndex(unsigned long long index, unsigned int class_bit, Json const &value)
{
    if (index > maximum_index)
        throw std::runtime_error("too many objects");
    if (index < wide_index_tag && !is_set(value, "long")) {
        m_bytes.PutNumber(index | class_bit << 15, 2);
        return;
    }
    m_bytes.PutNumber(wide_index_tag, 2);
    m_bytes.PutNumber(index | static_cast<unsigned long long>(class_bit) << 31, 4);
}

ArchiveWriter::ClassKey ArchiveWriter::GetClassKey(Json const &object)
{
    return { get_bytes(object.at("class")),
        static_cast<unsigned int>(parse_number(object.at("schema"), 0xFFFF)) };
}

void ArchiveWriter::WriteClass(Json const &object)
{
    ClassKey const key = GetClassKey(object);
    if (!object.contains("class_index")) {
        auto const latest = m_latest_classes.find(key);
        return latest == m_latest_classes.end() ? WriteNewClass(key)
                                                : WriteIndex(latest->second, 1, object);
    }
    auto const name = parse_number(object["class_index"], ~0ULL);
    auto const [found, is_new] = m_classes.try_emplace(name, Class { key, m_next });
    if (found->second.key != key)
        throw std::runtime_error("class " + std::to_string(name) + " is " + found->second.key.first
            + ", not " + key.first);
    if (is_new)
        WriteNewClass(key);
    else
        WriteIndex(found->second.index, 1, object);
}

void ArchiveWriter::WriteNewClass(ClassKey const &key)
{
    if (key.first.size() > 0xFFFF)
        throw std::runtime_error("the name of a class is too long");
    constexpr unsigned int new_class_tag = 0xFFFF;
    m_bytes.PutNumber(new_class_tag, 2);
    m_bytes.PutNumber(key.second, 2);
    m_bytes.PutNumber(key.first.size(), 2);
    m_bytes.PutBytes(key.first);
    m_latest_classes[key] = m_next++;
}

} // namespace kordump
