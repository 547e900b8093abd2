// SPDX-License-Identifier: MIT
#include "kortools/files/module_image.h"

#include "kortools/platform/file_system.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace platform = kortools::platform;

namespace kortools::files {
namespace {

constexpr std::size_t page_size = 4096;
constexpr std::size_t block_size = 32768;
constexpr unsigned char elf_magic[] = { 0x7F, 'E', 'L', 'F' };

struct ElfStart {
    unsigned char magic[4];
    unsigned char word_class; // 1: 32 bits, 2: 64 bits
    unsigned char byte_order; // 1: little-endian, 2: big-endian
    unsigned char version;
    unsigned char rest[9];
    unsigned char type[2];
    unsigned char machine[2];
};

unsigned int get_word(unsigned char const (&bytes)[2], bool is_big_endian)
{
    unsigned int const first = bytes[0];
    unsigned int const second = bytes[1];
    return is_big_endian ? first << 8 | second : second << 8 | first;
}

void read_elf(ImageSource const &source, ModuleImage &image)
{
    ElfStart start;
    if (!source.load(0, start) || start.word_class - 1U > 1 || start.byte_order - 1U > 1)
        return;
    image.format = ImageFormat::Elf;
    image.bits = start.word_class == 1 ? 32 : 64;
    image.is_big_endian = start.byte_order == 2;
    image.machine = get_word(start.machine, image.is_big_endian);
    image.is_library = get_word(start.type, image.is_big_endian) == 3;
    if (image.bits == 64 && !image.is_big_endian && image.is_library)
        image.is_damaged = !read_elf_tables(source, image);
}

struct PeStart {
    char magic[4];
    std::uint16_t machine;
    std::uint16_t section_count;
    std::uint32_t time;
    std::uint32_t symbols;
    std::uint32_t symbol_count;
    std::uint16_t optional_size;
    std::uint16_t characteristics;
    std::uint16_t optional_magic;
};

void read_pe(ImageSource const &source, ModuleImage &image)
{
    std::uint32_t header = 0;
    PeStart start;
    if (!source.load(60, header) || !source.load(header, start)
        || std::memcmp(start.magic, "PE\0", 4) != 0)
        return;
    image.format = ImageFormat::Pe;
    image.bits = start.optional_magic == 0x20B ? 64 : 32;
    image.machine = start.machine;
    image.is_library = (start.characteristics & 0x2000) != 0;
    if (image.bits == 64 && image.is_library)
        image.is_damaged = !read_pe_tables(source, header, image);
}

struct MachineName {
    ImageFormat format;
    unsigned int machine;
    char const *name;
};

constexpr MachineName machine_names[] = {
    { ImageFormat::Elf, 3, "x86" },
    { ImageFormat::Elf, 8, "MIPS" },
    { ImageFormat::Elf, 20, "PowerPC" },
    { ImageFormat::Elf, 21, "PowerPC" },
    { ImageFormat::Elf, 22, "S/390" },
    { ImageFormat::Elf, 40, "ARM" },
    { ImageFormat::Elf, 62, "x86-64" },
    { ImageFormat::Elf, 183, "AArch64" },
    { ImageFormat::Elf, 243, "RISC-V" },
    { ImageFormat::Pe, 0x14C, "x86" },
    { ImageFormat::Pe, 0x1C4, "ARM" },
    { ImageFormat::Pe, 0x8664, "x86-64" },
    { ImageFormat::Pe, 0xAA64, "AArch64" },
};

} // namespace

ModuleImage read_module_image(ImageSource const &source)
{
    ModuleImage image;
    unsigned char magic[4];
    if (!source.load(0, magic))
        return image;
    if (std::memcmp(magic, elf_magic, sizeof magic) == 0)
        read_elf(source, image);
    else if (magic[0] == 'M' && magic[1] == 'Z')
        read_pe(source, image);
    return image;
}

bool ModuleImage::exports(std::string_view name) const
{
    return std::ranges::any_of(exported, [&](std::uint32_t start) {
        return names.size() - start > name.size() // a zero follows
            && std::memcmp(names.data() + start, name.data(), name.size()) == 0
            && names[start + name.size()] == 0;
    });
}

std::string describe_machine(ModuleImage const &image)
{
    auto const *const known = std::ranges::find_if(machine_names, [&](MachineName const &entry) {
        return entry.format == image.format && entry.machine == image.machine;
    });
    std::string text = image.format == ImageFormat::Elf ? "ELF, " : "PE, ";
    text += std::to_string(image.bits) + " bits, ";
    return text
        + (known == std::end(machine_names) ? "machine " + std::to_string(image.machine)
                                            : known->name);
}

bool MemoryImageSource::read(std::uint64_t offset, void *target, std::size_t size) const
{
    if (offset > m_bytes.size() || size > m_bytes.size() - offset)
        return false;
    std::copy_n(m_bytes.data() + offset, size, static_cast<char *>(target));
    return true;
}

FileImageSource::FileImageSource(wchar_t const *path)
    : m_file(platform::open_file(path, platform::FileAccess::Read, platform::FileSharing::ReadWrite,
        platform::FileCreation::OpenExisting))
{
    long long const size = is_open() ? platform::get_file_size(m_file) : 0;
    m_size = size < 0 ? 0 : static_cast<std::uint64_t>(size);
}

FileImageSource::~FileImageSource()
{
    if (is_open())
        platform::close_file(m_file);
}

bool FileImageSource::is_open() const
{
    return m_file != platform::invalid_file_handle();
}

bool FileImageSource::read(std::uint64_t offset, void *target, std::size_t size) const
{
    if (offset > m_size || size > m_size - offset)
        return false;
    if (size > block_size / 2)
        return read_disk(offset, target, size);
    if (offset < m_block_start || offset + size > m_block_start + m_block.size()) {
        m_block_start = offset / page_size * page_size;
        m_block.resize(
            static_cast<std::size_t>(std::min<std::uint64_t>(block_size, m_size - m_block_start)));
        if (!read_disk(m_block_start, m_block.data(), m_block.size())) {
            m_block.clear();
            return false;
        }
    }
    std::copy_n(m_block.data() + (offset - m_block_start), size, static_cast<char *>(target));
    return true;
}

bool FileImageSource::read_disk(std::uint64_t offset, void *target, std::size_t size) const
{
    auto const place = static_cast<long long>(offset);
    return platform::seek_file(m_file, place, platform::SeekOrigin::Begin) == place
        && platform::read_file(m_file, target, static_cast<unsigned int>(size))
        == static_cast<long long>(size);
}

} // namespace kortools::files
