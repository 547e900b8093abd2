// SPDX-License-Identifier: MIT
// Texts without what does not belong to their words: mnemonics, markup, accents, capitals.
#pragma once

#include "kortools/core/xstring.h"
#include "kortools/export.h"

// A copy without any "&", the mark of a menu's mnemonic.
KORTOOLS_API CXTString<wchar_t> CleanText(CXTString<wchar_t> const &text);

// The first character as a capital, all others in small letters, as the C runtime's current locale
// has them.
KORTOOLS_API void CapitalizeText(CXTString<wchar_t> &text);

// A copy in small letters.
KORTOOLS_API CXTString<wchar_t> LowerCaseString(CXTString<wchar_t> const &text);

// Accented letters without their accents, in place: what names in French, Spanish and their like
// need. Stored names depend on the choice, so it stays as narrow as it is:
//
//   Ça été  =>  Ca ete        À Ê Ë Ö Ñ ö  =>  unchanged
//
// Of narrow text each byte counts as the character of that number, whatever the code page. The text
// then ends at its first zero.
KORTOOLS_API void RemoveDiacritics(CXTString<wchar_t> &text);
KORTOOLS_API void RemoveDiacritics(CXTString<char> &text);

// A copy without markup, which goes from each "<" to the next ">". A "<" without one is text.
//
//   a<b>c</b> > d  =>  ac > d        a<b>c<d  =>  ac<d
KORTOOLS_API CXTString<wchar_t> CleanEnhancedText(CXTString<wchar_t> const &text);
