// SPDX-License-Identifier: MIT
#include "kortools/platform/posix/path_text.h"

#include "kortools/platform/os_error.h"
#include "kortools/platform/utf8_character.h"

namespace kortools::platform {
namespace {

constexpr unsigned int error_invalid_name = 123;

constexpr char32_t escape_base = 0xDC00; // plus the byte that is escaped

bool is_escape(char32_t ch)
{
    return (ch >= escape_base + 0x80 && ch <= escape_base + 0xFF) || ch == escape_base + '\\'
        || ch == escape_base + ':';
}

bool is_letter(char ch)
{
    return (ch >= 'A' && ch <= 'Z') || (ch >= 'a' && ch <= 'z');
}

struct Sequence {
    char32_t ch;
    std::size_t size; // bytes; 0 when malformed
};

// The first code point of `bytes`, which are not empty; surrogates count as code points.
Sequence read_sequence(std::string_view bytes)
{
    static constexpr char32_t smallest[] = { 0, 0, 0x80, 0x800, 0x10000 }; // by size
    auto const lead = static_cast<unsigned char>(bytes[0]);
    if (lead < 0x80)
        return { lead, 1 };
    std::size_t const size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < size)
        return { 0, 0 };
    char32_t ch = lead & (0x7FU >> size);
    for (std::size_t i = 1; i < size; ++i) {
        auto const tail = static_cast<unsigned char>(bytes[i]);
        if ((tail & 0xC0) != 0x80)
            return { 0, 0 };
        ch = (ch << 6) | (tail & 0x3FU);
    }
    if (ch < smallest[size] || ch > 0x10FFFF)
        return { 0, 0 };
    return { ch, size };
}

} // namespace

bool encode_path_text(std::wstring_view text, std::string &native)
{
    native.reserve(native.size() + text.size());
    char bytes[256];
    std::size_t count = 0;
    for (wchar_t const wide : text) {
        auto const ch = static_cast<char32_t>(wide);
        if (ch == 0 || ch > 0x10FFFF) {
            set_last_os_error(error_invalid_name);
            return false;
        }
        if (count > sizeof bytes - 4) {
            native.append(bytes, count);
            count = 0;
        }
        if (ch == U'\\')
            bytes[count++] = '/';
        else if (is_escape(ch))
            bytes[count++] = static_cast<char>(ch - escape_base);
        else
            count += encode_utf8_character(ch, bytes + count);
    }
    native.append(bytes, count);
    return true;
}

std::wstring decode_path_text(std::string_view native)
{
    std::wstring text;
    text.reserve(native.size());
    while (!native.empty()) {
        Sequence const sequence = read_sequence(native);
        bool const looks_like_drive
            = text.size() == 1 && native[0] == ':' && text[0] < 0x80 && is_letter(char(text[0]));
        if (sequence.size == 0 || native[0] == '\\' || looks_like_drive || is_escape(sequence.ch)) {
            text += static_cast<wchar_t>(escape_base + static_cast<unsigned char>(native[0]));
            native.remove_prefix(1);
        } else {
            text += sequence.ch == U'/' ? L'\\' : static_cast<wchar_t>(sequence.ch);
            native.remove_prefix(sequence.size);
        }
    }
    return text;
}

} // namespace kortools::platform
