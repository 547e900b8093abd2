// SPDX-License-Identifier: MIT
// What the loader itself uses of an ELF library: the segments tell where in the file an address
// lies, the dynamic segment where the table of symbols and their names begin. How many symbols
// there are is said only by the hash table over them, the older form in its head, the newer one by
// the end of its longest chain; without either, by the section headers.
#include "kortools/files/module_image.h"

#include <algorithm>
#include <array>
#include <optional>

namespace kortools::files {
namespace {

struct Header {
    std::uint8_t ident[16];
    std::uint16_t type, machine;
    std::uint32_t version;
    std::uint64_t entry, segments, sections;
    std::uint32_t flags;
    std::uint16_t size, segment_size, segment_count, section_size, section_count, section_names;
};

struct Segment {
    std::uint32_t type, flags;
    std::uint64_t offset, address, physical, file_size, memory_size, alignment;
};

struct Section {
    std::uint32_t name, type;
    std::uint64_t flags, address, offset, size;
    std::uint32_t link, info;
    std::uint64_t alignment, entry_size;
};

struct DynamicEntry {
    std::int64_t tag;
    std::uint64_t value;
};

struct Symbol {
    std::uint32_t name;
    std::uint8_t info, other;
    std::uint16_t section;
    std::uint64_t value, size;
};

static_assert(sizeof(Header) == 64 && sizeof(Segment) == 56 && sizeof(Section) == 64);
static_assert(sizeof(DynamicEntry) == 16 && sizeof(Symbol) == 24);

enum SegmentType : std::uint32_t { segment_load = 1, segment_dynamic = 2 };
constexpr std::uint32_t section_dynamic_symbols = 11;
constexpr std::uint64_t flag_is_program = 0x08000000; // an executable that can lie anywhere
constexpr std::size_t max_symbols = max_image_table / sizeof(Symbol);
constexpr std::size_t block_entries = 1024; // of a table, read at a time
constexpr std::uint64_t max_chain = 65536;  // symbols of one bucket; linkers make it a few

// The values of the dynamic segment's entries that matter here; 0: absent.
struct Dynamic {
    std::uint64_t names = 0;
    std::uint64_t names_size = 0;
    std::uint64_t symbols = 0;
    std::uint64_t hash = 0;
    std::uint64_t gnu_hash = 0;
    std::uint64_t flags = 0;
    std::vector<std::uint64_t> needed; // offsets in the names

    void set(DynamicEntry const &entry)
    {
        switch (entry.tag) {
        case 1:
            needed.push_back(entry.value);
            break;
        case 4:
            hash = entry.value;
            break;
        case 5:
            names = entry.value;
            break;
        case 6:
            symbols = entry.value;
            break;
        case 10:
            names_size = entry.value;
            break;
        case 0x6FFFFEF5:
            gnu_hash = entry.value;
            break;
        case 0x6FFFFFFB:
            flags = entry.value;
            break;
        default:
            break;
        }
    }
};

class ElfReader {
public:
    ElfReader(ImageSource const &source, ModuleImage &image)
        : m_source(source)
        , m_image(image)
    {
    }
    bool read();

private:
    bool read_segments();
    bool read_dynamic(Segment const &segment);
    bool read_names();
    bool read_needed();
    bool read_symbols(std::uint64_t count);

    std::optional<std::uint64_t> to_offset(std::uint64_t address) const; // in the file
    std::optional<std::uint64_t> count_symbols() const;
    std::optional<std::uint64_t> count_by_gnu_hash() const;
    std::optional<std::uint64_t> count_by_sections() const;
    std::optional<std::uint32_t> find_longest_bucket(
        std::uint64_t start, std::uint32_t count) const;

