// SPDX-License-Identifier: MIT
// A PE library's directories lie in its sections, at addresses relative to where the library is
// loaded. The section that holds the export directory also holds the exported names.
#include "kortools/files/module_image.h"

#include <algorithm>
#include <array>

namespace kortools::files {
namespace {

struct Section {
    char name[8];
    std::uint32_t memory_size, address, file_size, offset;
    std::uint32_t other[4];
};

struct Directory {
    std::uint32_t address, size;
};

struct ExportDirectory {
    std::uint32_t characteristics, time, version, name, base;
    std::uint32_t function_count, name_count, functions, names, ordinals;
};

struct ImportDescriptor {
    std::uint32_t functions, time, forwarder, name, thunks;
};

static_assert(sizeof(Section) == 40 && sizeof(ExportDirectory) == 40);
static_assert(sizeof(ImportDescriptor) == 20);

constexpr std::uint64_t file_header_size = 24; // with the magic in front of it
constexpr std::uint64_t directories_start = 112;
constexpr std::size_t block_entries = 1024;

class PeReader {
public:
    PeReader(ImageSource const &source, std::uint64_t header, ModuleImage &image)
        : m_source(source)
        , m_header(header)
        , m_image(image)
    {
    }
    bool read()
    {
        return read_sections() && read_directory(0, m_exports) && read_directory(1, m_imports)
            && read_exports() && read_imports();
    }

private:
    bool read_sections();
    bool read_directory(unsigned int number, Directory &directory);
    bool read_exports();
    bool read_names(ExportDirectory const &directory, Section const &section);
    bool read_imports();
    bool read_text(std::uint32_t address, std::string &text) const;

    Section const *find_section(std::uint32_t address) const; // null: the address is in none
    static std::uint64_t to_offset(Section const &section, std::uint32_t address)
    {
        return std::uint64_t(section.offset) + (address - section.address);
    }

    ImageSource const &m_source;
    std::uint64_t m_header; // where it begins
    ModuleImage &m_image;
    std::vector<Section> m_sections;
    Directory m_exports {};
    Directory m_imports {};
};

bool PeReader::read_sections()
{
    std::uint16_t count = 0;
    std::uint16_t optional_size = 0;
    if (!m_source.load(m_header + 6, count) || !m_source.load(m_header + 20, optional_size)
        || count > max_image_entries)
        return false;
    m_sections.resize(count);
    return m_source.read(
        m_header + file_header_size + optional_size, m_sections.data(), count * sizeof(Section));
}

bool PeReader::read_directory(unsigned int number, Directory &directory)
{
    std::uint64_t const start = m_header + file_header_size;
    std::uint32_t count = 0;
    if (!m_source.load(start + directories_start - sizeof count, count))
        return false;
    return number >= count
        || m_source.load(start + directories_start + number * sizeof directory, directory);
}

Section const *PeReader::find_section(std::uint32_t address) const
{
    auto const found = std::ranges::find_if(m_sections, [&](Section const &section) {
        return address >= section.address && address - section.address < section.file_size;
    });
    return found == m_sections.end() ? nullptr : &*found;
}

bool PeReader::read_exports()
{
    if (m_exports.address == 0)
        return true;
    Section const *const section = find_section(m_exports.address);
    ExportDirectory directory;
    if (!section || !m_source.load(to_offset(*section, m_exports.address), directory))
        return false;
    return directory.name_count == 0 || read_names(directory, *section);
}

bool PeReader::read_names(ExportDirectory const &directory, Section const &section)
{
    Section const *const table = find_section(directory.names);
    if (!table || section.file_size > max_image_table || section.file_size > m_source.get_size()
        || directory.name_count > max_image_table / 4)
        return false;
    m_image.names.resize(section.file_size + std::size_t(1));
    if (!m_source.read(section.offset, m_image.names.data(), section.file_size))
        return false;
    std::array<std::uint32_t, block_entries> block;
    for (std::uint32_t done = 0; done < directory.name_count;) {
        std::uint32_t const part
            = std::min<std::uint32_t>(directory.name_count - done, block_entries);
        if (!m_source.read(to_offset(*table, directory.names) + 4ULL * done, block.data(),
                std::size_t(4) * part))
            return false;
        for (std::uint32_t i = 0; i < part; ++i) {
            std::uint32_t const start = block[i] - section.address;
            if (start < section.file_size)
                m_image.exported.push_back(start);
        }
        done += part;
    }
    return true;
}

bool PeReader::read_imports()
{
    Section const *const section = m_imports.address ? find_section(m_imports.address) : nullptr;
    if (!section)
        return m_imports.address == 0;
    std::uint64_t place = to_offset(*section, m_imports.address);
    for (std::size_t i = 0; i < max_image_entries; ++i) {
        ImportDescriptor descriptor;
        if (!m_source.load(place, descriptor))
            return false;
        if (descriptor.name == 0)
            return true;
        std::string name;
        if (!read_text(descriptor.name, name))
            return false;
        m_image.needed.push_back(std::move(name));
        place += sizeof descriptor;
    }
    return false;
}

// A text that ends with a zero; a longer one than any library's name is cut.
bool PeReader::read_text(std::uint32_t address, std::string &text) const
{
    Section const *const section = find_section(address);
    if (!section)
        return false;
    std::uint64_t const offset = to_offset(*section, address);
    std::uint64_t const size = m_source.get_size();
    if (offset >= size)
        return false;
    text.resize(static_cast<std::size_t>(std::min<std::uint64_t>(size - offset, max_needed_name)));
    if (!m_source.read(offset, text.data(), text.size()))
        return false;
    text.resize(std::min(text.find('\0'), text.size()));
    return true;
}

} // namespace

bool read_pe_tables(ImageSource const &source, std::uint64_t header, ModuleImage &image)
{
    return PeReader(source, header, image).read();
}

} // namespace kortools::files
