// SPDX-License-Identifier: MIT
#include "apps/kordump/restore.h"

#include "apps/kordump/archive_writer.h"
#include "apps/kordump/custom_data_writer.h"
#include "apps/kordump/document.h"
#include "apps/kordump/json_source.h"
#include "apps/kordump/number_codec.h"
#include "apps/kordump/text_codec.h"
#include "apps/kordump/tree_writer.h"

#include <nlohmann/json.hpp>

namespace kordump {
namespace {

Format get_format(Json const &head)
{
    if (!head.is_object() || head.value("kordump", 0) != 1)
        throw std::runtime_error("not JSON of kordump: it lacks \"kordump\": 1");
    std::string const &name = head.at("format").get_ref<std::string const &>();
    auto const format = find_format(name);
    if (!format)
        throw std::runtime_error("there is no format '" + name + "'");
    return *format;
}

void add_layouts(LayoutTable &layouts, Json const &head)
{
    if (!head.contains("classes"))
        return;
    for (Json const &each : head["classes"]) {
        std::string text = "class " + each.at("class").get<std::string>() + ' '
            + std::to_string(parse_number(each.at("schema"), 0xFFFF)) + '\n';
        for (Json const &field : each.at("fields"))
            text += field.get<std::string>() + '\n';
        layouts.Parse(text);
    }
}

std::vector<Field> get_top(Json const &head)
{
    std::string text;
    if (head.contains("top")) {
        for (Json const &type : head["top"])
            text += type.get<std::string>() + ' ';
    }
    return LayoutTable::ParseFields(text);
}

class FileWriter {
public:
    FileWriter(std::string_view text, LayoutTable const &layouts)
        : m_text(text)
        , m_layouts(layouts)
        , m_head(read_json_head(text))
        , m_archive(m_bytes, m_layouts)
        , m_tree(m_archive, m_bytes)
    {
    }

    std::string Write()
    {
        m_format = get_format(m_head);
        add_layouts(m_layouts, m_head);
        m_top = get_top(m_head);
        bool const any = m_head.contains("items");
        if (m_format == Format::Tree)
            m_tree.WriteHead(m_head);
        if (m_format == Format::Preferences && any)
            m_bytes.PutNumber(0, 4); // the number of records
        for_each_item(m_text, [this](Json const &item) { WriteItemNumber(item); });
        if (m_format == Format::Tree)
            m_tree.WriteEnd(m_head);
        if (m_format == Format::Preferences && any)
            m_bytes.ReplaceNumber(
                0, m_head.contains("count") ? parse_number(m_head["count"], 0xFFFFFFFF) : m_number);
        if (m_head.contains("rest"))
            m_bytes.PutBytes(from_hex(m_head["rest"].at("hex").get_ref<std::string const &>()));
        return m_bytes.TakeBytes();
    }

private:
    void WriteItemNumber(Json const &item)
    {
        try {
            WriteItem(item);
        } catch (std::exception const &error) {
            throw std::runtime_error("item " + std::to_string(m_number) + ": " + error.what());
        }
        ++m_number;
    }

    void WriteItem(Json const &item)
    {
        switch (m_format) {
        case Format::Tree:
            return m_tree.WriteNode(item);
        case Format::CustomData:
            return write_custom_data(m_bytes, item);
        case Format::Preferences:
            m_bytes.PutNumber(parse_code(item.at("identifier")), 4);
            m_bytes.PutNumber(parse_number(item.at("version"), 0xFFFFFFFF), 4);
            if (item.contains("hex"))
                m_bytes.PutBytes(from_hex(item["hex"].get_ref<std::string const &>()));
            else if (item.contains("data") || !item.value("cut", false))
                write_custom_data(m_bytes, item.at("data"));
            return;
        default:
            break;
        }
        Field const object { "", FieldType::Object, false };
        m_archive.WriteField(m_top.empty() ? object : m_top.at(m_number), item);
    }

    std::string_view m_text;
    LayoutTable m_layouts;
    Json const m_head;
    Format m_format = Format::Raw;
    std::vector<Field> m_top;
    ByteBuffer m_bytes;
    ArchiveWriter m_archive;
    TreeWriter m_tree;
    std::size_t m_number = 0; // of the item
};

} // namespace

std::string restore_file(std::string_view json, LayoutTable const &layouts)
{
    return FileWriter(json, layouts).Write();
}

} // namespace kordump
