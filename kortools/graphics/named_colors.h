// SPDX-License-Identifier: MIT
// CXNamedColors: a colour given as text: by components, as hexadecimal number or by name. A plain
// value.
//
//   AliceBlue      =>  (0xF0, 0xF8, 0xFF); names are those of web pages, whatever their case
//   #F0F8FF        =>  the same
//   10, 20, 30     =>  (10, 20, 20): blue always takes the second number
//   red            =>  a lighter red while the theme is dark; so with green and blue
//   #FFF, unknown  =>  black
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

namespace kortools::graphics {

enum class Theme { Light, Dark };

// The application's theme, light at first. Any thread may ask and tell.
KORTOOLS_API void set_theme(Theme theme);
KORTOOLS_API Theme get_theme();

} // namespace kortools::graphics

class KORTOOLS_API CXNamedColors {
public:
    CXNamedColors() = default; // black

    // The window system's colour word: red in the low byte, then green and blue.
    CXNamedColors(unsigned long colorWord)
        : m_word(colorWord & 0xFFFFFF)
    {
    }

    // A text with a comma is a list of decimal components, of which the low 8 bits count. One with
    // a # is 7 characters long, six hexadecimal digits behind the #. Else it is a name, in either
    // spelling of the greys.
    CXNamedColors(CXTString<wchar_t> const &text);
    CXNamedColors(wchar_t const *text)
        : CXNamedColors(CXTString<wchar_t>(text))
    {
    }

    unsigned long GetColor() const { return m_word; } // red | green << 8 | blue << 16
    operator unsigned long() const { return m_word; }

    // "#" and the components in hexadecimal, blue first: the reverse of how such a text is read.
    //
    //   CXNamedColors(L"#112233").GetHexString()  =>  #332211
    CXTString<wchar_t> GetHexString() const;

private:
    unsigned long m_word = 0;
};
