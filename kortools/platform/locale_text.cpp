// SPDX-License-Identifier: MIT
#include "kortools/platform/locale_text.h"

#include <cctype>
#include <clocale>
#include <cstring>
#include <cwctype>

namespace kortools::platform {

bool is_c_locale(int category)
{
    char const *const name = std::setlocale(category, nullptr);
    return !name || std::strcmp(name, "C") == 0 || std::strcmp(name, "POSIX") == 0;
}

NarrowReader::NarrowReader(char const *text, char const *end)
    : m_text(text)
    , m_end(end)
    , m_is_c_locale(is_c_locale(LC_CTYPE))
{
}

int NarrowReader::next(wchar_t *result)
{
    if (is_at_end())
        return 0;
    if (m_is_c_locale) {
        *result = static_cast<unsigned char>(*m_text++);
        return 1;
    }
    // One byte at a time, so that no byte behind the character is touched.
    while (!is_at_end()) {
        std::size_t const size = std::mbrtowc(result, m_text++, 1, &m_state);
        if (size == static_cast<std::size_t>(-1))
            return -1;
        if (size != static_cast<std::size_t>(-2))
            return 1;
    }
    return -1;
}

WideReader::WideReader(wchar_t const *text, wchar_t const *end)
    : m_text(text)
    , m_end(end)
    , m_is_c_locale(is_c_locale(LC_CTYPE))
{
}

int WideReader::next(char *result)
{
    if (m_text == m_end || !*m_text)
        return 0;
    wchar_t const ch = *m_text++;
    if (m_is_c_locale) {
        *result = static_cast<char>(ch);
        return static_cast<unsigned long>(ch) <= 0xFF ? 1 : -1;
    }
    std::size_t const size = std::wcrtomb(result, ch, &m_state);
    return size == static_cast<std::size_t>(-1) ? -1 : static_cast<int>(size);
}

bool is_space(char ch)
{
    return std::isspace(static_cast<unsigned char>(ch)) != 0;
}

bool is_space(wchar_t ch)
{
    auto const code = static_cast<std::wint_t>(ch);
    if (code < 0x80)
        return code == ' ' || (code >= '\t' && code <= '\r');
    return !is_c_locale(LC_CTYPE) && std::iswspace(code) != 0;
}

int get_decimal_point(char (&point)[max_converted_length])
{
    point[0] = '.';
    if (is_c_locale(LC_NUMERIC))
        return 1;
    char const *const text = std::localeconv()->decimal_point;
    std::size_t const size = std::strlen(text);
    if (size == 0 || size > max_converted_length)
        return 1;
    std::memcpy(point, text, size);
    return static_cast<int>(size);
}

int get_decimal_point(wchar_t (&point)[max_converted_length])
{
    char bytes[max_converted_length + 1] = {};
    char(&text)[max_converted_length] = reinterpret_cast<char(&)[max_converted_length]>(bytes);
    get_decimal_point(text);
    NarrowReader reader(bytes);
    if (reader.next(point) != 1)
        point[0] = L'.';
    return 1;
}

} // namespace kortools::platform
