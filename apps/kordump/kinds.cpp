// SPDX-License-Identifier: MIT
#include "apps/kordump/kinds.h"

#include "apps/kordump/number_codec.h"
#include "apps/kordump/text_codec.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>

namespace kordump {
namespace {

enum class Form { Plain, Bool, Pointer, Bytes, Array, Text, Texts, BrokenTime };

struct Kind {
    unsigned int code;
    Form form;
    FieldType type;    // of a plain one
    unsigned int unit; // bytes of a character of a text
};

constexpr Kind kinds[] = {
    { four(" INT"), Form::Plain, FieldType::I32, 0 },
    { four("LONG"), Form::Plain, FieldType::I32, 0 },
    { four("UINT"), Form::Plain, FieldType::U32, 0 },
    { four("ULON"), Form::Plain, FieldType::U32, 0 },
    { four("LLON"), Form::Plain, FieldType::I64, 0 },
    { four("ULLO"), Form::Plain, FieldType::U64, 0 },
    { four("CHAR"), Form::Plain, FieldType::I8, 0 },
    { four("UCHR"), Form::Plain, FieldType::U8, 0 },
    { four("FLOA"), Form::Plain, FieldType::F32, 0 },
    { four("DOUB"), Form::Plain, FieldType::F64, 0 },
    { four("TIMX"), Form::Plain, FieldType::Time, 0 },
    { four("BOOL"), Form::Bool, FieldType::I32, 0 },
    { four("PTR6"), Form::Pointer, FieldType::U64, 0 },
    { four(" BIN"), Form::Bytes, FieldType::U8, 0 },
    { four("ARRA"), Form::Array, FieldType::U8, 0 },
    { four("UNIC"), Form::Text, FieldType::WideChar, 2 },
    { four("ANSI"), Form::Text, FieldType::U8, 1 },
    { four("UTF8"), Form::Text, FieldType::U8, 1 },
    { four("USTR"), Form::Texts, FieldType::WideChar, 2 },
    { four("ASTR"), Form::Texts, FieldType::U8, 1 },
    { four("U8TR"), Form::Texts, FieldType::U8, 1 },
    { four("TIME"), Form::BrokenTime, FieldType::I32, 0 },
};

// The fields of a time that is broken down, in their order; each is an i32.
constexpr char const *time_fields[] = { "second", "minute", "hour", "day", "month_from_0",
    "year_from_1900", "weekday", "day_of_year", "daylight_saving" };

Kind const *find_kind(unsigned int code)
{
    auto const *const found = std::ranges::find(kinds, code, &Kind::code);
    return found == std::end(kinds) ? nullptr : found;
}

std::string put_number(unsigned long long number, unsigned int size)
{
    std::string bytes;
    for (unsigned int i = 0; i < size; ++i)
        bytes += static_cast<char>(number >> (8 * i) & 0xFF);
    return bytes;
}

// --- Texts

// One text and its terminating zero; moves behind them.
std::optional<std::string> next_text(ByteSpan &data, unsigned int unit)
{
    std::size_t length = 0;
    while (length + unit <= data.size() && read_number(data.subspan(length, unit)) != 0)
        length += unit;
    if (length + unit > data.size())
        return std::nullopt;
    ByteSpan const text = data.first(length);
    data = data.subspan(length + unit);
    if (unit == 2)
        return utf16_to_utf8(text);
    return is_utf8(as_text(text)) ? std::optional(std::string(as_text(text))) : std::nullopt;
}

std::optional<std::string> decode_text(ByteSpan data, unsigned int unit)
{
    auto const text = next_text(data, unit);
    return text && data.empty() ? std::optional(quote(*text)) : std::nullopt;
}

std::optional<std::string> decode_texts(ByteSpan data, unsigned int unit)
{
    std::string json = "[";
    while (!data.empty()) {
        auto const text = next_text(data, unit);
        if (!text)
            return std::nullopt;
        json += (json.size() > 1 ? ", " : "") + quote(*text);
    }
    return json + ']';
}

std::string encode_text(Json const &value, unsigned int unit)
{
    if (!value.is_string())
        throw std::runtime_error("expected a text");
    auto const &text = value.get_ref<std::string const &>();
    if (text.find('\0') != std::string::npos)
        throw std::runtime_error("a text cannot have a zero in it");
    return unit == 2 ? utf8_to_utf16(text + '\0') : text + '\0';
}

// --- Arrays

// What the elements of an array may be. Nothing says it; a guess only has to be told to be undone.
enum class Likely { Integer, Float };

// Numbers that people use, neither tiny nor huge, are unlikely bits of the other kind.
Likely guess_elements(ByteSpan data, std::size_t size)
{
    bool any = false;
    for (; !data.empty(); data = data.subspan(size)) {
        unsigned long long const bits = read_number(data.first(size));
        double const value = size == 4
            ? static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)))
            : std::bit_cast<double>(bits);
        constexpr double least = 1e-9;
        constexpr double most = 1e12;
        if (value != 0 && !(std::abs(value) > least && std::abs(value) < most))
            return Likely::Integer;
        any = any || value != 0;
    }
    return any ? Likely::Float : Likely::Integer;
}

