// SPDX-License-Identifier: MIT
#include "kortools/archive/text_encoding.h"

#include "kortools/core/utf16.h"
#include "kortools/platform/code_pages.h"
#include "kortools/platform/utf8.h"

#include <algorithm>
#include <cstring>

namespace kortools::archive {
namespace {

using platform::load_utf16_unit;

bool is_wide(xTextEncoding encoding)
{
    return encoding == xTextUTF16 || encoding == xTextUTF16BigEndian;
}

void swap_units(char *units, std::size_t size)
{
    for (std::size_t i = 0; i + 1 < size; i += 2)
        std::swap(units[i], units[i + 1]);
}

char16_t load_unit(xTextEncoding encoding, std::string_view bytes, std::size_t at)
{
    char16_t const unit = load_utf16_unit(bytes.data() + at, 0);
    return encoding == xTextUTF16 ? unit : static_cast<char16_t>(unit << 8 | unit >> 8);
}

// `target` has room for a character for each byte.
std::size_t decode_utf16(std::string_view bytes, wchar_t *target)
{
    std::size_t const length = platform::copy_from_utf16(bytes.data(), bytes.size() / 2, target);
    if (bytes.size() % 2 == 0)
        return length;
    target[length] = static_cast<wchar_t>(platform::replacement_character);
    return length + 1;
}

std::size_t decode_swapped(std::string_view bytes, wchar_t *target)
{
    CXTCharArray<char> swapped(bytes.data(), static_cast<long long>(bytes.size()));
    swap_units(swapped.GetData(), bytes.size());
    return decode_utf16(swapped.GetView(), target);
}

// Some pages have bytes that are two characters.
void decode_page(unsigned int page, std::string_view bytes, CXTCharArray<wchar_t> &text)
{
    auto const size = static_cast<long long>(bytes.size());
    long long length
        = platform::narrow_to_wide(page, bytes.data(), size, text.GetData(), text.GetLength());
    if (length < 0) {
        text.SetLength(platform::narrow_to_wide(page, bytes.data(), size, nullptr, 0));
        length
            = platform::narrow_to_wide(page, bytes.data(), size, text.GetData(), text.GetLength());
    }
    text.SetLength(length);
}

// A sequence has at most three bytes behind its first one: what has more is not part of one.
std::size_t cut_utf8(std::string_view bytes, std::size_t limit)
{
    for (std::size_t at = limit; at > 0 && limit - at < 4; --at) {
        if ((static_cast<unsigned char>(bytes[at]) & 0xC0) != 0x80)
            return at;
    }
    return limit;
}

std::size_t cut_utf16(xTextEncoding encoding, std::string_view bytes, std::size_t limit)
{
    std::size_t const at = limit & ~std::size_t { 1 };
    if (at < 2 || bytes.size() - at < 2)
        return at;
    bool const is_pair = platform::is_high_surrogate(load_unit(encoding, bytes, at - 2))
        && platform::is_low_surrogate(load_unit(encoding, bytes, at));
    return is_pair ? at - 2 : at;
}

// Which byte starts a character can only be told from the beginning of the text: the two parts of a
// good cut have the characters of the whole.
bool is_cut(TextFormat const &format, std::string_view bytes, std::size_t at)
{
    constexpr std::size_t longest = 4; // bytes of a character
    CXTString<wchar_t> whole;
    CXTString<wchar_t> first;
    CXTString<wchar_t> second;
    decode_text(format, bytes.substr(0, at + longest), whole);
    decode_text(format, bytes.substr(0, at), first);
    decode_text(format, bytes.substr(at, longest), second);
    return whole == first + second;
}

std::size_t cut_page(TextFormat const &format, std::string_view bytes, std::size_t limit)
{
    for (std::size_t at = limit; at > 0 && limit - at < 4; --at) {
        if (is_cut(format, bytes, at))
            return at;
    }
    return 0;
}

// Nearly: the length of a beginning that ends inside a character may differ by a few.
std::size_t find_longest_beginning(
    TextFormat const &format, std::string_view bytes, int room, CXTString<wchar_t> &scratch)
{
    std::size_t low = 0;
    std::size_t high = bytes.size();
    while (low < high) {
        std::size_t const middle = (low + high + 1) / 2;
        decode_text(format, bytes.substr(0, middle), scratch);
        if (scratch.GetLength() <= room)
            low = middle;
        else
            high = middle - 1;
    }
    return low;
}

} // namespace

std::string_view get_text_mark(xTextEncoding encoding)
{
    switch (encoding) {
    case xTextUTF8:
        return "\xEF\xBB\xBF";
    case xTextUTF16:
        return "\xFF\xFE";
    case xTextUTF16BigEndian:
        return "\xFE\xFF";
    default:
        return {};
    }
}

xTextEncoding find_text_mark(std::string_view bytes)
{
    for (xTextEncoding const encoding : { xTextUTF8, xTextUTF16, xTextUTF16BigEndian }) {
        if (bytes.starts_with(get_text_mark(encoding)))
            return encoding;
    }
    return xTextANSI;
}

std::size_t get_unit_size(xTextEncoding encoding)
{
    return is_wide(encoding) ? 2 : 1;
}

std::size_t find_line_feed(xTextEncoding encoding, std::string_view bytes, std::size_t start)
{
    if (!is_wide(encoding))
        return bytes.find('\n', start);
    std::size_t const odd = encoding == xTextUTF16BigEndian ? 1 : 0;
    for (std::size_t at = start; (at = bytes.find('\n', at)) != std::string_view::npos; ++at) {
        std::size_t const unit = at - odd;
        if (at % 2 == odd && bytes.size() - unit >= 2 && bytes[at ^ 1] == 0)
            return unit;
    }
    return std::string_view::npos;
}

bool ends_with_return(xTextEncoding encoding, std::string_view bytes)
{
    if (!is_wide(encoding))
        return bytes.ends_with('\r');
    return bytes.size() >= 2 && bytes.size() % 2 == 0
        && load_unit(encoding, bytes, bytes.size() - 2) == u'\r';
}

void decode_text(TextFormat const &format, std::string_view bytes, CXTString<wchar_t> &text)
{
    CXTCharArray<wchar_t> &characters = text;
    characters.SetLength(static_cast<long long>(bytes.size()));
    switch (format.encoding) {
    case xTextUTF16:
        characters.SetLength(static_cast<long long>(decode_utf16(bytes, characters.GetData())));
        break;
    case xTextUTF16BigEndian:
        characters.SetLength(static_cast<long long>(decode_swapped(bytes, characters.GetData())));
        break;
    case xTextUTF8:
        decode_page(platform::utf8_code_page, bytes, characters);
        break;
    default:
        decode_page(format.page, bytes, characters);
        break;
    }
}

std::size_t encode_text(TextFormat const &format, std::wstring_view text, char *target)
{
    auto const length = static_cast<long long>(text.size());
    auto const room = static_cast<long long>(text.size() * max_character_size);
    std::size_t size = 0;
    switch (format.encoding) {
    case xTextUTF16:
    case xTextUTF16BigEndian:
        size = platform::copy_to_utf16(text.data(), text.size(), target) * 2;
        if (format.encoding == xTextUTF16BigEndian)
            swap_units(target, size);
        return size;
    default: {
        unsigned int const page
            = format.encoding == xTextUTF8 ? platform::utf8_code_page : format.page;
        long long const done = platform::wide_to_narrow(page, text.data(), length, target, room);
        return static_cast<std::size_t>(std::max(0LL, done));
    }
    }
}

std::size_t find_cut(TextFormat const &format, std::string_view bytes, std::size_t limit)
{
    if (limit >= bytes.size())
        return bytes.size();
    switch (format.encoding) {
    case xTextUTF8:
        return cut_utf8(bytes, limit);
    case xTextUTF16:
    case xTextUTF16BigEndian:
        return cut_utf16(format.encoding, bytes, limit);
    default:
        return cut_page(format, bytes, limit);
    }
}

std::size_t decode_part(
    TextFormat const &format, std::string_view bytes, int room, CXTString<wchar_t> &text)
{
    decode_text(format, bytes, text);
    if (text.GetLength() <= room)
        return bytes.size();
    std::size_t const longest = find_longest_beginning(format, bytes, room, text);
    std::size_t cut = find_cut(format, bytes, longest);
    for (std::size_t at = longest + 1; cut == 0; ++at)
        cut = find_cut(format, bytes, at);
    decode_text(format, bytes.substr(0, cut), text);
    if (text.GetLength() > room)
        text.ReleaseBuffer(room);
    return cut;
}

} // namespace kortools::archive
