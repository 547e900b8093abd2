// SPDX-License-Identifier: MIT
// Texts are compared O(n log n) times, so what a comparison needs is computed once for each: small
// letters, the class of a file name, and the first four UTF-16 units as a number, which decides
// most comparisons without a look at the texts. Then indices are sorted, and the texts swapped
// into their places.
#include "kortools/text/string_arrays.h"

#include "kortools/archive/archive.h"
#include "kortools/core/utf16.h"
#include "kortools/files/file_types.h"
#include "kortools/platform/text_compare.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace platform = kortools::platform;

namespace {

using String = CXTString<wchar_t>;

struct Item {
    std::uint64_t prefix;   // the first units, 0 where the order is not by unit
    wchar_t const *lowered; // null where case counts
    String const *text;
    unsigned int file_class; // 0 unless file names are sorted
    int index;
};

bool ignores_case(_CompareStringsEnum mode)
{
    return mode == compareStringsNoCase || mode == compareStringsFileName;
}

std::uint64_t prefix_of(std::wstring_view text)
{
    kortools::core::Utf16Cursor units(text.data(), text.size());
    std::uint64_t prefix = 0;
    for (int i = 0; i < 4; ++i)
        prefix = prefix << 16 | (units.is_at_end() ? 0 : units.next());
    return prefix;
}

int compare(Item const &a, Item const &b, _CompareStringsEnum mode)
{
    if (a.file_class && b.file_class && a.file_class != b.file_class)
        return a.file_class < b.file_class ? -1 : 1;
    if (a.prefix != b.prefix)
        return a.prefix < b.prefix ? -1 : 1;
    if (mode != compareStringsFileName && (a.text->IsEmpty() || b.text->IsEmpty()))
        return b.text->IsEmpty() - a.text->IsEmpty();
    switch (mode) {
    case compareStringsCase:
        return a.text->Compare(*b.text);
    case compareStringsCollateNoCase:
        return a.text->CollateNoCase(*b.text);
    case compareStringsCollate:
        return a.text->Collate(*b.text);
    case compareStringsNoCase:
    case compareStringsFileName:
        break;
    }
    return platform::compare_ordinal(a.lowered, b.lowered);
}

// Appends the text up to its first zero, in small letters and with a zero; returns where it is.
wchar_t const *append_lowered(std::vector<wchar_t> &pool, String const &text)
{
    std::size_t const begin = pool.size();
    for (wchar_t const *ch = text.GetConstBuffer(); *ch; ++ch)
        pool.push_back(platform::to_lower(*ch));
    pool.push_back(L'\0');
    return pool.data() + begin;
}

// `pool` gets what the items point to.
std::vector<Item> make_items(
    CXArray<String> const &array, _CompareStringsEnum mode, std::vector<wchar_t> &pool)
{
    if (ignores_case(mode)) {
        std::size_t size = 0;
        for (String const &text : array)
            size += static_cast<std::size_t>(text.GetLength()) + 1;
        pool.reserve(size); // the texts in it do not move
    }
    std::vector<Item> items;
    items.reserve(static_cast<std::size_t>(array.GetSize()));
    for (String const &text : array) {
        Item item { 0, nullptr, &text, 0, static_cast<int>(items.size()) };
        if (ignores_case(mode)) {
            item.lowered = append_lowered(pool, text);
            item.prefix = prefix_of(item.lowered);
        } else if (mode == compareStringsCase) {
            item.prefix = prefix_of(text.GetView());
        }
        if (mode == compareStringsFileName)
            item.file_class = fileGetClass(text);
        items.push_back(item);
    }
    return items;
}

// Puts the text that each item names into the item's place, along the cycles of the permutation.
void arrange(CXArray<String> &array, std::vector<Item> &items)
{
    String *const texts = array.GetData();
    int const count = array.GetSize();
    auto const wanted
        = [&](int place) -> int & { return items[static_cast<std::size_t>(place)].index; };
    for (int start = 0; start < count; ++start) {
        int place = start;
        while (wanted(place) != start) {
            int const next = std::exchange(wanted(place), place);
            texts[place].Swap(texts[next]);
            place = next;
        }
        wanted(place) = place;
    }
}

} // namespace

void SortStringArray(CXArray<CXTString<wchar_t>> &array, _CompareStringsEnum mode)
{
    if (mode < compareStringsNoCase || mode > compareStringsFileName)
        return;
    std::vector<wchar_t> pool;
    std::vector<Item> items = make_items(array, mode, pool);
    // It merges, which is bounded whatever the comparison answers.
    std::ranges::stable_sort(
        items, [mode](Item const &a, Item const &b) { return compare(a, b, mode) < 0; });
    arrange(array, items);
}
