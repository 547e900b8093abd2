// SPDX-License-Identifier: MIT
#include "apps/kordump/custom_data_writer.h"

#include "apps/kordump/kinds.h"
#include "apps/kordump/number_codec.h"
#include "apps/kordump/text_codec.h"

#include <nlohmann/json.hpp>

namespace kordump {
namespace {

constexpr unsigned int header_size = 20;
constexpr unsigned int largest = 0xFFFFFFFF;

struct Contents {
    unsigned long long count = 0;
    unsigned long long data_size = 0;
};

void put_rest(ByteBuffer &bytes, Json const &structure)
{
    if (structure.contains("rest"))
        bytes.PutBytes(from_hex(structure["rest"].get_ref<std::string const &>()));
}

[[noreturn]] void rethrow_in_entry(Json const &id, std::exception const &error)
{
    throw std::runtime_error("entry " + id.dump() + ": " + error.what());
}

Contents write_entries(ByteBuffer &bytes, Json const &container);
void write_records(ByteBuffer &bytes, Json const &container);

// Behind its identifier; the size of its data.
std::size_t write_entry_data(ByteBuffer &bytes, Json const &entry)
{
    unsigned int const kind = parse_code(entry.at("kind"));
    std::size_t const size_at = bytes.GetSize();
    bytes.PutNumber(0, 4);
    bytes.PutNumber(kind, 4);
    std::size_t const start = bytes.GetSize();
    if (kind == kind_block && entry.contains("value"))
        write_entries(bytes, entry["value"]);
    else if (kind == kind_records && entry.contains("value"))
        write_records(bytes, entry["value"]);
    else
        bytes.PutBytes(encode_data(kind, entry));
    std::size_t const size = bytes.GetSize() - start;
    bytes.ReplaceNumber(size_at, size);
    return size;
}

Contents write_entries(ByteBuffer &bytes, Json const &container)
{
    Contents contents;
    for (Json const &entry : container.at("entries")) {
        Json const &id = entry.at("id");
        bytes.PutNumber(parse_code(id), 4);
        try {
            contents.data_size += write_entry_data(bytes, entry);
        } catch (std::exception const &error) {
            rethrow_in_entry(id, error);
        }
        ++contents.count;
    }
    put_rest(bytes, container);
    return contents;
}

void write_records(ByteBuffer &bytes, Json const &container)
{
    Json const &records = container.at("records");
    std::size_t left = records.size();
    for (Json const &record : records) {
        --left;
        bytes.PutNumber(parse_code(record.at("id")), 4);
        std::string const data = encode_data(0, record);
        bytes.PutNumber(data.size(), 4);
        bytes.PutNumber(
            record.contains("more") ? parse_number(record["more"], largest) : left > 0, 4);
        bytes.PutBytes(data);
        bytes.PutBytes(from_hex(record.value("pad", "000000")));
    }
    put_rest(bytes, container);
}

unsigned long long value_or(Json const &container, char const *key, unsigned long long computed)
{
    return container.contains(key) ? parse_number(container[key], largest) : computed;
}

// With the header that the entries need; its numbers are put in when they are known.
void write_present(ByteBuffer &bytes, Json const &container)
{
    std::size_t const start = bytes.GetSize();
    unsigned long long const total = value_or(container, "total", 0);
    if (container.at("entries").empty() && !container.contains("rest") && total < header_size) {
        bytes.PutNumber(total, 4);
        return;
    }
    bytes.PutNumber(0, 4); // the total
    bytes.PutNumber(1, 4); // the version
    bytes.PutNumber(0, 8); // the number of entries, the size of their data
    bytes.PutNumber(value_or(container, "mode", 0), 4);
    bytes.PutNumber(value_or(container, "reserved", 0), 4);
    Contents const contents = write_entries(bytes, container);
    std::size_t const size = bytes.GetSize() - start - 4;
    if (size > largest)
        throw std::runtime_error("custom data of " + std::to_string(size) + " bytes");
    bytes.ReplaceNumber(start, value_or(container, "total", size));
    bytes.ReplaceNumber(start + 8, value_or(container, "entry_count", contents.count));
    bytes.ReplaceNumber(start + 12, value_or(container, "data_size", contents.data_size));
}

} // namespace

void write_custom_data(ByteBuffer &bytes, Json const &container)
{
    Json const &form = container.at("form");
    if (form == "block") {
        write_entries(bytes, container);
        return;
    }
    bytes.PutNumber(parse_code(form), 4);
    if (form == "CUS5" || form == "CUS4")
        return write_present(bytes, container);
    if (form != "CUSU" && form != "CUST")
        throw std::runtime_error("custom data has no form " + form.dump());
    std::size_t const size_at = bytes.GetSize();
    bytes.PutNumber(0, 4);
    write_records(bytes, container);
    bytes.ReplaceNumber(size_at, value_or(container, "total", bytes.GetSize() - size_at - 4));
}

} // namespace kordump
