// SPDX-License-Identifier: MIT
#include "kortools/text/string_arrays.h"

#include "kortools/archive/archive.h"

#include <algorithm>

using String = CXTString<wchar_t>;

void CopyStringArray(CXArray<CXTString<wchar_t>> const &source, CXArray<CXTString<wchar_t>> &target)
{
    target.Copy(source);
}

void StringToHash(CXArray<CXTString<wchar_t>> const &array, CHashTable<CXTString<wchar_t>> &set)
{
    for (String const &text : array)
        set.Insert(text);
}

int FindInStringArray(
    CXArray<CXTString<wchar_t>> const &array, CXTString<wchar_t> const &text, bool noCase)
{
    String const *const found = std::ranges::find_if(array, [&](String const &other) {
        return noCase ? other.CompareNoCase(text) == 0 : other == text;
    });
    return found == array.end() ? -1 : static_cast<int>(found - array.begin());
}

int StringFind(CXTString<wchar_t> const &text, CXTString<wchar_t> const &sub, bool noCase)
{
    return text.Find(sub, 0, noCase);
}

int StringFindNoCase(CXTString<wchar_t> const &text, CXTString<wchar_t> const &sub)
{
    return text.FindNoCase(sub);
}

int StringRemoveNoCase(CXTString<wchar_t> &text, CXTString<wchar_t> const &sub, bool noCase)
{
    return text.Remove(sub, noCase);
}

int StringCompare(CXTString<wchar_t> const &a, CXTString<wchar_t> const &b, bool noCase)
{
    return noCase ? a.CompareNoCase(b) : a.Compare(b);
}

CXTString<wchar_t> GetUniqueName(CHashTable<CXTString<wchar_t>> &taken,
    CXTString<wchar_t> const &base, int maxLength, bool plainNumber)
{
    String suffix;
    for (int number = 0;; ++number) {
        int const room = std::max(maxLength - suffix.GetLength(), 0);
        String name = maxLength >= 1 ? base.Left(room) + suffix : base + suffix;
        if (!taken.IsFound(name)) {
            taken.Insert(name);
            return name;
        }
        suffix.Format(plainNumber ? L"%d" : L"-%d", number);
    }
}
