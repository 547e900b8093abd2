// SPDX-License-Identifier: MIT
// CExLCString: a text as a key without regard to case. It keeps the text lower-cased, by the
// runtime and the locale that is current when the key is made, and hashes as that wide string does.
//
//   CHashMap<CExLCString, CExLCString const &, int> kinds;
//   kinds.Insert(L"Cube.OBJ", 1);
//   kinds.Find(L"cube.obj"); // found
#pragma once

#include "kortools/core/hash_methods.h"
#include "kortools/core/xstring.h"

class KORTOOLS_API CExLCString {
public:
    CExLCString() = default;
    CExLCString(wchar_t const *text); // null is empty
    CExLCString(CXTString<wchar_t> text);

    CXTString<wchar_t> const &GetString() const { return m_text; } // lower-cased
    int GetLength() const { return m_text.GetLength(); }
    operator wchar_t const *() const { return m_text; }

    bool operator==(CExLCString const &other) const { return m_text == other.m_text; }
    bool operator==(wchar_t const *text) const { return *this == CExLCString(text); }

private:
    CXTString<wchar_t> m_text;
};

template <> inline constexpr bool kortools::core::is_trivially_relocatable<CExLCString> = true;

// Hashes and compares such keys.
template <> struct CHashMethods<CExLCString> {
    // Those of the text.
    using Text = CHashMethods<CXTString<wchar_t>>;

    static unsigned int GetFullHash(CExLCString const &key)
    {
        return Text::GetFullHash(key.GetString());
    }
    static unsigned int GetSearchHash(CExLCString const &key)
    {
        return Text::GetSearchHash(key.GetString());
    }
    static unsigned int GetHash(CExLCString const &key, unsigned int tableSize)
    {
        return Text::GetHash(key.GetString(), tableSize);
    }
    static bool IsEqual(CExLCString const &a, CExLCString const &b) { return a == b; }
};
