// SPDX-License-Identifier: MIT
#include "apps/kordump/custom_data_reader.h"

#include "apps/kordump/kinds.h"
#include "apps/kordump/text_codec.h"

#include <algorithm>

namespace kordump {
namespace {

constexpr unsigned int entry_head_size = 12;
constexpr unsigned int header_size = 20; // counted in the total
constexpr std::size_t pad_size = 3;      // behind the data of an old record

bool is_present(unsigned int magic)
{
    return magic == four("CUS5") || magic == four("CUS4");
}

bool is_old(unsigned int magic)
{
    return magic == four("CUSU") || magic == four("CUST");
}

struct Header {
    std::size_t offset = 0;
    unsigned int magic = 0;
    unsigned int total = 0;
    unsigned int version = 1;
    unsigned int entries = 0;
    unsigned int data_size = 0;
    unsigned int mode = 0;
    unsigned int reserved = 0;
};

struct Contents { // of a block
    unsigned int count = 0;
    unsigned int data_size = 0;
};

class BlockReader {
public:
    explicit BlockReader(Report &report)
        : m_report(report)
    {
    }

    // Both leave what they cannot tell apart as "rest". `offset` is that of the block in the file.
    Contents ReadEntries(ByteSpan block, unsigned long long offset);
    Contents ReadRecords(ByteSpan block, unsigned long long offset, unsigned long long limit);

private:
    struct Head {
        explicit Head(ByteSpan bytes)
            : id(static_cast<unsigned int>(read_number(bytes.first(4))))
            , size(static_cast<std::size_t>(read_number(bytes.subspan(4, 4))))
            , third(static_cast<unsigned int>(read_number(bytes.subspan(8, 4))))
        {
        }

        unsigned int id;
        std::size_t size;
        unsigned int third; // the kind of an entry, "more" of a record
    };

    void ReadEntry(Head const &head, ByteSpan data, unsigned long long offset);
    void ReadNested(unsigned int kind, ByteSpan data, unsigned long long offset);
    void ReadRecord(Head const &head, ByteSpan data, ByteSpan pad, unsigned long long offset);
    void ReportRest(ByteSpan rest, unsigned long long offset);
    Line DescribeEntry(Head const &head, std::string const &kind, unsigned long long offset) const;