    ImageSource const &m_source;
    ModuleImage &m_image;
    Header m_header {};
    std::vector<Segment> m_segments; // those that are loaded
    Dynamic m_dynamic;
};

bool ElfReader::read()
{
    if (!m_source.load(0, m_header) || !read_segments() || !read_names() || !read_needed())
        return false;
    if (m_dynamic.flags & flag_is_program)
        m_image.is_library = false;
    std::optional<std::uint64_t> const count = count_symbols();
    return count && *count <= max_symbols && read_symbols(*count);
}

bool ElfReader::read_segments()
{
    if (m_header.segment_size != sizeof(Segment) || m_header.segment_count > max_image_entries)
        return false;
    std::optional<Segment> dynamic;
    for (std::uint64_t i = 0; i < m_header.segment_count; ++i) {
        Segment segment;
        if (!m_source.load(m_header.segments + i * sizeof segment, segment))
            return false;
        if (segment.type == segment_load)
            m_segments.push_back(segment);
        else if (segment.type == segment_dynamic)
            dynamic = segment;
    }
    return dynamic && read_dynamic(*dynamic);
}

bool ElfReader::read_dynamic(Segment const &segment)
{
    std::uint64_t const count
        = std::min<std::uint64_t>(segment.file_size / sizeof(DynamicEntry), 2 * max_image_entries);
    for (std::uint64_t i = 0; i < count; ++i) {
        DynamicEntry entry;
        if (!m_source.load(segment.offset + i * sizeof entry, entry))
            return false;
        if (entry.tag == 0)
            return true;
        m_dynamic.set(entry);
    }
    return true;
}

std::optional<std::uint64_t> ElfReader::to_offset(std::uint64_t address) const
{
    for (Segment const &segment : m_segments) {
        if (address >= segment.address && address - segment.address < segment.file_size)
            return segment.offset + (address - segment.address);
    }
    return std::nullopt;
}

bool ElfReader::read_names()
{
    std::optional<std::uint64_t> const offset = to_offset(m_dynamic.names);
    if (!offset || m_dynamic.names_size > max_image_table
        || m_dynamic.names_size > m_source.get_size())
        return false;
    m_image.names.resize(static_cast<std::size_t>(m_dynamic.names_size) + 1);
    return m_source.read(*offset, m_image.names.data(), m_image.names.size() - 1);
}

bool ElfReader::read_needed()
{
    if (m_dynamic.needed.size() > max_image_entries)
        return false;
    for (std::uint64_t const start : m_dynamic.needed) {
        if (start >= m_image.names.size())
            return false;
        std::string_view const rest
            = std::string_view(m_image.names).substr(static_cast<std::size_t>(start));
        m_image.needed.emplace_back(rest.substr(0, std::min(rest.find('\0'), max_needed_name)));
    }
    return true;
}

std::optional<std::uint64_t> ElfReader::count_symbols() const
{
    if (m_dynamic.symbols == 0)
        return 0;
    if (std::optional<std::uint64_t> const hash = to_offset(m_dynamic.hash)) {
        std::uint32_t counts[2]; // of buckets and of symbols
        if (m_dynamic.hash != 0 && m_source.load(*hash, counts))
            return counts[1];
    }
    return m_dynamic.gnu_hash != 0 ? count_by_gnu_hash() : count_by_sections();
}

std::optional<std::uint32_t> ElfReader::find_longest_bucket(
    std::uint64_t start, std::uint32_t count) const
{
    std::uint32_t last = 0;
    std::array<std::uint32_t, block_entries> block;
    for (std::uint32_t done = 0; done < count;) {
        std::uint32_t const part = std::min<std::uint32_t>(count - done, block_entries);
        if (!m_source.read(start + 4ULL * done, block.data(), 4ULL * part))
            return std::nullopt;
        last = std::max(last, *std::max_element(block.begin(), block.begin() + part));
        done += part;
    }
    return last;
}

// A bucket has the number of its first symbol; its last one is marked in the table of hashes. So
// the chain of the highest first symbol ends at the last symbol of all.
std::optional<std::uint64_t> ElfReader::count_by_gnu_hash() const
{
    struct {
        std::uint32_t bucket_count, first_symbol, bloom_count, bloom_shift;
    } head;
    std::optional<std::uint64_t> const start = to_offset(m_dynamic.gnu_hash);
    if (!start || !m_source.load(*start, head) || head.bucket_count > max_symbols)
        return std::nullopt;
    std::uint64_t const buckets = *start + sizeof head + 8ULL * head.bloom_count;
    std::uint64_t const hashes = buckets + 4ULL * head.bucket_count;
    std::optional<std::uint32_t> const last = find_longest_bucket(buckets, head.bucket_count);
    if (!last)
        return std::nullopt;
    if (*last < head.first_symbol)
        return head.first_symbol; // nothing is exported
    for (std::uint64_t symbol = *last; symbol - *last < max_chain; ++symbol) {
        std::uint32_t hash;
        if (!m_source.load(hashes + 4 * (symbol - head.first_symbol), hash))
            return std::nullopt;
        if (hash & 1)
            return symbol + 1;
    }
    return std::nullopt;
}

std::optional<std::uint64_t> ElfReader::count_by_sections() const
{
    if (m_header.section_size != sizeof(Section) || m_header.section_count > max_image_entries)
        return std::nullopt;
    for (std::uint64_t i = 0; i < m_header.section_count; ++i) {
        Section section;
        if (!m_source.load(m_header.sections + i * sizeof section, section))
            return std::nullopt;
        if (section.type == section_dynamic_symbols)
            return section.size / sizeof(Symbol);
    }
    return std::nullopt;
}

// Functions that other libraries can see; the numbers are those of the fields' parts.
bool is_exported(Symbol const &symbol)
{
    unsigned const binding = symbol.info >> 4;
    unsigned const type = symbol.info & 15U;
    unsigned const visibility = symbol.other & 3U;
    return symbol.section != 0 && (binding == 1 || binding == 2 || binding == 10) // not local
        && (type == 0 || type == 2 || type == 10) && (visibility == 0 || visibility == 3);
}

bool ElfReader::read_symbols(std::uint64_t count)
{
    std::optional<std::uint64_t> const start
        = count == 0 ? std::uint64_t(0) : to_offset(m_dynamic.symbols);
    if (!start)
        return false;
    std::vector<Symbol> block(block_entries);
    for (std::uint64_t done = 0; done < count;) {
        std::uint64_t const part = std::min<std::uint64_t>(count - done, block_entries);
        if (!m_source.read(*start + done * sizeof(Symbol), block.data(),
                static_cast<std::size_t>(part) * sizeof(Symbol)))
            return false;
        for (std::size_t i = 0; i < part; ++i) {
            if (is_exported(block[i]) && block[i].name < m_image.names.size())
                m_image.exported.push_back(block[i].name);
        }
        done += part;
    }
    return true;
}

} // namespace

bool read_elf_tables(ImageSource const &source, ModuleImage &image)
{
    return ElfReader(source, image).read();
}

} // namespace kortools::files