// Nothing for elements that are no numbers.
std::optional<FieldType> guess_type(ByteSpan data, std::size_t size)
{
    bool const is_float = (size == 4 || size == 8) && guess_elements(data, size) == Likely::Float;
    switch (size) {
    case 1:
        return FieldType::I8;
    case 2:
        return FieldType::I16;
    case 4:
        return is_float ? FieldType::F32 : FieldType::I32;
    case 8:
        return is_float ? FieldType::F64 : FieldType::I64;
    default:
        return std::nullopt;
    }
}

std::optional<std::string> decode_array(ByteSpan data)
{
    if (data.size() <= 4)
        return std::nullopt;
    auto const count = static_cast<std::size_t>(read_number(data.first(4)));
    data = data.subspan(4);
    if (count == 0 || data.size() % count != 0)
        return std::nullopt;
    std::size_t const size = data.size() / count;
    auto const type = guess_type(data, size);
    std::string json = type ? "{\"type\": " + quote(get_type_name(*type))
                            : "{\"element_size\": " + std::to_string(size);
    json += ", \"elements\": [";
    for (std::size_t i = 0; i < count; ++i) {
        ByteSpan const element = data.subspan(i * size, size);
        json += i > 0 ? ", " : "";
        json += type ? print_plain(*type, read_number(element)) : '"' + to_hex(element) + '"';
    }
    return json + "]}";
}

std::string encode_element(Json const &array, Json const &element)
{
    if (!array.contains("type")) {
        std::string bytes = from_hex(element.get_ref<std::string const &>());
        if (array.at("element_size") != bytes.size())
            throw std::runtime_error("elements differ in size");
        return bytes;
    }
    auto const types = LayoutTable::ParseFields(array["type"].get_ref<std::string const &>());
    if (types.size() != 1 || get_plain_size(types[0].type) == 0)
        throw std::runtime_error("an array's type is one of numbers");
    return put_number(parse_plain(types[0].type, element), get_plain_size(types[0].type));
}

std::string encode_array(Json const &value)
{
    Json const &elements = value.at("elements");
    if (!elements.is_array() || elements.empty())
        throw std::runtime_error("an array needs elements");
    std::string bytes = put_number(elements.size(), 4);
    for (Json const &element : elements)
        bytes += encode_element(value, element);
    return bytes;
}

// --- Others

std::string decode_broken_time(ByteSpan data)
{
    std::string json;
    for (char const *const field : time_fields) {
        json += json.empty() ? "{" : ", ";
        json += quote(field) + ": " + print_plain(FieldType::I32, read_number(data.first(4)));
        data = data.subspan(4);
    }
    return json + '}';
}

std::string encode_broken_time(Json const &value)
{
    std::string bytes;
    for (char const *const field : time_fields)
        bytes += put_number(parse_plain(FieldType::I32, value.at(field)), 4);
    return bytes;
}

