// SPDX-License-Identifier: MIT
// Reads from the file of a library what it is, exports and needs, without loading it: ELF and PE,
// both on every system. Only 64-bit ones have their tables read, of the others just the head.
//
// Files may be of any content. Tables are read as far as they lie in the file and are not larger
// than the limits below; time and memory are proportional to them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace kortools::files {

class ImageSource {
public:
    virtual ~ImageSource() = default;

    // Exactly those bytes, or false.
    virtual bool read(std::uint64_t offset, void *target, std::size_t size) const = 0;

    template <class T> bool load(std::uint64_t offset, T &record) const
    {
        static_assert(std::is_trivially_copyable_v<T>);
        return read(offset, &record, sizeof record);
    }
    virtual std::uint64_t get_size() const = 0;
};

enum class ImageFormat { None, Elf, Pe };

struct ModuleImage {
    ImageFormat format = ImageFormat::None;
    int bits = 0; // 32 or 64
    bool is_big_endian = false;
    unsigned int machine = 0;        // the format's number for the processor
    bool is_library = false;         // a shared one, not a program
    bool is_damaged = false;         // a table is cut, too large or leads nowhere
    std::vector<std::string> needed; // names of the libraries it is bound to

    bool exports(std::string_view name) const; // O(number of exported names)

    std::string names; // holds what is exported, among other things; always with a zero at its end
    std::vector<std::uint32_t> exported; // where the names begin; inside of `names`
};

inline constexpr std::size_t max_image_table = 64U << 20; // bytes
inline constexpr std::size_t max_image_entries = 1024;    // segments, sections, needed libraries
inline constexpr std::size_t max_needed_name = 1024;      // characters

ModuleImage read_module_image(ImageSource const &source);

// "ELF, 64 bits, AArch64"
std::string describe_machine(ModuleImage const &image);

// The parts of read_module_image(): they fill in an image whose format and machine are known.
// False when it is damaged.
bool read_elf_tables(ImageSource const &source, ModuleImage &image);
bool read_pe_tables(ImageSource const &source, std::uint64_t header, ModuleImage &image);

class MemoryImageSource : public ImageSource {
public:
    explicit MemoryImageSource(std::string_view bytes) // which must stay
        : m_bytes(bytes)
    {
    }
    bool read(std::uint64_t offset, void *target, std::size_t size) const override;
    std::uint64_t get_size() const override { return m_bytes.size(); }

private:
    std::string_view m_bytes;
};

// A file of the disk, read in blocks. Nothing when it cannot be opened, for the reason in
// get_last_os_error(). Used by one thread.
class FileImageSource : public ImageSource {
public:
    explicit FileImageSource(wchar_t const *path);
    FileImageSource(FileImageSource const &) = delete;
    FileImageSource &operator=(FileImageSource const &) = delete;
    ~FileImageSource() override;

    bool is_open() const;
    bool read(std::uint64_t offset, void *target, std::size_t size) const override;
    std::uint64_t get_size() const override { return m_size; }

private:
    bool read_disk(std::uint64_t offset, void *target, std::size_t size) const;

    void *m_file;
    std::uint64_t m_size = 0;
    mutable std::vector<char> m_block;       // what was read last
    mutable std::uint64_t m_block_start = 0; // in the file
};

} // namespace kortools::files
