// SPDX-License-Identifier: MIT
// CXTString<T>: the string of every interface of the library, CXTString<wchar_t> for texts, paths
// and keys, CXTString<char> for bytes and rich text.
//
// A value: each string owns one block (see CXTCharArray for how it grows) and nothing is shared.
// Used by one thread at a time. Exported for char and wchar_t.
//
// Positions and lengths are `int`, in characters; a text of more than INT_MAX characters throws
// CXMemoryException, as does exhausted memory, and the string then has its old value. Nothing else
// throws: reads outside the text give 0 or an empty string, writes there do nothing, and what is
// not found is at -1. A string may contain zeros; a `T const *` argument ends at its first zero and
// may point into the string itself. A null pointer is an empty text unless said otherwise.
//
// Narrow text is in the ANSI code page of the process. Text of the other width is converted when a
// string is built from it, assigned or appended; what the code page cannot convert at all gives an
// empty text.
//
//   CXTString<wchar_t> path = L"C:\\scenes";
//   path += L'\\';
//   path += narrowName;
//   int const dot = path.ReverseFind(L'.');
//   if (path.Mid(dot + 1).CompareNoCase(L"kor") == 0)
//       message.Format(L"%s has %d characters", path.GetConstBuffer(), path.GetLength());
#pragma once

#include "kortools/core/char_array.h"
#include "kortools/core/relocate.h"
#include "kortools/core/string_encoding.h"
#include "kortools/core/text_source.h"
#include "kortools/export.h"

#include <climits>
#include <compare>
#include <concepts>
#include <cstdarg>
#include <cstddef>
#include <cstring>
#include <iosfwd>
#include <string_view>
#include <utility>

// The resource function of that name is a macro; both names it may stand for exist below.
#pragma push_macro("LoadString")
#undef LoadString

