// SPDX-License-Identifier: MIT
#include "kortools/platform/posix/code_page_table.h"

#include "kortools/platform/text_sink.h"
#include "kortools/platform/wide_text.h"

#include <unicode/ucnv.h>
#include <unicode/uset.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <new>

namespace kortools::platform {
namespace {

struct CloseConverter {
    void operator()(UConverter *converter) const { ucnv_close(converter); }
};
using ConverterPtr = std::unique_ptr<UConverter, CloseConverter>;

// Opens a converter that stops at whatever it cannot convert.
ConverterPtr open_strict(char const *name)
{
    UErrorCode error = U_ZERO_ERROR;
    ConverterPtr converter(ucnv_open(name, &error));
    ucnv_setToUCallBack(
        converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
    ucnv_setFromUCallBack(
        converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
    if (U_FAILURE(error))
        return nullptr;
    ucnv_setFallback(converter.get(), true);
    return converter;
}

std::uint16_t encode_one(UConverter *converter, char16_t ch)
{
    char bytes[8];
    UErrorCode error = U_ZERO_ERROR;
    int const count = ucnv_fromUChars(converter, bytes, sizeof bytes, &ch, 1, &error);
    auto const byte = [&](int i) { return static_cast<unsigned char>(bytes[i]); };
    if (U_FAILURE(error) || count < 1 || count > 2)
        return 0;
    return static_cast<std::uint16_t>(count == 1 ? byte(0) : byte(0) << 8 | byte(1));
}

template <class Sink> void put_bytes(Sink &sink, std::uint16_t bytes)
{
    if (bytes > 0xFF)
        sink.put(static_cast<char>(bytes >> 8));
    sink.put(static_cast<char>(bytes & 0xFF));
}

// What `size` bytes decode to when they are one character below 10000; 0 otherwise.
char16_t decode_one(UConverter *converter, char const *bytes, int size, UErrorCode &error)
{
    UChar units[4];
    error = U_ZERO_ERROR;
    int const count = ucnv_toUChars(converter, units, 4, bytes, size, &error);
    return U_SUCCESS(error) && count == 1 ? units[0] : u'\0';
}

} // namespace

CodePageTable const *CodePageTable::get(CodePageEntry const &entry)
{
    static std::array<std::atomic<CodePageTable const *>, max_code_pages> s_tables;
    static std::mutex s_building;

    auto &slot = s_tables[get_code_page_index(entry)];
    if (auto const *const table = slot.load(std::memory_order_acquire))
        return table;
    std::lock_guard const lock(s_building);
    if (auto const *const table = slot.load(std::memory_order_relaxed))
        return table;
    ConverterPtr const converter = open_strict(entry.converter);
    if (!converter)
        return nullptr;
    auto const *const table = new CodePageTable(entry, converter.get());
    slot.store(table, std::memory_order_release);
    return table;
}

CodePageTable::CodePageTable(CodePageEntry const &entry, UConverter *converter)
    : m_question_mark(encode_one(converter, u'?'))
    , m_bytes(256, m_question_mark)
{
    read_single_bytes(converter);
    read_pairs(converter, entry.default_character);
    read_characters(converter);
    if (entry.base == PageBase::Ascii)
        keep_ascii();
    if (auto const *const corrections = find_corrections(entry.page))
        apply(*corrections);
    return_single_bytes();
}

void CodePageTable::read_single_bytes(UConverter *converter)
{
    std::uint8_t blocks = 0;
    for (unsigned byte = 0; byte < 256; ++byte) {
        char const ch = static_cast<char>(byte);
        UErrorCode error;
        m_single[byte] = decode_one(converter, &ch, 1, error);
        if (error == U_TRUNCATED_CHAR_FOUND)
            m_pairs[byte] = ++blocks;
        else if (U_FAILURE(error))
            m_single[byte] = static_cast<char16_t>(byte);
    }
    m_pair_blocks.resize(blocks * std::size_t { 256 });
}

void CodePageTable::read_pairs(UConverter *converter, char16_t default_character)
{
    for (unsigned lead = 0; lead < 256; ++lead) {
        if (m_pairs[lead] == 0)
            continue;
        m_single[lead] = default_character;
        for (unsigned trail = 0; trail < 256; ++trail) {
            char const pair[] = { static_cast<char>(lead), static_cast<char>(trail) };
            UErrorCode error;
            char16_t const ch = decode_one(converter, pair, 2, error);
            m_pair_blocks[(m_pairs[lead] - 1U) * 256 + trail] = ch != 0 ? ch : default_character;
        }
    }
}

void CodePageTable::read_characters(UConverter *converter)
{
    UErrorCode error = U_ZERO_ERROR;
    std::unique_ptr<USet, decltype(&uset_close)> const known(uset_openEmpty(), uset_close);
    ucnv_getUnicodeSet(converter, known.get(), UCNV_ROUNDTRIP_AND_FALLBACK_SET, &error);
    for (int range = 0; range < uset_getItemCount(known.get()); ++range) {
        UChar32 first;
        UChar32 last;
        uset_getItem(known.get(), range, &first, &last, nullptr, 0, &error);
        for (UChar32 ch = first; ch <= last && ch <= 0xFFFF; ++ch) {
            if (auto const bytes = encode_one(converter, static_cast<char16_t>(ch)))
                set_bytes(static_cast<char32_t>(ch), bytes);
        }
    }
    set_bytes(0, encode_one(converter, u'\0'));
}

// Some converters of the PC pages exchange the controls 1A, 1C and 7F.
void CodePageTable::keep_ascii()
{
    for (char16_t ch = 0; ch < 0x80; ++ch) {
        m_single[ch] = ch;
        set_bytes(ch, ch);
    }
}

void CodePageTable::apply(CodePageCorrections const &corrections)
{
    for (std::size_t i = 0; i + 1 < corrections.bytes.size(); i += 2)
        m_single[corrections.bytes[i]] = corrections.bytes[i + 1];
    return_single_bytes(); // substitutes may be among them
    for (std::size_t i = 0; i + 1 < corrections.substitutes.size(); i += 2)
        set_bytes(corrections.substitutes[i], get_bytes(corrections.substitutes[i + 1]));
}

// A character that some byte stands for is encoded as a byte that stands for it.
void CodePageTable::return_single_bytes()
{
    for (unsigned byte = 0; byte < 256; ++byte) {
        std::uint16_t const known = get_bytes(m_single[byte]);
        bool const comes_back = known > 0xFF || m_single[known] == m_single[byte];
        if (m_pairs[byte] == 0 && !comes_back)
            set_bytes(m_single[byte], static_cast<std::uint16_t>(byte));
    }
}

std::uint16_t CodePageTable::get_bytes(char32_t ch) const
{
    return m_bytes[m_blocks[ch >> 8] * std::size_t { 256 } + (ch & 0xFF)];
}

void CodePageTable::set_bytes(char32_t ch, std::uint16_t bytes)
{
    std::uint16_t &block = m_blocks[ch >> 8];
    if (block == 0) {
        block = static_cast<std::uint16_t>(m_bytes.size() / 256);
        m_bytes.resize(m_bytes.size() + 256, m_question_mark);
    }
    m_bytes[block * std::size_t { 256 } + (ch & 0xFF)] = bytes;
}

template <class Sink>
bool CodePageTable::decode(char const *source, std::size_t size, Sink &sink) const
{
    auto const *at = reinterpret_cast<unsigned char const *>(source);
    auto const *const end = at + size;
    while (at != end) {
        // A byte gives at most one character.
        std::size_t const batch = std::min(static_cast<std::size_t>(end - at), sink.get_room());
        if (batch == 0)
            return false;
        for (auto const *const stop = at + batch; at < stop;) {
            unsigned char const byte = *at++;
            char16_t ch = m_single[byte];
            if (m_pairs[byte] != 0 && at != end && *at != 0)
                ch = m_pair_blocks[(m_pairs[byte] - 1U) * 256 + *at++];
            sink.put(static_cast<wchar_t>(ch));
        }
    }
    return true;
}

template <class Sink>
bool CodePageTable::encode(wchar_t const *source, std::size_t length, Sink &sink) const
{
    // In locals, since for all the compiler knows the sink writes over the members.
    auto const *const blocks = m_blocks.data();
    auto const *const bytes = m_bytes.data();
    auto const two_marks = static_cast<std::uint16_t>(m_question_mark << 8 | m_question_mark);
    auto const get = [&](wchar_t wide) {
        auto const ch = static_cast<char32_t>(wide);
        if (ch > 0xFFFF) [[unlikely]] // two units elsewhere, and neither is in any page
            return ch <= last_character ? two_marks : m_question_mark;
        return bytes[blocks[ch >> 8] * std::size_t { 256 } + (ch & 0xFF)];
    };
    std::size_t i = 0;
    while (i < length) {
        // A character gives at most two bytes. Towards the end of the room batches get short.
        std::size_t const stop = i + std::min(length - i, sink.get_room() / 2);
        if (i == stop)
            break;
        for (; i < stop; ++i)
            put_bytes(sink, get(source[i]));
    }
    if (i == length)
        return true;
    // Less than two bytes of room.
    std::uint16_t const last = get(source[i]);
    if (i + 1 < length || last > 0xFF || !sink.has_room(1))
        return false;
    put_bytes(sink, last);
    return true;
}

long long CodePageTable::decode(
    char const *source, std::size_t size, wchar_t *target, std::size_t capacity) const
{
    if (!is_single_byte())
        return run_into_sink(
            target, capacity, [&](auto &sink) { return decode(source, size, sink); });
    if (!target)
        return static_cast<long long>(size);
    if (capacity < size)
        return -1;
    constexpr std::size_t block = 8; // few enough to be unrolled
    std::size_t i = 0;
    for (; size - i >= block; i += block) {
        unsigned char bytes[block];
        std::memcpy(bytes, source + i, block);
        for (std::size_t k = 0; k < block; ++k)
            target[i + k] = static_cast<wchar_t>(m_single[bytes[k]]);
    }
    for (; i < size; ++i)
        target[i] = static_cast<wchar_t>(m_single[static_cast<unsigned char>(source[i])]);
    return static_cast<long long>(size);
}

long long CodePageTable::encode(
    wchar_t const *source, std::size_t length, char *target, std::size_t capacity) const
{
    if (!target && is_single_byte())
        return static_cast<long long>(count_utf16_units(source, length));
    return run_into_sink(
        target, capacity, [&](auto &sink) { return encode(source, length, sink); });
}

} // namespace kortools::platform
