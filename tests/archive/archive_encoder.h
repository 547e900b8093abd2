// SPDX-License-Identifier: MIT
// A slow and obvious writer of the archive format, independent of the library: what the tests
// compare the archive's bytes with, and make damaged ones with.
#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>

namespace kor_test {

class ArchiveEncoder {
public:
    std::string const &bytes() const { return m_bytes; }

    ArchiveEncoder &number(unsigned long long value, int size)
    {
        for (int i = 0; i < size; ++i)
            m_bytes += static_cast<char>(value >> (8 * i));
        return *this;
    }
    ArchiveEncoder &u8(unsigned value) { return number(value, 1); }
    ArchiveEncoder &u16(unsigned value) { return number(value, 2); }
    ArchiveEncoder &u32(unsigned value) { return number(value, 4); }
    ArchiveEncoder &u64(unsigned long long value) { return number(value, 8); }
    ArchiveEncoder &f32(float value) { return u32(std::bit_cast<std::uint32_t>(value)); }
    ArchiveEncoder &f64(double value) { return u64(std::bit_cast<std::uint64_t>(value)); }
    ArchiveEncoder &raw(std::string_view text)
    {
        m_bytes += text;
        return *this;
    }

    ArchiveEncoder &count(unsigned long long value)
    {
        if (value <= 0xFFFE)
            return number(value, 2);
        u16(0xFFFF);
        return value <= 0xFFFFFFFEU ? number(value, 4) : u32(0xFFFFFFFF).u64(value);
    }

    // `mark` is 0 or the 16 bits of the mark.
    ArchiveEncoder &length(unsigned long long value, unsigned mark)
    {
        if (mark != 0)
            u8(0xFF).u16(mark);
        if (value <= 254)
            return number(value, 1);
        u8(0xFF);
        if (value <= 65531)
            return number(value, 2);
        u16(0xFFFF);
        return value <= 0xFFFFFFFEU ? number(value, 4) : u32(0xFFFFFFFF).u64(value);
    }
    ArchiveEncoder &narrow(std::string_view text) { return length(text.size(), 0).raw(text); }
    ArchiveEncoder &wide(std::u16string_view units)
    {
        length(units.size(), 0xFFFE);
        for (char16_t const unit : units)
            u16(unit);
        return *this;
    }

    ArchiveEncoder &new_class(std::string_view name, unsigned schema)
    {
        return u16(0xFFFF).u16(schema).u16(static_cast<unsigned>(name.size())).raw(name);
    }
    ArchiveEncoder &old_class(unsigned index)
    {
        return index <= 0x7FFE ? u16(0x8000 + index) : u16(0x7FFF).u32(0x80000000U + index);
    }
    ArchiveEncoder &old_object(unsigned index)
    {
        return index <= 0x7FFE ? u16(index) : u16(0x7FFF).u32(index);
    }

private:
    std::string m_bytes;
};

} // namespace kor_test
