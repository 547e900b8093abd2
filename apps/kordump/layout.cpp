// SPDX-License-Identifier: MIT
#include "apps/kordump/layout.h"

#include "apps/kordump/text_codec.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace kordump {
namespace {

struct TypeName {
    std::string_view name;
    FieldType type;
    unsigned int size; // bytes, 0 when it varies
};

constexpr TypeName type_names[] = { { "bool", FieldType::Bool, 1 }, { "i8", FieldType::I8, 1 },
    { "u8", FieldType::U8, 1 }, { "i16", FieldType::I16, 2 }, { "u16", FieldType::U16, 2 },
    { "i32", FieldType::I32, 4 }, { "u32", FieldType::U32, 4 }, { "i64", FieldType::I64, 8 },
    { "u64", FieldType::U64, 8 }, { "f32", FieldType::F32, 4 }, { "f64", FieldType::F64, 8 },
    { "wchar", FieldType::WideChar, 2 }, { "count", FieldType::Count, 0 },
    { "string", FieldType::String, 0 }, { "object", FieldType::Object, 0 },
    { "time", FieldType::Time, 8 }, { "custom_data", FieldType::CustomData, 0 },
    { "node_data", FieldType::NodeData, 0 }, { "tree", FieldType::Tree, 0 } };

TypeName const &find_type(FieldType type)
{
    return *std::find_if(std::begin(type_names), std::end(type_names),
        [type](TypeName const &each) { return each.type == type; });
}

Field make_field(std::string name, std::string_view type)
{
    bool const array = type.ends_with("[]");
    if (array)
        type.remove_suffix(2);
    for (TypeName const &each : type_names) {
        if (each.name == type)
            return { std::move(name), each.type, array };
    }
    throw std::runtime_error("unknown type '" + std::string(type) + "'");
}

std::vector<std::string> split_words(std::string_view line)
{
    std::istringstream stream { std::string(line.substr(0, line.find('#'))) };
    return { std::istream_iterator<std::string>(stream), {} };
}

unsigned int parse_schema(std::string const &word)
{
    unsigned int schema = 0;
    auto const [end, error] = std::from_chars(word.data(), word.data() + word.size(), schema);
    if (error != std::errc() || end != word.data() + word.size() || schema > 0xFFFF)
        throw std::runtime_error("'" + word + "' is no schema number");
    return schema;
}

} // namespace

unsigned int get_plain_size(FieldType type)
{
    return find_type(type).size;
}

std::string_view get_type_name(FieldType type)
{
    return find_type(type).name;
}

void Layout::Add(Field field)
{
    auto const is_taken = [this](std::string const &name_wanted) {
        return std::ranges::any_of(
            fields, [&](Field const &each) { return each.name == name_wanted; });
    };
    std::string const base = field.name;
    for (int number = 2; is_taken(field.name); ++number)
        field.name = base + "_" + std::to_string(number);
    fields.push_back(std::move(field));
}

Layout &LayoutTable::ParseClass(std::vector<std::string> const &words)
{
    Layout layout { words[1], parse_schema(words[2]), {} };
    if (words.size() > 3) {
        auto base = m_layouts.end();
        if (words.size() == 6)
            base = m_layouts.find({ words[4], parse_schema(words[5]) });
        else if (auto const next = m_layouts.upper_bound({ words[4], ~0U });
                 next != m_layouts.begin() && std::prev(next)->first.first == words[4])
            base = std::prev(next);
        if (base == m_layouts.end())
            throw std::runtime_error("unknown base class '" + words[4] + "'");
        layout.fields = base->second.fields;
    }
    return m_layouts[{ layout.name, layout.schema }] = layout;
}

void LayoutTable::Parse(std::string_view text)
{
    Layout *current = nullptr;
    std::istringstream stream { std::string(text) };
    int number = 0;
    for (std::string line; std::getline(stream, line);) {
        ++number;
        try {
            if (!is_utf8(line))
                throw std::runtime_error("not UTF-8");
            std::vector<std::string> const words = split_words(line);
            if (words.empty())
                continue;
            bool const has_base = (words.size() == 5 || words.size() == 6) && words[3] == ":";
            if (words[0] == "class" && (words.size() == 3 || has_base))
                current = &ParseClass(words);
            else if (current != nullptr && words.size() == 2)
                current->Add(make_field(words[0], words[1]));
            else
                throw std::runtime_error("expected 'class NAME SCHEMA [: BASE]' or 'FIELD TYPE'");
        } catch (std::runtime_error const &error) {
            throw std::runtime_error("line " + std::to_string(number) + ": " + error.what());
        }
    }
}

Layout const *LayoutTable::Find(std::string const &name, unsigned int schema) const
{
    auto const found = m_layouts.find({ name, schema });
    return found == m_layouts.end() ? nullptr : &found->second;
}

std::vector<Field> LayoutTable::ParseFields(std::string_view text)
{
    std::vector<Field> fields;
    for (std::string const &word : split_words(text))
        fields.push_back(make_field("", word));
    return fields;
}

std::string print_field(Field const &field)
{
    std::string const type = std::string(get_type_name(field.type)) + (field.array ? "[]" : "");
    return field.name.empty() ? type : field.name + " " + type;
}

} // namespace kordump
