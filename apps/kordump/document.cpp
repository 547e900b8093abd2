// SPDX-License-Identifier: MIT
#include "apps/kordump/document.h"

#include "apps/kordump/custom_data_reader.h"
#include "apps/kordump/text_codec.h"
#include "apps/kordump/tree_reader.h"

#include <algorithm>

namespace kordump {
namespace {

struct FormatName {
    Format format;
    std::string_view name;
};

constexpr FormatName format_names[] = { { Format::Archive, "archive" },
    { Format::CustomData, "custom-data" }, { Format::Preferences, "preferences" },
    { Format::Tree, "tree" }, { Format::Raw, "raw" } };

constexpr std::size_t keys_size = 8;  // of a record of a preferences file
constexpr std::size_t count_size = 4; // at its beginning

// A class record: its tag, any schema, and a name that could be one.
bool is_class_record(ByteSpan bytes)
{
    if (bytes.size() < 7 || bytes[0] != 0xFF || bytes[1] != 0xFF)
        return false;
    auto const length = static_cast<std::size_t>(read_number(bytes.subspan(4, 2)));
    auto const name = bytes.subspan(6, std::min(length, bytes.size() - 6));
    return !name.empty()
        && std::ranges::all_of(name, [](unsigned char byte) { return byte > ' ' && byte < 0x7F; });
}

bool is_preferences(ByteSpan bytes)
{
    Cursor cursor(bytes);
    if (bytes.size() <= count_size + keys_size)
        return false;
    cursor.Seek(count_size + keys_size);
    return is_custom_data(cursor);
}

class FileReader {
public:
    FileReader(ByteSpan bytes, Plan const &plan, Report &report, Reading const *first)
        : m_plan(plan)
        , m_cursor(bytes)
        , m_report(report)
        , m_archive(m_cursor, plan.layouts, report, first)
    {
    }

    Reading Read()
    {
        Reading &reading = m_archive.GetReading();
        try {
            ReadItems();
            if (m_cursor.GetLeft() > 0 && m_plan.top.empty())
                reading.problem = std::to_string(m_cursor.GetLeft()) + " bytes follow from offset "
                    + std::to_string(m_cursor.GetOffset()) + " on";
        } catch (Damage const &damage) {
            reading.problem = damage.what();
        } catch (UnknownClass const &unknown) {
            reading.unknown_class = unknown.name;
        }
        m_report.CloseDownTo(0);
        reading.end = m_cursor.GetOffset();
        return reading;
    }

private:
    void ReadItems()
    {
        if (m_plan.format == Format::Raw)
            throw Damage("the format is not recognised");
        if (m_plan.format == Format::Tree)
            return read_tree(m_archive, "items");
        if (m_plan.format == Format::Preferences)
            return ReadPreferences();
        m_report.OpenQuietly("items", Bracket::Array);
        if (m_plan.format == Format::Archive)
            m_archive.ReadItems(m_plan.top);
        else if (is_custom_data(m_cursor))
            read_custom_data(m_cursor, m_report, "", "");
        else
            read_custom_data_block(m_cursor, m_report);
    }

    void ReadPreferences()
    {
        if (m_cursor.GetLeft() == 0)
            return; // a file without records may also be empty
        unsigned long long const count = m_cursor.TakeNumber(count_size);
        unsigned long long records = 0;
        m_report.OpenQuietly("items", Bracket::Array);
        try {
            for (; m_cursor.GetLeft() > 0; ++records)
                ReadRecord();
        } catch (Damage const &) {
            m_report.CloseDownTo(0);
            ReportCount(count);
            throw;
        }
        m_report.CloseDownTo(0);
        if (records != count)
            ReportCount(count);
    }

    void ReportCount(unsigned long long count)
    {
        m_report.Put(
            { 0, "count of records", "in the header", {}, 0 }, "count", std::to_string(count));
    }

