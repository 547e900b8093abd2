// SPDX-License-Identifier: MIT
#include "kortools/text/clean_text.h"

#include "kortools/platform/text_compare.h"

#include <string_view>

namespace {

using View = std::wstring_view;

// The letter without its accent; other characters as they are.
constexpr unsigned int plain_letter(unsigned int ch)
{
    // clang-format off
    switch (ch) {
    case 0xC1: case 0xC2: case 0xC3: case 0xC4: case 0xC5: // not 0xC0
        return 'A';
    case 0xC7:
        return 'C';
    case 0xC8: case 0xC9: // not 0xCA, 0xCB
        return 'E';
    case 0xE0: case 0xE1: case 0xE2: case 0xE3: case 0xE4: case 0xE5:
        return 'a';
    case 0xE7:
        return 'c';
    case 0xE8: case 0xE9: case 0xEA: case 0xEB:
        return 'e';
    case 0xEC: case 0xED: case 0xEE: case 0xEF:
        return 'i';
    case 0xF1:
        return 'n';
    case 0xF2: case 0xF3: case 0xF4: case 0xF5: case 0xF8: // not 0xF6
        return 'o';
    case 0xF9: case 0xFA: case 0xFB: case 0xFC:
        return 'u';
    case 0x161:
        return 's';
    default:
        return ch;
    }
    // clang-format on
}

template <class Code, class T> void remove_diacritics(CXTString<T> &text)
{
    int const length = text.GetLength();
    T *const characters = text.GetBuffer(length);
    for (int i = 0; i < length; ++i)
        characters[i] = static_cast<T>(plain_letter(static_cast<Code>(characters[i])));
    text.ReleaseBuffer();
}

} // namespace

CXTString<wchar_t> CleanText(CXTString<wchar_t> const &text)
{
    CXTString<wchar_t> cleaned = text;
    cleaned.Remove(L'&');
    return cleaned;
}

void CapitalizeText(CXTString<wchar_t> &text)
{
    text.MakeLower();
    text.SetAt(0, kortools::platform::to_upper(text.GetAt(0)));
}

CXTString<wchar_t> LowerCaseString(CXTString<wchar_t> const &text)
{
    CXTString<wchar_t> lowered = text;
    lowered.MakeLower();
    return lowered;
}

void RemoveDiacritics(CXTString<wchar_t> &text)
{
    remove_diacritics<unsigned int>(text);
}

void RemoveDiacritics(CXTString<char> &text)
{
    remove_diacritics<unsigned char>(text);
}

CXTString<wchar_t> CleanEnhancedText(CXTString<wchar_t> const &text)
{
    CXTString<wchar_t> cleaned;
    View rest = text.GetView();
    for (;;) {
        std::size_t const begin = rest.find(L'<');
        std::size_t const end = begin == View::npos ? View::npos : rest.find(L'>', begin);
        if (end == View::npos)
            break;
        cleaned += rest.substr(0, begin);
        rest.remove_prefix(end + 1);
    }
    cleaned += rest;
    return cleaned;
}