std::string decode_pointer(unsigned long long address)
{
    char text[24];
    std::snprintf(text, sizeof text, "\"0x%016llX\"", address);
    return text;
}

std::string encode_pointer(Json const &value)
{
    if (!value.is_string())
        return put_number(parse_number(value, ~0ULL), 8);
    std::string bytes = from_hex(value.get_ref<std::string const &>().substr(2));
    if (bytes.size() != 8 || !value.get_ref<std::string const &>().starts_with("0x"))
        throw std::runtime_error("an address has 0x and 16 digits");
    std::ranges::reverse(bytes);
    return bytes;
}

unsigned int get_fixed_size(Kind const &kind)
{
    switch (kind.form) {
    case Form::Plain:
    case Form::Bool:
    case Form::Pointer:
        return get_plain_size(kind.type);
    case Form::BrokenTime:
        return 4 * std::size(time_fields);
    default:
        return 0;
    }
}

bool is_printable_text(ByteSpan data)
{
    if (data.size() < 2 || data.back() != 0)
        return false;
    return std::ranges::all_of(
        data.first(data.size() - 1), [](unsigned char byte) { return byte >= ' ' && byte <= '~'; });
}

} // namespace

std::optional<std::string> decode_value(unsigned int kind, ByteSpan data)
{
    Kind const *const known = find_kind(kind);
    if (known == nullptr || (get_fixed_size(*known) != 0 && get_fixed_size(*known) != data.size()))
        return std::nullopt;
    switch (known->form) {
    case Form::Plain:
        return print_plain(known->type, read_number(data));
    case Form::Bool:
        return read_number(data) > 1 ? print_plain(FieldType::I32, read_number(data))
                                     : print_plain(FieldType::Bool, read_number(data));
    case Form::Pointer:
        return decode_pointer(read_number(data));
    case Form::Bytes:
        return '"' + to_hex(data) + '"';
    case Form::Array:
        return decode_array(data);
    case Form::Text:
        return decode_text(data, known->unit);
    case Form::Texts:
        return decode_texts(data, known->unit);
    default:
        return decode_broken_time(data);
    }
}

std::string encode_value(unsigned int kind, Json const &value)
{
    Kind const *const known = find_kind(kind);
    if (known == nullptr)
        throw std::runtime_error("a value of an unknown kind can only be given as \"hex\"");
    switch (known->form) {
    case Form::Plain:
        return put_number(parse_plain(known->type, value), get_plain_size(known->type));
    case Form::Bool:
        return put_number(
            parse_plain(value.is_boolean() ? FieldType::Bool : FieldType::I32, value), 4);
    case Form::Pointer:
        return encode_pointer(value);
    case Form::Bytes:
        return from_hex(value.get_ref<std::string const &>());
    case Form::Array:
        return encode_array(value);
    case Form::Text:
        return encode_text(value, known->unit);
    case Form::BrokenTime:
        return encode_broken_time(value);
    default:
        break;
    }
    std::string texts;
    for (Json const &each : value)
        texts += encode_text(each, known->unit);
    return texts;
}

Guess guess_value(ByteSpan data)
{
    if (is_printable_text(data))
        return { "ansi", *decode_text(data, 1) };
    auto const wide = data.size() >= 6 ? decode_text(data, 2) : std::nullopt;
    if (wide)
        return { "utf16", *wide };
    if (data.size() == 4)
        return { "i32", print_plain(FieldType::I32, read_number(data)) };
    return { "hex", '"' + to_hex(data) + '"' };
}

std::string encode_data(unsigned int kind, Json const &entry)
{
    if (entry.contains("value"))
        return encode_value(kind, entry["value"]);
    if (entry.contains("ansi"))
        return encode_text(entry["ansi"], 1);
    if (entry.contains("utf16"))
        return encode_text(entry["utf16"], 2);
    if (entry.contains("i32"))
        return put_number(parse_plain(FieldType::I32, entry["i32"]), 4);
    return from_hex(entry.at("hex").get_ref<std::string const &>());
}

} // namespace kordump
