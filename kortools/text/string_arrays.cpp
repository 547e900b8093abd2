// SPDX-License-Identifier: MIT
#include "kortools/text/string_arrays.h"

#include "kortools/archive/archive.h"
#include "kortools/files/file_types.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

using String = CXTString<wchar_t>;

struct Item {
    String const *text;
    unsigned int file_class; // 0 unless file names are sorted
};

int compare(Item const &a, Item const &b, _CompareStringsEnum mode)
{
    if (mode != compareStringsFileName && (a.text->IsEmpty() || b.text->IsEmpty()))
        return b.text->IsEmpty() - a.text->IsEmpty();
    switch (mode) {
    case compareStringsCase:
        return a.text->Compare(*b.text);
    case compareStringsCollateNoCase:
        return a.text->CollateNoCase(*b.text);
    case compareStringsCollate:
        return a.text->Collate(*b.text);
    case compareStringsFileName:
        if (a.file_class && b.file_class && a.file_class != b.file_class)
            return a.file_class < b.file_class ? -1 : 1;
        [[fallthrough]];
    case compareStringsNoCase:
        break;
    }
    return a.text->CompareNoCase(*b.text);
}

} // namespace

void SortStringArray(CXArray<CXTString<wchar_t>> &array, _CompareStringsEnum mode)
{
    if (mode < compareStringsNoCase || mode > compareStringsFileName)
        return;
    std::vector<Item> items;
    items.reserve(static_cast<std::size_t>(array.GetSize()));
    for (String const &text : array)
        items.push_back({ &text, mode == compareStringsFileName ? fileGetClass(text) : 0 });
    // Merges: bounded whatever the comparison answers.
    std::ranges::stable_sort(
        items, [mode](Item const &a, Item const &b) { return compare(a, b, mode) < 0; });
    CXArray<String> sorted;
    sorted.SetSize(array.GetSize());
    for (int i = 0; i < array.GetSize(); ++i)
        sorted[i].Swap(
            array[static_cast<int>(items[static_cast<std::size_t>(i)].text - array.GetData())]);
    for (int i = 0; i < array.GetSize(); ++i)
        array[i].Swap(sorted[i]);
}

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
    String const *const found = std::ranges::find_if(
        array, [&](String const &other) { return StringCompare(other, text, noCase) == 0; });
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
