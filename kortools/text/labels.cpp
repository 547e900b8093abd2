// SPDX-License-Identifier: MIT
#include "kortools/text/labels.h"

#include "kortools/platform/key_names.h"
#include "kortools/text/resource_strings.h"
#include "kortools/text/string_table.h"

namespace {

// The texts of the units, by _UNIT_MODE: name|abbreviation.
constexpr unsigned int unit_texts[]
    = { 5370, 5368, 5365, 5367, 5358, 5364, 5363, 5362, 5361, 5371, 5366, 5369 };

constexpr unsigned long long kilobyte = 1024;
constexpr unsigned long long megabyte = 1024 * kilobyte;
constexpr unsigned long long gigabyte = 1024 * megabyte;

CXTString<wchar_t> scaled_size(
    unsigned int format_id, unsigned long long size, unsigned long long unit)
{
    float const value = static_cast<float>(size) / static_cast<float>(unit);
    return FormatString(format_id, static_cast<double>(value));
}

} // namespace

CXTString<wchar_t> GetUnitText(_UNIT_MODE unit, bool abbreviation)
{
    bool const is_known = unit >= unitUndefined && unit <= unitPixel;
    unsigned int const id = unit_texts[is_known ? unit : unitCentimeter];
    return ExtractString(id, abbreviation ? 1U : 0U);
}

CXTString<wchar_t> GetFileSizeString(unsigned long long size)
{
    if (size <= kilobyte)
        return FormatString(L"%I64d ", size) + xLoadString(5175);
    if (size <= megabyte)
        return scaled_size(5238, size, kilobyte);
    if (size <= gigabyte)
        return scaled_size(5272, size, megabyte);
    return scaled_size(5230, size, gigabyte);
}

CXTString<wchar_t> Key2String(unsigned int virtualKey, unsigned int modifiers)
{
    CXTString<wchar_t> label;
    if (modifiers & keyControl)
        label += L"Ctrl+";
    if (modifiers & keyAlt)
        label += L"Alt+";
    if (modifiers & keyShift)
        label += L"Shift+";
    bool const is_french = kortools::text::get_active_language() == kortools::text::french;
    using kortools::platform::KeyLanguage;
    label += kortools::platform::get_key_name(
        virtualKey, is_french ? KeyLanguage::French : KeyLanguage::English);
    return label;
}