    void ReadRecord()
    {
        Attempt attempt(m_cursor);
        std::size_t const start = m_cursor.GetOffset();
        auto const identifier = static_cast<unsigned int>(m_cursor.TakeNumber(4));
        auto const version = static_cast<unsigned int>(m_cursor.TakeNumber(4));
        attempt.Succeed();
        std::string const name = print_four_characters(identifier);
        m_report.Open(
            { start, "", "record " + name + ", version " + std::to_string(version), {}, 0 }, "",
            Bracket::Object);
        m_report.PutQuietly("identifier", name);
        m_report.PutNumber("version", version);
        m_archive.BeginStructure(start);
        if (!SkipUnknownContainer())
            read_custom_data(m_cursor, m_report, "", "data");
        m_archive.EndStructure();
        m_report.Close();
    }

    // Every form of a container has a size in the same place, and so its end is known.
    bool SkipUnknownContainer()
    {
        constexpr std::size_t head_size = 8; // the magic, and the size of what follows
        if (m_cursor.GetLeft() < head_size || is_custom_data(m_cursor))
            return false;
        ByteSpan const rest = m_cursor.GetRest();
        unsigned long long const size = head_size + read_number(rest.subspan(4, 4));
        if (size > rest.size())
            return false;
        m_report.Put({ m_cursor.GetOffset(), "", "a container of an unknown form", {}, 0 }, "hex",
            '"' + to_hex(m_cursor.Take(size)) + '"');
        return true;
    }

    Plan const &m_plan;
    Cursor m_cursor;
    Report &m_report;
    ArchiveReader m_archive;
};

// The layouts that writing back needs.
void report_layouts(Report &report, Reading const &reading)
{
    if (reading.used.empty())
        return;
    report.OpenQuietly("classes", Bracket::Array);
    for (Layout const *const layout : reading.used) {
        report.Open({}, "", Bracket::Object);
        report.PutQuietly("class", quote(layout->name));
        report.PutNumber("schema", layout->schema);
        report.OpenQuietly("fields", Bracket::Array);
        for (Field const &field : layout->fields)
            report.PutQuietly("", quote(print_field(field)));
        report.Close();
        report.Close();
    }
    report.Close();
}

void report_rest(Report &report, ByteSpan bytes, Reading const &reading)
{
    report.OpenQuietly("rest", Bracket::Object);
    report.PutNumber("offset", reading.end);
    std::string const reason = !reading.unknown_class.empty()
        ? "the class " + reading.unknown_class + " is not known"
        : reading.problem.empty() ? "nothing says what it is"
                                  : reading.problem;
    report.PutQuietly("reason", quote_bytes(reason));
    report.PutQuietly("hex", '"' + to_hex(bytes.subspan(reading.end)) + '"');
    report.Close();
}

} // namespace

std::string_view get_format_name(Format format)
{
    return std::ranges::find(format_names, format, &FormatName::format)->name;
}

std::optional<Format> find_format(std::string_view name)
{
    auto const *const found = std::ranges::find(format_names, name, &FormatName::name);
    return found == std::end(format_names) ? std::nullopt : std::optional(found->format);
}

Format detect_format(ByteSpan bytes)
{
    Cursor const cursor(bytes);
    if (is_custom_data(cursor))
        return Format::CustomData;
    if (is_tree(cursor))
        return Format::Tree;
    if (is_class_record(bytes))
        return Format::Archive;
    if (is_preferences(bytes))
        return Format::Preferences;
    return is_custom_data_block(bytes) ? Format::CustomData : Format::Raw;
}

Reading report_file(ByteSpan bytes, Plan const &plan, Report &report)
{
    NoReport none;
    Reading first = FileReader(bytes, plan, none, nullptr).Read();
    report.PutQuietly("kordump", "1");
    report.PutQuietly("format", quote(get_format_name(plan.format)));
    report_layouts(report, first);
    if (!plan.top.empty()) {
        report.OpenQuietly("top", Bracket::Array);
        for (Field const &field : plan.top)
            report.PutQuietly("", quote(print_field(field)));
        report.Close();
    }
    FileReader(bytes, plan, report, &first).Read();
    if (first.end < bytes.size() || !first.problem.empty() || !first.unknown_class.empty())
        report_rest(report, bytes, first);
    return first;
}

} // namespace kordump
