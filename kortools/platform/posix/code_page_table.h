// SPDX-License-Identifier: MIT
// CodePageTable: one code page of one or two bytes for each character, as two tables.
//
// Decoding has 256 entries for single bytes and, for pages that have pairs, 256 more for each lead
// byte. Encoding has one block of 256 for each high byte of a character that the page has any of.
// Immutable once built, so any number of threads may use it; tables are built on first use (some
// milliseconds for a page with pairs) and live until the process ends.
#pragma once

#include "kortools/platform/posix/code_page_catalog.h"
#include "kortools/platform/posix/code_page_corrections.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

struct UConverter;

namespace kortools::platform {

class CodePageTable {
public:
    // The table of a catalogue entry of kind Table; null when memory is exhausted or the
    // converter's data is missing.
    static CodePageTable const *get(CodePageEntry const &entry);

    // Convert a whole text; with a null `target` they only measure. -1 when `capacity` is too
    // small.
    long long decode(
        char const *source, std::size_t size, wchar_t *target, std::size_t capacity) const;
    long long encode(
        wchar_t const *source, std::size_t length, char *target, std::size_t capacity) const;

private:
    CodePageTable(CodePageEntry const &entry, UConverter *converter);
    void read_single_bytes(UConverter *converter);
    void read_pairs(UConverter *converter, char16_t default_character);
    void read_characters(UConverter *converter);
    void keep_ascii();
    void apply(CodePageCorrections const &corrections);
    void return_single_bytes();
    bool is_single_byte() const { return m_pair_blocks.empty(); }
    std::uint16_t get_bytes(char32_t ch) const; // up to FFFF
    void set_bytes(char32_t ch, std::uint16_t bytes);

    template <class Sink> bool decode(char const *source, std::size_t size, Sink &sink) const;
    template <class Sink> bool encode(wchar_t const *source, std::size_t length, Sink &sink) const;

    std::array<char16_t, 256> m_single {};    // of one byte alone
    std::array<std::uint8_t, 256> m_pairs {}; // of a lead byte: number of its block, 0 for others
    std::vector<char16_t> m_pair_blocks;      // 256 entries each; block 0 is not stored

    // One byte, or two with the first in the high half.
    std::uint16_t m_question_mark = 0;          // what cannot be mapped becomes
    std::array<std::uint16_t, 256> m_blocks {}; // of a character's high byte; block 0 has nothing
    std::vector<std::uint16_t> m_bytes;         // 256 entries each
};

} // namespace kortools::platform