template <class T> class KORTOOLS_API CXTString {
public:
    using Other = kortools::core::other_char_t<T>; // the other width
    using View = std::basic_string_view<T>;        // of the same width

    CXTString() = default; // owns a block of 16 characters
    CXTString(CXTString const &) = default;
    CXTString(CXTString &&) noexcept = default; // the source becomes empty, with a new block
    CXTString(std::nullptr_t)
        : CXTString()
    {
    }
    CXTString(T const *text);
    CXTString(T const *text, int length); // the first `length` characters, zeros included
    explicit CXTString(kortools::core::NoBlock none) noexcept // empty, like a detached one
        : m_text(none)
    {
    }
    explicit CXTString(T ch, int count = 1);
    CXTString(Other const *text);
    CXTString(CXTString<Other> const &text);
    CXTString(unsigned char const *text); // narrow text
    template <kortools::core::ForeignText<T> S>
    CXTString(S const &text)
        : CXTString(kortools::core::view_of<T>(text), View())
    {
    }
    template <kortools::core::OtherForeignText<T> S>
    CXTString(S const &text)
        : m_text(Converted(kortools::core::view_of<Other>(text)))
    {
    }
    ~CXTString() = default;

    CXTString &operator=(CXTString const &) = default;
    CXTString &operator=(CXTString &&) noexcept = default; // swaps the blocks, empties the source
    CXTString &operator=(std::nullptr_t);
    CXTString &operator=(T const *text);
    CXTString &operator=(T ch);
    CXTString &operator=(Other const *text);
    CXTString &operator=(CXTString<Other> const &text);
    CXTString &operator=(unsigned char const *text);
    template <kortools::core::ForeignText<T> S> CXTString &operator=(S const &text)
    {
        return AssignText(kortools::core::view_of<T>(text));
    }
    template <kortools::core::OtherForeignText<T> S> CXTString &operator=(S const &text)
    {
        return ReplaceTail(0, kortools::core::view_of<Other>(text));
    }

    CXTString &operator+=(CXTString const &text) { return AppendText(text.GetView()); }
    CXTString &operator+=(std::nullptr_t) { return *this; }
    CXTString &operator+=(T const *text);
    CXTString &operator+=(T ch)
    {
        long long const length = m_text.GetLength();
        m_text.SetLength(length + 1);
        m_text[length] = ch;
        return *this;
    }
    CXTString &operator+=(Other const *text);
    CXTString &operator+=(CXTString<Other> const &text);
    CXTString &operator+=(unsigned char const *text);
    template <kortools::core::ForeignText<T> S> CXTString &operator+=(S const &text)
    {
        return AppendText(kortools::core::view_of<T>(text));
    }
    template <kortools::core::OtherForeignText<T> S> CXTString &operator+=(S const &text)
    {
        return ReplaceTail(m_text.GetLength(), kortools::core::view_of<Other>(text));
    }

    // --- Length and buffer

    int GetLength() const { return static_cast<int>(m_text.GetLength()); }
    bool IsEmpty() const { return m_text.IsEmpty(); }
    long long GetCapacity() const { return m_text.GetCapacity(); } // zero included
    void Empty() { m_text.SetLength(0); }                          // keeps the block

    // Makes the text at least `length` long and returns it for writing; ReleaseBuffer() then sets
    // the real length. New characters are undefined.
    T *GetBuffer(int length = 0);
    T *GetBufferSetLength(int length); // exactly `length`

    // Sets the length after writing into the buffer, at most GetCapacity() - 1. Negative: up to
    // the first zero.
    void ReleaseBuffer(int length = -1);

    T const *GetConstBuffer(int = 0) const { return m_text.GetData(); }

    // Hands the block to the caller, who frees it with free(). The string may then only be
    // destroyed or assigned to.
    T *DetachBuffer() { return m_text.Detach(); }

    // The first `count` characters of `text`; empty for null or a count below 1.
    void Copy(T const *text, int count);

    operator T const *() const { return m_text.GetData(); }
    operator CXTCharArray<T> &() { return m_text; }
    operator CXTCharArray<T> const &() const { return m_text; }
    operator View() const { return m_text.GetView(); }
    View GetView() const { return m_text.GetView(); }

    // --- Characters

    T GetAt(int index) const { return IsIndex(index) ? m_text[index] : T(); }
    void SetAt(int index, T ch)
    {
        if (IsIndex(index))
            m_text[index] = ch;
    }
    T operator[](int index) const { return GetAt(index); }
    template <std::integral I> T operator[](I index) const
    {
        long long const wide_index = static_cast<long long>(index);
        return IsIndex(wide_index) ? m_text[wide_index] : T();
    }

    // The address of a character; that of the terminating zero when `index` is outside the text.
    T const *GetAtPtr(int index) const
    {
        return m_text.GetData() + (IsIndex(index) ? index : GetLength());
    }
    T *GetAtPtr(int index) { return m_text.GetData() + (IsIndex(index) ? index : GetLength()); }

    T const *begin() const { return m_text.begin(); }
    T const *end() const { return m_text.end(); }

    // --- Search: positions from 0, -1 when not found; a negative `start` is 0
    //
    // Texts are found by a scan that, after a partial match, goes on at the character that
    // differed: matches that begin inside the partly matched stretch are not seen, so
    // CXTString<char>("aaab").Find("aab") is -1. An empty text is never found. O(length).

    int Find(T ch, int start = 0) const
    {
        std::size_t const found
            = GetView().find(ch, static_cast<std::size_t>(start < 0 ? 0 : start));
        return found != View::npos ? static_cast<int>(found) : -1;
    }
    int Find(T const *text, int start = 0, bool noCase = false) const;
    int FindNoCase(T ch, int start = 0) const;
    int FindNoCase(T const *text, int start = 0) const;
    int FindEndPos(T const *text, int start = 0, bool noCase = false) const; // just past the match
    int FindOneOf(T const *set) const; // the first character that is in `set`

    // Backwards from `start`, which bounds the last character of the match; negative or beyond the
    // end is the last character. Returns where the match begins; sees every match.
    int ReverseFind(T ch, int start = -1) const;
    int ReverseFind(T const *text, int start = -1) const;

    // --- Extraction

    CXTString Left(int count) const;
    CXTString Right(int count) const;
    CXTString Mid(int first, int count = -1) const; // negative: from 0, and to the end

    // The next part of the text from `position` on, without the delimiters around it. `position`
    // moves behind the delimiter that ended the part; it becomes -1 together with the last part,
    // and with an empty result when there is none (or no delimiter is given).
    //
    //   "a,b" with ",", from 0  =>  "a" and position 2, then "b" and position -1
    CXTString Tokenize(T const *delimiters, int &position) const;

    // The characters of the whole text, not of its beginning only, that are in `set` or not in it.
    //
    //   "axbyb"  =>  SpanIncluding("ab") "abb", SpanExcluding("ab") "xy"
    //
    // Null gives an empty text both times.
    CXTString SpanIncluding(T const *set) const;
    CXTString SpanExcluding(T const *set) const;

    // --- Editing

    int Insert(int position, T ch); // the new length; the position is clamped to the text
    int Insert(int position, T const *text);
    int Insert(int position, CXTString const &text) { return InsertText(position, text.GetView()); }
    template <kortools::core::ForeignText<T> S> int Insert(int position, S const &text)
    {
        return InsertText(position, kortools::core::view_of<T>(text));
    }
    int Delete(int position, int count = 1); // the new length; nothing for a bad position

    // Replace up to `count` occurrences (negative: all) that begin before `limit`, a position in
    // the text as edited so far, and go on behind the new text. Finds as Find() does. Returns the
    // number replaced; 0 for null pointers. The length is set once: the block grows, if it must,
    // for the final length. O(length + new length).
    int Replace(T old, T replacement, int count = -1, int limit = INT_MAX);
    int Replace(T const *old, T const *replacement, int count = -1, int limit = INT_MAX);

    // Remove up to `count` occurrences (negative: all); returns the number removed. What joins up
    // over a removal is not searched again. O(length).
    int Remove(T ch, int count = -1);
    int Remove(T const *text, bool noCase = false, int count = -1);

    CXTString &MakeLower(int start = 0); // from `start` to the end
    CXTString &MakeUpper(int start = 0);
    CXTString &MakeReverse();

    // Take characters away at the ends: white space (Unicode's for wide text, ASCII's for narrow
    // text), one character, or those of a set.
    CXTString &Trim();
    CXTString &Trim(T ch);
    CXTString &Trim(T const *set);
    CXTString &TrimLeft();
    CXTString &TrimLeft(T ch);
    CXTString &TrimLeft(T const *set);
    CXTString &TrimRight();
    CXTString &TrimRight(T ch);
    CXTString &TrimRight(T const *set);

    // --- Formatting and scanning
    //
    // printf rules of the Windows runtime: %s takes text of the string's width, %hs narrow, %ls
    // wide, %I64d 64 bits. Arguments may point into the string. A null format changes nothing; a
    // format that cannot be carried out leaves an empty string (AppendFormat: changes nothing).
    // `id` is the number of a format in the string tables.

    void Format(T const *format, ...);
    void Format(unsigned int id, ...);
    void FormatV(T const *format, std::va_list args);
    void AppendFormat(T const *format, ...);
    void AppendFormat(unsigned int id, ...);

    // The secure scanf family: each %s, %c and %[ takes the size of its buffer (unsigned int) as a
    // further argument. Returns the number of fields stored, -1 when the text ends before the
    // first one. A bad `start` scans an empty text.
    int ScanS(T const *format, ...) const;
    int ScanS(int start, T const *format, ...) const;
    int ScanVS(T const *format, std::va_list args) const;
    int ScanVS(int start, T const *format, std::va_list args) const;

    bool LoadString(unsigned int id); // from the string tables; false when the result is empty
    bool LoadStringA(unsigned int id);
    bool LoadStringW(unsigned int id);

    static xStringEncoding GetDefaultEncoding(); // of text files

    // --- Comparison
    //
    // Compare() and the operators order by UTF-16 unit as unsigned values (bytes for narrow text),
    // on systems with 32-bit characters too; only the sign of a result counts. A null pointer
    // equals an empty string.

    int Compare(CXTString const &text) const { return CompareText(text.GetView()); }
    int Compare(T const *text) const;
    template <kortools::core::ForeignText<T> S> int Compare(S const &text) const
    {
        return CompareText(kortools::core::view_of<T>(text));
    }

    // The rest compares up to the first zero, with the rules of the C runtime: case by the current
    // locale, order by its LC_COLLATE.
    int CompareNoCase(T const *text) const;
    int Collate(T const *text) const;
    int CollateNoCase(T const *text) const;

    bool operator==(CXTString const &text) const { return EqualsText(text.GetView()); }
    bool operator==(T const *text) const;
    template <kortools::core::ForeignText<T> S> bool operator==(S const &text) const
    {
        return EqualsText(kortools::core::view_of<T>(text));
    }

    // Unordered, so that <, <=, > and >= are false, when an operand is null or a detached string.
    std::partial_ordering operator<=>(CXTString const &text) const
    {
        return OrderText(text.GetView());
    }
    std::partial_ordering operator<=>(T const *text) const { return OrderText(ViewOf(text)); }
    template <kortools::core::ForeignText<T> S>
    std::partial_ordering operator<=>(S const &text) const
    {
        return Compare(text) <=> 0;
    }

    void Swap(CXTString &other) noexcept { m_text.Swap(other.m_text); }
    friend void swap(CXTString &a, CXTString &b) noexcept { a.Swap(b); }

    // A sum that is added to grows in its own block.
    friend CXTString operator+(CXTString const &a, CXTString const &b)
    {
        return { a.GetView(), b.GetView() };
    }
    friend CXTString operator+(CXTString &&a, CXTString const &b)
    {
        return std::move(a.AppendText(b.GetView()));
    }
    friend CXTString operator+(CXTString const &a, T const *b)
    {
        return { a.GetView(), ViewOf(b) };
    }
    friend CXTString operator+(CXTString &&a, T const *b)
    {
        return std::move(a.AppendText(ViewOf(b)));
    }
    friend CXTString operator+(T const *a, CXTString const &b)
    {
        return { ViewOf(a), b.GetView() };
    }
    friend CXTString operator+(CXTString const &a, T b) { return { a.GetView(), View(&b, 1) }; }
    friend CXTString operator+(CXTString &&a, T b) { return std::move(a += b); }
    friend CXTString operator+(T a, CXTString const &b) { return { View(&a, 1), b.GetView() }; }
    template <kortools::core::ForeignText<T> S>
    friend CXTString operator+(CXTString const &a, S const &b)
    {
        return { a.GetView(), kortools::core::view_of<T>(b) };
    }
    template <kortools::core::ForeignText<T> S>
    friend CXTString operator+(CXTString &&a, S const &b)
    {
        return std::move(a.AppendText(kortools::core::view_of<T>(b)));
    }
    template <kortools::core::ForeignText<T> S>
    friend CXTString operator+(S const &a, CXTString const &b)
    {
        return { kortools::core::view_of<T>(a), b.GetView() };
    }

    // A number is not a character; nor is this the sum of a pointer and an offset.
    template <std::integral I>
    requires(!std::same_as<I, T> && !std::same_as<I, char>) friend CXTString operator+(
        CXTString const &, I)
        = delete;

private:
    bool IsIndex(long long index) const
    {
        return static_cast<unsigned long long>(index)
            < static_cast<unsigned long long>(m_text.GetLength());
    }

    CXTString(View first, View second); // both joined
    static View ViewOf(T const *text) { return text ? View(text) : View(); }
    CXTString &AssignText(View text);
    CXTString &AppendText(View text);

    // Text of the other width: as an array of its own, and in place of what follows `start`.
    static CXTCharArray<T> Converted(std::basic_string_view<Other> text);
    CXTString &ReplaceTail(long long start, std::basic_string_view<Other> text);

    int InsertText(int position, View text);
    int FindInternal(T const *text, int start, bool endPosition) const;
    int FindInternalNoCase(T const *text, int start, bool endPosition) const;
    std::size_t LengthUpTo(int last) const;
    int CompareText(View text) const;
    std::partial_ordering OrderText(View text) const
    {
        if (!text.data() || !m_text.GetData())
            return std::partial_ordering::unordered;
        return CompareText(text) <=> 0;
    }
    bool EqualsText(View text) const
    {
        View const own = GetView();
        return own.size() == text.size()
            && (own.empty() || std::memcmp(own.data(), text.data(), own.size() * sizeof(T)) == 0);
    }

    CXTCharArray<T> m_text;
};

#pragma pop_macro("LoadString")

KOR_EXTERN_TEMPLATE(CXTString<char>);
KOR_EXTERN_TEMPLATE(CXTString<wchar_t>);

template <class T, class Traits>
std::basic_ostream<T, Traits> &operator<<(
    std::basic_ostream<T, Traits> &stream, CXTString<T> const &text)
{
    return stream << std::basic_string_view<T, Traits>(text.begin(), text.end());
}

namespace kortools::core {

template <class T> inline constexpr bool is_trivially_relocatable<CXTString<T>> = true;
template <class T> inline constexpr bool zero_is_unused<CXTString<T>> = true; // no block

// The text in quotes, in ASCII, with \xHH (\x{HHHHHH} from 100 on) for everything else.
KORTOOLS_API CXTString<char> quote(std::string_view text);
KORTOOLS_API CXTString<char> quote(std::wstring_view text);

} // namespace kortools::core

// How GoogleTest shows strings.
template <class T> void PrintTo(CXTString<T> const &text, std::ostream *stream)
{
    *stream << kortools::core::quote(text.GetView());
}
