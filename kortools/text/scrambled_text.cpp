// SPDX-License-Identifier: MIT
#include "kortools/text/scrambled_text.h"

namespace {

// Shifts the characters by 3, 4, 5, 3, ..., up (sign 1) or down (-1).
CXTString<wchar_t> shifted(CXTString<wchar_t> text, int sign)
{
    for (int i = 0; i < text.GetLength(); ++i) {
        auto const shift = static_cast<unsigned int>(sign * (3 + i % 3));
        text.SetAt(i, static_cast<wchar_t>((static_cast<unsigned int>(text[i]) + shift) & 0xFF));
    }
    return text;
}

} // namespace

CXTString<wchar_t> CText(CXTString<wchar_t> const &text)
{
    return shifted(text, 1);
}

CXTString<wchar_t> DText(CXTString<wchar_t> const &text)
{
    return shifted(text, -1);
}
