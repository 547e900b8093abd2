// SPDX-License-Identifier: MIT
#include "kortools/platform/posix/icu_converter.h"

#include "kortools/platform/text_sink.h"

#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <memory>

namespace kortools::platform {
namespace {

constexpr int chunk_size = 512; // UTF-16 units

// One default character for each malformed or unassigned sequence.
void put_default_character(void const *context, UConverterToUnicodeArgs *args, char const *,
    int32_t, UConverterCallbackReason reason, UErrorCode *error)
{
    if (reason > UCNV_IRREGULAR)
        return; // a reset, a clone or the end
    *error = U_ZERO_ERROR;
    UChar const ch = static_cast<CodePageEntry const *>(context)->default_character;
    ucnv_cbToUWriteUChars(args, &ch, 1, 0, error);
}

// One '?' for each UTF-16 unit of a character that the page does not have.
void put_question_marks(void const *, UConverterFromUnicodeArgs *args, UChar const *,
    int32_t length, UChar32, UConverterCallbackReason reason, UErrorCode *error)
{
    if (reason > UCNV_IRREGULAR)
        return;
    *error = U_ZERO_ERROR;
    static constexpr UChar marks[] = u"??";
    UChar const *at = marks;
    ucnv_cbFromUWriteUChars(args, &at, marks + (length < 2 ? 1 : 2), 0, error);
}

struct CloseConverter {
    void operator()(UConverter *converter) const { ucnv_close(converter); }
};

// The calling thread's converter for `entry`, in its initial state; null when there is none.
UConverter *get_converter(CodePageEntry const &entry)
{
    thread_local std::unique_ptr<UConverter, CloseConverter> t_converter;
    thread_local CodePageEntry const *t_entry = nullptr;
    if (t_entry != &entry) {
        UErrorCode error = U_ZERO_ERROR;
        t_entry = nullptr;
        t_converter.reset(ucnv_open(entry.converter, &error));
        ucnv_setToUCallBack(
            t_converter.get(), put_default_character, &entry, nullptr, nullptr, &error);
        ucnv_setFromUCallBack(
            t_converter.get(), put_question_marks, nullptr, nullptr, nullptr, &error);
        if (U_FAILURE(error))
            return nullptr;
        ucnv_setFallback(t_converter.get(), true);
        t_entry = &entry;
    }
    ucnv_reset(t_converter.get());
    return t_converter.get();
}

// Joins surrogate pairs on their way to wide text, also when they come in two chunks. put() and
// finish() are false when there is no room.
template <class Sink> class PairJoiner {
public:
    explicit PairJoiner(Sink &sink)
        : m_sink(sink)
    {
    }
    bool put(UChar unit)
    {
        UChar const high = m_high;
        m_high = 0;
        if (high != 0 && U16_IS_TRAIL(unit))
            return put_character(U16_GET_SUPPLEMENTARY(high, unit));
        if (high != 0 && !put_character(high))
            return false;
        if (!U16_IS_LEAD(unit))
            return put_character(unit);
        m_high = unit;
        return true;
    }
    bool finish() { return m_high == 0 || put_character(m_high); }

private:
    bool put_character(UChar32 ch)
    {
        if (!m_sink.has_room(1))
            return false;
        m_sink.put(static_cast<wchar_t>(ch));
        return true;
    }

    Sink &m_sink;
    UChar m_high = 0; // a high surrogate that waits for its partner
};

template <class Sink> bool decode(UConverter *converter, char const *source, int size, Sink &sink)
{
    PairJoiner<Sink> joiner(sink);
    char const *const end = source + size;
    UErrorCode error = U_BUFFER_OVERFLOW_ERROR;
    while (error == U_BUFFER_OVERFLOW_ERROR) {
        UChar chunk[chunk_size];
        UChar *chunk_end = chunk;
        error = U_ZERO_ERROR;
        ucnv_toUnicode(
            converter, &chunk_end, chunk + chunk_size, &source, end, nullptr, true, &error);
        for (UChar const *unit = chunk; unit != chunk_end; ++unit) {
            // The converter has filled the chunk up to its end, which the analyzer cannot see.
            if (!joiner.put(*unit)) // NOLINT(clang-analyzer-core.CallAndMessage)
                return false;
        }
    }
    return U_SUCCESS(error) && joiner.finish();
}

// Feeds the converter with chunks of UTF-16 made from the wide text.
template <class Sink>
bool encode(UConverter *converter, wchar_t const *source, int length, Sink &sink)
{
    int done = 0;
    while (done < length) {
        UChar chunk[chunk_size];
        int32_t count = 0;
        for (; done < length && count + 2 <= chunk_size; ++done) {
            auto const ch = static_cast<UChar32>(source[done]);
            if (ch < 0 || ch > 0x10FFFF)
                chunk[count++] = 0xFFFD;
            else
                U16_APPEND_UNSAFE(chunk, count, ch);
        }
        UChar const *at = chunk;
        UErrorCode error = U_BUFFER_OVERFLOW_ERROR;
        while (error == U_BUFFER_OVERFLOW_ERROR) {
            char bytes[chunk_size];
            char *bytes_end = bytes;
            error = U_ZERO_ERROR;
            ucnv_fromUnicode(converter, &bytes_end, bytes + chunk_size, &at, chunk + count, nullptr,
                done == length, &error);
            if (!sink.has_room(static_cast<std::size_t>(bytes_end - bytes)))
                return false;
            std::for_each(bytes, bytes_end, [&](char byte) { sink.put(byte); });
        }
        if (U_FAILURE(error))
            return false;
    }
    return true;
}

} // namespace

long long decode_with_converter(
    CodePageEntry const &entry, char const *source, int size, wchar_t *target, int capacity)
{
    UConverter *const converter = get_converter(entry);
    if (!converter)
        return -1;
    return run_into_sink(target, static_cast<std::size_t>(capacity),
        [&](auto &sink) { return decode(converter, source, size, sink); });
}

long long encode_with_converter(
    CodePageEntry const &entry, wchar_t const *source, int length, char *target, int capacity)
{
    UConverter *const converter = get_converter(entry);
    if (!converter)
        return -1;
    return run_into_sink(target, static_cast<std::size_t>(capacity),
        [&](auto &sink) { return encode(converter, source, length, sink); });
}

} // namespace kortools::platform