    Report &m_report;
    int m_depth = 0; // containers around the entry
};

Contents BlockReader::ReadEntries(ByteSpan block, unsigned long long offset)
{
    Contents contents;
    m_report.OpenQuietly("entries", Bracket::Array);
    std::size_t at = 0;
    while (block.size() - at >= entry_head_size) {
        Head const head(block.subspan(at));
        if (head.size > block.size() - at - entry_head_size)
            break;
        ReadEntry(head, block.subspan(at + entry_head_size, head.size), offset + at);
        at += entry_head_size + head.size;
        ++contents.count;
        contents.data_size += static_cast<unsigned int>(head.size);
    }
    m_report.Close();
    ReportRest(block.subspan(at), offset + at);
    return contents;
}

Line BlockReader::DescribeEntry(
    Head const &head, std::string const &kind, unsigned long long offset) const
{
    if (!m_report.WantsLines())
        return {};
    return { offset, print_four_characters(head.id),
        kind + ", " + std::to_string(head.size) + " bytes", {} };
}

void BlockReader::ReadEntry(Head const &head, ByteSpan data, unsigned long long offset)
{
    unsigned int const kind = head.third;
    std::string const kind_text = print_four_characters(kind);
    bool const nested
        = (kind == kind_block || kind == kind_records) && m_depth < maximum_container_depth;
    auto const value = nested ? std::nullopt : decode_value(kind, data);
    Line line = DescribeEntry(head, kind_text, offset);
    if (nested) {
        m_report.Open(line, "", Bracket::Object);
        m_report.PutQuietly("id", print_four_characters(head.id));
        m_report.PutQuietly("kind", kind_text);
        ReadNested(kind, data, offset + entry_head_size);
        m_report.Close();
        return;
    }
    Guess const shown = value  ? Guess { "value", *value }
        : kind == four("    ") ? guess_value(data)
                               : Guess { "hex", '"' + to_hex(data) + '"' };
    line.value = shown.json;
    m_report.Put(line, "",
        "{\"id\": " + print_four_characters(head.id) + ", \"kind\": " + kind_text + ", \""
            + shown.key + "\": " + shown.json + '}');
}

void BlockReader::ReadNested(unsigned int kind, ByteSpan data, unsigned long long offset)
{
    ++m_depth;
    m_report.OpenQuietly("value", Bracket::Object);
    if (kind == kind_block)
        ReadEntries(data, offset);
    else
        ReadRecords(data, offset, data.size());
    m_report.Close();
    --m_depth;
}

// Records end behind one without "more", and before one with which all data would take more bytes
// than all records.
Contents BlockReader::ReadRecords(
    ByteSpan block, unsigned long long offset, unsigned long long limit)
{
    Contents contents;
    m_report.OpenQuietly("records", Bracket::Array);
    std::size_t at = 0;
    unsigned long long sum = 0;
    bool more = true;
    while (more && block.size() - at >= entry_head_size) {
        Head const head(block.subspan(at));
        sum += head.size;
        if (sum > limit || head.size > block.size() - at - entry_head_size)
            break;
        ByteSpan const data = block.subspan(at + entry_head_size, head.size);
        ByteSpan const behind = block.subspan(at + entry_head_size + head.size);
        ByteSpan const pad = behind.first(std::min(behind.size(), pad_size));
        ReadRecord(head, data, pad, offset + at);
        at += entry_head_size + head.size + pad.size();
        more = head.third != 0;
        ++contents.count;
    }
    m_report.Close();
    ReportRest(block.subspan(at), offset + at);
    return contents;
}

void BlockReader::ReadRecord(
    Head const &head, ByteSpan data, ByteSpan pad, unsigned long long offset)
{
    Guess const guess = guess_value(data);
    Line line = DescribeEntry(head, "no kind", offset);
    line.value = guess.json;
    m_report.Put(line, "",
        "{\"id\": " + print_four_characters(head.id) + ", \"" + guess.key + "\": " + guess.json
            + ", \"more\": " + std::to_string(head.third) + ", \"pad\": \"" + to_hex(pad) + "\"}");
}

void BlockReader::ReportRest(ByteSpan rest, unsigned long long offset)
{
    if (rest.empty())
        return;
    Line const line { offset, "rest", std::to_string(rest.size()) + " bytes, not understood", {} };
    m_report.Put(line, "rest", '"' + to_hex(rest) + '"');
}

// Leaves the cursor at the block.
Header read_header(Cursor &cursor)
{
    Attempt attempt(cursor);
    std::size_t const start = cursor.GetOffset();
    auto const take = [&] { return static_cast<unsigned int>(cursor.TakeNumber(4)); };
    Header header;
    header.offset = start;
    header.magic = take();
    header.total = take();
    if (!is_present(header.magic) && !is_old(header.magic))
        throw Damage("no custom data at offset " + std::to_string(start));
    if (is_present(header.magic) && header.total != 0) {
        header.version = take();
        header.entries = take();
        header.data_size = take();
        header.mode = take();
        header.reserved = take();
    }
    if (header.version != 1 || (is_present(header.magic) && header.total - 1 < header_size - 1))
        throw Damage("custom data at offset " + std::to_string(start) + " has version "
            + std::to_string(header.version) + " and a total of " + std::to_string(header.total)
            + " bytes");
    attempt.Succeed();
    return header;
}

// What a writer would not write for these contents.
void report_differences(
    Report &report, Header const &header, Contents const &contents, std::size_t size)
{
    auto const put_unless = [&](char const *key, unsigned int number, unsigned long long expected) {
        if (number != expected)
            report.Put({ header.offset, key, "in the header", {} }, key, std::to_string(number));
    };
    if (is_old(header.magic))
        return put_unless("total", header.total, size);
    put_unless("total", header.total, size == 0 ? 0 : size + header_size);
    put_unless("entry_count", header.entries, contents.count);
    put_unless("data_size", header.data_size, contents.data_size);
    put_unless("mode", header.mode, 0);
    put_unless("reserved", header.reserved, 0);
}

} // namespace

bool is_custom_data(Cursor const &cursor)
{
    if (cursor.GetLeft() < 8)
        return false;
    auto const magic = static_cast<unsigned int>(read_number(cursor.GetRest().first(4)));
    return is_present(magic) || is_old(magic);
}

void read_custom_data(Cursor &cursor, Report &report, std::string_view name, std::string_view key)
{
    std::size_t const start = cursor.GetOffset();
    Header const header = read_header(cursor);
    std::size_t const size
        = is_present(header.magic) && header.total != 0 ? header.total - header_size : header.total;
    std::size_t const offset = cursor.GetOffset();
    ByteSpan const block = cursor.Take(std::min(size, cursor.GetLeft()));
    std::string const form = print_four_characters(header.magic);
    Line const line { start, std::string(name),
        "custom data " + form + ", " + std::to_string(size) + " bytes", {} };
    report.Open(line, key, Bracket::Object);
    report.PutQuietly("form", form);
    BlockReader reader(report);
    Contents const contents = is_present(header.magic) ? reader.ReadEntries(block, offset)
                                                       : reader.ReadRecords(block, offset, size);
    report_differences(report, header, contents, block.size());
    report.Close();
    if (block.size() < size)
        throw Damage("cut: custom data of " + std::to_string(size) + " bytes at offset "
            + std::to_string(offset) + ", " + std::to_string(block.size()) + " left");
}

void read_custom_data_block(Cursor &cursor, Report &report)
{
    std::size_t const offset = cursor.GetOffset();
    ByteSpan const block = cursor.Take(cursor.GetLeft());
    report.Open({ offset, "", "custom data block, " + std::to_string(block.size()) + " bytes", {} },
        "", Bracket::Object);
    report.PutQuietly("form", "\"block\"");
    BlockReader(report).ReadEntries(block, offset);
    report.Close();
}

bool is_custom_data_block(ByteSpan bytes)
{
    std::size_t at = 0;
    while (bytes.size() - at >= entry_head_size) {
        auto const size = static_cast<std::size_t>(read_number(bytes.subspan(at + 4, 4)));
        auto const kind = static_cast<unsigned int>(read_number(bytes.subspan(at + 8, 4)));
        if (size == 0 || size > bytes.size() - at - entry_head_size
            || print_four_characters(kind).front() != '"')
            return false;
        at += entry_head_size + size;
    }
    return at > 0 && at == bytes.size();
}

} // namespace kordump
