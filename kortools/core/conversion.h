// SPDX-License-Identifier: MIT
// Converters between character widths and encodings, for the duration of a call: each owns its
// result and frees it when it goes out of scope. A string that is to be kept is better built as a
// CXTString, which converts by itself.
//
// An encoding is a value of xStringEncoding or the number of a code page: -1 and 1 are the ANSI
// page, 2 is UTF-8, every other value is the page of that number. (So 3, "UTF-16" elsewhere, is
// the ANSI page here, and 4 does not exist.) What a page cannot map becomes the best fit or '?',
// malformed UTF-8 becomes U+FFFD; neither is a failure.
//
// Nothing throws, except CXMemoryException when memory is exhausted.
//
//   f(XCA2W(name, xEncodingUTF8));        // f(wchar_t const *)
//   XCW2A const bytes(text, 1252);
//   if (!bytes)
//       return false;                     // the page does not exist
#pragma once

#include "kortools/core/string_encoding.h"
#include "kortools/core/xstring.h"
#include "kortools/export.h"

#include <memory>
#include <string_view>

// Narrow to wide.
class KORTOOLS_API XCA2W {
public:
    explicit XCA2W(char const *text, xStringEncoding encoding = xEncodingDefault);
    XCA2W(char const *text, int encoding)
        : XCA2W(text, static_cast<xStringEncoding>(encoding))
    {
    }
    XCA2W(XCA2W const &) = delete;
    XCA2W &operator=(XCA2W const &) = delete;

    // Null when the input was null or the code page does not exist.
    operator wchar_t const *() const { return m_isConverted ? m_text.GetConstBuffer() : nullptr; }

    CXTString<wchar_t> const &GetText() const { return m_text; } // empty after a failure

private:
    bool m_isConverted; // set while m_text is made
    CXTString<wchar_t> m_text;
};

// Wide to narrow.
class KORTOOLS_API XCW2A {
public:
    explicit XCW2A(wchar_t const *text, xStringEncoding encoding = xEncodingDefault);
    XCW2A(wchar_t const *text, int encoding)
        : XCW2A(text, static_cast<xStringEncoding>(encoding))
    {
    }
    XCW2A(XCW2A const &) = delete;
    XCW2A &operator=(XCW2A const &) = delete;

    // Null when the input was null or the code page does not exist.
    operator char const *() const { return m_isConverted ? m_text.GetConstBuffer() : nullptr; }

    CXTString<char> const &GetText() const { return m_text; } // empty after a failure

private:
    bool m_isConverted; // set while m_text is made
    CXTString<char> m_text;
};

// Narrow to narrow and wide to wide: the input itself, so that a template can be written once for
// both widths. The input must outlive the converter.
//
// There is no conversion between narrow encodings: XCA2A gives its input for every encoding. Text
// of another code page goes through XCA2W and XCW2A.
class XCA2A {
public:
    explicit XCA2A(char const *text, xStringEncoding = xEncodingDefault)
        : m_text(text)
    {
    }
    XCA2A(char const *text, int)
        : m_text(text)
    {
    }
    XCA2A(XCA2A const &) = delete;
    XCA2A &operator=(XCA2A const &) = delete;

    operator char const *() const { return m_text; }

private:
    char const *m_text;
};

class XCW2W {
public:
    explicit XCW2W(wchar_t const *text, xStringEncoding = xEncodingDefault)
        : m_text(text)
    {
    }
    XCW2W(wchar_t const *text, int)
        : m_text(text)
    {
    }
    XCW2W(XCW2W const &) = delete;
    XCW2W &operator=(XCW2W const &) = delete;

    operator wchar_t const *() const { return m_text; }

private:
    wchar_t const *m_text;
};

namespace kortools::core {

// An automation string (BSTR): a block of UTF-16 with its size in bytes in front. On Windows it is
// one of the system's, and its units are wide characters.
class KORTOOLS_API AutomationString {
public:
    explicit AutomationString(wchar_t const *text); // a null block for null
    ~AutomationString();
    AutomationString(AutomationString const &) = delete;
    AutomationString &operator=(AutomationString const &) = delete;

    // The block, owned by this object; null when there is none.
    char16_t *GetBSTR() const { return m_block; }
    unsigned int GetLength() const; // in UTF-16 units

    // The block's text as wide text: on Windows the block itself; on Linux a copy, so that writing
    // into it does not change the block. Null when there is no block.
    operator wchar_t *() const;

private:
    char16_t *m_block;
    std::unique_ptr<wchar_t[]> m_wide; // the copy; null on Windows
};

} // namespace kortools::core

// Narrow text of the ANSI page to an automation string; null for null.
class KORTOOLS_API XCA2BSTR : public kortools::core::AutomationString {
public:
    explicit XCA2BSTR(char const *text);
};

// Wide text to an automation string; null for null.
class KORTOOLS_API XCW2BSTR : public kortools::core::AutomationString {
public:
    explicit XCW2BSTR(wchar_t const *text)
        : AutomationString(text)
    {
    }
};

// UTF-8, ended by a zero, to UTF-16. Only the bit patterns count: overlong forms and encoded
// surrogates pass, sequences of four bytes do not.
//
//   target null  =>  the number of bytes, an upper bound of the units; 0 when a sequence is bad
//   otherwise    =>  the number of units written, the closing zero included; 0 at a bad sequence,
//                    with the units before it written but no zero
//
// A null source gives 0.
KORTOOLS_API int xUTF8ToUTF16(unsigned char const *source, unsigned short *target);

// `count` UTF-16 units to 32-bit values; returns the number of values, at most `count`.
//
//   a unit that is no high surrogate  =>  itself, low surrogates included
//   high and low surrogate            =>  their twenty bits, without 10000 added
//   high surrogate and anything else  =>  nothing for both
//
// The missing 10000 is part of stored data: D83D DE00 gives F600. A high surrogate at the end of
// the range is paired with the unit behind it, which must be readable.
KORTOOLS_API unsigned long long xUTF16ToUTF32(
    unsigned short const *source, unsigned long long count, unsigned int *target);

// Reverses the order of the `size` bytes of a block.
KORTOOLS_API void ReverseBuffer(void *block, int size);

namespace kortools::core {

// The code page that the converters take for an encoding.
constexpr unsigned int get_code_page(xStringEncoding encoding)
{
    if (encoding == xEncodingDefault || encoding == xEncodingANSI)
        return 0;
    return encoding == xEncodingUTF8 ? 65001 : static_cast<unsigned int>(encoding);
}

// Convert text that may contain zeros. False, with an empty result, when the page does not exist.
KORTOOLS_API bool convert_text(
    std::string_view text, xStringEncoding encoding, CXTString<wchar_t> &result);
KORTOOLS_API bool convert_text(
    std::wstring_view text, xStringEncoding encoding, CXTString<char> &result);

} // namespace kortools::core
